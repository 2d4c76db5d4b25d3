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
};

TEST(UnicodeForms, ConvertAndReportHoweverTheTextIsCut) {
  for (const Case& c : kCases) checkCase(c);
}

// What other converters wrote, as of ICU 72 and JDK 17.
const struct {
  const char* tool;
  const Codec& codec;
  std::u16string text;
  const char* coded;
} kPeers[] = {
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
    EXPECT_EQ(hex(wholly(peer.codec.write, text).text), peer.coded) << peer.tool;
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
    for (const Codec* codec : {&kCesu8, &kModifiedUtf8, &kWtf8}) {
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
    {kCesu8.read, -1, 2, kForms},        {kCesu8.write, -1, 3, kUnits},
    {kModifiedUtf8.read, -1, 2, kForms}, {kModifiedUtf8.write, -1, 3, kUnits},
    {kWtf8.read, -1, 2, kForms},         {kWtf8.write, -1, 3, kUnits},
};

TEST(UnicodeForms, StandAnyBytesHoweverTheyAreCut) { checkAnyBytes(kDirections, 800); }

}  // namespace
