"""Records of mainframe files, and their fields.

    >>> import io
    >>> layout = "id 1 3 zoned:unsigned, name 4 6 text, balance 10 3 packed:scale=2"
    >>> file = io.BytesIO()
    >>> write_rows(file, [{"id": 7, "name": "Müller", "balance": "12.34"}], "rdw", layout, "ibm273")
    >>> _ = file.seek(0)
    >>> list(read_rows(file, "rdw", layout, "ibm273"))
    [{'id': 7, 'name': 'Müller', 'balance': Decimal('12.34')}]
"""

from __future__ import annotations

from collections.abc import Callable, Iterable, Iterator
from dataclasses import dataclass
from decimal import Decimal
from typing import Any, BinaryIO

from . import _native

__all__ = [
    "Record",
    "RecordError",
    "RecordProblem",
    "find_record_cut",
    "read_records",
    "read_rows",
    "write_records",
    "write_rows",
]


@dataclass(frozen=True, slots=True)
class RecordProblem:
    """A place in records that is damaged or does not fit."""

    kind: str  #: "descriptor", "cut", "text", "number", "too long", "missing" or "row"
    record: int  #: counted from 1
    offset: int  #: of the first byte: in the file, or of a field in its record
    length: int
    data: bytes  #: the first bytes of it
    field: str  #: its name, or nothing
    reason: str


class RecordError(ValueError):
    """A file or a record could not be read or written; ``problem`` says where."""

    def __init__(self, problem: RecordProblem):
        field = f", field {problem.field!r}" if problem.field else ""
        data = f" ({problem.data.hex(' ').upper()})" if problem.data else ""
        super().__init__(
            f"record {problem.record}{field}, byte offset {problem.offset}: {problem.reason}{data}"
        )
        self.problem = problem

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (self.problem,), self.__dict__


def find_record_cut(
    data: bytes, format: str, offset: int = 0, *, position: int = 0, at_cut: bool = False
) -> int | None:
    """The first place at ``offset`` or behind it where a part of a file of records can begin.

    ``data`` is the file or any part of it, ``position`` the place of its first byte. Records of a
    fixed length follow from that; the others are told by their descriptor words from the first byte
    on, where a part must begin, as ``at_cut`` says. None where no place is in sight.

    >>> find_record_cut(b"", "fixed:80", 100)
    160
    >>> find_record_cut(bytes.fromhex("0006 0000 C1C2 0005 0000 C3 0004 0000"), "rdw", 1)
    6
    """
    return _native.find_record_cut(data, format, offset, position, at_cut)


@dataclass(frozen=True, slots=True)
class Record:
    """A record without its descriptor word."""

    number: int  #: counted from 1
    offset: int  #: of its first byte in the file
    data: bytes


Handler = Callable[[RecordProblem], None]
_PIECE = 1 << 20


def _raise(problem: RecordProblem) -> None:
    raise RecordError(problem)


def read_records(file: BinaryIO, format: str, on_problem: Handler = _raise) -> Iterator[Record]:
    """The records of a binary file. ``format`` is ``fixed:80``, ``rdw`` or ``bdw``.

    A damaged place is told to ``on_problem``, which raises RecordError by default; where that
    returns, reading goes on as far as may be.
    """
    reader = _native.RecordReader(format)
    while True:
        kind, *rest = reader.next()
        if kind == "record":
            yield Record(*rest)
        elif kind == "damaged":
            on_problem(RecordProblem(*rest[0]))
        elif kind == "more":
            piece = file.read(_PIECE)
            if piece:
                reader.push(bytes(piece))
            else:
                reader.finish()
        else:
            return


def write_records(
    file: BinaryIO, records: Iterable[bytes], format: str, blank: bytes = b"\x40"
) -> None:
    """Writes records; fixed ones that are too short are filled with blanks."""
    writer = _native.RecordWriter(format, blank)
    for record in records:
        file.write(writer.write(bytes(record)))
    file.write(writer.finish())


def read_rows(
    file: BinaryIO,
    format: str,
    layout: str,
    encoding: str | int = "ibm037",
    *,
    on_error: str = "stop",
    trim: bool = True,
    on_problem: Handler | None = None,
) -> Iterator[dict[str, str | int | Decimal | None]]:
    """The records of a binary file as dictionaries by the names of their fields.

    ``layout`` has the fields, one a line or with commas between them, as ``encconv --help fields``
    says: ``balance 38 6 packed:scale=2``. Numbers are int, or Decimal where they have decimals. What
    cannot be read raises RecordError under ``on_error="stop"``; under the other treatments it is
    told to ``on_problem``, if there is one, and a number is None then.
    """
    decoder = _native.FieldDecoder(layout, str(encoding), on_error, trim, format)
    names = decoder.names
    tell = on_problem or (_raise if on_error == "stop" else _ignore)
    for record in read_records(file, format, tell):
        values, problems = decoder.decode(record.data)
        for problem in problems:
            kind, _, offset, *rest = problem
            tell(RecordProblem(kind, record.number, record.offset + offset, *rest))
        if values is not None:
            yield dict(zip(names, values))


def _ignore(problem: RecordProblem) -> None:
    pass


def write_rows(
    file: BinaryIO,
    rows: Iterable[dict[str, Any]],
    format: str,
    layout: str,
    encoding: str | int = "ibm037",
    *,
    on_error: str = "stop",
    on_problem: Handler | None = None,
) -> None:
    """Writes a record for each dictionary, as ``read_rows`` reads them."""
    encoder = _native.FieldEncoder(layout, str(encoding), on_error, format)
    writer = _native.RecordWriter(format, encoder.blank)
    names = _native.FieldDecoder(layout, str(encoding), on_error, False, format).names
    tell = on_problem or (_raise if on_error == "stop" else _ignore)
    for number, row in enumerate(rows, 1):
        unknown = row.keys() - set(names)
        if unknown:
            raise KeyError(f"row {number}: no field is called {sorted(unknown)[0]!r}")
        record, problems = encoder.encode([row.get(name) for name in names])
        for problem in problems:
            tell(RecordProblem(problem[0], number, *problem[2:]))
        if record is not None:
            file.write(writer.write(record))
    file.write(writer.finish())
