#!/usr/bin/env python3
"""Runs every command of README.md and docs/guide.md on sample files and looks at what it made.

documented_commands_test.py TOOL: a command is a line of an indented or fenced block, or a piece of
code in a sentence, that begins with "encconv ". The files that it names are made for it, in the
encoding that it says they are in; what it writes must be the same text in the other encoding.
"""
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parent.parent
DATA = PROJECT / "tests" / "data"

# What the blocks hold besides commands of the tool, by how it begins.
# These need a network, other rights, or what they install; scripts/python.sh does it for Python.
INSTALLS = ("scripts/", "cmake ", "sudo ", "(cd build/", "pip install ", "python3 -c ")
# The program that README.md builds, which tests/consumer/run.sh builds too; results and messages.
NOT_COMMANDS = ("#include ", "int main() ", "c++ ", "encconv::", "encconv: ", "(code page ", "(00 ",
                "LD_PRELOAD=", "COPY ", "ENV ", "spark.")  # with other programs


def sample(name):
    return (DATA / name).read_bytes()


def text(name):
    return sample(name + ".txt").decode()


def in_records(ebcdic, length):
    return b"".join(line.ljust(length, b"\x40") for line in ebcdic.split(b"\x15")[:-1])


WESTERN = text("french")
# For the values of -f and -t: what the named files hold, and what comes out.
CONVERSIONS = {
    ("auto", "utf-8"): (sample("emoji.1201"), text("emoji").encode()),
    ("shift_jis", "utf-8"): (sample("japanese.932"), text("japanese").encode()),
    ("web:shift_jis", "utf-8"): (sample("japanese.932") + b"\x82\n",
                                 text("japanese").encode() + "\ufffd\n".encode()),
    ("iso-2022-jp", "utf-8"): (sample("mail.50220"), text("mail").encode()),
    ("iso-2022-kr", "utf-8"): (text("korean").encode("iso2022_kr"), text("korean").encode()),
    ("gb18030", "utf-8"): (sample("minorities.54936"), text("minorities").encode()),
    ("big5-hkscs", "utf-8"): (sample("hong-kong.200706"), text("hong-kong").encode()),
    ("utf-8", "gb18030"): (text("minorities").encode(), sample("minorities.54936")),
    ("marc-8", "utf-8"): (sample("catalogue.200866"), text("catalogue").encode()),
    ("hz-gb-2312", "utf-8"): (text("chinese-simplified").encode("hz"),
                              text("chinese-simplified").encode()),
    ("utf-7", "utf-8"): (sample("header.65000"), text("header").encode()),
    ("1252", "utf-8"): (sample("french.1252"), WESTERN.encode()),
    ("850", "utf-8"): (text("german").encode("cp850", "ignore"),
                       text("german").encode("cp850", "ignore").decode("cp850").encode()),
    ("1251", "utf-8"): (sample("russian.1251"), text("russian").encode()),
    ("utf-16", "utf-8"): (WESTERN.encode("utf-16"), WESTERN.encode()),
    ("ibm037", "utf-8"): (sample("record.37"), text("record").encode()),
    ("ibm1047", "utf-8"): (in_records(sample("listing.1047"), 80), text("listing").encode()),
    ("gsm", "utf-8"): (sample("sms.55000"), text("sms").encode()),
    ("utf-8", "gsm"): (sample("sms.txt"), sample("sms.55000")),
    ("gsm-turkish-packed", "utf-8"): (sample("sms-turkish.200821"), sample("sms-turkish.txt")),
    ("utf-8", "gsm-turkish-packed"): (sample("sms-turkish.txt"), sample("sms-turkish.200821")),
    ("utf-7-imap", "utf-8"): (sample("folders.200804"), sample("folders.txt")),
    ("utf-8", "ibm1140"): (sample("invoice.txt"), sample("invoice.1140")),
    ("utf-8", "utf-16le"): (WESTERN.encode(), b"\xff\xfe" + WESTERN.encode("utf-16-le")),
    ("utf-8", "windows-1252"): (WESTERN.encode() + "\u4e00".encode(),
                                sample("french.1252") + b"&#x4E00;"),
    ("utf-8", "cp1252"): (WESTERN.encode() + "\u4e00".encode(), sample("french.1252")),
    ("utf-8", "us-ascii//TRANSLIT"): ("\u0416\u4e00\n".encode(), b"ZH?\n"),
    ("utf-8", "us-ascii"): ("\u0416\u4e00\n".encode(), b"ZH?\n"),
    ("utf-8", "utf-8"): (WESTERN.encode(), None),  # to nowhere
}

REPORT = text("record")
IN_VB = sample("accounts.vb.37")


