// The vocabulary of the vector code: registers of bytes, units or scalars, with operators. Users
// include registers.h, which adds what the processor at hand can do.
//
// Everything here has internal linkage, because each source file may be compiled for a processor of
// its own, and the linker must not take one file's functions for another's.
#ifndef ENCODING_KERNELS_LANES_H_
#define ENCODING_KERNELS_LANES_H_

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "support/compiler.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): see above

template <class L>
class Mask;

// A register of kBytes bytes: lanes of the unsigned type T. Memory has no alignment. Operators work
// lane by lane; a number stands for a register that has it in every lane.
template <class T, unsigned int kBytes>
class Lanes {
 public:
  using Lane = T;
  using Native = typename CompilerVector<T, kBytes>::Type;

  Lanes() = default;                                                         // of any value
  Lanes(unsigned int value) : m_native(Native{} + static_cast<T>(value)) {}  // NOLINT: see above
  template <class Vector>
  requires(!std::is_arithmetic_v<Vector> && !std::is_class_v<Vector> &&
           sizeof(Vector) == kBytes) explicit Lanes(Vector native)
      : m_native(reinterpret_cast<Native>(native)) {}

  static Lanes load(const void* p) {
    Lanes lanes;
    std::memcpy(&lanes.m_native, p, kBytes);
    return lanes;
  }
  void store(void* p) const { std::memcpy(p, &m_native, kBytes); }
  Native native() const { return m_native; }

  friend Lanes operator~(Lanes a) { return Lanes(~a.m_native); }
  friend Lanes operator&(Lanes a, Lanes b) { return Lanes(a.m_native & b.m_native); }
  friend Lanes operator|(Lanes a, Lanes b) { return Lanes(a.m_native | b.m_native); }
  friend Lanes operator^(Lanes a, Lanes b) { return Lanes(a.m_native ^ b.m_native); }
  friend Lanes operator+(Lanes a, Lanes b) { return Lanes(a.m_native + b.m_native); }
  friend Lanes operator-(Lanes a, Lanes b) { return Lanes(a.m_native - b.m_native); }
  friend Lanes operator<<(Lanes a, int n) { return Lanes(a.m_native << n); }
  friend Lanes operator>>(Lanes a, int n) { return Lanes(a.m_native >> n); }

  friend Lanes min(Lanes a, Lanes b) {
    return Lanes(a.m_native < b.m_native ? a.m_native : b.m_native);
  }
  friend Lanes max(Lanes a, Lanes b) {
    return Lanes(a.m_native > b.m_native ? a.m_native : b.m_native);
  }
  friend Mask<Lanes> equal(Lanes a, Lanes b) { return Mask<Lanes>(a.m_native == b.m_native); }
  friend Mask<Lanes> isAtMost(Lanes a, Lanes b) { return Mask<Lanes>(a.m_native <= b.m_native); }
  friend Mask<Lanes> greaterSigned(Lanes a, Lanes b) {
    using Signed = typename CompilerVector<std::make_signed_t<T>, kBytes>::Type;
    return Mask<Lanes>(reinterpret_cast<Signed>(a.m_native) > reinterpret_cast<Signed>(b.m_native));
  }
  // Whether no bit is set in both.
  friend bool areDisjoint(Lanes a, Lanes b) {
    return areDisjointBytes(Lanes<std::uint8_t, kBytes>(a.m_native),
                            Lanes<std::uint8_t, kBytes>(b.m_native));
  }
  friend bool isZero(Lanes a) { return areDisjoint(a, a); }

 private:
  Native m_native;
};

// The same bits in other lanes.
template <class To, class T, unsigned int kBytes>
inline To as(Lanes<T, kBytes> a) {
  return To(a.native());
}

// Lanes that have either all bits set or none.
template <class L>
class Mask : public L {
 public:
  Mask() = default;
  template <class Native>
  explicit Mask(Native native) : L(native) {}

  bool none() const { return isZero(*this); }
  bool any() const { return !none(); }

  friend Mask operator~(Mask a) { return Mask((~static_cast<L>(a)).native()); }
  friend Mask operator&(Mask a, Mask b) { return Mask(a.native() & b.native()); }
  friend Mask operator|(Mask a, Mask b) { return Mask(a.native() | b.native()); }
  friend Mask operator^(Mask a, Mask b) { return Mask(a.native() ^ b.native()); }
  // a in the lanes of the mask, b in the others.
  friend L select(Mask mask, L a, L b) {
    using Bytes = Lanes<std::uint8_t, sizeof(typename L::Native)>;
    return L(selectByTopBit(Bytes(mask.native()), Bytes(a.native()), Bytes(b.native())).native());
  }
};

// A kind of register, for code that is the same for all.
template <unsigned int kBytes>
struct Vector {
  using Bytes = Lanes<std::uint8_t, kBytes>;
  using Units = Lanes<std::uint16_t, kBytes>;
  using Scalars = Lanes<std::uint32_t, kBytes>;
  static constexpr unsigned int kSize = kBytes;
  static constexpr unsigned int kParts = kBytes / 16;
  // One bit for each byte, as in the result of topBits().
  static constexpr std::uint32_t kAllBits = 0xFFFFFFFFu >> (32 - kBytes);
};
using Vector16 = Vector<16>;
using Bytes16 = Vector16::Bytes;
using Units16 = Vector16::Units;
using Scalars16 = Vector16::Scalars;

inline unsigned int countBits(std::uint32_t bits) {
  return static_cast<unsigned int>(std::popcount(bits));
}
inline unsigned int firstBit(std::uint64_t bits) {  // of bits that are not all 0
  return static_cast<unsigned int>(std::countr_zero(bits));
}

// Eight bytes of a register as a number.
template <unsigned int index>
inline std::uint64_t half(Bytes16 a) {
  using Halves = typename CompilerVector<std::uint64_t, 16>::Type;
  return reinterpret_cast<Halves>(a.native())[index];
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_LANES_H_
