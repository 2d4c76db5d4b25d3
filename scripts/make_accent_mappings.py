#!/usr/bin/env python3
"""Makes the mappings of encodings whose accents are bytes of their own (encoding/codecs/accents.h).

Those with composed characters are what the C library's iconv reads and writes. ANSEL is what
MARC::Charset has, and is compared with yaz-iconv; its composed characters are those of Unicode. The
other sets of MARC-8 are those of MARC::Charset.
A code is an accent and a letter in this order, also where the accent follows its letter in the text;
an accent with 00 behind it is the combining mark.
"""

import subprocess
import sys
import unicodedata
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools"))
sys.dont_write_bytecode = True
from mapping_format import Mapping, load
from peers import IconvPeer

FRONT = {0xC1: 0x300, 0xC2: 0x301, 0xC3: 0x302, 0xC4: 0x303, 0xC5: 0x304, 0xC6: 0x306, 0xC7: 0x307,
         0xC8: 0x308, 0xC9: 0x308, 0xCA: 0x30A, 0xCB: 0x327, 0xCC: 0x332, 0xCD: 0x30B, 0xCE: 0x328,
         0xCF: 0x30C}
BEHIND = {0xB0: 0x300, 0xB1: 0x309, 0xB2: 0x303, 0xB3: 0x301, 0xB4: 0x323}
SCALARS = [n for n in range(0x10000) if not 0xD800 <= n < 0xE000]


def add(mapping, code, value, written):
    (mapping.both if written else mapping.read)[code] = (value,)


def of_iconv(name, charset, words, accents, behind=False):
    peer = IconvPeer(charset)
    mapping = Mapping(f"{words}\nMade by scripts/make_accent_mappings.py from the C library's {charset}.")
    for byte in range(256):
        text = peer.read(bytes([byte]))
        if byte not in accents and text is not None and len(text) == 1:
            code = bytes([byte])
            add(mapping, code, ord(text), peer.write(text) == code)
    marks = {}
    for accent, mark in accents.items():
        letters = [byte for byte in range(0x20, 256) if bytes([byte]) in mapping.both]
        pairs = {}
        for letter in letters:
            code = bytes([letter, accent] if behind else [accent, letter])
            text = peer.read(code)
            if text is not None and len(text) == 1:
                pairs[letter] = (ord(text), peer.write(text) == code)
        if not pairs and not behind:
            continue
        for letter, (value, written) in pairs.items():
            add(mapping, bytes([accent, letter]), value, written)
        add(mapping, bytes([accent, 0]), mark, marks.setdefault(mark, accent) == accent)
    have = {values[0] for values in mapping.both.values()}
    lost = [f"{n:04X}" for n in SCALARS if n not in have and peer.write(chr(n)) is not None]
    print(name, len(mapping.both), "both,", len(mapping.read), "read; the peer writes besides:",
          " ".join(lost) or "nothing")
    mapping.save(name)


def of_marc(name):
    script = ('use MARC::Charset qw(marc8_to_utf8); binmode STDOUT, ":utf8";'
              'for my $c (0x20 .. 0x7e, 0xa1 .. 0xfe) { my $a = $c >= 0xe0 ? "x" : "";'
              'printf "%02X %s\\n", $c, join " ", map { sprintf "%04X", ord } '
              'split //, marc8_to_utf8(chr($c) . $a) }')
    lines = subprocess.run(["perl", "-e", script], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, check=True, text=True).stdout
    mapping = Mapping("ANSEL, the Latin letters of MARC-8.\nMade by scripts/make_accent_mappings.py from "
                      "MARC::Charset, compared with yaz-iconv.")
    for byte in [*range(0x20), 0x7F]:
        mapping.both[bytes([byte])] = (byte,)
    for byte, value in ((0x88, 0x98), (0x89, 0x9C), (0x8D, 0x200D), (0x8E, 0x200C)):
        mapping.both[bytes([byte])] = (value,)
    marks, letters = {}, {}
    for line in lines.splitlines():
        code, *values = line.split()
        byte, values = int(code, 16), [int(value, 16) for value in values]
        if byte < 0xE0 and len(values) == 1:
            mapping.both[bytes([byte])] = (values[0],)
            letters[values[0]] = byte
        if byte >= 0xE0 and len(values) == 2:
            mapping.both[bytes([byte, 0])] = (values[1],)
            marks[values[1]] = byte
        if byte >= 0xE0 and len(values) == 1:  # the second half of a mark over two letters
            mapping.read[bytes([byte, 0])] = (0,)
    for value in SCALARS:
        apart = [ord(c) for c in unicodedata.normalize("NFD", chr(value))]
        if 1 < len(apart) < 5 and value not in letters and apart[0] in letters \
                and all(mark in marks for mark in apart[1:]):
            code = bytes([*(marks[mark] for mark in apart[1:]), letters[apart[0]]])
            mapping.both.setdefault(code, (value,))  # of U+00C5 and U+212B the former
    for byte in range(0x20, 256):
        text = b"\x20" + bytes([byte]) + (b"x" if byte >= 0xE0 else b"")
        found = subprocess.run(["yaz-iconv", "-f", "marc8", "-t", "utf-8"], input=text,
                               capture_output=True, check=False).stdout.decode()[1:]
        ours = mapping.both.get(bytes([byte])) or \
            (ord("x"), *mapping.both.get(bytes([byte, 0]), ()))
        if byte not in (0x7F, 0x88, 0x89) and found != "".join(map(chr, ours)) \
                and not (found in ("", "x") and len(ours) == 1):
            print(f"{byte:02X}: yaz {found!a}, here {ours}")
    print(name, len(mapping.both), "both,", len(mapping.read), "read")
    mapping.save(name)


