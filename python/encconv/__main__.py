"""The command ``python -m encconv``."""

from __future__ import annotations

import argparse
import sys

from . import ConversionError, __version__, convert, detect, encodings


def _read(path: str) -> bytes:
    if path == "-":
        return sys.stdin.buffer.read()
    with open(path, "rb") as file:
        return file.read()


def _write(path: str | None, data: bytes) -> None:
    if path is None or path == "-":
        sys.stdout.buffer.write(data)
        sys.stdout.buffer.flush()
        return
    with open(path, "wb") as file:
        file.write(data)


def _list(word: str) -> int:
    for encoding in encodings():
        texts = (encoding.name, *encoding.aliases, encoding.kind, encoding.description)
        if any(word.lower() in text.lower() for text in texts):
            print(f"{encoding.number:>8}  {encoding.name:<24} {encoding.description}")
    return 0


def _detect(paths: list[str]) -> int:
    for path in paths:
        found = detect(_read(path))
        likely = ", ".join(f"{c.name} ({c.confidence:.0%})" for c in found.candidates)
        print(f"{path}: {likely or found.reason or found.kind}")
    return 0


def _convert(arguments: argparse.Namespace) -> int:
    output = bytearray()
    for path in arguments.file or ["-"]:
        data = _read(path)
        source = arguments.source
        if source == "auto":
            found = detect(data)
            if found.encoding is None and found.kind != "empty":
                print(f"encconv: {path}: the encoding is not sure", file=sys.stderr)
                return 1
            source = found.encoding or "utf-8"
        try:
            output += convert(
                data,
                source,
                arguments.target,
                arguments.on_error,
                byte_order_mark=arguments.bom and not output,
            )
        except ConversionError as error:
            print(f"encconv: {path}: {error}", file=sys.stderr)
            return 1
    _write(arguments.output, bytes(output))
    return 0


def main(given: list[str] | None = None) -> int:
    parser = argparse.ArgumentParser(
        prog="encconv",
        description="Converts text between character encodings. Input is read whole; the "
        "command-line tool of the project takes input of any length and has more options.",
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
