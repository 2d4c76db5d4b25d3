#include "support/zv_utf.h"

#include <bit>
#include <cstring>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/gsm.h"
#include "support/compiler.h"
#include "support/utf.h"
#include "support/zv_base.h"

namespace {

constexpr bool kIsHostBigEndian = std::endian::native == std::endian::big;

// Appends UTF-16 with the bytes of each unit the other way round; an odd byte at the end stays.
void appendSwapped(const DataBuffer& units, DataBuffer& out) {
  const unsigned char* const data = units.getData2();
  const unsigned int size = units.getSize(), whole = size & ~1u;
  for (unsigned int i = 0; i < size; ++i) out.appendChar(data[i < whole ? i ^ 1 : i]);
}

}  // namespace

bool _zvUtf::oneUtf32ToUtf8(unsigned int scalar, char* dest, unsigned int& count) {
  count = 0;
  if (!isScalarValue(scalar)) return false;
  auto* const start = reinterpret_cast<unsigned char*>(dest);
  count = static_cast<unsigned int>(writeUtf8(start, scalar) - start);
  return true;
}

unsigned int _zvUtf::utf16FromUtf8(const unsigned char* p, unsigned int bytesLeft,
                                   unsigned int& consumed) {
  const Utf8Sequence sequence = decodeUtf8(p, bytesLeft);
  consumed = sequence.length;
  if (sequence.value < 0x10000) return sequence.value;  // 0 for an invalid sequence
  return highSurrogateOf(sequence.value) | lowSurrogateOf(sequence.value) << 16;
}

unsigned int _zvUtf::utf16FromUtf8(const unsigned char* p, unsigned int& consumed) {
  // The bytes are looked at one after the other and only as long as they belong together, so the
  // longest sequence is bound enough.
  return utf16FromUtf8(p, 4, consumed);
}

int _zvUtf::NumUtf8Bytes(const unsigned char* p, int bytesLeft) {
  if (bytesLeft <= 0) return 0;
  return static_cast<int>(decodeUtf8(p, static_cast<unsigned int>(bytesLeft)).length);
}

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
    const std::uint32_t stored = bigEndian == kIsHostBigEndian ? value : compilerSwapBytes(value);
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

bool _zvUtf::Utf16XEToUtf7(DataBuffer& in, DataBuffer& out) {
  DataBuffer swapped;
  if (zvIsBigEndian()) appendSwapped(in, swapped);
  if (swapped.hasFailed()) out.latchFailure();
  const DataBuffer& units = zvIsBigEndian() ? swapped : in;
  return convertWhole(codecOf(65000).write, units.getData2(), units.getSize(), out);
}

bool _zvUtf::Utf7ToUtf16_xe(DataBuffer& in, DataBuffer& out) {
  if (!zvIsBigEndian()) return convertWhole(codecOf(65000).read, in.getData2(), in.getSize(), out);
  DataBuffer units;
  const bool ok = convertWhole(codecOf(65000).read, in.getData2(), in.getSize(), units);
  appendSwapped(units, out);
  if (units.hasFailed()) out.latchFailure();
  return ok && !out.hasFailed();
}

bool _zvUtf::gsm_to_utf8(const unsigned char* gsm, unsigned int length, DataBuffer& out, LogBase&) {
  return convertWhole(kGsmUtf8Codec.read, gsm, length, out);
}

bool _zvUtf::utf8_to_gsm(const unsigned char* utf8, unsigned int length, DataBuffer& out,
                         LogBase&) {
  return convertWhole(kGsmUtf8Codec.write, utf8, length, out);
}
