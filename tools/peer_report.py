"""Compares every encoding with every converter that has it, and holds the differences to reasons:
those that peer_reasons.py knows for a code, and those that peer_differences.txt records."""

import collections
import pathlib
from concurrent.futures import ProcessPoolExecutor

import difference_record
import peer_codes
import peer_reasons
from library import Library

RECORD = pathlib.Path(__file__).with_name("peer_differences.txt")
COMMENT = """What other converters have otherwise than the encoding here, where no general reason tells
why: the number, the converter and its name for it, and the reason, which docs/mappings.md
explains; the codes that are read otherwise, and the values that are written so. Made by
tools/compare_peers --streams LIBRARY --record."""
NO_REASON = "NO-REASON"

Comparison = collections.namedtuple("Comparison", "head counts lines")


def _compare_row(arguments):
    """All comparisons of an encoding: head, how often which reason, and what has none."""
    path, number, peers = arguments
    library = Library(path)
    page = next(page for page in library.code_pages() if page.number == number)
    comparisons, cache = [], {}
    for peer, charset in peers:
        found, mine, other = peer_codes.differences(library, page, peer, charset, cache)
        reasoned = peer_reasons.with_reasons(found, mine, other)
        counts = collections.Counter(reason for _, reason in reasoned if reason is not None)
        rest = [d for d, reason in reasoned if reason is None]
        lines = []
        if rest:
            codes, values = _keys(found, mine, other)
            lines = difference_record.lines_of(
                codes, {d.key for d in rest if d.is_read and isinstance(d.key, bytes)},
                values, {d.key for d in rest if not isinstance(d.key, bytes)})
        comparisons.append(Comparison(f"{number} {peer}: {charset}", counts, lines))
    return comparisons


def _keys(found, mine, other):
    """All codes and values, among which neighbours are made ranges."""
    if mine is None:
        return (), {d.key for d in found}
    return mine.read.keys() | other.read.keys(), mine.write.keys() | other.write.keys()


def _load():
    """{head: (reason, lines)}"""
    record = {}
    for head, lines in difference_record.load(RECORD).items():
        head, _, reason = head.rpartition(" = ")
        record[head] = (reason, lines)
    return record


def _save(record):
    difference_record.save(RECORD, {f"{head} = {reason}": lines
                                    for head, (reason, lines) in record.items()}, COMMENT)


def run(path, numbers, is_recording, explained):
    """Prints what is found. Returns whether every difference has a reason that is explained."""
    jobs = [(path, number, peers)
            for number, peers in sorted(peer_codes.peers_by_row(Library(path)).items())
            if not numbers or number in numbers]
    record, is_explained, compared = _load(), True, set()
    with ProcessPoolExecutor() as workers:
        for comparisons in workers.map(_compare_row, jobs):
            for head, counts, lines in comparisons:
                compared.add(head)
                reason, recorded = record.get(head, (NO_REASON, []))
                if is_recording and lines:
                    record[head] = (reason, lines)
                elif is_recording:
                    record.pop(head, None)
                elif lines != recorded:
                    print(f"{head} differs otherwise than is recorded:", *lines, sep="\n  ")
                    is_explained = False
                words = [f"{name} {count}" for name, count in sorted(counts.items())]
                words += [f"{reason} as recorded"] if lines else []
                used = {*counts, *([reason] if lines else [])}
                if used - explained:
                    print(f"{head}: not explained: {', '.join(sorted(used - explained))}")
                    is_explained = False
                print(f"{head}: {', '.join(words) or 'the same'}", flush=True)
            if is_recording:
                _save(record)
    print(f"{len(compared)} comparisons of {len(jobs)} encodings")
    return is_explained
