// What the loops of _zvUtf share: chunked output, tests of eight bytes at once, and the decoder of
// one UTF-8 sequence.
#ifndef SUPPORT_UTF_LOOPS_H_
#define SUPPORT_UTF_LOOPS_H_

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "support/data_buffer.h"

constexpr std::uint32_t kReplacementCharacter = 0xFFFD;

constexpr bool isHighSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xD800; }
constexpr bool isLowSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xDC00; }
constexpr bool isSurrogate(std::uint32_t unit) { return (unit & 0xFFFFF800) == 0xD800; }
constexpr std::uint32_t joinSurrogates(std::uint32_t high, std::uint32_t low) {
  return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}

constexpr bool isScalarValue(std::uint32_t value) {
  return value <= 0x10FFFF && !isSurrogate(value);
}

// Writes the UTF-8 form of a scalar value, 1 to 4 bytes, and returns its end.
constexpr unsigned char* writeUtf8(unsigned char* dest, std::uint32_t scalar) {
  const auto last = [](std::uint32_t bits) {
    return static_cast<unsigned char>(0x80 | (bits & 0x3F));
  };
  if (scalar < 0x80) {
    *dest++ = static_cast<unsigned char>(scalar);
  } else if (scalar < 0x800) {
    *dest++ = static_cast<unsigned char>(0xC0 | (scalar >> 6));
    *dest++ = last(scalar);
  } else if (scalar < 0x10000) {
    *dest++ = static_cast<unsigned char>(0xE0 | (scalar >> 12));
    *dest++ = last(scalar >> 6);
    *dest++ = last(scalar);
  } else {
    *dest++ = static_cast<unsigned char>(0xF0 | (scalar >> 18));
    *dest++ = last(scalar >> 12);
    *dest++ = last(scalar >> 6);
    *dest++ = last(scalar);
  }
  return dest;
}

// Runs a loop over [p, end) that appends to out, so that it can write without testing for room and
// a large input takes no more memory than its output. loop(p, stop, dest) converts from p, which it
// moves on, until p has reached stop or passed it by a character, writes at dest and returns the
// end of what it wrote. It writes at most WorstFactor bytes for each input byte up to stop, and
// kWriteSlack more. False when there is no memory, with what was converted until then in out.
constexpr unsigned int kWriteSlack = 32;
template <unsigned int WorstFactor, typename Loop>
bool writeInChunks(const unsigned char* p, const unsigned char* end, DataBuffer& out, Loop loop) {
  constexpr std::ptrdiff_t kChunk = 16384;
  while (p < end && out.getSize() <= 0xFFFFFFFFu - kChunk * WorstFactor - kWriteSlack) {
    const auto chunk = static_cast<unsigned int>(std::min(end - p, kChunk));
    unsigned char* const dest = out.reserveTail(chunk * WorstFactor + kWriteSlack);
    if (dest == nullptr) return false;
    out.commitTail(static_cast<unsigned int>(loop(p, p + chunk, dest) - dest));
  }
  // The room for a chunk at its worst would pass the greatest size, but what is written may not.
  while (p < end) {
    constexpr std::ptrdiff_t kBytes = 64;
    unsigned char some[kBytes * WorstFactor + kWriteSlack];
    const unsigned char* const someEnd = loop(p, p + std::min(end - p, kBytes), some);
    if (!out.append(some, static_cast<unsigned int>(someEnd - some))) return false;
  }
  return true;
}

// Several bytes as one number, the first in its low byte on every host. Loops also write more bytes
// than they keep, where that saves a decision.
template <typename Number>
Number loadLow(const unsigned char* p) {
  Number number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, p, sizeof number);  // the loop below means the same, and compiles worse
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) number |= Number{p[i]} << (8 * i);
  }
  return number;
}
template <typename Number>
void storeLow(unsigned char* dest, Number number) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(dest, &number, sizeof number);
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) {
      dest[i] = static_cast<unsigned char>(number >> (8 * i));
    }
  }
}

inline std::uint64_t loadEight(const unsigned char* p) { return loadLow<std::uint64_t>(p); }
constexpr bool areAscii(std::uint64_t eight) { return (eight & 0x8080808080808080u) == 0; }

// One piece of UTF-8 text.
struct Utf8Sequence {
  std::uint32_t value;  // a scalar value, or a surrogate from its three-byte form
  unsigned int length;  // bytes of the sequence or of the invalid piece, at least 1
  bool valid;
};

inline bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// The length of the invalid piece at p; the bytes there must not be a whole sequence.
inline unsigned int invalidLength(const unsigned char* p, std::size_t left) {
  const unsigned char lead = p[0];
  if (lead < 0xC2 || lead > 0xF4 || left < 2) return 1;
  // What may follow the lead byte is narrower where overlong forms and values above U+10FFFF are.
  const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char highest = lead == 0xF4 ? 0x8F : 0xBF;
  if (p[1] < lowest || p[1] > highest) return 1;
  unsigned int length = 2;
  while (length < left && isContinuation(p[length])) ++length;
  return length;
}

// Decodes the sequence at p, of which left (>= 1) bytes may be read. What is invalid, and how long
// an invalid piece is, is said in zv_utf.h.
inline Utf8Sequence decodeUtf8(const unsigned char* p, std::size_t left) {
  const unsigned char lead = p[0];
  if (lead < 0x80) return {lead, 1, true};
  if (lead >= 0xE0 && lead < 0xF0) {
    if (left >= 3 && isContinuation(p[1]) && isContinuation(p[2])) {
      const std::uint32_t value = ((lead & 0xFu) << 12) | ((p[1] & 0x3Fu) << 6) | (p[2] & 0x3Fu);
      if (value >= 0x800) return {value, 3, true};
    }
  } else if (lead < 0xE0) {
    if (lead >= 0xC2 && left >= 2 && isContinuation(p[1])) {
      return {((lead & 0x1Fu) << 6) | (p[1] & 0x3Fu), 2, true};
    }
  } else if (lead < 0xF8 && left >= 4 && isContinuation(p[1]) && isContinuation(p[2]) &&
             isContinuation(p[3])) {
    const std::uint32_t value =
        ((lead & 7u) << 18) | ((p[1] & 0x3Fu) << 12) | ((p[2] & 0x3Fu) << 6) | (p[3] & 0x3Fu);
    if (value >= 0x10000 && value <= 0x10FFFF) return {value, 4, true};
  }
  return {0, invalidLength(p, left), false};
}

// As decodeUtf8, but for text that is to become scalar values: two surrogate forms that make a pair
// are one character of 6 bytes, and an unpaired one is invalid.
inline Utf8Sequence decodeScalar(const unsigned char* p, std::size_t left) {
  const Utf8Sequence first = decodeUtf8(p, left);
  if (!first.valid || !isSurrogate(first.value)) return first;
  if (isHighSurrogate(first.value) && left > first.length) {
    const Utf8Sequence second = decodeUtf8(p + first.length, left - first.length);
    if (second.valid && isLowSurrogate(second.value)) {
      return {joinSurrogates(first.value, second.value), first.length + second.length, true};
    }
  }
  return {0, first.length, false};
}

#endif  // SUPPORT_UTF_LOOPS_H_
