// The rows of all encodings: data only. Here are those of the Windows code pages, whose tables are
// texts; encoding/codecs/rows has the others, family by family. Read through
// encoding/codecs/encoding_row.h; the names are looked up by encoding/codecs/encoding_names.cpp,
// which fails to compile if two of them mean the same.
#ifndef ENCODING_CODECS_ENCODING_ROW_LIST_H_
#define ENCODING_CODECS_ENCODING_ROW_LIST_H_

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>

#include "encoding/codecs/best_fit_list.h"
#include "encoding/codecs/row_makers.h"
#include "encoding/codecs/rows/accents.h"
#include "encoding/codecs/rows/chinese.h"
#include "encoding/codecs/rows/dos.h"
#include "encoding/codecs/rows/ebcdic.h"
#include "encoding/codecs/rows/ebcdic_shifts.h"
#include "encoding/codecs/rows/indic.h"
#include "encoding/codecs/rows/iso.h"
#include "encoding/codecs/rows/iso2022.h"
#include "encoding/codecs/rows/japanese.h"
#include "encoding/codecs/rows/korean.h"
#include "encoding/codecs/rows/mac.h"
#include "encoding/codecs/rows/plain_pairs.h"
#include "encoding/codecs/rows/python.h"
#include "encoding/codecs/rows/unicode_forms.h"
#include "encoding/codecs/rows/vendor.h"
#include "encoding/codecs/rows/web.h"
#include "encoding/tables/texts/table_texts.h"

// The codecs, each defined in a file of its own; read through the rows.
extern const Codec kGsmCodec, kHzCodec, kIso2022JpCodec, kIso2022KrCodec, kUtf7Codec;