def in_blocks(lines):
    """Variable-length records in one block, in code page 37."""
    data = b"".join((len(line) + 4).to_bytes(2, "big") + b"\0\0" + line
                    for line in (line.encode("cp037") for line in lines))
    return (len(data) + 4).to_bytes(2, "big") + b"\0\0" + data


# The same of records, for what is behind --records or --to-records, and the form of the table.
RECORDS = {
    ("fixed:80", ""): (in_records(sample("listing.1047"), 80), text("listing").encode()),
    ("bdw", ""): (in_blocks(REPORT.splitlines()), REPORT.encode()),
    ("bdw:27998", ""): (REPORT.encode(), in_blocks(REPORT.splitlines())),
    ("bdw", "csv"): (IN_VB, sample("accounts.csv")),
    ("bdw", "json"): (IN_VB, sample("accounts.json")),
    ("bdw:300", "csv"): (sample("accounts.csv"), IN_VB),
    ("fixed:50", "csv"): (sample("orders.fb.939"), sample("orders-japanese.csv")),
}


def of_records(words):
    """What a command about records reads and writes; nothing for other commands."""
    records, to_records = option(words, "--records"), option(words, "--to-records")
    if not records + to_records:
        return None
    table = (option(words, "--as") or "csv") if "--fields" in words else ""
    source, expected = RECORDS[records or to_records, table]
    # A fixed record is the same in both directions.
    return (expected, source) if to_records == "fixed:80" else (source, expected)


def layout():
    """The fields that the guide shows: those of the sample."""
    shown = re.search(r"```text\n(.*?)```", (PROJECT / "docs/guide.md").read_text(), re.DOTALL)[1]
    assert shown.encode() == sample("accounts.fields"), "the guide shows another layout"
    return shown


def blocks_and_code(document):
    """The lines of the blocks, with their comments, and the code in sentences."""
    is_fenced = is_text = False
    before = ""
    for line in (PROJECT / document).read_text().splitlines():
        if line.startswith("```"):
            is_fenced = not is_fenced
            is_text = line == "```text"
        elif is_fenced and is_text:
            pass
        elif is_fenced or (line.startswith("    ") and (not before or before.startswith("    "))):
            yield line.strip()
        else:
            for code in re.findall(r"`(encconv [^`]*)`", line):
                yield code
        before = line


def check_install(line):
    """What is wrong with a line that installs: it is not run, but what it names must be there."""
    for script in re.findall(r"scripts/[\w-]+\.sh", line):
        if not os.access(PROJECT / script, os.X_OK):
            return f"{script} cannot be run"
    presets = json.loads((PROJECT / "CMakePresets.json").read_text())
    known = {preset["name"] for preset in presets["configurePresets"]}
    named = set(re.findall(r"--preset (\S+)", line))
    if not line.startswith("scripts/"):  # these have folders of their own
        named |= set(re.findall(r"build/([\w-]+)", line))
    return f"no preset {named - known}" if named - known else ""


def commands():
    found = []
    for document in ("README.md", "docs/guide.md"):
        of_document = [line for line in blocks_and_code(document)
                       if line and not line.startswith(INSTALLS + NOT_COMMANDS)]
        assert len(of_document) > 5, document
        for line in blocks_and_code(document):
            if line.startswith(INSTALLS) and check_install(line):
                raise SystemExit(f"{document}: {line}\n    {check_install(line)}")
        found += [(document, line) for line in of_document]
    return found


def option(words, *names):
    """The value of an option, "" when it has none or is not there."""
    for word, following in zip(words, words[1:] + [""]):
        if word in names:
            return following
        if "=" in word and word.split("=")[0] in names:
            return word.split("=")[1]
    return ""


