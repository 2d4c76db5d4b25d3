// _zvUtf: UTF-16 in host order to and from UTF-7 (RFC 2152).
#include <array>
#include <string_view>

#include "support/sixteen_bytes.h"
#include "support/utf_loops.h"
#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace {

constexpr std::string_view kBase64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
// Set D and the white space that may be written as it is; letters and digits are in both lists.
constexpr std::string_view kDirectMarks = "'(),-./:? \t\r\n";

// The value of each base64 character, and a value with the high bit set for all other bytes.
constexpr unsigned char kNoBase64 = 0x80;
constexpr auto kBase64Values = [] {
  std::array<unsigned char, 256> table{};
  for (unsigned char& value : table) value = kNoBase64;
  for (unsigned int i = 0; i != kBase64.size(); ++i) {
    table[static_cast<unsigned char>(kBase64[i])] = static_cast<unsigned char>(i);
  }
  return table;
}();

constexpr bool isBase64(unsigned char byte) { return kBase64Values[byte] != kNoBase64; }

// The characters that are written directly.
constexpr auto kIsDirect = [] {
  std::array<bool, 128> table{};
  for (const char c : kBase64) table[static_cast<unsigned char>(c)] = true;
  table['+'] = false;
  for (const char c : kDirectMarks) table[static_cast<unsigned char>(c)] = true;
  return table;
}();

SixteenBytes areDirect(SixteenBytes text) {
  return text.isAsciiLetter() | text.isBetween(',', ':') | text.isBetween('\'', ')') |
         text.is(' ') | text.is('?') | text.isBetween('\t', '\n') | text.is('\r');
}
bool isDirect(std::uint32_t unit) { return unit < kIsDirect.size() && kIsDirect[unit]; }

// Whether a run has to be closed before a direct character, which could belong to it otherwise.
bool needsRunClosed(std::uint32_t direct) {
  return direct == '-' || isBase64(static_cast<unsigned char>(direct));
}

unsigned char base64Digit(std::uint32_t bits) {
  return static_cast<unsigned char>(kBase64[bits & 0x3F]);
}

// Three units are eight base64 digits: the loops of both directions do that many at once where they
// stand at the beginning of such a group, which is where no bits are pending. Two tables serve
// them: the two digits of each 12 bits, the first in the low byte, and the bits of a digit at each
// place among four, in the low 24 bits; for a byte that is no digit, a bit above these by its
// place.
constexpr unsigned int kGroupUnits = 3;
constexpr unsigned int kGroupDigits = 8;
constexpr unsigned int kStep = SixteenBytes::kSize;  // direct characters taken together

constexpr auto kDigitPairs = [] {
  std::array<std::uint16_t, 4096> table{};
  for (unsigned int i = 0; i != table.size(); ++i) {
    table[i] = static_cast<std::uint16_t>(kBase64[i >> 6] | (kBase64[i & 0x3F] << 8));
  }
  return table;
}();

constexpr auto kDigitBits = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (unsigned int place = 0; place != tables.size(); ++place) {
    for (unsigned int byte = 0; byte < 256; ++byte) {
      const std::uint32_t value = kBase64Values[byte];
      tables[place][byte] = value == kNoBase64 ? 1u << (24 + place) : value << (18 - 6 * place);
    }
  }
  return tables;
}();

std::uint32_t bitsOfFour(const unsigned char* p) {
  return kDigitBits[0][p[0]] | kDigitBits[1][p[1]] | kDigitBits[2][p[2]] | kDigitBits[3][p[3]];
}

// How a run may end, by the digits of its last, unfinished group: the whole units there, and the
// bits of the group (the first digit's at the top of 48) that have to be 0.
struct RunEnd {
  unsigned int units;
  std::uint64_t padding;
};
constexpr std::uint64_t kNeverZero = std::uint64_t{1} << 63;
constexpr RunEnd kRunEnds[kGroupDigits] = {{0, 0},
                                           {0, kNeverZero},
                                           {0, kNeverZero},
                                           {1, std::uint64_t{3} << 30},
                                           {1, kNeverZero},
                                           {1, kNeverZero},
                                           {2, std::uint64_t{0xF} << 12},
                                           {2, kNeverZero}};

