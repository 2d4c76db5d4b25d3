// From UTF-16 to UTF-8.
//
// Every unit is spread over a field of the most bytes it may need, its last byte at the field's
// end; a shuffle from a table then closes up the bytes that are in use, as in D. Lemire and W.
// Mula, "Transcoding Billions of Unicode Characters per Second with SIMD Instructions" (Software:
// Practice and Experience 52, 2022). Surrogates are no exception here: each half of a pair makes
// two of the four bytes.
#ifndef ENCODING_KERNELS_VECTOR_UTF16_H_
#define ENCODING_KERNELS_VECTOR_UTF16_H_

#include "encoding/kernels/vector.h"
#include "support/compiler.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// ---- Units below 800: fields of two bytes ----

inline void writeShort(Units16 fields, std::uint32_t mask, Byte*& out) {
  lookup16(as<Bytes16>(fields), Bytes16::load(kOneOrTwo.control[mask])).store(out);
  out += 16 - countBits(mask);
}

template <class V>
inline void encodeShort(typename V::Units units, Byte*& out) {
  const auto isAscii = equal(units & 0xFF80, 0);
  const auto fields = select(isAscii, units << 8, units >> 6 | (units << 8 & 0x3F00) | 0x80C0);
  forEachPart<V>([&](auto n) { writeShort(part<n>(fields), eightBits<n>(isAscii), out); });
}

// ---- Any units: items of four bytes, of which the first one is for UTF-32 only ----

// Four items; for the mask see kOneToFour. Right for items of up to three bytes; longer ones move
// out by two bytes too few.
inline void writeItems(Units16 items, std::uint32_t mask, Byte*& out) {
  lookup16(as<Bytes16>(items), Bytes16::load(kOneToFour.control[mask])).store(out);
  out += 12 - countBits(mask);
}

// Items made of units with their first two bytes and their last two; eight bits of the mask for
// each four items.
template <class V>
inline void writeItemsOf(typename V::Units first, typename V::Units last, std::uint32_t mask,
                         Byte*& out) {
  const auto low = interleaveLow(first, last);
  const auto high = interleaveHigh(first, last);
  forEachPart<V>([&](auto n) {
    writeItems(part<n>(low), mask >> 16 * n & 0xFF, out);
    writeItems(part<n>(high), mask >> (16 * n + 8) & 0xFF, out);
  });
}

template <class V>
struct Utf8Items {
  using Units = typename V::Units;
  Mask<Units> isAscii, isShort;
  Units first;  // first byte of three, as upper half
  Units last;   // the last two bytes

  // Right for any units but surrogates.
  explicit Utf8Items(Units units)
      : isAscii(equal(units & 0xFF80, 0)),
        isShort(equal(units & 0xF800, 0)),
        first((units >> 4 & 0x0F00) | 0xE000),
        last((units >> 6 & 0x3F) | (units << 8 & 0x3F00) | 0x8080) {
    last = select(isAscii, units << 8, last | (isShort & Units(0x40)));
  }

  // Two bits for each item, as kOneToFour wants them.
  std::uint32_t lengthBits() const {
    return topBits(as<typename V::Bytes>((isAscii & Units(0xFF)) | (isShort & Units(0xFF00))));
  }
  void write(Byte*& out) const { writeItemsOf<V>(first, last, lengthBits(), out); }
};

// Units from 800 up, no surrogates.
template <class V>
inline void encodeThree(typename V::Units units, Byte*& out) {
  using Units = typename V::Units;
  const Units first = (units >> 4 & 0x0F00) | 0xE000;
  const Units last = (units >> 6 & 0x3F) | (units << 8 & 0x3F00) | 0x8080;
  typename V::Bytes control;
  loadEachPart(kOneToFour.control[0], control);
  const auto low = lookup16(as<typename V::Bytes>(interleaveLow(first, last)), control);
  const auto high = lookup16(as<typename V::Bytes>(interleaveHigh(first, last)), control);
  forEachPart<V>([&](auto n) {
    part<n>(low).store(out + 24 * n);
    part<n>(high).store(out + 24 * n + 12);
  });
  out += 3 * V::kSize / 2;
}

