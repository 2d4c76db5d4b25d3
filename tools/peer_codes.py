"""Every encoding of the library beside every converter that has it: each code of its structure, and
each scalar value."""

import collections

from library import Ours
from peer_names import NO_ENCODINGS
from peers import PEERS, SCALARS, Structure

BYTES = Structure("00-FF")
PAIRS = Structure("00-FF", "80-FF,00-FF")
PURE_PAIRS = Structure("00-FF,00-FF")
ESCAPED = Structure("00-1A", "1C-FF", "1B,00-FF")
HOST = Structure("00-FF", "40-FE,40-FE", shifts=True)
# Where the kind of encoding does not tell.
STRUCTURES = {
    **dict.fromkeys((54936, 200700),
                    Structure("00-FF", "80-FF,00-FF", "81-84,30-39,81-FE,30-39")),
    **dict.fromkeys((51950, 200710, 964),
                    Structure("00-FF", "80-FF,80-FF", "8E,A1-B0,A1-FE,A1-FE")),
    **dict.fromkeys((200954, *range(200730, 200736), 954, 33722),
                    Structure("00-FF", "80-FF,80-FF", "8F,A1-FE,A1-FE")),
    **dict.fromkeys((300, 834, 835, 837, 971, 16684, *range(200750, 200756)), PURE_PAIRS),
    **dict.fromkeys((930, 931, 933, 935, 937, 939, 1364, 1371, 1388, 1390, 1399), HOST),
    **dict.fromkeys((200304, 200453), PAIRS),
    55000: ESCAPED,
    200519: Structure("00-FF", "8A-8B,A4-A5", "A6-A8,83-C9", "A6-A8,83-C9,A1-AA", joins=True),
}
BY_KIND = {"single-byte": BYTES, "double-byte": PAIRS, "multi-byte": PAIRS}

# Encodings that have names of their own here, because their names mean code pages of Windows or
# newer editions.
UNDER_OTHER_NAMES = {
    200310: [("C library", "TIS-620")],
    200507: [("C library", "KOI-8")],
    200700: [("ICU", "gb18030"), ("C library", "GB18030"), ("Python", "gb18030")],
    200701: [("C library", "EUC-CN"), ("Python", "gb2312"), ("JDK", "GB2312")],
    200702: [("C library", "GBK"), ("Python", "gbk"), ("JDK", "GBK")],
    200703: [("Python", "big5"), ("JDK", "Big5")],
    200704: [("C library", "BIG5")],
    200711: [("C library", "BIG5")],
    200721: [("C library", "SJIS"), ("Python", "shift_jis")],
    200722: [("JDK", "Shift_JIS")],
    200740: [("C library", "EUC-KR"), ("Python", "euc_kr"), ("JDK", "EUC-KR")],
    200741: [("C library", "JOHAB"), ("Python", "johab"), ("JDK", "x-Johab")],
}

class Difference:
    """A code or values that are treated differently; None: not at all."""

    def __init__(self, is_read, key, ours, theirs):
        self.is_read, self.key, self.ours, self.theirs = is_read, key, ours, theirs


class Tables:
    """What an encoding has, here or with a peer."""

    def __init__(self, peer, structure, sequences=()):
        self.read = peer.read_all(structure)
        self.sequences = set(sequences) or {v for v in self.read.values() if len(v) > 1}
        self.write = peer.write_all(structure, self.sequences)


class Texts:
    """What texts of single characters an encoding with a state has, here or with a peer."""

    def __init__(self, write):
        self.read, self.write = {}, write


def peers_by_row(library):
    """{number: [(peer, charset)]}, by what the names mean here."""
    found = collections.defaultdict(list)
    for peer in PEERS.values():
        for charset in peer.names():
            number = library.find(charset)
            if number and charset not in NO_ENCODINGS.get(peer.name, ()):
                found[number].append((peer.name, charset))
    for number, others in UNDER_OTHER_NAMES.items():
        found[number] += others
    return found


def structure_of(page):
    return STRUCTURES.get(page.number) or BY_KIND.get(page.kind.decode())


def code_differences(ours, theirs):
    for read, (mine, other) in ((True, (ours.read, theirs.read)),
                                (False, (ours.write, theirs.write))):
        for key in mine.keys() | other.keys():
            if mine.get(key) != other.get(key):
                yield Difference(read, key, mine.get(key), other.get(key))


# ---- Encodings with a state, and those of Unicode: texts. ----

SEVEN_BITS = Structure("00-7F")


def is_text(value):
    """Not a mark at the beginning of a text, and no noncharacter, which some refuse."""
    return value != 0xFEFF and (value & 0xFFFE) != 0xFFFE and not 0xFDD0 <= value <= 0xFDEF


def same_texts(one, other):
    """Whether two peers understand each other's text of all characters."""
    text = "".join(chr(value) for value in SCALARS if is_text(value))
    return all(reader.read(writer.write(text) or b"") == text
               for reader, writer in ((one, other), (other, one)))


def all_texts(peer):
    return Texts(peer.write_all(SEVEN_BITS, []))


def sampled_texts(peer):
    """Of one value in 256."""
    sample = [value for value in SCALARS[0x41::256] if is_text(value)]
    return Texts({(value,): text for value in sample if (text := peer.write(chr(value)))})


def text_differences(ours, theirs, mine, other):
    """Of characters, each a text: which only one writes, and which are not read as they are meant."""
    for values in mine.write.keys() | other.write.keys():
        written_here, written_there = mine.write.get(values), other.write.get(values)
        if written_here is None or written_there is None:
            yield Difference(False, values, written_here, written_there)
        elif written_here != written_there:
            read = ours.read(written_there), theirs.read(written_here)
            if read != ("".join(map(chr, values)),) * 2:
                yield Difference(True, values, *read)


def differences(library, page, peer_name, charset, cache):
    """All of one encoding and one charset of a peer, and the tables of both."""
    ours, theirs = Ours(library, page.number), PEERS[peer_name](charset)
    structure = structure_of(page)
    if structure is not None:
        if page.number not in cache:
            cache.clear()
            cache[page.number] = Tables(ours, structure)
        mine = cache[page.number]
        other = Tables(theirs, structure, mine.sequences)
        return list(code_differences(mine, other)), mine, other
    is_unicode = page.kind == b"unicode"
    if is_unicode and same_texts(ours, theirs):
        return [], Texts({}), Texts({})
    mine, other = ((sampled_texts if is_unicode else all_texts)(peer) for peer in (ours, theirs))
    return list(text_differences(ours, theirs, mine, other)), mine, other
