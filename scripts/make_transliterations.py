#!/usr/bin/env python3
"""Makes encoding/transliteration_texts.h: what may be written for a character that an encoding lacks.

    scripts/make_transliterations.py > encoding/transliteration_texts.h
    scripts/make_transliterations.py --compare

The candidates for a character, the best first, are of these sources, each behind the one before:

- the canonical decompositions of Unicode, whole, and with ever fewer marks;
- the transliterations that all locales of the C library share, from its source files, which the
  Debian package locales has;
- the compatibility decompositions of Unicode, one step and whole;
- nothing, for combining marks and for what is not seen;
- the same with the characters in a candidate transliterated in turn.

Of those in ASCII, which end the list, the first is what the C library's iconv writes in the locale
"C", if it writes anything.

With --compare it prints where the two sources of the C library differ from each other: what its
iconv writes, and what its locales say.
"""
import functools
import pathlib
import re
import subprocess
import sys
import unicodedata

LOCALES = pathlib.Path("/usr/share/i18n/locales")
# Of what Chinese, Japanese and Korean locales add nothing: other words are no other spelling.
LOCALE_FILES = ["combining", "neutral", "circle", "cjk_compat", "compat", "font", "fraction",
                "narrow", "wide"]
MOST_CANDIDATES = 8
FIRST = 0xA0
# Characters that only say how others are laid out.
UNSEEN = [(0x34F, 0x34F), (0x61C, 0x61C), (0x180B, 0x180F), (0x200B, 0x200F), (0x202A, 0x202E),
          (0x2060, 0x206F), (0xFE00, 0xFE0F), (0xFEFF, 0xFEFF), (0x1D173, 0x1D17A),
          (0xE0001, 0xE0001), (0xE0020, 0xE007F), (0xE0100, 0xE01EF)]
HANGUL = range(0xAC00, 0xD7A4)
# Strokes through a sign, without which it would say the contrary.
NEGATING = ("\u0338", "\u20D2")


def scalars():
    return (c for c in range(FIRST, 0x110000) if not 0xD800 <= c < 0xE000)


def c_locale():
    """What iconv writes in ASCII, by character, but for "?"."""
    wanted = [chr(c) for c in scalars()]
    # A line end may be what is written, so something else ends each text.
    run = subprocess.run(["iconv", "-f", "UTF-8", "-t", "ASCII//TRANSLIT"], check=True,
                         input="".join(c + "\0" for c in wanted).encode(), capture_output=True,
                         env={"LC_ALL": "C"})
    written = run.stdout.decode("ascii").split("\0")[:-1]
    assert len(written) == len(wanted)
    return {c: [text] for c, text in zip(wanted, written) if text != "?"}


def locale_candidates(names):
    """What the source files of locales have for single characters."""
    found = {}
    text = re.compile(r"((?:<U[0-9A-Fa-f]+>)+)")

    def read(written):
        return "".join(chr(int(value, 16)) for value in re.findall(r"<U([0-9A-Fa-f]+)>", written))

    for name in names:
        for line in (LOCALES / f"translit_{name}").read_text(encoding="utf-8").splitlines():
            entry = re.match(r'"?((?:<U[0-9A-Fa-f]+>)+)"?\s+(\S.*)', line)
            if entry is None or len(read(entry[1])) != 1 or entry[2].startswith("%"):
                continue
            for part in entry[2].split("%")[0].strip().split(";"):
                candidate = read(part) if text.search(part) else ""
                candidates = found.setdefault(read(entry[1]), [])
                if candidate not in candidates:
                    candidates.append(candidate)
    return found


def canonical(character):
    parts = unicodedata.normalize("NFD", character)
    if parts == character or ord(character) in HANGUL or any(mark in parts for mark in NEGATING):
        return
    composed = unicodedata.normalize("NFC", parts)
    if composed != character:
        yield composed
    base = next(i for i in reversed(range(len(parts)))
                if i == 0 or not unicodedata.combining(parts[i]))
    marks = range(len(parts) - 1, base, -1)
    # As few marks of their own as can be: most encodings that have any have some only.
    for end in marks:
        yield unicodedata.normalize("NFC", parts[:end]) + parts[end:]
    for end in marks:
        yield unicodedata.normalize("NFC", parts[:end])
    if not marks:
        yield parts


