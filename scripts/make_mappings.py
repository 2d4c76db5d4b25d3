#!/usr/bin/env python3
"""Makes the mappings of single-byte encodings from those of other converters.

    scripts/make_mappings.py [NAME...]

scripts/mappings/single_byte.tsv lists them: the mapping, what it is written over ("-": nothing),
the encoding of another converter that it is made from, another converter's encoding that it is
compared with ("-": nobody else has it), a change (of CHANGES), and why it is so where the two
differ. Writes encoding/tables/mappings/NAME.map. Without NAME all
are made, and the differences written to docs/mappings-single-byte.md, behind its heading
"Differences, one by one", and some tables of the second converters to tests/data. Needs glibc
with its locales, ICU, the JDK and Perl; the tables were made with the versions in the document.
"""

import functools
import pathlib
import sys
import textwrap
import unicodedata

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))
sys.dont_write_bytecode = True
import mapping_format
import table_texts
from peer_tables import Table, table_of as table_of_peer

LIST = ROOT / "scripts" / "mappings" / "single_byte.tsv"
DOCUMENT = ROOT / "docs" / "mappings-single-byte.md"
# IBM's PC tables exchange three controls; the JDK reads JIS X 0201 as ASCII with katakana.
CHANGES = {"straight": {0x1A: 0x1A, 0x1C: 0x1C, 0x7F: 0x7F}, "yen": {0x5C: 0xA5, 0x7E: 0x203E}}
NAMES_OF_PEERS = {"glibc": "C library"}  # where the list has another
MOST_SHOWN = 8  # differences of one encoding in the document
ONLY_WRITTEN = "they would be read as another character"
HEADING = "## Differences, one by one"

# Encodings whose tables the tests compare with one that their mapping was not made from.
TEST_TABLES = {
    "IBM1097": "glibc:IBM1097",
    "IBM1112": "glibc:IBM1112",
    "IBM12712": "glibc:IBM12712",
    "IBM1137": "glibc:IBM1137",
    "ISO-8859-14": "ICU:iso-8859_14-1998",
    "ISO_8859-7:2003": "Python:iso8859_7",
    "ISO646-FR": "charmap:NF_Z_62-010",
    "IBM1125": "Python:cp1125",
    "IBM856": "Perl:cp856",
    "KOI8-T": "Python:koi8_t",
    "PT154": "Python:ptcp154",
    "VISCII": "Perl:viscii",
    "HP-ROMAN8": "Python:hp_roman8",
    "macos-6_2-10.4": "Python:mac_greek",
    "IBM1124": "JDK:x-IBM1124",
}


class Entry:
    def __init__(self, line):
        self.name, self.over, self.source, self.second, self.change, self.why = \
            line.split("\t")


def entries():
    lines = LIST.read_text().splitlines()
    return [Entry(line) for line in lines if not line.startswith("#")]


@functools.cache
def table_of(place):
    """Of a place like "ICU:ibm-37"."""
    peer, charset = place.split(":", 1)
    table = table_of_peer(NAMES_OF_PEERS.get(peer, peer), charset)
    if table is None:
        raise LookupError(f"{place} is not an encoding of single bytes")
    return table


def compatible(value):
    return unicodedata.normalize("NFKC", chr(value))


def made_table(entry, listed):
    """What an entry is to read and write: that of its source, and what differs from it on purpose.

    What is only written, by the source or the second converter, or by that of the base, is taken over
    where the text stays compatible, as of Arabic letters and their shapes; private use is not.
    U+0000 is byte 00 alone.
    """
    source = table_of(entry.source)
    table = Table()
    table.reads = {byte: values for byte, values in source.reads.items()
                   if values != (0xFFFD,) and (byte == 0 or values != (0,))}
    changed = CHANGES.get(entry.change, {})
    table.reads.update({byte: (value,) for byte, value in changed.items()})
    table.writes = {values[0]: byte for byte, values in table.reads.items()
                    if len(values) == 1 and source.writes.get(values[0], byte) == byte}
    table.writes.update({value: byte for byte, value in changed.items()})
    bases = [base.second for base in listed if base.name == entry.over]
    others = [table_of(place) for place in (entry.second, *bases) if place != "-"]
    for other in (source, *others):
        for value, byte in other.only_written().items():
            read = table.reads.get(byte, ())
            if value not in table.writes and len(read) == 1 and \
                    not 0xE000 <= value <= 0xF8FF and compatible(value) == compatible(read[0]):
                table.writes[value] = byte
    return table


def as_applied(mapping, base):
    """What a mapping over a base reads and writes."""
    reads, writes = dict(base.reads), dict(base.writes)

    def forget(byte):
        reads.pop(byte, None)
        for value in [value for value, code in writes.items() if code == byte]:
            del writes[value]

    for code in (*mapping.removed, *mapping.both, *mapping.read):
        forget(code[0])
    for code, values in (*mapping.both.items(), *mapping.read.items()):
        reads[code[0]] = values
    for code, values in mapping.both.items():
        writes[values[0]] = code[0]
    for code, several in mapping.write.items():
        for values in several:
            writes[values[0]] = code[0]
    return reads, writes


