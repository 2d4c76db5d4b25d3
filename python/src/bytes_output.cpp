#include "python/src/bytes_output.h"

#include <algorithm>
#include <cstring>

#include "support/huge_pages.h"

BytesOutput::~BytesOutput() {
  const HeldLock held(m_lock);
  Py_XDECREF(m_bytes);
}

void BytesOutput::reopen() {
  isFull = false;
  end = m_bytes == nullptr ? m_block + sizeof m_block : m_begin + PyBytes_GET_SIZE(m_bytes);
}

bool BytesOutput::grow(std::size_t count, std::uint64_t expected) {
  if (isFull) return false;
  const std::size_t written = size();
  const std::size_t least = written + count;
  const std::size_t wanted = std::max<std::size_t>(
      {least, m_expected, written + static_cast<std::size_t>(expected), written + written / 2});
  const bool isFirst = m_bytes == nullptr;
  {
    const HeldLock held(m_lock);
    if (isFirst) {
      m_bytes = PyBytes_FromStringAndSize(nullptr, pySize(wanted));
    } else if (_PyBytes_Resize(&m_bytes, pySize(wanted)) != 0) {
      m_bytes = nullptr;
    }
  }
  if (m_bytes == nullptr) {
    m_begin = next = end = m_block;
    return false;
  }
  m_begin = reinterpret_cast<unsigned char*>(PyBytes_AS_STRING(m_bytes));
  if (isFirst) {
    preferHugePages(m_begin, wanted);
    std::memcpy(m_begin, m_block, written);
  }
  next = m_begin + written;
  end = m_begin + wanted;
  return true;
}

PyObject* BytesOutput::finish() {
  if (m_bytes == nullptr) {
    return PyBytes_FromStringAndSize(reinterpret_cast<const char*>(m_block), pySize(size()));
  }
  if (_PyBytes_Resize(&m_bytes, pySize(size())) != 0) return nullptr;
  PyObject* const bytes = m_bytes;
  m_bytes = nullptr;
  return bytes;
}
