"""Texts to convert: manual pages and a bible from Debian's packages, and texts made from samples.txt
and from the characters of a code page.

The same arguments always give the same text. iconv or, where it lacks an encoding, ICU's uconv
encodes them: a fault of this engine must not get into its own input.
"""

import functools
import gzip
import pathlib
import random
import subprocess

UTF8 = {"iconv": "UTF-8", "icu": "UTF-8"}
UNICODE = ("65001", "1200")
# What an encoding does not have, of the length of DEL: half of a surrogate pair, a lead byte without
# characters, and in all others a byte that begins no sequence.
MALFORMED = {"1200": b"\x00\xd8", "932": b"\x85"}
RUNE = "\u16a0"  # a letter of no older code page
# The packages with the manual pages of a language, and the folder that they are in.
MANUALS = {"English": ("manpages manpages-dev", ""), "German": ("manpages-de manpages-de-dev", "de/"),
           "French": ("manpages-fr manpages-fr-dev", "fr/"),
           "Polish": ("manpages-pl manpages-pl-dev", "pl/"),
           "Russian": ("manpages-ru manpages-ru-dev", "ru/"),
           "Japanese": ("manpages-ja manpages-ja-dev", "ja/"),
           "Chinese-simplified": ("manpages-zh", "zh_CN/"),
           "Chinese-traditional": ("manpages-zh", "zh_TW/")}
DISPUTED = "\u037a\u0491"  # letters that peers have added to a code page


def transcode(data, source, target):
    """The data without what the target lacks. Encodings are rows of encodings.txt."""
    command, name = ["iconv", "-c"], "iconv"
    if not (source["iconv"] and target["iconv"]):
        command, name = ["uconv", "--callback", "skip"], "icu"
    command += ["-f", source[name], "-t", target[name]]
    return subprocess.run(command, input=data, capture_output=True, check=False).stdout


def encode(text, encoding):
    return transcode(text.encode(), UTF8, encoding)


def decode(data, encoding):
    return transcode(data, encoding, UTF8).decode()


def read_samples(path):
    """The letters to strew in and the sentences, by language."""
    samples = {}
    for line in path.read_text().splitlines():
        if line.startswith("["):
            language, *letters = line.strip("[]").split()
            samples[language] = sentences = (letters, [])
        elif line and not line.startswith("#"):
            sentences[1].append(line)
    return samples


def shared(text, *held_by):
    """What is left of a text that goes into each encoding and back."""
    for encoding in held_by:
        text = decode(encode(text, encoding), encoding)
    return text


def make_pool(chance, row, samples):
    """Some thousand different sentences (or lines, with markup) that both encodings can hold."""
    native = row["text"] == "native"
    strewn, sentences = samples["French" if native else row["text"]]
    letters = ""
    if native:
        page = row["from"] if row["from"]["family"] else row["to"]
        letters = decode(bytes(range(1, 256)), page)
        letters = [c for c in letters if c >= "\x80" and c.isalpha()
                   and not c.isupper() and c not in DISPUTED]
    elif strewn:
        first, last = int(strewn[0], 16), int(strewn[1], 16)
        letters = "".join(map(chr, range(first, last + 1)))
        letters = shared(letters, row["encodings"][strewn[2]], *row["held_by"])
    separator = "" if strewn and first == 0x4E00 else " "
    pool = []
    for _ in range(4000):
        sentence = list(chance.choice(sentences))
        if native and letters:  # words in the letters of the code page
            sentence += [chance.choice(letters) if chance.random() < 0.85 else " " for _ in range(60)]
        elif letters:  # one character in eight from all that the code page has
            for i in range(0, len(sentence), 8):
                if first <= ord(sentence[i]) <= last:
                    sentence[i] = chance.choice(letters)
        sentence = "".join(sentence)
        if row["markup"]:
            numbers = [chance.randrange(1000, 10000) for _ in range(3)]
            sentence = '<li class="entry" data-id="%d"><a href="/archive/%d/index.html" rel="' \
                'bookmark">%s</a> <span>%d</span></li>\n' % (*numbers[:2], sentence, numbers[2])
        else:
            sentence += "\n" if chance.random() < 0.2 else separator
        pool.append(sentence)
    return shared("\0".join(pool), *row["held_by"]).split("\0")


@functools.cache
def read_real(name):
    """All of a real text: "bible", or "manuals-" and the language."""
    if name == "bible":
        return subprocess.run(["bible", "gen1:1-rev22:21"], capture_output=True, text=True,
                              check=True).stdout
    packages, folder = MANUALS[name.removeprefix("manuals-")]
    listed = subprocess.run(["dpkg", "-L", *packages.split()], capture_output=True, text=True,
                            check=True).stdout.split()
    files = sorted(name for name in listed
                   if name.startswith(f"/usr/share/man/{folder}man") and name.endswith(".gz"))
    random.Random(0).shuffle(files)
    pages = (gzip.decompress(pathlib.Path(file).read_bytes()) for file in files)
    return b"".join(pages).decode(errors="ignore")


def make_text(row, samples, size):
    """About size bytes in the source encoding; less of a real text that has not as many."""
    if row["text"] == "bible" or row["text"].startswith("manuals-"):
        text = shared(read_real(row["text"])[:size], *row["held_by"])
        return encode(text[:int(len(text) * size / len(encode(text, row["from"])))], row["from"])
    chance = random.Random(row["title"])
    pool = make_pool(chance, row, samples)
    sentence_size = len(encode("".join(pool), row["from"])) / len(pool)
    return encode("".join(chance.choices(pool, k=int(size / sentence_size))), row["from"])


def spoil(row, text):
    """The text with one character in a hundred unconvertible, and how many these are."""
    chance = random.Random(row["title"])
    lacks_rune = row["from"]["page"] in UNICODE and row["to"]["page"] not in UNICODE
    characters = list(decode(text, row["from"]))
    places = range(0, len(characters) - 100, 100)
    for i in places:
        characters[i + chance.randrange(100)] = RUNE if lacks_rune else "\x7f"
    data = encode("".join(characters), row["from"])
    if not lacks_rune:
        malformed = MALFORMED.get(row["from"]["page"], b"\xff")
        data = data.replace(encode("\x7f", row["from"]), malformed)
    return data, len(places)


def make_strings(row, samples, count):
    """Different strings of at most row["bytes"] bytes."""
    chance = random.Random(row["title"])
    pool = make_pool(chance, row, samples)
    strings = []
    for _ in range(count):
        text = "".join(chance.choices(pool, k=8))[: row["bytes"]]
        while len(encode(text, row["from"])) > row["bytes"]:
            text = text[:-1]
        strings.append(encode(text, row["from"]))
    return strings
