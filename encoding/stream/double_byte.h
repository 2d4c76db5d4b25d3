// DoubleByteCharacters: where the characters of a double-byte code page begin and end.
#ifndef ENCODING_STREAM_DOUBLE_BYTE_H_
#define ENCODING_STREAM_DOUBLE_BYTE_H_

#include <cstdint>

#include "encoding/encoding_convert.h"
#include "encoding/tables/table_registry.h"

// Follows the engine's decoder, which tries two bytes first and one byte then, whatever the lead
// bytes of the code page are said to be: how long a character is depends on the table alone.
class DoubleByteCharacters {
 public:
  // Builds the decoding table. When memory is short every character counts as one byte; the
  // decoder then fails as well.
  explicit DoubleByteCharacters(int codePage) {
    LogBase log;
    const EncodingRow* row = findEncodingRow(codePage);
    if (row == nullptr || !EncodingConvert::ensureHashToUnicode(codePage, log)) return;
    m_table = tableSlots(*row).multiToUnicode.load(std::memory_order_acquire);
  }

  // The length of the character, or of the bad byte, at p; 1 or 2.
  std::uint32_t length(const unsigned char* p, std::uint32_t left) const {
    return left > 1 && isPair(p) ? 2 : 1;
  }

  // The length of the longest front of text, which begins with a character, that ends behind one
  // and cannot be understood otherwise whatever follows.
  std::uint32_t wholeLength(const unsigned char* text, std::uint32_t count) const {
    // No character of two bytes begins below 80, so there is a boundary behind such a byte, be it
    // a character or the end of one.
    std::uint32_t i = count;
    while (i > 0 && text[i - 1] >= 0x80) --i;
    while (count - i >= 2) i += length(text + i, count - i);
    return i;
  }

 private:
  bool isPair(const unsigned char* p) const {
    if (p[0] < 0x80 || m_table == nullptr) return false;
    unsigned char value[2];
    return m_table->probe(p, value) != 0;
  }

  const HashConvert* m_table = nullptr;  // process-wide, not owned
};

#endif  // ENCODING_STREAM_DOUBLE_BYTE_H_
