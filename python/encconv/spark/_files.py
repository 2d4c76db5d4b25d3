"""Files by way of fsspec: listing them, and reading and writing parts of them."""

from __future__ import annotations

import glob
import os
from dataclasses import dataclass
from urllib.parse import urlsplit

import fsspec


@dataclass(frozen=True, slots=True)
class File:
    """A file that is read."""

    path: str  #: as fsspec takes it, with its protocol where it is not local
    size: int


def file_system(path: str) -> tuple[fsspec.AbstractFileSystem, str]:
    """The file system of a path, and the path in it."""
    return fsspec.core.url_to_fs(path)


def _is_hidden(path: str, root: str) -> bool:
    parts = path[len(root) :].strip("/").split("/")
    return any(part.startswith(("_", ".")) for part in parts)


def list_files(path: str) -> list[File]:
    """The files of a path, a directory with all that is below it, or a glob, in the order of their
    names. What begins with ``_`` or ``.`` within a directory is left out, as Spark does.
    """
    system, root = file_system(path)
    roots = sorted(system.glob(root)) if glob.has_magic(root) else [root]
    found = []
    for each in roots:
        details = system.info(each)
        if details["type"] != "directory":
            found.append(File(system.unstrip_protocol(each), details["size"]))
            continue
        for name, inner in sorted(system.find(each, detail=True).items()):
            if inner["type"] != "directory" and not _is_hidden(name, each):
                found.append(File(system.unstrip_protocol(name), inner["size"]))
    if not found and glob.has_magic(root):
        raise FileNotFoundError(f"no file matches {path}")
    # fsspec leaves the host out that the files are on, with the user and the port.
    host = urlsplit(path).netloc if "host" in system.storage_options else ""
    return [File(_plain(file.path).replace(":///", f"://{host}/", 1), file.size) for file in found]


def _plain(path: str) -> str:
    return path[len("file://") :] if path.startswith("file:///") else path


class Parts:
    """Reads parts of a file, wherever it is."""

    def __init__(self, path: str):
        self._system, self._path = file_system(path)
        self._file = self._system.open(self._path, "rb", block_size=1 << 22)

    def read(self, begin: int, end: int) -> bytes:
        """The bytes from begin to end, fewer where the file ends before."""
        self._file.seek(begin)
        pieces = []
        while begin < end:
            piece = self._file.read(end - begin)
            if not piece:
                break
            pieces.append(piece)
            begin += len(piece)
        return pieces[0] if len(pieces) == 1 else b"".join(pieces)

    def close(self) -> None:
        self._file.close()

    def __enter__(self) -> Parts:
        return self

    def __exit__(self, *_) -> None:
        self.close()
