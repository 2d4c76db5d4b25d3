#!/usr/bin/env python3
"""Compares encconv-iconv with the C library's iconv: output, messages, exit status, files written.

command_test.py ENCCONV_ICONV ICONV: each case runs both, in folders of their own with the same
files, and under the same name.
"""
import os
import pathlib
import pty
import re
import subprocess
import sys
import tempfile

SKIPPED = 77
FILES = {
    "text": "aéb\n".encode(),
    "greek": "Ωμέγα 5 € “x” ½ ﬁ\n".encode(),
    "bad": b"ab\xffcd\n",
    "bad-at-once": b"\xff",
    "cut": b"abc\xc3",
    "empty": b"",
    "kanji": "日本\n".encode(),
    "utf-16": "\ufeffaé".encode("utf-16-le"),
    "half": b"\xff\xfe\x00\xd8",
    "long": "日本語の文字\n".encode() * 40000,
    "long-bad": b"abcdefgh\n" * 50000 + b"\xff" + b"abcdefgh\n" * 50000,
    "long-cut": "é".encode() * 50001 + b"\xc3",
}
# Arguments; "<NAME" gives the file to standard input.
CASES = """
-f utf-8 -t latin1 text
-f utf-8 -t latin1 <text
-f utf-8 -t latin1 - <text
-f utf-8 -t latin1 text missing text
-f utf-8 -t latin1 text . text
--from-code utf-8 --to-code=latin1 text
--from=utf-8 --to latin1 text
-futf-8 -tlatin1 text
text -f utf-8 -t latin1
-f utf-8 -t latin1 -- text
-f ascii -f utf-8 -t latin1 text
-t utf-8 -f latin1 text text
-t latin1 text
-f utf-8 text
-f utf-8 -t ascii text
-f utf-8 -t ascii bad text
-f utf-8 -t ascii text bad
-f utf-8 -t latin1 bad-at-once
-f utf-8 -t latin1 cut
-f utf-8 -t latin1 cut text
-f utf-8 -t latin1 empty
-f utf-8 -t utf-16 empty
-f utf-8 -t utf-16 text text
-f utf-16 -t utf-8 utf-16 utf-16
-f utf-16 -t utf-8 half
-f utf-8 -t iso-2022-jp kanji kanji
-f utf-8 -t iso-2022-jp kanji text
-c -f utf-8 -t iso-2022-jp kanji bad kanji
-c -f utf-8 -t ascii text bad
-cs -f utf-8 -t ascii text
-c -f utf-8 -t latin1 cut text
-s -f utf-8 -t ascii text
-f utf-8 -t ascii//IGNORE text
-f utf-8 -t ascii//IGNORE text text
-f utf-8 -t ascii//ignore bad
-c -f utf-8 -t ascii//IGNORE bad text
-f utf-8 -t ascii//TRANSLIT greek
-f utf-8 -t latin1//TRANSLIT kanji
-f utf-8 -t ascii//TRANSLIT//IGNORE bad
-f utf-8 -t ascii//TRANSLIT,IGNORE bad greek
-c -f utf-8 -t ascii//TRANSLIT bad
-f utf-8 -t ascii//TRANSLIT bad
-f utf-8//IGNORE -t ascii bad
-f utf-8 -t latin1//OTHER text
-f utf-8 -t euc-jp long
-f utf-8 -t utf-16be long long
-f utf-8 -t latin1 long-bad
-c -f utf-8 -t latin1 long-bad
-f utf-8 -t latin1 long-cut
--verbose -f utf-8 -t latin1 text - missing <text
--verbose -f utf-8 -t latin1 <text
-f utf-8 -t latin1 -o out text
-f utf-8 -t latin1 --output=out text missing
-f utf-8 -t latin1 -o out bad text
-f utf-8 -t latin1 -o out bad-at-once
-f utf-8 -t latin1 -o out empty
-f utf-8 -t latin1 -o out missing
-f utf-8 -t latin1 -o text text
-f utf-8 -t latin1 -o no/folder text
-f utf-8 -t latin1 -o no/folder empty
-f utf-8 -t latin1 -o . text
-f utf-8 -t latin1 -o /dev/full text
-f utf-8 -t latin1 -o /dev/full long-bad
-f nope -t utf-8 text
-f utf-8 -t nope -o out text
-f nope -t nope missing
-x
-h
--nope
--nope=x text
--v
--ver
--s missing
--list=x
--help=x
--to-code
-f
-o
-l --nope
--usage
--usage --nope
-f utf-8 --usage
""".strip().splitlines()


def run(program, arguments, folder, **more):
    for name, content in FILES.items():
        (folder / name).write_bytes(content)
    given = [a for a in arguments if a.startswith("<")]
    words = ["iconv", *(a for a in arguments if not a.startswith("<"))]
    with open(folder / given[0][1:] if given else os.devnull, "rb") as stdin:
        done = subprocess.run(words, executable=program, cwd=folder, stdin=stdin,
                              capture_output=True, check=False, timeout=60,
                              env={"LC_ALL": "C", **more})
    written = {p.name: p.read_bytes() for p in sorted(folder.iterdir()) if p.is_file()}
    return done.returncode, done.stdout, done.stderr, written


