// Which sets the encodings of ISO 2022 have, and their escape sequences.
#include <cstddef>
#include <iterator>

#include "encoding/codecs/iso2022.h"
#include "encoding/codecs/mapping_list.h"
#include "encoding/codecs/python_iso2022.h"

namespace {

constexpr std::uint32_t kHigh = 0x80, kHighPair = 0x8080;

constexpr GraphicSet pairs(const Mapping& mapping, std::uint32_t bits) {
  return {&mapping, 2, false, bits};
}
// Of CNS 11643, from the second plane on.
constexpr GraphicSet cnsPlane(std::uint32_t plane) {
  return pairs(kMap_euc_tw, 0x8EA00000 | plane << 16 | kHighPair);
}
constexpr GraphicSet jisX0213(const Mapping& mapping, std::uint32_t bits) {
  GraphicSet set = pairs(mapping, bits);
  set.hasSequences = true;
  return set;
}

constexpr GraphicSet kAscii = {nullptr, 1, false, 0, true};
constexpr GraphicSet kJisRoman = {&kMap_jis_x_0201, 1, false, 0, true};
constexpr GraphicSet kJisKatakana = {&kMap_jis_x_0201, 1, false, kHigh};
constexpr GraphicSet kLatin1 = {&kMap_iso_8859_1, 1, true, kHigh};
constexpr GraphicSet kGreek = {&kMap_iso_8859_7_2003, 1, true, kHigh};
constexpr GraphicSet kLatin2 = {&kMap_iso_8859_2, 1, true, kHigh};
constexpr GraphicSet kLatin3 = {&kMap_iso_8859_3_1999, 1, true, kHigh};
constexpr GraphicSet kLatin4 = {&kMap_iso_8859_4, 1, true, kHigh};
constexpr GraphicSet kCyrillic = {&kMap_iso_8859_5, 1, true, kHigh};
constexpr GraphicSet kArabic = {&kMap_iso_8859_6_1999, 1, true, kHigh};
constexpr GraphicSet kHebrew = {&kMap_iso_8859_8_1999, 1, true, kHigh};
constexpr GraphicSet kLatin5 = {&kMap_iso_8859_9, 1, true, kHigh};
constexpr GraphicSet kLatin8 = {&kMap_iso_8859_14, 1, true, kHigh};
constexpr GraphicSet kLatin9 = {&kMap_iso_8859_15, 1, true, kHigh};
constexpr GraphicSet kJisX0208 = pairs(kMap_jis_x_0208, 0);
constexpr GraphicSet kJisX0212 = pairs(kMap_jis_x_0212, 0);
constexpr GraphicSet kJisX0213Of2000 = jisX0213(kMap_jis_x_0213_2000, kHighPair);
constexpr GraphicSet kPythonJisX0213Of2000 = jisX0213(kMap_python_jis_x_0213_2000, kHighPair);
constexpr GraphicSet kJisX0213 = jisX0213(kMap_euc_jisx0213, kHighPair);
constexpr GraphicSet kJisX0213Plane2 = pairs(kMap_euc_jisx0213, 0x8F0000 | kHighPair);
constexpr GraphicSet kJisX0213Plane2Of2000 = pairs(kMap_jis_x_0213_2000, 0x8F0000 | kHighPair);
constexpr GraphicSet kGb2312 = pairs(kMap_gb2312, kHighPair);
constexpr GraphicSet kKsX1001 = pairs(kMap_euc_kr, kHighPair);
constexpr GraphicSet kIsoIr165 = pairs(kMap_iso_ir_165, 0);
constexpr GraphicSet kCns1 = pairs(kMap_euc_tw, kHighPair);
constexpr GraphicSet kCns2 = cnsPlane(2), kCns3 = cnsPlane(3), kCns4 = cnsPlane(4),
                     kCns5 = cnsPlane(5), kCns6 = cnsPlane(6), kCns7 = cnsPlane(7);

template <std::size_t count>
constexpr Iso2022 japanese(const Designation (&designations)[count],
                           std::uint8_t singleShiftBytes = 0) {
  return {designations, count, false, singleShiftBytes};
}
template <std::size_t count>
constexpr Iso2022 chinese(const Designation (&designations)[count]) {
  return {designations, count, true, 2};
}
constexpr Codec codecFor(const Iso2022& scheme) {
  return cutBy(cutIso2022, {.codePage = 1200,
                            .read = {readIso2022, &scheme},
                            .write = {writeIso2022, &scheme},
                            .mappings = visitIso2022,
                            .isState = isIso2022State});
}

constexpr bool kOnlyRead = false;

// ---- Chinese: RFC 1922 ----

constexpr Designation kCn[] = {
    {"$)A", 1, &kGb2312},
    {"$)G", 1, &kCns1},
    {"$*H", 2, &kCns2},
};
constexpr Designation kCnTraditional[] = {
    {"$)G", 1, &kCns1},
    {"$*H", 2, &kCns2},
    {"$)A", 1, &kGb2312},
};
constexpr Designation kCnExt[] = {
    {"$)A", 1, &kGb2312}, {"$)E", 1, &kIsoIr165}, {"$)G", 1, &kCns1},
    {"$*H", 2, &kCns2},   {"$+I", 3, &kCns3},     {"$+J", 3, &kCns4},
    {"$+K", 3, &kCns5},   {"$+L", 3, &kCns6},     {"$+M", 3, &kCns7},
};
constexpr Iso2022 kCnScheme = chinese(kCn), kCnTraditionalScheme = chinese(kCnTraditional),
                  kCnExtScheme = chinese(kCnExt);

// ---- Japanese: RFC 1468, 1554 and 2237, JIS X 0213 ----

// All editions of JIS X 0208 have one table.
constexpr Designation kJp1[] = {
    {"(B", 0, &kAscii},     {"(J", 0, &kJisRoman},
    {"$B", 0, &kJisX0208},  {"$@", 0, &kJisX0208, kOnlyRead},
    {"$(D", 0, &kJisX0212},
};
constexpr Designation kJpExt[] = {
    {"(B", 0, &kAscii},     {"(J", 0, &kJisRoman},
    {"$B", 0, &kJisX0208},  {"$@", 0, &kJisX0208, kOnlyRead},
    {"$(D", 0, &kJisX0212}, {"(I", 0, &kJisKatakana},
};
constexpr Designation kJp2[] = {
    {"(B", 0, &kAscii},     {"(J", 0, &kJisRoman},
    {"$B", 0, &kJisX0208},  {"$@", 0, &kJisX0208, kOnlyRead},
    {"$(D", 0, &kJisX0212}, {".A", 2, &kLatin1},
    {".F", 2, &kGreek},     {"$A", 0, &kGb2312},
    {"$(C", 0, &kKsX1001},  {"(I", 0, &kJisKatakana},
};
constexpr Designation kJp3[] = {
    {"(B", 0, &kAscii},       {"(J", 0, &kJisRoman},
    {"$B", 0, &kJisX0208},    {"$@", 0, &kJisX0208, kOnlyRead},
    {"(I", 0, &kJisKatakana}, {"$(O", 0, &kJisX0213Of2000},
    {"$(Q", 0, &kJisX0213},   {"$(P", 0, &kJisX0213Plane2Of2000},
};
constexpr Designation kJp2004[] = {
    {"(B", 0, &kAscii},
    {"$B", 0, &kJisX0208},
    {"$@", 0, &kJisX0208, kOnlyRead},
    {"$(Q", 0, &kJisX0213},
    {"$(O", 0, &kJisX0213, kOnlyRead},
    {"$(P", 0, &kJisX0213Plane2},
};
constexpr Iso2022 kJp1Scheme = japanese(kJp1), kJp2Scheme = japanese(kJp2, 1),
                  kJp3Scheme = japanese(kJp3), kJp2004Scheme = japanese(kJp2004),
                  kJpExtScheme = japanese(kJpExt);

// With half-width katakana as bytes from A1 up.
constexpr Iso2022 kJis8Scheme = {kJpExt, std::size(kJpExt), false, 0, &kJisKatakana};

// ---- Compound text of the X Window System, and what its writers have added ----

constexpr Designation kCompound[] = {
    {"(B", 0, &kAscii},
    {"-A", 1, &kLatin1},
    {"-B", 1, &kLatin2},
    {"-C", 1, &kLatin3},
    {"-D", 1, &kLatin4},
    {"-F", 1, &kGreek},
    {"-G", 1, &kArabic},
    {"-H", 1, &kHebrew},
    {"-L", 1, &kCyrillic},
    {"-M", 1, &kLatin5},
    {"-b", 1, &kLatin9},
    {"-_", 1, &kLatin8},
    {")I", 1, &kJisKatakana},
    {"(J", 0, &kJisRoman, kOnlyRead},
    {"$)B", 1, &kJisX0208},
    {"$)A", 1, &kGb2312},
    {"$)C", 1, &kKsX1001},
    {"$)D", 1, &kJisX0212},
    {"$)G", 1, &kCns1},
    {"$)H", 1, &kCns2},
    // Pairs in the left half.
    {"$B", 0, &kJisX0208, kOnlyRead},
    {"$A", 0, &kGb2312, kOnlyRead},
    {"$(C", 0, &kKsX1001, kOnlyRead},
    {"$(D", 0, &kJisX0212, kOnlyRead},
};
constexpr Iso2022 kCompoundScheme = {kCompound, std::size(kCompound), false, 0, &kLatin1};

// ---- As Python has them: in the order in which it looks for a character ----

constexpr Designation kPythonJp[] = {
    {"$B", 0, &kJisX0208},
    {"(J", 0, &kJisRoman},
    {"$@", 0, &kJisX0208, kOnlyRead},
};
constexpr Designation kPythonJp1[] = {
    {"$B", 0, &kJisX0208},
    {"$(D", 0, &kJisX0212},
    {"(J", 0, &kJisRoman},
    {"$@", 0, &kJisX0208, kOnlyRead},
};
constexpr Designation kPythonJp2[] = {
    {"$B", 0, &kJisX0208},          {"$(D", 0, &kJisX0212},        {"$(C", 0, &kKsX1001},
    {"$(A", 0, &kGb2312},           {"(J", 0, &kJisRoman},         {"$@", 0, &kJisX0208, kOnlyRead},
    {".A", 2, &kLatin1, kOnlyRead}, {".F", 2, &kGreek, kOnlyRead},
};
constexpr Designation kPythonJp3[] = {
    {"$B", 0, &kJisX0208},
    {"$(O", 0, &kPythonJisX0213Of2000},
    {"$(P", 0, &kJisX0213Plane2Of2000},
};
constexpr Designation kPythonJp2004[] = {
    {"$B", 0, &kJisX0208},
    {"$(Q", 0, &kJisX0213},
    {"$(P", 0, &kJisX0213Plane2},
};
constexpr Designation kPythonJpExt[] = {
    {"$B", 0, &kJisX0208},    {"$(D", 0, &kJisX0212},           {"(J", 0, &kJisRoman},
    {"(I", 0, &kJisKatakana}, {"$@", 0, &kJisX0208, kOnlyRead},
};
constexpr Designation kPythonKr[] = {{"$)C", 1, &kKsX1001}};
constexpr Iso2022 kPythonJpScheme = japanese(kPythonJp), kPythonJp1Scheme = japanese(kPythonJp1),
                  kPythonJp2Scheme = japanese(kPythonJp2, 1),
                  kPythonJp3Scheme = japanese(kPythonJp3),
                  kPythonJp2004Scheme = japanese(kPythonJp2004),
                  kPythonJpExtScheme = japanese(kPythonJpExt);
constexpr Iso2022 kPythonKrScheme = {kPythonKr, std::size(kPythonKr), true, 0};

// Nothing in a text shows where it can be cut: sets stay designated.
constexpr Codec pythonCodecFor(const Iso2022& scheme) {
  return {.codePage = 1200,
          .read = {readPythonIso2022, &scheme},
          .write = {writePythonIso2022, &scheme},
          .mappings = visitIso2022,
          .isState = isPythonIso2022State};
}

}  // namespace

