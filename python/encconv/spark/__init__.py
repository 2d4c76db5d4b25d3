"""Text in any encoding, and mainframe records, in Spark 4.1 or newer.

    spark.read.format("encconv").option("encoding", "cp932").load("letters/*.txt")

Spark finds the data source by itself where this package is installed; ``register`` does the rest,
and is needed for the functions of SQL.
"""

from __future__ import annotations

from ._source import EncconvDataSource

__all__ = ["EncconvDataSource", "register"]


def register(spark) -> None:
    """Registers the data source."""
    spark.dataSource.register(EncconvDataSource)
