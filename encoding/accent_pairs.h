// Accents that stand before their letter, in single-byte code pages: what streams read a pair as.
#ifndef ENCODING_ACCENT_PAIRS_H_
#define ENCODING_ACCENT_PAIRS_H_

#include <cstdint>

#include "encoding/codecs/encoding_row.h"

namespace fast {

// A single-byte code page with codes of two bytes that are only read (20261).
constexpr bool hasAccentPairs(const EncodingRow& row) {
  return row.form == EncodingForm::kSingleByte && row.onlyReadText != nullptr;
}

// Units by byte, and by accent and letter; 0: none. Some bytes of the pairs are none of an accent.
struct AccentPairs {
  static constexpr unsigned int kFirstAccent = 0xC0;
  static constexpr unsigned int kAccents = 16;

  std::uint16_t singles[256];
  std::uint16_t pairs[kAccents][256];

  static bool isAccent(unsigned int byte) { return byte - kFirstAccent < kAccents; }
  // False when memory is short. The row has accent pairs, and its to-Unicode table is published.
  bool fill(const EncodingRow& row);
};

}  // namespace fast

#endif  // ENCODING_ACCENT_PAIRS_H_
