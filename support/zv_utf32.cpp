// _zvUtf: UTF-8 to and from UTF-32. Plain loops: clean text takes the vector kernels elsewhere.
#include <bit>
#include <cstring>

#include "support/utf.h"
#include "support/zv_utf.h"

constexpr bool kIsHostBigEndian = std::endian::native == std::endian::big;

bool _zvUtf::utf8toUtf32(bool bigEndian, const unsigned char* utf8, unsigned int length,
                         DataBuffer& out) {
  out.expect(std::uint64_t{length} * 4);
  bool clean = true;
  for (unsigned int i = 0; i < length;) {
    const Utf8Sequence sequence = decodeScalar(utf8 + i, length - i);
    clean = clean && sequence.valid;
    const std::uint32_t value = sequence.valid ? sequence.value : kReplacementCharacter;
    unsigned char* const dest = out.reserveTail(4);
    if (dest == nullptr) return false;
    const std::uint32_t stored = bigEndian == kIsHostBigEndian ? value : __builtin_bswap32(value);
    std::memcpy(dest, &stored, 4);
    out.commitTail(4);
    i += sequence.length;
  }
  return clean;
}

bool _zvUtf::Utf8toUtf32(bool bigEndian, const DataBuffer& in, DataBuffer& out) {
  return utf8toUtf32(bigEndian, in.getData2(), in.getSize(), out);
}

bool _zvUtf::utf32ToUtf8(const unsigned char* utf32, unsigned int numUnits, DataBuffer& out,
                         LogBase&) {
  out.expect(std::uint64_t{numUnits} * 3);
  bool clean = true;
  for (const unsigned char* p = utf32; numUnits != 0; --numUnits, p += 4) {
    std::uint32_t value = 0;
    for (unsigned int byte = 0; byte < 4; ++byte) value |= std::uint32_t{p[byte]} << (8 * byte);
    if (!isScalarValue(value)) {
      value = kReplacementCharacter;
      clean = false;
    }
    unsigned char* const dest = out.reserveTail(4);
    if (dest == nullptr) return false;
    out.commitTail(static_cast<unsigned int>(writeUtf8(dest, value) - dest));
  }
  return clean;
}

bool _zvUtf::Utf32ToUtf8(const DataBuffer& in, DataBuffer& out, LogBase& log) {
  return utf32ToUtf8(in.getData2(), in.getSize() / 4, out, log);
}
