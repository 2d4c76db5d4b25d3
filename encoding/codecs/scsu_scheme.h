// SCSU (Unicode Technical Standard 6): the tags and windows of the scheme, and what a text carries.
#ifndef ENCODING_CODECS_SCSU_SCHEME_H_
#define ENCODING_CODECS_SCSU_SCHEME_H_

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/text_bytes.h"

namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// ---- The scheme. ----

// Tags in single-byte mode; those with a window follow each other by its number.
constexpr unsigned int kQuoteWindow = 0x01, kDefineFar = 0x0B, kReserved = 0x0C, kQuoteUnit = 0x0E,
                       kToUnicode = 0x0F, kChangeWindow = 0x10, kDefineWindow = 0x18;
// In Unicode mode, where they stand for high bytes.
constexpr unsigned int kUnicodeChange = 0xE0, kUnicodeDefine = 0xE8, kUnicodeQuote = 0xF0,
                       kUnicodeDefineFar = 0xF1, kUnicodeReserved = 0xF2;

constexpr unsigned int kWindows = 8;
constexpr unsigned int kWindowSize = 0x80;
constexpr std::uint32_t kStaticWindows[kWindows] = {0,      0x80,   0x100,  0x300,
                                                    0x2000, 0x2080, 0x2100, 0x3000};
constexpr std::uint32_t kInitialWindows[kWindows] = {0x80,  0xC0,   0x400,  0x600,
                                                     0x900, 0x3040, 0x30A0, 0xFF00};
// Windows that begin within a block, by number from kFirstSpecial on.
constexpr unsigned int kFirstSpecial = 0xF9;
constexpr std::uint32_t kSpecialWindows[] = {0xC0, 0x250, 0x370, 0x530, 0x3040, 0x30A0, 0xFF60};
// Windows from the ideographs on are numbered without the blocks of these and of surrogates.
constexpr unsigned int kFirstHigh = 0x68, kEndHigh = 0xA8;
constexpr std::uint32_t kHighGap = 0xAC00;
constexpr std::uint32_t kNoWindow = 0;

// Where the window of a number begins; kNoWindow for one that is reserved.
constexpr std::uint32_t windowOf(unsigned int number) {
  if (number < kFirstHigh) return number * kWindowSize;
  if (number < kEndHigh) return number * kWindowSize + kHighGap;
  return number >= kFirstSpecial ? kSpecialWindows[number - kFirstSpecial] : kNoWindow;
}
// The number of a window in the BMP.
constexpr unsigned char numberOf(std::uint32_t begin) {
  for (unsigned int i = 0; i < std::size(kSpecialWindows); ++i) {
    if (kSpecialWindows[i] == begin) return static_cast<unsigned char>(kFirstSpecial + i);
  }
  return static_cast<unsigned char>((begin < 0xE000 ? begin : begin - kHighGap) / kWindowSize);
}

constexpr bool isIn(std::uint32_t character, std::uint32_t window) {
  return character - window < kWindowSize;
}
// No window is there for ideographs, Hangul and surrogates.
constexpr bool isWide(std::uint32_t character) { return character >= 0x3400 && character < 0xE000; }
// Controls that are themselves; the others are tags.
constexpr bool isPlain(unsigned int byte) {
  return byte >= 0x20 || byte == 0x09 || byte == 0x0A || byte == 0x0D || byte == 0;
}
inline Bytes16 arePlain(Bytes16 text) {
  return ~isAtMost(text, 0x1F) | equal(text, 0x09) | equal(text, 0x0A) | equal(text, 0x0D) |
         equal(text, 0);
}

// ---- What both directions carry. ----

// In CodecState: set has the window in use and kUnicodeMode; windows has where each begins, 0 for
// the initial one. Writing, bits has the windows in the order of their last use, the first to give
// away lowest; 0 for the initial order.
constexpr std::uint8_t kUnicodeMode = 8;
constexpr unsigned int kOrderBits = 3;  // of each window
constexpr std::uint32_t kInitialOrder = 0b000'001'010'101'110'111'011'100;

constexpr bool isWindow(std::uint32_t begin) {
  if (begin < 0x10000) return windowOf(numberOf(begin)) == begin;
  return begin <= 0x10FFFF && begin % kWindowSize == 0;
}
constexpr bool isOrder(std::uint32_t order) {
  unsigned int seen = 0;
  for (unsigned int i = 0; i < kWindows; ++i) {
    seen |= 1u << (order >> kOrderBits * i & (kWindows - 1));
  }
  return order >> kOrderBits * kWindows == 0 && seen == (1u << kWindows) - 1;
}
bool isState(const void*, const CodecState& state, bool isWriting) {
  return state.set < 2 * kUnicodeMode && std::ranges::all_of(state.windows, isWindow) &&
         (state.bits == 0 || (isWriting && isOrder(state.bits))) &&
         hasOnly(state, {.set = state.set, .bits = state.bits, .windows = state.windows});
}

struct ScsuRun : CodecRun {
  using CodecRun::CodecRun;

  bool isUnicode() const { return (state.set & kUnicodeMode) != 0; }
  unsigned int current() const { return state.set & (kWindows - 1); }
  std::uint32_t window(unsigned int index) const {
    const std::uint32_t begin = state.windows[index];
    return begin != 0 ? begin : kInitialWindows[index];
  }
  void use(unsigned int index) { state.set = static_cast<std::uint8_t>(index); }
  void define(unsigned int index, std::uint32_t begin) {
    state.windows[index] = begin;
    use(index);
  }
  void finish() {
    state.set = 0;
    state.bits = 0;
    state.windows = {};
  }

  void putUnit(std::uint32_t unit) {
    storeLow(dest, static_cast<std::uint16_t>(unit));
    dest += 2;
  }
};

}  // namespace

#endif  // ENCODING_CODECS_SCSU_SCHEME_H_
