#!/usr/bin/env python3
"""Makes the mappings of the multi-byte encodings from independent converters, or checks them.

    scripts/make_multibyte_mappings.py [--check | --record] [NAME...]

multibyte_mappings.py has the list: for each mapping the converter that it is made from, and those
that it is compared with. --check makes nothing: it compares the mapping with the first, which must
be the same, and with each other one, whose differences must be those that are recorded in
multibyte_differences.txt; --record writes them there. docs/mappings.md has the reasons.
"""

import argparse
import functools
import sys
from pathlib import Path

sys.dont_write_bytecode = True
from mapping_resolve import Resolved, resolve, stated, with_rest, without_rest
from multibyte_mappings import MAPPINGS, open_peer

import difference_record

RECORD = Path(__file__).with_name("multibyte_differences.txt")
COMMENT = """What converters map otherwise: the mapping, the converter and its name for it; the
codes that it reads as something else or not at all, or alone; the values that it
writes so. Made by make_multibyte_mappings.py --record; docs/mappings.md has the
reasons."""


@functools.lru_cache(maxsize=4)
def all_of_peer(title, structure):
    peer = open_peer(title)
    read = peer.read_all(structure)
    sequences = {values for values in read.values() if len(values) > 1}
    write = peer.write_all(structure, sequences)
    # GB 18030's codes of values beyond U+FFFF are not in the structure; other codes that are written
    # and not read mean nothing.
    return Resolved(read, {values: code for values, code in write.items()
                           if code in read or (len(code) == 4 and values[0] > 0xFFFF)})


def what_peer_has(mapping, title):
    result = all_of_peer(title, mapping.structure)
    if mapping.part:
        result = result.part(mapping.part)
    for adjust in mapping.adjustments:
        result = adjust(result)
    return result


def differences(ours, theirs):
    """Two lines: which codes are read and which values are written in another way."""
    codes = ours.read.keys() | theirs.read.keys()
    values = ours.write.keys() | theirs.write.keys()
    return difference_record.lines_of(
        codes, {c for c in codes if ours.read.get(c) != theirs.read.get(c)},
        values, {v for v in values if ours.write.get(v) != theirs.write.get(v)})


def make(mapping):
    target = what_peer_has(mapping, mapping.first)
    if mapping.has_rest:
        target = without_rest(target)
    result = stated(target, mapping.over)
    result.comment = mapping.comment()
    result.has_gb18030_rest = mapping.has_rest and mapping.over.isdigit()  # else the base has it
    result.save(mapping.name)
    if resolve(mapping.name) != target:
        raise ValueError(f"{mapping.name}: what is stated is not what {mapping.first} has")
    print(mapping.name, "%d both, %d read, %d written" % target.count(), flush=True)


def check(mapping, record, is_recording):
    ours = resolve(mapping.name)
    if mapping.has_rest:
        ours = with_rest(ours)
    faults = []
    if mapping.first and ours != what_peer_has(mapping, mapping.first):
        faults.append(f"{mapping.name} is not what {mapping.first} has")
    for title in mapping.others:
        found = differences(ours, what_peer_has(mapping, title))
        head = f"{mapping.name} {title}"
        if is_recording:
            record[head] = found
        elif record.get(head) != found:
            faults.append(f"{head} differs otherwise than is recorded")
            faults += found
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__.partition("\n")[0])
    parser.add_argument("--check", action="store_true", help="compare with the converters")
    parser.add_argument("--record", action="store_true", help="record the differences")
    parser.add_argument("names", nargs="*", metavar="NAME", help="mappings; all without")
    options = parser.parse_args()
    unknown = set(options.names) - {mapping.name for mapping in MAPPINGS}
    if unknown:
        parser.error(f"no such mapping: {' '.join(sorted(unknown))}")
    chosen = [m for m in MAPPINGS if not options.names or m.name in options.names]
    record = difference_record.load(RECORD)
    faults = []
    for mapping in chosen:
        if options.check or options.record:
            faults += check(mapping, record, options.record)
        elif mapping.first:
            make(mapping)
    if options.record:
        difference_record.save(RECORD, record, COMMENT)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