extern const Codec kIso2022CnCodec = codecFor(kCnScheme);
extern const Codec kIso2022CnTraditionalCodec = codecFor(kCnTraditionalScheme);
extern const Codec kIso2022CnExtCodec = codecFor(kCnExtScheme);
extern const Codec kIso2022Jp1Codec = codecFor(kJp1Scheme);
extern const Codec kIso2022Jp2Codec = codecFor(kJp2Scheme);
extern const Codec kIso2022Jp3Codec = codecFor(kJp3Scheme);
extern const Codec kIso2022Jp2004Codec = codecFor(kJp2004Scheme);
extern const Codec kIso2022JpExtCodec = codecFor(kJpExtScheme);
extern const Codec kJis8Codec = codecFor(kJis8Scheme);
extern const Codec kCompoundTextCodec = codecFor(kCompoundScheme);
extern const Codec kPythonIso2022JpCodec = pythonCodecFor(kPythonJpScheme);
extern const Codec kPythonIso2022Jp1Codec = pythonCodecFor(kPythonJp1Scheme);
extern const Codec kPythonIso2022Jp2Codec = pythonCodecFor(kPythonJp2Scheme);
extern const Codec kPythonIso2022Jp3Codec = pythonCodecFor(kPythonJp3Scheme);
extern const Codec kPythonIso2022Jp2004Codec = pythonCodecFor(kPythonJp2004Scheme);
extern const Codec kPythonIso2022JpExtCodec = pythonCodecFor(kPythonJpExtScheme);
extern const Codec kPythonIso2022KrCodec = pythonCodecFor(kPythonKrScheme);
