// Where the interfaces have texts written.
#ifndef INTERFACE_OUTPUTS_H_
#define INTERFACE_OUTPUTS_H_

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "encoding/output.h"
#include "support/huge_pages.h"

// Appends to a string of bytes or of UTF-16 units. Text is written behind the end of the string, in
// the room that it has, and then becomes a part of it: so it is neither copied nor filled with
// zeros first.
template <typename Text>
class TextOutput final : public Output {
 public:
  explicit TextOutput(Text& text) : m_text(text) { useRoom(text.size() * sizeof(Unit)); }

  void expect(std::uint64_t count) override {
    if (room() < count) grow(0, count);
  }

  // Makes what was written a part of the string; half a unit at the end stays behind it.
  bool flush() {
    setSize(written() / sizeof(Unit));
    return true;
  }

 private:
  using Unit = typename Text::value_type;

  unsigned char* begin() { return reinterpret_cast<unsigned char*>(m_text.data()); }
  std::size_t written() { return static_cast<std::size_t>(next - begin()); }
  void useRoom(std::size_t bytes) {
    next = begin() + bytes;
    end = begin() + m_text.capacity() * sizeof(Unit);
  }
  void setSize(std::size_t size) {
#if defined(_LIBCPP_VERSION)
    m_text.__resize_default_init(size);  // older ones of this library have no other call for it
#else
    m_text.resize_and_overwrite(size, [size](Unit*, std::size_t) { return size; });
#endif
  }

  bool grow(std::size_t count, std::uint64_t expected) override {
    const std::size_t bytes = written();
    const unsigned char half = bytes % sizeof(Unit) != 0 ? next[-1] : 0;
    flush();
    const std::size_t least = m_text.size() + count / sizeof(Unit) + 2;
    const std::uint64_t wanted = std::max<std::uint64_t>(m_text.size() + expected / sizeof(Unit),
                                                         m_text.size() + m_text.size() / 2);
    if (!reserve(std::max<std::uint64_t>(wanted, least)) && !reserve(least)) return false;
    useRoom(bytes);
    preferHugePages(next, room());
    if (bytes % sizeof(Unit) != 0) next[-1] = half;
    return true;
  }
  bool reserve(std::uint64_t capacity) {
    try {
      m_text.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(capacity, SIZE_MAX)));
    } catch (const std::bad_alloc&) {
      return false;
    } catch (const std::length_error&) {
      return false;
    }
    return true;
  }

  Text& m_text;
};

// Fills a place of a fixed size. The kernels ask for more room than they use, so the last bytes go
// by way of a small chunk.
class SpanOutput final : public Output {
 public:
  SpanOutput(unsigned char* begin, std::size_t size) : m_begin(begin), m_end(begin + size) {
    next = begin;
    end = m_end;
  }

  // Hands over what was written; false when it was too much.
  bool flush() {
    if (m_isDirect) {
      m_begin = next;
      m_isDirect = false;
    } else {
      const auto count = static_cast<std::size_t>(next - m_chunk);
      if (count > static_cast<std::size_t>(m_end - m_begin)) {
        isFull = true;
        return false;
      }
      std::memcpy(m_begin, m_chunk, count);
      m_begin += count;
    }
    next = m_chunk;
    end = m_chunk + sizeof m_chunk;
    return true;
  }
  // The end of what was handed over.
  unsigned char* written() const { return m_begin; }

 private:
  bool grow(std::size_t /*count*/, std::uint64_t /*expected*/) override {
    return !isFull && flush();
  }

  unsigned char* m_begin;  // of the room that is left, once the chunk is in use
  unsigned char* const m_end;
  bool m_isDirect = true;
  unsigned char m_chunk[kMaxRequest];
};

// A block from malloc, of any size.
class BlockOutput final : public Output {
 public:
  ~BlockOutput() { std::free(m_block); }

  void expect(std::uint64_t count) override {
    if (room() < count) grow(0, count);
  }

  // Nothing waits to be written.
  bool flush() { return true; }

  std::size_t written() const { return static_cast<std::size_t>(next - m_block); }
  // Takes back what was written behind a size.
  void truncate(std::size_t size) { next = m_block + size; }

  // The block with what was written, for the caller to free; null for nothing.
  unsigned char* release(std::size_t& size) {
    size = static_cast<std::size_t>(next - m_block);
    if (size == 0) return nullptr;
    unsigned char* const block = m_block;
    m_block = next = end = nullptr;
    return block;
  }

 private:
  bool grow(std::size_t count, std::uint64_t expected) override {
    const auto size = static_cast<std::size_t>(next - m_block);
    const auto capacity = static_cast<std::size_t>(end - m_block);
    if (reallocate(size, std::max<std::uint64_t>(size + expected, capacity + capacity / 2))) {
      return true;
    }
    return reallocate(size, size + count);
  }
  bool reallocate(std::size_t size, std::uint64_t wanted) {
    const auto capacity = static_cast<std::size_t>(wanted);
    if (capacity != wanted) return false;  // more than there are addresses
    void* const block = std::realloc(m_block, capacity);
    if (block == nullptr) return false;
    m_block = static_cast<unsigned char*>(block);
    next = m_block + size;
    end = m_block + capacity;
    preferHugePages(next, room());
    return true;
  }

  unsigned char* m_block = nullptr;
};

#endif  // INTERFACE_OUTPUTS_H_
