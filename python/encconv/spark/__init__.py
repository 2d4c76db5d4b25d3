"""Text in any encoding, and mainframe records, in Spark 4.1 or newer.

    spark.read.format("encconv").option("encoding", "cp932").load("letters/*.txt")

Spark finds the data source by itself where this package is installed. ``register`` makes the
functions known to SQL, and the data source where Spark was told not to look.
"""

from __future__ import annotations

from ._functions import decode, encode, register_functions
from ._lines import DamagedInput
from ._source import EncconvDataSource
from ._tables import read_csv, read_json, transcode

__all__ = [
    "DamagedInput",
    "EncconvDataSource",
    "decode",
    "encode",
    "read_csv",
    "read_json",
    "register",
    "transcode",
]


def register(spark) -> None:
    """Registers the data source, and ``encconv_decode`` and ``encconv_encode`` for SQL."""
    spark.dataSource.register(EncconvDataSource)
    register_functions(spark)
