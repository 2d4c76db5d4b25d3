// The rows of Chinese encodings without a state that have a mapping.
#ifndef ENCODING_CODECS_ROWS_CHINESE_H_
#define ENCODING_CODECS_ROWS_CHINESE_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/multi_byte.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

// GB2312, EUC-CN, GBK and Big5 are names of the code pages of Windows, which hold more.
inline constexpr EncodingRow kChineseRows[] = {
    // Simplified.
    streamOnly(codec(54936, "GB18030", "csGB18030 windows-54936 GB18030-2022 IBM1392",
                     "Simplified Chinese and all of Unicode, GB 18030 of 2022",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_gb18030>)),
    streamOnly(codec(200700, "GB18030-2005", "gb18030-2000",
                     "Simplified Chinese and all of Unicode, GB 18030 of 2005",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_gb18030_2005>)),
    mappedDoubleByte(200701, "GB2312-EUC", "euccn-1980 gb2312-1980-euc eucgb2312_cn gb2312-1980",
                     "Simplified Chinese, GB 2312 alone in EUC", &kMap_gb2312),
    mappedDoubleByte(200702, "GBK-1995", "",
                     "Simplified Chinese, GBK without user-defined characters", &kMap_gbk),
    mappedDoubleByte(1381, "IBM1381", "x-IBM1381", "Simplified Chinese, IBM PC", &kMap_ibm1381),
    mappedDoubleByte(1383, "IBM1383",
                     "x-IBM1383 ibm-1383_P110-1999 hp15CN cpeuccn "
                     "ibm-1383_VPUA",
                     "Simplified Chinese, IBM EUC", &kMap_ibm1383),
    mappedDoubleByte(1386, "IBM1386", "ibm-1386_P100-2001 ibm-1386_VSUB_VPUA",
                     "Simplified Chinese, IBM PC (GBK)", &kMap_ibm1386),
    mappedDoubleByte(10008, "x-mac-chinesesimp", "MacChineseSimp x-mac-simp-chinese",
                     "Mac, simplified Chinese", &kMap_cp20936),
    mappedDoubleByte(20936, "x-cp20936", "", "Simplified Chinese, GB 2312 of Windows",
                     &kMap_cp20936),

    // Traditional.
    mappedDoubleByte(200703, "Big5-Unicode", "", "Traditional Chinese, Big5 of Unicode's table",
                     &kMap_big5_unicode),
    streamOnly(codec(200704, "Big5-ETEN", "", "Traditional Chinese, Big5 with ETEN's extensions",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_big5_eten>)),
    mappedDoubleByte(200705, "x-Big5-Solaris", "Big5_Solaris",
                     "Traditional Chinese, Big5 of Solaris", &kMap_big5_solaris),
    mappedDoubleByte(200711, "Big5-GNU", "", "Traditional Chinese, Big5 of the C library of GNU",
                     &kMap_big5_gnu),
    streamOnly(codec(200706, "Big5-HKSCS",
                     "csBig5HKSCS big5hk HKSCS-BIG5 hkscs Big5-HKSCS:2008 Big5-HKSCS:2004",
                     "Traditional Chinese, Hong Kong set of 2008", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_big5_hkscs>)),
    streamOnly(codec(200707, "Big5-HKSCS-2001",
                     "x-Big5-HKSCS-2001 big5hk-2001 big5-hkscs:unicode3.0",
                     "Traditional Chinese, Hong Kong set of 2001", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_big5_hkscs_2001>)),
    streamOnly(codec(200708, "x-MS950-HKSCS", "MS950_HKSCS hkbig5",
                     "Traditional Chinese, Hong Kong set of Windows", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ms950_hkscs>)),
    mappedDoubleByte(200709, "MS950-HKSCS-XP", "x-MS950-HKSCS-XP",
                     "Traditional Chinese, Hong Kong set of Windows XP", &kMap_ms950_hkscs_xp),
    mappedDoubleByte(948, "IBM948", "x-IBM948", "Traditional Chinese, IBM PC", &kMap_ibm948),
    streamOnly(codec(964, "IBM964", "x-IBM964 ibm-964_P110-1999 ibm-eucTW ibm-964_VPUA",
                     "Traditional Chinese, IBM EUC", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm964>)),
    mappedDoubleByte(1373, "IBM1373", "ibm-1373_P100-2002",
                     "Traditional Chinese, IBM's Big5 of Windows", &kMap_ibm1373),
    streamOnly(codec(1375, "IBM1375", "ibm-1375_P100-2008",
                     "Traditional Chinese, IBM, Hong Kong set of 2008", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm1375>)),
    mappedDoubleByte(5471, "IBM5471", "ibm-5471_P100-2006",
                     "Traditional Chinese, IBM, Hong Kong set of 2001", &kMap_ibm5471),
    mappedDoubleByte(10002, "x-mac-chinesetrad", "MacChineseTrad x-mac-trad-chinese",
                     "Mac, traditional Chinese", &kMap_cp10002),
    mappedDoubleByte(20000, "x-Chinese-CNS", "", "Traditional Chinese, CNS in pairs (Windows)",
                     &kMap_cp20000),
    mappedDoubleByte(20001, "x-cp20001", "", "Traditional Chinese, TCA", &kMap_cp20001),
    mappedDoubleByte(20002, "x-Chinese-Eten", "", "Traditional Chinese, ETEN (Windows)",
                     &kMap_cp20002),
    mappedDoubleByte(20003, "x-cp20003", "", "Traditional Chinese, IBM 5550", &kMap_cp20003),
    mappedDoubleByte(20004, "x-cp20004", "", "Traditional Chinese, TeleText", &kMap_cp20004),
    mappedDoubleByte(20005, "x-cp20005", "", "Traditional Chinese, Wang", &kMap_cp20005),
    streamOnly(codec(51950, "EUC-TW", "cns11643 OSF0005000A x-EUC-TW csEUCTW euc-tw-1992",
                     "Traditional Chinese, all planes of CNS 11643 in EUC", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_euc_tw>)),
    streamOnly(codec(200710, "EUC-TW-2014", "", "Traditional Chinese, EUC-TW with plane 12 and 13",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_euc_tw_2014>)),
    mappedDoubleByte(100950, "IBM950", "x-IBM950 ibm-950_P110-1999",
                     "Traditional Chinese, IBM PC (Big5)", &kMap_ibm950),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_CHINESE_H_
