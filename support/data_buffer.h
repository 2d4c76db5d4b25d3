// DataBuffer: the growable byte buffer that every conversion appends to.
#ifndef SUPPORT_DATA_BUFFER_H_
#define SUPPORT_DATA_BUFFER_H_

#include <cstdint>
#include <cstring>

// Sizes are in bytes, unsigned 32-bit: a buffer holds at most 4 GiB - 1. Nothing here throws. A
// request that cannot be met, because memory is short or because the size has no 32-bit
// representation, leaves the content as it was, returns false and is latched in hasFailed(), so
// that a loop may append without testing and its caller test once.
//
// One thread uses a buffer at a time.
class DataBuffer {
 public:
  DataBuffer() noexcept = default;
  // Frees owned storage (own or adopted); never touches borrowed memory.
  ~DataBuffer() {
    if (m_data != nullptr && m_storage != Storage::kLent) release();
  }
  DataBuffer(const DataBuffer&) = delete;
  DataBuffer& operator=(const DataBuffer&) = delete;

  // Copies count bytes to the end. The bytes may lie in this very buffer. A count of 0 succeeds,
  // with any pointer.
  bool append(const void* data, unsigned int count) {
    if (count <= m_capacity - m_size) {
      if (count != 0) std::memcpy(m_data + m_size, data, count);
      m_size += count;
      return true;
    }
    return appendSlow(data, count);
  }
  bool append(const DataBuffer& other) { return append(other.m_data, other.m_size); }
  void appendChar(unsigned char byte) {
    if (m_size < m_capacity) {
      m_data[m_size++] = byte;
    } else {
      appendSlow(&byte, 1);
    }
  }

  // Makes the buffer a view of count bytes that the caller keeps alive and unchanged; what it held
  // is released. The view is never written: a later change of the buffer copies the bytes first.
  void borrowData(const unsigned char* data, unsigned int count);

  // Makes the buffer, which owns nothing yet, write to memory that the caller keeps for as long as
  // the buffer is there. What does not fit moves to storage of its own.
  void lendStorage(unsigned char* storage, unsigned int capacity) {
    m_data = storage;
    m_size = m_asciiPrefix = 0;
    m_capacity = capacity;
    m_storage = Storage::kLent;
  }

  // Adopts an array made by new[] (zvNewUnsignedChar) with count valid bytes; what the buffer held
  // is released, and the buffer frees the array with delete[].
  void takeData(unsigned char* data, unsigned int count);

  // Makes room for count more bytes beyond the present size, so that appending them does not
  // reallocate; size and content stay. Growth is geometric, whatever the count.
  bool ensureBuffer(unsigned int count) { return count <= m_capacity - m_size || grow(count); }

  // As ensureBuffer, for a count that is only a guess at what will be appended: where it cannot be
  // had nothing changes, and that is no failure.
  void expect(std::uint64_t count) {
    if (count > m_capacity - m_size) expectMore(count);
  }

  // Removes every byte of 0x80 and above in place; the others keep their order.
  void drop_non_usascii();

  // Size 0, failure forgotten; owned storage is kept for reuse.
  void clear();

  unsigned int getSize() const { return m_size; }
  // The first byte, or null when there is no storage. Valid until the buffer is changed.
  const unsigned char* getData2() const { return m_data; }
  // The byte at index, or null when index is not below the size.
  const unsigned char* getDataAt2(unsigned int index) const {
    return index < m_size ? m_data + index : nullptr;
  }

  // True once a request could not be met since construction or the last clear().
  bool hasFailed() const { return m_failed; }
  // For code that finds out on its own that output is missing.
  void latchFailure() { m_failed = true; }

  // For loops that write by pointers: space behind the content. reserveTail returns a pointer to at
  // least count writable bytes, of which there are getTailRoom(), or null (latched); commitTail
  // makes the first count of them content. truncate cuts the content to size bytes, which must not
  // exceed getSize().
  unsigned char* reserveTail(unsigned int count) {
    return ensureBuffer(count) ? m_data + m_size : nullptr;
  }
  unsigned int getTailRoom() const { return m_capacity - m_size; }
  void commitTail(unsigned int count) { m_size += count; }
  void truncate(unsigned int size);

 private:
  // Whose memory m_data is. Large storage comes from malloc, because realloc can grow it in place,
  // or by new addresses for the same pages: nothing is copied, and old and new storage are never
  // there both at once.
  enum class Storage : unsigned char { kArray, kLarge, kBorrowed, kLent };

  bool appendSlow(const void* data, unsigned int count);
  void expectMore(std::uint64_t count);
  bool grow(unsigned int count);
  bool moveToCapacity(std::uint64_t capacity);
  void release();

  unsigned char* m_data = nullptr;
  unsigned int m_size = 0;
  // Writable bytes at m_data, never below m_size; for a borrowed view equal to m_size, so that
  // every change takes the slow path, which copies.
  unsigned int m_capacity = 0;
  // The first bytes known to be below 0x80, so that repeated calls of drop_non_usascii stay linear
  // in what was appended between them.
  unsigned int m_asciiPrefix = 0;
  Storage m_storage = Storage::kArray;
  bool m_failed = false;
};

#endif  // SUPPORT_DATA_BUFFER_H_
