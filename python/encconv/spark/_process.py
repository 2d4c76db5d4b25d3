"""What pyspark does in its processes beside the tasks."""

from __future__ import annotations

import gc
import os
import sys
import zipimport
from functools import cache

import pyspark


@cache
def _freeze() -> None:
    gc.freeze()


@cache
def _spark_folder() -> str:
    """Where Spark is, with its archives of Python modules and its jars."""
    root = os.path.dirname(os.path.dirname(os.path.abspath(pyspark.__file__)))
    if root.endswith(".zip"):  # SPARK_HOME/python/lib/pyspark.zip
        root = os.path.dirname(os.path.dirname(os.path.dirname(root)))
    return os.path.join(root, "")


def settle() -> None:
    """Spares a process what costs a tenth of a second at every task, which is as long as reading
    32 MiB takes: a collection of garbage among all that was ever imported, and reading the
    directory of Spark's archives again for each folder in them.
    """
    _freeze()
    # Python asks a finder to look again whether its archive has changed. Finders that are left out
    # come back when a module is looked for, and know the directory.
    for path, finder in [*sys.path_importer_cache.items()]:
        if isinstance(finder, zipimport.zipimporter) and path.startswith(_spark_folder()):
            del sys.path_importer_cache[path]
