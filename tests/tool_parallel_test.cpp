// Tests of the tool's conversion of one file on several threads: all is as with one.
#include <new>
#include <random>

#include "apps/encconv/parallel_stream.h"
#include "tests/tool_support.h"

namespace {

using Random = std::minstd_rand0;

std::string utf8Text(Random& random, std::size_t lines) {
  static const char* const kWords[] = {"word ",   "two, three", "日本語 ", "テスト", "漢字かな",
                                       "한국어 ", "中文字",     "größe ",  "Ж ",     "か゚",
                                       "É",       "e\u0301",    "𝄞",       "+~{",    "\u00A0"};
  std::string text;
  for (std::size_t i = 0; i < lines; ++i) {
    for (std::size_t words = random() % 12; words != 0; --words) {
      text += kWords[random() % std::size(kWords)];
    }
    text += random() % 4 == 0 ? "\r\n" : "\n";
  }
  return text;
}

// A text in UTF-8 whose reader or writer runs out of memory at a call.
class ScarceMemory final : public tool::ParallelStream::Client {
 public:
  ScarceMemory(std::string_view text, std::size_t lastRead, std::size_t lastWritten)
      : m_text(text), m_reads(lastRead), m_writes(lastWritten) {}

  bool readText(std::span<unsigned char> buffer, std::size_t& count) override {
    if (m_reads-- == 0) throw std::bad_alloc();
    count = std::min(buffer.size(), m_text.size());
    std::copy_n(m_text.begin(), count, buffer.begin());
    m_text.remove_prefix(count);
    return true;
  }
  bool writeText(std::string_view) override {
    if (m_writes-- == 0) throw std::bad_alloc();
    return true;
  }
  void onTextError(const StreamError&) override {}
  void onTextDone(std::size_t) override {}

 private:
  std::string_view m_text;
  std::size_t m_reads, m_writes;
};

}  // namespace

TEST_F(ToolTest, SeveralThreadsConvertOneFileAsOneDoes) {
  // Encodings with and without a state on either side, of which the last shows no places for cuts;
  // one whose writer looks ahead; byte order marks; what is done before and behind the stream.
  const struct {
    const char *from, *to, *more;
  } kRows[] = {
      {"932", "utf-8", ""},
      {"utf-8", "932", "--newline crlf"},
      {"gb18030", "utf-16le", "--bom"},
      {"utf-16", "utf-8", ""},
      {"utf-16le", "iso-2022-kr", ""},
      {"utf-16be", "utf-16be", ""},
      {"utf-8", "utf-8", "--bom=keep"},
      {"ibm930", "iso-2022-jp-2004", "--ebcdic-newline lf"},
      {"utf-8", "ibm939", "--ebcdic-newline nl"},
      {"iso-2022-jp", "euc-jisx0213", ""},
      {"hz", "gb18030", ""},
      {"utf-7", "utf-8", ""},
      {"utf-8", "iso_6937", ""},
      {"big5-hkscs", "utf-8", "--newline lf"},
      {"macarabic", "utf-8", ""},
      {"scsu", "utf-8", ""},
  };
  constexpr const char* kTreatments[] = {
      "hex", "drop", "stop", "compose,translit,substitute", "alternate=1252", "raw"};
  Random random(17);
  std::size_t round = 0;
  for (const auto& row : kRows) {
    write("source", utf8Text(random, 400));
    const std::string from = std::string(" -f ") + row.from;
    ASSERT_EQ(0, run("-c -q -f utf-8 -t " + std::string(row.from) + " source -o text").status);
    for (const bool isDamaged : {false, true}) {
      std::string text = read("text");
      for (std::size_t i = 0; isDamaged && i < text.size() / 150; ++i) {
        const std::size_t place = random() % text.size();
        if (random() % 2 == 0) text.erase(place, 1 + random() % 3);
        text.insert(std::min(place, text.size()), 1, static_cast<char>(random()));
      }
      write("text", text);
      for (unsigned int i = 0; i < 2; ++i) {
        const std::string arguments =
            from + " -t " + row.to + " " + row.more + " --strict --on-error " +
            kTreatments[round++ % std::size(kTreatments)] + " --report places";
        SCOPED_TRACE(arguments);
        const ToolRun one = run(arguments + " text -o output");
        const std::string places = read("places"), output = read("output");
        fs::remove(path("output"));
        for (const char* job : {"-j 2 --job-size 64", "-j 4 --job-size 3000"}) {
          SCOPED_TRACE(job);
          const std::string parallel = std::string(job) + arguments;
          const ToolRun several = run(parallel + " text -o output");
          ASSERT_EQ(one.status, several.status);
          ASSERT_EQ(one.err, several.err);
          ASSERT_TRUE(places == read("places"));
          ASSERT_TRUE(output == read("output"));
          fs::remove(path("output"));
        }
        // Standard input that is a file, and standard output.
        const ToolRun streams = run("-j 2 --job-size 700" + arguments, text);
        ASSERT_EQ(one.status, streams.status);
        ASSERT_TRUE(one.status != 0 || output == streams.out);
        ASSERT_TRUE(places == read("places") || contains(places, "text"));
      }
    }
  }
}

