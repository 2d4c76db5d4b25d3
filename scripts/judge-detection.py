#!/usr/bin/env python3
"""Judges --detect by texts of Debian packages and by binary files of the machine.

judge-detection.py [--tool TOOL] [--work FOLDER] [--verbose]

The texts are those that judge-detection.txt lists; their packages are fetched with apt-get download
into the folder. An answer is right when Python's codec of the named encoding reads the text as it
was. Binary files are 200 of those below /usr whose names or beginnings say that they are none, chosen
by the hash of their path; -f auto --in-place must leave a copy of each alone. What the library
uchardet says by itself is shown beside. Needs apt-get, dpkg-deb, Python 3 and libuchardet.
"""
import argparse
import collections
import ctypes
import gzip
import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys

LIST = pathlib.Path(__file__).with_name("judge-detection.txt")
# Codecs of Python whose names are not those of the tool or of uchardet.
CODECS = {"KS_C_5601-1987": "cp949", "Shift_JIS": "cp932", "SHIFT_JIS": "cp932", "UHC": "cp949",
          "hz-gb-2312": "hz", "windows-874": "cp874", "x-mac-cyrillic": "mac-cyrillic",
          "MAC-CYRILLIC": "mac-cyrillic", "x-mac-ce": "mac-latin2", "x-mac-greek": "mac-greek",
          "x-mac-turkish": "mac-turkish", "Big5": "cp950", "BIG5": "cp950", "IBM01140": "cp1140"}
BINARY_SUFFIXES = """.a .bz2 .bin .cache .class .db .dat .exe .gif .gz .ico .jar .jpg .mo .o .pdf .png
.pyc .rlib .rmeta .so .sqlite .tbz .tiff .ttf .whl .woff .woff2 .xz .zip .zst""".split()
BINARIES = 200


def read_list():
    for line in LIST.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            yield line.split()


def unpack(package, folder):
    unpacked = folder / package
    if not unpacked.exists():
        subprocess.run(["apt-get", "download", "-q", "-o", "APT::Sandbox::User=root", package], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)
        archive = next(folder.glob(package + "_*.deb"))
        subprocess.run(["dpkg-deb", "-x", archive, unpacked], check=True)
    return unpacked


def make_text(row, folder):
    """The bytes to judge by, and the text that they are."""
    encoding, package, path, source = row[:4]
    content = (unpack(package, folder) / path).read_bytes()
    if path.endswith(".gz"):
        content = gzip.decompress(content)
    if source == "*":
        return content, content.decode(encoding, "replace")
    begin, count = int(row[4]), int(row[5])
    codec = CODECS.get(encoding, encoding)
    encoded = content.decode(source)[begin:begin + count].encode(codec, "ignore")
    return encoded, encoded.decode(codec)


def reads_as(content, name):
    codec = CODECS.get(name, name)
    if codec.startswith("IBM"):
        codec = "cp" + codec[3:].lstrip("0").rjust(3, "0")
    try:
        return content.decode(codec, "replace")
    except LookupError:
        return None


class Uchardet:
    def __init__(self):
        self.library = ctypes.CDLL("libuchardet.so.0")
        self.library.uchardet_new.restype = ctypes.c_void_p
        self.library.uchardet_get_charset.restype = ctypes.c_char_p

    def ask(self, content):
        detector = ctypes.c_void_p(self.library.uchardet_new())
        self.library.uchardet_handle_data(detector, content, ctypes.c_size_t(len(content)))
        self.library.uchardet_data_end(detector)
        name = self.library.uchardet_get_charset(detector).decode()
        self.library.uchardet_delete(detector)
        return name