// Any units but 0. The first half of a pair at the end is left for later. False, with all before it
// written, for a surrogate that is not of a pair.
template <class V>
inline bool encodeWithPairs(typename V::Units units, const Byte*& in, Byte*& out) {
  using Units = typename V::Units;
  const Pairs<V> pairs(units);
  Utf8Items<V> items(units);
  // Upper half: bits 10 to 20 of the scalar value, five of them in the first byte and the second's
  // first half; the lowest two belong to the first byte of the lower half.
  const Units bits = (units & 0x03FF) + 0x0040;
  const Units upper = bits >> 8 | (bits << 6 & 0x3F00) | 0x80F0;
  const Units carried = (previousUnits(units) & 3) << 4;
  const Units lower = (items.last & 0xFFCF) | carried;
  items.last = select(pairs.isUpper, upper, select(pairs.isLower, lower, items.last));
  items.isShort = items.isShort | pairs.isUpper | pairs.isLower;

  Byte* const begin = out;
  items.write(out);
  const std::uint32_t wrong = topBits(pairs.wrong());
  const auto bytesOf = [](Units a) { return topBits(as<typename V::Bytes>(a)); };
  if (wrong != 0) {
    unsigned int place = firstBit(wrong);  // in bytes; of the unit behind, if it is an upper half
    if (place != 0 && (bytesOf(pairs.isUpper) >> (place - 1) & 1) != 0) place -= 2;
    const std::uint32_t before = (1u << place) - 1;
    in += place;
    out = begin + (3 * place - countBits(bytesOf(items.isShort) & before) -
                   countBits(bytesOf(items.isAscii) & before)) /
                      2;
    return false;
  }
  in += V::kSize;
  if (pairs.endsWithUpper()) {
    in -= 2;
    out -= 2;
  }
  return true;
}

// Registers of units that are no surrogates, which are of the same kind: the fewer the questions,
// the fewer the branches that are guessed wrong where kinds alternate. False, with nothing written,
// when there are surrogates. The second register counts only with kRegisters 2.
template <class V, unsigned int kRegisters>
inline bool encodeUnits(typename V::Units first, typename V::Units second, Byte*& out) {
  const auto bits = first | second;
  if (areDisjoint(bits, 0xFF80)) {
    narrow(first, second).store(out);
    out += kRegisters * V::kSize / 2;
  } else if (areDisjoint(bits, 0xF800)) {
    encodeShort<V>(first, out);
    if constexpr (kRegisters > 1) encodeShort<V>(second, out);
  } else if ((surrogates(first) | surrogates(second)).any()) {
    return false;
  } else if ((equal(first & 0xF800, 0) | equal(second & 0xF800, 0)).none()) {
    encodeThree<V>(first, out);
    if constexpr (kRegisters > 1) encodeThree<V>(second, out);
  } else {
    Utf8Items<V>(first).write(out);
    if constexpr (kRegisters > 1) Utf8Items<V>(second).write(out);
  }
  return true;
}

template <class V, unsigned int kRegisters>
struct Utf16ToUtf8 {
  using Units = typename V::Units;
  static constexpr std::ptrdiff_t kBlock = kRegisters * V::kSize;
  static constexpr auto kStep = stepUtf16ToUtf8;
  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = Units::load(in);
    return treatRegisters(first, kRegisters > 1 ? Units::load(in + V::kSize) : first, in, out);
  }
  bool treatRegister(typename V::Bytes units, const Byte*& in, Byte*& out) const {
    return treatRegisters(as<Units>(units), as<Units>(units), in, out);
  }
  bool treatRegisters(Units first, Units second, const Byte*& in, Byte*& out) const {
    if (hasZero(min(first, second))) return false;
    if (!encodeUnits<V, kRegisters>(first, second, out)) return encodeWithPairs<V>(first, in, out);
    in += kBlock;
    return true;
  }
};

// Apart, like the other long ways, so that a short text does not pay for the registers that these
// loops fill with constants first.
template <class V>
COMPILER_NO_INLINE COMPILER_FLATTEN KernelResult utf16ToUtf8Long(const Byte* in, const Byte* inEnd,
                                                                 Byte* out, Byte* outEnd) {
  return treatAll<Utf16ToUtf8<V, 2>, Utf16ToUtf8<Vector16, 1>>(in, inEnd, out, outEnd);
}

template <class V>
COMPILER_FLATTEN KernelResult utf16ToUtf8(const Byte* in, const Byte* inEnd, Byte* out,
                                          Byte* outEnd) {
  if constexpr (V::kParts > 1) {
    if (fitsOneRegister<V>(in, inEnd, out, outEnd) && (inEnd - in) % 2 == 0 &&
        treatFilled<2, V>(Utf16ToUtf8<V, 1>(), in, inEnd, out)) {
      return {in, out};
    }
  }
  return utf16ToUtf8Long<V>(in, inEnd, out, outEnd);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_UTF16_H_
