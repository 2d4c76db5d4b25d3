"""Reads the table texts of single-byte code pages (docs/code-pages.md, "Table text")."""

import base64
import bz2
import functools
import pathlib
import re

from peer_tables import Table

ENCODING = pathlib.Path(__file__).resolve().parent.parent / "encoding"


@functools.cache
def _constants():
    """The constant that has the text of a code page."""
    rows = (ENCODING / "codecs" / "encoding_row_list.h").read_text()
    return {int(number): constant for number, constant in
            re.findall(r"\bsingle\(\s*(\d+),(?:(?!single\().)*?(_Enc_\w+)\)", rows, re.S)}


@functools.cache
def _texts():
    texts = {}
    for file in (ENCODING / "tables" / "texts").glob("*.cpp"):
        for constant, literals in re.findall(r"(_Enc_\w+)\[?\]?\s*=\s*((?:\s*\"[^\"]*\")+)",
                                             file.read_text()):
            texts[constant] = "".join(re.findall(r"\"([^\"]*)\"", literals))
    return texts


def _image(text):
    packed = base64.b64decode(text[1:] + "=" * (-len(text[1:]) % 4))
    return packed if text[0] == "x" else bz2.decompress(packed[8:])


@functools.cache
def table(number):
    """What a code page reads and writes; do not change it."""
    image = _image(_texts()[_constants()[number]])
    result = Table()
    at, code, unit = 2, 0, 0
    while at + 3 <= len(image) and image[at] != 0 or at == 2:
        code = (code + image[at]) % 0x100
        unit = (unit + int.from_bytes(image[at + 1:at + 3], "little")) % 0x10000
        at += 3
        result.writes[unit] = code
        result.reads[code] = (max(unit, *result.reads.get(code, (0,))),)
    identities = range(0x80) if image[0:1] == b"a" else range(1)
    for byte in identities:
        result.reads[byte] = (byte,)
        result.writes[byte] = byte
    return result
