// Tests of the encodings of the Encoding Standard: labels, what is malformed, what is written.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "encoding/code_page_list.h"
#include "tests/stream_support.h"

namespace {

constexpr int kUtf8 = 65001;

int web(const std::string& name) {
  const int number = streamCodePage("web:" + name);
  EXPECT_NE(0, number) << name;
  return number;
}

// What TextDecoder gives, however the text is cut; and no byte is lost or told of twice.
std::string decoded(const std::string& name, const std::string& bytes) {
  const StreamSettings settings = settingsFor(web(name), kUtf8, "substitute");
  const StreamResult result = stream(settings, bytes);
  EXPECT_EQ(StreamStatus::kGood, result.status);
  EXPECT_EQ(result, stream(settings, bytes, [] { return 1; }));
  std::minstd_rand0 random(7);
  EXPECT_EQ(result, stream(settings, bytes, [&] { return 1 + random() % 4; }));
  std::uint64_t behind = 0;
  for (const StreamError& error : result.errors) {
    EXPECT_LE(behind, error.offset);
    behind = error.offset + error.length;
  }
  EXPECT_LE(behind, bytes.size());
  return result.text;
}

}  // namespace

TEST(WebEncodings, HaveTheLabelsOfTheStandard) {
  const struct {
    const char *label, *name;
  } cases[] = {
      {"latin1", "web:windows-1252"},
      {"US-ASCII", "web:windows-1252"},
      {"iso-8859-9", "web:windows-1254"},
      {"tis-620", "web:windows-874"},
      {"sjis", "web:shift_jis"},
      {"windows-31j", "web:shift_jis"},
      {"gb2312", "web:gbk"},
      {"big5-hkscs", "web:big5"},
      {"ks_c_5601-1987", "web:euc-kr"},
      {"koi8-ru", "web:koi8-u"},
      {"x-mac-ukrainian", "web:x-mac-cyrillic"},
      {"iso-8859-8-e", "web:iso-8859-8"},
      {"logical", "web:iso-8859-8-i"},
      {"asmo-708", "web:iso-8859-6"},
      {"unicode", "web:utf-16le"},
      {"unicodefffe", "web:utf-16be"},
      {"hz-gb-2312", "web:replacement"},
      {"iso-2022-kr", "web:replacement"},
      {"x-unicode20utf8", "web:utf-8"},
      {"866", "web:ibm866"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    ASSERT_NE(nullptr, findCodePage(web(c.label)));
    EXPECT_EQ(c.name, findCodePage(web(c.label))->preferredName);
  }
  EXPECT_EQ(0, streamCodePage("web:utf-7"));
}

// By the text of the standard; "?" stands for U+FFFD.
TEST(WebEncodings, CountMalformedPiecesAsTheStandardDoes) {
  const struct {
    const char *name, *bytes, *text;
  } cases[] = {
      // Maximal subparts; the mark is taken off once.
      {"utf-8", "F0 9F 98 41 E0 80 C0 AF F4 90 80 80 F8",
       "?A????"
       "????"
       "?"},
      {"utf-8", "ED A0 80 ED B0 80 ED 9F 41 ED 9F",
       "??????"
       "?A?"},
      {"utf-8", "EF BB BF EF BB BF 41", "\uFEFFA"},
      // Only the mark of its own byte order is one; half a pair cut by the end is one piece.
      {"utf-16le", "FF FE 41 00 00 D8 41 00 00 DC 3D D8 00 DE", "A?A?\U0001F600"},
      {"utf-16le", "FE FF 41 00 42", "\uFFFEA?"},
      {"utf-16be", "FE FF D8 00 D8 3D DE 00 D8 00 41", "?\U0001F600?"},
      {"utf-16be", "FF FE DC 00 41", "\uFFFE??"},
      {"windows-1253", "C1 AA D2 FF 81", "Α???\u0081"},
      {"x-user-defined", "41 80 FF", "A\uF780\uF7FF"},
      {"replacement", "41 42 43", "?"},
      {"replacement", "", ""},
      // A byte below 80 in the second place is read again, any other is lost with the first.
      {"shift_jis", "82 A0 81 AD 82 41 82 FD 41 82", "あ??A?A?"},
      {"shift_jis", "80 A0 FD FF A1 F0 40 ED 40", "\u0080???｡\uE000纊"},
      {"euc-kr", "B0 A1 FF 80 C9 A1 C9 22 B0 FF 41 B0", "가????\"?A?"},
      {"big5", "88 62 88 A5 A4 40 87 39 87 40 81 FF 80 A4", "\u00CA\u0304\u00EA\u030C一?9䏰???"},
      {"big5", "A1 C3 A2 CC F9 FE C8 7A", "\uFFE3十\uFFED\U000200CC"},
      {"euc-jp", "A4 A2 8E B1 8E E0 8E 41 8F B0 A1 8F A1 A1 8F 41", "あｱ??A丂??A"},
      {"euc-jp", "8F A1 41 8F A1 80 8F 80 A4 FF A4 22 A0 FF 8F A1",
       "?A???"
       "?\""
       "???"},
      {"gb18030", "80 FF A1 FF 81 30 81 30 84 31 A4 37", "€??\u0080\uFFFD"},
      {"gb18030", "84 31 A5 30 8F 30 81 30 E3 32 9A 36 E3 32 9A 35", "???\U0010FFFF"},
      {"gb18030", "81 30 81 41 81 30 41 81 30 FF 81 41",
       "?0丄"
       "?0A"
       "?0?丄"},
      {"gb18030", "A8 BC FE 59 A6 D9 82 35 90 37 A3 A0 A3 21", "ḿ龴︐龴　?!"},
      {"gb18030", "41 81 30 81", "A?"},
      {"gbk", "90 30 81 30 80 A2 E3", "\U00010000€€"},
      // Each designation has to be followed by a character; half a pair takes ESC not along.
      {"iso-2022-jp", "1B 24 42 24 22 1B 28 42 41 1B 28 4A 5C 7E 41", "あA¥‾A"},
      {"iso-2022-jp", "1B 28 4A 1B 28 42 41 1B 24 42 1B 28 42 42", "?A?B"},
      {"iso-2022-jp", "1B 28 49 31 60 1B 24 41 1B 28 58 41", "ｱ??､ﾁ?ｨﾘﾁ"},
      {"iso-2022-jp", "1B 24 42 24 1B 28 42 41 1B 24 42 24 0A 0A 21 7F 24", "?A????"},
      {"iso-2022-jp", "0E 0F 80 1B 1B 24",
       "???"
       "??$"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + c.bytes);
    std::string expected;
    for (const char* p = c.text; *p != 0; ++p)
      expected += *p == '?' ? "\uFFFD" : std::string(1, *p);
    EXPECT_EQ(expected, decoded(c.name, unhex(c.bytes)));
  }
}

// "&#...;" is what forms and URLs have for characters without a place.
TEST(WebEncodings, WriteAsTheStandardDoes) {
  const struct {
    const char *name, *text, *bytes;
  } cases[] = {
      {"windows-1252", "€\u0081é", "80 81 E9"},
      {"shift_jis", "あｱ\u0080≒纊", "82 A0 B1 80 81 E0 FA 5C"},
      {"euc-jp", "あｱ纊", "A4 A2 8E B1 F9 A1"},
      {"euc-kr", "가갂", "B0 A1 81 41"},
      {"big5", "一十═╡\U000200CC", "A4 40 A4 51 F9 F9 F9 EB C8 7A"},
      {"gb18030", "€\u0080ḿ龴\uE7C7\uFFFD\U0001F600",
       "A2 E3 81 30 81 30 A8 BC FE 59 81 35 F4 37 84 31 A4 37 94 39 FC 36"},
      {"gbk", "€啊", "80 B0 A1"},
      {"iso-2022-jp", "aあ¥b", "61 1B 24 42 24 22 1B 28 4A 5C 62 1B 28 42"},
      {"iso-2022-jp", "¥\\あ", "1B 28 4A 5C 1B 28 42 5C 1B 24 42 24 22 1B 28 42"},
      {"x-user-defined", "a\uF780", "61 80"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + c.text);
    const StreamResult result = stream(settingsFor(kUtf8, web(c.name)), c.text);
    EXPECT_EQ(StreamStatus::kGood, result.status);
    EXPECT_EQ(c.bytes, hex(result.text));
  }
  // Not written although the decoders give it.
  const struct {
    const char *name, *text;
  } lacking[] = {
      {"shift_jis", "\uE000"}, {"shift_jis", "\u00A0"},    {"euc-jp", "丂"},
      {"big5", "䏰"},          {"big5", "\u00CA\u0304"},   {"gb18030", "\uE5E5"},
      {"gbk", "\U00010000"},   {"gbk", "\u0080"},          {"iso-2022-jp", "\x1B"},
      {"iso-2022-jp", "\x0E"}, {"windows-1253", "\uF8F9"},
  };
  for (const auto& c : lacking) {
    SCOPED_TRACE(std::string(c.name) + " " + c.text);
    EXPECT_EQ(StreamStatus::kStopped, stream(settingsFor(kUtf8, web(c.name)), c.text).status);
  }
}

TEST(WebEncodings, RefuseToWriteWhatTheStandardWritesAsUtf8) {
  for (const char* name : {"utf-16le", "utf-16be", "replacement"}) {
    StreamConverter converter;
    EXPECT_EQ(StreamStatus::kNoEncoder, converter.begin(settingsFor(kUtf8, web(name)))) << name;
    EXPECT_FALSE(findCodePage(web(name))->canWrite) << name;
  }
}

// The file has texts, good and bad, and what a browser reads in them.
TEST(WebEncodings, ReadAsABrowser) {
  std::ifstream file(ENCCONV_TEST_DATA "/web_decoders.txt");
  std::size_t count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string name, bytes, text;
    std::getline(fields, name, '|');
    std::getline(fields, bytes, '|');
    std::getline(fields, text);
    SCOPED_TRACE(line);
    EXPECT_EQ(text, hex(decoded(name, unhex(bytes))));
    ++count;
  }
  EXPECT_GT(count, 200u);
}
