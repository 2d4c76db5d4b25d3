"""Whole tables of the single-byte encodings of other converters."""

import functools
import gzip
import pathlib
import re

from peers import PEERS, IcuPeer, Structure

BYTES = Structure("00-FF")


class Table:
    """One encoding: what each byte is read as (scalar values), and what each value is written as."""

    def __init__(self):
        self.reads = {}
        self.writes = {}

    def both_ways(self):
        return {byte: values for byte, values in self.reads.items()
                if len(values) == 1 and self.writes.get(values[0]) == byte}

    def only_read(self):
        both = self.both_ways()
        return {byte: values for byte, values in self.reads.items() if byte not in both}

    def only_written(self):
        both = self.both_ways()
        return {value: byte for value, byte in self.writes.items()
                if both.get(byte) != (value,)}


def table_of(peer, charset):
    """The table of a peer's encoding, by the peer's name; None: not one byte each."""
    if peer == Charmap.name:
        return Charmap.table(charset)
    asked = IcuPeer(charset, has_fallbacks=False) if peer == "ICU" else PEERS[peer](charset)
    table = Table()
    table.reads = {code[0]: values for code, values in asked.read_all(BYTES).items()}
    for values, code in asked.write_all(BYTES, []).items():
        if len(code) != 1:
            return None
        if values[0] <= 0xFFFF:
            table.writes[values[0]] = code[0]
    return table if table.reads else None


class Charmap:
    """The descriptions of character sets that come with glibc's locales. iconv lacks some of them."""
    name = "charmap"
    _directory = pathlib.Path("/usr/share/i18n/charmaps")

    @classmethod
    def _text(cls, charset):
        return gzip.decompress((cls._directory / f"{charset}.gz").read_bytes()).decode("latin-1")

    @classmethod
    @functools.cache
    def names(cls):
        names = {}
        for file in cls._directory.glob("*.gz"):
            text = cls._text(file.stem)
            names[file.stem] = re.findall(r"^% alias (\S+)", text, re.M)
        return names

    @classmethod
    def table(cls, charset):
        table = Table()
        for line in cls._text(charset).splitlines():
            value, code = re.search(r"<U([0-9A-F]{4,})>", line), re.search(r"\s((?:/x\w\w)+)\s", line)
            if not value or not code:
                continue
            if len(code[1]) != len("/x00"):
                return None
            byte, value = int(code[1][2:], 16), int(value[1], 16)
            if byte == 0 and value != 0 and charset != "ISO_11548-1":
                continue  # how the older descriptions say that a character is lacking
            table.reads[byte] = (value,)
            if not line.startswith("%IRREVERSIBLE%"):  # only read
                table.writes.setdefault(value, byte)
        return table
