"""Records and their fields as columns."""

from __future__ import annotations

from collections.abc import Iterator

import pyarrow

from .. import _native
from ._files import Parts
from ._lines import stop
from ._options import Settings
from ._pieces import Piece

_READ = 2 << 20


def _columns(settings: Settings, position: int) -> _native.RecordColumns:
    return _native.RecordColumns(
        settings.records,
        settings.fields,
        settings.encoding,
        settings.errors,
        settings.trim,
        position,
    )


def _type_of(format: str) -> pyarrow.DataType:
    if format.startswith("d:"):
        precision, scale = format[2:].split(",")
        return pyarrow.decimal128(int(precision), int(scale))
    return {"u": pyarrow.utf8(), "i": pyarrow.int32(), "l": pyarrow.int64()}[format]


def record_types(settings: Settings) -> list[tuple[str, pyarrow.DataType]]:
    """The names and types of the columns of records."""
    return [(name, _type_of(format)) for name, format in _columns(settings, 0).formats()]


def read_records(piece: Piece, settings: Settings) -> Iterator[dict[str, pyarrow.Array]]:
    """The records of a piece, in columns as ``record_types`` says."""
    columns = _columns(settings, piece.begin)
    types = [(name, _type_of(format)) for name, format in columns.formats()]
    with Parts(piece.path) as parts:
        begin = piece.begin
        while begin < piece.end:
            data = parts.read(begin, min(begin + _READ, piece.end))
            if not data:
                raise stop(piece.path, f"byte offset {begin}: the file has become shorter")
            begin += len(data)
            columns.push(data, begin >= piece.end)
            if columns.stopped is not None:
                raise stop(piece.path, columns.stopped)
            yield {
                name: _array(kind, taken) for (name, kind), taken in zip(types, columns.take())
            }


def _array(kind: pyarrow.DataType, taken: tuple) -> pyarrow.Array:
    length, nulls, validity, offsets, data = taken
    buffers = [None if validity is None else pyarrow.py_buffer(validity)]
    if offsets is not None:
        buffers.append(pyarrow.py_buffer(offsets))
    buffers.append(pyarrow.py_buffer(data))
    return pyarrow.Array.from_buffers(kind, length, buffers, nulls)
