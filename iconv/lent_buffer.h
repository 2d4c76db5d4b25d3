// LentBuffer: a DataBuffer that begins in memory of the stack; and what is asked of a codec
// besides.
#ifndef ICONV_LENT_BUFFER_H_
#define ICONV_LENT_BUFFER_H_

#include <cstddef>

#include "support/data_buffer.h"
#include "support/replacement_sink.h"

namespace iconv_layer {

template <std::size_t size>
class LentBuffer : public DataBuffer {
 public:
  LentBuffer() { lendStorage(m_storage, size); }

 private:
  unsigned char m_storage[size];
};

// Counts what had no form, and keeps the first of it.
class MarkCounter final : public ReplacementSink {
 public:
  void onReplaced(const ReplacedInput& piece) override {
    if (m_count++ == 0) m_first = piece;
  }
  unsigned int count() const { return m_count; }
  const ReplacedInput& first() const { return m_first; }

 private:
  unsigned int m_count = 0;
  ReplacedInput m_first{};
};

}  // namespace iconv_layer

#endif  // ICONV_LENT_BUFFER_H_
