// The rows of sets of pairs by themselves.
#ifndef ENCODING_CODECS_ROWS_PLAIN_PAIRS_H_
#define ENCODING_CODECS_ROWS_PLAIN_PAIRS_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/plain_pairs.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

inline constexpr PlainPairs kPlainJisX0208 = {kMap_jis_x_0208, 0},
                            kPlainJisX0212 = {kMap_jis_x_0212, 0},
                            kPlainIsoIr165 = {kMap_iso_ir_165, 0},
                            kPlainGb2312 = {kMap_gb2312, 0x8080},
                            kPlainGb12345 = {kMap_gb12345, 0x8080},
                            kPlainKsX1001 = {kMap_euc_kr, 0x8080},
                            kPlainIbm971 = {kMap_ibm970, 0, 0xA1};

template <const PlainPairs& pairs>
constexpr EncodingRow plainPairs(int number, const char* name, const char* aliases,
                                 const char* description) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kDoubleByte,
                          &kPlainPairsCodec<pairs>));
}

// The names of GB 2312 and KS X 1001 that are registered for the sets mean the encodings that have
// them beside ASCII, wherever text is marked with them.
inline constexpr EncodingRow kPlainPairsRows[] = {
    plainPairs<kPlainIbm971>(971, "IBM971", "x-IBM971 ibm-971_P100-1995 ibm-971_VPUA",
                             "Korean, the pairs of IBM970 alone"),
    plainPairs<kPlainJisX0208>(200750, "JIS_X0208-1983",
                               "x-JIS0208 JIS0208 JIS_C6226-1983 csISO87JISX0208 iso-ir-87 x0208 "
                               "jis0208-raw",
                               "Japanese, JIS X 0208 alone, pairs of seven bits"),
    plainPairs<kPlainJisX0212>(200751, "JIS_X0212-1990",
                               "JIS0212 csISO159JISX02121990 iso-ir-159 x0212 jis0212-raw",
                               "Japanese, JIS X 0212 alone, pairs of seven bits"),
    plainPairs<kPlainGb2312>(200752, "GB2312.1980-0", "gb2312-raw IBM5478 ibm-5478_P100-1995",
                             "Simplified Chinese, GB 2312 alone, pairs of seven bits"),
    plainPairs<kPlainKsX1001>(200753, "KSC5601.1987-0", "ksc5601-raw",
                              "Korean, KS X 1001 alone, pairs of seven bits"),
    plainPairs<kPlainIsoIr165>(200754, "ISO-IR-165", "CN-GB-ISOIR165",
                               "Simplified Chinese, ISO-IR-165 alone, pairs of seven bits"),
    plainPairs<kPlainGb12345>(200755, "GB12345-raw", "gb12345.1990-0",
                              "Traditional Chinese, GB 12345 alone, pairs of seven bits"),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_PLAIN_PAIRS_H_
