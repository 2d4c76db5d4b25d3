// Positions in a set of 94 rows of 94 cells, as the ISO-2022 encodings have them.
#ifndef ENCODING_CODECS_PLANE94_H_
#define ENCODING_CODECS_PLANE94_H_

#include <array>
#include <cstdint>

// An index of a position is row * kRowStride + cell, both counted from 0. A row is one longer than
// its cells and one row more follows the last, so that a byte that is no row or no cell leads to
// an index that is never assigned instead of needing a test of its own.
constexpr unsigned int kRowStride = 95;
constexpr unsigned int kPlaneSize = 95 * kRowStride;

constexpr bool isPlaneByte(unsigned int byte) { return byte >= 0x21 && byte <= 0x7E; }

namespace plane94_detail {
constexpr std::array<std::uint16_t, 256> makeRowStarts() {
  std::array<std::uint16_t, 256> starts{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    starts[byte] = static_cast<std::uint16_t>((isPlaneByte(byte) ? byte - 0x21 : 94) * kRowStride);
  }
  return starts;
}
constexpr std::array<std::uint8_t, 256> makeCells() {
  std::array<std::uint8_t, 256> cells{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    cells[byte] = static_cast<std::uint8_t>(isPlaneByte(byte) ? byte - 0x21 : 94);
  }
  return cells;
}
inline constexpr std::array<std::uint16_t, 256> kRowStarts = makeRowStarts();
inline constexpr std::array<std::uint8_t, 256> kCells = makeCells();
}  // namespace plane94_detail

// The index of a pair of 7-bit bytes; that of no assigned position when they are no pair.
inline unsigned int planeIndex(unsigned char row, unsigned char cell) {
  return unsigned{plane94_detail::kRowStarts[row]} + plane94_detail::kCells[cell];
}

// Cells first to last of rows firstRow to lastRow, all counted from 1 as the standards do.
struct PlaneRange {
  std::uint8_t firstRow, lastRow, first, last;
};

#endif  // ENCODING_CODECS_PLANE94_H_
