// Encodings of single bytes of DOS and the IBM PC that have a mapping. IBM's own tables of pages
// that Windows has, too, are known by ICU's names for them.
#ifndef ENCODING_CODECS_ROWS_DOS_H_
#define ENCODING_CODECS_ROWS_DOS_H_

#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/row_makers.h"

namespace encoding_rows {

inline constexpr EncodingRow kDosRows[] = {
    mapped(770, "CP770", "", "DOS, Baltic (LST 1283)", &kMap_cp770),
    mapped(771, "CP771", "", "DOS, Cyrillic and Lithuanian (KBL)", &kMap_cp771),
    mapped(772, "CP772", "", "DOS, Cyrillic and Lithuanian (LST 1284)", &kMap_cp772),
    mapped(773, "CP773", "", "DOS, Lithuanian and Latvian (KBL)", &kMap_cp773),
    mapped(774, "CP774", "", "DOS, Lithuanian (LST 1283)", &kMap_cp774),
    mapped(851, "IBM851", "csPC851 CSIBM851", "DOS, Greek, older set", &kMap_ibm851),
    mapped(856, "IBM856", "x-IBM856 CSIBM856", "DOS, Hebrew, older set", &kMap_ibm856),
    mapped(867, "IBM867", "x-IBM867", "DOS, Hebrew with euro and sheqel", &kMap_ibm867),
    mapped(868, "IBM868", "csIBM868 cp-ar OSF10020364", "DOS, Urdu", &kMap_ibm868),
    mapped(904, "IBM904", "CSIBM904 OSF10020388", "IBM PC, traditional Chinese single bytes",
           &kMap_ibm904),
    mapped(1098, "IBM1098", "x-IBM1098", "DOS, Farsi", &kMap_ibm1098),
    mapped(1125, "IBM1125", "RUSCII IBM848 cp866u", "DOS, Cyrillic (Ukrainian)", &kMap_ibm1125),
    mapped(1131, "IBM1131", "", "DOS, Cyrillic (Belarusian)", &kMap_ibm1131),
    mapped(1161, "IBM1161", "CSIBM1161", "IBM PC, Thai with euro", &kMap_ibm1161),
    mapped(9066, "IBM9066", "ibm-874_P100-1995 ibm-874 eucTH x-IBM874 CSIBM9066", "IBM PC, Thai",
           &kMap_ibm9066),
    mapped(100437, "ibm-437_P100-1995", "", "IBM PC, United States", &kMap_ibm437_p100),
    mapped(100720, "ibm-720_P100-1997", "", "IBM PC, Arabic", &kMap_ibm720_p100),
    mapped(100737, "ibm-737_P100-1997", "", "IBM PC, Greek (737)", &kMap_ibm737_p100),
    mapped(100775, "ibm-775_P100-1996", "", "IBM PC, Baltic", &kMap_ibm775_p100),
    mapped(100850, "ibm-850_P100-1995", "", "IBM PC, Western European", &kMap_ibm850_p100),
    mapped(100851, "ibm-851_P100-1995", "", "IBM PC, Greek, older set", &kMap_ibm851_p100),
    mapped(100852, "ibm-852_P100-1995", "", "IBM PC, Central European", &kMap_ibm852_p100),
    mapped(100855, "ibm-855_P100-1995", "", "IBM PC, Cyrillic (Serbia, Bulgaria)",
           &kMap_ibm855_p100),
    mapped(100856, "ibm-856_P100-1995", "", "IBM PC, Hebrew, older set", &kMap_ibm856_p100),
    mapped(100857, "ibm-857_P100-1995", "", "IBM PC, Turkish", &kMap_ibm857_p100),
    mapped(100858, "ibm-858_P100-1997", "", "IBM PC, Western European with euro",
           &kMap_ibm858_p100),
    mapped(100860, "ibm-860_P100-1995", "", "IBM PC, Portuguese", &kMap_ibm860_p100),
    mapped(100861, "ibm-861_P100-1995", "", "IBM PC, Icelandic", &kMap_ibm861_p100),
    mapped(100862, "ibm-862_P100-1995", "", "IBM PC, Hebrew", &kMap_ibm862_p100),
    mapped(100863, "ibm-863_P100-1995", "", "IBM PC, French Canadian", &kMap_ibm863_p100),
    mapped(100864, "ibm-864_X110-1999", "", "IBM PC, Arabic as IBM has it", &kMap_ibm864_x110),
    mapped(100865, "ibm-865_P100-1995", "", "IBM PC, Nordic", &kMap_ibm865_p100),
    mapped(100866, "ibm-866_P100-1995", "", "IBM PC, Cyrillic (Russian)", &kMap_ibm866_p100),
    mapped(100867, "ibm-867_P100-1998", "", "IBM PC, Hebrew with euro and sheqel",
           &kMap_ibm867_p100),
    mapped(100868, "ibm-868_P100-1995", "", "IBM PC, Urdu", &kMap_ibm868_p100),
    mapped(100869, "ibm-869_P100-1995", "", "IBM PC, modern Greek as IBM has it",
           &kMap_ibm869_p100),
    mapped(101098, "ibm-1098_P100-1995", "", "IBM PC, Farsi", &kMap_ibm1098_p100),
    mapped(101125, "ibm-1125_P100-1997", "", "IBM PC, Cyrillic (Ukrainian)", &kMap_ibm1125_p100),
    mapped(101131, "ibm-1131_P100-1997", "", "IBM PC, Cyrillic (Belarusian)", &kMap_ibm1131_p100),
    mapped(200400, "IBM866NAV", "CP866NAV 866NAV", "DOS, Cyrillic with Latin letters",
           &kMap_cp866nav),
    mapped(200401, "CWI-2", "CWI CP-HU", "DOS, Hungarian (CWI)", &kMap_cwi),
    mapped(200402, "MIK", "", "DOS, Bulgarian (MIK)", &kMap_mik),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_DOS_H_
