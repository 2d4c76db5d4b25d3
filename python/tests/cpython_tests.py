#!/usr/bin/env python3
"""Runs CPython's own tests of its codecs with the codecs here in the place of Python's.

    cpython_tests.py [TEST...]

What fails must be listed in cpython_differences.txt with its reason, and what is listed must fail.
The tests are the package `test` of the interpreter that runs this; on Debian that is
libpython3.11-testsuite.
"""

import importlib
import io
import os
import pathlib
import sys
import unittest
import warnings

MODULES = (
    "test_codecs",
    "test_multibytecodec",
    "test_codeccallbacks",
    "test_charmapcodec",
    "test_codecencodings_cn",
    "test_codecencodings_hk",
    "test_codecencodings_iso2022",
    "test_codecencodings_jp",
    "test_codecencodings_kr",
    "test_codecencodings_tw",
)
LISTED = pathlib.Path(__file__).with_name("cpython_differences.txt")


def listed_differences():
    """The tests that may fail: lines "TEST: REASON"; "#" begins a comment."""
    lines = LISTED.read_text(encoding="utf-8").splitlines()
    pairs = (line.split(": ", 1) for line in lines if line and not line.startswith("#"))
    return dict(pairs)


def main():
    import encconv

    encconv.replace_builtin()
    loader = unittest.TestLoader()
    suite = unittest.TestSuite()
    for name in MODULES:
        suite.addTests(loader.loadTestsFromModule(importlib.import_module(f"test.{name}")))
    if len(sys.argv) > 1:
        suite = loader.loadTestsFromNames([f"test.{name}" for name in sys.argv[1:]])
    warnings.simplefilter("ignore")
    output = io.StringIO()
    # Some of the tests leave files in the current folder.
    result = unittest.TextTestRunner(output if len(sys.argv) == 1 else sys.stderr).run(suite)
    failed = {}
    for test, message in result.failures + result.errors:
        name = getattr(test, "test_case", test).id().removeprefix("test.")
        failed.setdefault(name, message.strip().splitlines()[-1])
    listed = listed_differences()
    faults = [f"{name} fails: {why}" for name, why in failed.items() if name not in listed]
    if len(sys.argv) == 1:
        faults += [f"{name} is listed but does not fail" for name in listed if name not in failed]
    for fault in faults:
        print(fault)
    print(f"{result.testsRun - len(failed)} passed, {len(faults)} failed, {len(failed)} as listed"
          if not faults else f"{result.testsRun} ran, {len(failed)} fail, {len(faults)} not as listed")
    return 1 if faults else 0


if __name__ == "__main__":
    os.environ.setdefault("PYTHONWARNINGS", "ignore")
    sys.exit(main())