TEST_F(ToolTest, SeveralThreadsConvertRecordsAsOneDoes) {
  constexpr const char* kRows[] = {
      "-f 37 -t utf-8 --records fixed:50 --trim",
      "-f 930 -t iso-2022-kr --records fixed:50 --newline crlf",
      "-f 37 -t utf-16 --bom --records fixed:200",
      "-f 1047 -t 37 --records fixed:30 --to-records rdw",
      "-f 37 -t utf-8 --records rdw --ebcdic-newline lf",
      "-f 37 -t 1252 --records bdw --to-records fixed:40",
      "-f 37 -t utf-8 --records bdw --to-records bdw:200",
      "-f 37 -t utf-8 --records rdw --fields @layout --as csv --bom --newline lf",
      "-f 37 -t 932 --records bdw --fields @layout --as json",
      "-f 930 -t utf-8 --records fixed:50 --fields @layout --trim",
      "-f 37 -t iso-2022-jp --records fixed:50 --fields @layout",
  };
  constexpr const char* kTreatments[] = {"hex", "drop", "stop", "substitute"};
  write("layout", "name 1 20 text, n + 4 packed:scale=1, item 20 14 text:encoding=939");
  Random random(23);
  std::size_t round = 0;
  for (const char* const row : kRows) {
    const std::string form = std::string(row).substr(std::string(row).find("--records ") + 10, 3);
    for (unsigned int variant = 0; variant < 16; ++variant) {
      // Clean records are letters; others have bytes that cannot be read, segments, and, in the
      // last variants, descriptor words that are wrong.
      std::string records;
      std::vector<std::size_t> words;
      while (records.size() < 12000) {
        const std::size_t length = form == "fix" ? 50 : random() % 60;
        std::string record(length, '\xC1');
        for (char& byte : record) {
          if (random() % (variant < 4 ? 1000000 : 40) == 0) byte = static_cast<char>(random());
        }
        if (length > 23) record.replace(20, 4, "\0\0\x12\x3C", 4);
        std::string word = {'\0', static_cast<char>(length + 4), '\0', '\0'};
        if (variant % 4 == 3 && random() % 8 == 0) word[2] = static_cast<char>(random() % 4);
        const std::string block = {'\0', static_cast<char>(length + 8), '\0', '\0'};
        words.push_back(records.size());
        records += form == "fix" ? record : (form == "bdw" ? block : "") + word + record;
      }
      if (variant >= 12) records[words[random() % words.size()] + random() % 8] = '\1';
      if (variant % 2 == 1) records.resize(records.size() - random() % 40);
      write("records", records);
      const std::string arguments = std::string(" ") + row + " --strict --on-error " +
                                    kTreatments[round++ % 4] + " --report places records -o output";
      SCOPED_TRACE(arguments + " " + std::to_string(variant));
      const ToolRun one = run(arguments);
      const std::string places = read("places"), output = read("output");
      fs::remove(path("output"));
      for (const char* job : {"-j 2 --job-size 64", "-j 4 --job-size 1000"}) {
        const ToolRun several = run(job + arguments);
        ASSERT_EQ(one.status, several.status) << several.err;
        ASSERT_EQ(one.err, several.err);
        ASSERT_TRUE(places == read("places"));
        ASSERT_TRUE(output == read("output"));
        fs::remove(path("output"));
      }
    }
  }
}

TEST_F(ToolTest, SeveralThreadsLeaveNothingOfWhatFails) {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += "line " + std::to_string(i) + "\n";
  write("clean", text);
  write("bad", text.substr(0, 20000) + "\xFF\n" + text);
  write("kept", "kept");
  const ToolRun stopped = run("-j 4 --job-size 500 -f utf-8 -t latin1 bad -o kept");
  EXPECT_EQ(1, stopped.status);
  expectOneLine(stopped, "bad: byte offset 20000, line 2112: FF is not valid UTF-8");
  EXPECT_EQ("kept", read("kept"));
  // Of two files on four threads, each has two.
  const ToolRun both = run("-j 4 --job-size 500 -f utf-8 -t utf-16le --output-dir out clean bad");
  EXPECT_EQ(1, both.status);
  EXPECT_EQ(2 * text.size(), fs::file_size(path("out/clean")));
  EXPECT_FALSE(fs::exists(path("out/bad")));
}

TEST(ParallelStreamTest, ThreadsThatRunOutOfMemoryEndTheOthers) {
  Random random(5);
  const std::string text = utf8Text(random, 2000);
  constexpr std::size_t kNever = SIZE_MAX;
  StreamSettings settings;
  settings.from = 65001;
  settings.to = 1200;
  for (std::size_t calls = 0; calls < 40; ++calls) {
    for (const bool isReading : {true, false}) {
      ScarceMemory memory(text, isReading ? calls : kNever, isReading ? kNever : calls);
      tool::ParallelStream stream(settings, 4, 700, memory);
      EXPECT_THROW(stream.run({}), std::bad_alloc) << calls;
    }
  }
}
