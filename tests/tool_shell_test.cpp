// The tool in a shell: with the locale of the environment, in pipes, with little memory.
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <regex>
#include <thread>

#include "apps/encconv/console.h"
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

TEST_F(ToolTest, EndsLinesHoweverTheTextIsCut) {
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

TEST_F(ToolTest, SeveralThreadsStandBetweenPipes) {
  std::string text;
  for (int i = 0; i < 30000; ++i) text += "line " + std::to_string(i) + " größer\n";
  write("text", text);
  const std::string convert = ENCCONV_TOOL " -j 4 --job-size 5000 -f utf-8 -t iso-2022-jp-2 ";
  const ToolRun piped = shell("cat text | " + convert + "| cat");
  EXPECT_EQ(piped.err, "");
  EXPECT_TRUE(piped.out == run("-f utf-8 -t iso-2022-jp-2 text").out);
  // A reader that goes away.
  EXPECT_EQ(shell("{ " + convert + "text; echo $? >&2; } | head -c 9").err, "141\n");
}

TEST_F(ToolTest, LeavesTheFileOfAStreamInPlace) {
  const std::string report = ENCCONV_TOOL " -q -f ascii -t utf-8 --on-error drop -o text --report ";
  const ToolRun said = shell("{ " + report + "/dev/stdout; echo out; } >all; { " + report +
                                 "/dev/stderr; echo err >&2; } 2>>all; cat all",
                             "\xFF");
  EXPECT_EQ(said.out,
            "standard input: byte offset 0, line 1: FF is not valid US-ASCII (code page 20127)\n"
            "out\nerr\n");
  EXPECT_EQ(
      shell("{ echo a; " ENCCONV_TOOL " -f 1252 -t utf-8 -o all; echo b; } >all; cat all", "\xE9\n")
          .out,
      "a\né\nb\n");
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
    // In bounded memory, but for sanitizers and emulators, which reserve all that there is.
#if defined(ENCCONV_SANITIZED) || defined(ENCCONV_EMULATED)
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

TEST_F(ToolTest, CompletesNamesOfEncodings) {
  const auto complete = [&](const std::string& words, int at) {
    return shell("bash -c 'PATH=$(dirname " ENCCONV_TOOL "):$PATH; source " ENCCONV_TEST_DATA
                 "/../../apps/encconv/completions/encconv.bash; COMP_WORDS=(encconv " +
                 words + "); COMP_CWORD=" + std::to_string(at) +
                 "; _encconv; echo ${COMPREPLY[@]}'")
        .out;
  };
  EXPECT_EQ(complete("-f au", 2), "auto\n");
  EXPECT_EQ(complete("-t au", 2), "\n");
  EXPECT_EQ(complete("--to = 125", 3), "1250 1251 1252 1253 1254 1255 1256 1257 1258\n");
  EXPECT_EQ(complete("-t uj", 2), "ujis\n");
  EXPECT_EQ(complete("-t csShift", 2), "csShiftJIS\n");
}

// What a terminal gets that is standard error for as long as the function runs.
template <typename Function>
std::string onTerminal(const Function& function) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  EXPECT_TRUE(grantpt(terminal) == 0 && unlockpt(terminal) == 0);
  const int shown = open(ptsname(terminal), O_RDWR | O_NOCTTY);  // NOLINT(concurrency-mt-unsafe)
  const int before = dup(STDERR_FILENO);
  dup2(shown, STDERR_FILENO);
  function();
  (void)!write(STDERR_FILENO, "end", 3);
  dup2(before, STDERR_FILENO);
  std::string text;
  while (!text.ends_with("end")) {
    char some[256];
    const ssize_t count = read(terminal, some, sizeof some);
    if (count <= 0) break;
    text.append(some, static_cast<std::size_t>(count));
  }
  for (const int file : {terminal, shown, before}) close(file);
  return text;
}

TEST(Console, DrawsProgressOnATerminal) {
  for (const bool isSizeKnown : {true, false}) {
    const std::string text = onTerminal([=] {
      tool::Console console(true);
      console.expectInput(1000);
      console.expectInput(isSizeKnown ? 1048 : -1);
      console.advance(99);  // too early
      std::this_thread::sleep_for(std::chrono::milliseconds(1050));
      console.advance(1);
      console.advance(1);  // too early again
      console.report("a\x1B");
      std::this_thread::sleep_for(std::chrono::milliseconds(250));
      console.advance(923);
    });
    const std::string size = isSizeKnown ? " of 2.0 KiB" : "",
                      left = isSizeKnown ? ", \\d+ s left" : "";
    const std::string rate = ", \\d+ bytes/s", blank = " {20,}\r";
    EXPECT_TRUE(std::regex_match(text, std::regex("100 bytes" + size + rate + left + " *\r" +
                                                  blank + "encconv: a\\\\x1B\r\n" + "1.0 KiB" +
                                                  size + rate + left + " *\r" + blank + "end")))
        << text;
  }
  EXPECT_EQ(onTerminal([] {
              tool::Console console(false);
              std::this_thread::sleep_for(std::chrono::milliseconds(1050));
              console.advance(1);
            }),
            "end");
}

}  // namespace
