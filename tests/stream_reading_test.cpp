// Tests of what streams read that EncConvert does not, and of how much they take for one bad piece.
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

constexpr int kUtf8 = 65001;

struct Reading {
  int from;
  std::string input, output;
};

// What is malformed becomes "!", however the text is cut.
void expectReadings(std::span<const Reading> cases) {
  for (const Reading& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " " + hex(c.input));
    const StreamSettings settings = settingsFor(c.from, kUtf8, "substitute=!");
    const StreamResult result = stream(settings, c.input);
    EXPECT_EQ(result.text, c.output);
    EXPECT_EQ(result, stream(settings, c.input, [] { return 1; }));
  }
}

}  // namespace

// Second codes of characters: what other converters write, and what is written here.
TEST(StreamReading, KnowsCodesThatAreOnlyRead) {
  const struct {
    int page;
    std::string codes, text, written;
  } cases[] = {
      {932, "EE E0 8B B4 20 EE EF ED 95", "髙橋 ⅰ﨑", "FB FC 8B B4 20 FA 40 FA B1"},
      {932, "87 90 87 9C FA 54 EE F9 FA 4A", "≒∪￢￢Ⅰ", "81 E0 81 BE 81 CA 81 CA 87 54"},
      {950, "A2 A4 A2 A7 A2 CC F9 FA", "═╡十╭", "F9 F9 F9 EB A4 51 A2 7E"},
      {51932, "A4 A2 AD F0 FC FB", "あ≒￢", "A4 A2 A2 E2 A2 CC"},
      // Accents stand before their letters, and before a space by themselves.
      {20261, "41 9E 9F C2 65 C8 75 C2 20 C2 C2 65 C2", "A\u009E\u009Féü´´é´", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.page);
    const std::string codes = unhex(c.codes);
    const StreamResult read = stream(settingsFor(c.page, kUtf8), codes);
    EXPECT_EQ(read.text, c.text);
    EXPECT_EQ(read, stream(settingsFor(c.page, kUtf8), codes, [] { return 1; }));
    EXPECT_TRUE(convert(c.page, kUtf8, codes).foundErrors);
    if (c.written.empty()) continue;
    EXPECT_EQ(hex(stream(settingsFor(kUtf8, c.page), c.text).text), c.written);
    // A copy keeps the codes; text that reaches the target by its own code page is the same text.
    EXPECT_EQ(stream(settingsFor(c.page, c.page), codes).text, codes);
    if (c.page != 932) continue;
    const std::string mail = stream(settingsFor(932, 50220), codes).text;
    EXPECT_EQ(stream(settingsFor(50220, kUtf8), mail).text, c.text);
  }
}

// A pair that is not assigned is one piece when its second byte is of the upper half, and never
// takes along what may be a quote, a bracket or a line end.
TEST(StreamReading, TakesAnUnassignedPairForOnePiece) {
  const Reading cases[] = {
      {932, "a\x85\x9F\x82\xA0\x81\xAD\x82\xA0z", "a!あ!あz"},
      {932, "<a title=\"\x81\">\x82\n\x85", "<a title=\"!\">!\n!"},
      {932, "\xFC\xFC\x82\xA0\xEB\x80!", "!あ!!"},
      {932, "\x81\xFD\x82\xA0", "!\uF8F1あ"},  // FD is beyond the second bytes, and a character
      {936, "\x81\xFF\x81\x40\xFE\x7F\xB0\xA1", "!\uF8F5丂!\x7F啊"},
      {949, "\xC9\x80\xA2\xE8\xFE\x9C\xB0\xA1", "!\u0080!!가"},
      {950, "\xA3\xFE\xA4\x40\xF9\x80\xA4\x40", "!一!\u0080一"},
      {1361, "\x84\x82\x88\x61\xD4\x88\x61", "!가\uF8EC가"},
      {51949, "\xC9\xFF\xB0\xA1\xAD\xA1\xB0\xA1", "!\uF8F7가!가"},
      {51932, "\x8F\xB0\xA1\xB0\xA1\x8F\xB0z\x8F\xA4", "!亜!!z!!"},
  };
  expectReadings(cases);
  // A character behind a shift that goes with nothing has a place of its own.
  const StreamResult shifted = stream(settingsFor(kCodePageEucJp, 1252, "drop"), "\x8F\x8AI");
  ASSERT_EQ(shifted.errors.size(), 2u);
  EXPECT_EQ(shifted.errors[1].offset, 1u);
  const StreamResult told = stream(settingsFor(932, kUtf8, "drop"), "a\x85\x9F\x81\"\x85");
  ASSERT_EQ(told.errors.size(), 3u);
  EXPECT_EQ(told.text, "a\"");
  for (const auto& [i, offset, length] : {std::tuple{0u, 1u, 2u}, {1u, 3u, 1u}, {2u, 5u, 1u}}) {
    EXPECT_EQ(told.errors[i].offset, offset);
    EXPECT_EQ(told.errors[i].length, length);
  }
}