template <bool BigEndian>
class Encoder {
 public:
  // A loop for writeInChunks over whole units.
  unsigned char* operator()(const unsigned char*& p, const unsigned char* stop,
                            unsigned char* dest) {
    while (p < stop) {
      dest = m_inRun ? continueRun(p, stop, dest) : copyDirect(p, stop, dest);
    }
    return dest;
  }

  unsigned char* finish(unsigned char* dest) {
    if (!m_inRun) return dest;
    dest = flushBits(dest);
    *dest++ = '-';
    return dest;
  }

 private:
  static std::uint32_t load(const unsigned char* p) { return zvLoadHostUnit(p, BigEndian); }

  unsigned char* copyDirect(const unsigned char*& p, const unsigned char* stop,
                            unsigned char* dest) {
    while (p < stop) {
      for (; stop - p >= 2 * std::ptrdiff_t{kStep}; p += 2 * kStep) {
        const auto text = SixteenBytes::loadUnits<BigEndian>(p);
        text.store(dest);
        const unsigned int count = areDirect(text).countHigh();
        dest += count;
        if (count != kStep) {
          p += 2 * count;
          break;
        }
      }
      for (; p < stop && isDirect(load(p)); p += 2) *dest++ = static_cast<unsigned char>(load(p));
      if (p == stop) break;
      *dest++ = '+';
      if (load(p) == '+') {
        *dest++ = '-';
      } else if (stop - p < 4 || !isDirect(load(p + 2))) {
        m_inRun = true;
        break;
      } else {
        dest = writeSingle(load(p), load(p + 2), dest);
      }
      p += 2;
    }
    return dest;
  }

  // Most runs in Latin text hold one unit, that is three digits. next is the direct character
  // behind it.
  static unsigned char* writeSingle(std::uint32_t unit, std::uint32_t next, unsigned char* dest) {
    storeLow(dest, kDigitPairs[unit >> 4]);
    dest[2] = base64Digit(unit << 2);
    dest[3] = '-';
    return dest + (needsRunClosed(next) ? 4 : 3);
  }

  unsigned char* continueRun(const unsigned char*& p, const unsigned char* stop,
                             unsigned char* dest) {
    while (p < stop) {
      if (m_bitCount == 0) {
        dest = encodeGroups(p, stop, dest);
        if (p == stop) break;
      }
      const std::uint32_t unit = load(p);
      if (isDirect(unit)) {
        dest = flushBits(dest);
        if (needsRunClosed(unit)) *dest++ = '-';
        m_inRun = false;
        break;
      }
      m_bits = (m_bits << 16) | unit;
      for (m_bitCount += 16; m_bitCount >= 6; m_bitCount -= 6) {
        *dest++ = base64Digit(m_bits >> (m_bitCount - 6));
      }
      p += 2;
    }
    return dest;
  }

  // Whole groups, as long as no unit is one that might end the run.
  static unsigned char* encodeGroups(const unsigned char*& p, const unsigned char* stop,
                                     unsigned char* dest) {
    for (; stop - p >= 2 * std::ptrdiff_t{kGroupUnits}; p += 2 * kGroupUnits) {
      std::uint64_t bits = 0;
      bool isAscii = false;
      for (unsigned int i = 0; i < kGroupUnits; ++i) {
        const std::uint32_t unit = load(p + 2 * i);
        isAscii = isAscii || unit < 0x80;
        bits = (bits << 16) | unit;
      }
      if (isAscii) break;
      for (unsigned int i = 0; i < kGroupDigits / 2; ++i, dest += 2) {
        storeLow(dest, kDigitPairs[(bits >> (36 - 12 * i)) & 0xFFF]);
      }
    }
    return dest;
  }

