// Registers of 32 bytes, by AVX2; see lanes.h.
#ifndef ENCODING_KERNELS_X86_LANES32_H_
#define ENCODING_KERNELS_X86_LANES32_H_

#include <immintrin.h>

#include <cstdint>

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

using Vector32 = Vector<32>;
using Bytes32 = Vector32::Bytes;
using Units32 = Vector32::Units;
using Scalars32 = Vector32::Scalars;

template <class T>
inline __m256i raw(Lanes<T, 32> a) {
  return reinterpret_cast<__m256i>(a.native());
}
inline __m128i loadHalf(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

inline std::uint32_t topBits(Bytes32 a) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(raw(a)));
}
inline bool areDisjointBytes(Bytes32 a, Bytes32 b) {
  return _mm256_testz_si256(raw(a), raw(b)) != 0;
}
inline Bytes32 selectByTopBit(Bytes32 control, Bytes32 a, Bytes32 b) {
  return Bytes32(_mm256_blendv_epi8(raw(b), raw(a), raw(control)));
}
inline Bytes32 subtractSaturated(Bytes32 a, Bytes32 b) {
  return Bytes32(_mm256_subs_epu8(raw(a), raw(b)));
}
inline Bytes32 lookup16(Bytes32 table, Bytes32 places) {
  return Bytes32(_mm256_shuffle_epi8(raw(table), raw(places)));
}
inline void loadEachPart(const void* p, Bytes32& a) {
  a = Bytes32(_mm256_broadcastsi128_si256(loadHalf(p)));
}
inline Units32 multiplyAddPairs(Bytes32 a, Bytes32 b) {
  return Units32(_mm256_maddubs_epi16(raw(a), raw(b)));
}

inline Bytes32 interleaveLow(Bytes32 a, Bytes32 b) {
  return Bytes32(_mm256_unpacklo_epi8(raw(a), raw(b)));
}
inline Bytes32 interleaveHigh(Bytes32 a, Bytes32 b) {
  return Bytes32(_mm256_unpackhi_epi8(raw(a), raw(b)));
}
inline Units32 interleaveLow(Units32 a, Units32 b) {
  return Units32(_mm256_unpacklo_epi16(raw(a), raw(b)));
}
inline Units32 interleaveHigh(Units32 a, Units32 b) {
  return Units32(_mm256_unpackhi_epi16(raw(a), raw(b)));
}
// Quarters 0, 2, 1, 3: what interleaving within each half makes right again, or has made wrong.
inline __m256i swapMiddle(__m256i a) { return _mm256_permute4x64_epi64(a, 0xD8); }
inline void joinBytes(Bytes32 low, Bytes32 high, Units32& first, Units32& second) {
  low = Bytes32(swapMiddle(raw(low)));
  high = Bytes32(swapMiddle(raw(high)));
  first = as<Units32>(interleaveLow(low, high));
  second = as<Units32>(interleaveHigh(low, high));
}

inline Bytes32 joinParts(Bytes16 first, Bytes16 second) {
  return Bytes32(_mm256_set_m128i(raw(second), raw(first)));
}
template <int n, class T>
inline Lanes<T, 16> part(Lanes<T, 32> a) {
  return Lanes<T, 16>(_mm256_extracti128_si256(raw(a), n));
}
inline void loadWidened(const void* p, Units32& a) {
  a = Units32(_mm256_cvtepu8_epi16(loadHalf(p)));
}
inline void loadWidened(const void* p, Scalars32& a) {
  a = Scalars32(_mm256_cvtepu8_epi32(_mm_loadl_epi64(static_cast<const __m128i*>(p))));
}
inline Scalars32 widen(Units16 a) { return Scalars32(_mm256_cvtepu16_epi32(raw(a))); }
inline Scalars32 widenLow(Units32 a) { return widen(part<0>(a)); }
inline Scalars32 widenHigh(Units32 a) { return widen(part<1>(a)); }
inline Bytes32 narrow(Units32 a, Units32 b) {
  return Bytes32(swapMiddle(_mm256_packus_epi16(raw(a), raw(b))));
}
inline Units32 narrow(Scalars32 a, Scalars32 b) {
  return Units32(swapMiddle(_mm256_packus_epi32(raw(a), raw(b))));
}
template <int n>
inline std::uint32_t eightBits(Units32 mask) {
  return topBits(Bytes32(_mm256_packs_epi16(raw(mask), _mm256_setzero_si256()))) >> 16 * n & 0xFF;
}

template <int n>
inline Bytes32 moveUp(Bytes32 a) {
  return Bytes32(
      _mm256_alignr_epi8(raw(a), _mm256_permute2x128_si256(raw(a), raw(a), 0x08), 16 - n));
}
template <int n>
inline Bytes32 moveDown(Bytes32 a) {
  return Bytes32(_mm256_alignr_epi8(_mm256_permute2x128_si256(raw(a), raw(a), 0x81), raw(a), n));
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_X86_LANES32_H_
