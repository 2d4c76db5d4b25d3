// From and to UTF-32.
#ifndef ENCODING_KERNELS_VECTOR_UTF32_H_
#define ENCODING_KERNELS_VECTOR_UTF32_H_

#include "encoding/kernels/vector.h"
#include "encoding/kernels/vector_utf16.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// Whether all are scalar values: neither surrogates nor above 10FFFF.
template <class Scalars>
inline bool areScalarValues(Scalars scalars) {
  return (equal(scalars & 0xFFFFF800, 0xD800) | greaterSigned(scalars, 0x10FFFF) |
          greaterSigned(0, scalars))
      .none();
}

template <class V>
struct Utf32ToUtf16 {
  using Units = typename V::Units;
  using Scalars = typename V::Scalars;
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  static constexpr auto kStep = stepUtf32ToUtf16;

  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = Scalars::load(in);
    const auto second = Scalars::load(in + V::kSize);
    if (!areDisjoint(first | second, 0xFFFF0000)) return makePairs(first, in, out);
    const Units units = narrow(first, second);
    if (surrogates(units).any()) [[unlikely]]
      return false;
    units.store(out);
    in += 2 * V::kSize;
    out += V::kSize;
    return true;
  }

  // Both places of every character are filled, and those in use closed up.
  static bool makePairs(Scalars scalars, const Byte*& in, Byte*& out) {
    if (!areScalarValues(scalars)) return false;
    const auto isPair = greaterSigned(scalars, 0xFFFF);
    const Scalars upper = (scalars >> 10) + 0xD7C0;
    const Scalars lower = (scalars & 0x3FF) | 0xDC00;
    const auto units = as<Units>(select(isPair, upper | lower << 16, scalars));
    const auto kept = as<Units>(isPair | Scalars(0xFFFF));
    forEachPart<V>([&](auto n) { writeKept(part<n>(units), eightBits<n>(kept), out); });
    in += V::kSize;
    return true;
  }
};

template <class V>
struct Utf16ToUtf32 {
  using Units = typename V::Units;
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  static constexpr auto kStep = stepUtf16ToUtf32;

  bool treat(const Byte*& in, Byte*& out) const {
    const auto units = Units::load(in);
    if (surrogates(units).any()) return joinPairs(units, in, out);
    widenLow(units).store(out);
    widenHigh(units).store(out + V::kSize);
    in += V::kSize;
    out += 2 * V::kSize;
    return true;
  }

  // The scalar values of pairs come to stand where the upper half was.
  static bool joinPairs(Units units, const Byte*& in, Byte*& out) {
    const Pairs<V> pairs(units);
    if (!isZero(pairs.wrong())) return false;
    const auto next = as<Units>(moveDown<2>(as<typename V::Bytes>(units)));
    const Units lows = select(pairs.isUpper, units << 10 | (next & 0x3FF), units);
    const Units highs = (((units & 0x3FF) >> 6) + 1) & pairs.isUpper;
    const Units kept = ~pairs.isLower;
    forEachPart<V>(
        [&](auto n) { writeScalars(part<n>(lows), part<n>(highs), eightBits<n>(kept), out); });
    in += V::kSize;
    if (pairs.endsWithUpper()) {
      in -= 2;
      out -= 4;
    }
    return true;
  }
};

template <class V>
struct Utf32ToUtf8 {
  using Scalars = typename V::Scalars;
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  static constexpr auto kStep = stepUtf32ToUtf8;

  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = Scalars::load(in);
    const auto second = Scalars::load(in + V::kSize);
    if (!areDisjoint(first | second, 0xFFFF0000)) return encodeLong(first, in, out);
    const auto units = narrow(first, second);
    if (surrogates(units).any()) [[unlikely]]
      return false;
    encodeUnits<V, 1>(units, units, out);
    in += 2 * V::kSize;
    return true;
  }

  // Items of four bytes, the last one at the end.
  static bool encodeLong(Scalars scalars, const Byte*& in, Byte*& out) {
    if (!areScalarValues(scalars)) return false;
    const auto isAscii = greaterSigned(0x80, scalars);
    const auto isShort = greaterSigned(0x800, scalars);
    const auto isLong = greaterSigned(scalars, 0xFFFF);
    const Scalars last = select(isAscii, scalars, (scalars & 0x3F) | 0x80);
    const Scalars third = (scalars >> 6 & 0x3F) | 0x80 | (isShort & Scalars(0x40));
    const Scalars second = (scalars >> 12 & 0x3F) | 0x80 | (~isLong & Scalars(0x60));
    const Scalars items = last << 24 | third << 16 | second << 8 | scalars >> 18 | 0xF0;
    const auto lengths = as<typename V::Units>(((isAscii ^ isLong) & Scalars(0xFFFF)) |
                                               (isShort & Scalars(0xFFFF0000)));
    forEachPart<V>([&](auto n) {
      const std::uint32_t mask = eightBits<n>(lengths);
      writeItems(part<n>(as<typename V::Units>(items)), mask, out);
      out += 2 * countBits(mask & ~mask >> 1 & 0x55);  // those of four bytes
    });
    in += V::kSize;
    return true;
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_UTF32_H_
