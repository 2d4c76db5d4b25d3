// Fields and tables of encconv/records.h, by bytes worked out by hand.
#include "encconv/records.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "tests/test_support.h"

namespace {

using namespace encconv;
using namespace std::string_literals;

struct NumberCase {
  const char* field;  // type and options
  const char* bytes;
  const char* text;         // what it is read as; null: it is no number
  bool isCanonical = true;  // it is written so
};

TEST(FieldsTest, NumbersAreReadAndWrittenExactly) {
  const NumberCase cases[] = {
      {"packed", "12345C", "12345"},
      {"packed", "12345D", "-12345"},
      {"packed:scale=2", "12345C", "123.45"},
      {"packed:scale=5", "00005D", "-0.00005"},
      {"packed:scale=7", "00005C", "0.0000005"},
      {"packed:unsigned", "12345F", "12345"},
      {"packed", "00000D", "-0"},
      {"packed", "12345F", "12345", false},
      {"packed", "12345A", "12345", false},
      {"packed", "12345B", "-12345", false},
      {"packed", "12345E", "12345", false},
      {"packed:unsigned", "12345D", nullptr},
      {"packed", "123455", nullptr},
      {"packed", "1A345C", nullptr},
      {"packed", "404040", nullptr},
      {"packed", "1234567890123456789012345678901C", "1234567890123456789012345678901"},
      {"zoned", "F1F2C3", "123"},
      {"zoned", "F1F2D3", "-123"},
      {"zoned:scale=1", "F1F2D3", "-12.3"},
      {"zoned:unsigned", "F1F2F3", "123"},
      {"zoned", "F1F2F3", "123", false},
      {"zoned:leading", "D1F2F3", "-123"},
      {"zoned:separate", "F1F260", "-12"},
      {"zoned:leading:separate", "4EF1F2", "12"},
      {"zoned", "40F2C3", nullptr},
      {"zoned", "F1C2F3", nullptr},
      {"zoned", "F1F2C0", "120"},
      {"zoned", "F1F2CA", nullptr},
      {"zoned:leading:separate", "F0F1F2", nullptr},
      {"zoned:ascii", "313243", "123"},
      {"zoned:ascii", "31327D", "-120"},
      {"zoned:ascii", "313273", "-123", false},
      {"zoned:ascii", "313233", "123", false},
      {"zoned:ascii:unsigned", "313233", "123"},
      {"zoned:ascii:separate", "31322D", "-12"},
      {"zoned:ascii:separate:leading", "2B3132", "12"},
      {"zoned:ascii", "314233", nullptr},
      {"binary", "FFFE", "-2"},
      {"binary:unsigned", "FFFE", "65534"},
      {"binary:scale=2", "0101", "2.57"},
      {"binary:little", "0101FF", "-65279"},
      {"binary", "8000000000000000", "-9223372036854775808"},
      {"binary:unsigned", "FFFFFFFFFFFFFFFF", "18446744073709551615"},
      {"binary", "80", "-128"},
  };
  for (const NumberCase& c : cases) {
    const std::string record = unhex(c.bytes);
    FieldLayout layout;
    std::string why;
    ASSERT_TRUE(
        parse_field_layout("n 1 " + std::to_string(record.size()) + " " + c.field, layout, why))
        << why;
    FieldDecoder decoder(layout, {});
    std::vector<RecordProblem> problems;
    decoder.on_problem([&](const RecordProblem& problem) { problems.push_back(problem); });
    std::vector<Value> values;
    EXPECT_EQ(decoder.decode(record, values), c.text != nullptr) << c.field << " " << c.bytes;
    ASSERT_EQ(values.size(), 1u);
    if (c.text == nullptr) {
      ASSERT_EQ(problems.size(), 1u) << c.field << " " << c.bytes;
      EXPECT_EQ(problems[0].kind, RecordProblemKind::number);
      EXPECT_EQ(problems[0].bytes, record);
      continue;
    }
    ASSERT_TRUE(std::holds_alternative<Decimal>(values[0])) << c.field << " " << c.bytes;
    EXPECT_EQ(std::get<Decimal>(values[0]).text(), c.text) << c.field << " " << c.bytes;
    FieldEncoder encoder(layout, {});
    std::string written;
    EXPECT_TRUE(encoder.encode(values, written));
    EXPECT_EQ(written == record, c.isCanonical) << c.field << " " << hex(written);
    // From its text it is the same number.
    std::string again;
    EXPECT_TRUE(encoder.encode({std::string(c.text)}, again));
    EXPECT_EQ(hex(again), hex(written));
  }
}

TEST(FieldsTest, NumbersThatDoNotFitAreRefused) {
  const struct {
    const char* field;
    const char* value;
    const char* written;  // null: refused
  } cases[] = {
      {"n 1 2 packed", "999", "99 9C"},
      {"n 1 2 packed", "1000", nullptr},
      {"n 1 2 packed:digits=2", "100", nullptr},
      {"n 1 2 packed:scale=1", "1.50", "01 5C"},
      {"n 1 2 packed:scale=1", "1.55", nullptr},
      {"n 1 2 packed:scale=1", "1E1", "10 0C"},
      {"n 1 2 packed:scale=1", "-15e-1", "01 5D"},
      {"n 1 2 packed:unsigned", "-1", nullptr},
      {"n 1 2 packed:unsigned", "-0", "00 0F"},
      {"n 1 2 packed", "one", nullptr},
      {"n 1 2 packed", "", nullptr},
      {"n 1 2 packed", "1E1000", nullptr},
      {"n 1 2 packed", "1.", "00 1C"},
      {"n 1 1 binary", "-128", "80"},
      {"n 1 1 binary", "128", nullptr},
      {"n 1 1 binary:unsigned", "255", "FF"},
      {"n 1 8 binary", "9223372036854775808", nullptr},
      {"n 1 8 binary", "-9223372036854775809", nullptr},
      {"n 1 8 binary:unsigned", "18446744073709551616", nullptr},
      {"n 1 2 zoned:separate", "10", nullptr},
  };
  for (const auto& c : cases) {
    FieldLayout layout;
    std::string why, record;
    ASSERT_TRUE(parse_field_layout(c.field, layout, why)) << why;
    FieldOptions options;
    const bool isGood = FieldEncoder(layout, options).encode({std::string(c.value)}, record);
    EXPECT_EQ(isGood, c.written != nullptr) << c.field << " " << c.value;
    if (isGood) {
      EXPECT_EQ(hex(record), c.written) << c.field << " " << c.value;
    }
    // Under a treatment it is blanks, and told.
    options.text.on_error = OnError::drop;
    FieldEncoder encoder(layout, options);
    int count = 0;
    encoder.on_problem([&](const RecordProblem&) { ++count; });
    EXPECT_TRUE(encoder.encode({std::string(c.value)}, record));
    EXPECT_EQ(count, isGood ? 0 : 1);
    if (!isGood) {
      EXPECT_EQ(record, std::string(record.size(), '\x40'));
    }
  }
  EXPECT_EQ(parse_decimal("-9223372036854775808")->integer(), INT64_MIN);
  EXPECT_EQ(parse_decimal("9223372036854775808")->integer(), std::nullopt);
  EXPECT_EQ(parse_decimal("1.0")->integer(), std::nullopt);
}

TEST(FieldsTest, LayoutsAreReadOrRefusedWithAReason) {
  FieldLayout layout;
  std::string why;
  ASSERT_TRUE(
      parse_field_layout("# customers\r\nid 1 5 zoned:unsigned\n\nname + 20 text # padded\n"
                         "kanji 30 10 text:encoding=shift_jis, n#1 40 2 binary # of #1\n",
                         layout, why))
      << why;
  ASSERT_EQ(layout.fields.size(), 4u);
  EXPECT_FALSE(layout.fields[0].is_signed);
  EXPECT_EQ(layout.fields[1].position, 6u);
  EXPECT_EQ(layout.fields[2].code_page, 932);
  EXPECT_EQ(layout.fields[3].name, "n#1");
  EXPECT_EQ(layout.length(), 41u);

  const struct {
    const char* text;
    const char* why;
  } refused[] = {
      {"", "no fields"},
      {"# nothing", "no fields"},
      {"a 1 5", "field 'a': is not NAME POSITION LENGTH TYPE"},
      {"a 1 5 text x", "field 'a': is not NAME POSITION LENGTH TYPE"},
      {"a 0 5 text", "field 'a': '0' is no position; positions count from 1"},
      {"a 1 0 text", "field 'a': '0' is no length"},
      {"a 1 5 float", "field 'a': 'float' is none of text, packed, zoned and binary"},
      {"a 1 5 text:scale=2", "field 'a': 'scale=2' is no option of text"},
      {"a 1 5 text:encoding=nothing", "field 'a': 'nothing' is no known encoding"},
      {"a 1 5 packed:scale=64", "field 'a': 'scale=64' is no option of packed"},
      {"a 1 5 packed:digits=10", "field 'a': has no room for so many digits"},
      {"a 1 5 packed:leading", "field 'a': 'leading' is no option of packed"},
      {"a 1 33 packed", "field 'a': has more than 63 digits"},
      {"a 1 9 binary", "field 'a': has more than 8 bytes, which binary numbers have at most"},
      {"a 1 1 zoned:separate", "field 'a': has no room for a digit"},
      {"a 1 2 zoned:separate:unsigned", "field 'a': is separate and unsigned"},
      {"a 1 5 text, a 6 5 text", "field 'a': is there twice"},
  };
  for (const auto& c : refused) {
    EXPECT_FALSE(parse_field_layout(c.text, layout, why)) << c.text;
    EXPECT_EQ(why, c.why) << c.text;
  }
  EXPECT_EQ(layout.fields.size(), 4u) << "it stays as it was";

  const struct {
    const char* text;
    const char* encoding;
    const char* format;
    const char* reading;
    const char* writing;
  } unfit[] = {
      {"a 1 5 text, b 5 1 text", "37", "rdw", "",
       "fields 'a' and 'b' overlap, so that they can be read but not written"},
      {"a 78 4 text", "37", "fixed:80", "field 'a' ends behind the 80 bytes of a record",
       "field 'a' ends behind the 80 bytes of a record"},
      {"a 1 20 text", "37", "bdw:20", "",
       "field 'a' ends behind the 12 bytes that a record may have"},
      {"a 1 3 text", "utf-16", "rdw", "", "field 'a': its length cuts a character in two"},
      {"a 1 3 text", "nothing", "rdw", "the source encoding is not known or cannot be read",
       "the target encoding is not known or cannot be written"},
  };
  for (const auto& c : unfit) {
    ASSERT_TRUE(parse_field_layout(c.text, layout, why));
    FieldOptions options;
    options.encoding = c.encoding;
    options.format = *parse_record_format(c.format);
    EXPECT_EQ(FieldDecoder(layout, options).error(), c.reading) << c.text;
    EXPECT_EQ(FieldEncoder(layout, options).error(), c.writing) << c.text;
  }
}

// The rows of a table that comes in pieces, and what is wrong with it.
std::string rows(const FieldLayout& layout, TableFormat format, const std::string& table,
                 std::mt19937* random, std::vector<std::vector<Value>>* values = nullptr) {
  TableReader reader(layout, format);
  std::string lines;
  for (std::size_t at = 0;;) {
    const RecordStep step = reader.next();
    if (step == RecordStep::end) return lines;
    if (step == RecordStep::record) {
      lines += std::to_string(reader.number()) + "@" + std::to_string(reader.offset());
      for (const Value& value : reader.row()) {
        const std::string* const text = std::get_if<std::string>(&value);
        lines += text == nullptr ? " -" : " '" + *text + "'";
      }
      lines += "\n";
      if (values != nullptr) values->push_back(reader.row());
    } else if (step == RecordStep::damaged) {
      lines += "! " + std::to_string(reader.problem().record) + "@" +
               std::to_string(reader.problem().offset) + " " + reader.problem().reason + "\n";
    } else if (at == table.size()) {
      reader.finish();
    } else {
      const std::size_t count = random == nullptr
                                    ? table.size()
                                    : std::min<std::size_t>(table.size() - at, (*random)() % 5 + 1);
      reader.push(std::string_view(table).substr(at, count));
      at += count;
    }
  }
}

TEST(FieldsTest, TablesAreReadAndTheirFaultsTold) {
  FieldLayout layout;
  std::string why;
  ASSERT_TRUE(parse_field_layout("a 1 5 text, b 6 5 packed", layout, why));
  const struct {
    TableFormat format;
    std::string table;
    std::string lines;
  } cases[] = {
      {TableFormat::csv, "a,b\r\nx,1\r\n\"y\"\"\n,\",\r\n\r\n\"\",2",
       "1@5 'x' '1'\n2@10 'y\"\n,' -\n3@22 '' '2'\n"},
      {TableFormat::csv, "\xEF\xBB\xBF\"a\",b\nx,1\n", "1@9 'x' '1'\n"},
      {TableFormat::json, "\xEF\xBB\xBF{\"b\": 1}\n", "1@3 - '1'\n"},
      {TableFormat::csv, "b\n1\n", "1@2 - '1'\n"},
      {TableFormat::csv, "b,a\n1,x\n", "1@4 'x' '1'\n"},
      {TableFormat::csv, "a,b\n1\n1,2\n",
       "! 1@4 the row has 1 cell, and the header 2\n2@6 '1' '2'\n"},
      {TableFormat::csv, "a,b\nx\"y,1\n\"x\"y,2\n\"x",
       "! 1@5 a quote within a cell that does not begin with one\n"
       "! 2@13 something follows the end of a quoted cell\n! 3@17 a quoted cell has no end\n"},
      {TableFormat::csv, "a,c\n1,2\n",
       "! 0@0 the header names 'c', which is no field; nothing is read\n"},
      {TableFormat::csv, "a,a\n1,2\n", "! 0@0 the header names 'a' twice; nothing is read\n"},
      {TableFormat::json, "{\"a\": \"x\", \"b\": -1.50}\n\n{\"b\":null}\r\n{}",
       "1@0 'x' '-1.50'\n2@24 - -\n3@36 - -\n"},
      {TableFormat::json, R"({"a": "\"\\\/\n\u00e9\ud83d\ude00"})", "1@0 '\"\\/\né😀' -\n"},
      {TableFormat::json,
       "[1]\n{\"a\" 1}\n{\"a\": true}\n{\"a\": 1} 2\n{\"a\": \"x\n{\"c\": 1}\n"
       "{\"a\": \"\\ud83d\"}\n{\"a\": 1 \"b\": 2}\n{\"a\":\"\t\"}\n{1:2}\n"
       "{\"a\":\"\\x\"}\n{\"b\":null,\"b\":1}\n",
       "! 1@0 a line is no JSON object\n! 2@9 there is no colon behind a name\n"
       "! 3@18 a value is neither a text nor a number nor null\n"
       "! 4@33 something follows the end of the object\n! 5@43 a text has no end\n"
       "! 6@44 'c' is no field\n! 7@65 half a pair of surrogates\n"
       "! 8@77 there is neither a comma nor the end of the object\n"
       "! 9@91 a control character within a text\n! 10@96 there is no name of a member\n"
       "! 11@108 no escape of a text\n! 12@112 'b' is there twice\n"},
  };
  std::mt19937 random(3);
  for (const auto& c : cases) {
    EXPECT_EQ(rows(layout, c.format, c.table, nullptr), c.lines) << c.table;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(rows(layout, c.format, c.table, &random), c.lines);
  }
}

