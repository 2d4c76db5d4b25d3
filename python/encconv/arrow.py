"""Columns of Arrow from and to any encoding, for pyarrow, pandas, polars, DuckDB and others.

Columns are taken and given by the Arrow PyCapsule interface, so that no library of Arrow is needed
here, and nothing is copied but the result.

    >>> import pyarrow
    >>> names = pyarrow.array([b'\\xd4\\x95\\x89', None], pyarrow.binary())
    >>> column = decode(names, 'ibm037')
    >>> pyarrow.array(column).to_pylist()
    ['Mni', None]
"""

from __future__ import annotations

import importlib
import sys
from typing import Any

from . import _native

__all__ = ["Array", "ChunkedArray", "decode", "encode"]


class _Column:
    def __init__(self, column: _native.ArrowColumn):
        self._column = column

    def __len__(self) -> int:
        return len(self._column)

    @property
    def null_count(self) -> int:
        """How many of the values are null."""
        return self._column.null_count

    def __arrow_c_schema__(self) -> object:
        return self._column.schema_capsule()

    def __repr__(self) -> str:
        return f"<encconv.arrow.{type(self).__name__} of {len(self)} values>"


class Array(_Column):
    """A column in one piece: what pyarrow.array(), polars.Series() and others take."""

    def __arrow_c_array__(self, requested_schema: object = None) -> tuple[object, object]:
        return self._column.array_capsules()


class ChunkedArray(_Column):
    """A column in chunks: what pyarrow.chunked_array(), polars.Series() and others take."""

    def __arrow_c_stream__(self, requested_schema: object = None) -> object:
        return self._column.stream_capsule()


def _convert(array: Any, encoding: str | int, errors: str | None, decoding: bool) -> Any:
    pandas: Any = sys.modules.get("pandas")
    is_pandas = pandas is not None and isinstance(array, pandas.Series)
    given = array.array.__arrow_array__() if is_pandas and _has_arrow(array) else array
    if is_pandas and given is array:
        # A column of Python objects.
        pyarrow = _library("pyarrow")
        kind = pyarrow.large_binary() if decoding else pyarrow.large_string()
        given = pyarrow.array(array, kind, from_pandas=True)
    column, is_chunked = _native.arrow_convert(given, encoding, errors, decoding)
    made = ChunkedArray(column) if is_chunked else Array(column)
    if is_pandas:
        pyarrow = _library("pyarrow")
        values = pyarrow.chunked_array(made) if is_chunked else pyarrow.array(made)
        dtype = pandas.ArrowDtype(values.type)
        return pandas.Series(
            pandas.arrays.ArrowExtensionArray(values), array.index, dtype, array.name
        )
    library = type(array).__module__.partition(".")[0]
    if library == "pyarrow":
        pyarrow = _library("pyarrow")
        return pyarrow.chunked_array(made) if is_chunked else pyarrow.array(made)
    if library == "polars":
        polars = _library("polars")
        return polars.Series(array.name, made)
    return made


def _library(name: str) -> Any:
    """One that is there if its columns are."""
    return importlib.import_module(name)


def _has_arrow(series: Any) -> bool:
    return hasattr(series.array, "__arrow_array__")


def decode(array: Any, encoding: str | int, errors: str | None = "strict") -> Any:
    """The texts of a column of bytes (binary, large, view or of a fixed size), as a column of
    strings of the like layout. Null stays null; chunks stay chunks.

    What comes from pyarrow, polars or pandas comes back as theirs, anything else as an Array or
    ChunkedArray. The handlers of codecs serve as ``errors``; an exception has a note with the row.
    """
    return _convert(array, encoding, errors, True)


def encode(array: Any, encoding: str | int, errors: str | None = "strict") -> Any:
    """The bytes of a column of strings, as ``decode`` the other way round.

    >>> import pyarrow
    >>> encode(pyarrow.array(['Müller', None]), 'cp500').to_pylist()
    [b'\\xd4\\xdc\\x93\\x93\\x85\\x99', None]
    """
    return _convert(array, encoding, errors, False)
