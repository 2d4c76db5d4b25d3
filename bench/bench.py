"""Runs the rows of rows.txt with the measuring program and writes the results; see run.sh."""

import argparse
import itertools
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time

import report
import texts

HERE = pathlib.Path(__file__).resolve().parent
MODES = {"Short": "short", "Unconvertible": "bad", "Web bad": "bad", "Unmappable": "drop", "Large": "large",
         "Memory": "memory", "First use": "first", "Tool": "file", "Start": "start", "Pipe": "pipe",
         "Instructions": "count"}  # of the groups; "speed" for all others
TEXT_SIZE, PIPE_SIZE, COUNTED_SIZE = 4 << 20, 300 << 20, 1 << 18
LARGE = 16  # times the text


def data_lines(name):
    lines = (HERE / name).read_text().splitlines()
    return [line.split() for line in lines if line and not line.startswith("#")]


def make_row(encodings, group, source, target, text, markup, goal, orientation, size):
    row = {"group": group, "mode": MODES.get(group, "speed"), "text": text, "markup": markup,
           "encodings": encodings, "from": encodings[source], "to": encodings[target],
           "bytes": int(size), "goal": float(goal), "orientation": float(orientation)}
    row["held_by"] = (row["from"],) if row["mode"] == "drop" else (row["from"], row["to"])
    row["title"] = (f"{row['from']['name']} → {row['to']['name']}, {text.replace('-', ', ')}"
                    + (", markup" if markup else "") + (f", {size} bytes" if row["bytes"] else ""))
    return row


def read_rows():
    keys = ("page", "family", "name", "iconv", "icu", "rs")
    encodings = {fields[0]: {key: "" if field == "-" else field for key, field in zip(keys, fields)}
                 for fields in data_lines("encodings.txt")}
    families = {page: e["family"] for page, e in encodings.items() if e["family"]}
    rows = []
    for group, source, target, names, goal, *rest in data_lines("rows.txt"):
        group = group.replace("_", " ")
        orientation, markup_goal, sizes = rest + ["0"] * (3 - len(rest))
        for page, text, size in itertools.product(families if group == "Family" else ["*"],
                                                  names.split(","), sizes.split(",")):
            pair = source.replace("*", page), target.replace("*", page)
            rows.append(make_row(encodings, families.get(page, group), *pair, text, False, goal,
                                 orientation, size))
            if markup_goal != "0":
                rows.append(make_row(encodings, "Markup", *pair, text, True, markup_goal, 0, size))
    return rows


def run_program(program, row, rounds, seconds, contents, prefix=()):
    """What the measuring program, or the one in front of it, says about these texts."""
    with tempfile.TemporaryDirectory() as folder:
        for number, content in enumerate(contents):
            (pathlib.Path(folder) / f"{number}.txt").write_bytes(content)
        names = [row[side][key] for side in ("from", "to") for key in ("page", "iconv", "icu", "rs")]
        files = [f"{number}.txt" for number in range(len(contents))]
        command = [*prefix, program, row["mode"], str(rounds), str(seconds), *names, *files]
        return subprocess.run(command, capture_output=True, text=True, check=True, cwd=folder)


def run_pipe(program, row, text, quick):
    """MB/s and MiB of the tools that a long text is written to."""
    names = {tool: [row["from"][key], row["to"][key]]
             for tool, key in (("encconv", "page"), ("iconv(1)", "iconv"), ("uconv", "icu"))}
    copies = PIPE_SIZE // len(text)
    values = {}
    for tool, (source, target) in names.items():
        path = program.parents[1] / "bin/encconv" if tool == "encconv" else tool.removesuffix("(1)")
        for _ in range(1 if quick else 3):
            with tempfile.NamedTemporaryFile("r") as usage:
                begin = time.perf_counter()
                command = ["time", "-o", usage.name, "-f", "%M", path, "-f", source, "-t", target]
                with subprocess.Popen(command, stdin=subprocess.PIPE,
                                      stdout=subprocess.DEVNULL) as process:
                    for _ in range(copies):
                        process.stdin.write(text)
                speed = copies * len(text) / (time.perf_counter() - begin) / 1e6
                assert process.returncode == 0, command
                values[tool] = max(speed, values.get(tool, 0))
                values[f"{tool}, MiB"] = int(usage.read()) / 1024
    return values


