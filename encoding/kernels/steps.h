// The kernels' work on one character, for the scalar loops and for the ends of the vector loops.
//
// Each step treats the character at in, moves both pointers and returns true, or leaves them alone
// and returns false when the kernel has to stop there. It may write kMaxStep bytes and expects in
// to be below inEnd. Everything here has internal linkage; see lanes.h.
#ifndef ENCODING_KERNELS_STEPS_H_
#define ENCODING_KERNELS_STEPS_H_

#include <cstddef>
#include <cstdint>

#include "encoding/kernels/kernels.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): see above

using Byte = unsigned char;

constexpr std::ptrdiff_t kMaxStep = 4;

inline std::uint16_t getUnit(const Byte* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }

inline std::uint32_t getScalar(const Byte* p) {
  return getUnit(p) | static_cast<std::uint32_t>(getUnit(p + 2)) << 16;
}

inline void putUnit(Byte*& out, unsigned int unit) {
  out[0] = static_cast<Byte>(unit);
  out[1] = static_cast<Byte>(unit >> 8);
  out += 2;
}

inline bool isContinuation(unsigned int byte) { return (byte & 0xC0) == 0x80; }
inline bool isSurrogate(unsigned int scalar) { return (scalar & ~0x7FFu) == 0xD800; }
inline bool isHighSurrogate(unsigned int unit) { return (unit & 0xFC00) == 0xD800; }
inline bool isLowSurrogate(unsigned int unit) { return (unit & 0xFC00) == 0xDC00; }

// ---- Unicode's own encodings: a step reads a scalar value and writes it. ----

// Each reader returns the length of the character at in, and 0 where a kernel has to stop.

inline unsigned int readUtf8(const Byte* in, const Byte* inEnd, unsigned int& scalar) {
  const unsigned int lead = *in;
  const auto left = inEnd - in;
  if (lead < 0x80) {
    scalar = lead;
    return 1;
  }
  if (lead < 0xC2 || left < 2 || !isContinuation(in[1])) return 0;
  const unsigned int second = in[1] & 0x3Fu;
  if (lead < 0xE0) {
    scalar = (lead & 0x1F) << 6 | second;
    return 2;
  }
  if (left < 3 || !isContinuation(in[2])) return 0;
  const unsigned int third = in[2] & 0x3Fu;
  if (lead < 0xF0) {
    scalar = (lead & 0x0F) << 12 | second << 6 | third;
    return scalar < 0x800 || isSurrogate(scalar) ? 0 : 3;
  }
  if (left < 4 || !isContinuation(in[3])) return 0;
  scalar = (lead & 0x0F) << 18 | second << 12 | third << 6 | (in[3] & 0x3Fu);
  return scalar < 0x10000 || scalar > 0x10FFFF ? 0 : 4;
}

inline unsigned int readUtf16(const Byte* in, const Byte* inEnd, unsigned int& scalar) {
  if (inEnd - in < 2) return 0;
  scalar = getUnit(in);
  if (!isSurrogate(scalar)) return 2;
  if (inEnd - in < 4 || !isHighSurrogate(scalar) || !isLowSurrogate(getUnit(in + 2))) return 0;
  scalar = 0x10000 + ((scalar & 0x3FF) << 10) + (getUnit(in + 2) & 0x3FFu);
  return 4;
}

inline unsigned int readUtf16NotZero(const Byte* in, const Byte* inEnd, unsigned int& scalar) {
  const unsigned int length = readUtf16(in, inEnd, scalar);
  return length != 0 && scalar != 0 ? length : 0;
}

inline unsigned int readUtf32(const Byte* in, const Byte* inEnd, unsigned int& scalar) {
  if (inEnd - in < 4) return 0;
  scalar = getScalar(in);
  return isSurrogate(scalar) || scalar > 0x10FFFF ? 0 : 4;
}

