// Registers of 16 bytes: what lanes.h wants of the processor, by SSE2 and SSE4.2.
#ifndef ENCODING_KERNELS_X86_LANES16_H_
#define ENCODING_KERNELS_X86_LANES16_H_

#include <immintrin.h>

#include <cstdint>

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

template <class T>
inline __m128i raw(Lanes<T, 16> a) {
  return reinterpret_cast<__m128i>(a.native());
}

inline std::uint32_t topBits(Bytes16 a) {
  return static_cast<std::uint32_t>(_mm_movemask_epi8(raw(a)));
}

#if !defined(__SSE4_2__)

inline bool areDisjointBytes(Bytes16 a, Bytes16 b) {
  return topBits(equal(a & b, 0)) == Vector16::kAllBits;
}

#else

inline bool areDisjointBytes(Bytes16 a, Bytes16 b) { return _mm_testz_si128(raw(a), raw(b)) != 0; }
inline Bytes16 selectByTopBit(Bytes16 control, Bytes16 a, Bytes16 b) {
  return Bytes16(_mm_blendv_epi8(raw(b), raw(a), raw(control)));
}
inline Bytes16 subtractSaturated(Bytes16 a, Bytes16 b) {
  return Bytes16(_mm_subs_epu8(raw(a), raw(b)));
}
inline Bytes16 lookup16(Bytes16 table, Bytes16 places) {
  return Bytes16(_mm_shuffle_epi8(raw(table), raw(places)));
}
inline void loadEachPart(const void* p, Bytes16& a) { a = Bytes16::load(p); }
inline Units16 multiplyAddPairs(Bytes16 a, Bytes16 b) {
  return Units16(_mm_maddubs_epi16(raw(a), raw(b)));
}

inline Bytes16 interleaveLow(Bytes16 a, Bytes16 b) {
  return Bytes16(_mm_unpacklo_epi8(raw(a), raw(b)));
}
inline Bytes16 interleaveHigh(Bytes16 a, Bytes16 b) {
  return Bytes16(_mm_unpackhi_epi8(raw(a), raw(b)));
}
inline Units16 interleaveLow(Units16 a, Units16 b) {
  return Units16(_mm_unpacklo_epi16(raw(a), raw(b)));
}
inline Units16 interleaveHigh(Units16 a, Units16 b) {
  return Units16(_mm_unpackhi_epi16(raw(a), raw(b)));
}
inline void joinBytes(Bytes16 low, Bytes16 high, Units16& first, Units16& second) {
  first = as<Units16>(interleaveLow(low, high));
  second = as<Units16>(interleaveHigh(low, high));
}

inline void loadWidened(const void* p, Units16& a) {
  a = Units16(_mm_cvtepu8_epi16(_mm_loadl_epi64(static_cast<const __m128i*>(p))));
}
inline void loadWidened(const void* p, Scalars16& a) {
  a = Scalars16(_mm_cvtepu8_epi32(_mm_loadu_si32(p)));
}
template <int n>
inline void loadPlace(const std::uint16_t* p, Units16& a) {
  a = Units16(_mm_insert_epi16(raw(a), *p, n));
}
inline Scalars16 widenLow(Units16 a) { return as<Scalars16>(interleaveLow(a, 0)); }
inline Scalars16 widenHigh(Units16 a) { return as<Scalars16>(interleaveHigh(a, 0)); }
inline void storeScalars(Units16 a, void* p) {
#if defined(__AVX2__)
  _mm256_storeu_si256(static_cast<__m256i*>(p), _mm256_cvtepu16_epi32(raw(a)));
#else
  widenLow(a).store(p);
  widenHigh(a).store(static_cast<char*>(p) + 16);
#endif
}
inline Bytes16 narrow(Units16 a, Units16 b) { return Bytes16(_mm_packus_epi16(raw(a), raw(b))); }
inline Units16 narrow(Scalars16 a, Scalars16 b) {
  return Units16(_mm_packus_epi32(raw(a), raw(b)));
}
template <int n>
inline std::uint32_t eightBits(Units16 mask) {
  return topBits(Bytes16(_mm_packs_epi16(raw(mask), _mm_setzero_si128())));
}

template <int n>
inline Bytes16 moveUp(Bytes16 a) {
  return Bytes16(_mm_slli_si128(raw(a), n));
}
template <int n>
inline Bytes16 moveDown(Bytes16 a) {
  return Bytes16(_mm_srli_si128(raw(a), n));
}
template <int n, class T>
inline Lanes<T, 16> part(Lanes<T, 16> a) {
  return a;
}

#endif

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_X86_LANES16_H_
