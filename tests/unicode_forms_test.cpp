// The less usual forms of Unicode: what they are, with whom they agree, and that they stand
// anything. A codec has rows in kCases, kPeers and kDirections.
#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/stream/stream_converter.h"
#include "tests/codec_support.h"

namespace {

using namespace std::string_literals;

const Codec& kBocu1 = codecOf(1214);
const Codec& kImap = codecOf(200804);
const Codec& kGsmPacked = codecOf(200810);
const Codec& kTurkish = codecOf(200811);
const Codec& kTurkishPacked = codecOf(200821);
const Codec& kScsu = codecOf(1212);
const Codec& kCesu8 = codecOf(9400);
const Codec& kModifiedUtf8 = codecOf(200800);
const Codec& kWtf8 = codecOf(200801);

const Case kCases[] = {
    // A form of four bytes, an unpaired surrogate of either kind, and what breaks a pair off.
    {kCesu8.read,
     "a\xF0\x9F\x98\x80z\xED\xB8\x80\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80\xED\xA0\xBD\xED\x9F\xBF",
     utf16(u"a\xFFFDz\xFFFD\xFFFD\xD83D\xDE00\xFFFD\xD7FF"),
     {{1, 4, 2}, {6, 3, 6}, {9, 3, 8}, {18, 3, 14}}},
    // Bytes that begin nothing, forms that end early, forms that are too long.
    {kCesu8.read,
     "\x80\xC3z\xE2\x82z\xF0\x9Fz\xE0\x80\x80\xC0\x80\xF5\xED\xA0",
     utf16(u"\xFFFD\xFFFDz\xFFFDz\xFFFDz\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"),
     {{0, 1, 0},
      {1, 1, 2},
      {3, 2, 6},
      {6, 2, 10},
      {9, 1, 14},
      {10, 1, 16},
      {11, 1, 18},
      {12, 1, 20},
      {13, 1, 22},
      {14, 1, 24},
      {15, 2, 26}}},
    {kCesu8.write,
     utf16(u"a\xD83D\xDE00\xDE00z\xD83Dz\xD83D") + "z",
     "a\xED\xA0\xBD\xED\xB8\x80\xEF\xBF\xBDz\xEF\xBF\xBDz\xEF\xBF\xBD\xEF\xBF\xBD",
     {{6, 2, 7}, {10, 2, 11}, {14, 2, 15}, {16, 1, 18}}},
    {kModifiedUtf8.read,
     "\0\xC0\x80\xC0\x81\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80\xC0"s,
     utf16(u"\0\0\xFFFD\xFFFD\xD83D\xD83D\xDE00\xFFFD"s),
     {{3, 1, 4}, {4, 1, 6}, {14, 1, 14}}},
    {kWtf8.read,
     "\xED\xA0\xBDz\xED\xB8\x80\xF0\x9F\x98\x80\xED\xA0\xBD\xED\xB8\x80\xC0\x80",
     utf16(u"\xD83Dz\xDE00\xD83D\xDE00\xFFFD\xFFFD\xFFFD"),
     {{11, 6, 10}, {17, 1, 12}, {18, 1, 14}}},
    {kWtf8.write,
     utf16(u"\xDE00\xD83D\xD83D\xDE00\xD83D"),
     "\xED\xB8\x80\xED\xA0\xBD\xF0\x9F\x98\x80\xED\xA0\xBD",
     {}},
    // Every tag; windows that are reserved, and a tag of each mode; ends within a form.
    {kScsu.read,
     "\x01\x80\x08\x06\x13\xA7\x1A\x08\x84\x0B\x8B\xFF\x80\x0E\x30\x42\x0F\x30\x42\xE2\x84\x10z",
     utf16(u"\x80\x3006\x627\x404\xD97F\xDF80ああ\x404z"),
     {}},
    {kScsu.read,
     "\x18\x00\x18\xA8\x0Cz\x0F\xF2\xF0\xE1\x23\xE9\xF8\xF1\x20\x01\x81\x0E\x30"s,
     utf16(u"\xFFFD\xFFFD\xFFFDz\xFFFD\xE123\xFFFD\xD800\xDC81\xFFFD"),
     {{0, 2, 0}, {2, 2, 2}, {4, 1, 4}, {7, 1, 8}, {11, 2, 12}, {17, 2, 18}}},
    {kScsu.read, "\x0F\xF1\x20", utf16(u"\xFFFD"), {{1, 2, 0}}},
    {kScsu.read, "\x0F\x30", utf16(u"\xFFFD"), {{1, 1, 0}}},
    {kScsu.write, utf16(u"a\xD83Dz") + "z", "a\x0E\xD8\x3Dz\x0E\xFF\xFD", {{6, 1, 5}}},
    // As UTF-7, with other characters; a run that ends without "-", and text that need not be in
    // one.
    {kImap.read, "a&-&AOk-&AGEA6Q b&ZeVnLIqe-\n", utf16(u"a&éaé b日本語\n"), {}},
    {kImap.read,
     "&&AOk/-&AOn-\x80+&",
     utf16(u"\xFFFDé/-é\xFFFD\xFFFD+\xFFFD"),
     {{0, 1, 0}, {10, 1, 10}, {12, 1, 12}, {14, 1, 16}}},
    // Seven bits left over, with CR as padding or, of others, without; CR as the end of a last
    // byte.
    {kGsmPacked.read, "\x31\xD9\x8C\x56\xB3\xDD\x1A", utf16(u"1234567"), {}},
    {kGsmPacked.read, "\x31\xD9\x8C\x56\xB3\x01", utf16(u"123456"), {}},
    {kGsmPacked.read, "\x31\xD9\x8C\x56\xB3\xDD\x00"s, utf16(u"1234567@"), {}},
    {kGsmPacked.write, utf16(u"1234567"), "\x31\xD9\x8C\x56\xB3\xDD\x1A", {}},
    {kGsmPacked.write, utf16(u"1234567\r"), "\x31\xD9\x8C\x56\xB3\xDD\x1A\x0D", {}},
    // An escape that ends the text, bits that are left over, both; an escape before a last CR.
    {kGsmPacked.read, "\x31\xDB\x06", utf16(u"16\xFFFD"), {{2, 1, 4}}},
    {kGsmPacked.read, "\x31\xD9\xCC", utf16(u"123\xFFFD"), {{2, 1, 6}}},
    {kGsmPacked.read, "\x1B", utf16(u"\xFFFD"), {{0, 1, 0}}},
    {kGsmPacked.read, "\x31\xD9\x8C\x56\xB3\x6D\x1A", utf16(u"123456\r"), {}},
    {kGsmPacked.write,
     utf16(u"12日\xD83D\xDE00\xD83Dz[") + "z",
     "\x31\xD9\xEF\xF7\xD3\x6F\x78\x3F",
     {{4, 2, 1}, {6, 4, 2}, {10, 2, 3}, {16, 1, 7}}},
    {kTurkish.read, "\x0B\x1B\x49\x1BG\x1B\x24\x1B\x1B\x80", utf16(u"ĞİĞ¤ \xFFFD"), {{9, 1, 10}}},
    // A byte that follows nothing is itself; what lies outside of Unicode, or is a surrogate; FF.
    {kBocu1.read,
     "\xD0\x0A\xFB\x21\x00\xB1\x21\x21\x21\x21\xFB\xC5\x11\xCA\xFF\xFB"s,
     utf16(u"\xFFFD\n\xFFFD\0a\xFFFD\xFFFDz\xFFFD"s),
     {{0, 1, 0}, {2, 2, 4}, {6, 4, 10}, {10, 3, 12}, {15, 1, 16}}},
    {kBocu1.write,
     utf16(u"a\xDE00z\xD83D") + "z",
     "\xB1\xFB\xEF\x33\x24\x1D\x5E\xFB\xEF\x33\xCD",
     {{2, 2, 1}, {6, 2, 7}, {8, 1, 10}}},
};

TEST(UnicodeForms, ConvertAndReportHoweverTheTextIsCut) {
  for (const Case& c : kCases) checkCase(c);
}

// Through many scripts and back.
const std::u16string kTour =
    u"Øl, «Ä»! Привет, мир – καλημέρα; 日本語のテキスト、漢字 ｱ 한국어. "
    u"\xD83D\xDE00\xD83D\xDE01z…\n"
    u"\x01\xE123ﬁ \xDBFF\xDFFFşĞ";

// What other converters wrote, as of ICU 72 and JDK 17.
const struct {
  const char* tool;
  const Codec& codec;
  std::u16string text;
  const char* coded;
  bool isWritten = true;
} kPeers[] = {
    {"the standard's examples; uconv SCSU", kScsu, u"Öl fließt", "D6 6C 20 66 6C 69 65 DF 74"},
    {"the standard's examples; uconv SCSU", kScsu, u"Москва", "12 9C BE C1 BA B2 B0"},
    {"uconv SCSU", kScsu, u"Ĉĝéáñĝ", "11 C8 DD A9 A1 B1 DD"},
    {"uconv SCSU", kScsu, kTour,
     "D8 6C 2C 20 AB C4 BB 21 20 12 9F C0 B8 B2 B5 C2 2C 20 BC B8 C0 20 05 13 20 1F FB CA C1 CB C7 "
     "CC BD D1 C1 3B 20 0F 65 E5 67 2C 8A 9E E5 AE 16 A6 8D 99 A8 08 01 0F 6F 22 5B 57 00 20 E8 FF "
     "91 20 0F D5 5C AD 6D C5 B4 00 2E 00 20 F1 61 EC 80 81 7A 05 26 0A 01 01 1C 6A A3 19 9E 81 20 "
     "0F DB FF DF FF EA 02 DF 9E",
     false},
    {"uconv IMAP-mailbox-name; iconv UTF-7-IMAP", kImap, u"a\nb\té&x~日本/語-z+&é& é\xD83D\xDE00"s,
     "61 26 41 41 6F 2D 62 26 41 41 6B 41 36 51 2D 26 2D 78 7E 26 5A 65 56 6E 4C 41 2D 2F 26 69 70 "
     "34 2D 2D 7A 2B 26 2D 26 41 4F 6B 2D 26 2D 20 26 41 4F 6E 59 50 64 34 41 2D"},
    {"uconv BOCU-1", kBocu1, kTour,
     "D0 65 4F EC 7C 20 D0 38 94 8B 4F A1 20 D3 D3 90 88 82 85 92 4B F8 20 D3 F0 88 90 20 ED 16 20 "
     "32 41 81 8B 87 8C 7D 91 81 4C 94 20 FB 4C D4 3F 8B E4 5E 24 E0 DB D0 23 7D 89 98 4F 81 FB 23 "
     "FC 33 17 20 FB 71 70 20 24 FF 2D 3A CB D3 D7 24 5F 4E 20 FC FF 5D 51 23 01 AA F1 60 0A 01 FB "
     "CE AC EA E0 20 FE 18 9E DF 21 F0 5A 31 6E"},
    {"uconv CESU-8; JDK CESU-8", kCesu8, u"Aé€\xD83D\xDE00\0z\xDBFF\xDFFFя日\x7FF\x800\xFFFF"s,
     "41 C3 A9 E2 82 AC ED A0 BD ED B8 80 00 7A ED AF BF ED BF BF D1 8F E6 97 A5 DF BF E0 A0 80 EF "
     "BF BF"},
    {"JDK DataOutputStream.writeUTF", kModifiedUtf8,
     u"Aé€\xD83D\xDE00\0z\xDBFF\xDFFFя日\x7FF\x800\xFFFF\xDC00\xD800"s,
     "41 C3 A9 E2 82 AC ED A0 BD ED B8 80 C0 80 7A ED AF BF ED BF BF D1 8F E6 97 A5 DF BF E0 A0 80 "
     "EF BF BF ED B0 80 ED A0 80"},
};

TEST(UnicodeForms, AgreeWithOtherConverters) {
  for (const auto& peer : kPeers) {
    const std::string text = utf16(peer.text);
    if (peer.isWritten) {
      EXPECT_EQ(hex(wholly(peer.codec.write, text).text), peer.coded) << peer.tool;
    }
    const std::string coded = unhex(peer.coded);
    EXPECT_EQ(hex(wholly(peer.codec.read, coded).text), hex(text)) << peer.tool;
    // Every truncation is read alike whole and in pieces, and up to its end as the whole text is.
    for (std::size_t length = 0; length < coded.size(); ++length) {
      const std::string_view cut(coded.data(), length);
      const Result begun = inPieces(peer.codec.read, cut, {}, false);
      EXPECT_TRUE(text.starts_with(begun.text)) << peer.tool << ' ' << length;
      const Result ended = wholly(peer.codec.read, cut);
      EXPECT_TRUE(ended == inPieces(peer.codec.read, cut, {length / 2})) << peer.tool;
      EXPECT_TRUE(ended.text.starts_with(begun.text)) << peer.tool << ' ' << length;
    }
  }
}

std::string streamed(int from, int to, std::string_view text, bool dropMark = false) {
  StreamSettings settings;
  settings.from = from;
  settings.to = to;
  settings.dropMark = dropMark;
  StreamConverter stream;
  DataBuffer out;
  EXPECT_EQ(stream.begin(settings), StreamStatus::kGood) << from << ' ' << to;
  for (const char& byte : text) stream.push(bytesOf({&byte, 1}), 1, out);
  EXPECT_EQ(stream.finish(out), StreamStatus::kGood);
  return hex(out);
}

// A mark decides, and else the byte order of the row; what is written begins with one, unless it is
// nothing. As the JDK has UTF-16, x-UTF-16LE-BOM, X-UTF-32BE-BOM and X-UTF-32LE-BOM.
TEST(UnicodeForms, BeginWithAMark) {
  const struct {
    int number;
    const char *bare, *big, *little;  // the letter e with an acute accent
    bool isBig;
  } forms[] = {
      {1204, "00 E9", "FE FF 00 E9", "FF FE E9 00", true},
      {200802, "E9 00", "FE FF 00 E9", "FF FE E9 00", false},
      {1236, "00 00 00 E9", "00 00 FE FF 00 00 00 E9", "FF FE 00 00 E9 00 00 00", true},
      {200803, "E9 00 00 00", "00 00 FE FF 00 00 00 E9", "FF FE 00 00 E9 00 00 00", false}};
  for (const auto& form : forms) {
    const std::string marked = form.isBig ? form.big : form.little;
    EXPECT_EQ(streamed(65001, form.number, "é"), marked);
    EXPECT_EQ(streamed(65001, form.number, ""), "");
    EXPECT_EQ(streamed(65001, form.number, "é", true), form.bare);
    for (const char* text : {form.bare, form.big, form.little}) {
      EXPECT_EQ(streamed(form.number, 65001, unhex(text)), "C3 A9") << form.number << ' ' << text;
      EXPECT_EQ(streamed(form.number, form.number, unhex(text)), marked) << form.number;
    }
    EXPECT_FALSE(convert(65001, form.number, "a").ok) << "the engine refuses it";
    EXPECT_FALSE(convert(form.number, 65001, "\0a\0a"s).ok);
  }
}

// Text of runs: a script or none at a time, as real text has.
std::u16string randomText(std::mt19937& random) {
  static constexpr struct {
    char32_t first, last;
  } kScripts[] = {{0x20, 0x7E},       {0x00, 0x1F},       {0xA0, 0xFF},       {0x370, 0x3FF},
                  {0x400, 0x45F},     {0x590, 0x6FF},     {0x900, 0x97F},     {0x3040, 0x30FF},
                  {0x4E00, 0x9FFF},   {0xAC00, 0xD7A3},   {0xE000, 0xF8FF},   {0xF900, 0xFFFF},
                  {0x10000, 0x1044F}, {0x1F300, 0x1F64F}, {0x20000, 0x2A6DF}, {0, 0x10FFFF}};
  std::u16string text;
  for (auto runs = random() % 12; runs != 0; --runs) {
    const auto& script = kScripts[random() % std::size(kScripts)];
    for (auto count = random() % (random() % 8 == 0 ? 90 : 9); count != 0; --count) {
      const auto scalar =
          static_cast<char32_t>(script.first + random() % (script.last - script.first + 1));
      if (scalar >= 0x10000) {
        text += {static_cast<char16_t>(0xD7C0 + (scalar >> 10)),
                 static_cast<char16_t>(0xDC00 | (scalar & 0x3FF))};
      } else if (scalar < 0xD800 || scalar > 0xDFFF) {
        text += static_cast<char16_t>(scalar);
      }
    }
  }
  return text;
}

TEST(UnicodeForms, HoldAllOfUnicode) {
  std::mt19937 random(16);
  for (int round = 0; round < 4000; ++round) {
    const std::string text = utf16(randomText(random));
    for (const Codec* codec : {&kImap, &kScsu, &kBocu1, &kCesu8, &kModifiedUtf8, &kWtf8}) {
      const Result coded = wholly(codec->write, text);
      ASSERT_FALSE(coded.state.replaced) << hex(text);
      const Result again = inPieces(codec->read, coded.text, {coded.text.size() / 2});
      ASSERT_FALSE(again.state.replaced) << hex(coded.text);
      ASSERT_EQ(hex(again.text), hex(text)) << hex(coded.text);
    }
  }
}

const std::string kUnits = "\0\0\0\0az\n\xE9\xD8\xDC\xD8\xDC\xDB\xDF\x04\x30\x20\xAC"s;
const std::string kForms = "az\xC3\xA9\xC0\x80\xE2\x82\xAC\xED\xA0\xBD\xED\xB8\x80\xF0\x9F\x98\x80";
const Direction kDirections[] = {
    {kCesu8.read, -1, 2, kForms},
    {kCesu8.write, -1, 3, kUnits},
    {kModifiedUtf8.read, -1, 2, kForms},
    {kModifiedUtf8.write, -1, 3, kUnits},
    {kWtf8.read, -1, 2, kForms},
    {kWtf8.write, -1, 3, kUnits},
    {kImap.read, -1, 2, "&&&&---AAOknQZeVLIqe09, az\n\x80"},
    {kImap.write, 0, 3, kUnits + "&&-~az"},
    {kGsmPacked.read, -1, 3, "\x1B\x8D\x46\xA3\xD1\x68\x34\x1A\r\x00"s},
    {kGsmPacked.write, -1, 1, kUnits + "\r[\r["},
    {kTurkish.read, -1, 2, "\x1B\x1B\x65(aAGs \x80"},
    {kTurkishPacked.write, -1, 1, kUnits + "\x1E\x01\x31\x01"},
    {kBocu1.read, -1, 4, "\x50\x60\xFD\xD1\xFB\xFE\xFF\x21\x25\x4F \n\x01\x90"},
    {kBocu1.write, -1, 3, kUnits},
    {kScsu.read, -1, 4, "\x01\x05\x0B\x0E\x0F\x12\x18\x1F\x45\xFA\xFF\xE1\xE9\xF0\xF1 az\x90"},
    {kScsu.write, -1, 3, kUnits},
};

// What nothing that follows can change must not wait for it.
TEST(UnicodeForms, TakeWholeCharactersAtOnce) {
  for (const int number : {9400, 200800, 200801}) {
    for (const std::u16string_view text : {u"a", u"é", u"日", u"\xE000", u"😀"}) {
      const std::string units = utf16(text);
      const Result written = inPieces(codecOf(number).write, units, {}, false);
      EXPECT_EQ(written.used, units.size()) << number;
      const Result read = inPieces(codecOf(number).read, written.text, {}, false);
      EXPECT_EQ(read.used, written.text.size()) << number;
      EXPECT_EQ(hex(read.text), hex(units)) << number;
    }
  }
}

TEST(UnicodeForms, StandAnyBytesHoweverTheyAreCut) { checkAnyBytes(kDirections, 800); }

}  // namespace
