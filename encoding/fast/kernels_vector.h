// What the vector kernels have in common: the loop over blocks, and the plain runs.
#ifndef ENCODING_FAST_KERNELS_VECTOR_H_
#define ENCODING_FAST_KERNELS_VECTOR_H_

#include "encoding/fast/kernels.h"
#include "encoding/fast/kernels_steps.h"

namespace fast {
namespace {

// The kernel that treats its input in blocks of kIn bytes, and by single steps where a block is not
// to its liking and at the end. treatBlock may write kKernelSlack bytes; it moves both pointers,
// over all or a part of the block, or leaves them alone and returns false.
template <unsigned int kIn, class TreatBlock, class Step>
inline KernelResult inBlocks(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd,
                             TreatBlock treatBlock, Step step) {
  constexpr auto kRoom = static_cast<std::ptrdiff_t>(kKernelSlack);
  while (inEnd - in >= static_cast<std::ptrdiff_t>(kIn) && outEnd - out >= kRoom) {
    if (treatBlock(in, out)) continue;
    const Byte* blockEnd = in + kIn;
    do {
      if (!step(in, inEnd, out)) return {in, out};
    } while (in < blockEnd);
  }
  if (outEnd - out < kRoom) return {in, out};
  while (in < inEnd && outEnd - out >= kMaxStep && step(in, inEnd, out)) {
  }
  return {in, out};
}

template <class V>
KernelResult asciiCopy(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<2 * V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        const auto first = V::load(p);
        const auto second = V::load(p + V::kSize);
        if (V::topBits(V::either(first, second)) != 0) return false;
        V::store(q, first);
        V::store(q + V::kSize, second);
        p += 2 * V::kSize;
        q += 2 * V::kSize;
        return true;
      },
      stepAsciiCopy);
}

template <class V>
inline void storeWidened(Byte* out, typename V::Reg bytes) {
  typename V::Reg first, second;
  V::widen(bytes, first, second);
  V::store(out, first);
  V::store(out + V::kSize, second);
}

template <class V>
KernelResult asciiToUtf16(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        const auto bytes = V::load(p);
        if (V::topBits(bytes) != 0) return false;
        storeWidened<V>(q, bytes);
        p += V::kSize;
        q += 2 * V::kSize;
        return true;
      },
      stepAsciiToUtf16);
}

// Two registers of units below 80, as bytes.
template <class V>
inline bool narrowAscii(const Byte* in, typename V::Reg& bytes) {
  const auto first = V::load(in);
  const auto second = V::load(in + V::kSize);
  if (!V::areDisjoint(V::either(first, second), V::units(0xFF80))) return false;
  bytes = V::narrow(first, second);
  return true;
}

template <class V>
KernelResult utf16ToAscii(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<2 * V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        typename V::Reg bytes;
        if (!narrowAscii<V>(p, bytes)) return false;
        V::store(q, bytes);
        p += 2 * V::kSize;
        q += V::kSize;
        return true;
      },
      stepUtf16ToAscii);
}

template <class V>
KernelResult swapUtf16(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return inBlocks<V::kSize>(
      in, inEnd, out, outEnd,
      [](const Byte*& p, Byte*& q) {
        const auto units = V::load(p);
        V::store(q, V::either(V::template shiftLeft<8>(units), V::template shiftRight<8>(units)));
        p += V::kSize;
        q += V::kSize;
        return true;
      },
      stepSwapUtf16);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_FAST_KERNELS_VECTOR_H_