// What follows an unknown designation is in a set of which nothing is known, up to the next known
// one or the end of the line.
TEST(StreamReading, TakesUnknownDesignationsForMalformed) {
  const Reading cases[] = {
      {50220, "a\x1B$(O\x2E\x22 \x2E!\x1B(Bb", "a!! !b"},
      {50221, "\x1B$A0!0\x1B$B$\"\x1B(B", "!!!あ"},
      {50222, "a\x1B(Zbc\nd\x1B+Be\x1B(Bf", "a!!!\nd!ef"},
      {50220, "\x1B$B$\"\x1B.A$\"\x1B(B", "あ!あ"},
      {50220, "\x1B$B$\"\x1B(I1\x1B$)C1", "あｱ!ｱ"},
      {50220, "\x1B\x1B[1mx\x1B$\x1B(", "\x1B\x1B[1mx\x1B$\x1B("},  // no designations
      {50220, "\x1B$(Dz0!\x1B(B", "!!"},  // a known one, without characters in 932
  };
  expectReadings(cases);
  const StreamResult told = stream(settingsFor(50220, kUtf8, "drop"), "ab\x1B$(O\x2E\x22\x1B(B");
  ASSERT_EQ(told.errors.size(), 2u);
  EXPECT_EQ(told.errors[0].offset, 2u);
  EXPECT_EQ(told.errors[0].length, 4u);
  EXPECT_EQ(told.errors[1].offset, 6u);
  EXPECT_EQ(told.errors[1].length, 2u);
}

TEST(StreamReading, ReadsAndWritesEucJp) {
  const Reading cases[] = {
      {kCodePageEucJp, "a\xA4\xA2\x8E\xB1\x8F\xB0\xA1\x85\n", "aあｱ丂\u0085\n"},
      {kCodePageEucJp, "\xA1\xC1\xA1\xC2\xA1\xDD\xA1\xC0\x8F\xA2\xB7", "〜‖−＼～"},
      // One piece each: pairs and three bytes that are not assigned, a byte that cannot begin.
      {kCodePageEucJp, "\xA9\xA1\xA4\xA2\x8E\xE0\xA4\xA2\x8F\xA1\xA1\xA4\xA2\xA0\xFFz",
       "!あ!あ!あ!!z"},
      {kCodePageEucJp, "\xA4\"\x8F\xB0<\x8E\n\x8F\xB0", "!\"!!<!\n!!"},
  };
  for (const Reading& c : cases) {
    SCOPED_TRACE(hex(c.input));
    const StreamSettings settings = settingsFor(c.from, kUtf8, "substitute=!");
    const StreamResult result = stream(settings, c.input);
    EXPECT_EQ(result.text, c.output);
    EXPECT_EQ(result, stream(settings, c.input, [] { return 1; }));
    const StreamSettings writing = settingsFor(kUtf8, c.from);
    if (result.errors.empty()) {
      EXPECT_EQ(hex(stream(writing, c.output).text), hex(c.input));
    }
  }
  const StreamResult told =
      stream(settingsFor(kUtf8, kCodePageEucJp, "substitute=?"), "a\u00A0한\U0001F600あ");
  EXPECT_EQ(told.text, "a???\xA4\xA2");
  ASSERT_EQ(told.errors.size(), 3u);
  EXPECT_EQ(told.errors[2].codePoint, 0x1F600);
  EXPECT_EQ(told.errors[2].offset, 6u);
  EXPECT_EQ(told.errors[2].length, 4u);
  // A copy is looked at as well, and characters that the target lacks are told with their place.
  const StreamResult copy =
      stream(settingsFor(kCodePageEucJp, kCodePageEucJp, "drop"), "\xA4\xA2\xA5\n\x8F\xB0\xA1");
  EXPECT_EQ(copy.text, "\xA4\xA2\n\x8F\xB0\xA1");
  const StreamResult latin =
      stream(settingsFor(kCodePageEucJp, 1252, "hex"), "a\x8F\xB0\xA1\n\xA4\xA2z");
  EXPECT_EQ(latin.text, "a&#x4E02;\n&#x3042;z");
  ASSERT_EQ(latin.errors.size(), 2u);
  EXPECT_EQ(latin.errors[0].length, 3u);
  EXPECT_EQ(latin.errors[1].offset, 5u);
  EXPECT_EQ(latin.errors[1].line, 2u);
}
