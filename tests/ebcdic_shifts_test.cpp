// EBCDIC with shifts: what is malformed, and where.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

struct Case {
  const char* what;
  int from;
  std::string bytes;
  std::string text;  // with <0x...> for what is malformed
};

}  // namespace

// The texts and bytes of the first rows are the C library's.
TEST(EbcdicShifts, Reads) {
  const Case cases[] = {
      {"text", 930, "\xC1\xC2\xC3\x40\x0E\x45\x62\x45\x66\x0F\x40\xF1"s, "ABC 日本 1"},
      {"Korean", 933, "\x0E\x88\x61\x0F\xC1\x0E\x90\x61\x0F"s, "가A나"},
      {"several values for a code", 1390, "\x0E\xEC\xB5\x0F\xC1"s, "か\u309AA"},
      {"no shift back at the end", 930, "\x0E\x45\x62"s, "日"},
      {"a second SO", 930, "\x0E\x45\x62\x0E\x45\x66\x0F"s, "日<0x0E>本"},
      {"SI among single bytes", 930, "\xC1\x0F\xC2"s, "A<0x0F>B"},
      {"half a pair before SI", 930, "\x0E\x45\x62\x45\x0F\xC1"s, "日<0x45>A"},
      {"half a pair at the end", 930, "\x0E\x45"s, "<0x45>"},
      {"a pair that is not assigned", 930, "\x0E\xFE\xFE\x45\x62\x0F"s, "<0xFEFE>日"},
      {"a control among pairs", 930, "\x0E\x00\x45\x62\x0F\xC1"s, "<0x00>日A"},
      {"a line end ends the pairs", 930, "\x0E\x45\x62\x15\xC1\xC2"s, "日<0x15>AB"},
      {"pairs only", 300, "\x45\x62\x0E\x0F\x45\x66\x45"s, "日<0x0E0F>本<0x45>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const StreamResult read = stream(settingsFor(c.from, 65001, "hex"), c.bytes);
    EXPECT_EQ(c.text, read.text);
    EXPECT_EQ(read, stream(settingsFor(c.from, 65001, "hex"), c.bytes, [] { return 1; }));
  }
}

TEST(EbcdicShifts, Writes) {
  const auto written = [](int to, const std::string& text, const std::string& treatment) {
    return stream(settingsFor(65001, to, treatment), text, [] { return 1; }).text;
  };
  // A shift only where the set changes, and the text ends among single bytes.
  EXPECT_EQ("\xC1\x0E\x45\x62\x45\x66\x0F\x15\x0E\x45\x62\x0F"s,
            written(930, "A日本\u0085日", "stop"));
  EXPECT_EQ("\x0E\xEC\xB5\x44\x86\x0F\xC1"s, written(1390, "か\u309AかA", "stop"));
  // What is lacking comes in the set that it is in; SO and SI have no place in a text.
  EXPECT_EQ("\x0E\x45\x62\x0F\x6F\x0E\x45\x66\x0F"s, written(930, "日ğ本", "substitute=?"));
  EXPECT_EQ("\xC1\xC2"s, written(930,
                                 "A\x0E\x0F"
                                 "B",
                                 "drop"));
  EXPECT_EQ("\x45\x62\x45\x66"s, written(300, "日A本", "drop"));
}

// Long texts of short runs, which go in blocks, and what is unusual in one of them: at once as byte
// by byte.
TEST(EbcdicShifts, GoesTheSameInBlocks) {
  std::minstd_rand0 random(1);
  const auto oneOf = [&](const std::string& codes, std::size_t width) {
    return codes.substr(random() % (codes.size() / width) * width, width);
  };
  struct {
    int number;
    std::string pairs, singles;
  } const pages[] = {
      {933, "\x88\x61\x90\x61\x41\x41"s, "\xC1\x40\x15"s},
      {1390, "\x45\x62\x45\x66\xEC\xB5"s, "\xC1\x40\x81"s},
      {931, "\x41\x89\x41\x8C\x41\x8B"s, "\xC1\x40\x6A"s},  // of which both sets have the last
  };
  const std::string faults[] = {"\x0E"s, "\x0E\x0E"s, "\x0F\x0F"s, "\x41"s, "\x41\xFF"s, "\x00"s};
  const std::string others[] = {"ğ", "\x0E", "か\u309A", "😀"};
  for (const auto& page : pages) {
    for (int round = 0; round < 200; ++round) {
      std::string bytes;
      for (int runs = 60; runs != 0; --runs) {
        bytes += '\x0E';
        for (auto i = random() % 6; i != 0; --i) bytes += oneOf(page.pairs, 2);
        bytes += '\x0F';
        for (auto i = random() % 4; i != 0; --i) bytes += oneOf(page.singles, 1);
        if (round % 2 != 0 && random() % 40 == 0) {
          bytes.insert(random() % (bytes.size() + 1), faults[random() % std::size(faults)]);
        }
      }
      const StreamSettings reading = settingsFor(page.number, 65001, "hex");
      const StreamResult read = stream(reading, bytes);
      ASSERT_EQ(read, stream(reading, bytes, [] { return 1; }));
      std::string text = read.text;
      text.insert(text.find(' ', text.size() / 2), others[random() % std::size(others)]);
      const StreamSettings writing = settingsFor(65001, page.number, "hex");
      ASSERT_EQ(stream(writing, text), stream(writing, text, [] { return 1; }));
    }
  }
}
