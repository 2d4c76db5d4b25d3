// The code page numbers that the front end gives a meaning of its own.
#ifndef ENCODING_SPECIAL_CODE_PAGES_H_
#define ENCODING_SPECIAL_CODE_PAGES_H_

#include "encoding/codecs/encoding_row.h"
#include "support/data_buffer.h"

inline constexpr int kShiftJis = 932;  // the pivot of ISO-2022-JP
inline constexpr int kKorean = 949;    // the pivot of ISO-2022-KR
inline constexpr int kUtf16Le = 1200;  // the pivot of every table-driven conversion
inline constexpr int kUtf16Be = 1201;
inline constexpr int kMacArabic = 10004;
inline constexpr int kUtf32Le = 12000;
inline constexpr int kUtf32Be = 12001;
inline constexpr int kUsAscii = 20127;
inline constexpr int kIso2022Kr = 50225;
inline constexpr int kGsm = 55000;
inline constexpr int kUtf7 = 65000;
inline constexpr int kUtf8 = 65001;

constexpr bool isIso2022Jp(int codePage) { return codePage >= 50220 && codePage <= 50222; }
inline bool hasForm(int codePage, EncodingForm form) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row != nullptr && row->form == form;
}
inline bool isUtf16(int codePage) { return hasForm(codePage, EncodingForm::kUtf16); }
inline bool isUtf32(int codePage) { return hasForm(codePage, EncodingForm::kUtf32); }
inline bool isUtf32Be(int codePage) {
  return isUtf32(codePage) && findEncodingRow(codePage)->bigEndian;
}
inline bool decomposesVietnamese(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row != nullptr && row->decomposesVietnamese;
}

// Whether text in US-ASCII is copied to the code page as it is.
constexpr bool copiesUsAscii(int toCodePage) {
  return (toCodePage >= 28591 && toCodePage <= 28605) ||
         (toCodePage >= 1250 && toCodePage <= 1258) || toCodePage == kUtf8;
}

// The bytes, each with its lowest bit set, that a text must begin with to have a byte order mark;
// no bytes for code pages without marks.
struct MarkBegin {
  unsigned int first = 0x100;
  unsigned int second = 0x100;

  constexpr bool begins(const unsigned char* data, unsigned int length) const {
    return (data[0] | 1u) == first && length > 1 && (data[1] | 1u) == second;
  }
};
inline MarkBegin markBegin(int codePage) {
  if (codePage == kUtf8) return {0xEF, 0xBB};
  return isUtf16(codePage) ? MarkBegin{0xFF, 0xFF} : MarkBegin{};
}

// Makes swapped hold the length bytes at data (whole units: length is a multiple of unitSize) with
// the bytes of each unit in reverse order. False when memory is short.
bool swapUnits(const unsigned char* data, unsigned int length, DataBuffer& swapped,
               unsigned int unitSize = 2);

#endif  // ENCODING_SPECIAL_CODE_PAGES_H_
