// Tables of more than 16 bytes, for registers of any size.
#ifndef ENCODING_KERNELS_X86_ROWS_H_
#define ENCODING_KERNELS_X86_ROWS_H_

#include <cstdint>

#include "encoding/kernels/lanes.h"

namespace fast {
namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

// Each row is looked up by the lower half of the byte, then the right row is taken by the bits of the
// upper half, a pair of rows at a time.
template <unsigned int kRows, unsigned int kBytes>
[[gnu::always_inline]] inline Lanes<std::uint8_t, kBytes> lookUpRows(
    const std::uint8_t* table, Lanes<std::uint8_t, kBytes> bytes) {
  using Bytes = Lanes<std::uint8_t, kBytes>;
  const Bytes lower = bytes & 0x0F;
  Bytes rows[kRows];
  for (unsigned int i = 0; i < kRows; ++i) {
    loadEachPart(table + 16 * i, rows[i]);
    rows[i] = lookup16(rows[i], lower);
  }
  int shift = 3;  // takes the bit that decides to the top of each byte
  for (unsigned int count = kRows / 2; count != 0; count /= 2, --shift) {
    const Bytes bits = as<Bytes>(as<Lanes<std::uint16_t, kBytes>>(bytes) << shift);
    for (unsigned int i = 0; i < count; ++i) {
      rows[i] = selectByTopBit(bits, rows[2 * i + 1], rows[2 * i]);
    }
  }
  return rows[0];
}

}  // namespace
}  // namespace fast

#endif  // ENCODING_KERNELS_X86_ROWS_H_
