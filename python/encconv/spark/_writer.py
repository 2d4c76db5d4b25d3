"""Writing files in any encoding."""

from __future__ import annotations

import uuid
from collections.abc import Iterator
from contextlib import suppress
from dataclasses import dataclass

import pyarrow
import pyarrow.compute
from pyspark import TaskContext
from pyspark.sql.datasource import DataSourceArrowWriter, WriterCommitMessage
from pyspark.sql.types import StringType, StructType

from .. import _native
from ._files import file_system
from ._options import Settings, opening_of

_UTF8 = 65001
_MARK = "_job"  # in the folder of a job, as long as it goes on
_ATTEMPTS = 5


@dataclass
class Written(WriterCommitMessage):
    """A file that a task has written in the folder of its job."""

    name: str
    rows: int


class _LineFile:
    """Makes lines of columns of one text."""

    names = ["value"]

    def __init__(self, settings: Settings):
        self._settings = settings
        self._opening = opening_of(settings.encoding)
        self._rows = 0

    def write(self, columns: list[pyarrow.Array]) -> bytes:
        values = columns[0].fill_null("")
        ends = pyarrow.repeat(pyarrow.scalar(self._settings.line_end), len(values))
        lines = pyarrow.compute.binary_join_element_wise(values, ends, "")
        text = _bytes_of(lines)
        made, is_whole, _, _, problems = _native.convert(
            text, _UTF8, self._settings.encoding, self._settings.errors, False, 1
        )
        if not is_whole:
            offset, line, _, _, data, character, _ = problems[0]
            what = f"U+{character:04X}" if character is not None else data.hex(" ").upper()
            raise ValueError(
                f"encconv: row {self._rows + line} of the task: {self._settings.encoding} lacks {what}"
            )
        if self._rows and self._opening and made.startswith(self._opening):
            made = made[len(self._opening) :]
        self._rows += len(values)
        return made

    def finish(self) -> bytes:
        return b""


class _RecordFile:
    """Makes records of columns of one text, or of the fields."""

    def __init__(self, settings: Settings):
        self._file = _native.RecordFile(
            settings.records, settings.fields, settings.encoding, settings.errors
        )
        self.names = self._file.names or ["value"]

    def write(self, columns: list[pyarrow.Array]) -> bytes:
        made = self._file.write([column.cast(pyarrow.utf8()) for column in columns])
        if self._file.stopped is not None:
            raise ValueError(f"encconv: {self._file.stopped}")
        return made

    def finish(self) -> bytes:
        return self._file.finish()


def _bytes_of(values: pyarrow.Array) -> bytes:
    """The texts of a column one behind the other."""
    offsets = memoryview(values.buffers()[1]).cast("i")
    begin, end = offsets[values.offset], offsets[values.offset + len(values)]
    data = values.buffers()[2]
    return data[begin:end].to_pybytes() if data is not None else b""


def _file_of(settings: Settings) -> _LineFile | _RecordFile:
    return _RecordFile(settings) if settings.records else _LineFile(settings)


class EncconvWriter(DataSourceArrowWriter):
    """Writes a file for each task.

    Tasks write into a folder of the job, which readers do not look into; when all have ended, the
    files get their names, and ``_SUCCESS`` appears. What failed tasks left goes with the folder.
    A task may still run when its job has ended, as a second attempt or where another has failed: a
    mark in the folder, which goes first, tells it, so that it leaves nothing.
    """

    def __init__(self, settings: Settings, schema: StructType, overwrite: bool):
        self._settings = settings
        self._overwrite = overwrite
        self._job = uuid.uuid4().hex
        if len(settings.paths) != 1:
            raise ValueError("encconv: one path is required to write to")
        wanted = _file_of(settings).names
        given = schema.fieldNames()
        if sorted(given) != sorted(wanted):
            raise ValueError(
                f"encconv: the columns {', '.join(wanted)} are written, not {', '.join(given)}"
            )
        if not settings.fields and schema[0].dataType != StringType():
            raise ValueError("encconv: the column value must be a string")
        system, _, folder = self._places()
        system.makedirs(folder, exist_ok=True)
        system.pipe_file(f"{folder}/{_MARK}", b"")

    def _places(self):
        system, root = file_system(self._settings.paths[0])
        return system, root, f"{root}/_temporary-{self._job}"

    def write(self, iterator: Iterator[pyarrow.RecordBatch]) -> Written:
        system, _, folder = self._places()
        task = TaskContext.get()
        number = task.partitionId() if task is not None else 0
        # A second attempt of the task writes a file of its own.
        name = f"part-{number:05d}-{self._job[:8]}-{uuid.uuid4().hex[:8]}{self._settings.file_name}"
        _require_job(system, folder)
        rows = 0
        try:
            with system.open(f"{folder}/{name}", "wb") as file:
                made = _file_of(self._settings)
                for batch in iterator:
                    columns = [batch.column(batch.schema.get_field_index(n)) for n in made.names]
                    file.write(made.write(columns))
                    rows += batch.num_rows
                file.write(made.finish())
            _require_job(system, folder)
        except BaseException:
            with suppress(OSError):  # where the folder has gone, or goes in the meantime
                system.rm(f"{folder}/{name}")
            raise
        return Written(name, rows)

    def commit(self, messages: list[WriterCommitMessage | None]) -> None:
        system, root, folder = self._places()
        system.makedirs(root, exist_ok=True)
        before = [] if not self._overwrite else _files_of(system, root)
        for message in messages:
            if isinstance(message, Written) and message.rows:
                system.mv(f"{folder}/{message.name}", f"{root}/{message.name}")
        for old in before:
            system.rm(old)
        _remove(system, folder)
        system.pipe_file(f"{root}/_SUCCESS", b"")

    def abort(self, messages: list[WriterCommitMessage | None]) -> None:
        system, _, folder = self._places()
        _remove(system, folder)


def _require_job(system, folder: str) -> None:
    system.invalidate_cache()
    if system.exists(f"{folder}/{_MARK}"):
        return
    # Some file systems make the folder of a file anew.
    if system.exists(folder):
        _remove(system, folder)
    raise RuntimeError("encconv: the job of this task has ended")


def _remove(system, folder: str) -> None:
    """Removes the folder of a job, its mark first, while tasks may still make files in it."""
    if system.exists(f"{folder}/{_MARK}"):
        system.rm(f"{folder}/{_MARK}")
    for attempt in range(_ATTEMPTS):
        system.invalidate_cache()
        if not system.exists(folder):
            return
        try:
            system.rm(folder, recursive=True)
        except OSError:
            if attempt == _ATTEMPTS - 1:
                raise


def _files_of(system, root: str) -> list[str]:
    """The files of a folder, without what begins with ``_`` or ``.``."""
    found = system.ls(root, detail=True) if system.exists(root) else []
    return [
        entry["name"]
        for entry in found
        if entry["type"] != "directory" and entry["name"].rsplit("/", 1)[-1][0] not in "_."
    ]
