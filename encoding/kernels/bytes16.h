// Text looked at sixteen bytes at a time, on every processor: what codecs add to lanes.h, and what
// of it they may use (operators, comparisons, Mask).
#ifndef ENCODING_KERNELS_BYTES16_H_
#define ENCODING_KERNELS_BYTES16_H_

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

template <class T>
inline Mask<Lanes<T, 16>> isBetween(Lanes<T, 16> a, unsigned int first, unsigned int last) {
  return isAtMost(a - first, last - first);
}
inline Mask<Bytes16> isAsciiLetter(Bytes16 text) { return isBetween(text | 0x20, 'a', 'z'); }

// How many bytes at the beginning have their high bit set, and clear.
inline unsigned int countHigh(Bytes16 text) {
  return static_cast<unsigned int>(std::countr_one(topBits(text)));
}
inline unsigned int countLow(Bytes16 text) {
  return static_cast<unsigned int>(std::countr_zero(topBits(text) | 1u << 16));
}

// The low bytes of sixteen UTF-16 units, and FF for units above U+00FF.
template <bool BigEndian>
inline Bytes16 loadUnits(const unsigned char* p) {
  const auto first = Bytes16::load(p).native();
  const auto second = Bytes16::load(p + 16).native();
  const Bytes16 even(__builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20,
                                             22, 24, 26, 28, 30));
  const Bytes16 odd(__builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21,
                                            23, 25, 27, 29, 31));
  return BigEndian ? odd | ~equal(even, 0) : even | ~equal(odd, 0);
}
// Sixteen UTF-16 units with these low bytes and high bytes of 0.
template <bool BigEndian>
inline void storeAsUnits(Bytes16 text, unsigned char* p) {
  const auto first = (BigEndian ? Bytes16(0) : text).native();
  const auto second = (BigEndian ? text : Bytes16(0)).native();
  Bytes16(__builtin_shufflevector(first, second, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7,
                                  23))
      .store(p);
  Bytes16(__builtin_shufflevector(first, second, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14,
                                  30, 15, 31))
      .store(p + 16);
}

// A set of pairs of bytes: first bytes firstLow to firstHigh, each with all second bytes secondLow
// to secondHigh.
struct PairBox {
  unsigned int firstLow, firstHigh, secondLow, secondHigh;
};
// The pairs of the box among eight, the first bytes of which are the low halves of units (so on a
// little-endian processor only).
inline Mask<Units16> isInBox(Units16 pairs, PairBox box) {
  const auto both = [](unsigned int first, unsigned int second) {
    return as<Bytes16>(Units16(first | second << 8));
  };
  const Bytes16 distance = as<Bytes16>(pairs) - both(box.firstLow, box.secondLow);
  const Bytes16 last = both(box.firstHigh - box.firstLow, box.secondHigh - box.secondLow);
  return equal(as<Units16>(Bytes16(isAtMost(distance, last))), 0xFFFF);
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_BYTES16_H_