inline void putUtf8(Byte*& out, unsigned int scalar) {
  const auto put = [&](unsigned int byte) { *out++ = static_cast<Byte>(byte); };
  if (scalar < 0x80) {
    put(scalar);
    return;
  }
  if (scalar < 0x800) {
    put(0xC0 | scalar >> 6);
  } else {
    if (scalar < 0x10000) {
      put(0xE0 | scalar >> 12);
    } else {
      put(0xF0 | scalar >> 18);
      put(0x80 | (scalar >> 12 & 0x3F));
    }
    put(0x80 | (scalar >> 6 & 0x3F));
  }
  put(0x80 | (scalar & 0x3F));
}

inline void putUtf16(Byte*& out, unsigned int scalar) {
  if (scalar < 0x10000) {
    putUnit(out, scalar);
  } else {
    putUnit(out, 0xD7C0 + (scalar >> 10));
    putUnit(out, 0xDC00 | (scalar & 0x3FF));
  }
}

inline void putUtf32(Byte*& out, unsigned int scalar) {
  putUnit(out, scalar & 0xFFFF);
  putUnit(out, scalar >> 16);
}

template <auto read, auto put>
inline bool stepScalar(const Byte*& in, const Byte* inEnd, Byte*& out) {
  unsigned int scalar = 0;
  const unsigned int length = read(in, inEnd, scalar);
  if (length == 0) return false;
  put(out, scalar);
  in += length;
  return true;
}

// Runs of ASCII do not wait for the length of each character.
template <auto put>
inline bool stepUtf8(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (*in >= 0x80) return stepScalar<readUtf8, put>(in, inEnd, out);
  put(out, *in++);
  return true;
}

constexpr auto stepUtf8ToUtf16 = stepUtf8<putUtf16>;
constexpr auto stepUtf16ToUtf8 = stepScalar<readUtf16NotZero, putUtf8>;
constexpr auto stepUtf32ToUtf16 = stepScalar<readUtf32, putUtf16>;
constexpr auto stepUtf16ToUtf32 = stepScalar<readUtf16, putUtf32>;
constexpr auto stepUtf8ToUtf32 = stepUtf8<putUtf32>;
constexpr auto stepUtf32ToUtf8 = stepScalar<readUtf32, putUtf8>;

inline bool stepSwapUtf16(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  out[0] = in[1];
  out[1] = in[0];
  in += 2;
  out += 2;
  return true;
}

// ---- Table-driven code pages. ----

inline bool stepSingleByteToUtf16(const SingleByteDecoder& table, const Byte*& in, const Byte*,
                                  Byte*& out) {
  const unsigned int unit = table.units[*in];
  if (unit == 0 && *in != 0) return false;
  putUnit(out, unit);
  ++in;
  return true;
}

inline bool stepSingleByteToUtf8(const SingleByteDecoder& table, const Byte*& in, const Byte*,
                                 Byte*& out) {
  const std::uint32_t sequence = table.utf8[*in];
  if (sequence == 0) return false;
  // All four, so that they become one store.
  out[0] = static_cast<Byte>(sequence);
  out[1] = static_cast<Byte>(sequence >> 8);
  out[2] = static_cast<Byte>(sequence >> 16);
  out[3] = static_cast<Byte>(sequence >> 24);
  out += sequence >> 24;
  ++in;
  return true;
}

inline bool stepMapBytes(const ByteMap& table, const Byte*& in, const Byte*, Byte*& out) {
  const Byte byte = table.bytes[*in];
  if (byte == 0 && *in != 0) return false;
  *out++ = byte;
  ++in;
  return true;
}

inline bool stepUtf16ToSingleByte(const SingleByteEncoder& table, const Byte*& in,
                                  const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  const unsigned int unit = getUnit(in);
  const Byte byte = table.bytes[unit];
  if (byte == 0 && unit != 0) return false;
  *out++ = byte;
  in += 2;
  return true;
}