namespace encoding_rows {

// The names of EUC-JP, which CharsetNaming takes for the code page of Windows, and those behind the
// first.
inline constexpr const char* kEucJpNames =
    "EUC-JP csEUCPkdFmtJapanese Extended_UNIX_Code_Packed_Format_for_Japanese x-euc-jp ujis "
    "IBM-eucJP eucjis OSF00030010";
inline constexpr const char* kEucJpAliases = kEucJpNames + sizeof "EUC-JP";
inline constexpr RuledMapping kEucJp{kMap_euc_jp, eucJpPiece};

// The names of ISO 8859-1, which CharsetNaming takes for Windows's reading of it, and those behind
// the first.
inline constexpr const char* kLatin1Names =
    "ISO-8859-1 ISO_8859-1:1987 csISOLatin1 latin1 l1 iso-ir-100 IBM819 cp819 8859_1 OSF00010001 "
    "8859 iso8859";
inline constexpr const char* kLatin1Aliases = kLatin1Names + sizeof "ISO-8859-1";

// In ascending order of number. The aliases are those registered with IANA, the labels of the
// Encoding Standard where they mean this very encoding, the names that Windows and .NET give the
// code page, and what ICU, glibc, Python, the JDK and Perl call it. Left out are spellings that
// match another one of the row (iso8859-1, ISO_8859-1), the forms that every number has (1252,
// cp1252, windows-1252) unless a registry lists them, and names of encodings that merely resemble
// one here: such text would be converted wrongly, so these have rows of their own.
//
// The table of 28591 is that of 1252, that of 20261 is that of 20269, 51936's is 936's and 38598's
// is 28598's.
//
// Where a name stands for one thing everywhere but was always taken for another by CharsetNaming,
// streams read it as the rest of the world does (engineNames).
inline constexpr EncodingRow kRows[] = {
    single(37, "IBM037",
           "cp037 csIBM037 ebcdic-cp-us ebcdic-cp-ca ebcdic-cp-nl ebcdic-cp-wt ibm-37_P100-1995 "
           "cpibm37 OSF10020025 CP1070 CP282 cs-ebcdic-cp-wt cs-ebcdic-cp-us cs-ebcdic-cp-ca "
           "cs-ebcdic-cp-nl ibm039",
           "EBCDIC, US and Canada", _Enc_IBM037),
    single(437, "IBM437", "cp437 csPC8CodePage437 OSF100201B5", "DOS, United States", _Enc_IBM437),
    single(500, "IBM500",
           "cp500 csIBM500 ebcdic-cp-be ebcdic-cp-ch ibm-500_P100-1995 500V1 OSF100201F4 CP1084 "
           "ebcdic-cp-bh",
           "EBCDIC, international", _Enc_IBM500),
    // IANA lists ASMO-708 under ISO-8859-6, whose letters it shares; the code page adds others.
    single(708, "ASMO-708", "", "Arabic, ASMO 708", _Enc_ASMO_708),
    single(720, "DOS-720", "IBM720 x-IBM720", "DOS, Arabic", _Enc_DOS_720),
    single(737, "IBM737", "x-IBM737", "DOS, Greek", _Enc_ibm737),
    single(775, "IBM775", "cp775 csPC775Baltic", "DOS, Baltic", _Enc_ibm775),
    // The standard's, all 256 bytes; the number is IBM's.
    streamOnly(single(819, "ISO-8859-1", kLatin1Aliases, "ISO 8859-1, Western European (Latin-1)",
                      _Enc_latin1)),
    single(850, "IBM850", "cp850 csPC850Multilingual OSF10020352", "DOS, Western European",
           _Enc_ibm850),
    single(852, "IBM852", "cp852 csPCp852 OSF10020354", "DOS, Central European", _Enc_ibm852),
    single(855, "IBM855", "cp855 csIBM855 csPCp855 OSF10020357", "DOS, Cyrillic (Serbia, Bulgaria)",
           _Enc_IBM855),
    single(857, "IBM857", "cp857 csIBM857 OSF10020359", "DOS, Turkish", _Enc_ibm857),
    single(858, "IBM00858",
           "CCSID00858 CP00858 csIBM00858 PC-Multilingual-850+euro CSPC858MULTILINGUAL",
           "DOS, Western European with euro", _Enc_IBM00858),
    single(860, "IBM860", "cp860 csIBM860", "DOS, Portuguese", _Enc_IBM860),
    single(861, "IBM861", "cp861 csIBM861 cp-is CPIBM861 OSF1002035D", "DOS, Icelandic",
           _Enc_ibm861),
    single(862, "IBM862", "cp862 csPC862LatinHebrew DOS-862 OSF1002035E csIBM862", "DOS, Hebrew",
           _Enc_DOS_862),
    single(863, "IBM863", "cp863 csIBM863 OSF1002035F", "DOS, French Canadian", _Enc_IBM863),
    single(864, "IBM864", "cp864 csIBM864 OSF10020360", "IBM PC, Arabic", _Enc_IBM864),
    single(865, "IBM865", "cp865 csIBM865", "DOS, Nordic", _Enc_IBM865),
    single(866, "IBM866", "cp866 csIBM866", "DOS, Cyrillic (Russian)", _Enc_cp866),
    single(869, "IBM869", "cp869 csIBM869 cp-gr OSF10020365", "IBM PC, modern Greek", _Enc_ibm869),
    single(870, "IBM870",
           "cp870 csIBM870 ebcdic-cp-roece ebcdic-cp-yu ibm-870_P100-1995 OSF10020366",
           "EBCDIC, Central European", _Enc_IBM870),
    // Serves the Thai standard too, of which it is a superset.
    knownToEngineAs("ISO-8859-11 ISO_8859-11:2001",
                    single(874, "windows-874",
                           "cswindows874 ms874 DOS-874 x-windows-874 TIS-620 csTIS620 TIS620-0 "
                           "TIS620.2529-1 TIS620.2533-0 iso-ir-166 windows-874-2000",
                           "Windows, Thai", _Enc_windows_874)),
    single(875, "cp875",
           "IBM875 x-EBCDIC-GreekModern ibm-875_P100-1995 x-IBM875 EBCDIC-GREEK OSF1002036B",
           "EBCDIC, modern Greek", _Enc_cp875),
    readingAlso(
        _Enc_shift_jis_only_read,
        doubleByte(932, "Shift_JIS",
                   "csShiftJIS MS_Kanji SJIS x-sjis Windows-31J csWindows31J windows-932 ms932 "
                   "x-ms-cp932 PCK sjis-open sjis-win",
                   "Windows, Japanese (Shift_JIS)", GetEncShiftJis, 25183, 2)),
    // The Windows code page is read wherever GB 2312 is announced, as browsers do.
    doubleByte(936, "GBK",
               "csGBK cp936 ms936 windows-936 x-gbk GB2312 csGB2312 GB_2312-80 csISO58GB231280 "
               "csGB231280 iso-ir-58 chinese cn-gb windows-936-2000 x-mswin-936 GB13000",
               "Windows, simplified Chinese (GBK)", GetGb2312, 46811, 2),
    doubleByte(949, "KS_C_5601-1987",
               "csKSC56011987 KS_C_5601 KS_C_5601-1989 iso-ir-149 korean windows-949 ms949 "
               "mscp949 x-windows-949 UHC x-KSC5601 windows-949-2000 OSF100203B5",
               "Windows, Korean (Unified Hangul Code)", GetKorean, 32749, 2),
    readingAlso(_Enc_big5_only_read,
                doubleByte(950, "Big5",
                           "csBig5 cn-big5 x-x-big5 Big-Five windows-950 ms950 x-windows-950 "
                           "windows-950-2000 x-big5 big5-tw BIG5-CP950",
                           "Windows, traditional Chinese (Big5)", GetBig5, 38459, 2)),
    single(1026, "IBM1026", "cp1026 csIBM1026 OSF10020402", "EBCDIC, Turkish (Latin 5)",
           _Enc_IBM1026),
    single(1047, "IBM1047",
           "cp1047 csIBM1047 ibm-1047_P100-1995,swaplfnl ibm-1047-s390 IBM1047_LF OSF10020417",
           "EBCDIC, Latin 1 open systems", _Enc_IBM01047),
    single(1140, "IBM01140",
           "CCSID01140 CP01140 csIBM01140 ebcdic-us-37+euro x-ebcdic-cp-us-euro ibm-1140_P100-1997",
           "EBCDIC, US and Canada with euro", _Enc_IBM01140),
    single(
        1141, "IBM01141",
        "CCSID01141 CP01141 csIBM01141 ebcdic-de-273+euro x-ebcdic-germany-euro ibm-1141_P100-1997",
        "EBCDIC, German with euro", _Enc_IBM01141),
    single(1142, "IBM01142",
           "CCSID01142 CP01142 csIBM01142 ebcdic-dk-277+euro ebcdic-no-277+euro "
           "x-ebcdic-denmarknorway-euro ibm-1142_P100-1997",
           "EBCDIC, Danish and Norwegian with euro", _Enc_IBM01142),
    single(1143, "IBM01143",
           "CCSID01143 CP01143 csIBM01143 ebcdic-fi-278+euro ebcdic-se-278+euro "
           "x-ebcdic-finlandsweden-euro ibm-1143_P100-1997",
           "EBCDIC, Finnish and Swedish with euro", _Enc_IBM01143),
    single(
        1144, "IBM01144",
        "CCSID01144 CP01144 csIBM01144 ebcdic-it-280+euro x-ebcdic-italy-euro ibm-1144_P100-1997",
        "EBCDIC, Italian with euro", _Enc_IBM01144),
    single(
        1145, "IBM01145",
        "CCSID01145 CP01145 csIBM01145 ebcdic-es-284+euro x-ebcdic-spain-euro ibm-1145_P100-1997",
        "EBCDIC, Spanish with euro", _Enc_IBM01145),
    single(1146, "IBM01146",
           "CCSID01146 CP01146 csIBM01146 ebcdic-gb-285+euro x-ebcdic-uk-euro ibm-1146_P100-1997",
           "EBCDIC, United Kingdom with euro", _Enc_IBM01146),
    single(1147, "IBM01147",
           "CCSID01147 CP01147 csIBM01147 ebcdic-fr-297+euro x-ebcdic-france-euro "
           "ibm-1147_P100-1997 ebcdic-fr-277+euro",
           "EBCDIC, French with euro", _Enc_IBM01147),
    single(1148, "IBM01148",
           "CCSID01148 CP01148 csIBM01148 ebcdic-international-500+euro "
           "x-ebcdic-international-euro ibm-1148_P100-1997",
           "EBCDIC, international with euro", _Enc_IBM01148),
    single(1149, "IBM01149",
           "CCSID01149 CP01149 csIBM01149 ebcdic-is-871+euro x-ebcdic-icelandic-euro "
           "ibm-1149_P100-1997 ebcdic-s-871+euro",
           "EBCDIC, Icelandic with euro", _Enc_IBM01149),
    // "UTF-16" without a byte order: the registration prefers big endian where no mark says, but
    // nearly all such text is little endian and the Encoding Standard reads it so. A mark in the
    // input decides either way. The same goes for UCS-2. (UCS-4 without a byte order is no name
    // here, because there C libraries and others disagree.)
    unicode(1200, "UTF-16LE",
            "csUTF16LE UTF-16 csUTF16 unicode csUnicode unicodeFEFF ISO-10646-UCS-2 UCS-2 "
            "UCS-2LE OSF00010100 OSF00010101 OSF00010102 u16 UTF16_LittleEndian "
            "UnicodeLittleUnmarked x-UTF-16LE ibm-1202 "
            "ibm-1203 ibm-13490 ibm-13491 ibm-17586 ibm-17587 ibm-21682 ibm-21683 ibm-25778 "
            "ibm-25779 ibm-29874 ibm-29875",
            "Unicode, UTF-16 little endian", EncodingForm::kUtf16, false),
    unicode(1201, "UTF-16BE",
            "csUTF16BE unicodeFFFE UCS-2BE UTF16_BigEndian UnicodeBigUnmarked x-UTF-16BE "
            "ibm-1200 ibm-1201 ibm-13488 ibm-13489 ibm-17584 ibm-17585 ibm-21680 ibm-21681 "
            "ibm-25776 ibm-25777 ibm-29872 ibm-29873 ibm-61955 ibm-61956",
            "Unicode, UTF-16 big endian", EncodingForm::kUtf16, true),
    single(1250, "windows-1250",
           "cswindows1250 cp1250 x-cp1250 ms-ee IBM-1250 ibm-5346_P100-1998 ibm-5346 cp5346",
           "Windows, Central European", _Enc_windows_1250),
    single(1251, "windows-1251",
           "cswindows1251 cp1251 x-cp1251 ms-cyrl ansi-1251 IBM-1251 ibm-5347_P100-1998 ibm-5347 "
           "CP5347 CSIBM5347",
           "Windows, Cyrillic", _Enc_windows_1251),
    single(
        1252, "windows-1252",
        "cswindows1252 cp1252 x-cp1252 x-ansi ms-ansi IBM-1252 ibm-5348_P100-1997 ibm-5348 cp5348",
        "Windows, Western European", _Enc_windows_1252),
    single(1253, "windows-1253", "cswindows1253 cp1253 x-cp1253 ms-greek IBM-1253",
           "Windows, Greek", _Enc_windows_1253),
    single(1254, "windows-1254",
           "cswindows1254 cp1254 x-cp1254 ms-turk IBM-1254 ibm-5350_P100-1998 ibm-5350 cp5350",
           "Windows, Turkish", _Enc_windows_1254),
    single(1255, "windows-1255", "cswindows1255 cp1255 x-cp1255 ms-hebr IBM-1255",
           "Windows, Hebrew", _Enc_windows_1255),
    with(&EncodingRow::foldsArabicDigits,
         single(1256, "windows-1256",
                "cswindows1256 cp1256 x-cp1256 ms-arab IBM-1256 ibm-9448_X100-2005 ibm-9448 "
                "x-windows-1256S CP9448 CSIBM9448",
                "Windows, Arabic", _Enc_windows_1256)),
    single(1257, "windows-1257", "cswindows1257 cp1257 x-cp1257 winbaltrim IBM-1257",
           "Windows, Baltic", _Enc_windows_1257),
    with(&EncodingRow::decomposesVietnamese,
         single(1258, "windows-1258",
                "cswindows1258 cp1258 x-cp1258 IBM-1258 ibm-5354_P100-1998 ibm-5354",
                "Windows, Vietnamese", _Enc_windows_1258)),
    doubleByte(1361, "Johab", "x-johab ms1361 mscp1361 ksc5601_1992", "Korean, Johab", GetJohab,
               32749, 1),
    single(10000, "macintosh", "csMacintosh mac MacRoman x-mac-roman",
           "Mac, Western European (Roman)", _Enc_macintosh),
    over(_Enc_x_mac_japanese, doubleByte(10001, "x-mac-japanese", "MacJapanese", "Mac, Japanese",
                                         GetEncShiftJis, 23021, 1)),
    with(&EncodingRow::reordersMacArabic,
         single(10004, "x-mac-arabic", "MacArabic", "Mac, Arabic", _Enc_x_mac_arabic)),
    single(10005, "x-mac-hebrew", "MacHebrew", "Mac, Hebrew", _Enc_x_mac_hebrew),
    single(10006, "x-mac-greek", "MacGreek macgr", "Mac, Greek", _Enc_x_mac_greek),
    single(10007, "x-mac-cyrillic", "MacCyrillic ms-mac-cyrillic maccy", "Mac, Cyrillic",
           _Enc_x_mac_cyrillic),
    single(10010, "x-mac-romanian", "MacRomanian x-mac-romania MacRomania MacRumanian",
           "Mac, Romanian", _Enc_x_mac_romanian),
    // Browsers take this name for the Cyrillic of 10007; here it has a table of its own.
    single(10017, "x-mac-ukrainian", "MacUkrainian x-mac-ukraine MacUkraine MAC-UK",
           "Mac, Ukrainian", _Enc_x_mac_ukrainian),
    single(10021, "x-mac-thai", "MacThai", "Mac, Thai", _Enc_x_mac_thai),
    single(10029, "x-mac-ce",
           "MacCE MacLatin2 MacCentralEurope x-mac-centraleurope MacCentralEurRoman "
           "x-mac-centraleurroman macos-29-10.2 CP1282 mac_centeuro",
           "Mac, Central European", _Enc_x_mac_ce),
    single(10079, "x-mac-icelandic", "MacIcelandic x-mac-iceland MacIceland", "Mac, Icelandic",
           _Enc_x_mac_icelandic),
    single(10081, "x-mac-turkish", "MacTurkish mactr", "Mac, Turkish", _Enc_x_mac_turkish),
    single(10082, "x-mac-croatian", "MacCroatian", "Mac, Croatian", _Enc_x_mac_croatian),
    unicode(12000, "UTF-32LE",
            "csUTF32LE UTF-32 csUTF32 UCS-4LE u32 UTF32_LittleEndian x-UTF-32LE ibm-1234 "
            "ibm-1235",
            "Unicode, UTF-32 little endian", EncodingForm::kUtf32, false),
    unicode(12001, "UTF-32BE",
            "csUTF32BE UCS-4BE UTF32_BigEndian x-UTF-32BE ibm-1232 ibm-1233 ibm-9424 "
            "ISO-10646-UCS-4 UCS-4 csUCS4 ISO-10646 10646-1:1993 10646-1:1993/UCS4 "
            "OSF00010104 OSF00010105 OSF00010106",
            "Unicode, UTF-32 big endian", EncodingForm::kUtf32, true),
    single(20105, "x-IA5", "ISO_646.irv:1983 csISO2IntlRefVersion iso-ir-2 irv ISO_646.IRV",
           "7-bit, international reference version of 1983", _Enc_x_IA5),
    single(20106, "x-IA5-German", "DIN_66003 ISO646-DE csISO21German iso-ir-21 de German",
           "7-bit, German", _Enc_x_IA5_German),
    // Windows itself gives these two the names of SEN_850200_B and NS_4551-1, but their tables have
    // the letters and signs of the other variant of each standard.
    single(20107, "x-IA5-Swedish",
           "SEN_850200_C ISO646-SE2 csISO11SwedishForNames iso-ir-11 se2 Swedish",
           "7-bit, Swedish (for names)", _Enc_x_IA5_Swedish),
    single(20108, "x-IA5-Norwegian",
           "NS_4551-2 ISO646-NO2 csISO61Norwegian2 iso-ir-61 no2 Norwegian", "7-bit, Norwegian",
           _Enc_x_IA5_Norwegian),
    single(20127, "US-ASCII",
           "ASCII csASCII us ANSI_X3.4-1968 ANSI_X3.4-1986 ISO646-US ISO_646.irv:1991 iso-ir-6 "
           "IBM367 cp367 ascii7 646 ANSI_X3.4 IBM891 CP891 CSIBM891 OSF1002037B IBM903 CP903 "
           "CSIBM903 OSF10020387 OSF00010020",
           "7-bit, US-ASCII", _Enc_us_ascii),
    // No names of T.61 and ISO 6937: their accents stand before the letter, which a table of single
    // characters does not turn round.
    readingAlso(
        _Enc_x_cp20261_only_read,
        single(20261, "x-cp20261", "", "T.61, accents as separate characters", _Enc_x_cp20261)),
    single(20269, "x-cp20269", "", "ISO 6937, accents as separate characters", _Enc_x_cp20269),
    single(20273, "IBM273",
           "cp273 csIBM273 x-EBCDIC-Germany ibm-273_P100-1995 ebcdic-de 273 OSF10020111",
           "EBCDIC, German", _Enc_IBM273),
    single(20277, "IBM277",
           "cp277 csIBM277 EBCDIC-CP-DK EBCDIC-CP-NO x-EBCDIC-DenmarkNorway ibm-277_P100-1995 "
           "ebcdic-dk 277 OSF10020115",
           "EBCDIC, Danish and Norwegian", _Enc_IBM277),
    single(20278, "IBM278",
           "cp278 csIBM278 ebcdic-cp-fi ebcdic-cp-se x-EBCDIC-FinlandSweden ibm-278_P100-1995 "
           "ebcdic-sv 278 OSF10020116",
           "EBCDIC, Finnish and Swedish", _Enc_IBM278),
    single(20280, "IBM280",
           "cp280 csIBM280 ebcdic-cp-it x-EBCDIC-Italy ibm-280_P100-1995 280 OSF10020118",
           "EBCDIC, Italian", _Enc_IBM280),
    single(20284, "IBM284",
           "cp284 csIBM284 ebcdic-cp-es x-EBCDIC-Spain ibm-284_P100-1995 cpibm284 284 OSF1002011C "
           "CP1079",
           "EBCDIC, Spanish", _Enc_IBM284),
    single(20285, "IBM285",
           "cp285 csIBM285 ebcdic-cp-gb x-EBCDIC-UK ibm-285_P100-1995 cpibm285 ebcdic-gb 285 "
           "OSF1002011D",
           "EBCDIC, United Kingdom", _Enc_IBM285),
    single(
        20290, "IBM290",
        "cp290 csIBM290 EBCDIC-JP-kana x-EBCDIC-JapaneseKatakana ibm-290_P100-1995 OSF10020122 290",
        "EBCDIC, Japanese katakana", _Enc_IBM290),
    single(20297, "IBM297",
           "cp297 csIBM297 ebcdic-cp-fr x-EBCDIC-France ibm-297_P100-1995 cpibm297 297 OSF10020129 "
           "CP1081",
           "EBCDIC, French", _Enc_IBM297),
    single(20420, "IBM420", "cp420 csIBM420 ebcdic-cp-ar1 x-EBCDIC-Arabic 420 OSF100201A4",
           "EBCDIC, Arabic", _Enc_IBM420),
    single(20423, "IBM423", "cp423 csIBM423 ebcdic-cp-gr x-EBCDIC-Greek", "EBCDIC, Greek",
           _Enc_IBM423),
    single(20424, "IBM424",
           "cp424 csIBM424 ebcdic-cp-he x-EBCDIC-Hebrew ibm-424_P100-1995 424 OSF100201A8",
           "EBCDIC, Hebrew", _Enc_IBM424),
    single(20838, "IBM-Thai", "csIBMThai IBM838 cp838 x-EBCDIC-Thai 838", "EBCDIC, Thai",
           _Enc_IBM_Thai),
    single(20866, "KOI8-R", "csKOI8R koi8 koi IBM878 cp878 ibm-878_P100-1996", "Russian, KOI8-R",
           _Enc_koi8_r),
    single(20871, "IBM871",
           "cp871 csIBM871 ebcdic-cp-is x-EBCDIC-Icelandic ibm-871_P100-1995 ebcdic-is 871 "
           "OSF10020367",
           "EBCDIC, Icelandic", _Enc_IBM871),
    single(20880, "IBM880", "cp880 csIBM880 EBCDIC-Cyrillic x-EBCDIC-CyrillicRussian OSF10020370",
           "EBCDIC, Cyrillic (Russian)", _Enc_IBM880),
    single(20905, "IBM905", "cp905 csIBM905 ebcdic-cp-tr x-EBCDIC-Turkish",
           "EBCDIC, Turkish (Latin 3)", _Enc_IBM905),
    single(20924, "IBM00924", "CCSID00924 CP00924 csIBM00924 ebcdic-Latin9--euro",
           "EBCDIC, Latin 9 with euro", _Enc_IBM00924),
    single(21025, "cp1025",
           "IBM1025 x-EBCDIC-CyrillicSerbianBulgarian ibm-1025_P100-1995 1025 x-IBM1025 CSIBM1025",
           "EBCDIC, Cyrillic (Serbian, Bulgarian)", _Enc_cp1025),
    // KOI8-RU has other signs at 93 to 9F.
    knownToEngineAs("koi8-ru", single(21866, "KOI8-U", "csKOI8U IBM1168 cp1168",
                                      "Ukrainian, KOI8-U", _Enc_koi8_u)),
    knownToEngineAs(
        kLatin1Names,
        single(28591, "cp28591", "", "ISO 8859-1 as Windows reads it, as 1252", _Enc_iso_8859_1)),
    single(28592, "ISO-8859-2",
           "ISO_8859-2:1987 csISOLatin2 latin2 l2 iso-ir-101 IBM912 cp912 ibm-912_P100-1995 8859_2 "
           "912 OSF00010002",
           "ISO 8859-2, Central European", _Enc_iso_8859_2),
    single(28593, "ISO-8859-3",
           "ISO_8859-3:1988 csISOLatin3 latin3 l3 iso-ir-109 IBM913 cp913 8859_3 913 OSF00010003",
           "ISO 8859-3, South European", _Enc_iso_8859_3),
    single(28594, "ISO-8859-4",
           "ISO_8859-4:1988 csISOLatin4 latin4 l4 iso-ir-110 IBM914 cp914 ibm-914_P100-1995 8859_4 "
           "914 OSF00010004",
           "ISO 8859-4, Baltic", _Enc_iso_8859_4),
    single(28595, "ISO-8859-5",
           "ISO_8859-5:1988 csISOLatinCyrillic cyrillic iso-ir-144 IBM915 cp915 ibm-915_P100-1995 "
           "8859_5 915 OSF00010005",
           "ISO 8859-5, Cyrillic", _Enc_iso_8859_5),
    with(&EncodingRow::foldsArabicDigits,
         single(
             28596, "ISO-8859-6",
             "ISO_8859-6:1987 csISOLatinArabic arabic iso-ir-127 ECMA-114 ISO-8859-6-E csISO88596E "
             "ISO-8859-6-I csISO88596I IBM1089 cp1089 8859_6 1089 x-ISO-8859-6S OSF00010006",
             "ISO 8859-6, Arabic", _Enc_iso_8859_6)),
    single(28597, "ISO-8859-7",
           "ISO_8859-7:1987 csISOLatinGreek greek greek8 iso-ir-126 ELOT_928 ECMA-118 sun_eu_greek "
           "IBM813 cp813 813 8859_7 OSF00010007",
           "ISO 8859-7, Greek", _Enc_iso_8859_7),
    single(28598, "ISO-8859-8",
           "ISO_8859-8:1988 csISOLatinHebrew hebrew iso-ir-138 visual ISO-8859-8-E csISO88598E "
           "IBM916 cp916 8859_8 hebrew8 916 OSF00010008",
           "ISO 8859-8, Hebrew, visual order", _Enc_iso_8859_8),
    single(28599, "ISO-8859-9",
           "ISO_8859-9:1989 csISOLatin5 latin5 l5 iso-ir-148 IBM920 cp920 ibm-920_P100-1995 8859_9 "
           "920 ECMA-128 turkish OSF00010009 TS-5881",
           "ISO 8859-9, Turkish", _Enc_iso_8859_9),
    // EncConvert builds the tables of parts 10 and 11 on request, but converts nothing with them.
    // Parts 12 and 14 have none.
    kept(streamOnly(
        single(28600, "ISO-8859-10",
               "ISO_8859-10:1992 csISOLatin6 latin6 l6 iso-ir-157 iso-8859_10-1998 OSF0001000A",
               "ISO 8859-10, Nordic", _Enc_iso_8859_10))),
    kept(streamOnly(single(28601, "ISO-8859-11",
                           "ISO_8859-11:2001 thai8 x-iso-8859-11 HP-THAI8 thai",
                           "ISO 8859-11, Thai", _Enc_iso_8859_11))),
    single(28603, "ISO-8859-13",
           "csISO885913 latin7 l7 iso-ir-179 ibm-921_P100-1995 ibm-921 8859_13 cp921 921 x-IBM921 "
           "CSIBM921 BALTIC",
           "ISO 8859-13, Baltic", _Enc_iso_8859_13),
    single(28605, "ISO-8859-15",
           "csISO885915 Latin-9 csISOLatin9 l9 iso-ir-203 ISO_8859-15:1998 IBM923 cp923 "
           "ibm-923_P100-1998 8859_15 csisolatin0 iso8859_15_fdis 923",
           "ISO 8859-15, Western European with euro", _Enc_iso_8859_15),
    single(38598, "ISO-8859-8-I", "csISO88598I logical", "ISO 8859-8, Hebrew, logical order",
           _Enc_iso_8859_8_i),
    // The three are converted alike. csISO2022JP, which IANA lists under ISO-2022-JP, is the name
    // by which Windows tells 50221 from 50220.
    codec(50220, "ISO-2022-JP",
          "x-windows-50220 ms50220 x-windows-iso2022jp windows-iso2022jp "
          "ISO_2022,locale=ja,version=0",
          "Japanese, ISO-2022-JP", CharsetKind::kStateful, &kIso2022JpCodec),
    codec(50221, "csISO2022JP", "_iso-2022-jp$ESC x-windows-50221 ms50221",
          "Japanese, ISO-2022-JP with katakana by escape", CharsetKind::kStateful,
          &kIso2022JpCodec),
    codec(50222, "cp50222", "_iso-2022-jp$SIO", "Japanese, ISO-2022-JP with katakana by shift",
          CharsetKind::kStateful, &kIso2022JpCodec),
    codec(50225, "ISO-2022-KR",
          "csISO2022KR iso-2022-kr-7 iso-2022-kr-7bit ISO_2022,locale=ko,version=0 "
          "ISO_2022,locale=ko,version=1 ibm-25546",
          "Korean, ISO-2022-KR", CharsetKind::kStateful, &kIso2022KrCodec),
    // The plain number is Windows's, whose table is Shift_JIS in the dress of EUC; streams know
    // what everybody else means by the names as 200954.
    knownToEngineAs(kEucJpNames,
                    lackingJis0212(readingAlso(
                        _Enc_euc_jp_only_read,
                        doubleByte(51932, "cp51932", "x-euc iso-2022-jpeuc",
                                   "Japanese, EUC-JP as Windows has it", GetEucJP, 25873, 2)))),
    doubleByte(51936, "EUC-CN", "x-euc-cn IBM-eucCN", "Simplified Chinese, EUC-CN", GetEucCN, 38459,
               2),
    doubleByte(51949, "EUC-KR",
               "csEUCKR iso-2022-kr-8 iso-2022-kr-8bit IBM-eucKR ks_x_1001 OSF0004000A",
               "Korean, EUC-KR", GetEucKR, 32749, 2),
    // Windows's number of HZ, served by the table of 936; the name hz-gb-2312 would promise the
    // escapes of HZ, which are not written here.
    doubleByte(52936, "cp52936", "", "Simplified Chinese, as 936", GetGb2312, 46811, 1),
    codec(55000, "gsm", "gsm-03.38 gsm-default-alphabet gsm-03.38-2009",
          "GSM 03.38 default alphabet, one septet a byte", CharsetKind::kSingleByte, &kGsmCodec),
    codec(65000, "UTF-7",
          "csUTF7 UNICODE-1-1-UTF-7 csUnicode11UTF7 unicode-2-0-utf-7 x-unicode-1-1-utf-7 "
          "x-unicode-2-0-utf-7 u7",
          "Unicode, UTF-7", CharsetKind::kUnicode, &kUtf7Codec),
    unicode(65001, "UTF-8",
            "csUTF8 unicode-1-1-utf-8 unicode-2-0-utf-8 x-unicode-1-1-utf-8 "
            "x-unicode-2-0-utf-8 IBM1208 cp1208 u8 utf utf8_ucs2 utf8_ucs4 utf-8-strict "
            "ISO-10646/UTF-8 OSF05010001 ibm-1209 ibm-13496 ibm-13497 ibm-17592 ibm-17593 "
            "ibm-5304 ibm-5305 ISO-IR-193 x-UTF_8J",
            "Unicode, UTF-8", EncodingForm::kUtf8, false),
    unicode(65005, "cp65005", "", "Unicode, UTF-32 little endian, as 12000", EncodingForm::kUtf32,
            false),
    unicode(65006, "cp65006", "", "Unicode, UTF-32 big endian, as 12001", EncodingForm::kUtf32,
            true),
    // From 200000 up are numbers of our own. 954 is IBM's for this encoding, whose table has a few
    // characters more; Windows has no number for it (20932 writes JIS X 0212 in two bytes).
    // The planes are those of the standards: row 13 and the rows of NEC and IBM are those of 51932.
    streamOnly(codec(200954, "EUC-JP", kEucJpAliases, "Japanese, EUC-JP with JIS X 0212",
                     CharsetKind::kMultiByte, &kRuledCodec<kEucJp>)),
    streamOnly(codec(1052936, "hz-gb-2312", "hz hz-gb", "Chinese simplified, HZ (RFC 1843)",
                     CharsetKind::kStateful, &kHzCodec)),
};

// The families one behind the other.
template <std::size_t... sizes>
constexpr auto joined(const EncodingRow (&... families)[sizes]) {
  std::array<EncodingRow, (sizes + ...)> rows;
  auto place = rows.begin();
  ((place = std::ranges::copy(families, place).out), ...);
  return rows;
}

// In ascending order of number, with a slot for the tables of each row, and its best fits; 52936
// has the tables of 936.
inline constexpr auto kEncodings = [] {
  auto rows = joined(kRows, kAccentRows, kEbcdicShiftRows, kEbcdicRows, kIsoRows, kIso2022Rows,
                     kDosRows, kMacRows, kVendorRows, kUnicodeFormRows, kChineseRows, kJapaneseRows,
                     kKoreanRows, kIndicRows, kPlainPairsRows, kWebRows, kPythonRows);
  std::ranges::sort(rows, {}, &EncodingRow::number);
  const auto find = [&](int number) {
    return std::ranges::find(rows, number, &EncodingRow::number);
  };
  std::uint16_t slots = 0;
  for (EncodingRow& row : rows) {
    if (hasTable(row)) row.slot = slots++;
  }
  for (const BestFit& bestFit : kBestFits) {
    EncodingRow& row = *find(bestFit.number);
    row.bestFit = bestFit.text;
    if (!hasTable(row)) row.slot = slots++;
  }
  find(52936)->slot = find(936)->slot;
  return rows;
}();
static_assert(std::ranges::max(kEncodings, {}, &EncodingRow::slot).slot < kMaxTableSlots);
// No two rows have one number.
static_assert(std::ranges::is_sorted(kEncodings, std::less_equal<>{}, &EncodingRow::number));

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ENCODING_ROW_LIST_H_
