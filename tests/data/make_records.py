#!/usr/bin/env python3
"""Makes the sample files of mainframe records from the tables beside it.

accounts.vb.37 has records of several lengths in blocks, in code page 37; accounts.fb.1047 records of
80 bytes, in code page 1047. accounts.json is the same table, and accounts.fields the layout. orders.fb.939 and
orders.fb.935 have records of 50 bytes, whose Japanese and Chinese texts shift into double bytes and back
between packed and binary numbers. Text is
converted by Python's codecs and the C library's iconv, numbers by what is below. Run it only to change
the samples; the results are committed.
"""

import csv
import io
import json
import pathlib
import subprocess

HERE = pathlib.Path(__file__).parent
BLOCK = 300


def cp037(text):
    return text.encode("cp037")


def iconv(name):
    return lambda text: subprocess.run(["iconv", "-f", "UTF-8", "-t", name], input=text.encode(),
                                       capture_output=True, check=True).stdout


def digits(text, decimals, count):
    """The digits of a number with so many decimals, and whether it is negative."""
    whole, _, fraction = text.lstrip("-").partition(".")
    assert len(fraction) == decimals, text
    return (whole + fraction).zfill(count), text.startswith("-")


def packed(text, decimals, length, signs="CD"):
    number, negative = digits(text, decimals, length * 2 - 1)
    return bytes.fromhex(number + signs[negative])


def zoned(text, decimals, length, signs="CD"):
    number, negative = digits(text, decimals, length)
    return bytes.fromhex("".join("F" + d for d in number[:-1]) + signs[negative] + number[-1])


def record(row, encode):
    data = zoned(row["id"], 0, 5, "F") + encode(row["name"]).ljust(24, b"\x40")
    data += zoned(row["opened"], 0, 8, "F") + packed(row["balance"], 2, 6)
    data += packed(row["limit"], 0, 3, "F") + int(row["visits"]).to_bytes(2, "big", signed=True)
    data += zoned(row["rate"], 3, 4)
    return data + (encode(row["remark"]).ljust(28, b"\x40") if row["remark"] else b"")


def order(row, encode):
    data = zoned(row["id"], 0, 5, "F") + encode(row["item"]).ljust(20, b"\x40")
    data += packed(row["price"], 2, 5) + int(row["quantity"]).to_bytes(2, "big", signed=True)
    return data + encode(row["customer"]).ljust(18, b"\x40")


def described(data):
    return (len(data) + 4).to_bytes(2, "big") + b"\0\0" + data


def blocks(records):
    block = b""
    for data in records:
        if len(block) + len(described(data)) + 4 > BLOCK:
            yield described(block)
            block = b""
        block += described(data)
    yield described(block)


def as_json(row):
    numbers = {"id", "opened", "balance", "limit", "visits", "rate"}
    members = (f"{json.dumps(name)}: " +
               (value if name in numbers else json.dumps(value or None, ensure_ascii=False))
               for name, value in row.items())
    return "{" + ", ".join(members) + "}\n"


def read_table(name):
    return list(csv.DictReader(io.StringIO((HERE / name).read_bytes().decode())))


def main():
    rows = read_table("accounts.csv")
    (HERE / "accounts.vb.37").write_bytes(b"".join(blocks(record(row, cp037) for row in rows)))
    (HERE / "accounts.fb.1047").write_bytes(
        b"".join(record(row, iconv("IBM1047")).ljust(80, b"\x40") for row in rows))
    for language, page in (("japanese", "939"), ("chinese", "935")):
        encode = iconv("IBM" + page)
        (HERE / f"orders.fb.{page}").write_bytes(
            b"".join(order(row, encode) for row in read_table(f"orders-{language}.csv")))
    (HERE / "accounts.json").write_text("".join(as_json(row) for row in rows))


if __name__ == "__main__":
    main()
