#!/usr/bin/env python3
"""Makes encoding/composition_pairs.h from the Unicode data that Python carries.

    scripts/make_compositions.py > encoding/composition_pairs.h

The canonical compositions of two characters of the basic plane, but for the syllables of Hangul,
which are computed.
"""
import unicodedata

HANGUL = range(0xAC00, 0xD7A4)


def compositions():
    for value in range(0x80, 0x10000):
        if 0xD800 <= value < 0xE000 or value in HANGUL:
            continue
        parts = unicodedata.decomposition(chr(value)).split()
        if len(parts) != 2 or parts[0].startswith("<"):
            continue
        first, second = (int(part, 16) for part in parts)
        # Some are excluded: they are never composed.
        if max(first, second) < 0x10000 and (
                unicodedata.normalize("NFC", chr(first) + chr(second)) == chr(value)):
            yield first, second, value


def main():
    pairs = sorted(compositions())
    rows = ["{0x%04X, 0x%04X, 0x%04X}," % pair for pair in pairs]
    print(f"""// Canonical compositions of two characters. Made by scripts/make_compositions.py from Unicode
// {unicodedata.unidata_version}; do not edit.
#ifndef ENCODING_COMPOSITION_PAIRS_H_
#define ENCODING_COMPOSITION_PAIRS_H_

#include <cstdint>

namespace fast {{

struct CompositionPair {{
  std::uint16_t first;
  std::uint16_t second;
  std::uint16_t composed;
}};

// In order of the first, then of the second.
// clang-format off
inline constexpr CompositionPair kCompositionPairs[] = {{""")
    for i in range(0, len(rows), 4):
        print("    " + " ".join(rows[i:i + 4]))
    print("""};
// clang-format on

}  // namespace fast

#endif  // ENCODING_COMPOSITION_PAIRS_H_""")


main()
