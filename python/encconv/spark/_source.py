"""The data source ``encconv``."""

from __future__ import annotations

from collections.abc import Iterator
from dataclasses import dataclass

import numpy
import pyarrow
from pyspark.sql.datasource import (
    DataSource,
    DataSourceReader,
    DataSourceStreamReader,
    DataSourceWriter,
    InputPartition,
)
from pyspark.sql.pandas.types import from_arrow_type
from pyspark.sql.types import IntegerType, LongType, StringType, StructField, StructType

from ._files import File, list_files
from ._lines import Lines, read_lines
from ._options import Settings
from ._pieces import Piece, plan, plan_files
from ._process import settle
from ._records import read_records, record_types
from ._writer import EncconvWriter

_PLACE = [
    StructField("file", StringType()),
    StructField("offset", LongType()),
    StructField("problems", IntegerType()),
    StructField("first_problem", StringType()),
]


@dataclass
class Task(InputPartition):
    """What one task reads."""

    pieces: list[Piece]


class EncconvDataSource(DataSource):
    """Text files and mainframe records in any encoding, as rows."""

    def __init__(self, options: dict[str, str]):
        super().__init__(options)
        settle()

    @classmethod
    def name(cls) -> str:
        return "encconv"

    def schema(self) -> StructType:
        return _schema(Settings.of(self.options))

    def reader(self, schema: StructType) -> DataSourceReader:
        settle()
        return EncconvReader(Settings.of(self.options), schema)

    def writer(self, schema: StructType, overwrite: bool) -> DataSourceWriter:
        return EncconvWriter(Settings.of(self.options), schema, overwrite)

    def streamReader(self, schema: StructType) -> DataSourceStreamReader:
        return EncconvStreamReader(Settings.of(self.options), schema)


def _schema(settings: Settings) -> StructType:
    if not settings.records:
        return StructType([StructField("value", StringType()), *_PLACE])
    own = record_types(settings)[:-3]
    return StructType([*(StructField(name, from_arrow_type(kind)) for name, kind in own), *_PLACE])


def _check_schema(schema: StructType, settings: Settings) -> None:
    """A schema that was given may have fewer columns, which takes less time, in any order."""
    known = {field.name: field.dataType for field in _schema(settings).fields}
    for field in schema.fields:
        if field.name not in known:
            raise ValueError(f"encconv: there is no column {field.name}; there are {', '.join(known)}")
        if field.dataType != known[field.name]:
            raise ValueError(
                f"encconv: column {field.name} is {known[field.name].simpleString()},"
                f" not {field.dataType.simpleString()}"
            )


def _line_columns(lines: Lines, names: set[str]) -> dict[str, pyarrow.Array]:
    columns = {"value": lines.values}
    count = len(lines.values)
    if lines.offsets is None:
        return columns
    columns["offset"] = pyarrow.array(lines.offsets, pyarrow.int64())
    if "problems" in names or "first_problem" in names:
        counts = numpy.zeros(count, "i4")
        firsts: pyarrow.Array = pyarrow.nulls(count, pyarrow.utf8())
        if lines.problems:
            places = numpy.array([offset for offset, _ in lines.problems])
            rows = numpy.maximum(numpy.searchsorted(lines.offsets, places, "right") - 1, 0)
            numpy.add.at(counts, rows, 1)
            messages: list[str | None] = [None] * count
            for row, (_, message) in zip(reversed(rows), reversed(lines.problems)):
                messages[row] = message
            firsts = pyarrow.array(messages, pyarrow.utf8())
        columns["problems"] = pyarrow.array(counts)
        columns["first_problem"] = firsts
    return columns


def _read(pieces: list[Piece], settings: Settings, names: list[str]) -> Iterator[pyarrow.RecordBatch]:
    settle()
    wanted = set(names)
    with_offsets = not wanted.isdisjoint({"offset", "problems", "first_problem"})
    for piece in pieces:
        parts = (
            read_records(piece, settings)
            if settings.records
            else (_line_columns(lines, wanted) for lines in read_lines(piece, settings, with_offsets))
        )
        for columns in parts:
            count = len(next(iter(columns.values())))
            if "file" in wanted:
                columns["file"] = pyarrow.repeat(pyarrow.scalar(piece.path), count)
            if count:
                yield pyarrow.RecordBatch.from_arrays([columns[name] for name in names], names)


class EncconvReader(DataSourceReader):
    """Reads files in a batch query."""

    def __init__(self, settings: Settings, schema: StructType):
        _check_schema(schema, settings)
        self._settings = settings
        self._names = schema.fieldNames()

    def partitions(self) -> list[InputPartition]:
        return [Task(pieces) for pieces in plan(self._settings)] or [Task([])]

    def read(self, partition: InputPartition) -> Iterator[pyarrow.RecordBatch]:
        return _read(partition.pieces, self._settings, self._names)


class EncconvStreamReader(DataSourceStreamReader):
    """Reads each file that appears once, when it is there under its name and stays as it is."""

    def __init__(self, settings: Settings, schema: StructType):
        _check_schema(schema, settings)
        self._settings = settings
        self._names = schema.fieldNames()

    def initialOffset(self) -> dict:
        return {}

    def latestOffset(self) -> dict:
        files = [file for path in self._settings.paths for file in list_files(path)]
        return {file.path: file.size for file in files}

    def partitions(self, start: dict, end: dict) -> list[InputPartition]:
        files = [File(path, size) for path, size in end.items() if path not in start]
        return [Task(pieces) for pieces in plan_files(files, self._settings)]

    def read(self, partition: InputPartition) -> Iterator[pyarrow.RecordBatch]:
        return _read(partition.pieces, self._settings, self._names)
