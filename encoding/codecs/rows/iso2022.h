// The rows of the encodings of ISO 2022 that streams convert.
#ifndef ENCODING_CODECS_ROWS_ISO2022_H_
#define ENCODING_CODECS_ROWS_ISO2022_H_

#include "encoding/codecs/row_makers.h"

extern const Codec kIso2022CnCodec, kIso2022CnTraditionalCodec, kIso2022CnExtCodec,
    kIso2022Jp1Codec, kIso2022Jp2Codec, kIso2022Jp3Codec, kIso2022Jp2004Codec, kIso2022JpExtCodec,
    kJis8Codec, kCompoundTextCodec;

namespace encoding_rows {

constexpr EncodingRow iso2022(int number, const char* name, const char* aliases,
                              const char* description, const Codec* itsCodec) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kStateful, itsCodec));
}

inline constexpr EncodingRow kIso2022Rows[] = {
    // Windows has two numbers, and a name that differs for each; what is read is the same.
    iso2022(50227, "ISO-2022-CN",
            "csISO2022CN x-cp50227 x-ISO-2022-CN-GB ISO-2022-CN-GB"
            "ISO_2022,locale=zh,version=0",
            "Chinese, ISO-2022-CN (RFC 1922), simplified first", &kIso2022CnCodec),
    iso2022(50229, "x-cp50229", "x-ISO-2022-CN-CNS ISO-2022-CN-CNS ISO_2022,locale=zh,version=2",
            "Chinese, ISO-2022-CN (RFC 1922), traditional first", &kIso2022CnTraditionalCodec),
    iso2022(200850, "ISO-2022-CN-EXT", "csISO2022CNEXT ISO_2022,locale=zh,version=1",
            "Chinese, ISO-2022-CN-EXT (RFC 1922)", &kIso2022CnExtCodec),
    iso2022(200851, "ISO-2022-JP-1", "csISO2022JP1 ISO_2022,locale=ja,version=1 ibm-5054",
            "Japanese, ISO-2022-JP-1 (RFC 2237)", &kIso2022Jp1Codec),
    iso2022(200852, "ISO-2022-JP-2", "csISO2022JP2 ISO_2022,locale=ja,version=2",
            "Japanese and other languages, ISO-2022-JP-2 (RFC 1554)", &kIso2022Jp2Codec),
    iso2022(200853, "ISO-2022-JP-3", "csISO2022JP3", "Japanese, ISO-2022-JP-3 (JIS X 0213)",
            &kIso2022Jp3Codec),
    iso2022(200854, "ISO-2022-JP-2004", "csISO2022JP2004",
            "Japanese, ISO-2022-JP-2004 (JIS X 0213:2004)", &kIso2022Jp2004Codec),
    iso2022(
        200855, "ISO-2022-JP-EXT",
        "csISO2022JPEXT JIS_Encoding csJISEncoding JIS JIS7 7bit-jis ISO_2022,locale=ja,version=3",
        "Japanese, ISO-2022-JP-1 with half-width katakana", &kIso2022JpExtCodec),
    iso2022(200856, "JIS8", "ISO_2022,locale=ja,version=4",
            "Japanese, ISO-2022-JP-1 with katakana in eight bits", &kJis8Codec),
    iso2022(200857, "COMPOUND_TEXT", "x11-compound-text x-compound-text",
            "Compound text of the X Window System", &kCompoundTextCodec),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_ISO2022_H_
