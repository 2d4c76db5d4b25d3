// What the vector kernels have in common: the loop over blocks, and the plain runs.
#ifndef ENCODING_KERNELS_VECTOR_H_
#define ENCODING_KERNELS_VECTOR_H_

#include <cstring>

#include "encoding/kernels/kernels.h"
#include "encoding/kernels/shuffle_tables.h"
#include "encoding/kernels/steps.h"
#include "encoding/kernels/x86/register16.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

constexpr auto kRoom = static_cast<std::ptrdiff_t>(kKernelSlack);

// Single units, where the processor's own byte order is known.
inline void storeUnit(Byte* out, std::uint16_t unit) { std::memcpy(out, &unit, 2); }
inline std::uint16_t loadUnit(const Byte* in) {
  std::uint16_t unit;
  std::memcpy(&unit, in, 2);
  return unit;
}

// ---- The loop over blocks ----
//
// Work<V> does the work of one kernel with registers V. Its treat() looks at kBlock bytes of input
// or more and moves both pointers over as much as it likes. If it returns false, that is less than
// a block, and its step() treats the next few characters instead. Together they write at most
// kKernelSlack bytes.

// Goes on while there are blocks; false when a step says stop.
template <class Work>
inline bool treatBlocks(const Work& work, const Byte*& in, const Byte* inEnd, Byte*& out,
                        Byte* outEnd) {
  constexpr std::ptrdiff_t kSteps = 16;  // bytes of input to step over; at most a block
  while (inEnd - in >= Work::kBlock && outEnd - out >= kRoom) {
    if (work.treat(in, out)) continue;
    const Byte* stepsEnd = in + kSteps;
    do {
      if (!work.step(in, inEnd, out)) return false;
    } while (in < stepsEnd && in < inEnd);
  }
  return true;
}

// Big blocks, then small ones, then steps.
template <class Big, class Small, class... Table>
inline KernelResult treatAll(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd,
                             const Table&... table) {
  if (!treatBlocks(Big{table...}, in, inEnd, out, outEnd)) return {in, out};
  const Small small{table...};
  if constexpr (Small::kBlock < Big::kBlock) {
    if (!treatBlocks(small, in, inEnd, out, outEnd)) return {in, out};
  }
  if (outEnd - out < kRoom) return {in, out};
  while (in < inEnd && outEnd - out >= kMaxStep && small.step(in, inEnd, out)) {
  }
  return {in, out};
}

// The kernels of works with blocks of registers V.
template <class V, template <class> class Work>
KernelResult kernel(const Byte* in, const Byte* inEnd, Byte* out, Byte* outEnd) {
  return treatAll<Work<V>, Work<Vector16>>(in, inEnd, out, outEnd);
}

template <class V, template <class> class Work, class Table>
KernelResult tableKernel(const Table& table, const Byte* in, const Byte* inEnd, Byte* out,
                         Byte* outEnd) {
  return treatAll<Work<V>, Work<Vector16>>(in, inEnd, out, outEnd, table);
}

// ---- Short texts ----
//
// With 32-byte registers a text that fills more than half of one goes through one register, filled
// up with something harmless, and not through a smaller register and up to fifteen steps.

template <class V>
inline bool fitsOneRegister(const Byte* in, const Byte* inEnd, const Byte* out,
                            const Byte* outEnd) {
  const auto size = inEnd - in;
  return V::kLanes > 1 && size >= 16 && size < static_cast<std::ptrdiff_t>(V::kSize) &&
         outEnd - out >= kRoom;
}

// Letters from the places of a register that a text of size bytes leaves, zeros before them. They
// have width bytes each, as many as divide the size.
template <class V, unsigned int width>
inline typename V::Reg filling(unsigned int size) {
  static constexpr auto kLetters = [] {
    struct {
      Byte bytes[2 * V::kSize];
    } table = {};
    for (unsigned int i = V::kSize; i < 2 * V::kSize; i += width) table.bytes[i] = 'a';
    return table;
  }();
  return V::load(kLetters.bytes + V::kSize - size);
}

// Whole text by one register, by work.treatRegister(register, in, out); true when it was clean.
// Otherwise what lies before the piece in question is converted.
template <unsigned int width, class V, class Work>
inline bool treatFilled(const Work& work, const Byte*& in, const Byte* inEnd, Byte*& out) {
  const auto size = static_cast<unsigned int>(inEnd - in);
  const auto filled = V::either(V::loadFront(in, size), filling<V, width>(size));
  if (!work.treatRegister(filled, in, out)) return false;
  in = inEnd;
  out -= (V::kSize - size) / width;  // the letters
  return true;
}

// ---- Parts ----

inline unsigned int countBits(unsigned int mask) {
  return static_cast<unsigned int>(__builtin_popcount(mask));
}

inline unsigned int firstBit(std::uint64_t mask) {  // of a mask that has one
  return static_cast<unsigned int>(__builtin_ctzll(mask));
}

// Writes those of eight units whose bits are set.
inline void keepUnits(__m128i units, unsigned int mask, Byte*& out) {
  Vector16::store(out, Vector16::shuffle(units, Vector16::load(kKeepUnits.control[mask])));
  out += 2 * countBits(mask);
}

// The mask of the surrogates among units.
template <class V>
inline typename V::Reg surrogates(typename V::Reg units) {
  return V::equalUnits(V::both(units, V::units(0xF800)), V::units(0xD800));
}

// The masks of the upper and lower halves of pairs. False when there are other surrogates than
// pairs and, as the last unit, the upper half of one.
template <class V>
inline bool findPairs(typename V::Reg units, typename V::Reg& isUpper, typename V::Reg& isLower) {
  const auto kind = V::both(units, V::units(0xFC00));
  isUpper = V::equalUnits(kind, V::units(0xD800));
  isLower = V::equalUnits(kind, V::units(0xDC00));
  return V::isZero(V::differ(V::previousUnits(isUpper), isLower));
}

template <class V>
inline bool lastBitIsSet(typename V::Reg mask) {
  return V::topBits(mask) >> (V::kSize - 1) != 0;
}

// ---- Runs of ASCII, and the other byte order ----

template <class V>
inline void storeWidened(Byte* out, typename V::Reg bytes) {
  typename V::Reg first, second;
  V::widen(bytes, first, second);
  V::store(out, first);
  V::store(out + V::kSize, second);
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
inline bool hasZeroByte(typename V::Reg bytes) {
  return !V::isZero(V::equalBytes(bytes, V::zero()));
}

template <class V>
struct SwapUtf16 {
  static constexpr std::ptrdiff_t kBlock = V::kSize;
  bool step(const Byte*& in, const Byte* inEnd, Byte*& out) const {
    return stepSwapUtf16(in, inEnd, out);
  }
  bool treat(const Byte*& in, Byte*& out) const {
    const auto units = V::load(in);
    V::store(out, V::either(V::template shiftLeft<8>(units), V::template shiftRight<8>(units)));
    in += V::kSize;
    out += V::kSize;
    return true;
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_VECTOR_H_