def of_marc8(name):
    script = ('use MARC::Charset::Table; my $t = MARC::Charset::Table->new(); my $db = $t->db();'
              'for my $key (sort keys %$db) { my $c = $t->get_code($key); my $u = $c->ucs();'
              'next if $key =~ /^\\d\\d+$/ || !defined $u || $u eq "";'
              'my $w = $t->lookup_by_utf8(chr hex $u);'
              'print join(" ", $c->charset(), $c->marc(), $u,'
              '$w->charset() eq $c->charset() && $w->marc() eq $c->marc() ? 1 : 0), "\n" }')
    lines = subprocess.run(["perl", "-e", script], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, check=True, text=True).stdout
    mapping = Mapping("The sets of MARC-8 but ASCII and ANSEL: the last byte of the escape sequence and the\n"
                      "bytes of the character; accents of ANSEL stand in front of the letter.\nMade by scripts/make_accent_mappings.py from MARC::Charset.")
    rows = [line.split() for line in lines.splitlines()]
    symbols = {value for charset, _, value, _ in rows if charset == "67"}  # as letters they are Greek
    letters = {}
    for charset, marc, value, written in rows:
        if charset not in ("42", "45") and "21" <= marc[:2] <= "7E":
            is_written = charset == "53" if value in symbols else written == "1"
            code = bytes.fromhex(charset + marc)
            add(mapping, code, int(value, 16), is_written)
            if is_written and charset in ("4E", "51", "53"):
                letters[int(value, 16)] = code
    ansel = load("ansel")
    marks = {v[0]: code[0] for code, v in ansel.both.items() if len(code) == 2 and code[1] == 0}
    have = {v[0] for v in [*ansel.both.values(), *mapping.both.values()]}
    for value in SCALARS:
        apart = [ord(c) for c in unicodedata.normalize("NFD", chr(value))]
        if 1 < len(apart) < 4 and value not in have and apart[0] in letters \
                and all(mark in marks for mark in apart[1:]):
            charset, letter = letters[apart[0]]
            code = bytes([charset, *(marks[mark] for mark in apart[1:]), letter])
            mapping.both.setdefault(code, (value,))
    print(name, len(mapping.both), "both,", len(mapping.read), "read")
    mapping.save(name)


def main():
    of_iconv("iso_6937", "ISO_6937", "ISO 6937 of 1992.", FRONT)
    of_iconv("iso_6937_2", "ISO_6937-2", "ISO 6937-2 of 1983.", FRONT)
    of_iconv("t_61_8bit", "T.61-8BIT", "T.61 in eight bits (Teletex).", FRONT)
    of_iconv("ansi_x3_110", "ANSI_X3.110", "ANSI X3.110 of 1983 (videotex).", FRONT)
    of_iconv("tcvn5712_1", "TCVN5712-1", "TCVN 5712-1, Vietnamese, whose accents follow their letters.",
             BEHIND, behind=True)
    of_marc("ansel")
    of_marc8("marc_8")


if __name__ == "__main__":
    main()
