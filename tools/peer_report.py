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
why: the number, the converter and its name for it; the codes that are read otherwise, and the
values that are written so. Made by tools/compare_peers --streams LIBRARY --record; the reasons
are in peer_reasons.py, by encoding, and docs/mappings.md explains them."""
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
            codes = {d.key for d in rest if isinstance(d.key, bytes)}
            values = {d.key for d in rest} - codes
            lines = difference_record.lines_of(mine.read.keys() | other.read.keys(), codes,
                                               mine.write.keys() | other.write.keys(), values)
        comparisons.append(Comparison(f"{number} {peer}: {charset}", counts, lines))
    return comparisons


def run(path, numbers, is_recording, explained):
    """Prints what is found. Returns whether every difference has a reason that is explained."""
    jobs = [(path, number, peers)
            for number, peers in sorted(peer_codes.peers_by_row(Library(path)).items())
            if not numbers or number in numbers]
    record, is_explained, compared = difference_record.load(RECORD), True, set()
    with ProcessPoolExecutor() as workers:
        for comparisons in workers.map(_compare_row, jobs):
            for head, counts, lines in comparisons:
                compared.add(head)
                reason = peer_reasons.of_encoding(int(head.split()[0]))
                recorded = record.get(head, [])
                if is_recording and lines:
                    record[head] = lines
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
                difference_record.save(RECORD, record, COMMENT)
    print(f"{len(compared)} comparisons of {len(jobs)} encodings")
    return is_explained
