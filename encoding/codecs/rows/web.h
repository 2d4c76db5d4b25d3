// The encodings of the Encoding Standard, by whose labels browsers read the web, each as the
// standard has it: labels, characters, and what is malformed.
#ifndef ENCODING_CODECS_ROWS_WEB_H_
#define ENCODING_CODECS_ROWS_WEB_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/row_makers.h"
#include "encoding/codecs/web_encodings.h"
#include "encoding/tables/texts/table_texts.h"

namespace encoding_rows {

constexpr EncodingRow webCodec(int number, const char* name, const char* aliases,
                               const char* description, CharsetKind kind, const Codec* itsCodec) {
  return streamOnly(codec(number, name, aliases, description, kind, itsCodec));
}
constexpr EncodingRow webUnicode(int number, const char* name, const char* aliases,
                                 const char* description, EncodingForm form, bool bigEndian) {
  return with(&EncodingRow::hasWebRules,
              streamOnly(unicode(number, name, aliases, description, form, bigEndian)));
}

// The numbers are our own. The aliases are all labels, but for spellings that match another one.
// Where the standard has the table of a code page, the row has its text. UTF-16 and the replacement
// are not written: the standard writes UTF-8 there.
inline constexpr EncodingRow kWebRows[] = {
    webUnicode(200900, "web:utf-8", "web:unicode-1-1-utf-8 web:unicode20utf8 web:x-unicode20utf8",
               "Web, UTF-8", EncodingForm::kUtf8, false),
    streamOnly(single(200901, "web:ibm866", "web:866 web:cp866 web:csibm866", "Web, DOS, Cyrillic",
                      _Enc_cp866)),
    streamOnly(single(200902, "web:iso-8859-2",
                      "web:csisolatin2 web:iso-ir-101 web:iso_8859-2:1987 web:l2 web:latin2",
                      "Web, Central European", _Enc_iso_8859_2)),
    mapped(200903, "web:iso-8859-3",
           "web:csisolatin3 web:iso-ir-109 web:iso_8859-3:1988 web:l3 web:latin3",
           "Web, South European", &kMap_iso_8859_3_1999),
    streamOnly(single(200904, "web:iso-8859-4",
                      "web:csisolatin4 web:iso-ir-110 web:iso_8859-4:1988 web:l4 web:latin4",
                      "Web, Baltic", _Enc_iso_8859_4)),
    streamOnly(single(200905, "web:iso-8859-5",
                      "web:csisolatincyrillic web:cyrillic web:iso-ir-144 web:iso_8859-5:1988",
                      "Web, Cyrillic", _Enc_iso_8859_5)),
    mapped(200906, "web:iso-8859-6",
           "web:arabic web:asmo-708 web:csiso88596e web:csiso88596i web:csisolatinarabic "
           "web:ecma-114 web:iso-8859-6-e web:iso-8859-6-i web:iso-ir-127 web:iso_8859-6:1987",
           "Web, Arabic", &kMap_iso_8859_6_1999),
    mapped(200907, "web:iso-8859-7",
           "web:csisolatingreek web:ecma-118 web:elot_928 web:greek web:greek8 web:iso-ir-126 "
           "web:iso_8859-7:1987 web:sun_eu_greek",
           "Web, Greek", &kMap_iso_8859_7_2003),
    mapped(200908, "web:iso-8859-8",
           "web:csiso88598e web:csisolatinhebrew web:hebrew web:iso-8859-8-e web:iso-ir-138 "
           "web:iso_8859-8:1988 web:visual",
           "Web, Hebrew, visual order", &kMap_iso_8859_8_1999),
    mapped(200909, "web:iso-8859-8-i", "web:csiso88598i web:logical", "Web, Hebrew, logical order",
           &kMap_iso_8859_8_1999),
    streamOnly(single(200910, "web:iso-8859-10", "web:csisolatin6 web:iso-ir-157 web:l6 web:latin6",
                      "Web, Nordic", _Enc_iso_8859_10)),
    streamOnly(single(200911, "web:iso-8859-13", "", "Web, Baltic (part 13)", _Enc_iso_8859_13)),
    mapped(200912, "web:iso-8859-14", "", "Web, Celtic", &kMap_iso_8859_14),
    streamOnly(single(200913, "web:iso-8859-15", "web:csisolatin9 web:l9",
                      "Web, Western European with euro", _Enc_iso_8859_15)),
    mapped(200914, "web:iso-8859-16", "", "Web, South-Eastern European", &kMap_iso_8859_16),
    streamOnly(
        single(200915, "web:koi8-r", "web:cskoi8r web:koi web:koi8", "Web, Russian", _Enc_koi8_r)),
    streamOnly(single(200916, "web:koi8-u", "web:koi8-ru", "Web, Ukrainian", _Enc_koi8_u)),
    mapped(200917, "web:macintosh", "web:csmacintosh web:mac web:x-mac-roman",
           "Web, Mac, Western European", &kMap_mac_roman_euro),
    mapped(200918, "web:windows-874", "web:dos-874 web:iso-8859-11 web:tis-620", "Web, Thai",
           &kMap_ibm1162),
    streamOnly(single(200919, "web:windows-1250", "web:cp1250 web:x-cp1250",
                      "Web, Central European", _Enc_windows_1250)),
    streamOnly(single(200920, "web:windows-1251", "web:cp1251 web:x-cp1251", "Web, Cyrillic",
                      _Enc_windows_1251)),
    streamOnly(single(200921, "web:windows-1252",
                      "web:ansi_x3.4-1968 web:ascii web:cp1252 web:cp819 web:csisolatin1 "
                      "web:ibm819 web:iso-8859-1 web:iso-ir-100 web:iso_8859-1:1987 web:l1 "
                      "web:latin1 web:us-ascii web:x-cp1252",
                      "Web, Western European", _Enc_windows_1252)),
    mapped(200922, "web:windows-1253", "web:cp1253 web:x-cp1253", "Web, Greek",
           &kMap_web_windows_1253),
    streamOnly(single(200923, "web:windows-1254",
                      "web:cp1254 web:csisolatin5 web:iso-8859-9 web:iso-ir-148 "
                      "web:iso_8859-9:1989 web:l5 web:latin5 web:x-cp1254",
                      "Web, Turkish", _Enc_windows_1254)),
    mapped(200924, "web:windows-1255", "web:cp1255 web:x-cp1255", "Web, Hebrew",
           &kMap_web_windows_1255),
    streamOnly(single(200925, "web:windows-1256", "web:cp1256 web:x-cp1256", "Web, Arabic",
                      _Enc_windows_1256)),
    mapped(200926, "web:windows-1257", "web:cp1257 web:x-cp1257", "Web, Baltic", &kMap_ibm9449),
    streamOnly(single(200927, "web:windows-1258", "web:cp1258 web:x-cp1258", "Web, Vietnamese",
                      _Enc_windows_1258)),
    mapped(200928, "web:x-mac-cyrillic", "web:x-mac-ukrainian", "Web, Mac, Cyrillic",
           &kMap_mac_cyrillic_euro),
    webCodec(200929, "web:gbk",
             "web:chinese web:csgb2312 web:csiso58gb231280 web:gb2312 web:gb_2312-80 web:iso-ir-58 "
             "web:x-gbk",
             "Web, simplified Chinese", CharsetKind::kMultiByte, &kRuledCodec<kWebGbk>),
    webCodec(200930, "web:gb18030", "", "Web, Chinese, all of Unicode", CharsetKind::kMultiByte,
             &kRuledCodec<kWebGb18030>),
    webCodec(200931, "web:big5", "web:big5-hkscs web:cn-big5 web:csbig5 web:x-x-big5",
             "Web, traditional Chinese with Hong Kong", CharsetKind::kMultiByte,
             &kRuledCodec<kWebBig5>),
    webCodec(200932, "web:euc-jp", "web:cseucpkdfmtjapanese web:x-euc-jp", "Web, Japanese",
             CharsetKind::kMultiByte, &kRuledCodec<kWebEucJp>),
    webCodec(200933, "web:iso-2022-jp", "web:csiso2022jp", "Web, Japanese", CharsetKind::kStateful,
             &kWebIso2022JpCodec),
    webCodec(200934, "web:shift_jis",
             "web:csshiftjis web:ms932 web:ms_kanji web:sjis web:windows-31j web:x-sjis",
             "Web, Japanese", CharsetKind::kMultiByte, &kRuledCodec<kWebShiftJis>),
    webCodec(200935, "web:euc-kr",
             "web:cseuckr web:csksc56011987 web:iso-ir-149 web:korean web:ks_c_5601-1987 "
             "web:ks_c_5601-1989 web:ksc5601 web:windows-949",
             "Web, Korean", CharsetKind::kMultiByte, &kRuledCodec<kWebEucKr>),
    onlyRead(webCodec(
        200936, "web:replacement",
        "web:csiso2022kr web:hz-gb-2312 web:iso-2022-cn web:iso-2022-cn-ext web:iso-2022-kr",
        "Web, replacement: labels that are refused", CharsetKind::kStateful,
        &kWebReplacementCodec)),
    onlyRead(webUnicode(200937, "web:utf-16be", "web:unicodefffe",
                        "Web, UTF-16 big endian, only read", EncodingForm::kUtf16, true)),
    onlyRead(webUnicode(
        200938, "web:utf-16le",
        "web:csunicode web:iso-10646-ucs-2 web:ucs-2 web:unicode web:unicodefeff web:utf-16",
        "Web, UTF-16 little endian, only read", EncodingForm::kUtf16, false)),
    mapped(200939, "web:x-user-defined", "", "Web, bytes from 80 up as private use",
           &kMap_web_x_user_defined),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_WEB_H_
