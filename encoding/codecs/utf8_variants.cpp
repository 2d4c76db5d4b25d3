// The relatives of UTF-8, to and from UTF-16: CESU-8 (Unicode Technical Report 26), the modified
// UTF-8 of Java, and WTF-8. One algorithm, and what each does otherwise than UTF-8.
//
// Malformed, as one piece: bytes that begin a form and do not complete it, as far as they could; a
// form that the encoding has not (four bytes in CESU-8, two forms that are a pair of surrogates in
// WTF-8, an unpaired surrogate in CESU-8); any other byte by itself. Forms that are longer than
// they need be are none. An unpaired surrogate, where it is one of the encoding's own, is a unit
// like others.
#include "encoding/codecs/codec_run.h"
#include "encoding/codecs/text_bytes.h"
#include "encoding/kernels/cpu_dispatch.h"
#include "support/utf.h"

namespace {

struct Variant {
  bool pairsInSix;     // what lies beyond the BMP is a pair of surrogates, three bytes each
  bool zeroInTwo;      // U+0000 is written C0 80; read is 00 too
  bool hasSurrogates;  // unpaired ones have their three bytes
};

constexpr Variant kCesu8 = {true, false, false};
constexpr Variant kModifiedUtf8 = {true, true, true};
constexpr Variant kWtf8 = {false, false, true};

constexpr bool isLead(unsigned int byte, unsigned int length) {
  return length == 2   ? byte >= 0xC2 && byte <= 0xDF
         : length == 3 ? (byte & 0xF0) == 0xE0
                       : byte >= 0xF0 && byte <= 0xF4;
}
// Whether the byte may stand second behind a lead; elsewhere any continuation may.
inline bool isSecond(unsigned int lead, unsigned char byte) {
  if (!isContinuation(byte)) return false;
  return lead == 0xE0 ? byte >= 0xA0 : lead == 0xF0 ? byte >= 0x90 : lead != 0xF4 || byte < 0x90;
}
inline std::uint32_t unitOfThree(const unsigned char* p) {
  return (p[0] & 0xFu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu);
}

// Kernels convert what is the same in UTF-8, up to what only that has; as far as it was looked for.
constexpr std::ptrdiff_t kGlance = 1024;
constexpr std::ptrdiff_t kKernelRoom = fast::kKernelSlack + 64;
// Where runs are short, a call for each costs more than it saves.
constexpr std::ptrdiff_t kShortRun = 64;
constexpr int kSingles = 24;

// The first unit whose last byte is such a one; limit for none.
template <typename Test>
const unsigned char* findByte(const unsigned char* p, const unsigned char* limit,
                              std::ptrdiff_t unitSize, Test test) {
  const std::ptrdiff_t vector = unitSize * std::ptrdiff_t{kVector};
  for (; limit - p >= vector; p += vector) {
    const unsigned int count = countLow(test(unitSize == 1 ? Bytes16::load(p) : loadHighBytes(p)));
    if (count != kVector) return p + unitSize * static_cast<std::ptrdiff_t>(count);
  }
  // The rest is looked at in a vector of its own.
  unsigned char rest[2 * kVector] = {};
  std::copy(p, limit, rest);
  const Bytes16 bytes = unitSize == 1 ? Bytes16::load(rest) : loadHighBytes(rest);
  return p + std::min(unitSize * static_cast<std::ptrdiff_t>(countLow(test(bytes))), limit - p);
}

struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 16;

  const Variant& variant = *static_cast<const Variant*>(parameters);

