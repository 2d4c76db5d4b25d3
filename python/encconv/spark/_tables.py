"""CSV and JSON in any encoding: transcoded to UTF-8, then read by Spark's own readers."""

from __future__ import annotations

import uuid
from collections.abc import Iterator

from pyspark.sql import DataFrame, SparkSession

from .. import _native
from ._files import File, Parts, file_system, list_files
from ._lines import read_text
from ._options import Settings
from ._pieces import Piece, pieces_of, plan_files


def read_csv(spark, path, encoding, *, work, errors="stop", **options) -> DataFrame:
    raise NotImplementedError
