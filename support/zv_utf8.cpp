// _zvUtf: single UTF-8 sequences.
#include "support/utf.h"
#include "support/zv_utf.h"

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
