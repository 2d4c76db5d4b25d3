#include "support/data_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "support/zv_base.h"

namespace {
constexpr std::uint64_t kMaxSize = 0xFFFFFFFFu;
constexpr std::uint64_t kFirstCapacity = 64;
constexpr std::uint64_t kLargeCapacity = 1u << 20;
}  // namespace

bool DataBuffer::grow(unsigned int count) {
  const std::uint64_t needed = std::uint64_t{m_size} + count;
  if (needed > kMaxSize) {
    m_failed = true;
    return false;
  }
  // Half as much again; where that cannot be had, what is needed and no more.
  const std::uint64_t generous = std::uint64_t{m_capacity} + m_capacity / 2;
  const std::uint64_t capacity = std::min(std::max({needed, generous, kFirstCapacity}), kMaxSize);
  if (moveToCapacity(capacity) || (capacity > needed && moveToCapacity(needed))) return true;
  m_failed = true;
  return false;
}

// Gives the content storage of that capacity; false, with nothing changed, when there is none.
bool DataBuffer::moveToCapacity(std::uint64_t capacity) {
  const bool isLarge = capacity >= kLargeCapacity;
  const auto count = static_cast<unsigned int>(capacity);
  unsigned char* data = nullptr;
  if (isLarge) {
    void* const old = m_storage == Storage::kLarge ? m_data : nullptr;
    data = static_cast<unsigned char*>(std::realloc(old, count));
  } else {
    data = zvNewUnsignedChar(count);
  }
  if (data == nullptr) return false;
  if (!isLarge || m_storage != Storage::kLarge) {
    const unsigned int size = m_size;
    const unsigned int asciiPrefix = m_asciiPrefix;
    if (size != 0) std::memcpy(data, m_data, size);
    release();
    m_size = size;
    m_asciiPrefix = asciiPrefix;
  }
  m_data = data;
  m_capacity = count;
  m_storage = isLarge ? Storage::kLarge : Storage::kArray;
  return true;
}

void DataBuffer::expectMore(std::uint64_t count) {
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
  if (m_storage == Storage::kArray) delete[] m_data;
  if (m_storage == Storage::kLarge) std::free(m_data);
  m_data = nullptr;
  m_size = m_capacity = m_asciiPrefix = 0;
  m_storage = Storage::kArray;
}

void DataBuffer::borrowData(const unsigned char* data, unsigned int count) {
  release();
  m_data = const_cast<unsigned char*>(data);  // never written through: see m_capacity
  m_size = m_capacity = count;
  m_storage = Storage::kBorrowed;
}

void DataBuffer::takeData(unsigned char* data, unsigned int count) {
  if (data != m_data || m_storage != Storage::kArray) release();
  m_data = data;
  m_size = m_capacity = count;
  m_asciiPrefix = 0;
}

void DataBuffer::drop_non_usascii() {
  const auto isHigh = [](unsigned char byte) { return byte >= 0x80; };
  const bool allAscii =
      std::find_if(m_data + m_asciiPrefix, m_data + m_size, isHigh) == m_data + m_size;
  if (!allAscii) {
    if (m_storage == Storage::kBorrowed && !grow(0)) return;
    const unsigned char* end = std::remove_if(m_data + m_asciiPrefix, m_data + m_size, isHigh);
    m_size = static_cast<unsigned int>(end - m_data);
  }
  m_asciiPrefix = m_size;
}

void DataBuffer::clear() {
  if (m_storage == Storage::kBorrowed) release();
  m_size = m_asciiPrefix = 0;
  m_failed = false;
}

void DataBuffer::truncate(unsigned int size) {
  m_size = std::min(m_size, size);
  m_asciiPrefix = std::min(m_asciiPrefix, size);
  if (m_storage == Storage::kBorrowed) m_capacity = m_size;
}
