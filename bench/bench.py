"""Runs the rows of rows.txt with the measuring program and writes the results; see run.sh."""

import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

import report
import texts

HERE = pathlib.Path(__file__).resolve().parent
MODES = {"Short": "short", "Reopened": "reopened", "Unconvertible": "bad", "Large": "pair",
         "Memory": "memory"}
UNITS = {"short": "ns", "reopened": "ns", "memory": "bytes"}
TEXT_SIZE, LARGE_SIZE, COUNTED_SIZE = 4 << 20, 64 << 20, 1 << 18


def data_lines(name):
    lines = (HERE / name).read_text().splitlines()
    return [line.split() for line in lines if line and not line.startswith("#")]


def read_rows():
    keys = ("page", "family", "name", "iconv", "icu", "rs")
    encodings = {fields[0]: {key: "" if field == "-" else field for key, field in zip(keys, fields)}
                 for fields in data_lines("encodings.txt")}
    rows = []
    for group, source, target, text, goal, *rest in data_lines("rows.txt"):
        orientation, markup_goal, size = [float(field) for field in rest] + [0] * (3 - len(rest))
        pages = [page for page, e in encodings.items() if e["family"]] if group == "Family" else ["*"]
        for page in pages:
            for markup in (False, True) if markup_goal else (False,):
                row = {"group": "Markup" if markup else encodings[page]["family"] if page != "*"
                       else group, "markup": markup, "text": text, "bytes": int(size), "encodings": encodings,
                       "from": encodings[source.replace("*", page)],
                       "to": encodings[target.replace("*", page)],
                       "goal": markup_goal if markup else float(goal),
                       "orientation": 0 if markup else orientation}
                row["title"] = (f"{row['from']['name']} → {row['to']['name']}, "
                                f"{text.replace('-', ', ')}" + (", markup" if markup else "")
                                + (f", {size:.0f} bytes" if size else ""))
                rows.append(row)
    return rows


def program_arguments(row, mode, rounds, seconds, files):
    names = [row[side][key] for side in ("from", "to") for key in ("page", "iconv", "icu", "rs")]
    return [mode, str(rounds), str(seconds), *names, *map(str, files)]


def write_files(folder, contents):
    files = []
    for number, content in enumerate(contents):
        files.append(folder / f"{number}.txt")
        files[-1].write_bytes(content)
    return files


def make_inputs(row, mode, samples):
    if mode in ("short", "reopened"):
        return texts.make_strings(row, samples, 16)
    inputs = [texts.make_text(row, samples, TEXT_SIZE)]
    if mode == "bad":
        inputs.append(texts.make_text(row, samples, TEXT_SIZE, bad=True))
    elif mode in ("pair", "memory"):
        inputs.append(texts.make_text(row, samples, LARGE_SIZE))
    return inputs


def measure(row, program, quick, samples):
    mode = MODES.get(row["group"], "speed")
    result = {"group": row["group"], "row": row["title"], "unit": UNITS.get(mode, "MB/s"),
              "goal": row["goal"], "orientation": row["orientation"], "results": {}, "notes": []}
    with tempfile.TemporaryDirectory() as folder:
        files = write_files(pathlib.Path(folder), make_inputs(row, mode, samples))
        for run in [[file] for file in files] if mode == "memory" else [files]:
            limits = (3, 0.06) if quick else (7, 0.6)
            arguments = program_arguments(row, mode, *limits, run)
            lines = subprocess.run([program, *arguments], capture_output=True, text=True, check=True)
            for kind, name, *rest in map(str.split, lines.stdout.splitlines()):
                if kind == "note":
                    note = " ".join([name.removesuffix("-legs"), *rest])
                    result["notes"] += [note] if note not in result["notes"] else []
                    continue
                if mode == "memory":
                    name = "4 MiB" if run == files[:1] else "64 MiB"
                name = name.removesuffix("-legs")  # of two ways of one peer the better counts
                better = min if result["unit"] == "ns" else max
                known = result["results"].get(name, float(rest[0]))
                result["results"][name] = better(known, float(rest[0]))
    return result


def count_instructions(rows, program, samples):
    """Instructions for each byte of input: what three conversions take more than one does."""
    counted = []
    for row in rows:
        with tempfile.TemporaryDirectory() as folder:
            text = texts.make_text(row, samples, COUNTED_SIZE)
            files = write_files(pathlib.Path(folder), [text])
            totals = []
            for rounds in (1, 3):
                command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", program,
                           *program_arguments(row, "repeat", rounds, 0, files)]
                log = subprocess.run(command, capture_output=True, text=True, check=True).stderr
                totals.append(int(re.search(r"Collected : (\d+)", log)[1]))
        each = (totals[1] - totals[0]) / 2 / len(text)
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
    samples = texts.read_samples(HERE / "samples.txt")
    rows = [row for row in read_rows() if options.filter in f"{row['group']}: {row['title']}"]
    if options.instructions:
        rows = [row for row in rows if row["group"] == "Instructions"]
        report.write_instructions(count_instructions(rows, options.program, samples), HERE)
        return
    results = []
    for row in rows:
        if row["group"] != "Instructions":
            results.append(measure(row, options.program, options.quick, samples))
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
