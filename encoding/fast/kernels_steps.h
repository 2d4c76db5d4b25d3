// The kernels' work on one character, for the scalar loops and for the ends of the vector loops.
//
// Each step treats the character at in, moves both pointers and returns true, or leaves them alone
// and returns false when the kernel has to stop there. It may write kMaxStep bytes and expects in
// to be below inEnd. Everything here has internal linkage, because each source file is compiled for
// a processor of its own.
#ifndef ENCODING_FAST_KERNELS_STEPS_H_
#define ENCODING_FAST_KERNELS_STEPS_H_

#include <cstddef>
#include <cstdint>

#include "encoding/fast/kernels.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): see above

using Byte = unsigned char;

constexpr std::ptrdiff_t kMaxStep = 4;

inline std::uint16_t getUnit(const Byte* p) { return static_cast<std::uint16_t>(p[0] | p[1] << 8); }

inline void putUnit(Byte*& out, unsigned int unit) {
  out[0] = static_cast<Byte>(unit);
  out[1] = static_cast<Byte>(unit >> 8);
  out += 2;
}

inline bool isContinuation(unsigned int byte) { return (byte & 0xC0) == 0x80; }
inline bool isSurrogate(unsigned int unit) { return (unit & 0xF800) == 0xD800; }
inline bool isHighSurrogate(unsigned int unit) { return (unit & 0xFC00) == 0xD800; }
inline bool isLowSurrogate(unsigned int unit) { return (unit & 0xFC00) == 0xDC00; }

inline bool stepAsciiCopy(const Byte*& in, const Byte*, Byte*& out) {
  if (*in >= 0x80) return false;
  *out++ = *in++;
  return true;
}

inline bool stepAsciiToUtf16(const Byte*& in, const Byte*, Byte*& out) {
  if (*in >= 0x80) return false;
  putUnit(out, *in++);
  return true;
}

inline bool stepUtf16ToAscii(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2 || getUnit(in) >= 0x80) return false;
  *out++ = *in;
  in += 2;
  return true;
}

// The second byte decides what Unicode's table of well-formed byte sequences leaves open: overlong
// forms, surrogates and values above 10FFFF.
inline bool stepUtf8ToUtf16(const Byte*& in, const Byte* inEnd, Byte*& out) {
  const unsigned int lead = *in;
  const auto left = inEnd - in;
  if (lead < 0x80) {
    putUnit(out, lead);
    in += 1;
    return true;
  }
  if (lead < 0xC2 || left < 2 || !isContinuation(in[1])) return false;
  const unsigned int second = in[1] & 0x3Fu;
  if (lead < 0xE0) {
    putUnit(out, (lead & 0x1F) << 6 | second);
    in += 2;
    return true;
  }
  if (left < 3 || !isContinuation(in[2])) return false;
  const unsigned int third = in[2] & 0x3Fu;
  if (lead < 0xF0) {
    const unsigned int unit = (lead & 0x0F) << 12 | second << 6 | third;
    if (unit < 0x800 || isSurrogate(unit)) return false;
    putUnit(out, unit);
    in += 3;
    return true;
  }
  if (left < 4 || !isContinuation(in[3])) return false;
  const unsigned int scalar = (lead & 0x0F) << 18 | second << 12 | third << 6 | (in[3] & 0x3Fu);
  if (scalar < 0x10000 || scalar > 0x10FFFF) return false;
  putUnit(out, 0xD7C0 + (scalar >> 10));
  putUnit(out, 0xDC00 | (scalar & 0x3FF));
  in += 4;
  return true;
}

// Writes the form of a unit that is no surrogate.
inline void putUtf8(Byte*& out, unsigned int unit) {
  if (unit < 0x80) {
    *out++ = static_cast<Byte>(unit);
    return;
  }
  if (unit < 0x800) {
    *out++ = static_cast<Byte>(0xC0 | unit >> 6);
  } else {
    *out++ = static_cast<Byte>(0xE0 | unit >> 12);
    *out++ = static_cast<Byte>(0x80 | (unit >> 6 & 0x3F));
  }
  *out++ = static_cast<Byte>(0x80 | (unit & 0x3F));
}

inline bool isPair(const Byte* in, const Byte* inEnd) {
  return inEnd - in >= 4 && isHighSurrogate(getUnit(in)) && isLowSurrogate(getUnit(in + 2));
}

inline unsigned int scalarOfPair(const Byte* in) {
  return 0x10000 + ((getUnit(in) & 0x3FFu) << 10) + (getUnit(in + 2) & 0x3FFu);
}

inline bool stepUtf16ToUtf8(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  const unsigned int unit = getUnit(in);
  if (unit == 0) return false;
  if (!isSurrogate(unit)) {
    putUtf8(out, unit);
    in += 2;
    return true;
  }
  if (!isPair(in, inEnd)) return false;
  const unsigned int scalar = scalarOfPair(in);
  out[0] = static_cast<Byte>(0xF0 | scalar >> 18);
  out[1] = static_cast<Byte>(0x80 | (scalar >> 12 & 0x3F));
  out[2] = static_cast<Byte>(0x80 | (scalar >> 6 & 0x3F));
  out[3] = static_cast<Byte>(0x80 | (scalar & 0x3F));
  in += 4;
  out += 4;
  return true;
}

inline bool stepSwapUtf16(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  out[0] = in[1];
  out[1] = in[0];
  in += 2;
  out += 2;
  return true;
}

inline bool stepUtf32ToUtf16(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 4) return false;
  const unsigned int scalar = getUnit(in) | static_cast<unsigned int>(getUnit(in + 2)) << 16;
  if ((scalar & ~0x7FFu) == 0xD800 || scalar > 0x10FFFF) return false;
  if (scalar < 0x10000) {
    putUnit(out, scalar);
  } else {
    putUnit(out, 0xD7C0 + (scalar >> 10));
    putUnit(out, 0xDC00 | (scalar & 0x3FF));
  }
  in += 4;
  return true;
}

inline bool stepUtf16ToUtf32(const Byte*& in, const Byte* inEnd, Byte*& out) {
  if (inEnd - in < 2) return false;
  unsigned int scalar = getUnit(in);
  if (isSurrogate(scalar)) {
    if (!isPair(in, inEnd)) return false;
    scalar = scalarOfPair(in);
    in += 2;
  }
  putUnit(out, scalar & 0xFFFF);
  putUnit(out, scalar >> 16);
  in += 2;
  return true;
}

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

// The kernel that repeats a step.
template <auto step>
KernelResult repeat(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  while (in < inEnd && outEnd - out >= kMaxStep && step(in, inEnd, out)) {
  }
  return {in, out};
}

template <class Table, auto step>
KernelResult repeatWith(const Table& table, const Byte* in, const Byte* inEnd, Byte* out,
                        Byte* outEnd) {
  while (in < inEnd && outEnd - out >= kMaxStep && step(table, in, inEnd, out)) {
  }
  return {in, out};
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_STEPS_H_