  unsigned char* flushBits(unsigned char* dest) {
    if (m_bitCount != 0) *dest++ = base64Digit(m_bits << (6 - m_bitCount));
    m_bitCount = 0;
    return dest;
  }

  bool m_inRun = false;
  std::uint32_t m_bits = 0;  // the last m_bitCount (below 6 between units) are not yet written
  unsigned int m_bitCount = 0;
};

template <bool BigEndian>
class Decoder {
 public:
  // A loop for writeInChunks.
  unsigned char* operator()(const unsigned char*& p, const unsigned char* stop,
                            unsigned char* dest) {
    while (p < stop) {
      switch (m_state) {
        case State::kDirect:
          dest = copyDirect(p, stop, dest);
          break;
        case State::kShift:
          dest = beginRun(p, dest);
          break;
        case State::kRun:
          dest = continueRun(p, stop, dest);
          break;
      }
    }
    return dest;
  }

  unsigned char* finish(unsigned char* dest) {
    if (m_state == State::kShift) return putMalformed(dest);
    return m_state == State::kRun ? endRun(dest) : dest;
  }

  bool isClean() const { return m_clean; }

 private:
  enum class State {
    kDirect,
    kShift,  // just behind the "+"
    kRun,
  };

  static unsigned char* put(unsigned char* dest, std::uint32_t unit) {
    zvStoreHostUnit(dest, static_cast<std::uint16_t>(unit), BigEndian);
    return dest + 2;
  }

  unsigned char* putMalformed(unsigned char* dest) {
    m_clean = false;
    return put(dest, kReplacementCharacter);
  }

  unsigned char* copyDirect(const unsigned char*& p, const unsigned char* stop,
                            unsigned char* dest) {
    while (p < stop) {
      for (; stop - p >= std::ptrdiff_t{kStep}; p += kStep) {
        const auto text = SixteenBytes::load(p);
        text.template storeAsUnits<BigEndian>(dest);
        const unsigned int count = (text | text.is('+')).countLow();
        dest += 2 * count;
        if (count != kStep) {
          p += count;
          break;
        }
      }
      for (; p < stop && *p < 0x80 && *p != '+'; ++p) dest = put(dest, *p);
      if (p == stop) break;
      if (*p++ != '+') {
        dest = putMalformed(dest);
        continue;
      }
      m_state = State::kShift;
      if (stop - p < std::ptrdiff_t{kGroupDigits} || !isBase64(*p)) break;
      m_state = State::kRun;
      dest = decodeGroups(p, stop, dest);
      if (m_state == State::kRun) break;
    }
    return dest;
  }

  unsigned char* beginRun(const unsigned char*& p, unsigned char* dest) {
    m_state = State::kDirect;
    if (*p == '-') {
      ++p;
      return put(dest, '+');
    }
    if (!isBase64(*p)) return putMalformed(dest);
    m_state = State::kRun;
    return dest;
  }

  unsigned char* continueRun(const unsigned char*& p, const unsigned char* stop,
                             unsigned char* dest) {
    if (m_bitCount == 0) dest = decodeGroups(p, stop, dest);
    while (p < stop && m_state == State::kRun) {
      const unsigned char value = kBase64Values[*p];
      if (value == kNoBase64) {
        if (*p == '-') ++p;
        return endRun(dest);
      }
      ++p;
      m_bits = (m_bits << 6) | value;
      m_bitCount += 6;
      if (m_bitCount >= 16) {
        m_bitCount -= 16;
        dest = put(dest, m_bits >> m_bitCount);
        if (m_bitCount == 0) break;
      }
    }
    return dest;
  }

