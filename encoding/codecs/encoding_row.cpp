#include "encoding/codecs/encoding_row.h"

#include "encoding/codecs/encoding_row_list.h"

namespace {

using encoding_rows::kEncodings;

// A perfect hash from number to row: each row has a place of its own, so that finding one costs a
// multiplication and two loads.
constexpr int kIndexBits = 14;
constexpr std::uint16_t kNoRow = 0xFFFF;
static_assert(kEncodings.size() < kNoRow);

struct RowIndex {
  std::uint32_t multiplier;
  std::uint16_t rows[1 << kIndexBits];

  constexpr std::size_t placeOf(int number) const {
    return static_cast<std::uint32_t>(number) * multiplier >> (32 - kIndexBits);
  }
};

// Tries multipliers until one gives every row a place of its own.
constexpr RowIndex kRowIndex = [] {
  RowIndex index{0x9E3779B1u, {}};
  for (;; index.multiplier += 2) {
    std::ranges::fill(index.rows, kNoRow);
    std::size_t i = 0;
    for (; i < kEncodings.size(); ++i) {
      std::uint16_t& row = index.rows[index.placeOf(kEncodings[i].number)];
      if (row != kNoRow) break;
      row = static_cast<std::uint16_t>(i);
    }
    if (i == kEncodings.size()) return index;
  }
}();

using namespace std::string_view_literals;
constexpr Mark kUtf8Marks[] = {{"\xEF\xBB\xBF"sv, false}};
constexpr Mark kUtf16Marks[] = {{"\xFF\xFE"sv, false}, {"\xFE\xFF"sv, true}};
constexpr Mark kUtf32Marks[] = {{"\xFF\xFE\0\0"sv, false}, {"\0\0\xFE\xFF"sv, true}};

}  // namespace

std::span<const EncodingRow> encodingRows() { return kEncodings; }

const EncodingRow* findEncodingRow(int number) {
  const std::uint16_t row = kRowIndex.rows[kRowIndex.placeOf(number)];
  return row != kNoRow && kEncodings[row].number == number ? &kEncodings[row] : nullptr;
}

std::span<const Mark> marksOf(const EncodingRow& row) {
  switch (row.form) {
    case EncodingForm::kUtf8:
      return kUtf8Marks;
    case EncodingForm::kUtf16:
      if (row.hasWebRules) return std::span(kUtf16Marks).subspan(row.bigEndian ? 1 : 0, 1);
      return kUtf16Marks;
    case EncodingForm::kUtf32:
      return kUtf32Marks;
    default:
      return {};
  }
}

std::string_view markOf(const EncodingRow& row) {
  for (const Mark& mark : marksOf(row)) {
    if (mark.bigEndian == row.bigEndian) return mark.bytes;
  }
  return {};
}

bool beginsWithMark(const EncodingRow& row, const unsigned char* text, std::size_t length) {
  const std::string_view bytes(reinterpret_cast<const char*>(text), length);
  return std::ranges::any_of(marksOf(row),
                             [&](const Mark& mark) { return bytes.starts_with(mark.bytes); });
}
