#!/usr/bin/env python3
"""Measures encconv.spark on a cluster of two workers, each bound to a core, on loopback: one worker
and two, and beside Spark's own readers and the COBOL data source, taken alternately.

    scripts/spark.sh --bench

Prints a table of seconds and MiB/s; the middle one of the rounds counts.
"""

import argparse
import json
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "python" / "tests" / "spark"))

from cluster import Cluster  # noqa: E402

MIB = 1 << 20
LAYOUT = """id 1 9 zoned:unsigned
name 10 30 text
balance 40 6 packed:scale=2
visits 46 4 binary
city 50 31 text"""
COPYBOOK = """       01  ACCOUNT.
           05  ID       PIC 9(9).
           05  NAME     PIC X(30).
           05  BALANCE  PIC S9(9)V99 COMP-3.
           05  VISITS   PIC S9(9) COMP.
           05  CITY     PIC X(31).
"""
# Released for Scala 2.12, hence for Spark 3.5.
COBOL = "za.co.absa.cobrix:spark-cobol_2.12:2.6.9"


# ---- Data. ----


def repeat(path: pathlib.Path, block: bytes, size: int) -> pathlib.Path:
    if not path.exists() or path.stat().st_size < size:
        with open(path, "wb") as file:
            while file.tell() < size:
                file.write(block)
    return path


