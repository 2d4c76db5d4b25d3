// The codecs by themselves: what they convert and report, against other converters, and however a
// text is cut. A codec has rows in kCases, kPeers and kDirections.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/gsm.h"
#include "tests/codec_support.h"

namespace {

using namespace std::string_literals;

std::string code(unsigned int value) {
  std::string text;
  if (value > 0xFF) text.push_back(static_cast<char>(value >> 8));
  text.push_back(static_cast<char>(value & 0xFF));
  return text;
}

const Codec& kIso2022JpCodec = codecOf(50220);
const Codec& kIso2022KrCodec = codecOf(50225);
const Codec& kHzCodec = codecOf(1052936);
const Codec& kUtf7Codec = codecOf(65000);
const Codec& kGsmCodec = codecOf(55000);
const Codec::Convert kJpRead = kIso2022JpCodec.read, kJpWrite = kIso2022JpCodec.write;
const Codec::Convert kKrRead = kIso2022KrCodec.read, kKrWrite = kIso2022KrCodec.write;
const Codec::Convert kHzRead = kHzCodec.read, kHzWrite = kHzCodec.write;
const Codec::Convert kUtf7Read = kUtf7Codec.read, kUtf7Write = kUtf7Codec.write;
const Codec::Convert kGsmRead = kGsmCodec.read, kGsmWrite = kGsmCodec.write;

std::string times(int count, const char* text) {
  std::string all;
  while (count-- > 0) all += text;
  return all;
}

const Case kCases[] = {
    {kJpRead, "a\x1B$B$\"\x1B(Jb\x1B$@0!\x1B(Bc", "a\x82\xA0\x62\x88\x9F\x63", {}},
    {kJpRead,
     "\x1B&@\x1B$B$\"\x1B(I1\x1B(B\x0E"
     "1 2\x0F"
     "1",
     "\x82\xA0\xB1\xB1 \xB2"
     "1",
     {}},
    {kJpRead,
     "\x1B$B$\"\xB1$\"\x0E"
     "1\x0F$\"\t $\"",
     "\x82\xA0\xB1\x82\xA0\xB1\x82\xA0\t \x82\xA0",
     {}},
    // What is no pair, in the middle of many and with a byte of a character of its own.
    {kJpRead,
     "\x1B$B" + times(8, "F|") + "! " + times(40, "F|"),
     times(8, "\x93\xFA") + "\x81\xAC " + times(40, "\x93\xFA"),
     {{19, 1, 16}}},
    {kJpWrite, "\xF0 z", "\x1B$B\".\x1B(B z", {{0, 1, 3}}},
    // The writer forgot to return, in each set; a shift that has no end or no character.
    {kJpRead,
     "\x1B$B$\"\na\x1B(I1\r\nb\x0E"
     "1\nc\x0E\x0F\x0E",
     "\x82\xA0\na\xB1\r\nb\xB1\nc\x0E\x0F\x0E",
     {}},
    // NEC row 13, its repetitions of row 2, the NEC-selected characters, the gaps of their list.
    {kJpRead,
     "\x1B$B-!-py!|~|q|o",
     "\x87\x40\x81\xE0\xFA\x5C\xFA\x57\xFA\x40\x81\x45",
     {{13, 2, 10}}},
    // No form: JIS X 0212, rows 9 and 94, a katakana position; then half pairs, each beside text.
    {kJpRead,
     "\x1B$(D0!\x1B(Bx",
     "\x81\xAC"
     "x",
     {{4, 2, 0}}},
    {kJpRead, "\x1B$B)!~~$\"", "\x81\xAC\x81\xAC\x82\xA0", {{3, 2, 0}, {5, 2, 2}}},
    {kJpRead, "\x1B(I1a1", "\xB1\x81\xAC\xB1", {{4, 1, 1}}},
    {kJpRead,
     "\x1B$B$\x1B(Ba\x1B$B$\n\x1B$B$",
     "\x81\xAC"
     "a\x81\xAC\n\x81\xAC",
     {{3, 1, 0}, {11, 1, 3}, {16, 1, 6}}},
    {kJpRead,
     "a\x81"
     "b\xE0\x40\xFF",
     "a\x81\xAC"
     "b\x81\xAC@\x81\xAC",
     {{1, 1, 1}, {3, 1, 4}, {5, 1, 7}}},
    {kJpRead,
     "\x1B$B$\x81\"$\"",
     "\x81\xAC\x81\xAC\x81\xA2\x81\xAC",
     {{3, 1, 0}, {4, 1, 2}, {7, 1, 6}}},
    // Unknown, incomplete and doubled escapes.
    {kJpRead,
     "\x1B(Za\x1B$Ab\x1B$(Oc\x1B&@d\x1B\x1B$B$\"\x1B(Z$\"\x1B$\"\x1B",
     "\x1B(Za\x1B$Ab\x1B$(Oc\x1B&@d\x1B\x82\xA0\x1B(Z\x82\xA0\x1B\x82\xA0\x1B",
     {}},

    {kJpWrite,
     "a\x82\xA0\xB1\x88\x9F\nb\x87\x40",
     "a\x1B$B$\"\x1B(I1\x1B$B0!\x1B(B\nb\x1B$B-!\x1B(B",
     {}},
    {kJpWrite,
     "\xFA\x5C\xFA\x57\xFA\x40\xED\x40\xFA\x54\xFA\x4A\x87\x90",
     "\x1B$By!|~|qy!\"L-5-p\x1B(B",
     {}},
    {kJpWrite,
     "\xF0\x40"
     "a\x80\xA0\xFF\x85\x41\x85\x9F\x82",
     "\x1B$B\".\x1B(Ba\x1B$B\".\".\".\".\x1B(BA\x1B$B\".\".\x1B(B",
     {{0, 2, 3}, {3, 1, 12}, {4, 1, 14}, {5, 1, 16}, {6, 1, 18}, {8, 2, 27}, {10, 1, 29}}},
    // Controls of the text that would be read as escapes, and others that would not.
    {kJpWrite,
     "\x1B$Ba\x1B[m\x1B\x0E\x0F\x0E",
     "\x1B$B\".\x1B(B$Ba\x1B[m\x1B\x0E\x0F\x0E",
     {{0, 1, 3}}},
    {kJpWrite,
     "\x0E"
     "1",
     "\x1B$B\".\x1B(B1",
     {{0, 1, 3}}},

    {kKrRead,
     "\x1B$)Ca\x0E"
     "0!\x0F\x1B$)C\n\x0E"
     "0! 0!\nb\x0F",
     "a\xB0\xA1\n\xB0\xA1 \xB0\xA1\nb",
     {}},
    {kKrRead,
     "\x0E"
     "0!-!\"h0\x0F"
     "0\xB0\xA1\xB0"
     "a\xC7"
     "A",
     "\xB0\xA1\xA1\xEB\xA1\xEB\xA1\xEB"
     "0\xB0\xA1\xA1\xEB"
     "a\xA1\xEB"
     "A",
     {{3, 2, 2}, {5, 2, 4}, {7, 1, 6}, {12, 1, 11}, {14, 1, 14}}},
    {kKrRead,
     "\x1B(Z\x0E"
     "0\n\x0E\x1B$)B0!0",
     "\x1B(Z\xA1\xEB\n\x1B$)B\xB0\xA1\xA1\xEB",
     {{4, 1, 3}, {13, 1, 12}}},
    {kKrWrite,
     "\xB0\xA1"
     "a\n\xB0\xA1\r\n",
     "\x1B$)C\x0E"
     "0!\x0F"
     "a\n\x0E"
     "0!\x0F\r\n",
     {}},
    {kKrWrite,
     "\x81\x41"
     "a\x0E\x1B$)C\xC7"
     "A\xAD\xA1\xFF\xB0",
     "\x1B$)C\x0E!k\x0F"
     "a\x0E!k!k\x0F$)C\x0E!k\x0F"
     "A\x0E!k!k!k\x0F",
     {{0, 2, 5}, {3, 1, 10}, {4, 1, 12}, {8, 1, 19}, {10, 2, 24}, {12, 1, 26}, {13, 1, 28}}},

    {kHzRead,
     "a~~~{<:~}b~\nc~\r\nd~{<:\n<:",
     "a~\xBC\xBA"
     "bcd\xBC\xBA\n<:",
     {}},
    {kHzRead,
     "~x~{<\n~}~{~<<:~}\x81~",
     "\xA1\xFEx\xA1\xFE\n\xA1\xFE\xBC\xBA\xA1\xFE\xA1\xFE",
     {{0, 1, 0}, {4, 1, 3}, {10, 2, 6}, {16, 1, 10}, {17, 1, 12}}},
    {kHzWrite,
     "a~\xBC\xBA\n\x81\x40\xFE\xA1\x80\xBC",
     "a~~~{<:~}\n~{!~!~!~!~~}",
     {{5, 2, 12}, {7, 2, 14}, {9, 1, 16}, {10, 1, 18}}},

    {kUtf7Read, "a+AOk-b+AOkA6Q- +-+ZeVnLIqe", utf16(u"aébéé +日本語"), {}},
    // A run that nothing closes but what follows; surrogates, paired or not, are units like others.
    {kUtf7Read, "+AOk b+2D3eAA-+3gDYPQ!+AOk", utf16(u"é b\xD83D\xDE00\xDE00\xD83D!é"), {}},
    // No text: a high byte, a "+" that begins nothing, digits that make no unit, bits that are
    // left.
    {kUtf7Read,
     "\x80+ +\xFF+",
     utf16(u"\xFFFD\xFFFD \xFFFD\xFFFD\xFFFD"),
     {{0, 1, 0}, {1, 1, 2}, {3, 1, 6}, {4, 1, 8}, {5, 1, 10}}},
    {kUtf7Read,
     "+A-z+AOkA-z+AOkAO\x80+AO",
     utf16(u"\xFFFDzé\xFFFDzé\xFFFD\xFFFD\xFFFD"),
     {{1, 1, 0}, {8, 1, 6}, {15, 2, 12}, {17, 1, 14}, {19, 2, 16}}},
    {kUtf7Read,
     "+AOn-z+ZeVnLB+AOn",
     utf16(u"é\xFFFDz\x65E5\x672C\x1F80\xFFFD"),
     {{3, 1, 2}, {15, 2, 12}}},
    {kUtf7Write, utf16(u"Hi é-éz 1+1 ~\xDE00\xD83D"), "Hi +AOk--+AOk-z 1+-1 +AH7eANg9-", {}},

    {kGsmRead,
     "a\x02\x1B\x65\x1B"
     "A\x1B\x1B",
     utf16(u"a$€A "),
     {}},
    {kGsmRead,
     "a\x80\x1B\xFF\x1B",
     utf16(u"a\xFFFD\xFFFD\xFFFD\xFFFD"),
     {{1, 1, 2}, {2, 1, 4}, {3, 1, 6}, {4, 1, 8}}},
    {kGsmWrite,
     utf16(u"a@€日\xD83D\xDE00z\xDE00\xD83Dz") + "z",
     "a\0\x1B\x65??z??z?"s,
     {{6, 2, 4}, {8, 4, 5}, {14, 2, 7}, {16, 2, 8}, {20, 1, 10}}},
    {kGsmUtf8Codec.write,
     "é€\xED\xA0\xBD\xED\xB8\x80\xED\xA0\xBD\xED\xA0\xE2\x82z\xE2\x82",
     "\x05\x1B\x65????z?",
     {{5, 6, 3}, {11, 3, 4}, {14, 2, 5}, {16, 2, 6}, {19, 2, 8}}},
};

TEST(Codecs, ConvertAndReportHoweverTheTextIsCut) {
  for (const Case& c : kCases) checkCase(c);
}

// What other converters wrote for a text, as of nkf 2.1.5, glibc 2.36 and Python 3.11.
enum class Agreement { kBothWays, kReading };
struct Peer {
  const char* tool;
  const Codec& codec;
  std::string text, coded;
  Agreement agreement = Agreement::kBothWays;
};
const std::string kMail = "件名：テスト abc\nかな漢字、ＡＢＣ。\r\n";
const std::string kKorean = "가나다 abc 라마\n";
const Peer kPeers[] = {
    {"nkf -j -x; Python iso2022_jp_ext", kIso2022JpCodec, "ｶﾅ" + kMail,
     "\x1B(I6E\x1B$B7oL>!'%F%9%H\x1B(B abc\n\x1B$B$+$J4A;z!\"#A#B#C!#\x1B(B\r\n"},
    {"nkf -j -x", kIso2022JpCodec, "①㈱Ⅳ№髙\n", "\x1B$B-!-j-8-b|b\x1B(B\n"},
    {"iconv ISO-2022-JP and -3; Python iso2022_jp, _1, _2, _3 and _2004", kIso2022JpCodec, kMail,
     "\x1B$B7oL>!'%F%9%H\x1B(B abc\n\x1B$B$+$J4A;z!\"#A#B#C!#\x1B(B\r\n"},
    {"nkf -j -i@ -oJ", kIso2022JpCodec, kMail,
     "\x1B$@7oL>!'%F%9%H\x1B(J abc\n\x1B$@$+$J4A;z!\"#A#B#C!#\x1B(J\r\n", Agreement::kReading},
    {"nkf -j -oH", kIso2022JpCodec, kMail,
     "\x1B$B7oL>!'%F%9%H\x1B(H abc\n\x1B$B$+$J4A;z!\"#A#B#C!#\x1B(H\r\n", Agreement::kReading},
    {"iconv ISO-2022-KR", kIso2022KrCodec, "abc " + kKorean,
     "\x1B$)Cabc \x0E"
     "0!3*4Y\x0F abc \x0E"
     "6s86\x0F\n"},
    {"iconv ISO-2022-KR; Python iso2022_kr", kIso2022KrCodec, kKorean,
     "\x1B$)C\x0E"
     "0!3*4Y\x0F abc \x0E"
     "6s86\x0F\n"},
    {"Python iso2022_kr", kIso2022KrCodec, "abc\n" + kKorean,
     "abc\n\x1B$)C\x0E"
     "0!3*4Y\x0F abc \x0E"
     "6s86\x0F\n",
     Agreement::kReading},
    {"Python hz", kHzCodec, "己所不欲，勿施于人。~ ok\nabc", "~{<:Ky2;S{#,NpJ)SZHK!#~}~~ ok\nabc"},
    {"iconv UTF-7; Python utf_7", kUtf7Codec, "Grüße, 日本語: €5 😀 (1+1) -é-à?\n",
     "Gr+APwA3w-e, +ZeVnLIqe: +IKw-5 +2D3eAA (1+-1) -+AOk--+AOA?\n"},
    {"iconv UTF-7", kUtf7Codec, "日本語 & 1=2 ~\\!", "+ZeVnLIqe +ACY 1+AD0-2 +AH4AXAAh-"},
    {"Python utf_7", kUtf7Codec, "日本語 & 1=2 ~\\!", "+ZeVnLIqe & 1=2 +AH4AXA!",
     Agreement::kReading},
};

TEST(Codecs, AgreeWithOtherConverters) {
  for (const Peer& peer : kPeers) {
    const Result read = wholly(peer.codec.read, peer.coded);
    EXPECT_EQ(convert(peer.codec.codePage, 65001, read.text).out, peer.text) << peer.tool;
    EXPECT_FALSE(read.state.replaced) << peer.tool;
    if (peer.agreement == Agreement::kReading) continue;
    const std::string other = convert(65001, peer.codec.codePage, peer.text).out;
    EXPECT_EQ(hex(wholly(peer.codec.write, other).text), hex(peer.coded)) << peer.tool;
  }
}

// Every character of the planes; tests/data/README.md says who wrote them.
TEST(Codecs, AgreeWithOtherConvertersOnEveryCharacter) {
  const struct {
    const char *master, *coded;
    const Codec& codec;
  } planes[] = {{"plane-japanese.txt", "plane-japanese.50220", kIso2022JpCodec},
                {"plane-korean.txt", "plane-korean.50225", kIso2022KrCodec},
                {"plane-chinese.txt", "plane-chinese.hz", kHzCodec}};
  const auto readFile = [](const char* name) {
    std::ifstream file(std::string(ENCCONV_TEST_DATA "/") + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  for (const auto& plane : planes) {
    const std::string master = readFile(plane.master), coded = readFile(plane.coded);
    const ConversionResult other = convert(65001, plane.codec.codePage, master);
    EXPECT_TRUE(other.ok && !other.foundErrors) << plane.master;
    EXPECT_TRUE(wholly(plane.codec.read, coded).text == other.out) << plane.coded;
    EXPECT_TRUE(wholly(plane.codec.write, other.out).text == coded) << plane.coded;
  }
}

std::vector<unsigned int> codesOf(int codePage) {
  std::vector<unsigned int> codes;
  std::vector<bool> isSingle(256);
  for (unsigned int byte = 0; byte < 256; ++byte) {
    isSingle[byte] = decodes(codePage, code(byte));
    if (isSingle[byte]) codes.push_back(byte);
  }
  for (unsigned int value = 0x8140; value <= 0xFEFE; ++value) {
    if (!isSingle[value >> 8] && (value & 0xFF) >= 0x40 && decodes(codePage, code(value))) {
      codes.push_back(value);
    }
  }
  return codes;
}

// Every code goes there and back, or becomes the mark where it has no place: on its own, on a line
// of its own, and in one long text, which takes the vector loops.
template <typename HasPlace>
void goThereAndBack(const std::vector<unsigned int>& codes, const Codec& codec,
                    const std::string& mark, HasPlace hasPlace) {
  const auto write = [&](std::string_view in) { return wholly(codec.write, in); };
  const auto read = [&](std::string_view in) { return wholly(codec.read, in); };
  std::string lines, expectedLines, text, expectedText;
  for (const unsigned int value : codes) {
    const std::string alone = code(value), expected = hasPlace(value) ? alone : mark;
    const Result written = write(alone);
    ASSERT_EQ(written.state.replaced, !hasPlace(value)) << hex(alone);
    ASSERT_EQ(hex(read(written.text).text), hex(expected));
    lines += alone + "\r\n";
    expectedLines += expected + "\r\n";
    text += alone;
    expectedText += expected;
  }
  EXPECT_EQ(read(write(lines).text).text, expectedLines);
  EXPECT_EQ(read(write(text).text).text, expectedText);
}

TEST(Codecs, KeepsEveryCodeThatHasAPlace) {
  const std::vector<unsigned int> shiftJis = codesOf(932), ksc = codesOf(949);
  ASSERT_EQ(shiftJis.size(), 128u + 63 + 5 + 9206);
  ASSERT_EQ(ksc.size(), 128u + 2 + 17236);
  goThereAndBack(shiftJis, kIso2022JpCodec, "\x81\xAC", [](unsigned int value) {
    return value > 0xFF ? value < 0xF040 || value > 0xF9FC
                        : value < 0x80 || (value > 0xA0 && value < 0xE0);
  });
  goThereAndBack(ksc, kIso2022KrCodec, "\xA1\xEB", [](unsigned int value) {
    if (value == 0x0E || value == 0x0F) return false;
    return value < 0x80 || (value >= 0xA1A1 && (value & 0xFF) >= 0xA1);
  });
  std::vector<unsigned int> gb;
  for (unsigned int value = 0xA1A1; value <= 0xFEFE; ++value) {
    if ((value & 0xFF) >= 0xA1 && (value & 0xFF) != 0xFF) gb.push_back(value);
  }
  goThereAndBack(gb, kHzCodec, "\xA1\xFE", [](unsigned int value) { return value < 0xFE00; });
}

// Of all pairs of 7-bit bytes, each is read to one code that its code page has.
TEST(Codecs, ReadsEveryPairToACode) {
  const struct {
    Codec::Convert read;
    std::string begin, end;
    int codePage;
  } sets[] = {{kJpRead, "\x1B$B", "\x1B(B", 932},
              {kJpRead, "\x1B$(D", "\x1B(B", 932},
              {kKrRead, "\x0E", "\x0F", 949}};
  for (const auto& set : sets) {
    std::string all, expected;
    for (unsigned int first = 0x21; first <= 0x7E; ++first) {
      for (unsigned int second = 0x21; second <= 0x7E; ++second) {
        const std::string pair = code(first << 8 | second);
        const std::string text = wholly(set.read, set.begin + pair + set.end).text;
        ASSERT_TRUE(text.size() == 2 && decodes(set.codePage, text)) << hex(pair) << hex(text);
        all += pair;
        expected += text;
      }
    }
    EXPECT_EQ(wholly(set.read, set.begin + all).text, expected);
  }
}

const std::string kShifts =
    "\x1B\x1B$(&)@BCDIJ\x0E\x0F\r\n~{}0!$\"-y\x81\x85\xAC\xB0\xC7\xED\xFA\xFF"s;
const std::string kRuns = "++++---AAOknQZeVLIqe09/ az\n\x80";
const std::string kUnits = "\0\0\0\0\0\0az +-/~\n\xE9\xD8\xDC\xD8\xDC\x20\xAC"s;
const Direction kDirections[] = {
    {kJpRead, 932, 2, kShifts},
    {kIso2022JpCodec.readStrictly, 932, 2, kShifts + "AOZ+"},
    {kJpWrite, 0, 5, kShifts},
    {kKrRead, 949, 2, kShifts},
    {kKrWrite, 0, 4, kShifts},
    {kHzRead, 936, 2, kShifts},
    {kHzWrite, 0, 4, kShifts},
    {kUtf7Read, -1, 2, kRuns},
    {kUtf7Write, 0, 3, kUnits},
    {codecOf(200954).read, -1, 2, "\x8E\x8F\x8F\xA1\xA4\xB0\xDF\xFE\xFF\x80z\n"},
    {codecOf(200954).write, -1, 2, kUnits},
    {kGsmRead, 1200, 2, "\x1B\x1B\x65(aA \x80"},
    {kGsmWrite, 0, 1, kUnits},
    {kGsmUtf8Codec.read, 65001, 3, "\x1B\x1B\x65(aA \x80"},
    {kGsmUtf8Codec.write, 0, 2, "az\xC3\xA9\xE2\x82\xAC\xED\xA0\xBD\xED\xB8\x80\xF0"},
};

TEST(Codecs, StandAnyBytesHoweverTheyAreCut) { checkAnyBytes(kDirections, 600); }

// Offered a byte more each time, UTF-7 is used a unit at a time, so that a caller can find out
// which bytes a unit came from.
TEST(Codecs, UseUtf7AUnitAtATime) {
  const struct {
    std::string utf7;
    std::vector<unsigned int> steps;
  } cases[] = {
      {"a+-b", {1, 2, 1}},
      {"+AOkA6Q-z", {1, 3, 3, 1, 1}},
      // Bits that are not 0 may belong to the next unit, and are wrong at the end of a run.
      {"+ZeVnLIqe-", {1, 3, 3, 2, 1}},
      {"+ZeW-", {1, 4}}};
  for (const auto& c : cases) {
    CodecState state;
    DataBuffer out;
    std::vector<unsigned int> steps;
    for (std::size_t begin = 0, end = 1; end <= c.utf7.size(); ++end) {
      const unsigned int used =
          kUtf7Read(bytesOf(c.utf7) + begin, static_cast<unsigned int>(end - begin),
                    end == c.utf7.size(), state, out, nullptr);
      if (used != 0) steps.push_back(used);
      begin += used;
    }
    EXPECT_EQ(steps, c.steps) << c.utf7;
  }
}

// The header stands once, whatever texts are ended and gone on behind.
TEST(Codecs, WriteTheKoreanHeaderOnce) {
  CodecState state;
  DataBuffer out;
  for (const std::string_view text : {"", "\xB0\xA1", "", "\xB0\xA1"}) {
    const CodecState left = state;
    kKrWrite(bytesOf(text), static_cast<unsigned int>(text.size()), true, state, out, nullptr);
    kIso2022KrCodec.resume(left, !text.empty(), state);
  }
  EXPECT_EQ(hex(out), hex("\x1B$)C\x0E\x30!\x0F\x0E\x30!\x0F"));
}

}  // namespace
