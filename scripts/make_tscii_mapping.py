#!/usr/bin/env python3
"""Makes the mapping of TSCII (encoding/codecs/tscii.h) from what the C library reads.

A byte that a second one may change stands with 00 behind it for when it is by itself. The letter that
stands behind a prefix, and in front of what changes it, is none of the mapping's.
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
sys.dont_write_bytecode = True
from mapping_format import Mapping
from peers import IconvPeer

SIGN_AU = (0x0BCC,)
READ_ONLY = {b"\xAD"}  # of version 1.6; 1.7 has FE


def values(peer, code):
    return tuple(map(ord, peer.read(code) or ""))


def made(peer):
    mapping = Mapping("TSCII 1.7, Tamil in the order of the page: what a byte is by itself (00), or "
                      "with the\nother half of a sign behind it.\n"
                      "Made by scripts/make_tscii_mapping.py from the C library.")
    singles = {byte: values(peer, bytes([byte])) for byte in range(0x100)}
    singles = {byte: read for byte, read in singles.items() if read}
    letters = {byte for byte, read in singles.items() if len(read) == 1 and 0x0B95 <= read[0] <= 0x0BB9}
    pairs = {(first, second): values(peer, bytes([first, second]))
             for first in singles for second in singles if second >= 0x80 and second not in letters}
    pairs = {(first, second): read for (first, second), read in pairs.items()
             if read and read != singles[first] + singles[second]}
    changing = {first for first, _ in pairs} | {0xA8}
    for byte, read in singles.items():
        code = bytes([byte, 0] if byte in changing else [byte])
        (mapping.read if code in READ_ONLY else mapping.both)[code] = read
    # The left half of the sign of AU is that of E. The C library has that of EE.
    mapping.both[b"\xA6\xAA"] = SIGN_AU
    for pair, read in pairs.items():
        is_written = len(read) == 1 and read != SIGN_AU
        (mapping.both if is_written else mapping.read)[bytes(pair)] = read
    return mapping


made(IconvPeer("TSCII")).save("tscii")
