#!/usr/bin/env python3
"""Makes small faults in the sources, one at a time, and reports those that no test finds.

Every fault is made in a copy of the tree (build/mutate/) and built as far as it reaches; the tests
then run until one of them fails. A fault that does not compile, or compiles to the same code, is
skipped, and so is what mutate-harmless.txt lists. Interrupted, it reports what it has. The exit
status is 1 when a fault was not found.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import platform
import queue
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
HARMLESS = Path(__file__).with_name("mutate-harmless.txt")
AREAS = ("encoding", "support", "interface", "iconv", "apps")
ELSEWHERE = re.compile(r"/(arm|wasm|texts)/|windows")  # what this machine does not compile
# The tests that are likely to find a fault, by where it is, besides those that name its file.
LIKELY = {
    "apps/": ["tool_test"],
    "iconv/": ["iconv_test"],
    "interface/": ["interface_test", "c_interface_test"],
    "support/": ["utf_helpers_test", "buffers_test", "content_coding_test"],
    "encoding/codecs/": ["codecs_test", "iso2022_test", "names_test"],
    "encoding/kernels/": ["kernels_test", "fast_path_test"],
    "encoding/stream/": ["stream_test", "stream_property_test"],
    "encoding/tables/": ["tables_test", "registry_test"],
    "encoding/": ["fast_path_test", "front_end_test", "pivot_steps_test", "unicode_test", "property_test"],
}
# Tests that are scripts: what they are given, in the build folder, and the targets.
SCRIPTS = {
    "documented_commands_test.py": (["bin/encconv"], ["encconv_cli"]),
    "iconv/command_test.py": (["bin/encconv-iconv", shutil.which("iconv")], ["encconv_iconv_cli"]),
    "iconv/compare.py": ([platform.machine(), "tests/iconv_calls_theirs", "tests/iconv_calls_ours"],
                         ["iconv_calls_theirs", "iconv_calls_ours"]),
}
# Of these folders no other test is built.
ONLY = {
    "apps/encconv/": ["tool_test", "names_test", "documented_commands_test.py"],
    "apps/encconv-iconv/": ["iconv/command_test.py"],
    "iconv/": ["iconv_test", "iconv/compare.py", "iconv/command_test.py"],
}

Mutant = collections.namedtuple("Mutant", "path line before after")

# ---- Which faults there are. ----

FLIPPED = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
           "&&": "||", "||": "&&", "+": "-", "-": "+"}
IGNORED = re.compile(  # string and character literals, comments, directives
    r'R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*(?:.|\n)*?\*/'
    r"|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.MULTILINE)
OPERATOR = re.compile(r"(?<= )(<=?|>=?|==|!=|&&|\|\||[+-])(?= [^>])")
PLUS_ONE = re.compile(r" [+-] 1(?=[;,) \]])")
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|0|[1-9]\d*)(?=[uUlL]*\b)(?!['.])")
NOT = re.compile(r"(?<![\w!])!(?=[\w(])")
CONDITION = re.compile(r"\bif \(([^;]*)\)(?= \{$| \w.*;$|$)")
RETURN = re.compile(r"\breturn (.+);$")
ROW = re.compile(r"\s*(?:[{\"'0-9]|-\d)")  # of a table; whose first row may be the declaration's
STATEMENT = re.compile(  # but for declarations, which the rest of the function needs
    r" +(?!(?:const|auto|static|constexpr|return|using|else|case|default|struct)\b|[\w:<>]+[*&]* \w+[;({])"
    r"[\w*(+-].*;")


def changes(code, begins_statement):
    """Places in a line, of which the literals and comments are blank, and what to write there."""
    for m in OPERATOR.finditer(code):
        yield m.span(), FLIPPED[m[0]]
    for m in PLUS_ONE.finditer(code):
        yield m.span(), ""
    for m in NUMBER.finditer(code):
        value = int(m[1], 0)
        shown = "0x{:X}" if m[1].startswith("0x") else "{}"
        yield m.span(), shown.format(value + 1)
        if value > 0:
            yield m.span(), shown.format(value - 1)
    for m in NOT.finditer(code):
        yield m.span(), ""
    for m in CONDITION.finditer(code):
        if m[1].count("(") == m[1].count(")"):
            yield m.span(1), "!({})"
    for m in RETURN.finditer(code):
        yield m.span(1), {"true": "false", "false": "true", "0": "1"}.get(m[1], "{{}}")
    if begins_statement and STATEMENT.fullmatch(code) and code.count("(") == code.count(")"):
        yield (0, len(code)), ";"


def mutants_of(path):
    text = (ROOT / path).read_text(encoding="utf-8")
    if "do not edit" in text[:500]:
        return  # made by a script
    blank = IGNORED.sub(lambda m: re.sub(r"[^\n]", "\0", m[0]), text)
    begins_statement = False
    for number, (line, code) in enumerate(zip(text.split("\n"), blank.split("\n")), 1):
        code = code.rstrip("\0 ")
        if code:
            for (begin, end), new in changes(code, begins_statement):
                changed = line[:begin] + new.format(line[begin:end]) + line[end:]
                if changed != line:
                    yield Mutant(path, number, line, changed)
            begins_statement = code[-1] in ";{}:)" or code.endswith("else")


def all_mutants(only):
    for area in AREAS:
        for file in sorted((ROOT / area).rglob("*.[ch]*")):
            path = file.relative_to(ROOT).as_posix()
            if path.endswith((".cpp", ".h")) and not ELSEWHERE.search(path):
                if path.startswith(tuple(only) or area):
                    yield from mutants_of(path)


def choose(mutants, count, source):
    """As many as asked for, on different lines if possible: a row of numbers offers very many.

    All rows of a file count as one line. Nothing but another copy of the data can tell whether a
    number is right, and a fault in one row says of the tests what a fault in the next one says.
    """
    on_line = collections.Counter()

    def rank(mutant):
        line = mutant.path, not ROW.match(mutant.before) and mutant.line
        on_line[line] += 1
        return on_line[line]

    source.shuffle(mutants)
    return sorted(mutants, key=rank)[:count]


def identity(mutant):
    return mutant.path, mutant.before.strip(), mutant.after.strip()


def read_harmless():
    """What identifies the entries: the file, '- ' the line, '+ ' the line changed, the reason."""
    entries = HARMLESS.read_text(encoding="utf-8").split("\n\n")[1:]
    return {(e[0], e[1][2:].strip(), e[2][2:].strip()) for e in (e.split("\n") for e in entries)}


# ---- Building and testing them. ----

def set_limits():
    for what, limit in (("AS", 8 << 30), ("FSIZE", 1 << 30), ("CORE", 0)):
        resource.setrlimit(getattr(resource, f"RLIMIT_{what}"), (limit, limit))


def update(source, target):
    """Copies what differs, with a new time: no fault of an earlier run stays in the build."""
    if not os.path.exists(target) or Path(source).read_bytes() != Path(target).read_bytes():
        shutil.copy(source, target)


class Workshop:
    """A copy of the tree with its build folder; one thread uses it."""

    seconds = {}  # that each test takes
    kills = collections.defaultdict(collections.Counter)  # of all workshops, by file or folder and test

    def __init__(self, folder):
        self.tree, self.build, self.scratch = folder / "tree", folder / "build", folder / "scratch"
        self.environment = dict(os.environ, CCACHE_BASEDIR=str(folder), TMPDIR=str(self.scratch))
        self.originals = {}
        ignore = shutil.ignore_patterns("build*", "out", ".git", "__pycache__")
        shutil.copytree(ROOT, self.tree, ignore=ignore, copy_function=update, dirs_exist_ok=True)
        self.build.mkdir(exist_ok=True)
        self.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                  "-DCMAKE_BUILD_TYPE=Mutate", "-DCMAKE_CXX_FLAGS=-O1",
                  "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DENCCONV_BUILD_SHARED=OFF",
                  "-DENCCONV_BUILD_EXAMPLES=OFF", "-DENCCONV_INSTALL=OFF",
                  "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"])
        self.commands = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            path = Path(entry["file"])
            if path.is_relative_to(self.tree):  # and not generated
                path = path.relative_to(self.tree).as_posix()
                self.commands.setdefault(path, shlex.split(entry["command"]))
        targets = subprocess.run(["ninja", "-t", "targets", "all"], cwd=self.build,
                                 capture_output=True, text=True, check=True).stdout
        self.tests = {name: [self.build / "tests" / name, "--gtest_fail_fast"]
                      for name in re.findall(r"^tests/(\w+_test): ", targets, re.MULTILINE)}
        for name, (given, _) in SCRIPTS.items():
            self.tests[name] = [sys.executable, self.tree / "tests" / name, *given]
        self.texts = {file.name.removesuffix(".cpp"):
                      re.sub("[-_]", "", file.read_text(encoding="utf-8").lower())
                      for file in (self.tree / "tests").glob("*_test.*")}
        if not all(map(self.build_test, self.tests)):
            sys.exit(f"{self.build}: does not build")

    def run(self, command, timeout=None):
        """The exit status, or None when the time was over."""
        self.scratch.mkdir(exist_ok=True)
        process = subprocess.Popen(command, cwd=self.build, env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, start_new_session=True,
                                   preexec_fn=set_limits)
        try:
            return process.wait(timeout)
        except subprocess.TimeoutExpired:
            return None
        finally:
            if process.returncode is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
            shutil.rmtree(self.scratch, ignore_errors=True)

    def build_test(self, test):
        return self.run(["ninja", "-j2", *SCRIPTS.get(test, (None, [test]))[1]]) == 0

    def time_tests(self):
        for test in self.tests:
            begin = time.monotonic()
            if self.run(self.tests[test]) != 0:
                sys.exit(f"{test} fails in the sources as they are")
            self.seconds[test] = time.monotonic() - begin

    def dependents(self, path):
        """Sources that the file is compiled with, a few of them, its namesake first."""
        if path.endswith(".cpp"):
            return [path]
        listing = subprocess.run(["ninja", "-t", "deps"], cwd=self.build, capture_output=True,
                                 text=True, check=True).stdout
        blocks = ([os.path.relpath(self.build / line.strip(), self.tree)
                   for line in block.split("\n")[1:]] for block in listing.split("\n\n"))
        sources = {names[0] for names in blocks if path in names and names[0].startswith(AREAS)}
        return sorted(sources, key=lambda s: (Path(s).stem != Path(path).stem, s))[:6]

    def optimised(self, source):
        """The object file at -O2; None when the source does not compile."""
        target = self.build / "compared.o"
        target.unlink(missing_ok=True)
        command = list(self.commands[source])
        command[command.index("-o") + 1] = str(target)
        return target.read_bytes() if self.run([*command, "-O2", "-g0"]) == 0 else None

    def compiles_to_other_code(self, path, original, changed):
        for source in self.dependents(path):
            if source not in self.originals:
                (self.tree / path).write_text(original, encoding="utf-8")
                self.originals[source] = self.optimised(source)
                (self.tree / path).write_text(changed, encoding="utf-8")
            now = self.optimised(source)
            if now != self.originals[source]:
                return now is not None
        return False

    def in_order(self, path):
        """The tests, those first that found a fault in the file, or are likely to."""
        likely = next(tests for area, tests in LIKELY.items() if path.startswith(area))
        stem = re.sub("[-_]|s$", "", Path(path).stem)
        folder = os.path.dirname(path)

        def key(test):
            is_likely = test in likely or stem in self.texts.get(test, "")
            return -self.kills[path][test], not is_likely, -self.kills[folder][test], self.seconds[test]

        return sorted(next((o for area, o in ONLY.items() if path.startswith(area)), self.tests), key=key)

    def judge(self, mutant):
        """'skipped', the test that finds the mutant, or 'NOT FOUND'."""
        file = self.tree / mutant.path
        original = file.read_text(encoding="utf-8")
        lines = original.split("\n")
        lines[mutant.line - 1] = mutant.after
        changed = "\n".join(lines)
        try:
            file.write_text(changed, encoding="utf-8")
            tests = self.in_order(mutant.path)
            for tried, test in enumerate(tests):
                is_built = self.build_test(test)
                # Most are found by now, and need no comparison.
                if not is_built or tried == min(2, len(tests) - 1):
                    if not self.compiles_to_other_code(mutant.path, original, changed):
                        return "skipped"
                if not is_built:
                    return "the build"
                if self.run(self.tests[test], 20 + 10 * self.seconds[test]) != 0:
                    self.kills[mutant.path][test] += 1
                    self.kills[os.path.dirname(mutant.path)][test] += 1
                    return test
            return "NOT FOUND"
        finally:
            file.write_text(original, encoding="utf-8")  # with a new time: to be built again


# ---- The run. ----

def judge_all(mutants, shops):
    free = queue.SimpleQueue()
    for shop in shops:
        free.put(shop)

    def judge(mutant):
        shop = free.get()
        try:
            return mutant, shop.judge(mutant)
        finally:
            free.put(shop)

    with concurrent.futures.ThreadPoolExecutor(len(shops)) as pool:
        yield from pool.map(judge, mutants)


def show(mutant):
    return f"{mutant.path}:{mutant.line}\n  - {mutant.before.strip()}\n  + {mutant.after.strip()}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=100, help="faults to try (100)")
    parser.add_argument("--seed", type=int, default=1, help="another number, other faults (1)")
    parser.add_argument("--jobs", type=int, default=1, help="copies of the tree to work in (1)")
    parser.add_argument("--only", action="append", default=[], metavar="PATH",
                        help="a file or folder, from the root of the tree; may be repeated")
    parser.add_argument("--list-only", action="store_true", help="show the faults, try none")
    options = parser.parse_args()

    listed = read_harmless()
    mutants = choose(list(all_mutants(options.only)), options.count, random.Random(options.seed))
    tried = [m for m in mutants if identity(m) not in listed]
    if options.list_only:
        print(*map(show, tried), sep="\n")
        return 0
    folders = [ROOT / "build/mutate" / str(i) for i in range(options.jobs)]
    for folder in folders:
        folder.mkdir(parents=True, exist_ok=True)
    shops = [Workshop(folder) for folder in folders]
    shops[0].time_tests()

    verdicts = []
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    try:
        for mutant, verdict in judge_all(tried, shops):
            verdicts.append((mutant, verdict))
            print(f"{verdict}: {show(mutant)}", flush=True)
    except KeyboardInterrupt:
        print("Interrupted.")
    missed = [mutant for mutant, verdict in verdicts if verdict == "NOT FOUND"]
    skipped = sum(verdict == "skipped" for _, verdict in verdicts)
    print(f"\nSeed {options.seed}: {len(verdicts) - skipped - len(missed)} found, {skipped} skipped, "
          f"{len(mutants) - len(tried)} known to be harmless, {len(missed)} not found:")
    print(*map(show, missed), sep="\n")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
