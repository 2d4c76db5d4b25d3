// Registers of 16 bytes: what lanes.h wants of the processor, by the SIMD of WebAssembly.
#ifndef ENCODING_KERNELS_WASM_LANES16_H_
#define ENCODING_KERNELS_WASM_LANES16_H_

#include <wasm_simd128.h>

#include <cstdint>

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

template <class T>
inline v128_t raw(Lanes<T, 16> a) {
  return reinterpret_cast<v128_t>(a.native());
}

inline std::uint32_t topBits(Bytes16 a) {
  return static_cast<std::uint32_t>(wasm_i8x16_bitmask(raw(a)));
}
inline bool areDisjointBytes(Bytes16 a, Bytes16 b) { return !wasm_v128_any_true(raw(a & b)); }
inline Bytes16 selectByTopBit(Bytes16 control, Bytes16 a, Bytes16 b) {
  return Bytes16(wasm_v128_bitselect(raw(a), raw(b), wasm_i8x16_shr(raw(control), 7)));
}
inline Bytes16 subtractSaturated(Bytes16 a, Bytes16 b) {
  return Bytes16(wasm_u8x16_sub_sat(raw(a), raw(b)));
}
inline Bytes16 lookup16(Bytes16 table, Bytes16 places) {
  return Bytes16(wasm_i8x16_swizzle(raw(table), raw(places)));
}
// A byte is in one row, and beyond all others, which give 0 for it.
template <unsigned int kRows>
COMPILER_INLINE inline Bytes16 lookUpRows(const std::uint8_t* table, Bytes16 bytes) {
  const Bytes16 places = kRows == 16 ? bytes : bytes & (16 * kRows - 1);
  Bytes16 found = lookup16(Bytes16::load(table), places);
  for (unsigned int i = 1; i < kRows; ++i) {
    found = found | lookup16(Bytes16::load(table + 16 * i), places - 16 * i);
  }
  return found;
}
inline void loadEachPart(const void* p, Bytes16& a) { a = Bytes16::load(p); }
inline Units16 multiplyAddPairs(Bytes16 a, Bytes16 b) {
  const auto low = as<Units16>(a) & 0xFF, otherLow = as<Units16>(b) & 0xFF;
  const auto high = as<Units16>(a) >> 8, otherHigh = as<Units16>(b) >> 8;
  return Units16(low.native() * otherLow.native() + high.native() * otherHigh.native());
}

inline Bytes16 interleaveLow(Bytes16 a, Bytes16 b) {
  return Bytes16(
      wasm_i8x16_shuffle(raw(a), raw(b), 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}
inline Bytes16 interleaveHigh(Bytes16 a, Bytes16 b) {
  return Bytes16(wasm_i8x16_shuffle(raw(a), raw(b), 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29,
                                    14, 30, 15, 31));
}
inline Units16 interleaveLow(Units16 a, Units16 b) {
  return Units16(wasm_i16x8_shuffle(raw(a), raw(b), 0, 8, 1, 9, 2, 10, 3, 11));
}
inline Units16 interleaveHigh(Units16 a, Units16 b) {
  return Units16(wasm_i16x8_shuffle(raw(a), raw(b), 4, 12, 5, 13, 6, 14, 7, 15));
}
inline void joinBytes(Bytes16 low, Bytes16 high, Units16& first, Units16& second) {
  first = as<Units16>(interleaveLow(low, high));
  second = as<Units16>(interleaveHigh(low, high));
}

inline void loadWidened(const void* p, Units16& a) { a = Units16(wasm_u16x8_load8x8(p)); }
inline void loadWidened(const void* p, Scalars16& a) {
  const v128_t units = wasm_u16x8_extend_low_u8x16(wasm_v128_load32_zero(p));
  a = Scalars16(wasm_u32x4_extend_low_u16x8(units));
}
template <int n>
inline void loadPlace(const std::uint16_t* p, Units16& a) {
  a = Units16(wasm_v128_load16_lane(p, raw(a), n));
}
inline Scalars16 widenLow(Units16 a) { return Scalars16(wasm_u32x4_extend_low_u16x8(raw(a))); }
inline Scalars16 widenHigh(Units16 a) { return Scalars16(wasm_u32x4_extend_high_u16x8(raw(a))); }
inline void storeScalars(Units16 a, void* p) {
  widenLow(a).store(p);
  widenHigh(a).store(static_cast<char*>(p) + 16);
}
inline Bytes16 narrow(Units16 a, Units16 b) {
  return Bytes16(wasm_u8x16_narrow_i16x8(raw(a), raw(b)));
}
inline Units16 narrow(Scalars16 a, Scalars16 b) {
  return Units16(wasm_u16x8_narrow_i32x4(raw(a), raw(b)));
}
template <int n>
inline std::uint32_t eightBits(Units16 mask) {
  return static_cast<std::uint32_t>(wasm_i16x8_bitmask(raw(mask)));
}

// Bytes from place n on, of first and behind it second.
template <int n>
inline Bytes16 sixteenFrom(Bytes16 first, Bytes16 second) {
  return Bytes16(COMPILER_SHUFFLE(first.native(), second.native(), n, n + 1, n + 2, n + 3, n + 4,
                                  n + 5, n + 6, n + 7, n + 8, n + 9, n + 10, n + 11, n + 12, n + 13,
                                  n + 14, n + 15));
}
template <int n>
inline Bytes16 moveUp(Bytes16 a) {
  return sixteenFrom<16 - n>(0, a);
}
template <int n>
inline Bytes16 moveDown(Bytes16 a) {
  return sixteenFrom<n>(a, 0);
}
template <int n, class T>
inline Lanes<T, 16> part(Lanes<T, 16> a) {
  return a;
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_WASM_LANES16_H_
