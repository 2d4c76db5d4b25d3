// Where the interfaces have texts written.
#ifndef INTERFACE_OUTPUTS_H_
#define INTERFACE_OUTPUTS_H_

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "encoding/output.h"

// Appends to a string of bytes or of UTF-16 units, by way of a chunk that stays in the cache: a
// string has no room to write to that it would not fill with zeros first.
template <typename Text>
class TextOutput final : public Output {
 public:
  explicit TextOutput(Text& text) : m_text(text) {
    next = m_chunk;
    end = m_chunk + sizeof m_chunk;
  }

  // Hands over what was written; false when memory is short.
  bool flush(std::uint64_t expected = 0) {
    constexpr std::size_t kUnit = sizeof(typename Text::value_type);
    const std::size_t bytes = static_cast<std::size_t>(next - m_chunk) / kUnit * kUnit;
    const std::size_t count = bytes / kUnit;
    try {
      if (m_text.capacity() - m_text.size() < count) {
        const std::size_t more =
            std::max<std::uint64_t>(count + expected / kUnit, m_text.size() / 2);
        m_text.reserve(m_text.size() + more);
      }
      m_text.append(reinterpret_cast<const typename Text::value_type*>(m_chunk), count);
    } catch (const std::bad_alloc&) {
      return false;
    } catch (const std::length_error&) {
      return false;
    }
    std::memmove(m_chunk, m_chunk + bytes, static_cast<std::size_t>(next - m_chunk) - bytes);
    next -= bytes;
    return true;
  }

 private:
  bool grow(std::size_t /*count*/, std::uint64_t expected) override { return flush(expected); }

  Text& m_text;
  alignas(16) unsigned char m_chunk[16 * 1024];
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

  // Nothing waits to be written.
  bool flush() { return true; }

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
  bool reallocate(std::size_t size, std::uint64_t capacity) {
    void* const block = std::realloc(m_block, capacity);
    if (block == nullptr) return false;
    m_block = static_cast<unsigned char*>(block);
    next = m_block + size;
    end = m_block + capacity;
    return true;
  }

  unsigned char* m_block = nullptr;
};

#endif  // INTERFACE_OUTPUTS_H_
