// The names of every encoding that the engine converts: data only. Looked up and published by
// support/charset_naming.cpp, which also fails to compile if two of them mean the same.
#ifndef SUPPORT_CHARSET_NAME_ROWS_H_
#define SUPPORT_CHARSET_NAME_ROWS_H_

#include "support/charset_naming.h"

struct CharsetNameRow {
  int codePage;
  const char* preferredName;  // registered with IANA where there is one
  const char* aliases;        // separated by single spaces
  CharsetKind kind;
  const char* description;
};

// In ascending order of code page. The aliases are those registered with IANA, the labels of the
// Encoding Standard where they mean this very encoding, the names that Windows and .NET give the
// code page, and a few spellings of C libraries and programming languages. Left out are spellings
// that match another one of the row (iso8859-1, ISO_8859-1), the forms that every number has (1252,
// cp1252, windows-1252) unless a registry lists them, and names of encodings that merely resemble
// one here: such text would be converted wrongly, so the name is better unknown.
inline constexpr CharsetNameRow kCharsetNameRows[] = {
    {37, "IBM037", "cp037 csIBM037 ebcdic-cp-us ebcdic-cp-ca ebcdic-cp-nl ebcdic-cp-wt",
     CharsetKind::kSingleByte, "EBCDIC, US and Canada"},
    {437, "IBM437", "cp437 csPC8CodePage437", CharsetKind::kSingleByte, "DOS, United States"},
    {500, "IBM500", "cp500 csIBM500 ebcdic-cp-be ebcdic-cp-ch", CharsetKind::kSingleByte,
     "EBCDIC, international"},
    // IANA lists ASMO-708 under ISO-8859-6, whose letters it shares; the code page adds others.
    {708, "ASMO-708", "", CharsetKind::kSingleByte, "Arabic, ASMO 708"},
    {720, "DOS-720", "IBM720", CharsetKind::kSingleByte, "DOS, Arabic"},
    {737, "IBM737", "", CharsetKind::kSingleByte, "DOS, Greek"},
    {775, "IBM775", "cp775 csPC775Baltic", CharsetKind::kSingleByte, "DOS, Baltic"},
    {850, "IBM850", "cp850 csPC850Multilingual", CharsetKind::kSingleByte, "DOS, Western European"},
    {852, "IBM852", "cp852 csPCp852", CharsetKind::kSingleByte, "DOS, Central European"},
    {855, "IBM855", "cp855 csIBM855", CharsetKind::kSingleByte, "DOS, Cyrillic (Serbia, Bulgaria)"},
    {857, "IBM857", "cp857 csIBM857", CharsetKind::kSingleByte, "DOS, Turkish"},
    {858, "IBM00858", "CCSID00858 CP00858 csIBM00858 PC-Multilingual-850+euro",
     CharsetKind::kSingleByte, "DOS, Western European with euro"},
    {860, "IBM860", "cp860 csIBM860", CharsetKind::kSingleByte, "DOS, Portuguese"},
    {861, "IBM861", "cp861 csIBM861 cp-is", CharsetKind::kSingleByte, "DOS, Icelandic"},
    {862, "IBM862", "cp862 csPC862LatinHebrew DOS-862", CharsetKind::kSingleByte, "DOS, Hebrew"},
    {863, "IBM863", "cp863 csIBM863", CharsetKind::kSingleByte, "DOS, French Canadian"},
    {864, "IBM864", "cp864 csIBM864", CharsetKind::kSingleByte, "IBM PC, Arabic"},
    {865, "IBM865", "cp865 csIBM865", CharsetKind::kSingleByte, "DOS, Nordic"},
    {866, "IBM866", "cp866 csIBM866", CharsetKind::kSingleByte, "DOS, Cyrillic (Russian)"},
    {869, "IBM869", "cp869 csIBM869 cp-gr", CharsetKind::kSingleByte, "IBM PC, modern Greek"},
    {870, "IBM870", "cp870 csIBM870 ebcdic-cp-roece ebcdic-cp-yu", CharsetKind::kSingleByte,
     "EBCDIC, Central European"},
    // Serves the Thai standards too, of which it is a superset.
    {874, "windows-874",
     "cswindows874 ms874 DOS-874 x-windows-874 TIS-620 csTIS620 TIS620-0 TIS620.2529-1 "
     "TIS620.2533-0 iso-ir-166 "
     "ISO-8859-11 ISO_8859-11:2001",
     CharsetKind::kSingleByte, "Windows, Thai"},
    {875, "cp875", "IBM875 x-EBCDIC-GreekModern", CharsetKind::kSingleByte, "EBCDIC, modern Greek"},
    {932, "Shift_JIS",
     "csShiftJIS MS_Kanji SJIS x-sjis Windows-31J csWindows31J windows-932 ms932 x-ms-cp932 PCK",
     CharsetKind::kDoubleByte, "Windows, Japanese (Shift_JIS)"},
    // The Windows code page is read wherever GB 2312 is announced, as browsers do.
    {936, "GBK",
     "csGBK cp936 ms936 windows-936 x-gbk GB2312 csGB2312 GB_2312-80 csISO58GB231280 "
     "csGB231280 iso-ir-58 chinese cn-gb",
     CharsetKind::kDoubleByte, "Windows, simplified Chinese (GBK)"},
    {949, "KS_C_5601-1987",
     "csKSC56011987 KS_C_5601 KS_C_5601-1989 iso-ir-149 korean windows-949 ms949 mscp949 "
     "x-windows-949 UHC",
     CharsetKind::kDoubleByte, "Windows, Korean (Unified Hangul Code)"},
    {950, "Big5", "csBig5 cn-big5 x-x-big5 Big-Five windows-950 ms950 x-windows-950",
     CharsetKind::kDoubleByte, "Windows, traditional Chinese (Big5)"},
    {1026, "IBM1026", "cp1026 csIBM1026", CharsetKind::kSingleByte, "EBCDIC, Turkish (Latin 5)"},
    {1047, "IBM1047", "cp1047 csIBM1047", CharsetKind::kSingleByte, "EBCDIC, Latin 1 open systems"},
    {1140, "IBM01140", "CCSID01140 CP01140 csIBM01140 ebcdic-us-37+euro x-ebcdic-cp-us-euro",
     CharsetKind::kSingleByte, "EBCDIC, US and Canada with euro"},
    {1141, "IBM01141", "CCSID01141 CP01141 csIBM01141 ebcdic-de-273+euro x-ebcdic-germany-euro",
     CharsetKind::kSingleByte, "EBCDIC, German with euro"},
    {1142, "IBM01142",
     "CCSID01142 CP01142 csIBM01142 ebcdic-dk-277+euro ebcdic-no-277+euro "
     "x-ebcdic-denmarknorway-euro",
     CharsetKind::kSingleByte, "EBCDIC, Danish and Norwegian with euro"},
    {1143, "IBM01143",
     "CCSID01143 CP01143 csIBM01143 ebcdic-fi-278+euro ebcdic-se-278+euro "
     "x-ebcdic-finlandsweden-euro",
     CharsetKind::kSingleByte, "EBCDIC, Finnish and Swedish with euro"},
    {1144, "IBM01144", "CCSID01144 CP01144 csIBM01144 ebcdic-it-280+euro x-ebcdic-italy-euro",
     CharsetKind::kSingleByte, "EBCDIC, Italian with euro"},
    {1145, "IBM01145", "CCSID01145 CP01145 csIBM01145 ebcdic-es-284+euro x-ebcdic-spain-euro",
     CharsetKind::kSingleByte, "EBCDIC, Spanish with euro"},
    {1146, "IBM01146", "CCSID01146 CP01146 csIBM01146 ebcdic-gb-285+euro x-ebcdic-uk-euro",
     CharsetKind::kSingleByte, "EBCDIC, United Kingdom with euro"},
    {1147, "IBM01147", "CCSID01147 CP01147 csIBM01147 ebcdic-fr-297+euro x-ebcdic-france-euro",
     CharsetKind::kSingleByte, "EBCDIC, French with euro"},
    {1148, "IBM01148",
     "CCSID01148 CP01148 csIBM01148 ebcdic-international-500+euro x-ebcdic-international-euro",
     CharsetKind::kSingleByte, "EBCDIC, international with euro"},
    {1149, "IBM01149", "CCSID01149 CP01149 csIBM01149 ebcdic-is-871+euro x-ebcdic-icelandic-euro",
     CharsetKind::kSingleByte, "EBCDIC, Icelandic with euro"},
    // "UTF-16" without a byte order: the registration prefers big endian where no mark says, but
    // nearly all such text is little endian and the Encoding Standard reads it so. A mark in the
    // input decides either way. The same goes for UCS-2. (UCS-4 without a byte order is no name
    // here, because there C libraries and others disagree.)
    {1200, "UTF-16LE",
     "csUTF16LE UTF-16 csUTF16 unicode csUnicode unicodeFEFF ISO-10646-UCS-2 UCS-2 UCS-2LE",
     CharsetKind::kUnicode, "Unicode, UTF-16 little endian"},
    {1201, "UTF-16BE", "csUTF16BE unicodeFFFE UCS-2BE", CharsetKind::kUnicode,
     "Unicode, UTF-16 big endian"},
    {1250, "windows-1250", "cswindows1250 cp1250 x-cp1250 ms-ee IBM-1250", CharsetKind::kSingleByte,
     "Windows, Central European"},
    {1251, "windows-1251", "cswindows1251 cp1251 x-cp1251 ms-cyrl ansi-1251 IBM-1251",
     CharsetKind::kSingleByte, "Windows, Cyrillic"},
    {1252, "windows-1252", "cswindows1252 cp1252 x-cp1252 x-ansi ms-ansi IBM-1252",
     CharsetKind::kSingleByte, "Windows, Western European"},
    {1253, "windows-1253", "cswindows1253 cp1253 x-cp1253 ms-greek IBM-1253",
     CharsetKind::kSingleByte, "Windows, Greek"},
    {1254, "windows-1254", "cswindows1254 cp1254 x-cp1254 ms-turk IBM-1254",
     CharsetKind::kSingleByte, "Windows, Turkish"},
    {1255, "windows-1255", "cswindows1255 cp1255 x-cp1255 ms-hebr IBM-1255",
     CharsetKind::kSingleByte, "Windows, Hebrew"},
    {1256, "windows-1256", "cswindows1256 cp1256 x-cp1256 ms-arab IBM-1256",
     CharsetKind::kSingleByte, "Windows, Arabic"},
    {1257, "windows-1257", "cswindows1257 cp1257 x-cp1257 winbaltrim IBM-1257",
     CharsetKind::kSingleByte, "Windows, Baltic"},
    {1258, "windows-1258", "cswindows1258 cp1258 x-cp1258 IBM-1258", CharsetKind::kSingleByte,
     "Windows, Vietnamese"},
    {1361, "Johab", "x-johab ms1361 mscp1361 ksc5601_1992", CharsetKind::kDoubleByte,
     "Korean, Johab"},
    {10000, "macintosh", "csMacintosh mac MacRoman x-mac-roman", CharsetKind::kSingleByte,
     "Mac, Western European (Roman)"},
    {10001, "x-mac-japanese", "MacJapanese", CharsetKind::kDoubleByte, "Mac, Japanese"},
    {10004, "x-mac-arabic", "MacArabic", CharsetKind::kSingleByte, "Mac, Arabic"},
    {10005, "x-mac-hebrew", "MacHebrew", CharsetKind::kSingleByte, "Mac, Hebrew"},
    {10006, "x-mac-greek", "MacGreek", CharsetKind::kSingleByte, "Mac, Greek"},
    {10007, "x-mac-cyrillic", "MacCyrillic ms-mac-cyrillic", CharsetKind::kSingleByte,
     "Mac, Cyrillic"},
    {10010, "x-mac-romanian", "MacRomanian x-mac-romania MacRomania", CharsetKind::kSingleByte,
     "Mac, Romanian"},
    // Browsers take this name for the Cyrillic of 10007; here it has a table of its own.
    {10017, "x-mac-ukrainian", "MacUkrainian x-mac-ukraine MacUkraine", CharsetKind::kSingleByte,
     "Mac, Ukrainian"},
    {10021, "x-mac-thai", "MacThai", CharsetKind::kSingleByte, "Mac, Thai"},
    {10029, "x-mac-ce",
     "MacCE MacLatin2 MacCentralEurope x-mac-centraleurope MacCentralEurRoman "
     "x-mac-centraleurroman",
     CharsetKind::kSingleByte, "Mac, Central European"},
    {10079, "x-mac-icelandic", "MacIcelandic x-mac-iceland MacIceland", CharsetKind::kSingleByte,
     "Mac, Icelandic"},
    {10081, "x-mac-turkish", "MacTurkish", CharsetKind::kSingleByte, "Mac, Turkish"},
    {10082, "x-mac-croatian", "MacCroatian", CharsetKind::kSingleByte, "Mac, Croatian"},
    {12000, "UTF-32LE", "csUTF32LE UTF-32 csUTF32 UCS-4LE", CharsetKind::kUnicode,
     "Unicode, UTF-32 little endian"},
    {12001, "UTF-32BE", "csUTF32BE UCS-4BE", CharsetKind::kUnicode, "Unicode, UTF-32 big endian"},
    {20105, "x-IA5", "ISO_646.irv:1983 csISO2IntlRefVersion iso-ir-2 irv", CharsetKind::kSingleByte,
     "7-bit, international reference version of 1983"},
    {20106, "x-IA5-German", "DIN_66003 ISO646-DE csISO21German iso-ir-21 de German",
     CharsetKind::kSingleByte, "7-bit, German"},
    // Windows itself gives these two the names of SEN_850200_B and NS_4551-1, but their tables have
    // the letters and signs of the other variant of each standard.
    {20107, "x-IA5-Swedish", "SEN_850200_C ISO646-SE2 csISO11SwedishForNames iso-ir-11 se2 Swedish",
     CharsetKind::kSingleByte, "7-bit, Swedish (for names)"},
    {20108, "x-IA5-Norwegian", "NS_4551-2 ISO646-NO2 csISO61Norwegian2 iso-ir-61 no2 Norwegian",
     CharsetKind::kSingleByte, "7-bit, Norwegian"},
    {20127, "US-ASCII",
     "ASCII csASCII us ANSI_X3.4-1968 ANSI_X3.4-1986 ISO646-US ISO_646.irv:1991 iso-ir-6 IBM367 "
     "cp367",
     CharsetKind::kSingleByte, "7-bit, US-ASCII"},
    // No names of T.61 and ISO 6937: their accents stand before the letter, which a table of single
    // characters does not turn round.
    {20261, "x-cp20261", "", CharsetKind::kSingleByte, "T.61, accents as separate characters"},
    {20269, "x-cp20269", "", CharsetKind::kSingleByte, "ISO 6937, accents as separate characters"},
    {20273, "IBM273", "cp273 csIBM273 x-EBCDIC-Germany", CharsetKind::kSingleByte,
     "EBCDIC, German"},
    {20277, "IBM277", "cp277 csIBM277 EBCDIC-CP-DK EBCDIC-CP-NO x-EBCDIC-DenmarkNorway",
     CharsetKind::kSingleByte, "EBCDIC, Danish and Norwegian"},
    {20278, "IBM278", "cp278 csIBM278 ebcdic-cp-fi ebcdic-cp-se x-EBCDIC-FinlandSweden",
     CharsetKind::kSingleByte, "EBCDIC, Finnish and Swedish"},
    {20280, "IBM280", "cp280 csIBM280 ebcdic-cp-it x-EBCDIC-Italy", CharsetKind::kSingleByte,
     "EBCDIC, Italian"},
    {20284, "IBM284", "cp284 csIBM284 ebcdic-cp-es x-EBCDIC-Spain", CharsetKind::kSingleByte,
     "EBCDIC, Spanish"},
    {20285, "IBM285", "cp285 csIBM285 ebcdic-cp-gb x-EBCDIC-UK", CharsetKind::kSingleByte,
     "EBCDIC, United Kingdom"},
    {20290, "IBM290", "cp290 csIBM290 EBCDIC-JP-kana x-EBCDIC-JapaneseKatakana",
     CharsetKind::kSingleByte, "EBCDIC, Japanese katakana"},
    {20297, "IBM297", "cp297 csIBM297 ebcdic-cp-fr x-EBCDIC-France", CharsetKind::kSingleByte,
     "EBCDIC, French"},
    {20420, "IBM420", "cp420 csIBM420 ebcdic-cp-ar1 x-EBCDIC-Arabic", CharsetKind::kSingleByte,
     "EBCDIC, Arabic"},
    {20423, "IBM423", "cp423 csIBM423 ebcdic-cp-gr x-EBCDIC-Greek", CharsetKind::kSingleByte,
     "EBCDIC, Greek"},
    {20424, "IBM424", "cp424 csIBM424 ebcdic-cp-he x-EBCDIC-Hebrew", CharsetKind::kSingleByte,
     "EBCDIC, Hebrew"},
    {20838, "IBM-Thai", "csIBMThai IBM838 cp838 x-EBCDIC-Thai", CharsetKind::kSingleByte,
     "EBCDIC, Thai"},
    {20866, "KOI8-R", "csKOI8R koi8 koi IBM878 cp878", CharsetKind::kSingleByte, "Russian, KOI8-R"},
    {20871, "IBM871", "cp871 csIBM871 ebcdic-cp-is x-EBCDIC-Icelandic", CharsetKind::kSingleByte,
     "EBCDIC, Icelandic"},
    {20880, "IBM880", "cp880 csIBM880 EBCDIC-Cyrillic x-EBCDIC-CyrillicRussian",
     CharsetKind::kSingleByte, "EBCDIC, Cyrillic (Russian)"},
    {20905, "IBM905", "cp905 csIBM905 ebcdic-cp-tr x-EBCDIC-Turkish", CharsetKind::kSingleByte,
     "EBCDIC, Turkish (Latin 3)"},
    {20924, "IBM00924", "CCSID00924 CP00924 csIBM00924 ebcdic-Latin9--euro",
     CharsetKind::kSingleByte, "EBCDIC, Latin 9 with euro"},
    {21025, "cp1025", "IBM1025 x-EBCDIC-CyrillicSerbianBulgarian", CharsetKind::kSingleByte,
     "EBCDIC, Cyrillic (Serbian, Bulgarian)"},
    {21866, "KOI8-U", "csKOI8U koi8-ru IBM1168 cp1168", CharsetKind::kSingleByte,
     "Ukrainian, KOI8-U"},
    {28591, "ISO-8859-1", "ISO_8859-1:1987 csISOLatin1 latin1 l1 iso-ir-100 IBM819 cp819",
     CharsetKind::kSingleByte, "ISO 8859-1, Western European"},
    {28592, "ISO-8859-2", "ISO_8859-2:1987 csISOLatin2 latin2 l2 iso-ir-101 IBM912 cp912",
     CharsetKind::kSingleByte, "ISO 8859-2, Central European"},
    {28593, "ISO-8859-3", "ISO_8859-3:1988 csISOLatin3 latin3 l3 iso-ir-109 IBM913 cp913",
     CharsetKind::kSingleByte, "ISO 8859-3, South European"},
    {28594, "ISO-8859-4", "ISO_8859-4:1988 csISOLatin4 latin4 l4 iso-ir-110 IBM914 cp914",
     CharsetKind::kSingleByte, "ISO 8859-4, Baltic"},
    {28595, "ISO-8859-5", "ISO_8859-5:1988 csISOLatinCyrillic cyrillic iso-ir-144 IBM915 cp915",
     CharsetKind::kSingleByte, "ISO 8859-5, Cyrillic"},
    {28596, "ISO-8859-6",
     "ISO_8859-6:1987 csISOLatinArabic arabic iso-ir-127 ECMA-114 ISO-8859-6-E csISO88596E "
     "ISO-8859-6-I csISO88596I IBM1089 cp1089",
     CharsetKind::kSingleByte, "ISO 8859-6, Arabic"},
    {28597, "ISO-8859-7",
     "ISO_8859-7:1987 csISOLatinGreek greek greek8 iso-ir-126 ELOT_928 ECMA-118 sun_eu_greek "
     "IBM813 "
     "cp813",
     CharsetKind::kSingleByte, "ISO 8859-7, Greek"},
    {28598, "ISO-8859-8",
     "ISO_8859-8:1988 csISOLatinHebrew hebrew iso-ir-138 visual ISO-8859-8-E csISO88598E IBM916 "
     "cp916",
     CharsetKind::kSingleByte, "ISO 8859-8, Hebrew, visual order"},
    {28599, "ISO-8859-9", "ISO_8859-9:1989 csISOLatin5 latin5 l5 iso-ir-148 IBM920 cp920",
     CharsetKind::kSingleByte, "ISO 8859-9, Turkish"},
    {28603, "ISO-8859-13", "csISO885913 latin7 l7 iso-ir-179", CharsetKind::kSingleByte,
     "ISO 8859-13, Baltic"},
    {28605, "ISO-8859-15",
     "csISO885915 Latin-9 csISOLatin9 l9 iso-ir-203 ISO_8859-15:1998 IBM923 cp923",
     CharsetKind::kSingleByte, "ISO 8859-15, Western European with euro"},
    {38598, "ISO-8859-8-I", "csISO88598I logical", CharsetKind::kSingleByte,
     "ISO 8859-8, Hebrew, logical order"},
    // The three are converted alike. csISO2022JP, which IANA lists under ISO-2022-JP, is the name
    // by which Windows tells 50221 from 50220.
    {50220, "ISO-2022-JP", "", CharsetKind::kStateful, "Japanese, ISO-2022-JP"},
    {50221, "csISO2022JP", "_iso-2022-jp$ESC", CharsetKind::kStateful,
     "Japanese, ISO-2022-JP with katakana by escape"},
    {50222, "cp50222", "_iso-2022-jp$SIO", CharsetKind::kStateful,
     "Japanese, ISO-2022-JP with katakana by shift"},
    {50225, "ISO-2022-KR", "csISO2022KR iso-2022-kr-7 iso-2022-kr-7bit", CharsetKind::kStateful,
     "Korean, ISO-2022-KR"},
    {51932, "EUC-JP",
     "csEUCPkdFmtJapanese Extended_UNIX_Code_Packed_Format_for_Japanese x-euc-jp x-euc "
     "iso-2022-jpeuc ujis IBM-eucJP",
     CharsetKind::kDoubleByte, "Japanese, EUC-JP"},
    {51936, "EUC-CN", "x-euc-cn IBM-eucCN", CharsetKind::kDoubleByte, "Simplified Chinese, EUC-CN"},
    {51949, "EUC-KR", "csEUCKR iso-2022-kr-8 iso-2022-kr-8bit IBM-eucKR", CharsetKind::kDoubleByte,
     "Korean, EUC-KR"},
    // Windows's number of HZ, served by the table of 936; the name hz-gb-2312 would promise the
    // escapes of HZ, which are not written here.
    {52936, "cp52936", "", CharsetKind::kDoubleByte, "Simplified Chinese, as 936"},
    {55000, "gsm", "gsm-03.38 gsm-default-alphabet", CharsetKind::kSingleByte,
     "GSM 03.38 default alphabet, one septet a byte"},
    {65000, "UTF-7",
     "csUTF7 UNICODE-1-1-UTF-7 csUnicode11UTF7 unicode-2-0-utf-7 x-unicode-1-1-utf-7 "
     "x-unicode-2-0-utf-7",
     CharsetKind::kUnicode, "Unicode, UTF-7"},
    {65001, "UTF-8",
     "csUTF8 unicode-1-1-utf-8 unicode-2-0-utf-8 x-unicode-1-1-utf-8 x-unicode-2-0-utf-8 IBM1208 "
     "cp1208",
     CharsetKind::kUnicode, "Unicode, UTF-8"},
    {65005, "cp65005", "", CharsetKind::kUnicode, "Unicode, UTF-32 little endian, as 12000"},
    {65006, "cp65006", "", CharsetKind::kUnicode, "Unicode, UTF-32 big endian, as 12001"},
};

#endif  // SUPPORT_CHARSET_NAME_ROWS_H_
