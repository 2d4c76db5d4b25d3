#!/usr/bin/env python3
"""Where the codecs that replace_builtin() puts in the place of Python's have other characters.

    mapping_differences.py [--print]

Asks both for every code and every character of the first three planes. What differs must be what
mapping_differences.txt lists, with a reason for each line; --print writes the lines anew, with the
reasons of what was listed before.
"""

import importlib
import pathlib
import sys
from itertools import product

from encconv import _builtin_names, _codecs

LISTED = pathlib.Path(__file__).with_name("mapping_differences.txt")
HIGH = range(0x80, 0x100)
ANY = range(0x100)
DESIGNATIONS = ("$B", "$@", "(J", "(I", "$(D", "$(C", "$A", "$(O", "$(P", "$(Q")


def pair(codec):
    """The codec here and Python's."""
    theirs = importlib.import_module(f"encodings.{codec}").getregentry()
    return _codecs.codec_info(
        _builtin_names.modules()[codec], codec, label=codec, builtin=True
    ), theirs


def codes(codec):
    """Texts to be decoded that are one code each, with what to call them."""

    def plain(*ranges):
        for code in product(*ranges):
            yield bytes(code).hex().upper(), bytes(code)

    if codec.startswith("iso2022"):
        kinds = ("$)C",) if codec == "iso2022_kr" else DESIGNATIONS
        for kind in kinds:
            shift = b"\x0e" if ")" in kind else b""
            length = 2 if kind[0] == "$" else 1
            for code in product(range(0x20, 0x80), repeat=length):
                yield f"{kind}:{bytes(code).hex().upper()}", b"\x1b" + kind.encode() + shift + bytes(code)
        return
    yield from plain(ANY)
    if codec == "hz":
        for code in product(range(0x21, 0x7F), repeat=2):
            yield bytes(code).hex().upper(), b"~{" + bytes(code) + b"~}"
    elif codec in _builtin_names._MULTIBYTE:
        yield from plain(HIGH, ANY)
        if codec.startswith("euc_j"):
            yield from plain((0x8F,), HIGH, HIGH)
    if codec == "gb18030":
        yield from plain(range(0x81, 0x85), range(0x30, 0x3A), range(0x81, 0xFF), range(0x30, 0x3A))


def decoded(codec, code):
    try:
        return codec.decode(code)[0]
    except UnicodeError:
        return None


def encoded(codec, text):
    try:
        return codec.encode(text)[0]
    except UnicodeError:
        return None


def characters(codec):
    """Blocks of all characters that the codec may have."""
    end = 0x30000 if codec in _builtin_names._MULTIBYTE else 0x10000
    for begin in range(0, end, 0x100):
        block = "".join(map(chr, range(begin, begin + 0x100)))
        if not "\ud800" <= block[0] <= "\udfff":
            yield block


def ranges(keys, follows):
    """Keys that follow each other, as "FIRST-LAST"."""
    runs = []
    for key in keys:
        if runs and follows(runs[-1][1], key):
            runs[-1][1] = key
        else:
            runs.append([key, key])
    return [first if first == last else f"{first}-{last}" for first, last in runs]


def hex_follows(former, key):
    prefix, _, digits = key.rpartition(":")
    before, _, former_digits = former.rpartition(":")
    return (
        prefix == before
        and len(digits) == len(former_digits)
        and int(digits, 16) == int(former_digits, 16) + 1
    )


def differences(codec):
    """Keys of what differs, by kind: "reads" what Python does not, reads "otherwise", or "lacks";
    "writes", "writes otherwise", "does not write"."""
    ours, theirs = pair(codec)
    found = {}
    for name, code in codes(codec):
        mine, its = decoded(ours, code), decoded(theirs, code)
        # A lead byte with what follows is told of with the pair.
        if mine == its or (len(code) == 2 and mine and its is None and len(mine) == 2):
            continue
        kind = "lacks" if mine is None else "reads" if its is None else "reads otherwise"
        found.setdefault(kind, []).append(name)
    for block in characters(codec):
        both = [c.encode(block, "ignore")[0] for c in (ours, theirs)]
        if both[0] == both[1]:
            continue
        for character in block:
            mine, its = encoded(ours, character), encoded(theirs, character)
            if mine == its:
                continue
            kind = "does not write" if mine is None else "writes" if its is None else "writes otherwise"
            found.setdefault(kind, []).append(f"{ord(character):04X}")
    return {kind: ranges(keys, hex_follows) for kind, keys in found.items()}


def listed():
    """(codec, kind, range): reason. A reason of \'"\' is that of the next line."""
    reasons, heading, waiting = {}, None, []
    for line in LISTED.read_text(encoding="utf-8").splitlines():
        if not line or line.startswith("#"):
            continue
        if not line.startswith(" "):
            heading = line.strip(":")
            continue
        kind, _, rest = line.strip().partition(": ")
        keys, _, reason = rest.partition("; ")
        waiting += [(heading, kind, key) for key in keys.split()]
        if reason != '"':
            reasons.update(dict.fromkeys(waiting, reason))
            waiting = []
    return reasons


def main():
    known = listed()
    found = {
        (codec, kind, key)
        for codec in _builtin_names.modules()
        for kind, keys in differences(codec).items()
        for key in keys
    }
    if "--print" in sys.argv:
        for codec in sorted({codec for codec, _, _ in found}):
            print(f"{codec}:")
            groups = {}
            for entry in sorted(found):
                if entry[0] == codec:
                    groups.setdefault((entry[1], known.get(entry, "")), []).append(entry[2])
            for (kind, reason), keys in groups.items():
                print(f"  {kind}: {' '.join(keys)}; {reason}")
        return 0
    faults = [f"{' '.join(entry)} differs and is not listed" for entry in sorted(found - set(known))]
    faults += [f"{' '.join(entry)} is listed but does not differ" for entry in set(known) - found]
    faults += [f"{' '.join(entry)} has no reason" for entry, reason in known.items() if not reason]
    for fault in faults:
        print(fault)
    print(f"{len(found)} ranges differ, {len(faults)} not as listed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
