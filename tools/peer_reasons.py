"""Why an encoding here and that of a converter differ, code by code. docs/mappings.md explains the
reasons by name."""

import unicodedata

from peer_codes import Texts

# Signs of which each standard and maker has chosen one.
DISPUTED = [set(map(chr, signs)) for signs in (
    (0x2014, 0x2015, 0x2500), (0x301C, 0xFF5E, 0x223C, 0x7E), (0x2016, 0x2225), (0x2212, 0xFF0D, 0x2D),
    (0xA2, 0xFFE0), (0xA3, 0xFFE1), (0xAC, 0xFFE2), (0xA6, 0xFFE4), (0xB7, 0x30FB, 0x2022, 0x2027),
    (0x5C, 0xA5, 0xFF3C, 0x20A9, 0xFFE5, 0xFFE6), (0x7E, 0x203E, 0xAF, 0xFFE3, 0x2DC, 0x2D9),
    (0x2026, 0x22EF, 0x2025), (0x3BC, 0xB5), (0x3B2, 0xDF), (0x2126, 0x3A9), (0x2206, 0x394),
    (0xB4, 0x2CA, 0xFF07, 0x2019, 0x27), (0x2C9, 0xAF, 0xFFE3), (0x2CD, 0x2D, 0x5F),
    (0x2295, 0x2609), (0x2299, 0x2641, 0x25C9), (0x24, 0xA4, 0x20AC), (0xAD, 0x2D, 0x2010), (0x110, 0xD0),
)]

# Why the rest is so, by encoding, the first that holds; peer_differences.txt has it code by code.
OF_ENCODINGS = [
    ("arabic-percent", (864,)),
    ("arabic-ebcdic", (20420, 100420)),
    ("katakana-ebcdic", (20290,)),
    ("hebrew-holam-haser", (1255,)),
    ("vietnamese", (1258,)),
    ("mac-arabic", (10004,)),
    ("mac-symbols", (10000, 10081)),
    ("mac-euro", (10006, 10007)),
    ("mac-romanian", (10010,)),
    ("national-ascii", (20106, 20107, 20108)),
    ("koi8-belarusian", (21866,)),
    ("old-8859-7", (28597,)),
    ("old-8859-8", (28598, 38598)),
    ("ebcdic-variants", (870, 875, 1026, 20273, 20277, 20278, 20285, 20423, 20424, 20871, 20880, 20905)),
    ("windows-pages", (874, 932, 936, 949, 950, 1361, 51936, 51949, 20127, *range(1250, 1259))),
    ("accents", range(200860, 200867)),
    ("iso-2022", (50220, 50221, 50225, 50227, 50229, *range(200850, 200860), 1052936)),
    ("iscii", range(57002, 57012)),
    ("tscii", (200519,)),
    ("gsm-sets", (55000,)),
    ("unicode-forms", (1200, 1201, 1204, 1212, 1214, 1236, 9400, 12000, 12001, 65000, 65001,
                       *range(200800, 200810))),
    ("east-asian-sets", (300, 834, 835, 837, 930, 931, 933, 935, 937, 939, 942, 943, 948, 954, 964,
                         970, 971, 1363, 1364, *range(1371, 1400), 5471, 10001, 10002, 10003, 10008,
                         16684, 20932, 20936, 33722, 51950, 54936, 100932, 100949, 100950,
                         *range(200700, 200760), 200954)),
    ("editions", range(1, 400000)),  # of single bytes
]


def of_encoding(number):
    return next(reason for reason, numbers in OF_ENCODINGS if number in numbers)


PC_CONTROLS = (b"\x1A", b"\x1C", b"\x7F")
LINE_ENDS = {(0x0A,), (0x85,)}


def is_private(values):
    return values is not None and all(0xE000 <= v <= 0xF8FF or v >= 0xF0000 for v in values)


def is_own_control(code, values):
    return values is not None and len(code) == 1 and code[0] >= 0x80 and values == (code[0],) and \
        code[0] <= 0x9F


def is_disputed(one, other):
    return one is not None and other is not None and len(one) == len(other) == 1 and \
        any(chr(one[0]) in signs and chr(other[0]) in signs for signs in DISPUTED)


def is_compatible(one, other):
    """The same text but for widths, shapes, and letters taken apart."""
    if one is None or other is None:
        return False
    return len({unicodedata.normalize("NFKC", "".join(map(chr, v))) for v in (one, other)}) == 1


def of_code(d, mine):
    """Why a code is read differently; mine are the tables here. None: no reason known."""
    ours, theirs = d.ours, d.theirs
    if is_own_control(d.key, ours) and theirs is None:
        return "c1-controls"
    if is_own_control(d.key, theirs) and ours is None:
        return "c1-of-peers"
    if d.key in PC_CONTROLS and {ours, theirs} & {(0x1A,), (0x1C,), (0x7F,)}:
        return "ibm-pc-controls"
    if {ours, theirs} == LINE_ENDS:
        return "line-ends"
    if is_private(ours) or is_private(theirs):
        return "private-use"
    if theirs in ((0x1A,), (0xFFFD,)) and ours is None:
        return "substitutes"
    if ours is None and mine.write.get(theirs) not in (None, d.key):
        return "second-codes"
    if theirs is None and mine.write.get(ours) != d.key:
        return "second-codes"
    if is_disputed(ours, theirs):
        return "disputed-signs"
    if is_compatible(ours, theirs):
        return "widths-and-shapes"
    return None


def of_value(d, mine, other, of_codes):
    """Why a value is written differently; of_codes: the reasons of the codes that are read so."""
    for code in (d.ours, d.theirs):
        if code in of_codes:
            return of_codes[code]
    if d.ours is None and other.read.get(d.theirs) != d.key:
        return "look-alikes"
    if d.theirs is None and mine.read.get(d.ours) != d.key:
        return "approximations"
    if is_private(d.key):
        return "private-use"
    if None not in (d.ours, d.theirs):
        if mine.read.get(d.ours) != d.key or other.read.get(d.theirs) != d.key:
            return "look-alikes"
        return "second-codes"
    return None


def with_reasons(found, mine, other):
    """Pairs of difference and reason, None where there is none."""
    if isinstance(mine, Texts):
        return [(d, None) for d in found]
    of_codes = {}
    pairs = []
    for d in found:
        if d.is_read:
            of_codes[d.key] = of_code(d, mine)
            pairs.append((d, of_codes[d.key]))
    pairs += [(d, of_value(d, mine, other, of_codes)) for d in found if not d.is_read]
    return pairs
