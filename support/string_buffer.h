// StringBuffer: a growable NUL-terminated string of 8-bit characters.
#ifndef SUPPORT_STRING_BUFFER_H_
#define SUPPORT_STRING_BUFFER_H_

#include "support/data_buffer.h"

// Holds any byte values from 1 to 255; sizes are in bytes. Nothing throws: when memory is short an
// append leaves the string as it was. One thread uses a string at a time.
class StringBuffer {
 public:
  StringBuffer() noexcept = default;  // the empty string
  StringBuffer(const StringBuffer&) = delete;
  StringBuffer& operator=(const StringBuffer&) = delete;

  // Appends a NUL-terminated string; null appends nothing.
  void append(const char* text);
  // Appends exactly count bytes, none of which should be NUL.
  void appendN(const char* text, unsigned int count);
  // Empties the string and keeps its storage for reuse.
  void weakClear() { m_text.clear(); }

  unsigned int getSize() const { return m_text.getSize() == 0 ? 0 : m_text.getSize() - 1; }
  // The NUL-terminated text, never null; valid until the next change.
  const char* getString() const;
  // True once an append could not be done since construction or the last weakClear().
  bool hasFailed() const { return m_text.hasFailed(); }

 private:
  DataBuffer m_text;  // empty, or the text with its NUL
};

#endif  // SUPPORT_STRING_BUFFER_H_
