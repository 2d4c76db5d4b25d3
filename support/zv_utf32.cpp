// _zvUtf: UTF-8 to and from UTF-32.
#include "support/utf_loops.h"
#include "support/zv_utf.h"

namespace {

template <bool BigEndian>
void storeUnit(unsigned char* dest, std::uint32_t value) {
  if constexpr (BigEndian) {
    for (unsigned int i = 0; i < 4; ++i)
      dest[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
  } else {
    storeLow(dest, value);
  }
}

// A scalar value whose UTF-8 form has three bytes.
bool isThreeByteScalar(std::uint32_t value) {
  return value >= 0x800 && value < 0x10000 && !isSurrogate(value);
}

// Converts three-byte sequences, two at once, for as long as nothing else is met.
template <bool BigEndian>
unsigned char* convertThreeByteForms(const unsigned char*& p, const unsigned char* stop,
                                     unsigned char* dest) {
  constexpr std::uint64_t kFixedBits = 0xC0C0F0C0C0F0u;
  constexpr std::uint64_t kForm = 0x8080E08080E0u;
  const auto valueOf = [](std::uint64_t bytes) {
    return static_cast<std::uint32_t>(((bytes & 0xF) << 12) | ((bytes >> 2) & 0xFC0) |
                                      ((bytes >> 16) & 0x3F));
  };
  for (; stop - p >= 8; p += 6, dest += 8) {
    const std::uint64_t bytes = loadEight(p);
    if ((bytes & kFixedBits) != kForm) break;
    const std::uint32_t first = valueOf(bytes);
    const std::uint32_t second = valueOf(bytes >> 24);
    if (!isThreeByteScalar(first) || !isThreeByteScalar(second)) break;
    storeUnit<BigEndian>(dest, first);
    storeUnit<BigEndian>(dest + 4, second);
  }
  return dest;
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
      if (*p >= 0xE0) {
        dest = convertThreeByteForms<BigEndian>(p, stop, dest);
        if (p == stop) break;
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

bool areAsciiUnits(const unsigned char* p) {
  std::uint64_t all = 0;
  for (unsigned int i = 0; i < 32; i += 8) all |= loadEight(p + i);
  return (all & 0xFFFFFF80FFFFFF80u) == 0;
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
      std::uint32_t value = loadLow<std::uint32_t>(p);
      if (value < 0x80) {
        for (; stop - p >= 32 && areAsciiUnits(p); p += 32, dest += 8) {
          for (unsigned int i = 0; i < 8; ++i) dest[i] = p[4 * i];
        }
        for (; p < stop && (value = loadLow<std::uint32_t>(p)) < 0x80; p += 4) {
          *dest++ = static_cast<unsigned char>(value);
        }
        continue;
      }
      if (isThreeByteScalar(value)) {
        const std::uint32_t last = ((value & 0xFC0) << 2) | ((value & 0x3F) << 16);
        storeLow(dest, 0x8080E0 | (value >> 12) | last);
        dest += 3;
        p += 4;
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
