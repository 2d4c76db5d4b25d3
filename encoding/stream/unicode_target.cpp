// Targets in UTF-16, UTF-32 and UTF-7.
#include <new>

#include "encoding/stream/target_kinds.h"
#include "encoding/stream/utf7_alphabet.h"

namespace {

class Utf16Target final : public StreamTarget {
 public:
  explicit Utf16Target(bool bigEndian) : m_bigEndian(bigEndian) {}

  bool encode(const std::uint16_t* units, std::uint32_t count, Behind /*behind*/, DataBuffer& out,
              EncodeResult& result) override {
    result.used = count;
    unsigned char* dest = out.reserveTail(count * 2 + 1);
    if (dest == nullptr) return false;
    const unsigned int high = m_bigEndian ? 0 : 1;
    for (std::uint32_t i = 0; i < count; ++i) {
      dest[i * 2 + high] = static_cast<unsigned char>(units[i] >> 8);
      dest[i * 2 + 1 - high] = static_cast<unsigned char>(units[i] & 0xFF);
    }
    out.commitTail(count * 2);
    return true;
  }

 private:
  bool m_bigEndian;
};

class Utf32Target final : public StreamTarget {
 public:
  explicit Utf32Target(bool bigEndian) : m_bigEndian(bigEndian) {}

  bool encode(const std::uint16_t* units, std::uint32_t count, Behind /*behind*/, DataBuffer& out,
              EncodeResult& result) override {
    result.used = count;
    unsigned char* const begin = out.reserveTail(count * 4 + 1);
    if (begin == nullptr) return false;
    unsigned char* dest = begin;
    for (std::uint32_t i = 0; i < count; dest += 4) {
      const std::uint32_t value = nextScalar(units, i);
      for (unsigned int byte = 0; byte < 4; ++byte) {
        dest[m_bigEndian ? 3 - byte : byte] = static_cast<unsigned char>(value >> (8 * byte));
      }
    }
    out.commitTail(static_cast<unsigned int>(dest - begin));
    return true;
  }

 private:
  bool m_bigEndian;
};

// A run is left only before a character that is written as it is, with a "-" where that could
// belong to the run, and at the end of the text.
class Utf7Target final : public StreamTarget {
 public:
  bool encode(const std::uint16_t* units, std::uint32_t count, Behind /*behind*/, DataBuffer& out,
              EncodeResult& result) override {
    result.used = count;
    // At most a "+", three digits and a "-" for each, and what was pending.
    unsigned char* const begin = out.reserveTail(count * 5 + 2);
    if (begin == nullptr) return false;
    unsigned char* dest = begin;
    for (std::uint32_t i = 0; i < count; ++i) dest = writeUnit(units[i], dest);
    out.commitTail(static_cast<unsigned int>(dest - begin));
    return true;
  }

  bool holds(const std::uint16_t* /*units*/, std::uint32_t /*count*/, bool& fits) override {
    fits = true;
    return true;
  }

  bool leaveShift(DataBuffer& out) override {
    if (!m_inRun) return true;
    unsigned char bytes[2];
    unsigned char* end = flushBits(bytes);
    *end++ = '-';
    m_inRun = false;
    return out.append(bytes, static_cast<unsigned int>(end - bytes));
  }

 private:
  static unsigned char digit(std::uint32_t bits) {
    return static_cast<unsigned char>(kBase64Digits[bits & 0x3F]);
  }

  unsigned char* flushBits(unsigned char* dest) {
    if (m_bitCount != 0) *dest++ = digit(m_bits << (6 - m_bitCount));
    m_bitCount = 0;
    return dest;
  }

  unsigned char* writeUnit(std::uint32_t unit, unsigned char* dest) {
    if (isUtf7Direct(unit)) {
      if (m_inRun) {
        dest = flushBits(dest);
        if (unit == '-' || base64Value(static_cast<unsigned char>(unit)) >= 0) *dest++ = '-';
        m_inRun = false;
      }
      *dest++ = static_cast<unsigned char>(unit);
      return dest;
    }
    if (!m_inRun) {
      *dest++ = '+';
      if (unit == '+') {
        *dest++ = '-';
        return dest;
      }
      m_inRun = true;
    }
    m_bits = (m_bits << 16) | unit;
    for (m_bitCount += 16; m_bitCount >= 6; m_bitCount -= 6) {
      *dest++ = digit(m_bits >> (m_bitCount - 6));
    }
    return dest;
  }

  bool m_inRun = false;
  std::uint32_t m_bits = 0;      // the last m_bitCount of them are not yet written
  std::uint32_t m_bitCount = 0;  // below 6 between units
};

}  // namespace

std::unique_ptr<StreamTarget> makeUtf16Target(bool bigEndian) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) Utf16Target(bigEndian));
}
std::unique_ptr<StreamTarget> makeUtf32Target(bool bigEndian) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) Utf32Target(bigEndian));
}
std::unique_ptr<StreamTarget> makeUtf7Target() {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) Utf7Target());
}