def make_data(work: pathlib.Path, size: int) -> dict[str, pathlib.Path]:
    import io

    import encconv
    from encconv import records

    text = (ROOT / "tests" / "data" / "japanese.txt").read_text(encoding="utf-8")
    text = text.replace("\r\n", "\n") + "\n"
    lines = encconv.encode(text * (MIB // len(text.encode()) + 1), "cp932", "ignore")
    wide = encconv.encode(text * (MIB // len(text.encode()) + 1), "utf-16le")
    file = io.BytesIO()
    names = ("HARTLEY, THOMAS J.", "O'BRIEN & SONS", "LI", "MONTGOMERY-WATSON, ELIZABETH")
    rows = (
        {
            "id": i,
            "name": names[i % 4],
            "balance": f"{i * 37 % 100_000_000 / 100:.2f}",
            "visits": i,
            "city": "SAINT LOUIS",
        }
        for i in range(MIB // 80)
    )
    records.write_rows(file, rows, "fixed:80", LAYOUT, "ibm037")
    return {
        "932": repeat(work / f"text-{size}.932", lines, size),
        "utf-16": repeat(work / f"text-{size}.utf16", wide, size),
        "records": repeat(work / f"records-{size}.037", file.getvalue(), size),
    }


# ---- What is measured. ----


def ours(spark, path, **options):
    schema = options.pop("schema", None)
    reader = spark.read.format("encconv").options(**options)
    return (reader.schema(schema) if schema else reader).load(str(path))


def own_lines(spark, path, encoding):
    """Lines by Spark's CSV reader, which is the one that has an encoding: of one column."""
    options = {"encoding": encoding, "sep": "\x01", "quote": "", "comment": "", "escape": ""}
    return spark.read.schema("value string").csv(str(path), **options)


def cobol(spark, path):
    options = {"copybook_contents": COPYBOOK, "ebcdic_code_page": "cp037", "encoding": "ebcdic"}
    return spark.read.format("cobol").options(**options).load(str(path))


def cases(data):
    fields = {"encoding": "cp037", "recordLength": "80", "fields": LAYOUT, "trim": "true"}
    own = "id long, name string, balance decimal(11,2), visits long, city string"
    value = "value string"
    return {
        "932, lines": lambda s: ours(s, data["932"], encoding="cp932", schema=value),
        "932, lines, place and problems": lambda s: ours(s, data["932"], encoding="cp932"),
        "932, lines, Spark's csv": lambda s: own_lines(s, data["932"], "MS932"),
        "UTF-16LE, lines": lambda s: ours(s, data["utf-16"], encoding="utf-16le", schema=value),
        "UTF-16LE, lines, Spark's csv": lambda s: own_lines(s, data["utf-16"], "UTF-16LE"),
        "37, fields of records": lambda s: ours(s, data["records"], schema=own, **fields),
        "37, fields of records, cobol": lambda s: cobol(s, data["records"]),
    }


def run(frame) -> float:
    began = time.monotonic()
    frame.write.format("noop").mode("overwrite").save()
    return time.monotonic() - began


def measure(cluster: Cluster, order: dict) -> dict[str, list[float]]:
    """Seconds of each case, one after the other and that again, behind smaller runs that warm up."""
    options = {"spark.cores.max": str(order["cores"]), "spark.sql.legacy.javaCharsets": "true"}
    if order["packages"]:
        options["spark.jars.packages"] = order["packages"]
    spark = cluster.session(**options)
    small, large = (cases(order["data"][size]) for size in ("small", "large"))
    seconds: dict[str, list[float]] = {name: [] for name in order["cases"]}
    try:
        for name in seconds:
            run(small[name](spark))
        for _ in range(order["rounds"]):
            for name, found in seconds.items():
                found.append(run(large[name](spark)))
    finally:
        spark.stop()
    return seconds


def worker_mode(order: dict) -> None:
    """In a process of its own, which may be of another Spark: prints the seconds."""
    cluster = Cluster(pathlib.Path(order["folder"]), memory="2g")
    try:
        for core in range(order["cores"]):
            cluster.start_worker(core)
        print("seconds", json.dumps(measure(cluster, order)))
    finally:
        cluster.stop()


def main() -> None:
    parser = argparse.ArgumentParser()
    parser.add_argument("--cobol", help="a Python with the Spark of the COBOL data source")
    parser.add_argument("--work", type=pathlib.Path, default=ROOT / "build" / "spark" / "bench")
    parser.add_argument("--size", type=int, default=1024, help="MiB")
    parser.add_argument("--rounds", type=int, default=3, help="in each session")
    parser.add_argument("--sessions", type=int, default=2, help="of each kind, alternately")
    parser.add_argument("--one", help=argparse.SUPPRESS)
    given = parser.parse_args()
    if given.one:
        return worker_mode(json.loads(given.one))
    given.work.mkdir(parents=True, exist_ok=True)
    data = {
        "small": make_data(given.work, 32 * MIB),
        "large": make_data(given.work, given.size * MIB),
    }
    names = list(cases(data["large"]))
    own = [name for name in names if "cobol" not in name]
    kinds = [
        (sys.executable, 2, own),
        (sys.executable, 1, [name for name in own if "'s" not in name]),
    ]
    if given.cobol:
        kinds.append((given.cobol, 2, [name for name in names if "cobol" in name]))
    seconds: dict[tuple[str, int], list[float]] = {}
    for _ in range(given.sessions):
        for python, cores, which in kinds:
            order = {
                "cases": which,
                "cores": cores,
                "rounds": given.rounds,
                "folder": str(ROOT / "build" / "spark" / "cluster"),
                "packages": COBOL if python == given.cobol else "",
                "data": {k: {n: str(p) for n, p in v.items()} for k, v in data.items()},
            }
            ran = subprocess.run(
                [python, __file__, "--one", json.dumps(order)], capture_output=True, text=True
            )
            found = [line for line in ran.stdout.splitlines() if line.startswith("seconds")]
            if not found:
                sys.exit(f"{', '.join(which)}: {ran.stderr[-3000:]}")
            for name, each in json.loads(found[0].partition(" ")[2]).items():
                print(f"{name}, {cores}: {each}", flush=True)
                seconds.setdefault((name, cores), []).extend(each)
    print("\n| what | workers | seconds | MiB/s |\n| --- | --- | --- | --- |")
    for (name, cores), each in seconds.items():
        middle = statistics.median(each)
        print(f"| {name} | {cores} | {middle:.1f} | {given.size / middle:.0f} |")


if __name__ == "__main__":
    main()
