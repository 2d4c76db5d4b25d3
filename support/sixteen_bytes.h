// SixteenBytes: text looked at sixteen bytes at a time.
#ifndef SUPPORT_SIXTEEN_BYTES_H_
#define SUPPORT_SIXTEEN_BYTES_H_

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The tests give 0xFF for each byte of which they hold and 0 for the others, so that they can be
// joined with |. Memory has no alignment. The vectors are the compiler's own, which any processor
// can do; only the collecting of high bits is not among their operations.
class SixteenBytes {
 public:
  static constexpr unsigned int kSize = 16;

  static SixteenBytes load(const unsigned char* p) {
    Bytes bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return SixteenBytes(bytes);
  }
  // The low bytes of sixteen UTF-16 units, and 0xFF for units above U+00FF.
  template <bool BigEndian>
  static SixteenBytes loadUnits(const unsigned char* p) {
    const Bytes first = load(p).m_bytes;
    const Bytes second = load(p + kSize).m_bytes;
    const Bytes even = __builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20,
                                               22, 24, 26, 28, 30);
    const Bytes odd = __builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21,
                                              23, 25, 27, 29, 31);
    return SixteenBytes(BigEndian ? odd | fromTest(even != 0) : even | fromTest(odd != 0));
  }

  void store(unsigned char* dest) const { std::memcpy(dest, &m_bytes, sizeof m_bytes); }
  // Sixteen UTF-16 units with these low bytes and high bytes of 0.
  template <bool BigEndian>
  void storeAsUnits(unsigned char* dest) const {
    const Bytes first = BigEndian ? Bytes{} : m_bytes;
    const Bytes second = BigEndian ? m_bytes : Bytes{};
    SixteenBytes(__builtin_shufflevector(first, second, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6,
                                         22, 7, 23))
        .store(dest);
    SixteenBytes(__builtin_shufflevector(first, second, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13,
                                         29, 14, 30, 15, 31))
        .store(dest + kSize);
  }

  SixteenBytes operator|(SixteenBytes other) const { return SixteenBytes(m_bytes | other.m_bytes); }
  SixteenBytes is(unsigned char byte) const { return SixteenBytes(fromTest(m_bytes == byte)); }
  SixteenBytes isBetween(unsigned char first, unsigned char last) const {
    return SixteenBytes(fromTest(m_bytes - first <= static_cast<unsigned char>(last - first)));
  }
  SixteenBytes isAsciiLetter() const { return SixteenBytes(m_bytes | 0x20).isBetween('a', 'z'); }

  // How many bytes at the beginning have their high bit set, and clear.
  unsigned int countHigh() const { return static_cast<unsigned int>(std::countr_one(highBits())); }
  unsigned int countLow() const {
    return static_cast<unsigned int>(std::countr_zero(highBits() | 1u << kSize));
  }

 private:
  typedef unsigned char Bytes __attribute__((vector_size(kSize)));

  explicit SixteenBytes(Bytes bytes) : m_bytes(bytes) {}

  template <typename Test>
  static Bytes fromTest(Test test) {
    return reinterpret_cast<Bytes>(test);
  }

  // The high bit of each byte, the first one's as the lowest.
  std::uint32_t highBits() const {
#if defined(__SSE2__)
    return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(m_bytes)));
#else
    std::uint32_t bits = 0;
    for (unsigned int i = 0; i < kSize; ++i) bits |= (m_bytes[i] >> 7u) << i;
    return bits;
#endif
  }

  Bytes m_bytes;
};

#endif  // SUPPORT_SIXTEEN_BYTES_H_
