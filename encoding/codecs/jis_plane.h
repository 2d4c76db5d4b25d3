// The double-byte positions that code page 932 shares with ISO-2022-JP.
#ifndef ENCODING_CODECS_JIS_PLANE_H_
#define ENCODING_CODECS_JIS_PLANE_H_

#include <array>
#include <cstdint>

#include "encoding/codecs/pair_runs.h"
#include "encoding/codecs/plane94.h"

// A two-byte code as it stands in a text; both bytes 0 for no code.
struct CodeBytes {
  std::uint8_t first, second;
};

// Two rows of JIS share a Shift_JIS lead byte: trails 40 to 7E and 80 to 9E are the odd row, 9F to
// FC the even one. row and cell count from 1; row is at most 94 here.
constexpr CodeBytes shiftJisOf(unsigned int row, unsigned int cell) {
  const unsigned int lead = (row - 1) / 2 + (row <= 62 ? 0x81 : 0xC1);
  const unsigned int trail = row % 2 == 0 ? cell + 0x9E : cell + (cell <= 63 ? 0x3F : 0x40);
  return {static_cast<std::uint8_t>(lead), static_cast<std::uint8_t>(trail)};
}

namespace jis_plane_detail {

// What JIS X 0208 (with the additions of 1983 and 1990) and NEC's row 13 hold.
constexpr PlaneRange kAssigned[] = {
    {1, 1, 1, 94},    {2, 2, 1, 14},    {2, 2, 26, 33},  {2, 2, 42, 48},   {2, 2, 60, 74},
    {2, 2, 82, 89},   {2, 2, 94, 94},   {3, 3, 16, 25},  {3, 3, 33, 58},   {3, 3, 65, 90},
    {4, 4, 1, 83},    {5, 5, 1, 86},    {6, 6, 1, 24},   {6, 6, 33, 56},   {7, 7, 1, 33},
    {7, 7, 49, 81},   {8, 8, 1, 32},    {13, 13, 1, 30}, {13, 13, 32, 54}, {13, 13, 63, 79},
    {13, 13, 83, 84}, {13, 13, 88, 89}, {16, 46, 1, 94}, {47, 47, 1, 51},  {48, 83, 1, 94},
    {84, 84, 1, 6},
};

// Cells of row 13 that repeat characters of row 2. Code page 932 lists each character once, under
// its older code, so that is what they become.
struct Repeated {
  std::uint8_t cell, cellInRow2;
};
constexpr Repeated kRepeated[] = {
    {80, 66}, {81, 65}, {82, 73}, {85, 69}, {86, 61}, {87, 60}, {90, 72}, {91, 33}, {92, 32},
};

// Room behind the plane for the trails of a byte that is no lead byte; see shiftJisIndex.
constexpr unsigned int kTableSize = 94 * kRowStride + 2 * kRowStride;
static_assert(kTableSize >= kPlaneSize);

constexpr std::array<CodeBytes, kTableSize> makeShiftJis() {
  std::array<CodeBytes, kTableSize> codes{};
  for (const PlaneRange& range : kAssigned) {
    for (unsigned int row = range.firstRow; row <= range.lastRow; ++row) {
      for (unsigned int cell = range.first; cell <= range.last; ++cell) {
        codes[(row - 1) * kRowStride + cell - 1] = shiftJisOf(row, cell);
      }
    }
  }
  for (const Repeated& repeated : kRepeated) {
    codes[12 * kRowStride + repeated.cell - 1u] = shiftJisOf(2, repeated.cellInRow2);
  }
  return codes;
}

// Index of the first position of each lead byte 81 to 9F and E0 to EF; that behind the plane for
// every other byte.
constexpr std::array<std::uint16_t, 256> makeLeadStarts() {
  std::array<std::uint16_t, 256> starts{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    unsigned int pair = 47;
    if (byte >= 0x81 && byte <= 0x9F) pair = byte - 0x81;
    if (byte >= 0xE0 && byte <= 0xEF) pair = byte - 0xC1;
    starts[byte] = static_cast<std::uint16_t>(pair * 2 * kRowStride);
  }
  return starts;
}
// How far from there each trail byte leads; for what is no trail byte, to the unused end of the
// first row.
constexpr std::array<std::uint8_t, 256> makeTrailOffsets() {
  std::array<std::uint8_t, 256> offsets{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    unsigned int offset = kRowStride - 1;
    if (byte >= 0x40 && byte <= 0x7E) offset = byte - 0x40;
    if (byte >= 0x80 && byte <= 0x9E) offset = byte - 0x41;
    if (byte >= 0x9F && byte <= 0xFC) offset = byte - 0x9F + kRowStride;
    offsets[byte] = static_cast<std::uint8_t>(offset);
  }
  return offsets;
}

inline constexpr std::array<CodeBytes, kTableSize> kShiftJis = makeShiftJis();
inline constexpr std::array<std::uint16_t, 256> kLeadStarts = makeLeadStarts();
inline constexpr std::array<std::uint8_t, 256> kTrailOffsets = makeTrailOffsets();

}  // namespace jis_plane_detail

