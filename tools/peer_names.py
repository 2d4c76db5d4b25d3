"""Which names of other converters the tool knows."""

import subprocess
from concurrent.futures import ThreadPoolExecutor

from peer_tables import PEERS

# Python's codecs that are no encodings of text, and those of other systems.
NO_ENCODINGS = {
    "Python": {"base64_codec", "bz2_codec", "hex_codec", "quopri_codec", "rot_13", "uu_codec",
               "zlib_codec", "idna", "punycode", "raw_unicode_escape", "unicode_escape"},
}


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
    """Prints, for each converter, how many of its names are known, and the others."""
    with ThreadPoolExecutor() as workers:
        for peer in PEERS.values():
            listed = names_of(peer)
            known = dict(zip(listed, workers.map(lambda name: is_known(tool, name), listed)))
            unknown = {}
            for name, whose in listed.items():
                if not known[name]:
                    unknown.setdefault(whose, []).append(name)
            count = sum(known.values())
            print(f"{peer.name}: {count} of {len(listed)} names known, "
                  f"{100 * count / len(listed):.1f} %")
            for whose, names in sorted(unknown.items()):
                print(f"  {whose}: {' '.join(sorted(names))}")
