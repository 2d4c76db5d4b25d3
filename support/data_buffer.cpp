#include "support/data_buffer.h"

#include <algorithm>
#include <cstdint>

#include "support/zv_base.h"

namespace {
constexpr std::uint64_t kMaxSize = 0xFFFFFFFFu;
constexpr std::uint64_t kFirstCapacity = 64;
}  // namespace

bool DataBuffer::grow(unsigned int count) {
  const std::uint64_t needed = std::uint64_t{m_size} + count;
  if (needed > kMaxSize) {
    m_failed = true;
    return false;
  }
  // Half as much again; where that cannot be had, what is needed and no more.
  const std::uint64_t generous = std::uint64_t{m_capacity} + m_capacity / 2;
  std::uint64_t capacity = std::min(std::max({needed, generous, kFirstCapacity}), kMaxSize);
  unsigned char* data = zvNewUnsignedChar(static_cast<unsigned int>(capacity));
  if (data == nullptr && capacity > needed) {
    capacity = needed;
    data = zvNewUnsignedChar(static_cast<unsigned int>(capacity));
  }
  if (data == nullptr) {
    m_failed = true;
    return false;
  }
  if (m_size != 0) std::memcpy(data, m_data, m_size);
  if (!m_borrowed) delete[] m_data;
  m_data = data;
  m_capacity = static_cast<unsigned int>(capacity);
  m_borrowed = false;
  return true;
}

void DataBuffer::expect(std::uint64_t count) {
  const bool failed = m_failed;
  ensureBuffer(static_cast<unsigned int>(std::min(count, kMaxSize - m_size)));
  m_failed = failed;
}

bool DataBuffer::appendSlow(const void* data, unsigned int count) {
  // The bytes may lie in the storage that grow() replaces: remember where, not which address.
  const auto source = reinterpret_cast<std::uintptr_t>(data);
  const auto base = reinterpret_cast<std::uintptr_t>(m_data);
  const bool inside = m_data != nullptr && source >= base && source - base < m_size;
  if (!grow(count)) return false;
  std::memcpy(m_data + m_size, inside ? m_data + (source - base) : data, count);
  m_size += count;
  return true;
}

void DataBuffer::release() {
  if (!m_borrowed) delete[] m_data;
  m_data = nullptr;
  m_size = m_capacity = m_asciiPrefix = 0;
  m_borrowed = false;
}

void DataBuffer::borrowData(const unsigned char* data, unsigned int count) {
  release();
  m_data = const_cast<unsigned char*>(data);  // never written through: see m_capacity
  m_size = m_capacity = count;
  m_borrowed = true;
}

void DataBuffer::takeData(unsigned char* data, unsigned int count) {
  if (data != m_data || m_borrowed) release();
  m_data = data;
  m_size = m_capacity = count;
  m_asciiPrefix = 0;
  m_borrowed = false;
}

void DataBuffer::drop_non_usascii() {
  const auto isHigh = [](unsigned char byte) { return byte >= 0x80; };
  const bool allAscii =
      std::find_if(m_data + m_asciiPrefix, m_data + m_size, isHigh) == m_data + m_size;
  if (!allAscii) {
    if (m_borrowed && !grow(0)) return;
    const unsigned char* end = std::remove_if(m_data + m_asciiPrefix, m_data + m_size, isHigh);
    m_size = static_cast<unsigned int>(end - m_data);
  }
  m_asciiPrefix = m_size;
}

void DataBuffer::clear() {
  if (m_borrowed) release();
  m_size = m_asciiPrefix = 0;
  m_failed = false;
}

void DataBuffer::truncate(unsigned int size) {
  m_size = std::min(m_size, size);
  m_asciiPrefix = std::min(m_asciiPrefix, size);
  if (m_borrowed) m_capacity = m_size;
}
