#include "encoding/tables/code_pages.h"

#include <array>
#include <cstddef>

#include "encoding/tables/texts/table_texts.h"

namespace {

constexpr CodePageRow single(int codePage, const char* text) {
  return {.codePage = codePage,
          .text = text,
          .appendText = nullptr,
          .toUnicodeSize = 283,
          .fromUnicodeSize = 269,
          .isDoubleByte = false,
          .isDispatched = true,
          .isReleased = true,
          .slot = 0};
}

// ISO 8859-10 and -11: the tables are built, on request, and nothing converts with them; teardown
// leaves them alone.
constexpr CodePageRow undispatched(int codePage, const char* text) {
  CodePageRow row = single(codePage, text);
  row.isDispatched = false;
  row.isReleased = false;
  return row;
}

constexpr CodePageRow multi(int codePage, void (*appendText)(StringBuffer&), std::uint16_t size) {
  CodePageRow row = single(codePage, nullptr);
  row.appendText = appendText;
  row.toUnicodeSize = size;
  row.fromUnicodeSize = size;
  row.isDoubleByte = true;
  return row;
}

// Both texts: the differences are applied over the pieces.
constexpr CodePageRow multiOver(int codePage, const char* differences,
                                void (*appendText)(StringBuffer&), std::uint16_t size) {
  CodePageRow row = multi(codePage, appendText, size);
  row.text = differences;
  return row;
}

// 28602 and 28604 (ISO 8859-12 and -14) have no table. The text of 28591 is that of 1252, that of
// 20261 is that of 20269, 51936's is 936's and 38598's is 28598's.
constexpr CodePageRow kRowsWithoutSlots[] = {
    single(28591, _Enc_iso_8859_1),
    single(28592, _Enc_iso_8859_2),
    single(28593, _Enc_iso_8859_3),
    single(28594, _Enc_iso_8859_4),
    single(28595, _Enc_iso_8859_5),
    single(28596, _Enc_iso_8859_6),
    single(28597, _Enc_iso_8859_7),
    single(28598, _Enc_iso_8859_8),
    single(28599, _Enc_iso_8859_9),
    undispatched(28600, _Enc_iso_8859_10),
    undispatched(28601, _Enc_iso_8859_11),
    single(28603, _Enc_iso_8859_13),
    single(28605, _Enc_iso_8859_15),
    single(1250, _Enc_windows_1250),
    single(1251, _Enc_windows_1251),
    single(1252, _Enc_windows_1252),
    single(1253, _Enc_windows_1253),
    single(1254, _Enc_windows_1254),
    single(1255, _Enc_windows_1255),
    single(1256, _Enc_windows_1256),
    single(1257, _Enc_windows_1257),
    single(1258, _Enc_windows_1258),
    single(37, _Enc_IBM037),
    single(437, _Enc_IBM437),
    single(500, _Enc_IBM500),
    single(708, _Enc_ASMO_708),
    single(720, _Enc_DOS_720),
    single(737, _Enc_ibm737),
    single(775, _Enc_ibm775),
    single(850, _Enc_ibm850),
    single(852, _Enc_ibm852),
    single(855, _Enc_IBM855),
    single(857, _Enc_ibm857),
    single(858, _Enc_IBM00858),
    single(860, _Enc_IBM860),
    single(861, _Enc_ibm861),
    single(862, _Enc_DOS_862),
    single(863, _Enc_IBM863),
    single(864, _Enc_IBM864),
    single(865, _Enc_IBM865),
    single(866, _Enc_cp866),
    single(869, _Enc_ibm869),
    single(870, _Enc_IBM870),
    single(874, _Enc_windows_874),
    single(875, _Enc_cp875),
    single(1026, _Enc_IBM1026),
    single(1047, _Enc_IBM01047),
    single(1140, _Enc_IBM01140),
    single(1141, _Enc_IBM01141),
    single(1142, _Enc_IBM01142),
    single(1143, _Enc_IBM01143),
    single(1144, _Enc_IBM01144),
    single(1145, _Enc_IBM01145),
    single(1146, _Enc_IBM01146),
    single(1147, _Enc_IBM01147),
    single(1148, _Enc_IBM01148),
    single(1149, _Enc_IBM01149),
    single(10000, _Enc_macintosh),
    single(10004, _Enc_x_mac_arabic),
    single(10005, _Enc_x_mac_hebrew),
    single(10006, _Enc_x_mac_greek),
    single(10007, _Enc_x_mac_cyrillic),
    single(10010, _Enc_x_mac_romanian),
    single(10017, _Enc_x_mac_ukrainian),
    single(10021, _Enc_x_mac_thai),
    single(10029, _Enc_x_mac_ce),
    single(10079, _Enc_x_mac_icelandic),
    single(10081, _Enc_x_mac_turkish),
    single(10082, _Enc_x_mac_croatian),
    single(20105, _Enc_x_IA5),
    single(20106, _Enc_x_IA5_German),
    single(20107, _Enc_x_IA5_Swedish),
    single(20108, _Enc_x_IA5_Norwegian),
    single(20127, _Enc_us_ascii),
    single(20261, _Enc_x_cp20261),
    single(20269, _Enc_x_cp20269),
    single(20273, _Enc_IBM273),
    single(20277, _Enc_IBM277),
    single(20278, _Enc_IBM278),
    single(20280, _Enc_IBM280),
    single(20284, _Enc_IBM284),
    single(20285, _Enc_IBM285),
    single(20290, _Enc_IBM290),
    single(20297, _Enc_IBM297),
    single(20420, _Enc_IBM420),
    single(20423, _Enc_IBM423),
    single(20424, _Enc_IBM424),
    single(20838, _Enc_IBM_Thai),
    single(20866, _Enc_koi8_r),
    single(20871, _Enc_IBM871),
    single(20880, _Enc_IBM880),
    single(20905, _Enc_IBM905),
    single(20924, _Enc_IBM00924),
    single(21025, _Enc_cp1025),
    single(21866, _Enc_koi8_u),
    single(38598, _Enc_iso_8859_8_i),

    multi(932, GetEncShiftJis, 25183),
    multiOver(10001, _Enc_x_mac_japanese, GetEncShiftJis, 23021),
    multi(949, GetKorean, 32749),
    multi(1361, GetJohab, 32749),
    multi(950, GetBig5, 38459),
    multi(936, GetGb2312, 46811),
    multi(52936, GetGb2312, 46811),
    multi(51932, GetEucJP, 25873),
    multi(51936, GetEucCN, 38459),
    multi(51949, GetEucKR, 32749),
};
constexpr std::size_t kRowCount = std::size(kRowsWithoutSlots);
constexpr std::size_t kSlotCount = kRowCount - 1;

// Gives each row the next slot; 52936 shares the slot of 936, which stands in front of it.
constexpr std::array<CodePageRow, kRowCount> numberSlots() {
  std::array<CodePageRow, kRowCount> rows{};
  std::uint8_t next = 0;
  for (std::size_t i = 0; i < kRowCount; ++i) {
    rows[i] = kRowsWithoutSlots[i];
    rows[i].slot = rows[i].codePage == 52936 ? rows[i - 1].slot : next++;
  }
  return rows;
}
constexpr std::array<CodePageRow, kRowCount> kRows = numberSlots();
static_assert(kRows.back().slot + 1 == kSlotCount);

// A perfect hash from code page to row: each row has a place of its own, so that finding one costs
// a multiplication and two loads.
constexpr int kIndexBits = 11;
constexpr std::uint8_t kNoRow = 0xFF;
static_assert(kRowCount < kNoRow);

struct RowIndex {
  std::uint32_t multiplier;
  std::uint8_t rows[1 << kIndexBits];

