// Real-looking texts in older encodings, made by other converters, against their UTF-8 masters.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "encoding/encoding_convert.h"

namespace {

struct Sample {
  const char* master;
  int codePage;
};

// tests/data/README.md says who made them.
constexpr Sample kSamples[] = {
    {"english", 1252},      {"french", 1252},
    {"german", 1252},       {"invoice", 28605},
    {"russian", 1251},      {"russian", 10007},
    {"russian-plain", 866}, {"russian-plain", 20866},
    {"greek", 1253},        {"arabic", 1256},
    {"arabic", 708},        {"arabic-forms", 864},
    {"mac-arabic", 10004},  {"hebrew", 1255},
    {"hebrew", 862},        {"thai", 874},
    {"japanese", 932},      {"japanese", 51932},
    {"mail", 50220},        {"chinese-simplified", 936},
    {"korean", 949},        {"chinese-traditional", 950},
    {"korean", 51949},      {"korean", 1361},
    {"vietnamese", 1258},   {"record", 37},
    {"listing", 1047},      {"listing", 500},
    {"invoice", 1140},      {"sms", 55000},
    {"header", 65000},      {"emoji", 1200},
    {"emoji", 1201},
};

std::string readFile(const std::string& name) {
  std::ifstream file(std::string(ENCCONV_TEST_DATA "/") + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

// The result of a conversion that must go well, with the byte order mark of the UTFs that our
// files have one in.
std::string convert(int from, int to, const std::string& text) {
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  const auto* data = reinterpret_cast<const unsigned char*>(text.data());
  const auto length = static_cast<unsigned int>(text.size());
  EXPECT_TRUE(to == 65001 ? converter.EncConvert(from, to, data, length, out, log)
                          : converter.EncConvertWithPreamble(from, to, data, length, out, log));
  EXPECT_FALSE(converter.m_foundErrors);
  return {reinterpret_cast<const char*>(out.getData2()), out.getSize()};
}

void replaceAll(std::string& text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size()) {
    text.replace(at, what.size(), with);
  }
}

// Joins the Vietnamese letters that code page 1258 takes apart: a letter and a tone mark.
std::string joinTones(std::string text) {
  static constexpr const char* kMarks[] = {"\u0300", "\u0301", "\u0303", "\u0309", "\u0323"};
  static constexpr const char* kLetters[][6] = {
      {"a", "à", "á", "ã", "ả", "ạ"}, {"ă", "ằ", "ắ", "ẵ", "ẳ", "ặ"},
      {"â", "ầ", "ấ", "ẫ", "ẩ", "ậ"}, {"e", "è", "é", "ẽ", "ẻ", "ẹ"},
      {"ê", "ề", "ế", "ễ", "ể", "ệ"}, {"i", "ì", "í", "ĩ", "ỉ", "ị"},
      {"o", "ò", "ó", "õ", "ỏ", "ọ"}, {"ô", "ồ", "ố", "ỗ", "ổ", "ộ"},
      {"ơ", "ờ", "ớ", "ỡ", "ở", "ợ"}, {"u", "ù", "ú", "ũ", "ủ", "ụ"},
      {"ư", "ừ", "ứ", "ữ", "ử", "ự"}, {"y", "ỳ", "ý", "ỹ", "ỷ", "ỵ"},
      {"A", "À", "Á", "Ã", "Ả", "Ạ"}, {"Ơ", "Ờ", "Ớ", "Ỡ", "Ở", "Ợ"},
  };
  for (const auto& row : kLetters) {
    for (int mark = 0; mark < 5; ++mark) {
      replaceAll(text, std::string(row[0]) + kMarks[mark], row[mark + 1]);
    }
  }
  return text;
}

TEST(SamplesTest, ReadAsTheirMastersAndWriteTheSameBytes) {
  for (const Sample& sample : kSamples) {
    const std::string name = std::string(sample.master) + "." + std::to_string(sample.codePage);
    SCOPED_TRACE(name);
    const std::string master = readFile(std::string(sample.master) + ".txt");
    const std::string legacy = readFile(name);
    const std::string text = convert(sample.codePage, 65001, legacy);

    std::string expected = text;
    replaceAll(expected, "\u0085", "\n");  // the EBCDIC samples end lines with NL
    if (sample.codePage == 1258) expected = joinTones(expected);
    EXPECT_EQ(expected, master);
    // Mac Arabic has two of each blank and mark, and UTF-7 leaves its writers a choice.
    const std::string back = convert(65001, sample.codePage, text);
    if (sample.codePage == 10004 || sample.codePage == 65000) {
      EXPECT_EQ(convert(sample.codePage, 65001, back), text);
    } else {
      EXPECT_EQ(back, legacy);
    }
    if (sample.codePage == 1258) {
      EXPECT_EQ(joinTones(convert(1258, 65001, convert(65001, 1258, master))), master);
    }
  }
}

}  // namespace
