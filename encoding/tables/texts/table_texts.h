// The table texts: data, one source file each, packed by tools/table_text. Included by the texts
// themselves and by the rows of the code pages, by nothing else.
#ifndef ENCODING_TABLES_TEXTS_TABLE_TEXTS_H_
#define ENCODING_TABLES_TEXTS_TABLE_TEXTS_H_

#include "support/string_buffer.h"

// Single-byte code pages, by number.
extern const char _Enc_IBM037[];
extern const char _Enc_IBM437[];
extern const char _Enc_IBM500[];
extern const char _Enc_ASMO_708[];
extern const char _Enc_DOS_720[];
extern const char _Enc_ibm737[];
extern const char _Enc_ibm775[];
extern const char _Enc_latin1[];
extern const char _Enc_ibm850[];
extern const char _Enc_ibm852[];
extern const char _Enc_IBM855[];
extern const char _Enc_ibm857[];
extern const char _Enc_IBM00858[];
extern const char _Enc_IBM860[];
extern const char _Enc_ibm861[];
extern const char _Enc_DOS_862[];
extern const char _Enc_IBM863[];
extern const char _Enc_IBM864[];
extern const char _Enc_IBM865[];
extern const char _Enc_cp866[];
extern const char _Enc_ibm869[];
extern const char _Enc_IBM870[];
extern const char _Enc_windows_874[];
extern const char _Enc_cp875[];
extern const char _Enc_IBM1026[];
extern const char _Enc_IBM01047[];
extern const char _Enc_IBM01140[];
extern const char _Enc_IBM01141[];
extern const char _Enc_IBM01142[];
extern const char _Enc_IBM01143[];
extern const char _Enc_IBM01144[];
extern const char _Enc_IBM01145[];
extern const char _Enc_IBM01146[];
extern const char _Enc_IBM01147[];
extern const char _Enc_IBM01148[];
extern const char _Enc_IBM01149[];
extern const char _Enc_windows_1250[];
extern const char _Enc_windows_1251[];
extern const char _Enc_windows_1252[];
extern const char _Enc_windows_1253[];
extern const char _Enc_windows_1254[];
extern const char _Enc_windows_1255[];
extern const char _Enc_windows_1256[];
extern const char _Enc_windows_1257[];
extern const char _Enc_windows_1258[];
extern const char _Enc_macintosh[];
extern const char _Enc_x_mac_arabic[];
extern const char _Enc_x_mac_hebrew[];
extern const char _Enc_x_mac_greek[];
extern const char _Enc_x_mac_cyrillic[];
extern const char _Enc_x_mac_romanian[];
extern const char _Enc_x_mac_ukrainian[];
extern const char _Enc_x_mac_thai[];
extern const char _Enc_x_mac_ce[];
extern const char _Enc_x_mac_icelandic[];
extern const char _Enc_x_mac_turkish[];
extern const char _Enc_x_mac_croatian[];
extern const char _Enc_x_IA5[];
extern const char _Enc_x_IA5_German[];
extern const char _Enc_x_IA5_Swedish[];
extern const char _Enc_x_IA5_Norwegian[];
extern const char _Enc_us_ascii[];
extern const char _Enc_x_cp20261[];
extern const char _Enc_x_cp20269[];
extern const char _Enc_IBM273[];
extern const char _Enc_IBM277[];
extern const char _Enc_IBM278[];
extern const char _Enc_IBM280[];
extern const char _Enc_IBM284[];
extern const char _Enc_IBM285[];
extern const char _Enc_IBM290[];
extern const char _Enc_IBM297[];
extern const char _Enc_IBM420[];
extern const char _Enc_IBM423[];
extern const char _Enc_IBM424[];
extern const char _Enc_IBM_Thai[];
extern const char _Enc_koi8_r[];
extern const char _Enc_IBM871[];
extern const char _Enc_IBM880[];
extern const char _Enc_IBM905[];
extern const char _Enc_IBM00924[];
extern const char _Enc_cp1025[];
extern const char _Enc_koi8_u[];
extern const char _Enc_iso_8859_1[];
extern const char _Enc_iso_8859_2[];
extern const char _Enc_iso_8859_3[];
extern const char _Enc_iso_8859_4[];
extern const char _Enc_iso_8859_5[];
extern const char _Enc_iso_8859_6[];
extern const char _Enc_iso_8859_7[];
extern const char _Enc_iso_8859_8[];
extern const char _Enc_iso_8859_9[];
extern const char _Enc_iso_8859_10[];
extern const char _Enc_iso_8859_11[];
extern const char _Enc_iso_8859_13[];
extern const char _Enc_iso_8859_15[];
extern const char _Enc_iso_8859_8_i[];

