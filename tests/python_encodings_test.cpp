// Tests of the encodings that are as the codecs of Python have them; what is expected is what these
// give.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "encoding/code_page_list.h"
#include "tests/stream_support.h"

namespace {

constexpr int kUtf8 = 65001;

int python(const std::string& name) {
  const int number = streamCodePage("python:" + name);
  EXPECT_NE(0, number) << name;
  return number;
}

// What a stream gives, however the text is cut; "?" stands for what has no form.
std::string converted(int from, int to, const std::string& text) {
  StreamSettings settings = settingsFor(from, to, "substitute");
  settings.hasSubstitute = true;
  settings.substitute.assign(1, '?');
  const StreamResult result = stream(settings, text);
  EXPECT_EQ(StreamStatus::kGood, result.status);
  EXPECT_EQ(result, stream(settings, text, [] { return 1; }));
  std::minstd_rand0 random(7);
  EXPECT_EQ(result, stream(settings, text, [&] { return 1 + random() % 4; }));
  return result.text;
}

}  // namespace

TEST(PythonEncodings, AreReadAsPythonDoes) {
  const struct {
    const char *name, *bytes, *text;
  } cases[] = {
      // Sets stay, also beyond the end of a line; a shift does not.
      {"iso2022_jp", "\x1B$B$\"\n$$\x1B(JA\\~\x1B(B\\", "あ\nいA¥‾\\"},
      {"iso2022_kr",
       "a\x1B$)C\x0E"
       "0!\n0!\x0E"
       "3*\x0F"
       "b",
       "a가\n0!나b"},
      {"iso2022_kr",
       "\x0E"
       "0!\x0F",
       "0!"},
      // A pair without a character is one piece, whatever its bytes are.
      {"iso2022_jp", "\x1B$B\x7F\x7F$\"\x22\n$\"", "?あ?あ"},
      // Escape sequences of ISO 2022 that are none here; others are text up to their ends.
      {"iso2022_jp", "\x1B$)Ca\x1B.Ab\x1B(Hc", "?a?b?c"},
      {"iso2022_jp", "a\x1BNdef\x1B[1;2H\x1B(B", "a\x1BNdef\x1B[1;2H"},
      {"iso2022_jp", "a\x1B[\x1B(Bb", "a\x1B[\x1B(Bb"},
      {"iso2022_jp", "a\x1B$def", "a?"},
      {"iso2022_jp", "a\x1B&@\x1B$B$\"", "aあ"},
      {"iso2022_jp", "a\x1B$(((((((((((((Bz", "a?z"},
      {"iso2022_jp", "a\x1B$((((((((((((((Bz", "a?$((((((((((((((Bz"},
      {"iso2022_jp_2", "\x1B.A\x1BNi\x1B.F\x1BNa\n\x1BNa", "éα\nα"},
      {"iso2022_jp_2", "a\x1BNb", "ab"},
      {"iso2022_jp_2", "a\x1BN\x80z", "a?z"},
      {"iso2022_jp_ext", "\x1B(I1\x1B(Ba", "ｱa"},
      {"iso2022_jp_2004", "\x1B$(Q+D", "\u00E6\u0300"},
      {"euc_kr", "\xA4\xD4\xA4\xA1\xA4\xBF\xA4\xA2\xA4\xD4\xA4\xB6\xA4\xD0\xA4\xD4", "갂쓔"},
      {"euc_kr",
       "\xB0\xA1\xA4\xD4\xA4\xA1\xA4\xBF\xA4"
       "A\xA4\xA1\x80",
       "가?ㄱㅏ?Aㄱ?"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << " " << c.text);
    EXPECT_EQ(c.text, converted(python(c.name), kUtf8, c.bytes));
  }
}

TEST(PythonEncodings, AreWrittenAsPythonDoes) {
  const struct {
    const char *name, *text, *bytes;
  } cases[] = {
      {"iso2022_jp", "あ\nいa¥b‾", "\x1B$B$\"\x1B(B\n\x1B$B$$\x1B(Ba\x1B(J\\\x1B(Bb\x1B(J~\x1B(B"},
      {"iso2022_jp", "あéい", "\x1B$B$\"\x1B(B?\x1B$B$$\x1B(B"},
      {"iso2022_jp_2", "é가简あ", "\x1B$(D+1\x1B$(C0!\x1B$(A<r\x1B$B$\"\x1B(B"},
      // ESC and shifts are characters; the designation stands where it is needed, once.
      {"iso2022_kr", "a\x1B$)C\x0E가 나\n다",
       "a\x1B$)C\x0E\x1B$)C\x0E"
       "0!\x0F \x0E"
       "3*\x0F\n\x0E"
       "4Y\x0F"},
      {"iso2022_kr", "abc", "abc"},
      // A letter and its mark, also where JIS X 0208 has the letter alone. as Python has them
      // since 3.11.4.
      {"iso2022_jp_2004", "\u00E6\u0300\u00E6", "\x1B$(Q+D)\\\x1B(B"},
      {"iso2022_jp_3", "\u304B\u309A", "\x1B$(O$w\x1B(B"},
      {"euc_kr", "가갂쓔a\u3164",
       "\xB0\xA1\xA4\xD4\xA4\xA1\xA4\xBF\xA4\xA2"
       "\xA4\xD4\xA4\xB6\xA4\xD0\xA4\xD4"
       "a?"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.name << " " << c.text);
    EXPECT_EQ(c.bytes, converted(kUtf8, python(c.name), c.text));
  }
}
