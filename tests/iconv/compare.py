#!/usr/bin/env python3
"""Sets what calls.c prints with the C library's iconv beside what it prints with ours.

    compare.py PROCESSOR THEIRS OURS...

THEIRS and OURS are built programs; a program of ours may be given several times, linked with
different C libraries: all must print the same. Each difference needs a reason in differences.txt,
and each reason for PROCESSOR a difference. Ends with status 1 otherwise.
"""

import pathlib
import re
import subprocess
import sys

SHOWN = 20


def run(program, *cases):
    return subprocess.run([program, *cases], check=True, capture_output=True, text=True).stdout


def sums(program):
    return dict(line.rsplit(" ", 1) for line in run(program).splitlines())


def read_reasons(processor):
    path = pathlib.Path(__file__).with_name("differences.txt")
    lines = path.read_text(encoding="utf-8").splitlines()
    rows = [line.split(None, 1) for line in lines if line and not line.startswith("#")]
    rows = [(*pattern.rpartition("@"), reason) for pattern, reason in rows]
    return [(re.compile(pattern), reason) for only, _, pattern, reason in rows
            if only in ("", processor)]


def main():
    processor, theirs_program, ours_program, *others = sys.argv[1:]
    theirs, ours = sums(theirs_program), sums(ours_program)
    failures = [f"{other} prints something else than {ours_program}" for other in others
                if sums(other) != ours]
    reasons = read_reasons(processor)
    used = [0] * len(reasons)
    unexplained = []
    differences = [case for case in theirs | ours if theirs.get(case) != ours.get(case)]
    for case in differences:
        found = next((i for i, (pattern, _) in enumerate(reasons) if pattern.match(case)), None)
        if found is None:
            unexplained.append(case)
        else:
            used[found] += 1
    for case in unexplained[:SHOWN]:
        print(f"{case}\n theirs: {run(theirs_program, case)} ours: {run(ours_program, case)}")
    if unexplained:
        failures.append(f"{len(unexplained)} differences have no reason")
    failures += [f"no difference has the reason of {pattern.pattern}"
                 for (pattern, _), count in zip(reasons, used) if not count]
    print(f"{len(theirs)} cases, {len(differences)} differences")
    for (_, reason), count in zip(reasons, used):
        print(f"{count:6} {reason}")
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
