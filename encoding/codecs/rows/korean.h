// The rows of Korean encodings without a state that have a mapping.
#ifndef ENCODING_CODECS_ROWS_KOREAN_H_
#define ENCODING_CODECS_ROWS_KOREAN_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/multi_byte.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

// EUC-KR and Johab are names of the code pages of Windows.
inline constexpr EncodingRow kKoreanRows[] = {
    mappedDoubleByte(200740, "EUC-KR-KSX1001", "", "Korean, KS X 1001 alone in EUC", &kMap_euc_kr),
    streamOnly(codec(200741, "Johab-KSX1001", "", "Korean, Johab of the standard, with won sign",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_johab>)),
    streamOnly(codec(100949, "IBM949", "x-IBM949 ibm-949_P110-1999 ibm-949_VASCII_VSUB_VPUA",
                     "Korean, IBM PC, with won sign", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm949>)),
    mappedDoubleByte(200742, "IBM949C", "x-IBM949C ibm-949_P11A-1999 cp949c 949C ibm-949_VSUB_VPUA",
                     "Korean, IBM PC, over ASCII", &kMap_ibm949c),
    mappedDoubleByte(970, "IBM970", "x-IBM970 ibm-970_P110_P110-2006_U2 ibm-970_VPUA",
                     "Korean, IBM EUC", &kMap_ibm970),
    streamOnly(codec(1363, "IBM1363", "x-IBM1363 ibm-1363_P110-1997 ibm-1363_VASCII_VSUB_VPUA",
                     "Korean, IBM PC with Unified Hangul and won sign", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm1363>)),
    mappedDoubleByte(200743, "IBM1363C", "x-IBM1363C ibm-1363_P11B-1998 ibm-1363_VSUB_VPUA ksc",
                     "Korean, IBM PC with Unified Hangul, over ASCII", &kMap_ibm1363c),
    mappedDoubleByte(10003, "x-mac-korean", "MacKorean", "Mac, Korean", &kMap_cp10003),
    mappedDoubleByte(20949, "x-cp20949", "", "Korean, KS X 1001 of Windows", &kMap_cp20949),
    mapped(20833, "x-EBCDIC-KoreanExtended", "", "EBCDIC, Korean extended", &kMap_cp20833),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_KOREAN_H_
