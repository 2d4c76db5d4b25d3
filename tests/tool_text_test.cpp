// The tool and what stands around the text: byte order marks and line ends.
#include "apps/encconv/console.h"
#include "tests/tool_support.h"

namespace {

TEST_F(ToolTest, DoesAsAskedWithMarks) {
  const std::string mark = "\xEF\xBB\xBF", le("\xFF\xFE", 2), be("\xFE\xFF", 2);
  const std::string a16("a\0", 2), a16be("\0a", 2);
  write("marked", mark + "a");
  write("plain", "a");
  write("empty", "");
  write("long", mark + std::string(300000, 'a'));
  const struct {
    const char* arguments;
    std::string input, output;
  } cases[] = {
      {"-f utf-8 -t utf-8", mark + "a", mark + "a"},
      {"-f utf-8 -t utf-8 --bom=remove", mark + "a", "a"},
      {"-f utf-8 -t utf-8 --bom=remove", mark, ""},
      {"-f utf-8 -t utf-8 --bom=remove", "a", "a"},
      {"-f utf-8 -t utf-8 --bom=keep", mark + "a", mark + "a"},
      {"-f utf-8 -t utf-8 --bom=add", mark + "a", mark + "a"},
      {"-f utf-8 -t utf-8 --bom", "a", mark + "a"},
      {"-f utf-8 -t utf-16 --bom=keep", mark + "a", le + a16},
      {"-f utf-8 -t utf-16 --bom=keep", "a", a16},
      {"-f utf-8 -t utf-16", mark + "a", a16},
      {"-f utf-16 -t utf-16be --bom=keep", le + a16, be + a16be},
      {"-f utf-16 -t utf-16 --bom=remove", be + a16be, a16},
      {"-f utf-8 -t 1252 --bom=keep", mark + "a", "a"},
      // The first of several tells, and none is left in the middle.
      {"-f utf-8 -t utf-8 --bom=keep plain marked", "", "aa"},
      {"-f utf-8 -t utf-8 --bom=keep marked marked", "", mark + "aa"},
      {"-f utf-8 -t utf-8 --bom marked marked", "", mark + "aa"},
      {"-f utf-8 -t utf-8 marked marked", "", mark + "aa"},
      {"-f utf-8 -t utf-8 --bom empty marked", "", mark + "a"},
      {"-f utf-8 -t utf-8 --bom=remove long", "", std::string(300000, 'a')},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(run(c.arguments, c.input).out == c.output) << c.arguments << " " << c.input;
  }
}

TEST_F(ToolTest, MakesLineEndsTheSame) {
  const struct {
    const char* arguments;
    std::string input, output;
  } cases[] = {
      {"-f utf-8 -t utf-8 --newline lf", "a\r\nb\rc\nd\r\r\n\n", "a\nb\nc\nd\n\n\n"},
      {"-f utf-8 -t utf-8 --newline crlf", "a\r\nb\rc\nd\r\r\n\n", "a\r\nb\r\nc\r\nd\r\n\r\n\r\n"},
      {"-f utf-8 -t utf-8 --newline cr", "a\r\nb\n", "a\rb\r"},
      {"-f utf-8 -t utf-8 --newline keep", "a\r\nb\rc\n", "a\r\nb\rc\n"},
      {"-f utf-8 -t 932 --newline crlf", "表\n", "\x95\\\r\n"},
      {"-f utf-8 -t utf-16 --newline crlf", "\u0A0D\n\u0D0A",
       std::string("\x0D\x0A\x0D\0\x0A\0\x0A\x0D", 8)},
      {"-f utf-8 -t utf-32be --newline lf", "\r\n", std::string("\0\0\0\n", 4)},
      {"-f utf-8 -t 37 --newline lf", "A\r\nB\r", "\xC1\x25\xC2\x25"},
      {"-f utf-8 -t 37 --newline crlf --ebcdic-newline lf", "A\nB", "\xC1\x0D\x15\xC2"},
      {"-f 37 -t utf-8 --newline crlf --ebcdic-newline lf", "\xC1\x15", "A\r\n"},
      {"-f utf-8 -t iso-2022-jp --newline crlf", "\u4E00\n\u4E00",
       "\x1B$B0l\x1B(B\r\n\x1B$B0l\x1B(B"},
      {"-f utf-8 -t iso-2022-kr --newline crlf", "a\nb\r", "\x1B$)Ca\r\nb\r\n"},
      {"-f utf-8 -t hz --newline crlf", "一\n", "~{R;~}\r\n"},
      {"-f utf-8 -t gsm --newline crlf", "a\f\n\f", "a\x1B\n\r\n\x1B\n"},
      // Places are told in the input.
      {"-f utf-8 -t 1252 --newline crlf --on-error hex -q", "\n\u4E00\n", "\r\n&#x4E00;\r\n"},
  };
  for (const auto& c : cases) EXPECT_EQ(run(c.arguments, c.input).out, c.output) << c.arguments;
}

TEST(Console, ShowsSizesAndTimes) {
  const std::pair<std::uint64_t, const char*> sizes[] = {
      {0, "0 bytes"},        {1, "1 byte"},        {1023, "1023 bytes"},
      {1024, "1.0 KiB"},     {102348, "99.9 KiB"}, {102349, "100 KiB"},
      {1048524, "1024 KiB"}, {1048525, "1.0 MiB"}, {~std::uint64_t{0}, "16.0 EiB"}};
  for (const auto& [bytes, text] : sizes) EXPECT_EQ(tool::formatBytes(bytes), text) << bytes;
  const std::pair<double, const char*> times[] = {
      {0.0, "0.00 ms"},      {0.0099, "9.90 ms"},  {0.01, "10 ms"},
      {1, "1.00 s"},         {59.99, "59.99 s"},   {60, "1 min 00 s"},
      {3599, "59 min 59 s"}, {3600, "1 h 00 min"}, {90061, "25 h 01 min"}};
  for (const auto& [seconds, text] : times) EXPECT_EQ(tool::formatDuration(seconds), text);
}

TEST_F(ToolTest, TellsWhatItDid) {
  const ToolRun told = run("-v -f utf-8 -t 1252 --on-error substitute -q -o result", "a\u4E00b");
  expectOneLine(
      told,
      "encconv: standard input: UTF-8 (code page 65001) to windows-1252 (code page 1252), "
      "5 bytes to 3 bytes in ");
  EXPECT_TRUE(told.err.ends_with("/s; substitute: 1 place\n")) << told.err;
}

}  // namespace
