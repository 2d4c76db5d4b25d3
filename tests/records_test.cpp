// Records of encconv/records.h, and their texts, by bytes worked out by hand.
#include "encconv/records.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/test_support.h"

namespace {

using namespace encconv;
using namespace std::string_literals;

// What a reader finds in a file that comes in pieces: a line for each record, with its data and
// where that is, and for each problem.
std::string found(const RecordFormat& format, const std::string& file, std::mt19937* random) {
  RecordReader reader(format);
  std::string lines;
  std::size_t at = 0;
  for (;;) {
    switch (reader.next()) {
      case RecordStep::record: {
        lines += std::to_string(reader.number()) + "@" + std::to_string(reader.offset_of(0)) + " " +
                 hex(reader.record());
        const std::size_t size = reader.record().size();
        if (size != 0 && reader.offset_of(size - 1) != reader.offset_of(0) + size - 1) {
          lines += " to @" + std::to_string(reader.offset_of(size - 1));
        }
        lines += "\n";
        break;
      }
      case RecordStep::damaged:
        lines += "! record " + std::to_string(reader.problem().record) + " @" +
                 std::to_string(reader.problem().offset) + " " + hex(reader.problem().bytes) +
                 ": " + reader.problem().reason + "\n";
        break;
      case RecordStep::more: {
        if (at == file.size()) {
          reader.finish();
          break;
        }
        std::size_t count = file.size() - at;
        if (random != nullptr) count = std::min<std::size_t>(count, (*random)() % 4 + 1);
        reader.push(std::string_view(file).substr(at, count));
        at += count;
        break;
      }
      case RecordStep::end:
        return lines;
    }
  }
}

TEST(RecordsTest, FormatsHaveNames) {
  const struct {
    const char* text;
    bool isKnown;
    std::uint32_t maxLength;
  } cases[] = {
      {"fixed:80", true, 80}, {"rdw", true, 32756},    {"bdw", true, 32752},
      {"bdw:9", true, 1},     {"fixed:0", false, 0},   {"fixed:", false, 0},
      {"bdw:8", false, 0},    {"bdw:32761", false, 0}, {"fixed:1048577", false, 0},
      {"fixed:8x", false, 0}, {"rdw:80", false, 0},    {"", false, 0},
  };
  for (const auto& c : cases) {
    const std::optional<RecordFormat> format = parse_record_format(c.text);
    ASSERT_EQ(format.has_value(), c.isKnown) << c.text;
    if (!format) continue;
    EXPECT_EQ(format->max_length(), c.maxLength) << c.text;
  }
}

TEST(RecordsTest, ReaderFindsRecordsAndDamage) {
  const struct {
    const char* format;
    const char* file;
    std::string lines;
  } cases[] = {
      {"fixed:2", "C1C2 C3C4", "1@0 C1 C2\n2@2 C3 C4\n"},
      {"fixed:2", "C1C2 C3",
       "1@0 C1 C2\n! record 2 @2 C3: the input ends within a record: 1 byte of 2\n2@2 C3\n"},
      {"rdw", "", ""},
      {"rdw", "00060000 C1C2 00040000 00050000 C3", "1@4 C1 C2\n2@10 \n3@14 C3\n"},
      // Spanned: first, middle, last.
      {"rdw", "00050100 C1 00060300 C2C3 00050200 C4 00050000 C5",
       "1@4 C1 C2 C3 C4 to @15\n2@20 C5\n"},
      {"rdw", "00030000 C1C2",
       "! record 1 @0 00 03 00 00: a record has no length of 3; all that follows is left out\n"},
      {"rdw", "00050000 C1 C1C2C3C4 C5",
       "1@4 C1\n! record 2 @5 C1 C2 C3 C4: a record has no length of 49602, beyond 32767; all that "
       "follows is left out\n"},
      {"rdw", "00050001 C1 00058000 C2",
       "! record 1 @0 00 05 00 01: the reserved bits of a record descriptor word are not zero\n"
       "1@4 C1\n"
       "! record 2 @5 00 05 80 00: the reserved bits of a record descriptor word are not zero\n"
       "2@9 C2\n"},
      {"rdw", "00080000 C1C2",
       "! record 1 @4 C1 C2: the input ends within a record: 2 bytes of 4\n1@4 C1 C2\n"},
      {"rdw", "00050000 C1 0005",
       "1@4 C1\n! record 2 @5 00 05: the input ends within a descriptor word\n"},
      {"rdw", "00050200 C1",
       "! record 1 @0 00 05 02 00: a segment goes on with a record that has not begun\n1@4 C1\n"},
      {"rdw", "00050100 C1 00050000 C2",
       "! record 1 @5 00 05 00 00: the record before lacks its last segment\n1@4 C1\n2@9 C2\n"},
      {"rdw", "00050100 C1",
       "! record 1 @5 : the input ends before the last segment of a record\n1@4 C1\n"},
      {"rdw", "00050100 C1 00060300 C2",
       "! record 1 @9 C2: the input ends within a record: 1 byte of 2\n1@4 C1 C2 to @9\n"},
      {"bdw", "000E0000 00050000 C1 00050000 C2 80000009 00050000 C3",
       "1@8 C1\n2@13 C2\n3@22 C3\n"},
      {"bdw", "00090000 00050100 C1 00090000 00050200 C2", "1@8 C1 C2 to @17\n"},
      {"bdw", "00040000 00090000 00050000 C1", "1@12 C1\n"},
      {"bdw", "000B0000 00030000 C1C2C3 00090000 00050000 C4",
       "! record 1 @4 00 03 00 00: a record has no length of 3; the rest of its block, 3 bytes, is "
       "left out\n1@19 C4\n"},
      {"bdw", "00090000 00060000 C1 00090000 00050000 C4",
       "! record 1 @4 00 06 00 00: a record of 6 bytes goes beyond the end of its block; the rest "
       "of its block, 1 byte, is left out\n1@17 C4\n"},
      {"bdw", "000B0000 00050000 C1 FFFF 00090000 00050000 C4",
       "1@8 C1\n! record 2 @9 : a block ends within a record descriptor word; the rest of its "
       "block, 2 bytes, is left out\n2@19 C4\n"},
      {"bdw", "00030000 00050000 C1",
       "! record 1 @0 00 03 00 00: a block has no length of 3; all that follows is left out\n"},
      {"bdw", "00090001 00050000 C1",
       "! record 1 @0 00 09 00 01: the last two bytes of a block descriptor word are not zero\n"
       "1@8 C1\n"},
      {"bdw", "00200000 00050000 C1", "1@8 C1\n! record 2 @9 : the input ends within a block\n"},
  };
  std::mt19937 random(1);
  for (const auto& c : cases) {
    const RecordFormat format = *parse_record_format(c.format);
    EXPECT_EQ(found(format, unhex(c.file), nullptr), c.lines) << c.format << " " << c.file;
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(found(format, unhex(c.file), &random), c.lines) << c.format << " " << c.file;
    }
  }
}

