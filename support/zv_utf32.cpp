// _zvUtf: UTF-8 to and from UTF-32.
#include <array>
#include <bit>

#include "support/utf_loops.h"
#include "support/zv_utf.h"

namespace {

template <bool BigEndian>
void storeUnit(unsigned char* dest, std::uint32_t value) {
  for (unsigned int i = 0; i < 4; ++i) {
    dest[i] = static_cast<unsigned char>(value >> (BigEndian ? 24 - 8 * i : 8 * i));
  }
}

std::uint32_t loadLittleEndian(const unsigned char* p) {
  std::uint32_t value = 0;
  for (unsigned int i = 0; i < 4; ++i) value |= std::uint32_t{p[i]} << (8 * i);
  return value;
}

template <bool BigEndian>
bool fromUtf8(const unsigned char* utf8, unsigned int length, DataBuffer& out) {
  const unsigned char* const end = utf8 + length;
  bool clean = true;
  const auto loop = [&](const unsigned char*& in, const unsigned char* stop, unsigned char* dest) {
    const unsigned char* p = in;
    while (p < stop) {
      if (*p < 0x80) {
        while (stop - p >= 8 && areAscii(loadEight(p))) {
          for (unsigned int i = 0; i < 8; ++i) storeUnit<BigEndian>(dest + 4 * i, p[i]);
          p += 8;
          dest += 32;
        }
        for (; p < stop && *p < 0x80; ++p, dest += 4) storeUnit<BigEndian>(dest, *p);
        continue;
      }
      const Utf8Sequence sequence = decodeScalar(p, static_cast<std::size_t>(end - p));
      storeUnit<BigEndian>(dest, sequence.valid ? sequence.value : kReplacementCharacter);
      clean = clean && sequence.valid;
      p += sequence.length;
      dest += 4;
    }
    in = p;
    return dest;
  };
  out.expect(std::uint64_t{length} * 4);
  return writeInChunks<4>(utf8, end, out, loop) && clean;
}

// The bits that are clear in two little-endian units below 0x80, whatever order the host reads in.
constexpr auto kNotAsciiUnits = std::bit_cast<std::uint64_t>(
    std::array<unsigned char, 8>{0x80, 0xFF, 0xFF, 0xFF, 0x80, 0xFF, 0xFF, 0xFF});

bool areAsciiUnits(const unsigned char* p) {
  std::uint64_t all = 0;
  for (unsigned int i = 0; i < 32; i += 8) all |= loadEight(p + i);
  return (all & kNotAsciiUnits) == 0;
}

}  // namespace

bool _zvUtf::utf8toUtf32(bool bigEndian, const unsigned char* utf8, unsigned int length,
                         DataBuffer& out) {
  return bigEndian ? fromUtf8<true>(utf8, length, out) : fromUtf8<false>(utf8, length, out);
}

bool _zvUtf::Utf8toUtf32(bool bigEndian, const DataBuffer& in, DataBuffer& out) {
  return utf8toUtf32(bigEndian, in.getData2(), in.getSize(), out);
}

bool _zvUtf::utf32ToUtf8(const unsigned char* utf32, unsigned int numUnits, DataBuffer& out,
                         LogBase&) {
  const unsigned char* const end = utf32 + std::size_t{numUnits} * 4;
  bool clean = true;
  const auto loop = [&](const unsigned char*& in, const unsigned char* stop, unsigned char* dest) {
    const unsigned char* p = in;
    while (p < stop) {
      std::uint32_t value = loadLittleEndian(p);
      if (value < 0x80) {
        for (; stop - p >= 32 && areAsciiUnits(p); p += 32, dest += 8) {
          for (unsigned int i = 0; i < 8; ++i) dest[i] = p[4 * i];
        }
        for (; p < stop && (value = loadLittleEndian(p)) < 0x80; p += 4) {
          *dest++ = static_cast<unsigned char>(value);
        }
        continue;
      }
      if (!isScalarValue(value)) {
        value = kReplacementCharacter;
        clean = false;
      }
      dest = writeUtf8(dest, value);
      p += 4;
    }
    in = p;
    return dest;
  };
  out.expect(std::uint64_t{numUnits} * 3);
  return writeInChunks<1>(utf32, end, out, loop) && clean;
}

bool _zvUtf::Utf32ToUtf8(const DataBuffer& in, DataBuffer& out, LogBase& log) {
  return utf32ToUtf8(in.getData2(), in.getSize() / 4, out, log);
}