inline bool stepDoubleByteToUtf16(const DoubleByteDecoder& table, const Byte*& in,
                                  const Byte* inEnd, Byte*& out) {
  if (*in < 0x80) {
    putUnit(out, *in++);
    return true;
  }
  if (inEnd - in > 1 && table.isLead(*in)) {
    const unsigned int unit = table.units[getUnit(in)];
    if (unit != 0) {
      putUnit(out, unit);
      in += 2;
      return true;
    }
  }
  const unsigned int unit = table.singles[*in];
  if (unit == 0) return false;
  putUnit(out, unit);
  ++in;
  return true;
}

inline bool stepUtf16ToDoubleByte(const DoubleByteEncoder& table, const Byte*& in,
                                  const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  const unsigned int unit = getUnit(in);
  const unsigned int code = table.codes[unit];
  if (code == 0 && unit != 0) return false;
  // Which of the two lengths comes next is hard to foretell: no branch.
  out[0] = static_cast<Byte>(code);
  out[1] = static_cast<Byte>(code >> 8);
  out += code > 0xFF ? 2 : 1;
  in += 2;
  return true;
}

// The kernel that repeats a step; a table comes first.
template <auto step, class... Table>
KernelResult repeat(const Table&... table, const Byte* in, const Byte* inEnd, Byte* out,
                    Byte* outEnd) {
  while (in < inEnd && outEnd - out >= kMaxStep && step(table..., in, inEnd, out)) {
  }
  return {in, out};
}

// ---- Shifts. ----

constexpr Byte kShiftOut = 0x0E, kShiftIn = 0x0F, kEscape = 0x1B;

inline bool stepUnshiftPairs(bool& inPairs, const Byte*& in, const Byte* inEnd, Byte*& out) {
  const Byte first = *in;
  if ((first | 1) == kShiftIn) {
    inPairs = first == kShiftOut;
    ++in;
    return true;
  }
  if (!inPairs) {
    if (first >= 0x80 || first == kEscape) return false;
    *out++ = first;
    ++in;
    return true;
  }
  const auto isWithin = [](Byte byte, Byte from) { return byte >= from && byte <= 0x7E; };
  if (inEnd - in < 2 || !(isWithin(first, 0x30) || first == 0x21) || !isWithin(in[1], 0x21)) {
    return false;
  }
  out[0] = first | 0x80;
  out[1] = in[1] | 0x80;
  in += 2;
  out += 2;
  return true;
}

inline KernelResult unshiftPairsSteps(bool& inPairs, const Byte* in, const Byte* inEnd, Byte* out,
                                      Byte* outEnd) {
  while (in < inEnd && outEnd - out >= kMaxStep && stepUnshiftPairs(inPairs, in, inEnd, out)) {
  }
  return {in, out};
}

// ---- Read-only kernels. ----

// Up to where characters can be read.
template <auto read>
const Byte* scan(const Byte* in, const Byte* inEnd) {
  unsigned int scalar = 0;
  while (in < inEnd) {
    const unsigned int length = read(in, inEnd, scalar);
    if (length == 0) break;
    in += length;
  }
  return in;
}

template <class Value, auto get>
std::uint64_t countValues(const Byte* in, const Byte* inEnd, Value value) {
  constexpr std::ptrdiff_t kSize = sizeof(Value);
  std::uint64_t count = 0;
  for (; inEnd - in >= kSize; in += kSize) count += get(in) == value ? 1 : 0;
  return count;
}

inline std::uint8_t getByte(const Byte* p) { return *p; }

inline std::uint64_t utf8LengthSteps(const Byte* in, const Byte* inEnd) {
  std::uint64_t length = 0;
  for (; inEnd - in >= 2; in += 2) {
    const unsigned int unit = getUnit(in);
    length += unit < 0x80 ? 1 : unit < 0x800 || isSurrogate(unit) ? 2 : 3;
  }
  return length;
}

constexpr auto countByteSteps = countValues<std::uint8_t, getByte>;
constexpr auto countUnitSteps = countValues<std::uint16_t, getUnit>;
constexpr auto countScalarSteps = countValues<std::uint32_t, getScalar>;

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_STEPS_H_