def whole(table):
    mapping = mapping_format.Mapping()
    both = table.both_ways()
    for byte, values in table.reads.items():
        lines = mapping.both if byte in both or len(values) > 1 else mapping.read
        lines[bytes([byte])] = values
    for value, byte in table.only_written().items():
        mapping.write.setdefault(bytes([byte]), []).append((value,))
    return mapping


def over(table, base):
    """The mapping that makes table of base."""
    every = whole(table)
    mapping = mapping_format.Mapping()
    base_both, base_read = base.both_ways(), base.only_read()
    mapping.both = {code: values for code, values in every.both.items()
                    if base_both.get(code[0]) != values}
    mapping.read = {code: values for code, values in every.read.items()
                    if base_read.get(code[0]) != values}
    mapping.removed = {bytes([byte]) for byte in base.reads if byte not in table.reads}
    for code, several in every.write.items():
        is_new = code in mapping.both or code in mapping.read
        lacking = [values for values in several
                   if is_new or base.writes.get(values[0]) != code[0]]
        if lacking:
            mapping.write[code] = lacking
    if as_applied(mapping, base) != (table.reads, table.writes):
        raise ValueError("what the base writes besides cannot be taken away")
    return mapping


def base_of(entry, tables):
    return table_texts.table(int(entry.over)) if entry.over.isdigit() else tables[entry.over]


def made(entry, listed, tables):
    """The mapping of an entry; its table goes to tables."""
    tables[entry.name] = table = made_table(entry, listed)
    try:
        mapping = whole(table) if entry.over == "-" else over(table, base_of(entry, tables))
    except ValueError as error:
        sys.exit(f"{entry.name} over {entry.over}: {error}")
    mapping.over = None if entry.over == "-" else entry.over
    compared = f"compared with {entry.second}" if entry.second != "-" else "which nobody else has"
    mapping.comment = f"Made from {entry.source}, {compared}."
    return mapping


def shown(value):
    return "-" if value is None else "+".join(f"U+{scalar:04X}" for scalar in value)


def runs(bytes_):
    """Bytes as "15, 80 to 9F"."""
    parts, first = [], None
    for byte in sorted(bytes_):
        if first is None or byte != last + 1:
            first = byte
            parts.append([byte, byte])
        parts[-1][1] = last = byte
    return ", ".join(f"{a:02X}" if a == b else f"{a:02X} to {b:02X}" for a, b in parts)


def difference_row(entry, table):
    """A line of the document, or nothing when the second converter has the same."""
    second = table_of(entry.second)
    different = {byte for byte in range(256) if table.reads.get(byte) != second.reads.get(byte)}
    lacking_there = {byte for byte in different if byte not in second.reads}
    lacking_here = {byte for byte in different if byte not in table.reads}
    others = sorted(different - lacking_there - lacking_here)
    parts = [f"{byte:02X}: {shown(table.reads[byte])}, there {shown(second.reads[byte])}"
             for byte in others[:MOST_SHOWN]]
    if len(others) > MOST_SHOWN:
        parts.append(f"so {len(others) - MOST_SHOWN} more")
    if lacking_there:
        parts.append(f"only here: {runs(lacking_there)}")
    if lacking_here:
        parts.append(f"only there: {runs(lacking_here)}")
    written = {value for value, byte in second.only_written().items()
               if table.writes.get(value) != byte}
    if written:
        parts.append(f"only written there: {len(written)}")
    if not parts:
        return []
    return [f"| `{entry.name}` | {entry.source} | {entry.second} | {'; '.join(parts)} | "
            f"{entry.why if different else ONLY_WRITTEN} |"]


def write_document(listed, tables):
    text = DOCUMENT.read_text().split(HEADING)[0] + HEADING + """

| mapping | made from | compared with | differences | why so |
| --- | --- | --- | --- | --- |
"""
    compared = [entry for entry in listed if entry.second != "-"]
    rows = [row for entry in compared for row in difference_row(entry, tables[entry.name])]
    same = [entry.name for entry in compared if not difference_row(entry, tables[entry.name])]
    alone = [entry.name for entry in listed if entry.second == "-"]
    text += "\n".join(rows) + "\n\n"
    for heading, names in (("The same in both", same), ("Nobody else has", alone)):
        words = f"{heading}: {', '.join(f'`{name}`' for name in names)}."
        text += "\n".join(textwrap.wrap(words, 100, break_long_words=False)) + "\n\n"
    DOCUMENT.write_text(text.rstrip("\n") + "\n")


def write_test_tables():
    lines = ["# What other converters read each byte as; scripts/make_mappings.py wrote it."]
    for name, place in TEST_TABLES.items():
        lines.append(f"{name} {place}")
        reads = table_of(place).reads
        for row in range(0, 256, 16):
            lines.append(" ".join(f"{reads[byte][0]:04X}" if byte in reads else "-"
                                  for byte in range(row, row + 16)))
    (ROOT / "tests" / "data" / "single_byte_peers.txt").write_text("\n".join(lines) + "\n")


def main(names):
    tables = {}
    listed = entries()
    for entry in listed:
        if not names or entry.name in names or entry.name in {e.over for e in listed}:
            mapping = made(entry, listed, tables)
            if not names or entry.name in names:
                mapping.save(entry.name)
    if not names:
        write_document(listed, tables)
        write_test_tables()


if __name__ == "__main__":
    main(sys.argv[1:])
