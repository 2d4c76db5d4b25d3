#include "encoding/codecs/mac_arabic.h"

#include <array>
#include <cstdint>

namespace {

struct ByteRange {
  unsigned char first, last;
};
constexpr ByteRange kRightToLeft[] = {{0x81, 0x81}, {0x8C, 0x8C}, {0x93, 0x93}, {0x98, 0x98},
                                      {0x9B, 0x9B}, {0xA0, 0xA4}, {0xA6, 0xAB}, {0xAD, 0xBA},
                                      {0xBC, 0xBE}, {0xC0, 0xC0}, {0xDB, 0xDF}, {0xFB, 0xFD}};

// One flag for each byte from 32 on: 1 when it is written right to left.
constexpr std::array<std::uint32_t, 224> makeRightToLeftFlags() {
  std::array<std::uint32_t, 224> flags{};
  for (const ByteRange range : kRightToLeft) {
    for (unsigned int byte = range.first; byte <= range.last; ++byte) flags[byte - 32] = 1;
  }
  return flags;
}
constexpr std::array<std::uint32_t, 224> MacArabicRL = makeRightToLeftFlags();

constexpr bool within(unsigned char byte, unsigned char first, unsigned char last) {
  return byte >= first && byte <= last;
}

// The left-to-right or ASCII form of a byte.
constexpr unsigned char fold(unsigned char byte) {
  const bool digit = within(byte, 0xB0, 0xB9);
  const bool punctuation = within(byte, 0xA0, 0xAF) && byte != 0xA5 && byte != 0xAC;
  const bool bracketOrMark = byte == 0xBA || within(byte, 0xBC, 0xBE) || within(byte, 0xDB, 0xDF) ||
                             within(byte, 0xFB, 0xFD);
  if (digit || punctuation || bracketOrMark) return byte ^ 0x80;
  return byte == 0x81 ? 0xA0 : byte;
}

bool reverseRun(unsigned char* run, unsigned int length, StringBuffer& scratch) {
  if (length < 2) return true;
  scratch.weakClear();
  scratch.appendN(reinterpret_cast<const char*>(run), length);
  if (scratch.hasFailed()) return false;
  const char* copy = scratch.getString();
  for (unsigned int i = 0; i < length; ++i) {
    run[i] = static_cast<unsigned char>(copy[length - 1 - i]);
  }
  return true;
}

}  // namespace

bool isMacArabicRightToLeft(unsigned char byte) {
  return byte >= 32 && MacArabicRL[byte - 32u] != 0;
}

bool rewriteMacArabic(unsigned char* text, unsigned int length, StringBuffer& scratch) {
  bool inRun = false;
  unsigned int start = 0;
  for (unsigned int i = 0; i < length; ++i) {
    const bool rightToLeft = isMacArabicRightToLeft(text[i]);
    if (rightToLeft && !inRun) {
      inRun = true;
      start = i;
    } else if (!rightToLeft && inRun) {
      inRun = false;
      if (!reverseRun(text + start, i - start, scratch)) return false;
    }
    // Each byte is folded once, before a reversal moves it: a reversed run holds folded bytes.
    text[i] = fold(text[i]);
  }
  return !inRun || reverseRun(text + start, length - start, scratch);
}