TEST(RecordsTest, WriterWritesWhatTheReaderReads) {
  RecordFormat format = *parse_record_format("bdw:18");
  RecordWriter blocks(format);
  std::string file;
  // The third does not fit into the block any more; the fourth is too long for any.
  EXPECT_TRUE(blocks.write("A", file));
  EXPECT_TRUE(blocks.write("BC", file));
  EXPECT_TRUE(blocks.write("DEF", file));
  EXPECT_FALSE(blocks.write("GHIJKLMNOPQ", file));
  EXPECT_TRUE(blocks.write("", file));
  blocks.finish(file);
  EXPECT_EQ(hex(file),
            "00 0F 00 00 00 05 00 00 41 00 06 00 00 42 43 "
            "00 0F 00 00 00 07 00 00 44 45 46 00 04 00 00");

  RecordWriter fixed(*parse_record_format("fixed:3"), "\x20");
  file.clear();
  EXPECT_TRUE(fixed.write("A", file));
  EXPECT_FALSE(fixed.write("ABCD", file));
  EXPECT_EQ(file, "A  ");
  RecordWriter wide(*parse_record_format("fixed:3"), " \0"s);
  EXPECT_FALSE(wide.write("AB", file)) << "half a blank";

  std::mt19937 random(2);
  for (const char* name : {"fixed:7", "rdw", "bdw", "bdw:64"}) {
    format = *parse_record_format(name);
    RecordWriter writer(format, "\x40");
    std::string lines;
    file.clear();
    for (int i = 1; i <= 200; ++i) {
      std::string record(random() % 50, static_cast<char>(random()));
      if (format.form == RecordForm::fixed) record.resize(7, 'x');
      ASSERT_TRUE(writer.write(record, file));
      lines += hex(record) + "\n";
    }
    writer.finish(file);
    std::string read = found(format, file, &random);
    std::string data;
    for (std::size_t at = 0; at < read.size();) {
      const std::size_t end = read.find('\n', at);
      at = read.find(' ', at) + 1;
      data += read.substr(at, end + 1 - at);
      at = end + 1;
    }
    EXPECT_EQ(data, lines) << name;
  }
}