def judge_texts(tool, uchardet, folder, verbose):
    count = collections.Counter()
    packages = folder / "packages"
    packages.mkdir(parents=True, exist_ok=True)
    for row in read_list():
        content, text = make_text(row, packages)
        (folder / "text").write_bytes(content)
        found = json.loads(subprocess.run([tool, "--detect", "--json", folder / "text"],
                                          capture_output=True, check=False).stdout)
        names = [candidate["name"] for candidate in found["candidates"]]
        right = [reads_as(content, name) == text or name == row[0] for name in names[:2]]
        named = uchardet.ask(content)
        count["texts"] += 1
        count["first"] += right[:1] == [True]
        count["first or second"] += any(right)
        sure = found["candidates"] and found["candidates"][0]["confidence"] >= 0.5
        count["taken by -f auto, right"] += bool(sure and right[0])
        count["taken by -f auto, wrong"] += bool(sure and not right[0])
        count["uchardet"] += reads_as(content, named) == text if named else 0
        if verbose or right[:1] != [True]:
            shown = ", ".join(f"{c['name']} {c['confidence']}" for c in found["candidates"][:3])
            print(f"{row[0]} {row[1]} {row[2]}: {shown or found['kind']}; uchardet: {named}")
    return count


def choose_binaries():
    by_suffix = collections.defaultdict(list)
    for base, _, names in os.walk("/usr"):
        for name in names:
            path = os.path.join(base, name)
            suffix = pathlib.Path(name).suffix
            in_bin = "/bin" in base and not suffix
            if (suffix in BINARY_SUFFIXES or in_bin) and not os.path.islink(path):
                by_suffix[suffix].append(path)
    for paths in by_suffix.values():
        paths.sort(key=lambda path: hashlib.sha256(path.encode()).digest())
    # In turns, so that no kind outnumbers the others while these last.
    place = 0
    chosen = 0
    while chosen < BINARIES and any(place < len(paths) for paths in by_suffix.values()):
        for suffix in sorted(by_suffix):
            if place >= len(by_suffix[suffix]) or chosen == BINARIES:
                continue
            path = by_suffix[suffix][place]
            with open(path, "rb") as file:
                beginning = file.read(1 << 20)
            # Not all names tell the truth; Python knows text when it sees it.
            is_text = b"\0" not in beginning and not beginning.startswith((b"%PDF", b"!<arch>"))
            if suffix in ("", ".dat", ".cache", ".bin", ".db", ".a") and is_text:
                continue
            if beginning:
                chosen += 1
                yield path, beginning
        place += 1


def judge_binaries(tool, uchardet, folder, verbose):
    count = collections.Counter()
    copy = folder / "binary"
    for path, beginning in choose_binaries():
        shutil.copyfile(path, copy)
        run = subprocess.run([tool, "-f", "auto", "-t", "utf-16", "--in-place", copy],
                             capture_output=True, check=False)
        before, after = (hashlib.sha256(pathlib.Path(name).read_bytes()).digest()
                         for name in (path, copy))
        count["binaries"] += 1
        count["refused"] += run.returncode == 1
        count["called binary"] += b"is not text but binary" in run.stderr
        count["converted"] += before != after
        count["uchardet names an encoding"] += bool(uchardet.ask(beginning))
        if verbose or before != after or b"is not text but binary" not in run.stderr:
            print(f"{path}: {run.stderr.decode(errors='replace').strip()[:200]}")
    return count


def main():
    project = pathlib.Path(__file__).resolve().parent.parent
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tool", default=project / "build/release/bin/encconv")
    parser.add_argument("--work", default=project / "build/detection", type=pathlib.Path)
    parser.add_argument("--verbose", action="store_true")
    options = parser.parse_args()
    tool = pathlib.Path(options.tool).resolve()
    uchardet = Uchardet()
    texts = judge_texts(tool, uchardet, options.work, options.verbose)
    binaries = judge_binaries(tool, uchardet, options.work, options.verbose)
    for what, count in {**texts, **binaries}.items():
        print(f"{count:4} {what}")
    is_good = texts["first or second"] * 20 >= texts["texts"] * 19 and binaries["converted"] == 0
    return 0 if is_good else 1


if __name__ == "__main__":
    sys.exit(main())
