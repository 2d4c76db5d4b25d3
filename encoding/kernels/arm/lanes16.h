// Registers of 16 bytes: what lanes.h wants of the processor, by NEON of 64-bit ARM.
#ifndef ENCODING_KERNELS_ARM_LANES16_H_
#define ENCODING_KERNELS_ARM_LANES16_H_

#include <arm_neon.h>

#include <cstdint>

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

inline uint8x16_t raw(Bytes16 a) { return reinterpret_cast<uint8x16_t>(a.native()); }
inline uint16x8_t raw(Units16 a) { return reinterpret_cast<uint16x8_t>(a.native()); }
inline uint32x4_t raw(Scalars16 a) { return reinterpret_cast<uint32x4_t>(a.native()); }

// The top bit of each byte in all its bits.
inline uint8x16_t spreadTopBit(Bytes16 a) { return vcltzq_s8(vreinterpretq_s8_u8(raw(a))); }

// There is no such instruction: each byte keeps the bit of its place, and neighbours are added
// until the eight bits of each half are in one byte.
inline std::uint32_t topBits(Bytes16 a) {
  constexpr std::uint64_t kPlaces = 0x8040201008040201u;
  uint8x16_t bits = vandq_u8(spreadTopBit(a), vreinterpretq_u8_u64(vdupq_n_u64(kPlaces)));
  for (int i = 0; i < 3; ++i) bits = vpaddq_u8(bits, bits);
  return vgetq_lane_u16(vreinterpretq_u16_u8(bits), 0);
}

inline bool areDisjointBytes(Bytes16 a, Bytes16 b) {
  const uint32x4_t both = vreinterpretq_u32_u8(vandq_u8(raw(a), raw(b)));
  return vgetq_lane_u64(vreinterpretq_u64_u32(vpmaxq_u32(both, both)), 0) == 0;
}
inline Bytes16 selectByTopBit(Bytes16 control, Bytes16 a, Bytes16 b) {
  return Bytes16(vbslq_u8(spreadTopBit(control), raw(a), raw(b)));
}
inline Bytes16 subtractSaturated(Bytes16 a, Bytes16 b) {
  return Bytes16(vqsubq_u8(raw(a), raw(b)));
}
inline Bytes16 lookup16(Bytes16 table, Bytes16 places) {
  return Bytes16(vqtbl1q_u8(raw(table), raw(places)));
}
template <unsigned int kRows>
inline Bytes16 lookUpRows(const std::uint8_t* table, Bytes16 bytes) {
  uint8x16_t places = raw(bytes & (16 * kRows - 1));
  uint8x16_t found = vqtbl4q_u8(vld1q_u8_x4(table), places);
  for (unsigned int i = 64; i < 16 * kRows; i += 64) {  // places beyond 64 change nothing
    places = vsubq_u8(places, vdupq_n_u8(64));
    found = vqtbx4q_u8(found, vld1q_u8_x4(table + i), places);
  }
  return Bytes16(found);
}
inline void loadEachPart(const void* p, Bytes16& a) { a = Bytes16::load(p); }
inline Units16 multiplyAddPairs(Bytes16 a, Bytes16 b) {
  return Units16(vpaddq_u16(vmull_u8(vget_low_u8(raw(a)), vget_low_u8(raw(b))),
                            vmull_high_u8(raw(a), raw(b))));
}

inline Bytes16 interleaveLow(Bytes16 a, Bytes16 b) { return Bytes16(vzip1q_u8(raw(a), raw(b))); }
inline Bytes16 interleaveHigh(Bytes16 a, Bytes16 b) { return Bytes16(vzip2q_u8(raw(a), raw(b))); }
inline Units16 interleaveLow(Units16 a, Units16 b) { return Units16(vzip1q_u16(raw(a), raw(b))); }
inline Units16 interleaveHigh(Units16 a, Units16 b) { return Units16(vzip2q_u16(raw(a), raw(b))); }
inline void joinBytes(Bytes16 low, Bytes16 high, Units16& first, Units16& second) {
  first = as<Units16>(interleaveLow(low, high));
  second = as<Units16>(interleaveHigh(low, high));
}

inline void loadWidened(const void* p, Units16& a) {
  a = Units16(vmovl_u8(vld1_u8(static_cast<const std::uint8_t*>(p))));
}
inline void loadWidened(const void* p, Scalars16& a) {
  std::uint32_t bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  a = Scalars16(vmovl_u16(vget_low_u16(vmovl_u8(vcreate_u8(bytes)))));
}
template <int n>
inline void loadPlace(const std::uint16_t* p, Units16& a) {
  a = Units16(vld1q_lane_u16(p, raw(a), n));
}
inline Scalars16 widenLow(Units16 a) { return Scalars16(vmovl_u16(vget_low_u16(raw(a)))); }
inline Scalars16 widenHigh(Units16 a) { return Scalars16(vmovl_high_u16(raw(a))); }
inline void storeScalars(Units16 a, void* p) {
  widenLow(a).store(p);
  widenHigh(a).store(static_cast<char*>(p) + 16);
}
inline Bytes16 narrow(Units16 a, Units16 b) {
  return Bytes16(vqmovn_high_u16(vqmovn_u16(raw(a)), raw(b)));
}
inline Units16 narrow(Scalars16 a, Scalars16 b) {
  return Units16(vqmovn_high_u32(vqmovn_u32(raw(a)), raw(b)));
}
template <int n>
inline std::uint32_t eightBits(Units16 mask) {
  static constexpr std::uint16_t kPlaces[8] = {1, 2, 4, 8, 16, 32, 64, 128};
  return vaddvq_u16(vandq_u16(raw(mask), vld1q_u16(kPlaces)));
}

template <int n>
inline Bytes16 moveUp(Bytes16 a) {
  return Bytes16(vextq_u8(vdupq_n_u8(0), raw(a), 16 - n));
}
template <int n>
inline Bytes16 moveDown(Bytes16 a) {
  return Bytes16(vextq_u8(raw(a), vdupq_n_u8(0), n));
}
template <int n, class T>
inline Lanes<T, 16> part(Lanes<T, 16> a) {
  return a;
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_ARM_LANES16_H_