TEST(RecordsTest, TextsAreCutAtCharactersWithTheirShifts) {
  const struct {
    const char* encoding;
    const char* text;
    std::size_t limit;
    RecordText::Fit fit;
    std::string written;
  } cases[] = {
      {"ibm037", "ABC", 3, RecordText::Fit::whole, "\xC1\xC2\xC3"},
      {"ibm037", "ABC", 2, RecordText::Fit::too_long, "\xC1\xC2"},
      {"ibm037", "", 0, RecordText::Fit::whole, ""},
      {"ibm037", "A\u4E00", 9, RecordText::Fit::stopped, ""},
      {"utf-8", "aéé", 4, RecordText::Fit::too_long, "aé"},
      {"shift_jis", "aあい", 4, RecordText::Fit::too_long, "a\x82\xA0"},
      // Three bytes of designation in front, two bytes a character, three back to ASCII.
      {"iso-2022-jp", "あい", 10, RecordText::Fit::whole, "\x1B$B$\"$$\x1B(B"},
      {"iso-2022-jp", "あい", 9, RecordText::Fit::too_long, "\x1B$B$\"\x1B(B"},
      {"iso-2022-jp", "あい", 7, RecordText::Fit::too_long, ""},
      // Two bytes of shifts around the pairs.
      {"ibm930", "Aあい", 7, RecordText::Fit::whole, "\xC1\x0E\x44\x81\x44\x82\x0F"},
      {"ibm930", "Aあい", 6, RecordText::Fit::too_long, "\xC1\x0E\x44\x81\x0F"},
      {"ibm930", "Aあい", 4, RecordText::Fit::too_long, "\xC1"},
      {"utf-16le", "ab", 3, RecordText::Fit::too_long, "a\0"s},
  };
  for (const auto& c : cases) {
    RecordText text("utf-8", c.encoding);
    ASSERT_EQ(text.status(), Status::ok);
    std::string written = "-";
    EXPECT_EQ(text.fit(c.text, c.limit, written), c.fit) << c.encoding << " " << c.text;
    EXPECT_EQ(hex(written), hex("-" + c.written)) << c.encoding << " " << c.text;
  }
  std::string written;
  EXPECT_EQ(RecordText("shift_jis", "ibm290").fit("\xB1\xB2\xB3", 2, written),
            RecordText::Fit::too_long);
  EXPECT_EQ(hex(written), "81 82");
  EXPECT_EQ(RecordText("utf-8", "ibm1047").blank(), "\x40");
  EXPECT_EQ(RecordText("utf-8", "utf-16be").blank(), "\0 "s);
  EXPECT_EQ(RecordText("utf-8", "iso-2022-kr").opening(), "\x1B$)C");
}

TEST(RecordCut, FollowsDescriptorWords) {
  const std::string rdw = "\0\x06\0\0AB\0\x05\1\0C\0\x05\2\0D\0\4\0\0"s;  // one in two segments
  const std::string bdw = "\0\x0A\0\0\0\x06\1\0AB\0\x09\0\0\0\5\2\0C\x80\0\0\x09\0\5\0\0E"s;
  using Place = std::optional<std::uint64_t>;
  const struct {
    const char* format;
    std::string bytes;
    std::uint64_t offset;
    CutOptions options;
    Place place;
  } cases[] = {
      {"fixed:80", "", 0, {160}, 0},
      {"fixed:80", "", 1, {100}, 60},
      {"fixed:80", "", 60, {100}, 60},
      {"rdw", rdw, 0, {0}, 0},
      {"rdw", rdw, 1, {0}, 6},
      {"rdw", rdw, 7, {9, true}, 16},  // not within the record of two segments
      {"rdw", rdw, 7, {9}, Place()},
      {"rdw", rdw, 17, {0}, Place()},
      {"rdw", "\0\x03\0\0AB\0\x05\0\0C"s, 1, {0}, Place()},
      {"rdw", "\0\x30\0\0AB"s, 1, {0}, Place()},
      {"bdw", bdw, 0, {0}, 0},
      {"bdw", bdw, 1, {0}, 19},
      {"bdw", bdw.substr(0, 26), 1, {0}, Place()},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(find_record_cut(c.bytes, *parse_record_format(c.format), c.offset, c.options),
              c.place)
        << c.format << " " << c.offset << " " << c.options.position;
  }
}

}  // namespace
