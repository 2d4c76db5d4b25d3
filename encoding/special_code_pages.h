// The code page numbers that the front end gives a meaning of its own.
#ifndef ENCODING_SPECIAL_CODE_PAGES_H_
#define ENCODING_SPECIAL_CODE_PAGES_H_

#include "encoding/codecs/encoding_row.h"

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
// Of what EncConvert converts.
inline bool hasForm(int codePage, EncodingForm form) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row != nullptr && row->inEngine && row->form == form;
}
inline bool isUtf16(int codePage) { return hasForm(codePage, EncodingForm::kUtf16); }
inline bool isUtf32(int codePage) { return hasForm(codePage, EncodingForm::kUtf32); }
inline bool decomposesVietnamese(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row != nullptr && row->decomposesVietnamese;
}

// Whether text in US-ASCII is copied to the code page as it is.
constexpr bool copiesUsAscii(int toCodePage) {
  return (toCodePage >= 28591 && toCodePage <= 28605) ||
         (toCodePage >= 1250 && toCodePage <= 1258) || toCodePage == kUtf8;
}

#endif  // ENCODING_SPECIAL_CODE_PAGES_H_