def check(command, folder, environment):
    """What is wrong with a command, as a line; nothing when all is well."""
    words = shlex.split(command, comments=True)
    if words[0] != "encconv":
        return "no command of the tool, and not listed as anything else"
    conversion = (option(words, "-f"), option(words, "-t"))
    taken = {option(words, name) for name in ("-o", "--output", "--html", "--list", "--chart",
                                              "-f", "-t", "-j", "--ebcdic-newline", "--on-error",
                                              "--records", "--to-records", "--fields", "--as",
                                              "--newline", "--include", "--report")}
    names = [word for word in words[1:] if not word.startswith("-") and word not in taken]
    names = [name for name in names if name != "<"]
    source, expected = b"caf\xc3\xa9\n", None
    if of_records(words):
        source, expected = of_records(words)
        (folder / "accounts.fields").write_text(layout())
        (folder / "orders.fields").write_bytes(sample("orders.fields"))
    elif "--trace" in words:
        source = "café\n".encode().decode("cp1252").encode()
    elif any(conversion):
        if conversion not in CONVERSIONS:
            return f"CONVERSIONS has no sample from {conversion[0]} to {conversion[1]}"
        source, expected = CONVERSIONS[conversion]
    if option(words, "--newline") == "crlf":
        expected = expected.replace("\n".encode(conversion[1]), "\r\n".encode(conversion[1]))
    inputs = [folder / name.replace("*", stem) for name in names for stem in ("one", "two")]
    for path in inputs:
        path.write_bytes(source)

    run = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, capture_output=True,
                         stdin=subprocess.DEVNULL, timeout=60, check=False)
    complaint = run.stderr.decode(errors="replace")
    if run.returncode != 0:
        return f"status {run.returncode}: {complaint}"
    if complaint and "--on-error" not in words:
        return complaint
    in_place = [word for word in words if word.startswith("--in-place")]
    output = option(words, "-o", "--html")
    if in_place:
        kept = option(words, "--in-place")
        for path in inputs:
            if path.read_bytes() != expected or path.with_name(path.name + kept).read_bytes() != source:
                return f"{path.name} was not replaced, or not kept"
    elif expected is not None:
        written = (folder / output).read_bytes() if output else run.stdout
        if written != expected:
            return f"wrote {written[:200]!r}"
    elif output and output != "/dev/null":
        return "" if (folder / output).read_bytes().startswith(b"<!DOCTYPE html>") else "no page"
    elif bool(run.stdout) != (output != "/dev/null"):
        return f"wrote {run.stdout[:200]!r}"
    return ""


def check_messages(environment, folder):
    """The messages that the guide shows are those that the tool gives."""
    return check_message(environment, folder) or check_damage(environment, folder)


def check_damage(environment, folder):
    shown = re.search(r"    (encconv: accounts\.vb: byte offset (\d+), .*)\n    (.*)\n",
                      (PROJECT / "docs/guide.md").read_text())
    damaged = bytearray(IN_VB)
    damaged[int(shown[2]) + 5] = 4  # the sign
    (folder / "accounts.vb").write_bytes(damaged)
    (folder / "accounts.fields").write_text(layout())
    run = subprocess.run(["encconv", "-f", "ibm037", "-t", "utf-8", "--records", "bdw", "--fields",
                          "@accounts.fields", "accounts.vb"], cwd=folder, env=environment,
                         capture_output=True, check=False)
    said = run.stderr.decode()
    return "" if said == shown[1] + " " + shown[3] + "\n" else f"the tool says: {said}"


def check_message(environment, folder):
    shown = re.search(r"    (encconv: letter\.txt: byte offset (\d+), line (\d+): .*)\n    (.*)\n",
                      (PROJECT / "docs/guide.md").read_text())
    offset, line = int(shown[2]), int(shown[3])
    letter = "\n" * (line - 1) + "x" * (offset - line + 1) + "\u4e00"
    (folder / "letter.txt").write_text(letter, encoding="utf-8")
    run = subprocess.run(["encconv", "-f", "utf-8", "-t", "windows-1252", "letter.txt"], cwd=folder,
                         env=environment, capture_output=True, check=False)
    said = run.stderr.decode()
    return "" if said == shown[1] + " " + shown[4] + "\n" else f"the tool says: {said}"


def check_numbers(environment):
    """Numbers do not change: docs/code-pages.md has most of them."""
    run = subprocess.run(["encconv", "--list", "--json"], env=environment, capture_output=True,
                         check=True)
    names = {row["codePage"]: {row["name"], *row["aliases"]} for row in json.loads(run.stdout)}
    shown = re.findall(r"^\| (\d+) \| `?([^|`]+?)`? \|",
                       (PROJECT / "docs/code-pages.md").read_text(encoding="utf-8"), re.MULTILINE)
    wrong = [f"{number} {name}" for number, name in shown if name not in names.get(int(number), ())]
    return ", ".join(wrong if len(shown) > 400 else ["the list is not where it was"])


def main():
    tool = pathlib.Path(sys.argv[1]).resolve()
    environment = dict(os.environ, PATH=f"{tool.parent}:{os.environ['PATH']}", LC_ALL="C")
    failures = 0
    for document, command in commands() + [("docs/guide.md", None)]:
        with tempfile.TemporaryDirectory(prefix="encconv_test_") as name:
            folder = pathlib.Path(name)
            wrong = (check_messages(environment, folder) if command is None
                     else check(command, folder, environment))
        if wrong:
            failures += 1
            print(f"{document}: {command or 'the messages'}\n    {wrong}")
        else:
            print(f"{document}: {command or 'the messages'}: good")
    if wrong := check_numbers(environment):
        failures += 1
        print(f"docs/code-pages.md: no encodings: {wrong}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
