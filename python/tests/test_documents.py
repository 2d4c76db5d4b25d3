"""The examples of the package's documentation, and CPython's own tests."""

import doctest
import importlib
import pathlib
import subprocess
import sys

import pytest

HERE = pathlib.Path(__file__).parent


MODULES = ["encconv", "encconv._codecs", "encconv._conversion", "encconv.arrow", "encconv.records"]


@pytest.mark.parametrize("name", MODULES)
def test_docstrings(name):
    if name == "encconv.arrow":
        pytest.importorskip("pyarrow")
    result = doctest.testmod(importlib.import_module(name))
    assert result.attempted > 0
    assert result.failed == 0


def test_types():
    pytest.importorskip("mypy")
    example = HERE / "typed_example.py"
    modules = [f"-m{name}" for name in MODULES]
    for checked in ([example], modules):
        ran = subprocess.run(
            [sys.executable, "-m", "mypy", "--strict", "--cache-dir=/dev/null", *checked],
            capture_output=True, text=True,
        )  # fmt: skip
        assert ran.returncode == 0, ran.stdout + ran.stderr
    subprocess.run([sys.executable, example], check=True)


def test_recipes_of_the_guide():
    for library in ("pyarrow", "pandas", "polars", "duckdb"):
        pytest.importorskip(library)
    guide = HERE.parents[1] / "docs" / "python.md"
    result = doctest.testfile(str(guide), module_relative=False, encoding="utf-8")
    assert result.attempted > 30
    assert result.failed == 0


def test_other_characters_than_those_of_python_are_listed():
    ran = subprocess.run(
        [sys.executable, HERE / "mapping_differences.py"], capture_output=True, text=True
    )
    assert ran.returncode == 0, ran.stdout + ran.stderr


def test_tests_of_cpython(tmp_path):
    pytest.importorskip("test.test_codecs", reason="this Python has no tests of its own")
    ran = subprocess.run(
        [sys.executable, HERE / "cpython_tests.py"], cwd=tmp_path, capture_output=True, text=True
    )
    assert ran.returncode == 0, ran.stdout + ran.stderr
    assert " passed, 0 failed" in ran.stdout
