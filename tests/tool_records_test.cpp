// The tool on records of mainframe files.
#include "tests/tool_support.h"

namespace {

const std::string kData = ENCCONV_TEST_DATA "/accounts.";

class ToolRecordsTest : public ToolTest {
 protected:
  static std::string sample(const std::string& suffix) { return readFile(kData + suffix); }
};

TEST_F(ToolRecordsTest, TablesAreMadeOfRecordsAndBack) {
  std::string fixedTable = sample("csv");
  for (std::size_t at = 0; (at = fixedTable.find(",\r\n", at)) != std::string::npos; at += 5) {
    fixedTable.replace(at, 3, ",\"\"\r\n");  // blanks are a text, where a record could end
  }
  const std::string fields = " --fields @" + kData + "fields ";
  const struct {
    std::string arguments, input, output;
  } cases[] = {
      {"-f 37 -t utf-8 --records bdw --trim", "vb.37", sample("csv")},
      {"-f 37 -t utf-8 --records bdw --trim --as json", "vb.37", sample("json")},
      {"-f 37 -t utf-8 --records bdw --trim --as csv --bom", "vb.37",
       "\xEF\xBB\xBF" + sample("csv")},
      {"-f 1047 -t utf-8 --records fixed:80 --trim", "fb.1047", fixedTable},
      {"-f utf-8 -t 37 --to-records bdw:300", "csv", sample("vb.37")},
      {"-f utf-8 -t 37 --to-records bdw:300 --as json", "json", sample("vb.37")},
      {"-f utf-8 -t 1047 --to-records fixed:80", "csv", sample("fb.1047")},
  };
  for (const auto& c : cases) {
    const ToolRun outcome = run(c.arguments + fields + kData + c.input);
    EXPECT_EQ(outcome.status, 0) << c.arguments << outcome.err;
    EXPECT_EQ(outcome.err, "") << c.arguments;
    EXPECT_EQ(outcome.out, c.output) << c.arguments;
  }
  // One header, and one table, for any number of files; an encoding that needs a state, or units.
  const std::string vb = kData + "vb.37";
  write("fields", "id 1 5 zoned");
  EXPECT_EQ(run("-f 37 -t utf-8 --records bdw --fields @fields --newline lf " + vb + " " + vb).out,
            "id\n31\n32\n33\n34\n35\n36\n31\n32\n33\n34\n35\n36\n");
  EXPECT_EQ(run("-f 37 -t utf-16le --records rdw --fields 'a 1 1 text' --as json",
                std::string("\0\5\0\0\xC1", 5))
                .out,
            std::string("{\0\"\0a\0\"\0:\0 \0\"\0A\0\"\0}\0\n\0", 22));
  EXPECT_EQ(run("-f utf-16 -t 37 --to-records rdw --fields 'a 1 1 packed'", std::string("\xFF\xFE"
                                                                                        "a\0\n\0"
                                                                                        "7\0\n\0",
                                                                                        10))
                .out,
            std::string("\0\5\0\0\x7C", 5));
}

// Texts that shift into double bytes, between numbers whose bytes are shifts by chance.
TEST_F(ToolRecordsTest, ShiftsStayWithinTheirField) {
  const std::string fields =
      " --records fixed:50 --trim --fields @" ENCCONV_TEST_DATA "/orders.fields ";
  const struct {
    std::string page, language;
    std::size_t lastShift;  // back to single bytes, in the item of the first record
    std::string damaged;    // the first row without it
  } cases[] = {
      {"939", "japanese", 20, "1001,りんご（青森）　　\uFFFD,1250.00,12,山田　太郎\r\n"},
      {"935", "chinese", 18, "2001,苹果（烟台）　　　\uFFFD,12.50,120,王小明\r\n"},
  };
  for (const auto& c : cases) {
    std::string records = readFile(ENCCONV_TEST_DATA "/orders.fb." + c.page);
    const std::string table = readFile(ENCCONV_TEST_DATA "/orders-" + c.language + ".csv");
    EXPECT_EQ(run("-f " + c.page + " -t utf-8" + fields, records).out, table);
    std::string toRecords = "-f utf-8 -t " + c.page + fields;
    toRecords.replace(toRecords.find("--records"), 9, "--to-records");
    toRecords.erase(toRecords.find(" --trim"), 7);
    EXPECT_TRUE(run(toRecords, table).out == records) << c.page;
    // A lost shift spoils no other field.
    ASSERT_EQ(records[c.lastShift], '\x0F');
    records[c.lastShift] = '\x40';
    const ToolRun damaged =
        run("-f " + c.page + " -t utf-8 --on-error substitute" + fields, records);
    const std::size_t second = table.find("\r\n", table.find("\r\n") + 2) + 2;
    EXPECT_EQ(damaged.out,
              table.substr(0, table.find("\r\n") + 2) + c.damaged + table.substr(second));
    expectOneLine(damaged, "the first at byte offset 24, record 1, field 'item': 40 is not valid");
  }
}

TEST_F(ToolRecordsTest, TextsGoBetweenLinesAndRecords) {
  using namespace std::string_literals;
  const std::string spanned = "\0\5\1\0\xC1\0\5\2\0\xC2\0\4\0\0"s;
  const struct {
    const char* arguments;
    std::string input, output;
  } cases[] = {
      {"-f 37 -t utf-8 --records rdw", spanned, "AB\n\n"},
      {"-f 37 -t utf-8 --records fixed:2 --newline crlf", "\xC1\x40\xC2", "A \r\nB\r\n"},
      {"-f 37 -t utf-8 --records rdw --ebcdic-newline lf", "\0\6\0\0\x15\xC1"s, "\nA\n"},
      {"-f 37 -t 500 --records rdw --to-records fixed:3", spanned, "\xC1\xC2\x40\x40\x40\x40"},
      {"-f 37 -t 1252 --records fixed:3 --to-records rdw --trim", "\xC1\x40\x40\x40\x40\x40",
       "\0\5\0\0A\0\4\0\0"s},
      {"-f utf-8 -t 37 --to-records fixed:3", "A\r\nBC\n\nDEF",
       "\xC1\x40\x40\xC2\xC3\x40\x40\x40\x40\xC4\xC5\xC6"},
      {"-f utf-8 -t 37 --to-records bdw:13", "A\nBC\n",
       "\0\x09\0\0\0\5\0\0\xC1\0\x0A\0\0\0\6\0\0\xC2\xC3"s},
      {"-f 1047 -t 37 --to-records rdw --ebcdic-newline lf", "\xC1\x15\xC2",
       "\0\5\0\0\xC1\0\5\0\0\xC2"s},
      {"-f utf-16 -t utf-16be --to-records fixed:4", "\xFE\xFF\0A\0\n\0B\0\n"s, "\0A\0 \0B\0 "s},
      {"-f utf-16le -t utf-8 --records fixed:4 --bom=keep", "\xFF\xFE\x61\0b\0c\0"s,
       "\xEF\xBB\xBF\x61\nbc\n"},
      {"-f utf-16le -t utf-8 --records fixed:4 --bom=keep", "a\0b\0c\0"s, "ab\nc\n"},
      {"-f utf-16le -t utf-8 --records fixed:4 --bom", "a\0b\0c\0"s, "\xEF\xBB\xBF\x61\x62\nc\n"},
      {"-f utf-8 -t utf-8 --to-records fixed:3", "\xEF\xBB\xBF\x41\nB\n", "A  B  "},
      // Each record begins and ends in ASCII, and the designation of the whole text stands once.
      {"-f utf-8 -t iso-2022-jp --to-records fixed:9", "あ\nい\n",
       "\x1B$B$\"\x1B(B \x1B$B$$\x1B(B "},
      {"-f 949 -t iso-2022-kr --records fixed:2", "\xB0\xA1\xB0\xA2",
       "\x1B$)C\x0E\x30\x21\x0F\n\x0E\x30\x22\x0F\n"},
      {"-f iso-2022-jp -t utf-8 --records rdw", "\0\x09\0\0\x1B$B$\"\0\5\0\0A"s, "あ\nA\n"},
      // Shifts are counted, and each record begins in single bytes, whatever the one before ended
      // in.
      {"-f utf-8 -t 930 --to-records fixed:7", "Aあい\nAあ\n",
       "\xC1\x0E\x44\x81\x44\x82\x0F\xC1\x0E\x44\x81\x0F\x40\x40"},
      {"-f utf-8 -t 930 --to-records fixed:6 --on-error drop --quiet", "Aあい\n",
       "\xC1\x0E\x44\x81\x0F\x40"},
      {"-f 930 -t utf-8 --records rdw --on-error drop --quiet",
       "\0\x08\0\0\xC1\x0E\x44\x81\0\5\0\0\xC1"s, "Aあ\nA\n"},
      {"-f utf-8 -t 932 --to-records fixed:4 --on-error drop --quiet", "aああ\n", "a\x82\xA0 "},
      {"-f utf-8 -t utf-8 --records fixed:3 --on-error alternate=1250 --quiet", "a\xE6z", "aćz\n"},
  };
  for (const auto& c : cases) {
    const ToolRun outcome = run(c.arguments, c.input);
    EXPECT_EQ(outcome.out, c.output) << c.arguments;
    EXPECT_EQ(outcome.err + std::to_string(outcome.status), "0") << c.arguments;
  }
}

TEST_F(ToolRecordsTest, DamageHasItsRecordAndItsPlace) {
  using namespace std::string_literals;
  write("layout", "name 1 2 text, n + 2 packed:scale=1");
  // The sign of the second is none, the third is cut.
  const std::string damaged = "\0\x08\0\0\xC1\xC2\x12\x3C\0\x08\0\0\xC3\xC4\x12\x34\0\x08\0\0\xC5"s;
  const std::string table = "-f 37 -t utf-8 --records rdw --fields @layout ";
  expectOneLine(
      run(table, damaged),
      "standard input: byte offset 14, record 2, field 'n': no packed number: no sign is 4 "
      "(12 34); check --fields, or go on with --on-error");
  EXPECT_EQ(run(table + "-o result", damaged).status, 1);
  EXPECT_FALSE(fs::exists(path("result")));
  const ToolRun treated =
      run(table + "--on-error drop --newline lf --report places --json", damaged);
  EXPECT_EQ(treated.out, "name,n\nAB,12.3\nCD,\nE,\n");
  EXPECT_EQ(treated.status, 0);
  expectOneLine(treated,
                "2 places were damaged or did not fit; the first at byte offset 14, record 2");
  EXPECT_EQ(run(table + "--on-error drop --strict", damaged).status, 1);
  const std::string places = read("places");
  EXPECT_TRUE(contains(places, R"("offset": 14, "record": 2, "field": "n", "reason": )")) << places;
  EXPECT_TRUE(contains(places, R"("kind": "cut", "bytes": "C5")")) << places;

  const struct {
    const char* arguments;
    std::string input;
    const char* message;
  } cases[] = {
      {"-f 37 -t utf-8 --records rdw", "\0\5\0\0\xC1\0\3\0\0"s,
       "byte offset 5, record 2: a record has no length of 3; all that follows is left out (00 03 "
       "00 00); check --records"},
      {"-f 37 -t utf-8 --records fixed:4 --fields @layout", "\xC1\xC2\x12\x3C\xC1",
       "byte offset 4, record 2: the input ends within a record: 1 byte of 4 (C1)"},
      {"-f 37 -t us-ascii --records rdw", "\0\6\0\0\xC1\x51"s,
       "byte offset 5, record 1: U+00E9 (51) has no place in US-ASCII"},
      {"-f 37 -t us-ascii --records rdw --fields @layout", "\0\6\0\0\xC1\x51"s,
       "byte offset 4, record 1: U+00E9 (C3 A9) has no place in US-ASCII"},
      {"-f 37 -t utf-8 --records rdw --fields 'a 1 1 text, b 2 1 text:encoding=utf-8'",
       "\0\6\0\0\xC1\xFF"s, "byte offset 5, record 1, field 'b': FF is not valid UTF-8"},
      {"-f utf-8 -t 37 --to-records fixed:3", "A\nBCDE\n",
       "byte offset 2, record 2: the line is longer than a record of 3 bytes (42 43 44 45)"},
      {"-f utf-8 -t 37 --to-records fixed:3", "A\nB一\n",
       "byte offset 3, record 2: U+4E00 (E4 B8 80) has no place in IBM037"},
      {"-f utf-8 -t 37 --to-records fixed:3", "\xEF\xBB\xBF\x41一\n", "byte offset 4, record 1"},
      {"-f utf-8 -t 37 --to-records fixed:3", "A\nB\xFF\n",
       "byte offset 3, line 2: FF is not valid UTF-8"},
      {"-f utf-16 -t 37 --to-records fixed:3", "A\0\n\0B\0B\0B\0B\0"s, "byte offset 4, record 2"},
      {"-f utf-8 -t 37 --to-records rdw --fields @layout", "name,n\nA,1\nABC,2\n",
       "byte offset 11, record 2, field 'name': the text is longer than the 2 bytes of the field "
       "(41 42 43)"},
      {"-f utf-8 -t 37 --to-records rdw --fields @layout", "name,n\nA,1\nB,1234\n",
       "byte offset 11, record 2, field 'n': 1234 is too large for the field"},
      {"-f utf-8 -t 37 --to-records fixed:4 --fields @layout", "name\nA\n",
       "byte offset 5, record 1, field 'n': a number is missing"},
      {"-f utf-8 -t 37 --to-records rdw --fields @layout", "name,n\nA\n",
       "byte offset 7, record 1: the row has 1 cell, and the header 2 (41)"},
      {"-f utf-8 -t 37 --to-records rdw --fields @layout", "\xEF\xBB\xBFname,n\nA\n",
       "byte offset 10, record 1: the row has 1 cell, and the header 2 (41)"},
      {"-f utf-8 -t 37 --to-records rdw --fields @layout --as json", "{}\n{\"x\": 1}\n",
       "byte offset 3, record 2: 'x' is no field"},
  };
  for (const auto& c : cases) {
    const ToolRun outcome = run(c.arguments, c.input);
    EXPECT_EQ(outcome.status, 1) << c.arguments;
    expectOneLine(outcome, c.message);
    EXPECT_EQ(run(c.arguments + " --on-error substitute"s, c.input).status, 0) << c.arguments;
  }
  // Records that are converted together are told apart: bad text in the third, then an
  // approximation.
  const ToolRun together = run("-f 1252 -t 932 --records fixed:2 --on-error drop --report places",
                               "A B C\x81"
                               "D\xA0"
                               "E ");
  EXPECT_EQ(together.out, "A \nB \nC\nD \nE \n");
  EXPECT_TRUE(contains(read("places"), "byte offset 5, record 3: U+0081 (81) has no place"))
      << read("places");
  EXPECT_TRUE(contains(read("places"), "byte offset 7, record 4: U+00A0 (A0) became U+0020"));
  expectOneLine(run("-f 932 -t utf-8 --records rdw", "\0\5\0\0A\0\5\0\0\x81\0\3\0\0"s),
                "byte offset 9, record 2: 81 is not valid");
  // What is written in their place, and in blocks everything behind the block that is damaged.
  EXPECT_EQ(
      run("-f utf-8 -t 37 --to-records fixed:4 --fields @layout --on-error drop", "name,n\nABC,x\n")
          .out,
      "\xC1\xC2\x40\x40");
  EXPECT_EQ(run("-f 37 -t utf-8 --records bdw --on-error drop",
                "\0\x09\0\0\0\3\0\0\xC1\0\x09\0\0\0\5\0\0\xC2"s)
                .out,
            "B\n");
  // Malformed text ends what only characters without a place are transliterated in.
  EXPECT_EQ(run("-f utf-8 -t 1252//TRANSLIT --records fixed:1", "a\xFF").status, 1);
}

TEST_F(ToolRecordsTest, RefusesWhatDoesNotGoTogether) {
  const struct {
    const char* arguments;
    const char* part;
  } cases[] = {
      {"--records rdx", "--records: 'rdx' is none of fixed:N"},
      {"--to-records fixed:0", "--to-records: 'fixed:0' is none of"},
      {"--records rdw --record-length 80", "give one of them"},
      {"--fields 'a 1 1 text'", "--fields needs --records or --to-records"},
      {"--fields 'a 1 1 text' --records rdw --to-records rdw", "not both at once"},
      {"--records rdw --fields 'a 1 text'", "--fields: field 'a': is not NAME POSITION"},
      {"--records rdw --fields @missing", "missing: No such file"},
      {"--records rdw --as json", "--as needs --fields"},
      {"--records rdw --fields 'a 1 1 text' --as xml", "--as: 'xml' is none of csv, json"},
      {"--records rdw --fields 'a 1 1 text' --ebcdic-newline lf", "--ebcdic-newline does not go"},
      {"--to-records rdw --newline lf", "--newline: records"},
      {"--to-records rdw --pdf-passthrough", "--pdf-passthrough does not go"},
      {"--records fixed:3 --fields 'a 2 3 text'", "field 'a' ends behind the 3 bytes"},
      {"--to-records rdw --fields 'a 1 3 text, b 3 1 text'", "'a' and 'b' overlap"},
  };
  for (const auto& c : cases) {
    const ToolRun outcome = run(std::string("-f 37 -t 37 latin -o result ") + c.arguments);
    EXPECT_EQ(outcome.status, 2) << c.arguments;
    expectOneLine(outcome, c.part);
    EXPECT_FALSE(fs::exists(path("result"))) << c.arguments;
  }
}

}  // namespace
