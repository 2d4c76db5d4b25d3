#!/usr/bin/env python3
"""Converts the manual pages of Debian's translations to their national encodings and back.

    scripts/manpages-run.py ENCCONV [FOLDER]

ENCCONV is the tool. The packages are taken from FOLDER, or fetched with apt-get download into it;
without it into a temporary folder. For each page and encoding this holds:

- what iconv writes without //TRANSLIT, the tool does not refuse under best-fit;
- what the tool writes without any treatment is read back by the tool as the same page, but for
  what the closing line calls approximated;
- and read by iconv as the same page, but for characters that the two map otherwise.

Prints a line for each language and encoding, and the pages that differ; ends with 1 if the first
two do not hold, with 2 if there are no packages.
"""
import collections
import glob
import gzip
import multiprocessing.pool
import os
import pathlib
import subprocess
import sys
import tempfile

# The folder below share/man, the tool's name of an encoding, and iconv's.
ENCODINGS = [
    ("ja", "932", "CP932"), ("ja", "51932", "EUC-JP"), ("ja", "iso-2022-jp", "ISO-2022-JP"),
    ("ru", "koi8-r", "KOI8-R"), ("ru", "windows-1251", "CP1251"), ("ru", "iso-8859-5", "ISO-8859-5"),
    ("zh_CN", "936", "GBK"), ("zh_CN", "euc-cn", "GB2312"), ("zh_TW", "950", "BIG5"),
    ("de", "windows-1252", "CP1252"), ("de", "iso-8859-15", "ISO-8859-15"),
    ("fr", "windows-1252", "CP1252"), ("fr", "iso-8859-15", "ISO-8859-15"),
    ("pl", "iso-8859-2", "ISO-8859-2"), ("pl", "windows-1250", "CP1250"),
    ("ko", "949", "UHC"), ("ko", "euc-kr", "EUC-KR"),
]
PACKAGES = ["manpages-ja", "manpages-ru", "manpages-zh", "manpages-de", "manpages-fr",
            "manpages-pl",
            "man-db", "psmisc", "xz-utils", "passwd", "login"]  # these have Korean ones


def run(command, data):
    done = subprocess.run(command, input=data, capture_output=True, check=False)
    return done.returncode == 0, done.stdout, done.stderr.decode(errors="replace")


def unpack(folder):
    for package in PACKAGES:
        if not glob.glob(f"{folder}/{package}_*.deb"):
            subprocess.run(["apt-get", "download", "-qq", package], cwd=folder, check=False)
    found = False
    for archive in glob.glob(f"{folder}/*.deb"):
        subprocess.run(["dpkg-deb", "-x", archive, f"{folder}/tree"], check=True)
        found = True
    return found


def pages(folder, language):
    for path in sorted(pathlib.Path(folder, "tree/usr/share/man", language).glob("man*/*.gz")):
        if path.is_symlink():
            continue
        data = gzip.open(path).read()
        try:
            data.decode("utf-8")
        except UnicodeDecodeError:
            continue
        yield path.name, data


def examine(tool, data, encoding, other, counts, tell):
    counts["pages"] += 1
    forth, coded, message = run([tool, "-f", "utf-8", "-t", encoding], data)
    fits, _, fit_message = run([tool, "-f", "utf-8", "-t", encoding, "--on-error", "best-fit"], data)
    peer, _, _ = run(["iconv", "-f", "UTF-8", "-t", other], data)
    counts["written"] += forth
    counts["best-fit"] += fits
    counts["iconv"] += peer
    failed = False
    if peer and not fits:
        failed = True
        tell("refused, and iconv writes it: " + fit_message)
    if forth:
        back, text, _ = run([tool, "-f", encoding, "-t", "utf-8"], coded)
        if (not back or text != data) and "approximated" not in message:
            failed = True
            tell("does not come back")
        back, text, _ = run(["iconv", "-f", other, "-t", "UTF-8"], coded)
        if not back or text != data:
            counts["read otherwise by iconv"] += 1
    return failed


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    tool = sys.argv[1]
    with tempfile.TemporaryDirectory() as temporary:
        folder = sys.argv[2] if len(sys.argv) == 3 else temporary
        if not unpack(folder):
            print("manpages-run.py: no packages", file=sys.stderr)
            return 2
        failures = 0
        for language, encoding, other in ENCODINGS:
            counts = collections.Counter()

            def work(page):
                name, data = page

                def tell(what):
                    print(f"  {language} {encoding} {name}: {what.strip()}")
                return examine(tool, data, encoding, other, counts, tell)
            with multiprocessing.pool.ThreadPool(os.cpu_count()) as pool:
                failures += sum(pool.map(work, pages(folder, language)))
            print(f"{language} {encoding}: " + ", ".join(f"{k} {v}" for k, v in counts.items()),
                  flush=True)
    return 1 if failures else 0


sys.exit(main())
