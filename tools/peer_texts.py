"""What peers write, read by encconv: all characters of an encoding as one text."""

import subprocess

# Lines part the characters, so what ends one cannot be among them.
LINE_ENDS = "\n\r\x85"
# Stands for malformed bytes: a noncharacter that no encoding but the UTFs has.
MALFORMED = "\uFDD0"


def characters():
    return [chr(n) for n in (*range(1, 0xD800), *range(0xE000, 0x10000))
            if chr(n) not in LINE_ENDS + MALFORMED]


def run(tool, arguments, text):
    return subprocess.run([tool, "-q", *arguments], input=text, capture_output=True,
                          check=True).stdout


def written(peer):
    """Pairs of a character and what a peer writes for it, of those that it writes."""
    if hasattr(peer, "encode_lines"):
        pairs = zip(characters(), peer.encode_lines(characters()))
    else:
        pairs = ((c, peer.write(c)) for c in characters())
    return [(c, code) for c, code in pairs if code]


def read(tool, page, codes):
    """What encconv reads each code as, on a line of its own; None with something malformed."""
    line_end = run(tool, ["-f", "utf-8", "-t", str(page)], b"\n")
    if page == 50225:  # without the header, which stands at the beginning of a text
        line_end = b"\n"
    text = run(tool, ["-f", str(page), "-t", "utf-8", "--on-error", "substitute=" + MALFORMED],
               line_end.join(codes))
    lines = text.decode().split("\n")
    if len(lines) != len(codes):
        raise ValueError(f"{page}: {len(codes)} lines became {len(lines)}")
    return [None if MALFORMED in line else line for line in lines]


def differences(tool, page, peer):
    """Triples of a character, what the peer writes for it, and what that is read as."""
    pairs = written(peer)
    for (character, code), ours in zip(pairs, read(tool, page, [code for _, code in pairs])):
        if ours != character:
            yield character, code, ours