  // No byte becomes more than two.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    while (p < stop) {
      for (int count = copyText(stop); count != 0 && p < stop; --count) {
        if (!readForm()) return false;
      }
    }
    return true;
  }
  void finish() {}

  bool putUnit(std::uint32_t unit) {
    storeLow(dest, static_cast<std::uint16_t>(unit));
    dest += 2;
    return true;
  }

  // What is the same in UTF-8. Returns how many forms to read before more of that is looked for.
  int copyText(const unsigned char* stop) {
    if (room() < kKernelRoom) return 1;
    const unsigned char* const begin = p;
    const unsigned char* limit = p + std::min(stop - p, kGlance);
    if (variant.pairsInSix) {
      limit = findByte(p, limit, 1, [](auto bytes) { return isAtMost(0xF0, bytes); });
    }
    const fast::KernelResult r = fast::kernels().utf8ToUtf16(p, limit, dest, destEnd);
    p = r.in;
    dest = r.out;
    return p - begin < kShortRun ? kSingles : 1;
  }

  // One form of any kind, or none. False when what follows decides.
  bool readForm() {
    const unsigned int lead = *p;
    if (lead < 0x80) {
      ++p;
      return putUnit(lead);
    }
    if (lead == 0xC0 && variant.zeroInTwo) {
      if (left() < 2) return last && refuse(1);
      if (p[1] != 0x80) return refuse(1);
      p += 2;
      return putUnit(0);
    }
    const unsigned int length = isLead(lead, 2) ? 2 : isLead(lead, 3) ? 3 : isLead(lead, 4) ? 4 : 1;
    for (unsigned int i = 1; i < length; ++i) {
      if (left() <= static_cast<std::ptrdiff_t>(i)) return last && refuse(i);
      if (i == 1 ? !isSecond(lead, p[1]) : !isContinuation(p[i])) return refuse(i);
    }
    if (length == 1) return refuse(1);
    if (length == 4) return readFour();
    const std::uint32_t unit = length == 2 ? (lead & 0x1F) << 6 | (p[1] & 0x3Fu) : unitOfThree(p);
    if (isHighSurrogate(unit)) return readHighSurrogate(unit);
    if (isLowSurrogate(unit) && !variant.hasSurrogates) return refuse(3);
    p += length;
    return putUnit(unit);
  }

  bool readFour() {
    if (variant.pairsInSix) return refuse(4);
    const std::uint32_t scalar =
        (p[0] & 7u) << 18 | (p[1] & 0x3Fu) << 12 | (p[2] & 0x3Fu) << 6 | (p[3] & 0x3Fu);
    p += 4;
    putUnit(highSurrogateOf(scalar));
    return putUnit(lowSurrogateOf(scalar));
  }

  // A form of three bytes is in front; the next one may make a pair.
  bool readHighSurrogate(std::uint32_t high) {
    const unsigned char* const next = p + 3;
    const std::ptrdiff_t more = left() - 3;
    const bool mayBePair = (more < 1 || next[0] == 0xED) &&
                           (more < 2 || (next[1] & 0xF0) == 0xB0) &&
                           (more < 3 || isContinuation(next[2]));
    if (mayBePair && more < 3 && !last) return false;
    if (mayBePair && more >= 3) {
      if (!variant.pairsInSix) return refuse(6);
      const std::uint32_t low = unitOfThree(next);
      p += 6;
      putUnit(high);
      return putUnit(low);
    }
    if (!variant.hasSurrogates) return refuse(3);
    p += 3;
    return putUnit(high);
  }

  bool refuse(unsigned int length) {
    return mark(length, kReplacementCharacter & 0xFF, kReplacementCharacter >> 8);
  }
};

struct Writer : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 12;

  const Variant& variant = *static_cast<const Variant*>(parameters);

  // No unit becomes more than three bytes.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    while (p < stop) {
      for (int count = copyText(stop); count != 0 && p < stop; --count) {
        if (!writeUnit()) return false;
      }
    }
    return true;
  }
  void finish() {}

  int copyText(const unsigned char* stop) {
    if (room() < kKernelRoom) return 1;
    const unsigned char* const begin = p;
    const unsigned char* limit = p + std::min((stop - p) & ~std::ptrdiff_t{1}, kGlance);
    if (variant.pairsInSix) {
      limit = findByte(p, limit, 2, [](auto bytes) { return isBetween(bytes, 0xD8, 0xDF); });
    }
    const fast::KernelResult r = fast::kernels().utf16ToUtf8(p, limit, dest, destEnd);
    p = r.in;
    dest = r.out;
    return p - begin < kShortRun ? kSingles : 1;
  }

  // One unit, or a pair, or half a unit. False when what follows decides.
  bool writeUnit() {
    if (left() < 2) return last && refuse(1);
    const std::uint32_t unit = loadLow<std::uint16_t>(p);
    if (isHighSurrogate(unit)) {
      if (left() < 4 && !last) return false;
      const std::uint32_t low = left() < 4 ? 0 : loadLow<std::uint16_t>(p + 2);
      if (isLowSurrogate(low)) {
        p += 4;
        dest = variant.pairsInSix ? writeThreeByteForm(writeThreeByteForm(dest, unit), low)
                                  : writeUtf8(dest, joinSurrogates(unit, low));
        return true;
      }
    }
    if (isSurrogate(unit) && !variant.hasSurrogates) return refuse(2);
    p += 2;
    if (unit == 0 && variant.zeroInTwo) {
      put(0xC0, 0x80);
    } else {
      dest = writeUtf8(dest, unit);
    }
    return true;
  }

  bool refuse(unsigned int length) {
    report(p, length);
    p += length;
    dest = writeThreeByteForm(dest, kReplacementCharacter);
    return true;
  }
};

constexpr Codec codecOf(const Variant& variant) {
  return {1200, {runCodec<Reader>, &variant}, {runCodec<Writer>, &variant}, nullptr, true};
}

}  // namespace

extern const Codec kCesu8Codec = codecOf(kCesu8);
extern const Codec kModifiedUtf8Codec = codecOf(kModifiedUtf8);
extern const Codec kWtf8Codec = codecOf(kWtf8);
