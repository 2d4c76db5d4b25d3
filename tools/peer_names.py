"""Which names of other converters the tool knows, and why it leaves the others out."""

import subprocess
from concurrent.futures import ThreadPoolExecutor

from peer_tables import Charmap
from peers import PEERS

try:
    from webencodings.labels import LABELS
except ImportError:
    LABELS = {}

# What converters list beside encodings of text: Python's codecs of bytes and of escapes, and those
# of headers in mail, that Perl has; a name that Perl gives to nothing.
NO_ENCODINGS = {
    "Python": {"base64_codec", "bz2_codec", "hex_codec", "quopri_codec", "rot_13", "uu_codec",
               "zlib_codec", "idna", "punycode", "raw_unicode_escape", "unicode_escape"},
    "Perl": {"MIME-B", "MIME-Header", "MIME-Header-ISO_2022_JP", "MIME-Q", "null"},
}

# Why a name is left out; docs/mappings.md has the list too.
MACHINE = "means another encoding on each machine, its byte order or its settings"
AMBIGUOUS = "other converters mean something else by it"
GUESS = "is no encoding: the converter guesses among several"
NUMBER = "digits alone are the number of a code page"
ADDITION = "adds a few characters to another set, and is no encoding by itself"
LEFT_OUT = {
    "WCHAR_T": MACHINE,
    "UTF16_PlatformEndian": MACHINE, "UTF16_OppositeEndian": MACHINE,
    "UTF32_PlatformEndian": MACHINE, "UTF32_OppositeEndian": MACHINE,
    "mbcs": MACHINE, "ansi": MACHINE, "dbcs": MACHINE, "default": MACHINE,
    "latin": AMBIGUOUS, "latin0": AMBIGUOUS, "LATIN0": AMBIGUOUS,
    "x-JISAutoDetect": GUESS, "JISAutoDetect": GUESS,
    "5601": NUMBER,
    "LMBCS-1": "has no description but one program's", "lmbcs": "as LMBCS-1",
    "ibm-65025": "as LMBCS-1",
    **{name: ADDITION for name in (
        "ISO_6937-2-ADD", "ISO-IR-142", "ISO_8859-1,GL", "JIS_C6229-1984-B-ADD", "ISO-IR-93",
        "JP-OCR-B-ADD", "JIS_C6229-1984-HAND", "ISO-IR-94", "JP-OCR-HAND",
        "JIS_C6229-1984-HAND-ADD", "ISO-IR-95", "JP-OCR-HAND-ADD", "NATS-DANO-ADD",
        "NATS-SEFI-ADD", "ISO-IR-8-2", "T.101-G2", "ISO-IR-128", "VIDEOTEX-SUPPL", "ISO-IR-70")},
}


class Web:
    """The labels of the Encoding Standard, which stand behind "web:" here."""
    name = "web"

    @staticmethod
    def names():
        names = {}
        for label, encoding in LABELS.items():
            names.setdefault(f"web:{encoding}", []).append(f"web:{label}")
        return names


def names_of(peer):
    """Every name, each once, and what it is a name of."""
    listed = {}
    for name, aliases in peer.names().items():
        if name in NO_ENCODINGS.get(peer.name, ()):
            continue
        for word in (name, *aliases):
            listed.setdefault(word, name)
    return listed


def is_known(tool, name):
    return subprocess.run([tool, "-q", "-f", name, "-t", "utf-8"], stdin=subprocess.DEVNULL,
                          capture_output=True).returncode == 0


def report(tool):
    """Prints, for each converter, how many of its names are known, and the others. Returns whether
    each of these has a reason."""
    is_explained = True
    with ThreadPoolExecutor() as workers:
        for peer in (*PEERS.values(), Charmap, Web):
            listed = names_of(peer)
            if not listed:
                print(f"{peer.name}: not installed")
                continue
            known = dict(zip(listed, workers.map(lambda name: is_known(tool, name), listed)))
            unknown = [name for name in listed if not known[name]]
            count = sum(known.values())
            print(f"{peer.name}: {count} of {len(listed)} names known, "
                  f"{100 * count / len(listed):.1f} %")
            for name in unknown:
                print(f"  {name}, of {listed[name]}: {LEFT_OUT.get(name, 'NO REASON')}")
                is_explained &= name in LEFT_OUT
    return is_explained
