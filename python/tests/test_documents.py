"""The examples of the package's documentation, and CPython's own tests."""

import doctest
import importlib
import pathlib
import subprocess
import sys

import pytest

HERE = pathlib.Path(__file__).parent


@pytest.mark.parametrize("name", ["encconv", "encconv._codecs", "encconv._conversion"])
def test_docstrings(name):
    result = doctest.testmod(importlib.import_module(name))
    assert result.attempted > 0
    assert result.failed == 0


def test_tests_of_cpython(tmp_path):
    pytest.importorskip("test.test_codecs", reason="this Python has no tests of its own")
    ran = subprocess.run(
        [sys.executable, HERE / "cpython_tests.py"], cwd=tmp_path, capture_output=True, text=True
    )
    assert ran.returncode == 0, ran.stdout + ran.stderr
    assert " passed, 0 failed" in ran.stdout
