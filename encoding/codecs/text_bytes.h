// Text looked at several characters at a time.
#ifndef ENCODING_CODECS_TEXT_BYTES_H_
#define ENCODING_CODECS_TEXT_BYTES_H_

#include <bit>
#include <cstring>

#include "encoding/kernels/registers.h"
#include "support/compiler.h"

// Several bytes as one number, the first in its low byte on every host. Loops also write more bytes
// than they keep, where that saves a decision.
template <typename Number>
Number loadLow(const unsigned char* p) {
  Number number = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&number, p, sizeof number);  // the loop below means the same, and compiles worse
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) number |= Number{p[i]} << (8 * i);
  }
  return number;
}
template <typename Number>
void storeLow(unsigned char* dest, Number number) {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(dest, &number, sizeof number);
  } else {
    for (unsigned int i = 0; i < sizeof number; ++i) {
      dest[i] = static_cast<unsigned char>(number >> (8 * i));
    }
  }
}
// The same with the first byte from the highest.
template <typename Number>
void storeBig(unsigned char* dest, Number number) {
  storeLow(dest, compilerSwapBytes(number));
}

namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

using fast::Bytes16;

constexpr unsigned int kVector = 16;

// The low bytes of sixteen UTF-16 units, little endian, and the high ones.
inline Bytes16 lowBytes(Bytes16 units, Bytes16 moreUnits) {
  const auto first = units.native(), second = moreUnits.native();
  return Bytes16(
      COMPILER_SHUFFLE(first, second, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30));
}
inline Bytes16 highBytes(Bytes16 units, Bytes16 moreUnits) {
  const auto first = units.native(), second = moreUnits.native();
  return Bytes16(
      COMPILER_SHUFFLE(first, second, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31));
}
inline Bytes16 loadLowBytes(const unsigned char* p) {
  return lowBytes(Bytes16::load(p), Bytes16::load(p + kVector));
}
inline Bytes16 loadHighBytes(const unsigned char* p) {
  return highBytes(Bytes16::load(p), Bytes16::load(p + kVector));
}
// The low bytes, and FF for units above U+00FF.
inline Bytes16 loadUnits(const unsigned char* p) {
  return loadLowBytes(p) | ~equal(loadHighBytes(p), 0);
}
// The same of eight units, twice.
inline Bytes16 loadEightUnits(const unsigned char* p) {
  const Bytes16 units = Bytes16::load(p);
  return lowBytes(units, units) | ~equal(highBytes(units, units), 0);
}
// Sixteen units with these low bytes and high bytes.
inline void storeAsUnits(Bytes16 lowBytes, Bytes16 highBytes, unsigned char* dest) {
  const auto low = lowBytes.native(), high = highBytes.native();
  Bytes16(COMPILER_SHUFFLE(low, high, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23))
      .store(dest);
  Bytes16(COMPILER_SHUFFLE(low, high, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31))
      .store(dest + kVector);
}
inline void storeAsUnits(Bytes16 text, unsigned char* dest) { storeAsUnits(text, 0, dest); }

// The bytes of which the test holds.
inline fast::Mask<Bytes16> isBetween(Bytes16 text, unsigned char first, unsigned char last) {
  return isAtMost(text - first, static_cast<unsigned char>(last - first));
}
inline fast::Mask<Bytes16> isAsciiText(Bytes16 text) { return isBetween(text, 0x20, 0x7E); }
inline fast::Mask<Bytes16> isAsciiLetter(Bytes16 text) { return isBetween(text | 0x20, 'a', 'z'); }

// How many bytes at the beginning have their high bit set, and clear.
inline unsigned int countHigh(Bytes16 bytes) {
  return static_cast<unsigned int>(std::countr_one(topBits(bytes)));
}
inline unsigned int countLow(Bytes16 bytes) {
  return static_cast<unsigned int>(std::countr_zero(topBits(bytes) | 1u << kVector));
}

}  // namespace

#endif  // ENCODING_CODECS_TEXT_BYTES_H_
