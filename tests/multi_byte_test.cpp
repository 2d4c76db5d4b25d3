// Encodings of one to four bytes a character over mappings: texts of other converters, what changed
// between editions, and what is malformed.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "encoding/codecs/mapping_files.h"
#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

std::string bytesOfHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

}  // namespace

TEST(MultiByte, ReadsAndWritesTheTextsOfOtherConverters) {
  std::ifstream file(ENCCONV_TEST_DATA "/multi_byte_peers.txt");
  int lines = 0;
  for (std::string line; std::getline(file, line); ++lines) {
    SCOPED_TRACE(line);
    std::istringstream words(line);
    int number = 0;
    std::string hex, text;
    words >> number >> hex;
    std::getline(words.ignore(), text);
    const std::string bytes = bytesOfHex(hex);
    EXPECT_EQ(text, stream(settingsFor(number, 65001), bytes).text);
    EXPECT_EQ(bytes, stream(settingsFor(65001, number), text, [] { return 1; }).text);
  }
  EXPECT_GT(lines, 20);
}

TEST(MultiByte, TellsEditionsApart) {
  const struct {
    int number;
    std::string bytes;
    std::string text;
  } kCases[] = {
      // GB 18030: characters that got scalar values of their own, and exchanged their codes.
      {54936, "\xA6\xD9\xFE\x59\xA8\xBC"s, "\uFE10\u9FB4\u1E3F"},
      {54936, "\x84\x31\x82\x36\x82\x35\x90\x37"s, "\uE78D\uE81E"},
      {200700, "\xA6\xD9\xFE\x59\xA8\xBC"s, "\uE78D\uE81E\u1E3F"},
      {200700, "\x84\x31\x82\x36\x82\x35\x90\x37"s, "\uFE10\u9FB4"},
      {54936, "\x81\x30\x81\x30\x84\x31\xA4\x39\x90\x30\x81\x30\xE3\x32\x9A\x35"s,
       "\u0080\uFFFF\U00010000\U0010FFFF"},
      // Bytes over ASCII, and those of JIS X 0201 and KS X 1003.
      {943, "\x5C\x7E"s, "\u00A5\u203E"},
      {200727, "\x5C\x7E"s, "\\~"},
      {100949, "\x5C"s, "\u20A9"},
      // Plane 1 of CNS 11643 has two bytes, and four where its number is given.
      {51950, "\xC4\xA1\x8E\xA2\xA1\xA1"s, "\u4E00\u4E42"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(c.text, stream(settingsFor(c.number, 65001), c.bytes).text);
    EXPECT_EQ(c.bytes, stream(settingsFor(65001, c.number), c.text).text);
  }
  EXPECT_EQ("\u4E00", stream(settingsFor(51950, 65001), "\x8E\xA1\xC4\xA1").text);
}

TEST(MultiByte, TreatsWhatIsMalformed) {
  const struct {
    int number;
    std::string bytes;
    std::string text;
  } kCases[] = {
      {54936, "\x81"s, "<0x81>"},
      {54936, "\x81\x30"s, "<0x81>0"},
      {54936, "\x81\x30\x81"s, "<0x81>0<0x81>"},
      {54936, "\x81\x30\x22\x30"s, "<0x81>0\"0"},
      {54936, "\x81\x30\x80\x30\xFF"s, "<0x81>0<0x80>0<0xFF>"},
      {54936, "\x84\x31\xA5\x30\x41"s, "<0x8431A530>A"},  // between the BMP and what is beyond
      {54936, "\xE3\x32\x9A\x36"s, "<0xE3329A36>"},       // beyond U+10FFFF
      {54936, "\x80\xFF\x41"s, "<0x80><0xFF>A"},
      {200706, "\x88\x62\x88\x41\x87\x22"s, "\u00CA\u0304\u31C1<0x87>\""},
      {200730, "\x8F\xA1\xA1\x8F\xA2\x41"s, "\U00020089<0x8FA2>A"},
      {51950, "\x8E\xA3\xE1\xE8\x41\x8E\xA2\x41"s, "<0x8EA3E1E8>A<0x8E><0xA2>A"},
      {200723, "\x82\xF5\x82"s, "か\u309A<0x82>"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(::testing::PrintToString(c.bytes));
    const StreamResult read = stream(settingsFor(c.number, 65001, "hex"), c.bytes);
    EXPECT_EQ(c.text, read.text);
    EXPECT_EQ(read, stream(settingsFor(c.number, 65001, "hex"), c.bytes, [] { return 1; }));
  }
}

// A mark that follows, or does not, decides on the code of the letter before it.
// A code that is written for several characters is read as one of them.
TEST(MultiByte, FindsTheCharacterOfEveryCode) {
  class Check final : public MappingVisitor {
   public:
    void visit(const Mapping& mapping) override {
      if (!m_seen.insert(mapping.index).second) return;
      const CodeTable* const table = CodeTable::open(mapping);
      ASSERT_NE(table, nullptr);
      for (char32_t scalar = 1; scalar < 0x30000; ++scalar) {
        const std::uint32_t code = table->codeOf(scalar);
        if (code == 0) continue;
        const CodeTable::Entry entry = table->find(code);
        const auto read = static_cast<char32_t>(entry & ~CodeTable::kKind);
        const bool isOwn = (entry & CodeTable::kKind) == CodeTable::kScalar &&
                           (read == scalar || table->codeOf(read) == code);
        EXPECT_TRUE(isOwn) << mapping.index << " U+" << std::hex << std::uint32_t{scalar} << " "
                           << code << " " << entry;
      }
    }

   private:
    std::set<int> m_seen;
  } check;
  for (const EncodingRow& row : encodingRows()) visitMappings(row, check);
}

TEST(MultiByte, WritesSequencesWhereverTheTextIsCut) {
  const struct {
    int number;
    std::string text;
    std::string bytes;
  } kCases[] = {
      {200706, "\u00CA\u0304\u00CA\u030C\u00CA", "\x88\x62\x88\x64\x88\x66"s},
      {200706, "\u00EAx\u00EA\u0304", "\x88\xA7x\x88\xA3"s},
      {200723, "か\u309Aか", "\x82\xF5\x82\xA9"s},
      {200730, "\u02E9\u02E5\u02E9", "\xAB\xE5\xAB\xE4"s},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    for (std::size_t size = 1; size < 9; ++size) {
      EXPECT_EQ(c.bytes, stream(settingsFor(65001, c.number), c.text, [&] { return size; }).text);
    }
  }
}

// Sets of pairs by themselves have no room for anything else.
// In runs of their own as one by one, whatever stands between them and wherever a run ends.
TEST(MultiByte, ReadsAndWritesRunsBeyondTheFirstPlane) {
  const std::string pieces[] = {"\x94\x39\xD5\x36"s, "\xE3\x32\x9A\x35"s, "a"s,
                                "\x81\x30\x81\x30"s, "\xC4\xE3"s,         "\xE3\x32\x9A\x36"s,
                                "\x94\x39\xFF\x36"s};
  const StreamSettings reading = settingsFor(54936, 65001, "hex");
  const StreamSettings writing = settingsFor(65001, 54936, "hex");
  for (unsigned int choice = 0; choice < 7 * 7 * 7 * 7; ++choice) {
    std::string bytes = pieces[0] + pieces[0];
    for (unsigned int i = choice; i != 0; i /= 7) bytes += pieces[i % 7] + pieces[0];
    const StreamResult read = stream(reading, bytes);
    ASSERT_EQ(read, stream(reading, bytes, [] { return 1; }));
    ASSERT_EQ(stream(writing, read.text), stream(writing, read.text, [] { return 1; }));
  }
}

TEST(MultiByte, ReadsAndWritesPairsAlone) {
  EXPECT_EQ("啊鸟", stream(settingsFor(200752, 65001), "0!Dq").text);
  EXPECT_EQ("GQ1[", stream(settingsFor(65001, 200753), "한글").text);
  EXPECT_EQ("\xB0\xA1"s, stream(settingsFor(65001, 971), "가").text);
  const StreamResult read =
      stream(settingsFor(200750, 65001, "hex"), "0!\n0\xB0!~~0", [] { return 1; });
  EXPECT_EQ("亜<0x0A><0x30><0xB0>◇<0x7E30>", read.text);
  const StreamResult written = stream(settingsFor(65001, 200755, "drop"), "愛 a\U00020000");
  EXPECT_EQ("0.", written.text);
  EXPECT_EQ(3u, written.errors.size());
}
