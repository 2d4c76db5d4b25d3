// Encodings as the codecs of Python have them, where nothing else comes near enough.
#ifndef ENCODING_CODECS_ROWS_PYTHON_H_
#define ENCODING_CODECS_ROWS_PYTHON_H_

#include "encoding/codecs/euc_kr_jamo.h"
#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/row_makers.h"

extern const Codec kPythonIso2022JpCodec, kPythonIso2022Jp1Codec, kPythonIso2022Jp2Codec,
    kPythonIso2022Jp3Codec, kPythonIso2022Jp2004Codec, kPythonIso2022JpExtCodec,
    kPythonIso2022KrCodec;

namespace encoding_rows {

inline constexpr RuledMapping kPythonEucKr{kMap_python_euc_kr, nullptr, CodeTable::kMaxBytes,
                                           &kEucKrJamo};
inline constexpr Codec kPythonEucKrCodec = cutBy(cutEucKrJamo, kRuledCodec<kPythonEucKr>);

constexpr EncodingRow pythonIso2022(int number, const char* name, const char* aliases,
                                    const char* description, const Codec* itsCodec) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kStateful, itsCodec));
}

// The numbers are our own; names are those of Python behind a prefix.
inline constexpr EncodingRow kPythonRows[] = {
    pythonIso2022(200940, "python:iso2022_jp", "python:csiso2022jp",
                  "Python, Japanese, ISO-2022-JP", &kPythonIso2022JpCodec),
    pythonIso2022(200941, "python:iso2022_jp_1", "", "Python, Japanese, ISO-2022-JP-1",
                  &kPythonIso2022Jp1Codec),
    pythonIso2022(200942, "python:iso2022_jp_2", "",
                  "Python, Japanese and other languages, ISO-2022-JP-2", &kPythonIso2022Jp2Codec),
    pythonIso2022(200943, "python:iso2022_jp_3", "", "Python, Japanese, ISO-2022-JP-3",
                  &kPythonIso2022Jp3Codec),
    pythonIso2022(200944, "python:iso2022_jp_2004", "", "Python, Japanese, ISO-2022-JP-2004",
                  &kPythonIso2022Jp2004Codec),
    pythonIso2022(200945, "python:iso2022_jp_ext", "",
                  "Python, Japanese, ISO-2022-JP-1 with half-width katakana",
                  &kPythonIso2022JpExtCodec),
    pythonIso2022(200946, "python:iso2022_kr", "python:csiso2022kr", "Python, Korean, ISO-2022-KR",
                  &kPythonIso2022KrCodec),
    streamOnly(codec(200947, "python:euc_kr", "python:ksc5601 python:ks_x-1001",
                     "Python, Korean, KS X 1001 with syllables of four pairs",
                     CharsetKind::kMultiByte, &kPythonEucKrCodec)),
    streamOnly(codec(200948, "python:shift_jis_2004", "python:sjis_2004",
                     "Python, Japanese, Shift_JIS of JIS X 0213:2004", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_python_shift_jis_2004>)),
    streamOnly(codec(200949, "python:shift_jisx0213", "python:sjisx0213",
                     "Python, Japanese, Shift_JIS of JIS X 0213:2000", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_python_shift_jisx0213>)),
    streamOnly(codec(200950, "python:johab", "python:cp1361",
                     "Python, Korean, Johab with backslash", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_python_johab>)),
    mappedDoubleByte(200951, "python:gbk", "python:cp936",
                     "Python, Simplified Chinese, GBK without euro sign", &kMap_python_gbk),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_PYTHON_H_
