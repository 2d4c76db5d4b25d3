// The names that iconv_open reads otherwise than the rest of the library: data only.
#ifndef ICONV_CHARSET_LIST_H_
#define ICONV_CHARSET_LIST_H_

#include <bit>

#include "iconv/charset.h"

namespace iconv_layer {

inline constexpr bool kIsBigEndian = std::endian::native == std::endian::big;
inline constexpr int kHostUtf16 = kIsBigEndian ? 1201 : 1200;
inline constexpr int kHostUtf32 = kIsBigEndian ? 12001 : 12000;

using Form = CharsetMeaning::Form;

// By the C library of GNU, with which most programs that call iconv are written and tested. The
// first name is what iconv_canonicalize gives.
inline constexpr CharsetMeaning kCharsetMeanings[] = {
    {kHostUtf16, Form::kMarked, "UTF-16", ""},
    {kHostUtf32, Form::kMarked, "UTF-32", ""},
    {kHostUtf16, Form::kMarkedUcs2, "UNICODE", "CSUNICODE"},
    {kHostUtf16, Form::kUcs2, "UCS-2", "ISO-10646-UCS-2"},
    {1200, Form::kUcs2, "UCS-2LE", "UNICODELITTLE"},
    {1201, Form::kUcs2, "UCS-2BE", "UNICODEBIG"},
    {12001, Form::kPlain, "UCS-4", "UCS-4BE ISO-10646 10646-1:1993 CSUCS4"},
    {12000, Form::kPlain, "UCS-4LE", ""},
    {kHostUtf32, Form::kWide, "WCHAR_T", ""},
    {kHostUtf32, Form::kWide, "INTERNAL", ""},
    // Windows's and IBM's code pages of the same names hold more, or something else.
    {200711, Form::kPlain, "BIG5", "BIG-FIVE CN-BIG5 CP950"},
    {874, Form::kStrict, "IBM874", "CP874 WINDOWS-874"},
    {1250, Form::kStrict, "CP1250", "MS-EE WINDOWS-1250"},
    {1251, Form::kStrict, "CP1251", "MS-CYRL WINDOWS-1251"},
    {1252, Form::kStrict, "CP1252", "MS-ANSI WINDOWS-1252"},
    {5349, Form::kStrict, "CP1253", "MS-GREEK WINDOWS-1253"},
    {1254, Form::kStrict, "CP1254", "MS-TURK WINDOWS-1254"},
    {9447, Form::kStrict, "CP1255", "MS-HEBR WINDOWS-1255"},
    {9449, Form::kStrict, "CP1257", "WINBALTRIM WINDOWS-1257"},
    {1258, Form::kStrict, "CP1258", "WINDOWS-1258"},
    {200727, Form::kPlain, "CP932", "WINDOWS-31J MS932 SJIS-OPEN SJIS-WIN CSWINDOWS31J"},
    {200701, Form::kPlain, "EUC-CN", "GB2312 csGB2312 CN-GB"},
    {200740, Form::kPlain, "EUC-KR", "CSEUCKR"},
    {200702, Form::kPlain, "GBK", "GB13000 CP936 MS936 WINDOWS-936"},
    {101047, Form::kPlain, "IBM1047", "CP1047 1047"},
    {100420, Form::kPlain, "IBM420", "CP420 EBCDIC-CP-AR1 CSIBM420"},
    {100856, Form::kPlain, "IBM856", "CP856 856 CSIBM856"},
    {100857, Form::kStrict, "IBM857", "CP857 857 CSIBM857"},
    {100869, Form::kStrict, "IBM869", "CP869 869 CP-GR CSIBM869"},
    {100913, Form::kPlain, "ISO-8859-3", "ISO-IR-109 ISO_8859-3:1988 LATIN3 L3 CSISOLATIN3 8859_3"},
    {101089, Form::kPlain, "ISO-8859-6",
     "ISO-IR-127 ISO_8859-6:1987 ECMA-114 ASMO-708 ARABIC CSISOLATINARABIC 8859_6 IBM1089 CP1089"},
    {9005, Form::kPlain, "ISO-8859-7",
     "ISO-IR-126 ISO_8859-7:2003 ISO_8859-7:1987 ELOT_928 ECMA-118 GREEK GREEK8 CSISOLATINGREEK "
     "8859_7 IBM813 CP813"},
    {5012, Form::kPlain, "ISO-8859-8",
     "ISO-IR-138 ISO_8859-8:1988 HEBREW CSISOLATINHEBREW 8859_8 IBM916 CP916"},
    {200741, Form::kPlain, "JOHAB", "MSCP1361 CP1361"},
    {200507, Form::kPlain, "KOI-8", ""},
    {101168, Form::kPlain, "KOI8-U", ""},
    {200455, Form::kPlain, "MACINTOSH", "MAC CSMACINTOSH"},
    {200721, Form::kPlain, "SJIS", "SHIFT-JIS MS_KANJI CSSHIFTJIS"},
    {200933, Form::kPlain, "ISO-2022-JP", "CSISO2022JP"},
    {200310, Form::kPlain, "TIS-620", "TIS620-0 TIS620.2529-1 TIS620.2533-0 ISO-IR-166"},
    {949, Form::kStrict, "UHC", "MSCP949 CP949"},
};

// Rows whose other shapes, of Arabic letters for the most part, the C library writes as well.
inline constexpr int kWritesOneWay[] = {1008, 1046, 1097, 4517, 4909, 4971, 9448, 16804};

}  // namespace iconv_layer

#endif  // ICONV_CHARSET_LIST_H_
