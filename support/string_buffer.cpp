#include "support/string_buffer.h"

#include "support/zv_base.h"

void StringBuffer::append(const char* text) {
  appendN(text, static_cast<unsigned int>(zvStrLen(text)));
}

void StringBuffer::appendN(const char* text, unsigned int count) {
  if (count == 0) return;
  // Room for text and NUL first, so that a failure leaves the string whole.
  if (!m_text.ensureBuffer(count) || !m_text.ensureBuffer(count + 1)) return;
  m_text.truncate(getSize());
  m_text.append(text, count);
  m_text.appendChar(0);
}

const char* StringBuffer::getString() const {
  return m_text.getSize() == 0 ? "" : reinterpret_cast<const char*>(m_text.getData2());
}
