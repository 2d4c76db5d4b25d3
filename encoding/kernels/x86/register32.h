// One 32-byte register, as the vector kernels use it; see register16.h.
#ifndef ENCODING_KERNELS_X86_REGISTER32_H_
#define ENCODING_KERNELS_X86_REGISTER32_H_

#include <immintrin.h>

#include <cstdint>

#include "encoding/kernels/shuffle_tables.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

struct Vector32 {
  using Reg = __m256i;
  static constexpr unsigned int kSize = 32;
  static constexpr unsigned int kLanes = 2;
  static constexpr std::uint32_t kAllBits = 0xFFFFFFFF;

  static Reg load(const void* p) { return _mm256_loadu_si256(static_cast<const Reg*>(p)); }
  static void store(void* p, Reg a) { _mm256_storeu_si256(static_cast<Reg*>(p), a); }
  static Reg loadLanes(const void* p) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(p)));
  }
  // The 16 to 32 bytes at p, and zeros behind them: two loads that overlap, the second moved down.
  static Reg loadFront(const unsigned char* p, unsigned int size) {
    const __m128i last = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + size - 16));
    const __m128i control =
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(kMoveDown.control + 32 - size));
    return _mm256_set_m128i(_mm_shuffle_epi8(last, control),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  }
  static Reg bytes(unsigned int value) { return _mm256_set1_epi8(static_cast<char>(value)); }
  static Reg units(unsigned int value) { return _mm256_set1_epi16(static_cast<short>(value)); }
  static Reg zero() { return _mm256_setzero_si256(); }

  static Reg both(Reg a, Reg b) { return _mm256_and_si256(a, b); }
  static Reg either(Reg a, Reg b) { return _mm256_or_si256(a, b); }
  static Reg differ(Reg a, Reg b) { return _mm256_xor_si256(a, b); }
  static Reg without(Reg a, Reg b) { return _mm256_andnot_si256(b, a); }
  static Reg choose(Reg a, Reg b, Reg mask) { return _mm256_blendv_epi8(a, b, mask); }
  static bool isZero(Reg a) { return _mm256_testz_si256(a, a) != 0; }
  static bool areDisjoint(Reg a, Reg b) { return _mm256_testz_si256(a, b) != 0; }
  static std::uint32_t topBits(Reg a) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(a));
  }

  static Reg subtractBytes(Reg a, Reg b) { return _mm256_subs_epu8(a, b); }
  static Reg maxBytes(Reg a, Reg b) { return _mm256_max_epu8(a, b); }
  static Reg minBytes(Reg a, Reg b) { return _mm256_min_epu8(a, b); }
  static Reg greaterBytes(Reg a, Reg b) { return _mm256_cmpgt_epi8(a, b); }
  static Reg equalBytes(Reg a, Reg b) { return _mm256_cmpeq_epi8(a, b); }
  static Reg shuffle(Reg table, Reg control) { return _mm256_shuffle_epi8(table, control); }

  static Reg addUnits(Reg a, Reg b) { return _mm256_add_epi16(a, b); }
  static Reg minUnits(Reg a, Reg b) { return _mm256_min_epu16(a, b); }
  static Reg equalUnits(Reg a, Reg b) { return _mm256_cmpeq_epi16(a, b); }
  template <int n>
  static Reg shiftLeft(Reg a) {
    return _mm256_slli_epi16(a, n);
  }
  template <int n>
  static Reg shiftRight(Reg a) {
    return _mm256_srli_epi16(a, n);
  }
  static Reg multiplyAddPairs(Reg a, Reg b) { return _mm256_maddubs_epi16(a, b); }

  static Reg interleaveLowBytes(Reg a, Reg b) { return _mm256_unpacklo_epi8(a, b); }
  static Reg interleaveHighBytes(Reg a, Reg b) { return _mm256_unpackhi_epi8(a, b); }
  static Reg interleaveLowUnits(Reg a, Reg b) { return _mm256_unpacklo_epi16(a, b); }
  static Reg interleaveHighUnits(Reg a, Reg b) { return _mm256_unpackhi_epi16(a, b); }
  static Reg packSignedUnits(Reg a, Reg b) { return _mm256_packs_epi16(a, b); }

  static Reg narrow(Reg a, Reg b) {
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), 0xD8);
  }
  static void widen(Reg a, Reg& first, Reg& second) {
    first = _mm256_cvtepu8_epi16(_mm256_castsi256_si128(a));
    second = _mm256_cvtepu8_epi16(_mm256_extracti128_si256(a, 1));
  }
  static Reg narrowScalars(Reg a, Reg b) {
    return _mm256_permute4x64_epi64(_mm256_packus_epi32(a, b), 0xD8);
  }
  static void widenUnits(Reg a, Reg& first, Reg& second) {
    first = _mm256_cvtepu16_epi32(_mm256_castsi256_si128(a));
    second = _mm256_cvtepu16_epi32(_mm256_extracti128_si256(a, 1));
  }
  static void join(Reg low, Reg high, Reg& first, Reg& second) {
    low = _mm256_permute4x64_epi64(low, 0xD8);
    high = _mm256_permute4x64_epi64(high, 0xD8);
    first = _mm256_unpacklo_epi8(low, high);
    second = _mm256_unpackhi_epi8(low, high);
  }
  template <int n>
  static Reg previousBytes(Reg a) {
    return _mm256_alignr_epi8(a, _mm256_permute2x128_si256(a, a, 0x08), 16 - n);
  }
  static Reg previousUnits(Reg a) { return previousBytes<2>(a); }
  static Reg nextUnits(Reg a) {
    return _mm256_alignr_epi8(_mm256_permute2x128_si256(a, a, 0x81), a, 2);
  }

  static Reg scalars(std::uint32_t value) { return _mm256_set1_epi32(static_cast<int>(value)); }
  static Reg addScalars(Reg a, Reg b) { return _mm256_add_epi32(a, b); }
  static Reg greaterScalars(Reg a, Reg b) { return _mm256_cmpgt_epi32(a, b); }
  static Reg equalScalars(Reg a, Reg b) { return _mm256_cmpeq_epi32(a, b); }
  template <int n>
  static Reg shiftScalarsLeft(Reg a) {
    return _mm256_slli_epi32(a, n);
  }
  template <int n>
  static Reg shiftScalarsRight(Reg a) {
    return _mm256_srli_epi32(a, n);
  }

  template <int n>
  static __m128i lane(Reg a) {
    if constexpr (n == 0) {
      return _mm256_castsi256_si128(a);
    } else {
      return _mm256_extracti128_si256(a, 1);
    }
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_X86_REGISTER32_H_
