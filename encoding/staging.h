// Staging: a fixed local area in which a converter gathers short outputs before it appends them.
#ifndef ENCODING_STAGING_H_
#define ENCODING_STAGING_H_

#include "support/data_buffer.h"
#include "support/utf.h"

// Appends in blocks, to keep appends few: whenever FlushAt bytes or more are staged after a put.
// Whoever appends to the output directly calls flush() first, so that output order is input order.
// The destructor flushes what is left.
template <unsigned int FlushAt>
class Staging {
 public:
  explicit Staging(DataBuffer& out) : m_out(out) {}
  ~Staging() { flush(); }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;

  void put(unsigned char byte) {
    m_bytes[m_count++] = byte;
    flushIfFull();
  }
  void put(unsigned char first, unsigned char second) {
    m_bytes[m_count++] = first;
    m_bytes[m_count++] = second;
    flushIfFull();
  }
  // The UTF-8 form of a scalar value, or the three-byte form of a surrogate.
  void putUtf8(unsigned int value) {
    m_count = static_cast<unsigned int>(writeUtf8(m_bytes + m_count, value) - m_bytes);
    flushIfFull();
  }
  void putThreeByteForm(unsigned int unit) {
    m_count = static_cast<unsigned int>(writeThreeByteForm(m_bytes + m_count, unit) - m_bytes);
    flushIfFull();
  }
  // A UTF-16 unit in the byte order asked for.
  void putUnit(unsigned int unit, bool bigEndian) {
    const auto high = static_cast<unsigned char>(unit >> 8);
    const auto low = static_cast<unsigned char>(unit & 0xFF);
    bigEndian ? put(high, low) : put(low, high);
  }

  void flush() {
    if (m_count != 0) m_out.append(m_bytes, m_count);
    m_count = 0;
  }

 private:
  void flushIfFull() {
    if (m_count >= FlushAt) flush();
  }

  DataBuffer& m_out;
  unsigned int m_count = 0;
  unsigned char m_bytes[FlushAt + 4];
};

#endif  // ENCODING_STAGING_H_
