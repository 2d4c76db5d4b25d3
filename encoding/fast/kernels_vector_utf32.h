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
struct Utf32ToUtf16 {
  static constexpr std::ptrdiff_t kBlock = 2 * V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf32ToUtf16(in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto first = V::load(in);
    const auto second = V::load(in + V::kSize);
    if (!V::areDisjoint(V::either(first, second), V::upperUnits())) return false;
    const auto units = V::narrowScalars(first, second);
    if (hasSurrogate<V>(units)) return false;
    V::store(out, units);
    in += 2 * V::kSize;
    out += V::kSize;
    return true;
  }
};

template <class V>
struct Utf16ToUtf32 {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepUtf16ToUtf32(in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto units = V::load(in);
    if (hasSurrogate<V>(units)) return false;
    typename V::Reg first, second;
    V::widenUnits(units, first, second);
    V::store(out, first);
    V::store(out + V::kSize, second);
    in += V::kSize;
    out += 2 * V::kSize;
    return true;
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_UTF32_H_
