// One 16-byte register, as the vector kernels use it.
#ifndef ENCODING_KERNELS_X86_REGISTER16_H_
#define ENCODING_KERNELS_X86_REGISTER16_H_

#include <immintrin.h>

#include <cstdint>

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see steps.h

struct Vector16 {
  using Reg = __m128i;
  static constexpr unsigned int kSize = 16;
  static constexpr unsigned int kLanes = 1;
  static constexpr std::uint32_t kAllBits = 0xFFFF;  // of topBits

  static Reg load(const void* p) { return _mm_loadu_si128(static_cast<const Reg*>(p)); }
  static void store(void* p, Reg a) { _mm_storeu_si128(static_cast<Reg*>(p), a); }
  // Sixteen bytes, in every lane.
  static Reg loadLanes(const void* p) { return load(p); }
  static Reg bytes(unsigned int value) { return _mm_set1_epi8(static_cast<char>(value)); }
  static Reg units(unsigned int value) { return _mm_set1_epi16(static_cast<short>(value)); }
  static Reg zero() { return _mm_setzero_si128(); }

  static Reg both(Reg a, Reg b) { return _mm_and_si128(a, b); }
  static Reg either(Reg a, Reg b) { return _mm_or_si128(a, b); }
  static Reg differ(Reg a, Reg b) { return _mm_xor_si128(a, b); }
  static Reg without(Reg a, Reg b) { return _mm_andnot_si128(b, a); }
  // b where the top bit of the mask byte is set, else a.
  static Reg choose(Reg a, Reg b, Reg mask) { return _mm_blendv_epi8(a, b, mask); }
  static bool isZero(Reg a) { return _mm_testz_si128(a, a) != 0; }
  static bool areDisjoint(Reg a, Reg b) { return _mm_testz_si128(a, b) != 0; }
  static std::uint64_t lowHalf(Reg a) { return static_cast<std::uint64_t>(_mm_cvtsi128_si64(a)); }
  static std::uint64_t highHalf(Reg a) {
    return static_cast<std::uint64_t>(_mm_extract_epi64(a, 1));
  }
  static std::uint32_t topBits(Reg a) { return static_cast<std::uint32_t>(_mm_movemask_epi8(a)); }

  static Reg subtractBytes(Reg a, Reg b) { return _mm_subs_epu8(a, b); }  // not below 0
  static Reg maxBytes(Reg a, Reg b) { return _mm_max_epu8(a, b); }
  static Reg minBytes(Reg a, Reg b) { return _mm_min_epu8(a, b); }
  static Reg greaterBytes(Reg a, Reg b) { return _mm_cmpgt_epi8(a, b); }  // signed
  static Reg equalBytes(Reg a, Reg b) { return _mm_cmpeq_epi8(a, b); }
  static Reg shuffle(Reg table, Reg control) { return _mm_shuffle_epi8(table, control); }

  static Reg addUnits(Reg a, Reg b) { return _mm_add_epi16(a, b); }
  static Reg minUnits(Reg a, Reg b) { return _mm_min_epu16(a, b); }
  static Reg equalUnits(Reg a, Reg b) { return _mm_cmpeq_epi16(a, b); }
  template <int n>
  static Reg shiftLeft(Reg a) {
    return _mm_slli_epi16(a, n);
  }
  template <int n>
  static Reg shiftRight(Reg a) {
    return _mm_srli_epi16(a, n);
  }
  // a[0] * b[0] + a[1] * b[1] of each two bytes.
  static Reg multiplyAddPairs(Reg a, Reg b) { return _mm_maddubs_epi16(a, b); }

  // Within each lane.
  static Reg interleaveLowBytes(Reg a, Reg b) { return _mm_unpacklo_epi8(a, b); }
  static Reg interleaveHighBytes(Reg a, Reg b) { return _mm_unpackhi_epi8(a, b); }
  static Reg interleaveLowUnits(Reg a, Reg b) { return _mm_unpacklo_epi16(a, b); }
  static Reg interleaveHighUnits(Reg a, Reg b) { return _mm_unpackhi_epi16(a, b); }
  static Reg packSignedUnits(Reg a, Reg b) { return _mm_packs_epi16(a, b); }

  // All units of a and b, in order, as bytes that saturate.
  static Reg narrow(Reg a, Reg b) { return _mm_packus_epi16(a, b); }
  // The two halves of a as units, in order.
  static void widen(Reg a, Reg& first, Reg& second) {
    first = _mm_unpacklo_epi8(a, zero());
    second = _mm_unpackhi_epi8(a, zero());
  }
  // The same for 32-bit values below 10000 and units.
  static Reg narrowScalars(Reg a, Reg b) { return _mm_packus_epi32(a, b); }
  static void widenUnits(Reg a, Reg& first, Reg& second) {
    first = _mm_unpacklo_epi16(a, zero());
    second = _mm_unpackhi_epi16(a, zero());
  }
  // Byte i of low and of high as unit i.
  static void join(Reg low, Reg high, Reg& first, Reg& second) {
    first = _mm_unpacklo_epi8(low, high);
    second = _mm_unpackhi_epi8(low, high);
  }
  // The bytes n places further up; the units one place further up, or down. 0 comes in at the end.
  template <int n>
  static Reg previousBytes(Reg a) {
    return _mm_slli_si128(a, n);
  }
  static Reg previousUnits(Reg a) { return previousBytes<2>(a); }
  static Reg nextUnits(Reg a) { return _mm_srli_si128(a, 2); }

  // 32-bit values.
  static Reg scalars(std::uint32_t value) { return _mm_set1_epi32(static_cast<int>(value)); }
  static Reg addScalars(Reg a, Reg b) { return _mm_add_epi32(a, b); }
  static Reg greaterScalars(Reg a, Reg b) { return _mm_cmpgt_epi32(a, b); }  // signed
  static Reg equalScalars(Reg a, Reg b) { return _mm_cmpeq_epi32(a, b); }
  template <int n>
  static Reg shiftScalarsLeft(Reg a) {
    return _mm_slli_epi32(a, n);
  }
  template <int n>
  static Reg shiftScalarsRight(Reg a) {
    return _mm_srli_epi32(a, n);
  }
  template <int n>
  static __m128i lane(Reg a) {
    return a;
  }
};

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_X86_REGISTER16_H_
