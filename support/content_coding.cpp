#include "support/content_coding.h"

#include <array>
#include <cstdint>

#include "support/zv_base.h"

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Value of no character of the alphabet; its top bits survive the ORs below, so that a whole text
// is checked with one test at the end.
constexpr std::uint8_t kInvalid = 0xC0;

constexpr std::array<std::uint8_t, 256> makeValues() {
  std::array<std::uint8_t, 256> values{};
  for (std::uint8_t& value : values) value = kInvalid;
  for (std::uint8_t i = 0; i < 64; ++i) values[static_cast<unsigned char>(kAlphabet[i])] = i;
  return values;
}
constexpr std::array<std::uint8_t, 256> kValues = makeValues();

// How the text divides: groups of four characters without padding, then a last group with padding
// that stands for tailBytes (0: there is none).
struct Layout {
  unsigned int fullGroups;
  unsigned int tailBytes;
  unsigned int size() const { return fullGroups * 3 + tailBytes; }
};

// False when no base64 text has this length and ending. "=" anywhere else is simply not in the
// alphabet.
bool layOut(const char* text, unsigned int length, Layout& layout) {
  if (length % 4 != 0) return false;
  layout = {length / 4, 0};
  if (length != 0 && text[length - 1] == '=') {
    layout.fullGroups -= 1;
    layout.tailBytes = text[length - 2] == '=' ? 1 : 2;
  }
  return true;
}

// Writes layout.size() bytes; false when a character is not allowed where it stands. Bits of the
// last character that belong to no byte must be zero: what encoders write has one spelling only,
// and any other is damage.
bool decodeTo(const char* text, const Layout& layout, unsigned char* dest) {
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  unsigned int bad = 0;
  for (unsigned int i = 0; i < layout.fullGroups; ++i, p += 4, dest += 3) {
    const unsigned int a = kValues[p[0]], b = kValues[p[1]], c = kValues[p[2]], d = kValues[p[3]];
    bad |= a | b | c | d;
    dest[0] = static_cast<unsigned char>(a << 2 | b >> 4);
    dest[1] = static_cast<unsigned char>(b << 4 | c >> 2);
    dest[2] = static_cast<unsigned char>(c << 6 | d);
  }
  if (layout.tailBytes != 0) {
    const unsigned int a = kValues[p[0]], b = kValues[p[1]];
    const unsigned int c = layout.tailBytes == 2 ? kValues[p[2]] : 0;
    const unsigned int unused = layout.tailBytes == 2 ? c & 0x03 : b & 0x0F;
    bad |= a | b | c | (unused != 0 ? kInvalid : 0);
    dest[0] = static_cast<unsigned char>(a << 2 | b >> 4);
    if (layout.tailBytes == 2) dest[1] = static_cast<unsigned char>(b << 4 | c >> 2);
  }
  return (bad & kInvalid) == 0;
}

}  // namespace

bool ContentCoding::decodeBase64ToDb(const char* text, unsigned int length, DataBuffer& out) const {
  Layout layout;
  if (!layOut(text, length, layout)) return false;
  if (layout.size() == 0) return true;
  unsigned char* dest = out.reserveTail(layout.size());
  if (dest == nullptr || !decodeTo(text, layout, dest)) return false;
  out.commitTail(layout.size());
  return true;
}

unsigned char* ContentCoding::decodeBase64(const char* text, unsigned int length,
                                           unsigned int* outLength) const {
  *outLength = 0;
  Layout layout;
  if (!layOut(text, length, layout)) return nullptr;
  unsigned char* bytes = zvNewUnsignedChar(layout.size());
  if (bytes == nullptr) return nullptr;
  if (!decodeTo(text, layout, bytes)) {
    delete[] bytes;
    return nullptr;
  }
  *outLength = layout.size();
  return bytes;
}
