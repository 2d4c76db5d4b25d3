// The rows of Japanese encodings without a state that have a mapping.
#ifndef ENCODING_CODECS_ROWS_JAPANESE_H_
#define ENCODING_CODECS_ROWS_JAPANESE_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/multi_byte.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

// Shift_JIS is a name of the code page of Windows, EUC-JP of 200954.
inline constexpr EncodingRow kJapaneseRows[] = {
    streamOnly(codec(200721, "SJIS-JISX0208", "Shift_JIS-JISX0208 shift_jis-1997",
                     "Japanese, Shift_JIS of the standard, with yen sign", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_sjis>)),
    mappedDoubleByte(200722, "Shift_JIS-ASCII", "",
                     "Japanese, Shift_JIS of the standard, over ASCII", &kMap_sjis_ascii),
    streamOnly(codec(200723, "Shift_JISX0213",
                     "Shift_JIS-2004 sjis-2004 sjisx0213 x-SJIS_0213 "
                     "shift_jis_0213:2004 sjis-0213 sjis_0213:2004",
                     "Japanese, Shift_JIS of JIS X 0213:2004", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_shift_jisx0213>)),
    streamOnly(codec(200724, "x-MS932_0213",
                     "MS932_0213 MS932:2004 windows-932:2004 windows-932-0213",
                     "Japanese, Windows's Shift_JIS with JIS X 0213:2004", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ms932_0213>)),
    mappedDoubleByte(200725, "x-PCK", "", "Japanese, Shift_JIS of Solaris", &kMap_pck),
    streamOnly(codec(942, "IBM942", "x-IBM942", "Japanese, IBM PC of 1978, with yen sign",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_ibm942>)),
    mappedDoubleByte(200726, "IBM942C",
                     "ibm-942_P12A-1999 ibm-942_VSUB_VPUA ibm-932_VSUB_VPUA x-IBM942C cp942C 942C "
                     "shift_jis78 sjis78",
                     "Japanese, IBM PC of 1978, over ASCII", &kMap_ibm942c),
    streamOnly(codec(943, "IBM943", "csIBM943 x-IBM943 ibm-943_P130-1999 ibm-943_VASCII_VSUB_VPUA",
                     "Japanese, IBM PC, with yen sign", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm943>)),
    mappedDoubleByte(200727, "IBM943C", "ibm-943_P15A-2003 x-IBM943C cp943C 943C ibm-943_VSUB_VPUA",
                     "Japanese, IBM PC, over ASCII as Windows has it", &kMap_ibm943c),
    mappedDoubleByte(100932, "IBM932", "x-IBM932 csIBM932", "Japanese, IBM's 932", &kMap_ibm932),
    mapped(21027, "cp21027", "", "EBCDIC, Japanese extended", &kMap_cp21027),
    mappedDoubleByte(20932, "x-cp20932", "", "Japanese, JIS X 0208 and JIS X 0212 in two bytes",
                     &kMap_cp20932),
    streamOnly(codec(200730, "EUC-JISX0213", "EUC-JIS-2004 jisx0213",
                     "Japanese, JIS X 0213:2004 in EUC", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_euc_jisx0213>)),
    streamOnly(codec(200731, "EUC-JP-MS", "eucJP-win eucJP-open",
                     "Japanese, EUC-JP with Windows's characters", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_euc_jp_ms>)),
    streamOnly(codec(200732, "x-eucJP-Open", "EUC_JP_Solaris", "Japanese, EUC-JP of Solaris",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_euc_jp_open>)),
    streamOnly(codec(200735, "x-euc-jp-linux", "euc-jp-linux",
                     "Japanese, EUC-JP without JIS X 0212", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_euc_jp_linux>)),
    streamOnly(codec(200733, "EUC-JP-2007", "", "Japanese, EUC-JP with NEC's and IBM's characters",
                     CharsetKind::kMultiByte, &kMultiByteCodec<kMap_euc_jp_2007>)),
    streamOnly(codec(954, "IBM954", "x-IBM954 ibm-954_P101-2007 x-IBM954C",
                     "Japanese, IBM EUC with JIS X 0212", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm954>)),
    streamOnly(codec(33722, "IBM33722",
                     "x-IBM33722 ibm-33722_P120-1999 ibm-33722_VASCII_VPUA ibm-5050 5050 "
                     "cp5050",
                     "Japanese, IBM EUC, with yen sign", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm33722>)),
    streamOnly(codec(200734, "IBM33722C",
                     "x-IBM33722C x-IBM33722A ibm-33722_P12A_P12A-2009_U2 ibm-33722_VPUA "
                     "x-IBM29626C ibm-29626C cp29626C 29626C",
                     "Japanese, IBM EUC, over ASCII", CharsetKind::kMultiByte,
                     &kMultiByteCodec<kMap_ibm33722c>)),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_JAPANESE_H_
