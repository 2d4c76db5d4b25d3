// The names that iconv_open reads otherwise than the rest of the library: data only.
#ifndef ICONV_CHARSET_LIST_H_
#define ICONV_CHARSET_LIST_H_

#include <bit>

#include "iconv/charset.h"

namespace iconv_layer {

inline constexpr bool kIsBigEndian = std::endian::native == std::endian::big;
inline constexpr int kHostUtf16 = kIsBigEndian ? 1201 : 1200;
inline constexpr int kHostUtf32 = kIsBigEndian ? 12001 : 12000;

// By the C library of GNU, with which most programs that call iconv are written and tested.
inline constexpr CharsetMeaning kCharsetMeanings[] = {
    {"UTF-16", kHostUtf16, CharsetMeaning::Form::kMarked},
    {"UTF16", kHostUtf16, CharsetMeaning::Form::kMarked},
    {"UTF-32", kHostUtf32, CharsetMeaning::Form::kMarked},
    {"UNICODE", kHostUtf16, CharsetMeaning::Form::kMarkedUcs2},
    {"CSUNICODE", kHostUtf16, CharsetMeaning::Form::kMarkedUcs2},
    {"UCS-2", kHostUtf16, CharsetMeaning::Form::kUcs2},
    {"ISO-10646-UCS-2", kHostUtf16, CharsetMeaning::Form::kUcs2},
    {"UCS-2LE", 1200, CharsetMeaning::Form::kUcs2},
    {"UNICODELITTLE", 1200, CharsetMeaning::Form::kUcs2},
    {"UCS-2BE", 1201, CharsetMeaning::Form::kUcs2},
    {"UNICODEBIG", 1201, CharsetMeaning::Form::kUcs2},
    {"UCS-4", 12001},
    {"UCS-4BE", 12001},
    {"UCS-4LE", 12000},
    {"ISO-10646", 12001},
    {"10646-1:1993", 12001},
    {"CSUCS4", 12001},
    {"WCHAR_T", kHostUtf32},
    {"INTERNAL", kHostUtf32},
};

}  // namespace iconv_layer

#endif  // ICONV_CHARSET_LIST_H_
