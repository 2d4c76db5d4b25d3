// Registers with everything that the processor can do: lanes.h, which the compiler's own vectors
// serve everywhere, and the folder for the kind of processor. Another kind needs such a folder,
// included here.
#ifndef ENCODING_KERNELS_REGISTERS_H_
#define ENCODING_KERNELS_REGISTERS_H_

// What a folder has, for each kind of register that the compiler is told to use:
//   topBits(bytes)            the top bit of every byte, as one number; the first is the lowest
//   areDisjointBytes(a, b)    whether no bit is set in both
// and, where there are vector kernels:
//   selectByTopBit(c, a, b)   the bytes of a where the top bit of c's is set, else those of b
//   subtractSaturated(a, b)   a - b of bytes, not below 0
//   lookup16(table, places)   bytes of a 16-byte table, in each 16 bytes of a register for itself;
//                             places up to 15, or from 80 for 0
//   lookUpRows<n>(p, bytes)   bytes of n rows of 16 bytes at p, n being 4, 8 or 16; bits of the
//   bytes
//                             that n rows do not need count for nothing
//   loadEachPart(p, a)        16 bytes from memory, in each 16 bytes of a register
//   multiplyAddPairs(a, b)    a[0] * b[0] + a[1] * b[1] of each two bytes, below 8000
//   interleaveLow(a, b)       the bytes or units of a and b in turns, of the first half of each 16
//   interleaveHigh(a, b)      bytes; and of the second half of each
//   joinParts(first, second)  16 bytes each, as one register
//   joinBytes(low, high, first, second)   all units of these low and high bytes, in order
//   loadWidened(p, a)         bytes from memory as units or scalars
//   loadPlace<n>(p, a)        a unit from memory, as the n-th of eight
//   widenLow(a), widenHigh(a) the first and the second half of the units of a, as scalars
//   storeScalars(units, p)    eight units as scalars, to memory
//   narrow(a, b)              the lanes of both, in order, in half the width; saturating, and for
//                             values below 8000 (units) and 80000000 (scalars)
//   eightBits<n>(mask)        a bit for each of the n-th eight units of a mask, as topBits() has it
//   moveUp<n>(bytes), moveDown<n>(bytes)  all bytes n places further; 0 comes in
//   part<n>(a)                the n-th 16 bytes
#if defined(__x86_64__)
#include "encoding/kernels/x86/lanes16.h"
#if defined(__AVX2__)
#include "encoding/kernels/x86/lanes32.h"
#endif
#if defined(__SSE4_2__)
#include "encoding/kernels/x86/rows.h"
#endif
#elif defined(__aarch64__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#include "encoding/kernels/arm/lanes16.h"
#elif defined(__wasm_simd128__)
#include "encoding/kernels/wasm/lanes16.h"
#else
#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): see above
inline std::uint32_t topBits(Bytes16 a) {
  std::uint32_t bits = 0;
  for (unsigned int i = 0; i < 16; ++i) bits |= std::uint32_t{a.native()[i]} >> 7 << i;
  return bits;
}
inline bool areDisjointBytes(Bytes16 a, Bytes16 b) {
  const Bytes16 both = a & b;
  return (half<0>(both) | half<1>(both)) == 0;
}
}  // namespace
}  // namespace fast
#endif

#endif  // ENCODING_KERNELS_REGISTERS_H_
