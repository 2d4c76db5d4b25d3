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

struct Reader : CodecRun {
  using CodecRun::CodecRun;
  static constexpr unsigned int kGrowth = 16;

  const Variant& variant = *static_cast<const Variant*>(parameters);

  // No byte becomes more than two.
  bool step() {
    const unsigned char* const stop = p + std::min(left(), (room() - kMinRoom) / 2 + 1);
    while (p < stop) {
      copyAscii(stop);
      copyForms(stop);
      if (p < stop && *p >= 0x80 && !readOther()) return false;
    }
    return true;
  }
  void finish() {}

  bool putUnit(std::uint32_t unit) {
    storeLow(dest, static_cast<std::uint16_t>(unit));
    dest += 2;
    return true;
  }

  void copyAscii(const unsigned char* stop) {
    while (stop - p >= std::ptrdiff_t{kVector}) {
      const Bytes16 text = Bytes16::load(p);
      const unsigned int count = countLow(text);
      if (count == 0) return;
      storeAsUnits(text, dest);
      p += count;
      dest += 2 * count;
      if (count != kVector) return;
    }
    while (p < stop && *p < 0x80) putUnit(*p++);
  }

  // Whole forms of two and three bytes, but for surrogates, and single ASCII characters between.
  void copyForms(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    // What four bytes in sight hold is decided by them alone.
    const unsigned char* const sure = stop - std::min<std::ptrdiff_t>(stop - p, 3);
    while (in < sure) {
      if (isLead(in[0], 2) && isContinuation(in[1])) {
        storeLow(to, static_cast<std::uint16_t>((in[0] & 0x1Fu) << 6 | (in[1] & 0x3Fu)));
        in += 2;
      } else if (isLead(in[0], 3) && isContinuation(in[1]) && isContinuation(in[2])) {
        const std::uint32_t unit = unitOfThree(in);
        if (unit < 0x800 || isSurrogate(unit)) break;
        storeLow(to, static_cast<std::uint16_t>(unit));
        in += 3;
      } else {
        break;
      }
      to += 2;
      if (in < sure && in[0] < 0x80) {
        storeLow(to, std::uint16_t{in[0]});
        to += 2;
        if (*++in < 0x80) break;
      }
    }
    p = in;
    dest = to;
  }

  // Any other form, or none. False when what follows decides.
  bool readOther() {
    const unsigned int lead = *p;
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
      copyAscii(stop);
      copyUnits(stop);
      if (p < stop && !writeOther()) return false;
    }
    return true;
  }
  void finish() {}

  // Room for what the vectors write too, since a unit is two bytes and three at most come of it.
  void copyAscii(const unsigned char* stop) {
    const Bytes16 special(variant.zeroInTwo ? 0x80u : 0u);
    while (stop - p >= std::ptrdiff_t{2 * kVector}) {
      const Bytes16 text = loadUnits(p);
      const unsigned int count = countLow(text | (equal(text, 0) & special));
      if (count == 0) return;
      text.store(dest);
      p += 2 * count;
      dest += count;
      if (count != kVector) return;
    }
  }

  // Units that are no surrogates, until many of ASCII are to be expected.
  void copyUnits(const unsigned char* stop) {
    const unsigned char* in = p;
    unsigned char* to = dest;
    const std::uint32_t lowest = variant.zeroInTwo ? 1 : 0;
    for (; in < stop && end - in > 1; in += 2) {
      const std::uint32_t unit = loadLow<std::uint16_t>(in);
      if (unit < 0x80 && unit >= lowest) {
        *to++ = static_cast<unsigned char>(unit);
        if (stop - in >= std::ptrdiff_t{2 * kVector} && loadLow<std::uint16_t>(in + 2) < 0x80) {
          in += 2;
          break;
        }
      } else if (unit < 0x800) {
        *to++ = static_cast<unsigned char>(0xC0 | unit >> 6);
        *to++ = continuationByte(unit);
      } else if (!isSurrogate(unit)) {
        to = writeThreeByteForm(to, unit);
      } else {
        break;
      }
    }
    p = in;
    dest = to;
  }

  // A surrogate, or half a unit. False when what follows decides.
  bool writeOther() {
    if (left() < 2) return last && refuse(1);
    const std::uint32_t unit = loadLow<std::uint16_t>(p);
    if (!isSurrogate(unit)) return true;
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
    if (!variant.hasSurrogates) return refuse(2);
    dest = writeThreeByteForm(dest, unit);
    p += 2;
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
