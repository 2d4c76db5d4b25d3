// Shuffles that close the gaps between the bytes of a register that are to be kept.
#ifndef ENCODING_KERNELS_SHUFFLE_TABLES_H_
#define ENCODING_KERNELS_SHUFFLE_TABLES_H_

#include <cstdint>

namespace fast {

// One control of a 16-byte shuffle for each of 256 masks; unused places hold 0x80, which gives
// zero.
struct ShuffleTable {
  alignas(16) std::uint8_t control[256][16];
};

namespace shuffle_building {

// bytesOf(mask, item) says which bytes of an item of itemSize bytes stay: a bit for each byte.
template <class BytesOf>
constexpr ShuffleTable build(unsigned int itemSize, BytesOf bytesOf) {
  ShuffleTable table = {};
  for (unsigned int mask = 0; mask < 256; ++mask) {
    unsigned int count = 0;
    for (unsigned int i = 0; i < 16; ++i) {
      if ((bytesOf(mask, i / itemSize) >> i % itemSize & 1) != 0) {
        table.control[mask][count++] = static_cast<std::uint8_t>(i);
      }
    }
    while (count < 16) table.control[mask][count++] = 0x80;
  }
  return table;
}

}  // namespace shuffle_building

// Eight bytes; bit i of the mask: byte i stays.
inline constexpr ShuffleTable kKeepBytes = shuffle_building::build(
    1, [](unsigned int mask, unsigned int item) { return mask >> item & 1; });

// Eight units; bit i of the mask: unit i stays.
inline constexpr ShuffleTable kKeepUnits = shuffle_building::build(
    2, [](unsigned int mask, unsigned int item) { return (mask >> item & 1) != 0 ? 3u : 0u; });

// Eight two-byte items; bit i of the mask: only the second byte of item i stays.
inline constexpr ShuffleTable kOneOrTwo = shuffle_building::build(
    2, [](unsigned int mask, unsigned int item) { return (mask >> item & 1) != 0 ? 2u : 3u; });

// Four four-byte items; two bits of the mask for each item: 1, all bytes stay; 0, the last three;
// 2, the last two; 3, the last.
inline constexpr ShuffleTable kOneToFour =
    shuffle_building::build(4, [](unsigned int mask, unsigned int item) {
      constexpr unsigned int kept[4] = {14, 15, 12, 8};
      return kept[mask >> 2 * item & 3];
    });

// The two-byte items that begin at some of eight bytes; bit i of the mask: an item begins at byte
// i. Unused places repeat the first item.
inline constexpr ShuffleTable kItemsAt = [] {
  ShuffleTable table = {};
  for (unsigned int mask = 1; mask < 256; ++mask) {
    unsigned int count = 0;
    for (unsigned int round = 0; count < 16; ++round) {
      for (unsigned int i = 0; i < 8 && count < 16; ++i) {
        if ((mask >> i & 1) == 0) continue;
        table.control[mask][count++] = static_cast<std::uint8_t>(i);
        table.control[mask][count++] = static_cast<std::uint8_t>(i + 1);
      }
    }
  }
  return table;
}();

// Taken from place n on, moves the bytes of a register down by n places; zeros come in.
struct MoveTable {
  std::uint8_t control[32];
};
inline constexpr MoveTable kMoveDown = [] {
  MoveTable table = {};
  for (unsigned int i = 0; i < 32; ++i)
    table.control[i] = static_cast<std::uint8_t>(i < 16 ? i : 0x80);
  return table;
}();

}  // namespace fast

#endif  // ENCODING_KERNELS_SHUFFLE_TABLES_H_