  constexpr std::size_t placeOf(int codePage) const {
    return static_cast<std::uint32_t>(codePage) * multiplier >> (32 - kIndexBits);
  }
};

// Tries multipliers until one gives every row a place of its own.
constexpr RowIndex makeRowIndex() {
  RowIndex index{0x9E3779B1u, {}};
  for (bool isDone = false; !isDone; index.multiplier += 2) {
    for (std::uint8_t& row : index.rows) row = kNoRow;
    isDone = true;
    for (std::size_t i = 0; i < kRowCount && isDone; ++i) {
      std::uint8_t& row = index.rows[index.placeOf(kRows[i].codePage)];
      isDone = row == kNoRow;
      row = static_cast<std::uint8_t>(i);
    }
    if (isDone) return index;
  }
  return index;
}
constexpr RowIndex kRowIndex = makeRowIndex();

constinit TableSlots slots[kSlotCount] = {};

}  // namespace

std::span<const CodePageRow> codePageRows() { return kRows; }

const CodePageRow* findCodePageRow(int codePage) {
  const std::uint8_t row = kRowIndex.rows[kRowIndex.placeOf(codePage)];
  if (row == kNoRow || kRows[row].codePage != codePage) return nullptr;
  return &kRows[row];
}

TableSlots& tableSlots(const CodePageRow& row) { return slots[row.slot]; }
