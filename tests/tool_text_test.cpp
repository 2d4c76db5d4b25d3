// The tool and what stands around the text: iconv's way to ask, byte order marks, line ends, and
// the report of all places.
#include "tests/tool_support.h"

namespace {

// What iconv takes means here what it means there; the texts were compared with those of glibc's.
TEST_F(ToolTest, TakesWhatIconvTakes) {
  const struct {
    const char* arguments;
    const char* input;
    const char* output;
    int status;
    const char* said;  // a part of the one line; null: nothing is said
  } cases[] = {
      {"-c -f utf-8 -t latin1", "a\u4E00\xFFé", "a\xE9", 0, "2 places"},
      {"-c -s -f utf-8 -t latin1", "a\u4E00\xFFé", "a\xE9", 0, nullptr},
      {"-c --strict -f utf-8 -t latin1", "a\u4E00\xFFé", "a\xE9", 1, "2 places"},
      {"-f utf-8 -t latin1//IGNORE", "a\u4E00\xFFé", "a\xE9", 0, "2 places"},
      {"--from-code=utf8// --to-code=latin1//", "é", "\xE9", 0, nullptr},
      {"-f utf-8 -t us-ascii//TRANSLIT", "a\u4E00b", "a?b", 0, "1 place"},
      {"-f utf-8 -t us-ascii//TRANSLIT", "½\u0301Ж", " 1/2 ZH", 0,
       "3 characters were approximated; the first at byte offset 0, line 1: U+00BD (C2 BD) "
       "became "},
      {"-f utf-8 -t us-ascii//translit//ignore",
       "a\u4E00\xFF"
       "b",
       "ab", 0, "2 places"},
      {"-f utf-8 -t us-ascii//TRANSLIT,IGNORE",
       "a\u4E00\xFF"
       "b",
       "ab", 0, "2 places"},
      // Bytes that are no text are no matter of transliteration, also in the middle of a stream
      // with codecs on both sides.
      {"-f utf-8 -t us-ascii//TRANSLIT",
       "a\u4E00\xFF"
       "b",
       "a?", 1, "byte offset 4, line 1: FF"},
      {"-f iso-2022-jp -t gsm//TRANSLIT",
       "a\x1B$B0l\x1B(B\xFF"
       "b",
       "a?", 1, "byte offset 9, line 1: FF"},
      {"-f utf-8", "é", "é", 0, nullptr},
      {"-t utf-16be", "é", "\0\xE9", 0, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.arguments) + " " + c.input);
    const ToolRun outcome =
        shell(std::string("LC_ALL=C.UTF-8 " ENCCONV_TOOL " ") + c.arguments, c.input);
    const std::string output = c.output[0] == 0 ? std::string("\0\xE9", 2) : c.output;
    EXPECT_EQ(outcome.out, output);
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    if (c.said == nullptr) {
      EXPECT_EQ(outcome.err, "");
    } else {
      expectOneLine(outcome, c.said);
    }
  }
  EXPECT_EQ(run("-l").out, run("--list").out);
  // The locale without an encoding of its own has ASCII; one that is not installed says its name's.
  expectOneLine(shell("LC_ALL=C " ENCCONV_TOOL " -t utf-8", "é"), "C3 is not valid US-ASCII");
  EXPECT_EQ(shell("LC_ALL=xx_XX.KOI8-R@x " ENCCONV_TOOL " -t utf-8", "\xC1").out, "а");
  expectOneLine(shell("LC_ALL=xx_XX " ENCCONV_TOOL " -t utf-8", "a"), "name another with -f");
}

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

  // However the text is cut on its way.
  std::string text, ended;
  for (int i = 0; text.size() < 1u << 20; ++i) {
    text += std::string(static_cast<std::size_t>(i % 91), 'a') + "\r\n";
    ended += std::string(static_cast<std::size_t>(i % 91), 'a') + "\n";
  }
  for (const char* other : {"utf-8", "utf-16"}) {
    const ToolRun cut = shell(std::string(ENCCONV_TOOL " -f 1252 --newline lf -t ") + other +
                                  " | " ENCCONV_TOOL " -t 1252 -f " + other,
                              text);
    EXPECT_TRUE(cut.out == ended) << other;
  }
}

TEST_F(ToolTest, ReportsEveryPlace) {
  write("text", "\xE4\xB8\x80\n\xFF\n");
  write("odd\n\xE9\"", "\xFF");
  const std::string arguments = "-f utf-8 -t 1252 --on-error drop -q text odd* -o result --report ";
  EXPECT_EQ(run(arguments + "places").status, 0);
  EXPECT_EQ(
      read("places"),
      "text: byte offset 0, line 1: U+4E00 (E4 B8 80) has no place in windows-1252 (code page "
      "1252)\n"
      "text: byte offset 4, line 2: FF is not valid UTF-8 (code page 65001)\n"
      "odd\\n\xE9\": byte offset 0, line 1: FF is not valid UTF-8 (code page 65001)\n");
  EXPECT_EQ(run(arguments + "- --json").out,
            R"({"file": "text", "offset": 0, "line": 1, "length": 3, "kind": "no place", )"
            R"("bytes": "E4 B8 80", "character": "U+4E00", "from": "UTF-8", "to": "windows-1252"})"
            "\n"
            R"({"file": "text", "offset": 4, "line": 2, "length": 1, "kind": "malformed", )"
            R"("bytes": "FF", "character": null, "from": "UTF-8", "to": "windows-1252"})"
            "\n"
            R"({"file": "odd\u000a\udce9\"", "offset": 0, "line": 1, "length": 1, )"
            R"("kind": "malformed", "bytes": "FF", "character": null, "from": "UTF-8", )"
            R"("to": "windows-1252"})"
            "\n");
  // Of records, in the input; of a file that stops, the place; of many files at once, all.
  EXPECT_EQ(run("-f utf-8 -t 1252 --record-length 2 -o result --report -", "a \xFF ").out,
            "standard input: byte offset 2, record 2: FF is not valid UTF-8 (code page 65001)\n");
  std::string many;
  for (int i = 0; i < 200000; ++i) many += "\xFF";
  for (int i = 0; i < 4; ++i) write("many" + std::to_string(i), many);
    // In bounded memory, but for sanitizers, which reserve all that there is.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  const std::string limit;
#else
  const std::string limit = "ulimit -v 200000; ";
#endif
  const ToolRun bounded =
      shell(limit + ENCCONV_TOOL
            " -f utf-8 -t 1252 --on-error drop -q --output-dir into -j 4 --report - many* | wc -l");
  EXPECT_EQ(bounded.out, "800000\n") << bounded.err;
  expectOneLine(run("-f utf-8 -t 1252 --on-error drop -q many0 -o result --report /dev/full"),
                "/dev/full: No space left");
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
