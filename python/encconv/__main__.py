"""The command ``python -m encconv``."""

from __future__ import annotations

import argparse
import contextlib
import os
import shutil
import stat
import sys
import tempfile
from collections.abc import Iterator
from typing import BinaryIO

from . import ConversionError, Converter, Detection, __version__, detect, encodings

_PIECE = 1 << 20


@contextlib.contextmanager
def _opened(path: str) -> Iterator[BinaryIO]:
    if path == "-":
        yield sys.stdin.buffer
        return
    with open(path, "rb") as file:
        yield file


def _read(file: BinaryIO) -> bytes:
    """A piece, which is full but at the end."""
    pieces, size = [], 0
    while size < _PIECE:
        piece = file.read(_PIECE - size)
        if not piece:
            break
        pieces.append(piece)
        size += len(piece)
    return b"".join(pieces)


@contextlib.contextmanager
def _output(path: str | None) -> Iterator[BinaryIO]:
    """Where output goes; a file has its former content until all of it is there."""
    if path is None or path == "-":
        yield sys.stdout.buffer
        sys.stdout.buffer.flush()
        return
    path = os.path.realpath(path)
    if os.path.exists(path) and not stat.S_ISREG(os.stat(path).st_mode):
        with open(path, "wb") as file:
            yield file
        return
    exists = os.path.exists(path)
    if exists and not os.access(path, os.W_OK):
        raise PermissionError(13, os.strerror(13), path)
    handle, made = tempfile.mkstemp(dir=os.path.dirname(path), prefix=os.path.basename(path) + ".")
    try:
        with open(handle, "wb") as file:
            yield file
        if exists:
            shutil.copymode(path, made)
        else:
            mask = os.umask(0)
            os.umask(mask)
            os.chmod(made, 0o666 & ~mask)
        os.replace(made, path)
    except BaseException:
        os.unlink(made)
        raise


def _found(file: BinaryIO) -> tuple[Detection, bytes]:
    """What a file is, and what was read of it."""
    data = _read(file)
    return detect(data, is_beginning=len(data) == _PIECE), data


def _list(word: str) -> int:
    for encoding in encodings():
        texts = (encoding.name, *encoding.aliases, encoding.kind, encoding.description)
        if any(word.lower() in text.lower() for text in texts):
            print(f"{encoding.number:>8}  {encoding.name:<24} {encoding.description}")
    return 0


def _detect(paths: list[str]) -> int:
    for path in paths:
        with _opened(path) as file:
            found, _ = _found(file)
        likely = ", ".join(f"{c.name} ({c.confidence:.0%})" for c in found.candidates)
        print(f"{path}: {likely or found.reason or found.kind}")
    return 0


class _Failure(Exception):
    pass


def _convert_file(path: str, arguments: argparse.Namespace, mark: bool, output: BinaryIO) -> bool:
    """Whether anything was written."""
    with _opened(path) as file:
        source, data = arguments.source, b""
        if source == "auto":
            found, data = _found(file)
            if found.encoding is None and found.kind != "empty":
                raise _Failure(f"{path}: the encoding is not sure")
            source = found.encoding or "utf-8"
        converter = Converter(source, arguments.target, arguments.on_error, byte_order_mark=mark)
        has_written = False
        try:
            data = data or _read(file)
            while data:
                written = converter.convert(data)
                has_written = has_written or bool(written)
                output.write(written)
                data = _read(file)
            written = converter.convert(b"", final=True)
        except ConversionError as error:
            output.write(error.output)
            raise _Failure(f"{path}: {error}") from error
        output.write(written)
        return has_written or bool(written)


def _convert(arguments: argparse.Namespace) -> int:
    has_written = False
    try:
        with _output(arguments.output) as output:
            for path in arguments.file or ["-"]:
                mark = arguments.bom and not has_written
                has_written = _convert_file(path, arguments, mark, output) or has_written
    except _Failure as failure:
        sys.stdout.buffer.flush()
        print(f"encconv: {failure}", file=sys.stderr)
        return 1
    return 0


def main(given: list[str] | None = None) -> int:
    parser = argparse.ArgumentParser(
        prog="encconv",
        description="Converts text between character encodings. The command-line tool of the "
        "project has more options.",
    )
    parser.add_argument("file", nargs="*", help='input; "-", or none, for standard input')
    parser.add_argument("-f", "--from", dest="source", default="auto", help="default: auto")
    parser.add_argument("-t", "--to", dest="target", default="utf-8", help="default: utf-8")
    parser.add_argument("-o", "--output", help="default: standard output")
    parser.add_argument(
        "--on-error",
        default="stop",
        help="stop, drop, substitute, substitute=TEXT, hex, alternate=ENCODING, raw",
    )
    parser.add_argument("--bom", action="store_true", help="begin with a byte order mark")
    parser.add_argument("--detect", action="store_true", help="say what the input is")
    parser.add_argument("--list", nargs="?", const="", metavar="WORD", help="list encodings")
    parser.add_argument("--version", action="version", version=__version__)
    arguments = parser.parse_args(given)
    try:
        if arguments.list is not None:
            return _list(arguments.list)
        if arguments.detect:
            return _detect(arguments.file or ["-"])
        return _convert(arguments)
    except (LookupError, OSError, ValueError) as error:
        print(f"encconv: {error}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