def shortened(outcome):
    status, out, messages, files = outcome
    changed = {name: len(content) for name, content in files.items()
               if FILES.get(name) != content}
    return f"status {status}, {len(out)} bytes {out[:60]!r}, {messages!r}, files {changed}"


def on_terminal(program):
    """What a program lists when a terminal shows it."""
    master, terminal = pty.openpty()
    with subprocess.Popen([program, "-l"], stdout=terminal, stdin=subprocess.DEVNULL):
        os.close(terminal)
        text = b""
        try:
            while data := os.read(master, 4096):
                text += data
        except OSError:  # the other end is closed
            pass
    os.close(master)
    return text.decode().replace("\r\n", "\n")


def main():
    ours, theirs = (str(pathlib.Path(p).resolve()) for p in sys.argv[1:3])
    version = subprocess.run([theirs, "--version"], capture_output=True, text=True, check=True)
    if not re.match(r"iconv \(.*(GLIBC|GNU libc).*\) 2\.36\n", version.stdout):
        print("skipped: iconv is not that of glibc 2.36, whose messages these are")
        sys.exit(SKIPPED)
    problems = []
    for line in CASES:
        outcomes = []
        for program in (ours, theirs):
            with tempfile.TemporaryDirectory() as folder:
                outcomes.append(run(program, line.split(), pathlib.Path(folder)))
        if outcomes[0] != outcomes[1]:
            problems.append(f"{line}\n  ours:   {shortened(outcomes[0])}\n"
                            f"  theirs: {shortened(outcomes[1])}")

    def expect(condition, what):
        if not condition:
            problems.append(what)

    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        # What encconv-iconv does beyond.
        help_lines, known = (run(p, ["--help"], folder)[1].decode().splitlines()
                             for p in (ours, theirs))
        known = known[:known.index("For bug reporting instructions, please see:")]
        expect(help_lines[:len(known)] == known, f"--help begins with {help_lines}, not {known}")
        expect(run(ours, ["-c?"], folder)[1].decode().splitlines() == help_lines, "-? is no help")
        expect(re.match(rb"iconv \(encconv\) \d+\.\d+\.\d+\n$", run(ours, ["-V"], folder)[1]), "-V")
        status, out, messages, _ = run(ours, ["-f", "utf-8", "-t", "latin1//IGNORE", "long-bad"],
                                       folder)
        expect((status, len(out), messages) ==
               (1, 900000, b"iconv: illegal input sequence at position 900001\n"),
               "//IGNORE does not go on to the end")
        status, _, _, files = run(ours, ["-f", "utf-8", "-t", "utf-16le", "-o", "long", "long"],
                                  folder)
        expect(status == 0 and files["long"].decode("utf-16-le") == FILES["long"].decode(),
               "an output that is the input is not whole")
        status, _, _, files = run(ours, ["-f", "utf-8", "-t", "utf-16le", "-o", "text", "long",
                                         "text", "text"], folder)
        expect(status == 0 and files["text"] == run(ours, ["-f", "utf-8", "-t", "utf-16le", "long",
                                                           "text", "text"], folder)[1],
               "an output that is a later input is not whole")
        status, out, _, _ = run(ours, ["-f", "utf-8", "-t", "latin1", "-", "-", "<text"], folder)
        expect((status, out) == (0, b"a\xe9b\n"), "standard input cannot be named twice")
        status, out, _, _ = run(ours, ["text", "-f", "utf-8"], folder, POSIXLY_CORRECT="1")
        expect(status == 1 and out == b"a", "an option behind a file is one, as POSIX has it not")
        status, out, messages, _ = run(ours, ["-l"], folder)
        expect((status, messages) == (0, b""), "-l does not succeed")
        names = out.decode().split()
        expect({"UTF-8//", "CP1252//", "SHIFT_JIS//", "IBM1047//"} <= set(names), "-l lacks names")
        theirs_only = set(run(theirs, ["-l"], folder)[1].decode().split()) - set(names)
        expect(all(run(ours, ["-f", n.rstrip("/")], folder)[0] != 0 for n in theirs_only),
               "-l lacks names that it knows")
        listed, shown = on_terminal(ours).split("\n\n"), on_terminal(theirs).split("\n\n")
        expect(listed[0] == shown[0], "-l says something else on a terminal")
        expect(" ".join(listed[1].split()).split(", ") == [n.rstrip("/") for n in names],
               "-l has other names on a terminal")
        expect(max(map(len, listed[1].splitlines())) < 80, "-l has long lines")
    # As programs see it that write to what cannot take it.
    for end in (">&-", "<&-", "</"):
        messages = [subprocess.run(["sh", "-c", f"exec \"$0\" -f utf-8 -t latin1 {end}", p],
                                   input=b"a" if end[0] == ">" else None, capture_output=True,
                                   check=False, env={"LC_ALL": "C"}) for p in (ours, theirs)]
        told = [(m.returncode, m.stdout, m.stderr.replace(p.encode(), b"iconv"))
                for m, p in zip(messages, (ours, theirs))]
        expect(told[0] == told[1], f"{end}: {told[0]}, not {told[1]}")

    for problem in problems:
        print(problem)
    print(f"{len(CASES)} calls compared, {len(problems)} problems")
    sys.exit(1 if problems else 0)


main()
