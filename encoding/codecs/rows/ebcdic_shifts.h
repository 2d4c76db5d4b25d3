// EBCDIC for Chinese, Japanese and Korean: single bytes and, between shifts, pairs.
#ifndef ENCODING_CODECS_ROWS_EBCDIC_SHIFTS_H_
#define ENCODING_CODECS_ROWS_EBCDIC_SHIFTS_H_

#include "encoding/codecs/ebcdic_shifts.h"
#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

constexpr EncodingRow shifted(int number, const char* name, const char* aliases,
                              const char* description, const Codec* shifts) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kStateful, shifts));
}

constexpr EncodingRow pairs(int number, const char* name, const char* aliases,
                            const char* description, const Codec* codecOfPairs) {
  return streamOnly(
      codec(number, name, aliases, description, CharsetKind::kMultiByte, codecOfPairs));
}

// The numbers are IBM's; Windows counts the first of them from 50930.
inline constexpr EncodingRow kEbcdicShiftRows[] = {
    pairs(300, "IBM300", "x-IBM300 cp300", "EBCDIC, Japanese, pairs only",
          &kPairsCodec<kMap_ibm300>),
    pairs(834, "IBM834", "x-IBM834 cp834", "EBCDIC, Korean, pairs only",
          &kPairsCodec<kMap_ibm933_double>),
    pairs(835, "IBM835", "x-IBM835 cp835", "EBCDIC, traditional Chinese, pairs only",
          &kPairsCodec<kMap_ibm937_double>),
    pairs(837, "IBM837", "x-IBM837 cp837", "EBCDIC, simplified Chinese, pairs only",
          &kPairsCodec<kMap_ibm935_double>),
    shifted(930, "IBM930",
            "csIBM930 ibm-930_P120-1999 x-IBM930A cp930 x-IBM930 cp5026 IBM5026 cp50930 50930",
            "EBCDIC, Japanese with katakana",
            &kShiftedCodec<kMap_ibm930_single, kMap_ibm930_double>),
    shifted(931, "IBM931", "cp931 cp50931 50931", "EBCDIC, US and Canada with Japanese",
            &kShiftedCodec<kMap_ibm931_single, kMap_ibm930_double>),
    shifted(933, "IBM933", "csIBM933 ibm-933_P110-1995 cp933 x-IBM933 cp50933 50933",
            "EBCDIC, Korean", &kShiftedCodec<kMap_ibm933_single, kMap_ibm933_double>),
    shifted(935, "IBM935", "csIBM935 ibm-935_P110-1999 cp935 x-IBM935 cp50935 50935",
            "EBCDIC, simplified Chinese", &kShiftedCodec<kMap_ibm935_single, kMap_ibm935_double>),
    shifted(937, "IBM937", "csIBM937 ibm-937_P110-1999 cp937 x-IBM937 cp50937 50937",
            "EBCDIC, traditional Chinese", &kShiftedCodec<kMap_ibm937_single, kMap_ibm937_double>),
    shifted(939, "IBM939",
            "csIBM939 ibm-939_P120-1999 x-IBM939A cp939 x-IBM939 cp5035 IBM5035 cp50939 50939",
            "EBCDIC, Japanese with Latin", &kShiftedCodec<kMap_ibm939_single, kMap_ibm939_double>),
    shifted(1364, "IBM1364", "csIBM1364 ibm-1364_P110-2007 cp1364 x-IBM1364",
            "EBCDIC, Korean, all of Hangul",
            &kShiftedCodec<kMap_ibm1364_single, kMap_ibm1364_double>),
    shifted(1371, "IBM1371", "csIBM1371 x-IBM1371 ibm-1371_P100-1999 cp1371",
            "EBCDIC, traditional Chinese with euro",
            &kShiftedCodec<kMap_ibm1371_single, kMap_ibm1371_double>),
    shifted(1388, "IBM1388", "csIBM1388 x-IBM1388 ibm-1388_P103-2001 ibm-9580 cp1388",
            "EBCDIC, simplified Chinese, characters of GB18030",
            &kShiftedCodec<kMap_ibm1388_single, kMap_ibm1388_double>),
    shifted(1390, "IBM1390", "csIBM1390 x-IBM1390 ibm-1390_P110-2003 cp1390",
            "EBCDIC, Japanese with katakana, euro and JIS X 0213",
            &kShiftedCodec<kMap_ibm1390_single, kMap_ibm1390_double>),
    shifted(1399, "IBM1399", "csIBM1399 x-IBM1399 ibm-1399_P110-2003 cp1399",
            "EBCDIC, Japanese with Latin, euro and JIS X 0213",
            &kShiftedCodec<kMap_ibm1399_single, kMap_ibm1399_double>),
    pairs(16684, "IBM16684", "ibm-16684_P110-2003 ibm-20780 cp16684",
          "EBCDIC, Japanese with JIS X 0213, pairs only", &kPairsCodec<kMap_ibm16684>),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_EBCDIC_SHIFTS_H_
