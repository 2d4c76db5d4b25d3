// The tool: its command line, the text that it writes, what it shows.
#include "encconv/encconv.h"
#include "tests/tool_support.h"

namespace {

// What lacks a place in the standard's ISO-8859-1 may be in what is called so elsewhere.
TEST_F(ToolTest, TellsLatin1FromWindows) {
  const ToolRun euro = run("-f utf-8 -t iso-8859-1", "€");
  expectOneLine(euro,
                "U+20AC (E2 82 AC) has no place in ISO-8859-1 (code page 819); windows-1252 has");
  expectOneLine(run("-f utf-8 -t iso-8859-1", "日"), "(code page 819); choose another -t");
  EXPECT_EQ(run("-f utf-8 -t 28591", "€").out, "\x80");
  EXPECT_TRUE(contains(run("--chart latin1").out, "ISO-8859-1 (code page 819)"));
}

TEST_F(ToolTest, ConvertsFilesAndStreamsByNameAndNumber) {
  EXPECT_EQ(run("-f latin1 -t utf-8 latin").out, "café\n");
  EXPECT_EQ(run("-f 1252 -t 65001", "\x80").out, "€");
  EXPECT_EQ(run("-f 37 --from=cp1252 --to=UTF8 latin - latin", "\x80").out, "café\n€café\n");
  EXPECT_EQ(run("-f utf-8 -t utf-16be --bom utf8 utf8 -o both").status, 0);
  EXPECT_EQ(read("both"), std::string("\xFE\xFF\0c\0a\0f\0\xE9\0\n\0c\0a\0f\0\xE9\0\n", 22));
  EXPECT_EQ(run("-f utf-8 -t utf-32le --bom", "a").out, std::string("\xFF\xFE\0\0a\0\0\0", 8));
  EXPECT_EQ(run("-f utf-8 -t utf-16le", "\U0001F600").out, std::string("\x3D\xD8\x00\xDE", 4));
}

TEST_F(ToolTest, RefusesInOneLineAndWritesNothing) {
  struct Case {
    const char* arguments;
    const char* named;
  };
  const Case cases[] = {
      {"-f nonsense -t utf-8 latin -o result", "'nonsense'"},
      {"-f utf-8 -t 12345 latin -o result", "'12345'"},
      {"-f uft-8 -t utf-8 latin -o result", "'uft-8'; did you mean UTF-8?"},
      {"-f ascij -t utf-8 latin -o result", "'ascij'; did you mean ASCII?"},
      {"-f utf-8 -t windws-1251 latin -o result",
       "did you mean windows-1251, windows-1250 or windows-1252?"},
      {"-f utf-8 -t latin1//FAST latin -o result", "'//FAST' is neither //IGNORE nor //TRANSLIT"},
      {"-c --on-error hex -f utf-8 -t latin1 latin -o result", "give one of them"},
      {"-f utf-8 -t utf-8 --nonsense latin -o result", "--nonsense"},
      {"-f 1252 -t utf-8 latin missing -o result", "missing: No such file"},
      {"-f 1252 -t utf-8 . -o result", ".: is a directory"},
      {"-f 1252 -t utf-8 latin -o .", ".: is a directory"},
      {"-f 1252 -t utf-8 latin -o no/such/result", "no/such/result: No such file"},
      {"-f 1252 -t utf-8 latin -o latin", "latin: is both input and output; see --in-place"},
      {"-f 1252 -t utf-8 latin -o ./latin", "latin: is both input and output"},
      {"-f 1252 -t utf-8 latin --output-dir .", "latin: is both input and output"},
      {"-f 1252 -t utf-8 --in-place latin ./latin", "latin: is given twice"},
      {"-f 1252 -t utf-8 --in-place", "--in-place needs files"},
      {"-f 1252 -t utf-8 --in-place latin -", "--in-place needs files"},
      {"-f 1252 -t utf-8 --output-dir into -", "--output-dir needs files"},
      {"-f 1252 -t utf-8 --output-dir utf8 latin", "utf8: File exists"},
      {"-f 1252 -t utf-8 --in-place latin -o result", "only one of"},
      {"-f 1252 -t utf-8 -j 2 --job-size 3 latin", "'3'"},
      {"-f 1252 -t utf-8 --in-place -j lots latin", "'lots'"},
      {"-f utf-8 -t 1252 --bom utf8 -o result", "'1252' has no byte order mark"},
      {"-f utf-8 -t utf-8 --bom=maybe utf8 -o result", "'maybe' is none of keep, add and remove"},
      {"-f utf-8 -t utf-8 --newline=\\r utf8 -o result", "none of lf, crlf, cr and keep"},
      {"-f utf-8 -t utf-8 --report - utf8", "--report: the text goes to standard output"},
      {"-f utf-8 -t utf-8 --report utf8 utf8 -o result", "utf8: is both input and --report"},
      {"-f utf-8 -t utf-8 --report ./result utf8 -o result", "result: is both output and --report"},
      {"-f utf-8 -t utf-8 --report .out utf8", ".out: is both output and --report"},
      {"-f 1252 -t utf-8 --preserve-time latin -o result", "--preserve-time needs"},
      {"-f 1252 -t utf-8 --include '*' latin -o result", "--include needs --recursive"},
      {"-f utf-8 -t 1252 --on-error ignore utf8 -o result", "'ignore'"},
      {"-f utf-8 -t 1252 --on-error alternate=ignore utf8 -o result", "encoding 'ignore'"},
      {"-f utf-8 -t 1252 --on-error substitute=0x1 utf8 -o result", "'substitute=0x1'"},
      {"-f utf-8 -t '' utf8 -o result", "--to: the value is empty"},
      {"-f utf-8 -t 1252 utf8 -o", "--output: the value is missing"},
      {"utf8", "-f FROM -t TO"},
      {"-f utf-8 -t 1252 --on-error substitute=\u4E00 utf8 -o result", "windows-1252"},
      {"-f utf-8 -t 1252 --ebcdic-newline lf utf8 -o result", "EBCDIC"},
      {"-f 37 -t 1252 --trim utf8 -o result", "--trim needs --records"},
      {"-f 37 -t 1252 --record-length 0 utf8 -o result", "'0'"},
      {"-f utf-16 -t 1252 --record-length 3 utf8 -o result", "--records: 3 bytes"},
      {"-f 28602 -t utf-8 latin -o result", "28602"},
      {"-f utf-8 -t 28602 latin -o result", "28602"},
      {"-f 37 -t 1252 --record-length 1048577 utf8 -o result", "'1048577' is not a number"},
      {"-f 1252 -t utf-8 --in-place -j 257 latin", "'257'"},
      {"-f 1252 -t utf-8 --in-place=/old latin", "'/old' has a slash"},
      {"-f 1252 -t utf-8 --html page latin", "--html needs --chart"},
      {"-f 1252 -t utf-8 --json latin", "--json needs --list, --detect, --trace or --report"},
      {"--chart 1252 latin", "unexpected argument 'latin'"},
      {"--list latin2 latin", "unexpected argument 'latin'"},
      {"--list --detect", "only one of"},
      {"--json utf8", "--json needs --list, --detect, --trace or --report"},
      {"--brief utf8", "--brief needs --detect or --trace"},
      {"-f 1252 -t utf-8 --guess utf8", "--guess needs -f auto"},
      {"--chart utf-8", "UTF-8"},
      {"--chart iso-2022-jp", "has no chart"},
      {"--help nonsense", "errors, files"},
  };
  for (const Case& wrong : cases) {
    SCOPED_TRACE(wrong.arguments);
    const ToolRun outcome = run(wrong.arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    expectOneLine(outcome, wrong.named);
    EXPECT_EQ(files(), "latin utf8 ");
  }
  EXPECT_EQ(read("latin"), "caf\xE9\n");
}

TEST_F(ToolTest, StopsWithTheWholeStory) {
  write("target", "old");
  write("text", "first\nnow \u4E00\n");
  const ToolRun outcome = run("-f utf-8 -t 1252 text -o target");
  EXPECT_EQ(outcome.status, 1);
  for (const char* part : {"text: byte offset 10, line 2: U+4E00 (E4 B8 80)",
                           "windows-1252 (code page 1252)", "--on-error"}) {
    expectOneLine(outcome, part);
  }
  EXPECT_EQ(read("target"), "old");
  EXPECT_EQ(files(), "latin target text utf8 ");

  expectOneLine(run("-f hz -t 1252", "~{<:"),
                "line 1: U+5DF1 (3C 3A) has no place in windows-1252");
  expectOneLine(run("-f hz -t 1252", "~{\x80"),
                "80 is not valid hz-gb-2312 (code page 1052936); check -f");
  const ToolRun malformed = run("-f utf-8 -t utf-8 latin");
  EXPECT_EQ(malformed.status, 1);
  EXPECT_EQ(malformed.out, "caf");
  expectOneLine(malformed, "latin: byte offset 3, line 1: E9 is not valid UTF-8");
}

TEST_F(ToolTest, TreatsWhatCannotBeConverted) {
  struct Case {
    const char* arguments;
    const char* input;
    const char* output;
  };
  const Case cases[] = {
      {"-f utf-8 -t 1252 --on-error drop", "a\u4E00b\u4E01c", "abc"},
      {"-f utf-8 -t 1252 --on-error substitute", "a\u4E00b\u4E01c", "a?b?c"},
      {"-f utf-8 -t 1252 --on-error substitute=[é]", "a\u4E00b\u4E01c", "a[\xE9]b[\xE9]c"},
      {"-f utf-8 -t 1252 --on-error substitute=0x1A", "a\u4E00b\u4E01c", "a\x1A\x62\x1A\x63"},
      {"-f utf-8 -t 1252 --on-error hex", "a\u4E00b\u4E01c", "a&#x4E00;b&#x4E01;c"},
      {"-f utf-8 -t utf-8 --on-error alternate=1252", "a\x80\xFF\u4E00", "a€ÿ\u4E00"},
      {"-f utf-8 -t utf-8 --on-error raw", "a\x80\xFF\u4E00", "a\x80\xFF\u4E00"},
  };
  for (const Case& treated : cases) {
    SCOPED_TRACE(treated.arguments);
    const ToolRun outcome = run(treated.arguments, treated.input);
    EXPECT_EQ(outcome.out, treated.output);
    EXPECT_EQ(outcome.status, 0);
    expectOneLine(outcome,
                  "standard input: 2 places were not convertible; the first at byte "
                  "offset 1, line 1: ");
    EXPECT_EQ(run(std::string(treated.arguments) + " --strict --quiet", treated.input).status, 1);
    EXPECT_EQ(run(std::string(treated.arguments) + " --strict --quiet", treated.input).err, "");
  }
}

TEST_F(ToolTest, TellsWhatItWroteForSomethingElse) {
  const ToolRun spaces = run("-f utf-8 -t 932", "a\u00A0\u00A0b");
  EXPECT_EQ(spaces.out, "a  b");
  EXPECT_EQ(spaces.status, 0);
  expectOneLine(spaces,
                "standard input: 2 characters were approximated; the first at byte offset 1, line "
                "1: U+00A0 (C2 A0) became U+0020");
  EXPECT_EQ(run("-f utf-8 -t 932 --strict --quiet", "a\u00A0").status, 1);
  EXPECT_EQ(run("-f utf-8 -t 932 --quiet", "a\u00A0").err, "");

  expectOneLine(run("-f utf-8 -t 1252", "ą"), "go on with --on-error best-fit");
  const ToolRun fitted = run("-f utf-8 -t 1252 --on-error best-fit,hex", "ąą\u4E00");
  EXPECT_EQ(fitted.out, "aa&#x4E00;");
  expectOneLine(fitted,
                "1 place was not convertible; the first at byte offset 4, line 1: U+4E00 (E4 B8 "
                "80) has no place in windows-1252 (code page 1252); 2 characters were "
                "approximated; the first at byte offset 0, line 1: U+0105 (C4 85) became U+0061");
  expectOneLine(run("-f utf-8 -t 932 --record-length 4 --on-error drop", "aaaabb\u00A0"),
                "the first at byte offset 6, record 2");
}

TEST_F(ToolTest, TheWorstOfTheInputsTellsTheStatus) {
  EXPECT_EQ(run("-f utf-8 -t 1252 --on-error drop --strict latin utf8").status, 1);
  EXPECT_EQ(run("-f utf-8 -t 1252 --on-error drop --strict utf8 latin").status, 1);
  EXPECT_EQ(run("-f utf-8 -t 1252 --on-error drop --strict utf8 utf8").status, 0);
  const ToolRun stopped = run("-f utf-8 -t 1252 utf8 latin utf8");
  EXPECT_EQ(stopped.status, 1);
  EXPECT_EQ(stopped.out, "caf\xE9\ncaf");
}

TEST_F(ToolTest, ShapesMainframeText) {
  struct Case {
    const char* arguments;
    std::string input;
    std::string output;
  };
  const std::string record = "\xC1\x40\x40\x40";  // "A" and three blanks
  const Case cases[] = {
      {"-f 37 -t utf-8", "\xC1\x15\xC2\x25", "A\u0085B\n"},
      {"-f 37 -t utf-8 --ebcdic-newline lf", "\xC1\x15\xC2\x25", "A\nB\n"},
      {"-f 37 -t utf-8 --ebcdic-newline nl", "\xC1\x15\xC2\x25", "A\u0085B\u0085"},
      {"-f 1047 -t utf-8 --ebcdic-newline lf", "\xC1\x15\xC2\x25", "A\nB\u0085"},
      {"-f 1047 -t utf-8 --ebcdic-newline nl", "\xC1\x15\xC2\x25", "A\u0085B\u0085"},
      {"-f utf-8 -t 37", "A\nB\u0085", "\xC1\x25\xC2\x15"},
      {"-f utf-8 -t 37 --ebcdic-newline lf", "A\nB\u0085", "\xC1\x15\xC2\x15"},
      {"-f utf-8 -t 1047 --ebcdic-newline lf", "A\nB\u0085", "\xC1\x15\xC2\x25"},
      {"-f utf-8 -t 1047 --ebcdic-newline nl", "A\nB\u0085", "\xC1\x15\xC2\x15"},
      {"-f 37 -t utf-8 --record-length 4", record + record + "\xC1", "A   \nA   \nA\n"},
      {"-f 37 -t utf-8 --record-length 4 --trim", record + record + "\xC1", "A\nA\nA\n"},
      {"-f 37 -t utf-8 --record-length 4 --ebcdic-newline lf", record + "\xC1", "A   \nA\n"},
      {"-f 37 -t utf-8 --record-length 4 --ebcdic-newline nl", record + "\xC1",
       "A   \u0085A\u0085"},
      {"-f 1047 -t utf-8 --record-length 4 --trim", record + "\x40\x40\x40\x40", "A\n\n"},
      {"-f utf-16 -t utf-8 --record-length 4 --trim", std::string("A\0 \0B\0C\0", 8), "A\nBC\n"},
  };
  for (const Case& shaped : cases) {
    EXPECT_EQ(run(shaped.arguments, shaped.input).out, shaped.output) << shaped.arguments;
  }
  // Places are those of the input, not of the lines.
  expectOneLine(run("-f utf-8 -t 1252 --record-length 4 --trim", "A   B   \xFF"),
                "byte offset 8, record 3");
  // The first of them however long ago.
  std::string records;
  for (int i = 0; i < 1000; ++i) records += "A   ";
  records += "\xFF   ";
  while (records.size() < 16u << 20) records += "B   ";
  expectOneLine(run("-f utf-8 -t 1252 --record-length 4 --trim --on-error drop", records),
                "1 place was not convertible; the first at byte offset 4000, record 1001");
}

TEST_F(ToolTest, FindsOutEncodings) {
  const std::string half(1u << 19, 'a');
  std::string twoBytes = "a";  // so that the sample ends within a character
  while (twoBytes.size() < 2u << 20) twoBytes += "é";
  const std::string data = ENCCONV_TEST_DATA "/";
  const struct {
    std::string arguments, input, found;  // found: how the line goes on behind the label
    int status = 0;
  } cases[] = {
      {data + "emoji.1200", "", "UTF-16LE (code page 1200), certain: byte order mark\n"},
      {data + "emoji.1201", "", "UTF-16BE (code page 1201), certain: byte order mark\n"},
      {"", std::string("\xFF\xFE\0\0a\0\0\0", 8),
       "UTF-32LE (code page 12000), certain: byte order mark\n"},
      {data + "japanese.txt", "",
       "UTF-8 (code page 65001), likely: valid UTF-8 with characters beyond ASCII\n"},
      {data + "record.txt", "", "US-ASCII (code page 20127), certain: only ASCII\n"},
      {data + "record.37", "",
       "IBM037 (code page 37), doubtful: letters of EBCDIC; which national page, the text leaves "
       "open; else IBM500 (code page 500) 30 %"},
      {"", half + half, "US-ASCII (code page 20127), certain: only ASCII in what was looked at\n"},
      {"", twoBytes, "UTF-8 (code page 65001), likely: valid UTF-8 with characters beyond ASCII\n"},
      {"", std::string("a\0b\0", 4), "UTF-16LE (code page 1200), likely: "},
      {"", std::string("\0a\0b", 4), "UTF-16BE (code page 1201), likely: "},
      {"", "", "empty\n"},
      {"", "\x1B[31mred", "US-ASCII (code page 20127), certain: only ASCII\n"},
      {"", "a\x01", "binary: many control characters\n"},
      {"", std::string("caf\xE9\0cr\xE8me", 10), "binary: NUL bytes\n"},
      {"", "\x89PNG\r\n\x1A\n", "binary: begins as PNG\n"},
      {"", "\x83\x30\x81\x30\x84\x31\xA4\x37\xC4\xE3\xBA\xC3",
       "GB18030 (code page 54936), likely: "},
      {"missing", "", "", 2},
      {data + "mail.50220", "", "ISO-2022-JP (code page 50220), likely: its escape sequences\n"},
      {data + "chinese-simplified.936", "", "GBK (code page 936), likely: the frequencies of"},
      {"", "~{<:Ky2;S{#,NpJ)l6HK!#~}",
       "hz-gb-2312 (code page 1052936), likely: runs of pairs between ~{ and ~}\n"},
      {"--brief " + data + "russian.1251", "", "windows-1251\n"},
      {"--brief",
       "\x7F"
       "ELF",
       "binary\n"},
      {"--json", "\x1F\x8B\x08",
       "{\"file\": \"standard input\", \"kind\": \"binary\", \"reason\": \"begins as gzip\", "
       "\"candidates\": []}\n"},
      {"--json", "a",
       "{\"file\": \"standard input\", \"kind\": \"ascii\", \"reason\": \"only ASCII\", "
       "\"candidates\": [{\"name\": \"US-ASCII\", \"codePage\": 20127, \"confidence\": 1.00, "
       "\"evidence\": \"structure\", \"reason\": \"only ASCII\"}]}\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.arguments + " " + c.found);
    const ToolRun result = run("--detect " + c.arguments, c.input);
    EXPECT_EQ(result.status, c.status);
    const bool isForPeople = !c.arguments.starts_with("--");
    const std::string label = c.arguments.empty() ? "standard input" : c.arguments;
    const std::string line = isForPeople && c.status != 2 ? label + ": " + c.found : c.found;
    EXPECT_TRUE(c.found.ends_with('\n') ? result.out == line : result.out.starts_with(line))
        << result.out;
  }
  for (const char* notUtf8 : {"caf\xC3", "caf\xED\xA0\x80"}) {
    EXPECT_FALSE(contains(run("--detect", notUtf8).out, "UTF-8 (")) << notUtf8;
  }
  // Several files, of which the worst tells the status.
  const ToolRun several = run("--detect missing utf8");
  EXPECT_EQ(several.status, 2);
  EXPECT_TRUE(several.out.starts_with("utf8: UTF-8")) << several.out;
}

TEST_F(ToolTest, TracesGarbledText) {
  const std::string garbled = "na\u00C3\u00AFve caf\u00C3\u00A9\n";
  const ToolRun shown = run("--trace", garbled);
  EXPECT_EQ(shown.status, 0);
  EXPECT_TRUE(shown.out.starts_with("standard input: UTF-8 read as windows-1252, "));
  EXPECT_TRUE(contains(shown.out,
                       " %\n    na\u00EFve caf\u00E9\n"
                       "    mend it: encconv -f UTF-8 -t windows-1252 -\n"))
      << shown.out;
  EXPECT_EQ(run("--trace --brief", garbled).out, "na\u00EFve caf\u00E9\n");
  EXPECT_TRUE(contains(run("--trace --json", garbled).out,
                       "\"misreadings\": [{\"written\": \"UTF-8\", \"read\": \"windows-1252\"}]"));
  // The garbled text may itself be in any encoding.
  const std::string utf16 = encconv::from_utf8(garbled, 1200).text;
  EXPECT_EQ(run("--trace --brief -f utf-16le", utf16).out, "na\u00EFve caf\u00E9\n");

  // What no conversion brings back is mended by what traced it.
  EXPECT_TRUE(contains(run("--trace", "$BF|K\\8l$G$9!#(B$B0lHVLL$GF0$/$b$N$G$9!#(B").out,
                       "mend it: encconv -f UTF-8 --trace --brief"));
  const ToolRun good = run("--trace", "na\u00EFve caf\u00E9");
  EXPECT_EQ(good.status, 1);
  EXPECT_EQ(good.out, "standard input: nothing suggests that it is garbled\n");
  EXPECT_EQ(run("--trace --brief", "na\u00EFve").out, "na\u00EFve");
  EXPECT_EQ(run("--trace missing").status, 2);
}

TEST_F(ToolTest, ConvertsFromTheEncodingThatItFindsOut) {
  // Longer than the sample that is looked at.
  std::string large, utf16 = "\xFF\xFE";
  while (large.size() < 3u << 20) {
    large += "a\U0001F600";
    utf16 += std::string("a\0\x3D\xD8\x00\xDE", 6);
  }
  write("large", utf16);
  write("empty", "");
  for (const std::string name : {"1200", "1201", "txt"}) {
    fs::copy(ENCCONV_TEST_DATA "/emoji." + name, path("emoji." + name));
  }
  const std::string emoji = read("emoji.txt");
  const struct {
    const char* arguments;
    std::string output;
  } cases[] = {
      {"-f auto -t utf-8 emoji.1200", emoji},
      {"-f auto -t utf-8 emoji.1201 emoji.txt emoji.1200", emoji + emoji + emoji},
      {"-f auto -t utf-8 large", large},
      {"-f auto -t utf-8 empty", ""},
      {"-f auto -t 37 --ebcdic-newline lf utf8 --on-error drop", "\x83\x81\x86\x51\x15"},
  };
  for (const auto& found : cases) {
    SCOPED_TRACE(found.arguments);
    const ToolRun result = run(found.arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.out == found.output);
  }
  EXPECT_EQ(run("-f auto -t utf-8", read("emoji.1201")).out, emoji);
  EXPECT_TRUE(contains(run("-v -f auto -t utf-8 emoji.1201").err,
                       "emoji.1201: read as UTF-16BE (code page 1201): byte order mark\n"));

  // What is no text, or cannot be told, is left alone, and the others are converted.
  const struct {
    std::string content, named;
  } refused[] = {
      {"\x81", "cannot find out the encoding: perhaps "},
      {readFile(ENCCONV_TEST_DATA "/record.37"), "take the first with --guess"},
      {"\x89PNG\r\n\x1A\n", "is not text but binary: begins as PNG"},
      {std::string("abc\0def\0\0", 9), "is not text but binary: NUL bytes"},
  };
  for (const auto& file : refused) {
    SCOPED_TRACE(file.named);
    write("utf8", "caf\xC3\xA9\n");
    write("refused", file.content);
    const ToolRun result = run("-f auto -t utf-16le --in-place refused utf8");
    EXPECT_EQ(result.status, 1);
    expectOneLine(result, file.named);
    EXPECT_EQ(read("refused"), file.content);
    EXPECT_EQ(read("utf8"), std::string("c\0a\0f\0\xE9\0\n\0", 10));
  }
  const std::string record = ENCCONV_TEST_DATA "/record.37";
  EXPECT_TRUE(run("-f auto --guess -t utf-8 " + record).out.starts_with("00001HARTLEY, THOMAS"));
  EXPECT_EQ(run("-f auto --guess -t utf-8", std::string("\0", 1)).status, 1);
  EXPECT_EQ(run("-f auto -t utf-8 --pdf-passthrough", "%PDF-1.4\n\xE2").out, "%PDF-1.4\n\xE2");
}

TEST_F(ToolTest, ShowsChartsAndLists) {
  const std::string chart = run("--chart 1252").out;
  EXPECT_TRUE(contains(chart, "8_  €   HOP ‚   ")) << chart;
  // Columns stand below each other: wide characters, marks to combine, right to left.
  const struct {
    const char *codePage, *cells;
  } rows[] = {
      {"932", "FB F_  靍  靏 "},
      {"932", "82 A_  あ  ぃ  い  "},
      {"932", "￠  ￡  "},
      {"949", "가  각  "},
      {"949", "！  ＂  "},
      {"950", "︰  …   "},
      {"874", "ะ   \u25CC\u0E31   า   "},
      {"1255", "א\u200E   ב\u200E   "},
      {"864", "ﻥ\u200E   ﻩ\u200E   "},
      // Longer codes, several characters, planes, shifts, and accents in front.
      {"big5-hkscs", "88 6_  Ǒ   Ò   Ê̄   Ế   Ê̌   "},
      {"euc-tw", "8E A2 A1 A_"},
      {"gb18030", "codes of four bytes are not shown"},
      {"ibm939", "44 4_  "},
      {"ibm300", "44 4_  "},
      {"iso6937", "C2 7_          ŕ   ś       ú               ý   ź\n"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(contains(run(std::string("--chart ") + row.codePage).out, row.cells)) << row.cells;
  }
  std::istringstream lines(chart);
  for (std::string line; std::getline(lines, line);) {
    // All characters of this page are one column wide.
    const auto columns =
        std::count_if(line.begin(), line.end(), [](char c) { return (c & 0xC0) != 0x80; });
    EXPECT_LE(columns, 80) << line;
  }
  EXPECT_TRUE(contains(run("--chart 932").out, "U+00A5 ¥ as 5C"));
  const std::string gsm = run("--chart gsm").out;
  EXPECT_TRUE(contains(gsm, "1B 6_                      €\n"));
  EXPECT_TRUE(contains(gsm, "0_  @   £ "));
  EXPECT_FALSE(contains(gsm, "Written, but read as something else"));
  EXPECT_EQ(run("--chart 932 --html page").status, 0);
  EXPECT_EQ(run("--chart 10004 --html arabic").status, 0);
  const std::string page = read("page") + read("arabic");
  for (const char* cell :
       {"<td class=c><u>82A0</u><b>あ</b><s>3042</s>", "<td class=p><u>F040</u><em>PU</em>",
        "<td class=c><u>3C</u><b>&lt;</b>", "<td class=r><u>A0</u><em>SP</em><s>0020</s>",
        "<li><b>¥</b> U+<s>00A5</s> as <u>5C</u>"}) {
    EXPECT_TRUE(contains(page, cell)) << cell;
  }
  EXPECT_TRUE(contains(run("--list cyrillic").out, "1251"));
  EXPECT_TRUE(run("--list koi8 --json").out.starts_with("["));
  EXPECT_TRUE(contains(run("--list hz").out, "1052936  hz-gb-2312"));
  EXPECT_EQ(run("-f 1052936 -t utf-8", "~{R;~}").out, "一");
  EXPECT_TRUE(contains(run("--list euc-cn").out, "EUC-CN, as 936\n"));
  const ToolRun none = run("--list klingon");
  EXPECT_EQ(none.status, 1);
  expectOneLine(none, "'klingon'");
  expectOneLine(run("--list cyrilic"), "did you mean cyrillic");
}

TEST_F(ToolTest, DocumentsEveryOptionEverywhere) {
  const std::string help = run("--help").out;
  const fs::path project = fs::path(ENCCONV_TEST_DATA) / "../..";
  std::vector<std::string> options;
  for (std::size_t at = 0; (at = help.find(" --", at)) != std::string::npos; ++at) {
    const std::size_t end = help.find_first_of(" =[,)\n", at + 3);
    options.push_back(help.substr(at + 3, end - at - 3));
  }
  ASSERT_GT(options.size(), 20u);
  for (const char* name :
       {"docs/encconv.1", "apps/encconv/completions/encconv.bash",
        "apps/encconv/completions/_encconv", "apps/encconv/completions/encconv.fish"}) {
    std::ifstream file(project / name);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::erase(text, '\\');  // as man pages write hyphens
    for (const std::string& option : options) {
      EXPECT_TRUE(contains(text, "--" + option) || contains(text, "-l " + option))
          << name << " lacks " << option;
    }
  }
  for (const char* topic : {"errors", "files", "encodings", "mainframe", "detect", "status"}) {
    EXPECT_GT(run(std::string("--help ") + topic).out.size(), 100u) << topic;
  }
  EXPECT_EQ(run("--version").out, "encconv " ENCCONV_VERSION "\n");
  for (const char* name : {"docs/encconv.1", "CHANGELOG.md"}) {
    std::ifstream file(project / name);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(contains(text, ENCCONV_VERSION)) << name;
  }
}

}  // namespace
