"""Records, fields and the command."""

import io
import subprocess
import sys
from decimal import Decimal

import pytest

from encconv import records

LAYOUT = """
id       1  3  zoned:unsigned
name     4  6  text
balance 10  3  packed:scale=2   # with its sign
visits  13  2  binary
"""
ROWS = [
    {"id": 7, "name": "Müller", "balance": Decimal("-12.34"), "visits": 300},
    {"id": 8, "name": "", "balance": Decimal("0.50"), "visits": None},
]


@pytest.mark.parametrize("format", ["fixed:14", "rdw", "bdw"])
def test_rows_come_back(format):
    file = io.BytesIO()
    rows = ROWS[: 1 if format == "fixed:14" else 2]
    records.write_rows(file, rows, format, LAYOUT, "ibm273")
    file.seek(0)
    assert list(records.read_rows(file, format, LAYOUT, "ibm273")) == rows
    file.seek(0)
    found = list(records.read_records(file, format))
    assert found[0].data == bytes.fromhex("f0f0f7 d4d09393 8599 01234d 012c".replace(" ", ""))
    assert [record.number for record in found] == list(range(1, len(rows) + 1))


def test_problems_have_their_places():
    damaged = bytes.fromhex("0010 0000 f0f0c1 d4d093938599 012341") + b"\x00\x02"
    with pytest.raises(records.RecordError) as caught:
        list(records.read_rows(io.BytesIO(damaged), "rdw", LAYOUT, "ibm273"))
    problem = caught.value.problem
    assert (problem.kind, problem.record, problem.field, problem.offset) == ("number", 1, "balance", 13)
    problems = []
    rows = list(
        records.read_rows(
            io.BytesIO(damaged), "rdw", LAYOUT, 20273, on_error="drop", on_problem=problems.append
        )
    )
    assert rows[0]["balance"] is None and rows[0]["name"] == "Müller"
    assert problems[0].kind == "number" and len(problems) > 1
    with pytest.raises(records.RecordError, match="name"):
        records.write_rows(io.BytesIO(), [{**ROWS[0], "name": "x" * 7}], "rdw", LAYOUT)
    with pytest.raises(KeyError, match="'nane'"):
        records.write_rows(io.BytesIO(), [{"nane": 1}], "rdw", LAYOUT)
    for format, layout in (("rdw", "a 0 1 text"), ("none", LAYOUT)):
        with pytest.raises(ValueError):
            list(records.read_rows(io.BytesIO(), format, layout))


def command(*arguments, data=b""):
    return subprocess.run(
        [sys.executable, "-m", "encconv", *arguments], input=data, capture_output=True
    )


def test_command(tmp_path):
    ran = command("-f", "ibm037", "-t", "utf-8", data=b"\xc8\x89")
    assert (ran.returncode, ran.stdout) == (0, b"Hi")
    target = tmp_path / "out"
    ran = command("-f", "utf-8", "-t", "cp1252", "-o", str(target), data="Ж".encode())
    assert ran.returncode == 1 and b"lacks U+0416" in ran.stderr and not target.exists()
    assert b"Shift_JIS" in command("--list", "shift").stdout
    text = "Съешь ещё этих мягких французских булок".encode("cp1251")
    assert b"windows-1251" in command("--detect", data=text).stdout
    assert command("-t", "utf-8", data=text).stdout.decode().startswith("Съешь")
    assert command("-f", "nothing", data=b"").returncode == 2