// The Shift_JIS code at an index of the plane (planeIndex, shiftJisIndex), no code where nothing is
// assigned. Rows 89 to 92 are not in here.
inline CodeBytes shiftJisAt(unsigned int index) { return jis_plane_detail::kShiftJis[index]; }

// The index of a Shift_JIS code; that of no assigned position when the bytes are no code, or one
// of the rows behind 94.
inline unsigned int shiftJisIndex(unsigned char lead, unsigned char trail) {
  return unsigned{jis_plane_detail::kLeadStarts[lead]} + jis_plane_detail::kTrailOffsets[trail];
}

constexpr bool isShiftJisLead(unsigned int byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}
constexpr bool isShiftJisTrail(unsigned int byte) {
  return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}
constexpr bool isHalfWidthKatakana(unsigned int byte) { return byte >= 0xA1 && byte <= 0xDF; }

// Rows 89 to 92: 376 positions, which the last-block list maps.
constexpr unsigned int kLastBlockFirst = 0x79;  // first byte of row 89
constexpr unsigned int kLastBlockLast = 0x7C;   // and of row 92
// The two positions of the list that have no character.
constexpr bool isEmptyInLastBlock(unsigned int position) {
  return position == 360 || position == 361;
}

// Pairs in the two directions, as codecs do them (pair_runs.h). Eight at a time are computed, in
// the rows that nearly all text consists of; the tables know every assigned pair.
namespace jis_plane_detail {

using codec_vectors::Bytes;
using codec_vectors::inBox;
using codec_vectors::SignedWords;
using codec_vectors::Words;

// The lanes with assigned JIS pairs of those rows.
inline SignedWords isRegular(Bytes pairs) {
  const SignedWords kanji =
      inBox(pairs, {0x30, 0x73, 0x21, 0x7E}) & ~inBox(pairs, {0x4F, 0x4F, 0x54, 0x7E});
  const SignedWords signs = inBox(pairs, {0x21, 0x21, 0x21, 0x7E});
  const SignedWords kana = inBox(pairs, {0x24, 0x25, 0x21, 0x73});
  const SignedWords digits = inBox(pairs, {0x23, 0x23, 0x30, 0x39});
  const SignedWords letters =
      inBox(pairs | codec_vectors::repeat(0, 0x20), {0x23, 0x23, 0x61, 0x7A});
  return kanji | signs | kana | digits | letters;
}

}  // namespace jis_plane_detail

struct JisToShiftJis {
  static bool one(const unsigned char* pair, unsigned char* dest) {
    const CodeBytes code = shiftJisAt(planeIndex(pair[0], pair[1]));
    if (code.first == 0) return false;
    dest[0] = code.first;
    dest[1] = code.second;
    return true;
  }
  static codec_vectors::Words eight(codec_vectors::Words pairs, codec_vectors::SignedWords& known) {
    using namespace jis_plane_detail;
    known = isRegular(reinterpret_cast<Bytes>(pairs));
    const auto row = reinterpret_cast<SignedWords>(pairs & 0xFF);
    const auto cell = reinterpret_cast<SignedWords>(pairs >> 8);
    const SignedWords lead = ((row + 1) >> 1) + 0x70 + ((row > 0x5E) & 0x40);
    const SignedWords odd = -(row & 1);
    const SignedWords trail = cell + 0x7E - (odd & (0x5F + (cell >= 0x60)));
    return reinterpret_cast<Words>(lead | (trail << 8));
  }
};

struct ShiftJisToJis {
  static bool one(const unsigned char* pair, unsigned char* dest) {
    const unsigned int index = shiftJisIndex(pair[0], pair[1]);
    if (shiftJisAt(index).first == 0) return false;
    const unsigned int row = index / kRowStride;
    dest[0] = static_cast<unsigned char>(0x21 + row);
    dest[1] = static_cast<unsigned char>(0x21 + index - row * kRowStride);
    return true;
  }
  static codec_vectors::Words eight(codec_vectors::Words pairs, codec_vectors::SignedWords& known) {
    using namespace jis_plane_detail;
    const auto lead = reinterpret_cast<SignedWords>(pairs & 0xFF);
    const auto trail = reinterpret_cast<SignedWords>(pairs >> 8);
    const SignedWords even = trail >= 0x9F;
    const SignedWords row = 2 * (lead - ((lead >= 0xE0) & 0x40)) - 0xE1 - even;
    const SignedWords cell = trail - 0x1F - (even & 0x5F) + (~even & (trail >= 0x80));
    const auto jis = reinterpret_cast<Words>(row | (cell << 8));
    const auto bytes = reinterpret_cast<Bytes>(pairs);
    known = (inBox(bytes, {0x81, 0x9F, 0x40, 0xFC}) | inBox(bytes, {0xE0, 0xE9, 0x40, 0xFC})) &
            ~(trail == 0x7F) & isRegular(reinterpret_cast<Bytes>(jis));
    return jis;
  }
};

#endif  // ENCODING_CODECS_JIS_PLANE_H_