  // From between two groups to the end of the run, or until fewer characters than a group are left.
  unsigned char* decodeGroups(const unsigned char*& p, const unsigned char* stop,
                              unsigned char* dest) {
    for (; stop - p >= std::ptrdiff_t{kGroupDigits}; p += kGroupDigits) {
      const std::uint32_t first = bitsOfFour(p);
      const std::uint32_t second = bitsOfFour(p + 4);
      put(dest, first >> 8);
      put(dest + 2, (first << 8) | ((second >> 16) & 0xFF));
      const std::uint32_t noDigits = (first >> 24) | (second >> 24 << 4);
      if (noDigits != 0) {
        const int digits = std::countr_zero(noDigits);
        const RunEnd& end = kRunEnds[digits];
        p += digits;
        p += *p == '-' ? 1 : 0;
        dest += 2 * end.units;
        m_state = State::kDirect;
        const std::uint64_t bits = (std::uint64_t{first} << 24) | (second & 0xFFFFFF);
        return ((bits | kNeverZero) & end.padding) == 0 ? dest : putMalformed(dest);
      }
      put(dest + 4, second);
      dest += 2 * kGroupUnits;
    }
    return dest;
  }

  // Fewer than six bits may be left, all of them zero; anything else was cut off or mangled.
  unsigned char* endRun(unsigned char* dest) {
    const bool padded = m_bitCount < 6 && (m_bits & ((1u << m_bitCount) - 1)) == 0;
    m_state = State::kDirect;
    m_bitCount = 0;
    return padded ? dest : putMalformed(dest);
  }

  State m_state = State::kDirect;
  bool m_clean = true;
  std::uint32_t m_bits = 0;  // the last m_bitCount (below 16 between characters) are pending
  unsigned int m_bitCount = 0;
};

// Runs an encoder or decoder over the whole text; false when memory is short.
template <unsigned int WorstFactor, typename Codec>
bool runCodec(Codec& codec, const unsigned char* data, unsigned int length, DataBuffer& out) {
  const auto loop = [&](const unsigned char*& p, const unsigned char* stop, unsigned char* dest) {
    return codec(p, stop, dest);
  };
  if (!writeInChunks<WorstFactor>(data, data + length, out, loop)) return false;
  unsigned char last[kWriteSlack] = {};
  return out.append(last, static_cast<unsigned int>(codec.finish(last) - last));
}

template <bool BigEndian>
bool encode(const DataBuffer& in, DataBuffer& out) {
  const unsigned int whole = in.getSize() & ~1u;
  out.expect(std::uint64_t{whole} + whole / 2);
  Encoder<BigEndian> encoder;
  return runCodec<2>(encoder, in.getData2(), whole, out) && whole == in.getSize();
}

template <bool BigEndian>
bool decode(const DataBuffer& in, DataBuffer& out) {
  out.expect(std::uint64_t{in.getSize()} * 2);
  Decoder<BigEndian> decoder;
  return runCodec<2>(decoder, in.getData2(), in.getSize(), out) && decoder.isClean();
}

}  // namespace

bool _zvUtf::Utf16XEToUtf7(DataBuffer& in, DataBuffer& out) {
  return zvIsBigEndian() ? encode<true>(in, out) : encode<false>(in, out);
}

bool _zvUtf::Utf7ToUtf16_xe(DataBuffer& in, DataBuffer& out) {
  return zvIsBigEndian() ? decode<true>(in, out) : decode<false>(in, out);
}

// Far enough for the pieces that callers add to a text before they ask again.
constexpr unsigned int kCutDistance = 1u << 16;

unsigned int _zvUtf::utf7Cut(const unsigned char* utf7, unsigned int length) {
  const unsigned int least = length > kCutDistance ? length - kCutDistance : 0;
  while (length > least && isBase64(utf7[length - 1])) --length;
  return length > least ? length : 0;
}

unsigned int _zvUtf::utf16CutForUtf7(const unsigned char* utf16, unsigned int length) {
  const unsigned int least = length > kCutDistance ? length - kCutDistance : 0;
  length &= ~1u;
  const auto unitBefore = [&] { return zvLoadHostUnit(utf16 + length - 2, zvIsBigEndian()); };
  while (length >= least + 2 && !isDirect(unitBefore())) length -= 2;
  return length >= least + 2 ? length : 0;
}
