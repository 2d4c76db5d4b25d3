// UTF-16 and UTF-32. Where pairs of surrogates come in, both places of every character are filled
// and those in use closed up.
#ifndef ENCODING_KERNELS_VECTOR_UTF32_H_
#define ENCODING_KERNELS_VECTOR_UTF32_H_

#include "encoding/kernels/vector.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

template <class V>
struct Utf32ToUtf16 {
  using Reg = typename V::Reg;
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf32ToUtf16(in, inEnd, out);
  }

  bool treat(const Byte*& in, Byte*& out) const {
    const Reg first = V::load(in);
    const Reg second = V::load(in + V::kSize);
    if (!V::areDisjoint(V::either(first, second), V::scalars(0xFFFF0000))) {
      return makePairs(first, in, out);
    }
    const Reg units = V::narrowScalars(first, second);
    if (!V::isZero(surrogates<V>(units))) return false;
    V::store(out, units);
    in += 2 * V::kSize;
    out += V::kSize;
    return true;
  }

  static bool makePairs(Reg scalars, const Byte*& in, Byte*& out) {
    const Reg tooLarge = V::either(V::greaterScalars(scalars, V::scalars(0x10FFFF)),
                                   V::greaterScalars(V::zero(), scalars));
    const Reg isSurrogate =
        V::equalScalars(V::both(scalars, V::scalars(0xFFFFF800)), V::scalars(0xD800));
    if (!V::isZero(V::either(tooLarge, isSurrogate))) return false;
    const Reg isPair = V::greaterScalars(scalars, V::scalars(0xFFFF));
    const Reg upper = V::addScalars(V::template shiftScalarsRight<10>(scalars), V::scalars(0xD7C0));
    const Reg lower = V::either(V::both(scalars, V::scalars(0x3FF)), V::scalars(0xDC00));
    const Reg units =
        V::choose(scalars, V::either(upper, V::template shiftScalarsLeft<16>(lower)), isPair);
    const std::uint32_t mask =
        V::topBits(V::packSignedUnits(V::either(isPair, V::scalars(0xFFFF)), V::zero()));
    keepUnits(V::template lane<0>(units), mask & 0xFF, out);
    if constexpr (V::kLanes == 2) keepUnits(V::template lane<1>(units), mask >> 16, out);
    in += V::kSize;
    return true;
  }
};

template <class V>
struct Utf16ToUtf32 {
  using Reg = typename V::Reg;
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf16ToUtf32(in, inEnd, out);
  }

  bool treat(const Byte*& in, Byte*& out) const {
    const Reg units = V::load(in);
    if (!V::isZero(surrogates<V>(units))) return joinPairs(units, in, out);
    Reg first, second;
    V::widenUnits(units, first, second);
    V::store(out, first);
    V::store(out + V::kSize, second);
    in += V::kSize;
    out += 2 * V::kSize;
    return true;
  }

  // The scalar values of pairs come to stand where the upper half was.
  static bool joinPairs(Reg units, const Byte*& in, Byte*& out) {
    Reg isUpper, isLower;
    if (!findPairs<V>(units, isUpper, isLower)) return false;
    const Reg low =
        V::either(V::template shiftLeft<10>(units), V::both(V::nextUnits(units), V::units(0x3FF)));
    const Reg high =
        V::addUnits(V::template shiftRight<6>(V::both(units, V::units(0x3FF))), V::units(1));
    const Reg lows = V::choose(units, low, isUpper);
    const Reg highs = V::both(high, isUpper);
    const Reg kept = V::equalUnits(isLower, V::zero());
    const std::uint32_t mask = V::topBits(
        V::packSignedUnits(V::interleaveLowUnits(kept, kept), V::interleaveHighUnits(kept, kept)));
    const Reg first = V::interleaveLowUnits(lows, highs);
    const Reg second = V::interleaveHighUnits(lows, highs);
    keepUnits(V::template lane<0>(first), mask & 0xFF, out);
    keepUnits(V::template lane<0>(second), mask >> 8 & 0xFF, out);
    if constexpr (V::kLanes == 2) {
      keepUnits(V::template lane<1>(first), mask >> 16 & 0xFF, out);
      keepUnits(V::template lane<1>(second), mask >> 24, out);
    }
    in += V::kSize;
    if (lastBitIsSet<V>(isUpper)) {
      in -= 2;
      out -= 4;
    }
    return true;
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_UTF32_H_
