"""The options of the data source."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass

from .. import _native
from .._conversion import find_encoding

_MARKS = (
    (b"\x00\x00\xfe\xff", 4, "UTF-32BE"),
    (b"\xff\xfe\x00\x00", 4, "UTF-32LE"),
    (b"\xfe\xff", 2, "UTF-16BE"),
    (b"\xff\xfe", 2, "UTF-16LE"),
    (b"\xef\xbb\xbf", 1, "UTF-8"),
)
_LINE_ENDS = {"lf": "\n", "crlf": "\r\n", "cr": "\r", "nl": "\x85"}
_KNOWN = {
    "path", "encoding", "errors", "records", "recordlength", "fields", "trim", "piecesize",
    "filename", "newline",
}  # fmt: skip


def _number(options: Mapping[str, str], name: str, default: int) -> int:
    text = options.get(name, str(default))
    if not text.isdecimal() or int(text) == 0:
        raise ValueError(f"encconv: the option {name} is a number above 0, not {text!r}")
    return int(text)


def _flag(options: Mapping[str, str], name: str) -> bool:
    text = options.get(name, "false").lower()
    if text not in ("true", "false"):
        raise ValueError(f"encconv: the option {name} is true or false, not {text!r}")
    return text == "true"


@dataclass(frozen=True)
class Settings:
    """How files are read and written."""

    paths: tuple[str, ...]
    encoding: str  #: its preferred name
    errors: str  #: a treatment, as --on-error takes it
    records: str  #: "fixed:N", "rdw", "bdw", or nothing for lines
    fields: str  #: the layout, or nothing
    trim: bool
    piece_size: int  #: 0: by the size of all files
    file_name: str  #: the ending of files that are written
    line_end: str  #: of lines that are written

    @staticmethod
    def of(options: Mapping[str, str]) -> Settings:
        """Reads options; ValueError or LookupError say what is wrong with them."""
        unknown = sorted(name for name in options if name.lower() not in _KNOWN)
        if unknown:
            raise ValueError(f"encconv: there is no option {unknown[0]}")
        if not options.get("path"):
            raise ValueError("encconv: a path is required, as in load(path)")
        encoding = options.get("encoding")
        if not encoding:
            raise ValueError("encconv: the option encoding is required")
        records = options.get("records", "")
        if "recordLength" in options or "recordlength" in options:
            if records:
                raise ValueError("encconv: recordLength is the same as records fixed:N; give one")
            records = f"fixed:{_number(options, 'recordLength', 80)}"
        fields = options.get("fields", "")
        if fields and not records:
            raise ValueError("encconv: fields need records or recordLength")
        newline = options.get("newline", "lf").lower()
        if newline not in _LINE_ENDS:
            raise ValueError(f"encconv: newline is lf, crlf, cr or nl, not {newline!r}")
        return Settings(
            paths=_paths(options["path"]),
            encoding=find_encoding(encoding).name,
            errors=options.get("errors", "stop"),
            records=records,
            fields=_layout(fields),
            trim=_flag(options, "trim"),
            piece_size=_number(options, "pieceSize", 1) if "pieceSize" in options else 0,
            file_name=options.get("fileName", ".dat" if records else ".txt"),
            line_end=_LINE_ENDS[newline],
        )


def _paths(text: str) -> tuple[str, ...]:
    """One path, or the array of them that Spark makes of load([...])."""
    if text.startswith("["):
        import json

        try:
            return tuple(json.loads(text))
        except ValueError:
            pass
    return (text,)


def _layout(text: str) -> str:
    """A layout, read from its file where ``@FILE`` is given."""
    if not text.startswith("@"):
        return text
    import fsspec

    with fsspec.open(text[1:], "rt", encoding="utf-8") as file:
        return file.read()


@dataclass(frozen=True)
class TextForm:
    """What the bytes of a text in one encoding look like, as far as lines are concerned."""

    encoding: str
    mark: int  #: bytes of the byte order mark in front of it
    unit: int  #: bytes of a code unit
    line_ends: tuple[bytes, ...]  #: the code units that end lines
    has_next_line: bool  #: U+0085 is a line end: EBCDIC

    @staticmethod
    def of(encoding: str, head: bytes) -> TextForm:
        """Of a text which begins with the bytes of head: a byte order mark says the order."""
        mark = 0
        unit = _unit(encoding)
        if find_encoding(encoding).kind == "unicode":
            for bytes_, width, name in _MARKS:
                if head.startswith(bytes_) and width == unit:
                    # "UTF-8" and its relatives stay what they are.
                    mark, encoding = len(bytes_), name if width > 1 else encoding
                    break
        ends = [_unit_of(encoding, "\n")]
        has_next_line = _unit_of(encoding, "A") == b"\xc1"
        if has_next_line:
            ends.append(_unit_of(encoding, "\x85"))
        return TextForm(encoding, mark, unit, tuple(ends), has_next_line)


def _unit_of(encoding: str, character: str) -> bytes:
    """A character without what a text of the encoding begins and ends with."""
    once = _native.encode(character, encoding)
    twice = _native.encode(character * 2, encoding)
    return once[len(once) - (len(twice) - len(once)) :] if len(twice) < 2 * len(once) else once


def opening_of(encoding: str) -> bytes:
    """What every text of an encoding begins with: a byte order mark, a designation; mostly nothing."""
    return _native.encode("A", encoding).removesuffix(_unit_of(encoding, "A"))


def _unit(encoding: str) -> int:
    return len(_unit_of(encoding, "\n"))
