// _zvUtf: UTF-16 in host order to and from UTF-7 (RFC 2152).
#include <array>
#include <string_view>

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
  for (unsigned int i = 0; i < kBase64.size(); ++i) {
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

bool isDirect(std::uint32_t unit) { return unit < kIsDirect.size() && kIsDirect[unit]; }

unsigned char base64Digit(std::uint64_t bits) {
  return static_cast<unsigned char>(kBase64[bits & 0x3F]);
}

// Three units are eight characters: the loops of both directions do that many at once where they
// stand at the beginning of such a group, which is where no bits are pending.
constexpr unsigned int kGroupUnits = 3;
constexpr unsigned int kGroupDigits = 8;

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
    for (; p < stop; p += 2) {
      const std::uint32_t unit = load(p);
      if (isDirect(unit)) {
        *dest++ = static_cast<unsigned char>(unit);
        continue;
      }
      *dest++ = '+';
      if (unit != '+') {
        m_inRun = true;
        break;
      }
      *dest++ = '-';
    }
    return dest;
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
        if (unit == '-' || isBase64(static_cast<unsigned char>(unit))) *dest++ = '-';
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
      for (unsigned int i = 0; i < kGroupDigits; ++i) *dest++ = base64Digit(bits >> (42 - 6 * i));
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

  // Nothing but ASCII, and no "+".
  static bool isPlain(std::uint64_t eight) {
    constexpr std::uint64_t kOnes = 0x0101010101010101u;
    const std::uint64_t zeroWherePlus = eight ^ (kOnes * '+');
    const std::uint64_t plus = (zeroWherePlus - kOnes) & ~zeroWherePlus;
    return areAscii(plus | eight);
  }

  unsigned char* copyDirect(const unsigned char*& p, const unsigned char* stop,
                            unsigned char* dest) {
    while (p < stop) {
      for (; stop - p >= 8 && isPlain(loadEight(p)); p += 8, dest += 16) {
        for (unsigned int i = 0; i < 8; ++i) put(dest + 2 * i, p[i]);
      }
      for (; p < stop && *p < 0x80 && *p != '+'; ++p) dest = put(dest, *p);
      if (p == stop) break;
      if (*p++ == '+') {
        m_state = State::kShift;
        break;
      }
      dest = putMalformed(dest);
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
    m_bits = m_bitCount = 0;
    return dest;
  }

  unsigned char* continueRun(const unsigned char*& p, const unsigned char* stop,
                             unsigned char* dest) {
    while (p < stop) {
      if (m_bitCount == 0) {
        dest = decodeGroups(p, stop, dest);
        if (p == stop) break;
      }
      const unsigned char value = kBase64Values[*p];
      if (value == kNoBase64) {
        m_state = State::kDirect;
        if (*p == '-') ++p;
        return endRun(dest);
      }
      ++p;
      m_bits = (m_bits << 6) | value;
      m_bitCount += 6;
      if (m_bitCount >= 16) {
        m_bitCount -= 16;
        dest = put(dest, m_bits >> m_bitCount);
      }
    }
    return dest;
  }

  // Whole groups, as long as every character is base64.
  static unsigned char* decodeGroups(const unsigned char*& p, const unsigned char* stop,
                                     unsigned char* dest) {
    for (; stop - p >= std::ptrdiff_t{kGroupDigits}; p += kGroupDigits) {
      std::uint64_t bits = 0;
      unsigned char all = 0;
      for (unsigned int i = 0; i < kGroupDigits; ++i) {
        const unsigned char value = kBase64Values[p[i]];
        all |= value;
        bits = (bits << 6) | value;
      }
      if ((all & kNoBase64) != 0) break;
      for (unsigned int i = 0; i < kGroupUnits; ++i) {
        dest = put(dest, static_cast<std::uint32_t>(bits >> (32 - 16 * i)) & 0xFFFF);
      }
    }
    return dest;
  }

  // Fewer than six bits may be left, all of them zero; anything else was cut off or mangled.
  unsigned char* endRun(unsigned char* dest) {
    const bool padded = m_bitCount < 6 && (m_bits & ((1u << m_bitCount) - 1)) == 0;
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
  unsigned char last[kWriteSlack];
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
