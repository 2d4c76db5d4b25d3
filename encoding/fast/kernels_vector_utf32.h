// UTF-16 and UTF-32, a register at a time where there are no surrogates.
#ifndef ENCODING_FAST_KERNELS_VECTOR_UTF32_H_
#define ENCODING_FAST_KERNELS_VECTOR_UTF32_H_

#include "encoding/fast/kernels_vector.h"

namespace fast {
namespace {

template <class V>
inline bool hasSurrogate(typename V::Reg units) {
  return !V::isZero(V::equalUnits(V::both(units, V::units(0xF800)), V::units(0xD800)));
}

template <class V>
KernelResult utf32ToUtf16(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<2 * V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        const auto first = V::load(p);
        const auto second = V::load(p + V::kSize);
        if (!V::areDisjoint(V::either(first, second), V::upperUnits())) return false;
        const auto units = V::narrowScalars(first, second);
        if (hasSurrogate<V>(units)) return false;
        V::store(q, units);
        p += 2 * V::kSize;
        q += V::kSize;
        return true;
      },
      stepUtf32ToUtf16);
}

template <class V>
KernelResult utf16ToUtf32(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        const auto units = V::load(p);
        if (hasSurrogate<V>(units)) return false;
        typename V::Reg first, second;
        V::widenUnits(units, first, second);
        V::store(q, first);
        V::store(q + V::kSize, second);
        p += V::kSize;
        q += 2 * V::kSize;
        return true;
      },
      stepUtf16ToUtf32);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_UTF32_H_
