"""Which encoding serves which of Python's own names, and how they come before Python's."""

from __future__ import annotations

import codecs
import encodings
import encodings.aliases
from collections.abc import Callable
from typing import NamedTuple

_Search = Callable[[str], codecs.CodecInfo | None]


class Entry(NamedTuple):
    """What takes the place of a codec of Python."""

    encoding: int  #: the encoding here
    name: str  #: what the codec calls itself, as Python's does
    label: str  #: what exceptions call it, as Python's do


# By the module of Python's codec: the encoding with the same characters, or where there is none, the
# one that the name means. docs/python.md says where they differ.
_CHARMAPS = {
    "cp037": 37, "cp1006": 1006, "cp1026": 1026, "cp1125": 1125, "cp1140": 1140, "cp1250": 1250,
    "cp1251": 1251, "cp1252": 1252, "cp1253": 1253, "cp1254": 1254, "cp1255": 1255, "cp1256": 1256,
    "cp1257": 1257, "cp1258": 1258, "cp273": 20273, "cp424": 20424, "cp437": 437, "cp500": 500,
    "cp720": 720, "cp737": 737, "cp775": 775, "cp850": 850, "cp852": 852, "cp855": 855, "cp856": 856,
    "cp857": 857, "cp858": 858, "cp860": 860, "cp861": 861, "cp862": 862, "cp863": 863, "cp864": 864,
    "cp865": 865, "cp866": 866, "cp869": 869, "cp874": 874, "cp875": 875, "hp_roman8": 1051,
    "iso8859_1": 819, "iso8859_2": 28592, "iso8859_3": 100913, "iso8859_4": 28594,
    "iso8859_5": 28595, "iso8859_6": 101089, "iso8859_7": 9005, "iso8859_8": 5012,
    "iso8859_9": 28599, "iso8859_10": 28600, "iso8859_11": 28601, "iso8859_13": 28603,
    "iso8859_14": 28604, "iso8859_15": 28605, "iso8859_16": 28606, "koi8_r": 20866,
    "koi8_t": 200508, "koi8_u": 101168, "kz1048": 200511, "mac_croatian": 10082,
    "mac_cyrillic": 200458, "mac_farsi": 200454, "mac_greek": 200457, "mac_iceland": 10079,
    "mac_latin2": 10029, "mac_roman": 200455, "mac_romanian": 10010, "mac_turkish": 200456,
    "palmos": 200514, "ptcp154": 154, "tis_620": 28601,
}  # fmt: skip
_MULTIBYTE = {
    "big5": 200703, "big5hkscs": 200706, "cp932": 932, "cp949": 200935, "cp950": 950,
    "euc_jis_2004": 200730, "euc_jisx0213": 200730, "euc_jp": 200954, "euc_kr": 200947,
    "gb18030": 200700, "gb2312": 200701, "gbk": 200951, "hz": 1052936, "iso2022_jp": 200940,
    "iso2022_jp_1": 200941, "iso2022_jp_2": 200942, "iso2022_jp_2004": 200944,
    "iso2022_jp_3": 200943, "iso2022_jp_ext": 200945, "iso2022_kr": 200946, "johab": 200950,
    "shift_jis": 200722, "shift_jis_2004": 200948, "shift_jisx0213": 200949,
}  # fmt: skip


def find(name: str) -> Entry | None:
    """The entry for a name that the registry asks for, or none."""
    norm = encodings.normalize_encoding(name)
    module = encodings.aliases.aliases.get(norm) or encodings.aliases.aliases.get(
        norm.replace(".", "_"), norm
    )
    if module in _MULTIBYTE:
        return Entry(_MULTIBYTE[module], module, module)
    if module not in _CHARMAPS:
        return None
    hyphenated = not module.startswith("cp") and module not in ("kz1048", "palmos", "ptcp154")
    own = module.replace("_", "-") if hyphenated else module
    return Entry(_CHARMAPS[module], own, "charmap")


def modules() -> dict[str, int]:
    """The modules of Python whose names are served, with the encodings."""
    return {**_CHARMAPS, **_MULTIBYTE}


_installed: list[_Search] = []


def install(search: _Search) -> None:
    """Has a search function asked before Python's own; the registry forgets what it found."""
    if _installed:
        return
    _installed.append(search)
    _order([search, encodings.search_function])


def uninstall() -> None:
    if not _installed:
        return
    codecs.unregister(_installed.pop())
    _order([encodings.search_function])


def _order(searches: list[_Search]) -> None:
    from . import _codecs

    # The registry asks in the order of registration; names that Python lacks come last.
    last = [_codecs._search] if _codecs._is_registered() else []
    for search in [*searches, *last]:
        codecs.unregister(search)
    for search in [*searches, *last]:
        codecs.register(search)
