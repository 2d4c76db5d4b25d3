#!/usr/bin/env python3
"""Makes the mappings of ISCII (encoding/codecs/iscii.h), one a script, from what ICU reads.

A byte that changes the letter in front of it stands before that letter, with 00 behind it for when
it is by itself. ICU lacks the dandas outside Devanagari; Unicode has one pair for all scripts, and
so does ISCII. The udatta (F0 B5) is that of the standard and of the JDK's ISCII91, which is compared
for Devanagari. What ICU has for single letters only, in the order of the text, is in iscii.cpp.
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
sys.dont_write_bytecode = True
from mapping_format import Mapping
from mapping_peers import IcuPeer

SCRIPTS = ["devanagari", "bengali", "gurmukhi", "gujarati", "oriya", "tamil", "telugu", "kannada",
           "malayalam"]
FOLLOWERS = (0xE0, 0xE8, 0xE9, 0xEA)
ATTRIBUTE, EXTENSION = 0xEF, 0xF0
JOINERS = (0x200C, 0x200D)  # behind a virama
DANDAS = {b"\xEA\0": (0x0964,), b"\xEA\xEA": (0x0965,)}


def made(version, script):
    peer = IcuPeer(f"ISCII,version={version}")

    def read(*code):
        """As it is read with a letter behind it that changes nothing."""
        text = peer._read(bytes([*code, 0x41]))
        return tuple(map(ord, text[:-1])) if text else ()

    mapping = Mapping(f"ISCII, {script.capitalize()}: letters by a byte, and what a second byte, "
                      "written\nfirst here, makes of them.\n"
                      "Made by scripts/make_iscii_mappings.py from ICU.")
    singles = {byte: read(byte) for byte in range(0x80, 0x100)
               if byte not in (ATTRIBUTE, EXTENSION) and read(byte)}
    pairs = {(letter, follower): read(letter, follower) for letter in singles
             for follower in FOLLOWERS}
    pairs = {(letter, follower): values for (letter, follower), values in pairs.items()
             if values and follower in singles and values != singles[letter] + singles[follower]}
    changing = {follower for _, follower in pairs} | {0xEA}
    for byte in range(0x80):
        mapping.both[bytes([byte])] = (byte,)
    for byte, values in singles.items():
        mapping.both[bytes([byte, 0]) if byte in changing else bytes([byte])] = values
    mapping.both.update(DANDAS)
    for (letter, follower), values in pairs.items():
        # What Unicode has no letter for is written value by value.
        is_letter = len(values) == 1 or values[1] in JOINERS
        lines = mapping.both if is_letter else mapping.read
        lines[bytes([follower, letter])] = values
    if script == "devanagari":
        mapping.both[b"\xF0\xB5"] = (0x0951,)
        mapping.both[b"\xF0\xB8"] = (0x0952,)
        mapping.both[b"\xF0\xBF"] = (0x0970,)
    if script == "gurmukhi":  # a nasal sign that depends on the letter in front of it
        mapping.write[b"\xA2"] = [(0x0A70,)]
    return mapping


for version, script in enumerate(SCRIPTS):
    made(version, script).save(f"iscii-{script}")
