// Output: where a conversion writes.
#ifndef ENCODING_OUTPUT_H_
#define ENCODING_OUTPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "support/data_buffer.h"

// A window of writable bytes, from next to end, and a way to get another one when it is used up.
// Loops write through the window; a virtual call is made only where it is too small. One thread
// uses an object at a time. Nothing throws.
class Output {
 public:
  unsigned char* next = nullptr;  // where the next byte goes
  unsigned char* end = nullptr;
  bool isFull = false;  // there is no room although memory is not short

  Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  std::size_t room() const { return static_cast<std::size_t>(end - next); }

  // Makes room for count bytes, which is at most kMaxRequest. expected is a guess at all that is
  // still to be written; 0 for none. False when there is no room to be had: memory is short, or the
  // place is full.
  static constexpr std::size_t kMaxRequest = 1024;
  bool require(std::size_t count, std::uint64_t expected = 0) {
    return room() >= count || grow(count, std::max<std::uint64_t>(expected, count));
  }

  // A hint that about so many bytes will follow.
  virtual void expect(std::uint64_t /*count*/) {}

  // Any number of bytes; false, with a part of them written, when there is no room.
  bool append(const void* bytes, std::size_t count) {
    const auto* from = static_cast<const unsigned char*>(bytes);
    while (count > room()) {
      const std::size_t part = room();
      if (part != 0) std::memcpy(next, from, part);
      next += part;
      from += part;
      count -= part;
      if (!grow(1, count)) return false;
    }
    if (count != 0) std::memcpy(next, from, count);
    next += count;
    return true;
  }

 protected:
  ~Output() = default;
  // Takes what was written up to next, and makes a new window of count bytes or more.
  virtual bool grow(std::size_t count, std::uint64_t expected) = 0;
};

// Writes behind the content of a DataBuffer. When there is no room, the buffer has a failure
// latched, or it holds 4 GiB but for less than was asked for.
class DataBufferOutput final : public Output {
 public:
  explicit DataBufferOutput(DataBuffer& buffer) : m_buffer(buffer) {}
  ~DataBufferOutput() { content(); }

  // The buffer with everything that was written; it may be changed until the next write.
  DataBuffer& content() {
    m_buffer.commitTail(static_cast<unsigned int>(next - m_begin));
    next = end = m_begin = nullptr;
    return m_buffer;
  }

 private:
  bool grow(std::size_t count, std::uint64_t expected) override {
    content();
    const std::uint64_t left = 0xFFFFFFFFu - m_buffer.getSize();
    const auto wanted = static_cast<unsigned int>(std::min(expected, left));
    if (wanted < count) return false;
    if (wanted > count) m_buffer.expect(wanted);
    m_begin = next = m_buffer.reserveTail(static_cast<unsigned int>(count));
    if (next == nullptr) return false;
    end = next + m_buffer.getTailRoom();
    return true;
  }

  DataBuffer& m_buffer;
  unsigned char* m_begin = nullptr;  // of what is not yet content
};

#endif  // ENCODING_OUTPUT_H_
