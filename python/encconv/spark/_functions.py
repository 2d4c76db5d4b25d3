"""Decoding and encoding columns, in Python and in SQL."""

from __future__ import annotations

from functools import cache

import pyarrow
import pyarrow.compute
from pyspark.sql import Column
from pyspark.sql.functions import arrow_udf, lit
from pyspark.sql.types import BinaryType, StringType

from .. import arrow
from .._conversion import find_encoding


def _per_encoding(column: pyarrow.Array, encodings: pyarrow.Array, errors: pyarrow.Array, function):
    """Calls function for the values of each pair of an encoding and errors, mostly one."""
    pairs = pyarrow.table({"encoding": encodings, "errors": errors})
    distinct = pairs.group_by(["encoding", "errors"]).aggregate([]).to_pylist()
    if len(distinct) == 1:
        return function(column, distinct[0]["encoding"], distinct[0]["errors"])
    made = []
    rows = []
    for pair in distinct:
        mask = pyarrow.compute.and_(
            pyarrow.compute.equal(encodings, pair["encoding"]),
            pyarrow.compute.equal(errors, pair["errors"]),
        )
        rows.append(pyarrow.compute.indices_nonzero(mask))
        made.append(function(column.filter(mask), pair["encoding"], pair["errors"]))
    order = pyarrow.compute.array_sort_indices(pyarrow.concat_arrays(rows))
    return pyarrow.concat_arrays(made).take(order)


def _decoded(column: pyarrow.Array, encodings: pyarrow.Array, errors: pyarrow.Array) -> pyarrow.Array:
    return _per_encoding(column, encodings, errors, arrow.decode)


def _encoded(column: pyarrow.Array, encodings: pyarrow.Array, errors: pyarrow.Array) -> pyarrow.Array:
    return _per_encoding(column, encodings, errors, arrow.encode)


@cache
def _functions() -> dict:
    return {
        "encconv_decode": arrow_udf(_decoded, StringType()),
        "encconv_encode": arrow_udf(_encoded, BinaryType()),
    }


def _call(name: str, column: Column | str, encoding: str, errors: str) -> Column:
    find_encoding(encoding)
    return _functions()[name](column, lit(encoding), lit(errors))


def decode(column: Column | str, encoding: str, errors: str = "strict") -> Column:
    """The texts of a binary column. ``errors`` are the handlers of Python's codecs."""
    return _call("encconv_decode", column, encoding, errors)


def encode(column: Column | str, encoding: str, errors: str = "strict") -> Column:
    """The bytes of a string column, as ``decode`` the other way round."""
    return _call("encconv_encode", column, encoding, errors)


def register_functions(spark) -> None:
    """Makes ``encconv_decode`` and ``encconv_encode`` known to SQL: column, encoding, errors."""
    for name, function in _functions().items():
        spark.udf.register(name, function)
