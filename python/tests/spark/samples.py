"""Files that the tests read, and what the tool makes of them."""

from __future__ import annotations

import os
import pathlib
import subprocess

import encconv

DATA = pathlib.Path(__file__).resolve().parents[3] / "tests" / "data"
TOOL = os.environ.get("ENCCONV_TOOL", "encconv")

JAPANESE = "日本語の文章、カタカナとｶﾀｶﾅ abc"
TEXTS = {
    "utf-8": "Ελληνικά – 日本語 – русский 😀",
    "cp932": JAPANESE,
    "cp037": "HELLO, WORLD: $100 @ 5%",
    "cp930": "日本語の文章 ABC カタカナ ｱｲｳ",
    "gb18030": "汉字 ㈱ 😀 Ä ꙮ 中文",
    "utf-16": "Ελληνικά – 日本語 – русский 😀 \u0a0a\u0d0a",
    "utf-16be": "Ελληνικά – 日本語 – русский 😀 \u0a0a\u0d0a",
    "iso-2022-jp": "日本語の文章 abc カタカナ",
    "hz": "汉字 abc 中文",
    "utf-7": "汉字 + abc 中文",
}


def lines_of(encoding: str, count: int) -> list[str]:
    return [f"{i} {TEXTS[encoding]} {'x' * (i % 61)}" for i in range(count)]


def write_lines(path: pathlib.Path, encoding: str, count: int, end: str = "\n") -> pathlib.Path:
    text = "".join(line + end for line in lines_of(encoding, count))
    mark = b"\xff\xfe" if encoding == "utf-16" else b""
    path.write_bytes(mark + encconv.encode(text, encoding))
    return path


def write_records(path: pathlib.Path, encoding: str, format: str, count: int) -> pathlib.Path:
    """Records of lines, by the tool."""
    text = "\n".join(lines_of(encoding, count)) + "\n"
    run_tool("-f", "utf-8", "-t", encoding, "--to-records", format, "-o", path, data=text.encode())
    return path


def run_tool(*arguments, data: bytes = b"") -> bytes:
    ran = subprocess.run(
        [TOOL, "-q", *map(str, arguments)], input=data, capture_output=True, check=False
    )
    assert ran.returncode == 0, ran.stderr.decode()
    return ran.stdout
