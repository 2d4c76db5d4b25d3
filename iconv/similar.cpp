#include "iconv/similar.h"

#include "support/utf.h"

namespace iconv_layer {

std::size_t SimilarText::next(char32_t (&scalars)[kMostScalars]) {
  std::string_view text;
  if (m_texts.next(text)) {
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const auto* const end = p + text.size();
    std::size_t count = 0;
    while (p != end && count < kMostScalars) {
      const Utf8Sequence character = decodeUtf8(p, static_cast<std::size_t>(end - p));
      scalars[count++] = character.value;
      p += character.length;
    }
    return count;
  }
  if (m_isAtEnd) return kNone;
  m_isAtEnd = true;
  scalars[0] = '?';
  return 1;
}

}  // namespace iconv_layer
