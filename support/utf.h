// Scalar values in UTF-8 and UTF-16, one at a time.
#ifndef SUPPORT_UTF_H_
#define SUPPORT_UTF_H_

#include <cstddef>
#include <cstdint>

constexpr std::uint32_t kReplacementCharacter = 0xFFFD;

constexpr bool isHighSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xD800; }
constexpr bool isLowSurrogate(std::uint32_t unit) { return (unit & 0xFFFFFC00) == 0xDC00; }
constexpr bool isSurrogate(std::uint32_t unit) { return (unit & 0xFFFFF800) == 0xD800; }
constexpr std::uint32_t joinSurrogates(std::uint32_t high, std::uint32_t low) {
  return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}
// The two halves of a scalar value from U+10000 up.
constexpr std::uint32_t highSurrogateOf(std::uint32_t scalar) { return 0xD7C0 + (scalar >> 10); }
constexpr std::uint32_t lowSurrogateOf(std::uint32_t scalar) { return 0xDC00 | (scalar & 0x3FF); }

constexpr bool isScalarValue(std::uint32_t value) {
  return value <= 0x10FFFF && !isSurrogate(value);
}

constexpr unsigned char continuationByte(std::uint32_t bits) {
  return static_cast<unsigned char>(0x80 | (bits & 0x3F));
}
// Writes any UTF-16 unit in three bytes, overlong below U+0800, and returns their end.
constexpr unsigned char* writeThreeByteForm(unsigned char* dest, std::uint32_t unit) {
  *dest++ = static_cast<unsigned char>(0xE0 | (unit >> 12));
  *dest++ = continuationByte(unit >> 6);
  *dest++ = continuationByte(unit);
  return dest;
}
// Writes the UTF-8 form of a scalar value, or the three-byte form of a surrogate: 1 to 4 bytes.
// Returns its end.
constexpr unsigned char* writeUtf8(unsigned char* dest, std::uint32_t scalar) {
  if (scalar >= 0x800 && scalar < 0x10000) return writeThreeByteForm(dest, scalar);
  if (scalar < 0x80) {
    *dest++ = static_cast<unsigned char>(scalar);
  } else if (scalar < 0x800) {
    *dest++ = static_cast<unsigned char>(0xC0 | (scalar >> 6));
    *dest++ = continuationByte(scalar);
  } else {
    *dest++ = static_cast<unsigned char>(0xF0 | (scalar >> 18));
    *dest++ = continuationByte(scalar >> 12);
    *dest++ = continuationByte(scalar >> 6);
    *dest++ = continuationByte(scalar);
  }
  return dest;
}

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

#endif  // SUPPORT_UTF_H_