// The differences of code page 10001 over Shift_JIS.
extern const char _Enc_x_mac_japanese[];

// Codes that are only read: their units are written as other codes. The table of the code page has
// none of them.
extern const char _Enc_shift_jis_only_read[];
extern const char _Enc_big5_only_read[];
extern const char _Enc_x_cp20261_only_read[];
extern const char _Enc_euc_jp_only_read[];

// Best fits: what is written for characters that a code page lacks. Code pages may share one.
extern const char _BestFit_37[];
extern const char _BestFit_437[];
extern const char _BestFit_708[];
extern const char _BestFit_720[];
extern const char _BestFit_737[];
extern const char _BestFit_775[];
extern const char _BestFit_850[];
extern const char _BestFit_852[];
extern const char _BestFit_855[];
extern const char _BestFit_857[];
extern const char _BestFit_858[];
extern const char _BestFit_860[];
extern const char _BestFit_861[];
extern const char _BestFit_862[];
extern const char _BestFit_863[];
extern const char _BestFit_864[];
extern const char _BestFit_865[];
extern const char _BestFit_866[];
extern const char _BestFit_869[];
extern const char _BestFit_870[];
extern const char _BestFit_874[];
extern const char _BestFit_875[];
extern const char _BestFit_932[];
extern const char _BestFit_936[];
extern const char _BestFit_949[];
extern const char _BestFit_950[];
extern const char _BestFit_55000[];
extern const char _BestFit_200954[];
extern const char _BestFit_1047[];
extern const char _BestFit_1149[];
extern const char _BestFit_1250[];
extern const char _BestFit_1251[];
extern const char _BestFit_1252[];
extern const char _BestFit_1253[];
extern const char _BestFit_1254[];
extern const char _BestFit_1255[];
extern const char _BestFit_1256[];
extern const char _BestFit_1257[];
extern const char _BestFit_1361[];
extern const char _BestFit_20105[];
extern const char _BestFit_20106[];
extern const char _BestFit_20107[];
extern const char _BestFit_20108[];
extern const char _BestFit_20127[];
extern const char _BestFit_20261[];
extern const char _BestFit_20269[];
extern const char _BestFit_20420[];
extern const char _BestFit_20423[];
extern const char _BestFit_20866[];
extern const char _BestFit_20924[];
extern const char _BestFit_28591[];
extern const char _BestFit_28592[];
extern const char _BestFit_28593[];
extern const char _BestFit_28594[];
extern const char _BestFit_28595[];
extern const char _BestFit_28596[];
extern const char _BestFit_28597[];
extern const char _BestFit_28598[];
extern const char _BestFit_28599[];
extern const char _BestFit_28603[];
extern const char _BestFit_28605[];

// Multi-byte code pages. Their texts are longer than a string literal may portably be, so they are
// kept in pieces; each function appends its pieces in order.
void GetEncShiftJis(StringBuffer& out);
void GetGb2312(StringBuffer& out);
void GetKorean(StringBuffer& out);
void GetBig5(StringBuffer& out);
void GetEucJP(StringBuffer& out);
void GetEucCN(StringBuffer& out);
void GetEucKR(StringBuffer& out);
void GetJohab(StringBuffer& out);

// The planes of EUC-JP, by the bytes of JIS (21 to 7E).
void GetJisX0208(StringBuffer& out);
void GetJisX0212(StringBuffer& out);

#endif  // ENCODING_TABLES_TEXTS_TABLE_TEXTS_H_
