"""CSV and JSON in any encoding: transcoded to UTF-8 in parallel, then read by Spark's own readers."""

from __future__ import annotations

import uuid
from collections.abc import Iterator

import pyarrow
from pyspark.sql import DataFrame, SparkSession

from ._files import file_system, list_files
from ._lines import read_text
from ._options import Settings
from ._pieces import Piece, plan_files

_COPY = 1 << 22


def transcode(
    spark: SparkSession, path: str | list[str], encoding: str, work: str, errors: str = "stop"
) -> str:
    """Makes UTF-8 of files in another encoding, all workers at once, and gives the new folder below
    ``work`` with them.

    ``work`` must be reached by all workers. The folder is there only when everything went well;
    who made it deletes it.
    """
    paths = [path] if isinstance(path, str) else list(path)
    settings = Settings.of({"path": paths[0], "encoding": encoding, "errors": errors})
    files = [file for each in paths for file in list_files(each)]
    numbers = {file.path: number for number, file in enumerate(files)}
    tasks = plan_files(files, settings)
    folder = f"{work.rstrip('/')}/encconv-{uuid.uuid4().hex[:12]}"
    parts = f"{folder}.parts"
    try:
        made = _run(spark, [_Transcoding(task, settings, parts, numbers) for task in tasks])
        by_file: dict[str, list[tuple[int, str]]] = {file.path: [] for file in files}
        for file, begin, name in made:
            by_file[file].append((begin, name))
        joins = [
            _Joining([name for _, name in sorted(pieces)], f"{folder}/{_name_of(file, number)}")
            for number, (file, pieces) in enumerate(by_file.items())
        ]
        _run(spark, joins)
    except BaseException:
        _remove(folder)
        raise
    finally:
        _remove(parts)
    return folder


def _name_of(path: str, number: int) -> str:
    return f"{number:05d}-{path.rsplit('/', 1)[-1]}"


def _remove(folder: str) -> None:
    system, path = file_system(folder)
    if system.exists(path):
        system.rm(path, recursive=True)


class _Transcoding:
    """Writes each piece of a task as UTF-8 to a file of its own."""

    def __init__(self, pieces: list[Piece], settings: Settings, folder: str, numbers: dict):
        self._pieces = pieces
        self._settings = settings
        self._folder = folder
        self._numbers = {piece.path: numbers[piece.path] for piece in pieces}

    def run(self) -> Iterator[tuple[str, int, str]]:
        system, folder = file_system(self._folder)
        system.makedirs(folder, exist_ok=True)
        for piece in self._pieces:
            number = self._numbers[piece.path]
            name = f"{self._folder}/{number:05d}-{piece.begin}-{uuid.uuid4().hex[:8]}"
            with system.open(file_system(name)[1], "wb") as file:
                for text in read_text(piece, self._settings):
                    file.write(text)
            yield piece.path, piece.begin, name


class _Joining:
    """Makes a file of its pieces."""

    def __init__(self, pieces: list[str], path: str):
        self._pieces = pieces
        self._path = path

    def run(self) -> Iterator[tuple[str, int, str]]:
        system, path = file_system(self._path)
        system.makedirs(path.rsplit("/", 1)[0], exist_ok=True)
        passing = f"{path}.{uuid.uuid4().hex[:8]}"
        with system.open(passing, "wb") as file:
            for piece in self._pieces:
                with system.open(file_system(piece)[1], "rb") as part:
                    while data := part.read(_COPY):
                        file.write(data)
        system.mv(passing, path)
        yield self._path, 0, ""


def _run(spark: SparkSession, tasks: list) -> list[tuple[str, int, str]]:
    """Runs each task on a worker; what a second attempt gives counts as the first's."""
    if not tasks:
        return []

    def run(batches: Iterator[pyarrow.RecordBatch]) -> Iterator[pyarrow.RecordBatch]:
        for batch in batches:
            for number in batch.column(0).to_pylist():
                rows = list(tasks[number].run())
                columns = [pyarrow.array(column) for column in zip(*rows)]
                yield pyarrow.RecordBatch.from_arrays(columns, ["file", "begin", "name"])

    frame = spark.range(0, len(tasks), 1, len(tasks))
    made = frame.mapInArrow(run, "file string, begin long, name string").collect()
    return [tuple(row) for row in made]


def read_csv(
    spark: SparkSession,
    path: str | list[str],
    encoding: str,
    work: str,
    errors: str = "stop",
    schema=None,
    **options,
) -> DataFrame:
    """CSV in any encoding, by ``transcode`` and Spark's reader, whose options follow: ``header``,
    ``multiLine`` and all others.
    """
    folder = transcode(spark, path, encoding, work, errors)
    return spark.read.csv(folder, schema=schema, encoding="UTF-8", **options)


def read_json(
    spark: SparkSession,
    path: str | list[str],
    encoding: str,
    work: str,
    errors: str = "stop",
    schema=None,
    **options,
) -> DataFrame:
    """JSON in any encoding, as ``read_csv``."""
    folder = transcode(spark, path, encoding, work, errors)
    return spark.read.json(folder, schema=schema, encoding="UTF-8", **options)
