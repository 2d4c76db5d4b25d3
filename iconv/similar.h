// SimilarText: what //TRANSLIT may write for a character.
#ifndef ICONV_SIMILAR_H_
#define ICONV_SIMILAR_H_

#include <cstddef>
#include <cstdint>

#include "encoding/transliteration.h"

namespace iconv_layer {

// The texts for one character, the best one first, and "?" behind them. An object is made for each
// character without a place.
class SimilarText {
 public:
  static constexpr std::size_t kMostScalars = fast::Transliterations::kMaxLength;
  static constexpr std::size_t kMostBytes = kMostScalars * 4;
  static constexpr std::size_t kNone = kMostBytes + 1;

  explicit SimilarText(std::uint32_t scalar) : m_texts(scalar) {}

  // The next text, in UTF-16 little endian, and its length in bytes, which may be 0; kNone: there
  // is no other.
  std::size_t next(unsigned char (&units)[kMostBytes]);

 private:
  fast::Transliterations m_texts;
  bool m_isAtEnd = false;
};

}  // namespace iconv_layer

#endif  // ICONV_SIMILAR_H_
