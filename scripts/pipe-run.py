#!/usr/bin/env python3
"""Sends gigabytes through the tool by a pipe, and compares with the same text in small files.

    pipe-run.py [TOOL [MEBIBYTES]]

TOOL is build/release/bin/encconv, MEBIBYTES 2048 when not given. The text is Shift_JIS with pieces
that are none sprinkled in, on its way to UTF-8 with --on-error hex; it is the same every time. Says
how much memory the tool had in use at most, and what it has for other work to compare with. Takes
some minutes, and disk space of five times the text in the directory for temporary files.
"""

import hashlib
import os
import random
import subprocess
import sys
import tempfile
import threading
import time

MIB = 1 << 20
BAD = [b"\x85\x40", b"\x81\x20", b"\x87\x9f", b"\xeb\x7f", b"\xa0\xfd\x83\x2c", b"\xe0\x0d"]


def blocks(count):
    """Blocks of a MiB that begin and end with whole lines."""
    source = random.Random(932)
    kana = [chr(c).encode("cp932") for c in range(0x3041, 0x3094)]
    kanji = [bytes((lead, trail)) for lead in range(0x88, 0x98) for trail in range(0xA0, 0xF0)]
    others = [b"a", b" ", b"1", b"<", b"\xb1", b"\xca", b"\x81\x41", b"\x81\x42"]
    units = kana * 4 + kanji + others * 40
    lines = [b"".join(source.choices(units, k=80)) + b"\n" for _ in range(600)]
    for i in range(0, len(lines), 12):
        at = len(b"".join(source.choices(units, k=9)))
        lines[i] = lines[i][:at] + source.choice(BAD) + b"." + lines[i][at:]
    for _ in range(count):
        block = b""
        while len(block) < MIB - 20000:
            block += b"".join(source.choices(lines, k=100))
        yield block + b"." * (MIB - 1 - len(block)) + b"\n"


def peak(pid):
    """The most memory that a process had so far, in KiB."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmHWM"))


def run(command, feed=None):
    """Runs a command. Returns the digest of its output, the errors, its peak memory, seconds."""
    memory = [0]
    with tempfile.TemporaryFile() as errors:
        start = time.monotonic()
        process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=errors)

        def write():
            for block in feed or []:
                process.stdin.write(block)
            if feed:
                process.stdin.flush()
                time.sleep(0.5)  # until it waits for more
                memory[0] = peak(process.pid)
            process.stdin.close()

        writer = threading.Thread(target=write)
        writer.start()
        digest = hashlib.sha256()
        while piece := process.stdout.read(MIB):
            digest.update(piece)
        writer.join()
        status = process.wait()
        seconds = time.monotonic() - start
        errors.seek(0)
        text = errors.read().decode()
    if status != 0:
        sys.exit("failed: " + " ".join(command[:6]) + "\n" + text)
    return digest.hexdigest(), text, memory[0], seconds


def main():
    tool = sys.argv[1] if len(sys.argv) > 1 else "build/release/bin/encconv"
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 2048
    convert = [tool, "-f", "932", "-t", "utf-8", "--on-error", "hex"]

    digest, report, memory, seconds = run(convert, blocks(count))
    print(f"{count} MiB by a pipe in {seconds:.0f} s; {report.strip()}")
    line = run(convert, [b"\x93\xfa\x96\x7b\n"])[2]
    bare = run([tool, "-f", "utf-8", "-t", "utf-16"], [b"a\n"])[2]
    print(f"memory at most: {memory} KiB; for one line: {line} KiB; "
          f"for one line of a pair that needs no table: {bare} KiB")

    parts = hashlib.sha256()
    with tempfile.TemporaryDirectory() as directory:
        names = []
        for i, block in enumerate(blocks(count)):
            names.append(os.path.join(directory, f"{i:06}"))
            with open(names[-1], "wb") as file:
                file.write(block)
        out = os.path.join(directory, "out")
        for at in range(0, count, 256):
            run(convert + ["--quiet", "--output-dir", out] + names[at:at + 256])
        for name in names:
            with open(os.path.join(out, os.path.basename(name)), "rb") as file:
                parts.update(file.read())
    if parts.hexdigest() != digest:
        sys.exit("DIFFERS from the small files")
    print("the same as the small files, one by one:", digest)


if __name__ == "__main__":
    main()
