"""What peers write, read by encconv: all characters of an encoding as one text."""

import subprocess

# Line ends part the characters, and a reader may treat them.
NOT_ALONE = "\n\r\x85\u2028\u2029"


def characters():
    """All of the BMP, and as many beyond as show that they are left out."""
    for number in (*range(1, 0xD800), *range(0xE000, 0x10000), 0x1F600, 0x20000):
        if chr(number) not in NOT_ALONE:
            yield chr(number)


def written(peer):
    """Pairs of a character and the bytes that a peer writes for it alone."""
    if hasattr(peer, "written"):
        return peer.written(characters())
    pairs = ((c, peer.encode(ord(c))) for c in characters())
    return [(c, code) for c, code in pairs if code]


def read(tool, page, codes, line_end):
    """What encconv reads each code as; None where it finds something malformed.

    Each stands on a line of its own, so that an error does not reach the next.
    """
    text = line_end.join(codes)
    result = subprocess.run([tool, "-q", "-f", str(page), "-t", "utf-8", "--on-error",
                             "substitute=\uFDD0"], input=text, capture_output=True, check=True)
    lines = result.stdout.decode().split("\n")
    if len(lines) != len(codes):
        raise ValueError(f"{page}: {len(codes)} lines became {len(lines)}")
    return [None if "\uFDD0" in line else line for line in lines]


def differences(tool, page, peer):
    """Triples: character, what the peer writes, and what that is read as."""
    pairs = written(peer)
    line_end = peer.encode(0x0A) if not hasattr(peer, "written") else b"\n"
    for (character, code), ours in zip(pairs, read(tool, page, [c for _, c in pairs], line_end)):
        if ours != character:
            yield character, code, ours
