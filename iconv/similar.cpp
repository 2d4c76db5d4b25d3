#include "iconv/similar.h"

#include "support/utf.h"

namespace iconv_layer {
namespace {

std::size_t storeScalar(std::uint32_t scalar, unsigned char* units) {
  const bool isPair = scalar > 0xFFFF;
  const std::uint32_t first = isPair ? highSurrogateOf(scalar) : scalar;
  units[0] = static_cast<unsigned char>(first);
  units[1] = static_cast<unsigned char>(first >> 8);
  if (!isPair) return 2;
  const std::uint32_t second = lowSurrogateOf(scalar);
  units[2] = static_cast<unsigned char>(second);
  units[3] = static_cast<unsigned char>(second >> 8);
  return 4;
}

}  // namespace

std::size_t SimilarText::next(unsigned char (&units)[kMostBytes]) {
  std::string_view text;
  if (m_texts.next(text)) {
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const auto* const end = p + text.size();
    std::size_t bytes = 0;
    while (p != end && bytes + 4 <= kMostBytes) {
      const Utf8Sequence character = decodeUtf8(p, static_cast<std::size_t>(end - p));
      bytes += storeScalar(character.value, units + bytes);
      p += character.length;
    }
    return bytes;
  }
  if (m_isAtEnd) return kNone;
  m_isAtEnd = true;
  return storeScalar('?', units);
}

}  // namespace iconv_layer