TEST(FieldsTest, RecordsComeBackFromEveryTable) {
  FieldLayout layout;
  std::string why;
  ASSERT_TRUE(
      parse_field_layout("text 1 6 text, \"q\" 7 3 packed:scale=2, zoned 10 4 "
                         "zoned:leading, count 14 3 binary, kana 17 4 text:encoding=932",
                         layout, why));
  std::mt19937 random(4);
  const auto digit = [&] { return random() % 10; };
  for (const char* name : {"fixed:25", "rdw"}) {
    FieldOptions options;
    options.encoding = "ibm1047";
    options.trim = true;
    options.format = *parse_record_format(name);
    FieldDecoder decoder(layout, options);
    FieldEncoder encoder(layout, options);
    ASSERT_EQ(decoder.error() + encoder.error(), "");
    for (const TableFormat format :
         {TableFormat::csv, TableFormat::json, TableFormat::json_strings}) {
      const TableWriter writer(layout, format);
      std::string table;
      std::vector<std::string> records;
      writer.header(table);
      for (int i = 0; i < 200; ++i) {
        std::string record;
        // Quotes, commas, line ends and letters; then blanks.
        for (std::size_t j = random() % 7; j > 0; --j)
          record += "\x7F\x6B\x25\x0D\xC1\x51"[random() % 6];
        record.resize(6, '\x40');
        for (int j = 0; j < 2; ++j) record += static_cast<char>(digit() << 4 | digit());
        record += static_cast<char>(digit() << 4 | (12 + random() % 2));
        record += static_cast<char>((12 + random() % 2) << 4 | digit());
        for (int j = 0; j < 3; ++j) record += static_cast<char>(0xF0 | digit());
        for (int j = 0; j < 3; ++j) record += static_cast<char>(random());
        record += random() % 2 == 0 ? "\x82\xA0  " : "\xB1\x83\x65 ";
        if (options.format.form == RecordForm::fixed) {
          record.resize(25, '\x40');
        } else {
          constexpr std::size_t kEnds[] = {0, 6, 9, 13, 16, 20};
          record.resize(kEnds[random() % 6]);
        }
        std::vector<Value> values;
        ASSERT_TRUE(decoder.decode(record, values));
        writer.row(values, table);
        records.push_back(record);
      }
      std::vector<std::vector<Value>> read;
      rows(layout, format, table, &random, &read);
      ASSERT_EQ(read.size(), records.size()) << table;
      for (std::size_t i = 0; i < read.size(); ++i) {
        std::string record;
        ASSERT_TRUE(encoder.encode(read[i], record));
        EXPECT_EQ(hex(record), hex(records[i]));
      }
    }
  }
}