def compatible(character):
    step = unicodedata.decomposition(character)
    if step.startswith("<"):
        yield "".join(chr(int(value, 16)) for value in step.split()[1:])
        yield unicodedata.normalize("NFKC", character)


def is_left_out(character):
    return any(first <= ord(character) <= last for first, last in UNSEEN)


def direct_candidates():
    ascii_texts = c_locale()
    local = locale_candidates(LOCALE_FILES)
    table = {}
    for character in map(chr, scalars()):
        found = [*canonical(character), *local.get(character, []), *compatible(character)]
        # What keeps most comes first; ASCII can be written nearly everywhere.
        found = [*(text for text in found if not text.isascii()),
                 *ascii_texts.get(character, []), *(text for text in found if text.isascii())]
        if is_left_out(character):
            found.append("")
        found = [text for text in dict.fromkeys(found) if text != character]
        if found and character not in NEGATING:
            table[character] = found
    return table


def says_something(character, text):
    """Whether a candidate is more than what is left of a sign without its mark."""
    return not text.isspace() and text != "" or unicodedata.category(character)[0] in "ZCM"


def with_parts(table):
    """The candidates of each character, and those that come of transliterating them."""

    @functools.cache
    def closed(character, depth=0):
        found = dict.fromkeys(table.get(character, []))
        for text in list(found):
            options = {part: closed(part, depth + 1) for part in text
                       if ord(part) >= FIRST and part != character and depth < 6}
            for i in range(max(map(len, options.values()), default=0)):
                found.setdefault("".join(
                    options[part][min(i, len(options[part]) - 1)] if options.get(part) else part
                    for part in text))
        found.pop(character, None)
        # One that holds the character itself is no help.
        return [text for text in found
                if character not in text and says_something(character, text)]

    def limited(candidates):
        # Behind what can be written anywhere nothing is ever tried.
        for i, text in enumerate(candidates):
            if text.isascii():
                return candidates[:i + 1][-MOST_CANDIDATES:]
        return candidates[:MOST_CANDIDATES]

    closed_table = {character: limited(closed(character)) for character in table}
    return {character: texts for character, texts in closed_table.items() if texts}


def escaped(text):
    """The inside of a string literal."""
    def one(c):
        if c in '"\\':
            return "\\" + c
        if " " <= c <= "~":
            return c
        return f"\\u{ord(c):04X}" if ord(c) < 0x10000 else f"\\U{ord(c):08X}"
    return "".join(one(c) if ord(c) >= 0x20 else f"\\{ord(c):03o}" for c in text)


def compare():
    ascii_texts = c_locale()
    local = locale_candidates(LOCALE_FILES)
    count = 0
    for character, (text,) in ascii_texts.items():
        if text not in local.get(character, [text]):
            print(f"U+{ord(character):04X} iconv: {text!a}, locales: {local[character]!a}")
            count += 1
    shared = sum(1 for character in ascii_texts if character in local)
    print(f"{len(ascii_texts)} by iconv, {len(local)} by locales, {shared} by both, {count} differ")


def main():
    if sys.argv[1:] == ["--compare"]:
        compare()
        return
    table = with_parts(direct_candidates())
    longest = max(len(text) for texts in table.values() for text in texts)
    print(f"""// What may be written for characters. Made by scripts/make_transliterations.py from Unicode
// {unicodedata.unidata_version} and the tables of the C library; do not edit.
#ifndef ENCODING_TRANSLITERATION_TEXTS_H_
#define ENCODING_TRANSLITERATION_TEXTS_H_

#include <cstddef>

namespace fast {{

// Scalar values of a candidate.
inline constexpr std::size_t kLongestTransliteration = {longest};

// In UTF-8: a character, its candidates, the best first and with \\1 between them, and \\0; in order
// of the characters.
// clang-format off
inline constexpr char kTransliterations[] =""")
    size = 0
    for character, texts in sorted(table.items()):
        assert all(ord(c) > 1 for text in texts for c in text)
        record = character + "\1".join(texts) + "\0"
        size += len(record.encode())
        # In three digits, as a candidate may begin with one.
        line = "\\001".join(escaped(text) for text in texts)
        print(f'    "{escaped(character)}" "{line}\\0"')
    print("""    ;
// clang-format on

}  // namespace fast

#endif  // ENCODING_TRANSLITERATION_TEXTS_H_""")
    print(f"{len(table)} characters, {size} bytes", file=sys.stderr)


main()