def make_inputs(row, samples):
    """The texts of a row, and how many bad pieces are in the second."""
    if row["bytes"]:
        return texts.make_strings(row, samples, 1 if row["mode"] in ("first", "start") else 16), 0
    text = texts.make_text(row, samples, COUNTED_SIZE if row["mode"] == "count" else TEXT_SIZE)
    if row["mode"] == "bad":
        spoilt, count = texts.spoil(row, text)
        return [text, spoilt], count
    return {"large": [text, text * LARGE], "memory": [text * LARGE]}.get(row["mode"], [text]), 0


def value_of(row, numbers, inputs, pieces):
    """What is reported, in the unit of the mode, of a contestant's seconds (memory: bytes)."""
    sizes = [len(text) for text in inputs]
    if row["group"] == "Web bad":
        return sizes[1] / numbers[1] / 1e6
    return {"short": lambda first, *_: first * 1e9,
            "first": lambda first: first * 1e3,
            "start": lambda first: first * 1e3,
            "memory": lambda first: max(first, 0) / 1024,
            "large": lambda first, second: first / sizes[0] / (second / sizes[1]),
            "bad": lambda first, second: (second - first * sizes[1] / sizes[0]) / pieces * 1e9,
            }.get(row["mode"], lambda first: sizes[0] / first / 1e6)(*numbers)


def measure(row, program, quick, samples):
    result = {"group": row["group"], "row": row["title"], "bytes": row["bytes"], "goal": row["goal"],
              "orientation": row["orientation"], "results": {}, "notes": []}
    inputs, pieces = make_inputs(row, samples)
    if row["mode"] == "pipe":
        result["results"] = run_pipe(program, row, inputs[0], quick)
        return result
    limits = (3, 0.04) if quick else (7, 0.4)
    limits = {"first": (1, 0), "large": (3, 0)}.get(row["mode"], limits)
    best = {}
    for _ in range(5 if row["mode"] == "first" else 1):
        for line in run_program(program, row, *limits, inputs).stdout.splitlines():
            kind, name, *numbers = line.split("\t")
            if kind == "note":
                result["notes"] += [name] if name not in result["notes"] else []
                continue
            numbers = [float(number) for number in numbers]
            best[name] = [min(pair) for pair in zip(numbers, best.get(name, numbers))]
    result["results"] = {name: float(f"{value_of(row, numbers, inputs, pieces):.4g}")
                         for name, numbers in best.items()}
    return result


def count_instructions(rows, program, samples):
    """Instructions for each byte of input: what three conversions take more than one does."""
    counted = []
    for row in rows:
        inputs, _ = make_inputs(row, samples)
        tool = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"]
        once, thrice = (int(re.search(r"Collected : (\d+)", log)[1]) for log in (
            run_program(program, row, rounds, 0, inputs, tool).stderr for rounds in (1, 3)))
        each = (thrice - once) / 2 / len(inputs[0])
        counted.append({"row": row["title"], "instructions per byte": round(each, 3)})
        print(f"{each:8.2f}  {row['title']}", flush=True)
    return counted


def main():
    parser = argparse.ArgumentParser(prog="run.sh")
    parser.add_argument("--filter", default="", help="only rows whose 'group: title' has this text")
    parser.add_argument("--quick", action="store_true", help="a tenth of the time, less exact")
    parser.add_argument("--publish", action="store_true",
                        help="write bench/results.json and the tables and plot in docs/, too")
    parser.add_argument("--instructions", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("out", type=pathlib.Path)
    options = parser.parse_args()
    program = options.program.resolve()
    samples = texts.read_samples(HERE / "samples.txt")
    rows = [row for row in read_rows() if options.filter in f"{row['group']}: {row['title']}"
            and (row["mode"] == "count") == options.instructions]
    if options.instructions:
        report.write_instructions(count_instructions(rows, program, samples), HERE)
        return
    results = []
    for row in rows:
        results.append(measure(row, program, options.quick, samples))
        print(report.line(results[-1]), file=sys.stderr, flush=True)
    options.out.mkdir(parents=True, exist_ok=True)
    report.write(results, options.out)
    print((options.out / "results.md").read_text())
    if options.publish:
        published = HERE / "results.json"
        old = json.loads(published.read_text()) if options.filter else []
        report.publish(old, results, HERE.parent)


if __name__ == "__main__":
    main()