TEST(FieldsTest, ProblemsOfFieldsHaveTheirPlaceInTheFile) {
  FieldLayout layout;
  std::string why;
  ASSERT_TRUE(parse_field_layout("name 1 3 text:encoding=utf-8, n 4 2 packed", layout, why));
  // A spanned record whose number is damaged and in the second segment, then one that is cut.
  const std::string file = unhex("00070100 41FF43 00060200 4040 00080000 414243 12");
  for (const OnError treatment : {OnError::stop, OnError::substitute}) {
    FieldOptions options;
    options.text.on_error = treatment;
    FieldDecoder decoder(layout, options);
    std::string told;
    decoder.on_problem([&](const RecordProblem& problem) {
      told += std::to_string(problem.record) + "@" + std::to_string(problem.offset) + " " +
              problem.field + " " + hex(problem.bytes) + " " + problem.reason + "\n";
    });
    RecordReader reader(options.format);
    reader.push(file);
    std::vector<Value> values;
    ASSERT_EQ(reader.next(), RecordStep::record);
    EXPECT_EQ(decoder.decode(reader, values), treatment != OnError::stop);
    const std::string ofText = "1@5 name FF \n";
    if (treatment == OnError::stop) {
      EXPECT_EQ(told, ofText);
      continue;
    }
    EXPECT_EQ(std::get<std::string>(values[0]), "A\uFFFDC");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(values[1]));
    EXPECT_EQ(told, ofText + "1@11 n 40 40 no packed number: no sign is 0\n");
    told.clear();
    ASSERT_EQ(reader.next(), RecordStep::record);
    EXPECT_TRUE(decoder.decode(reader, values));
    EXPECT_EQ(told, "2@20 n 12 the record ends within the field: 1 of 2 bytes\n");
    EXPECT_EQ(std::get<std::string>(values[0]), "ABC");
  }
}

}  // namespace
