// Finding out encodings, by both interfaces. The samples were written by other converters.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"

namespace {

using encconv::DetectedKind;
using encconv::Detection;
using encconv::Evidence;

std::string readFile(const std::string& name) {
  std::ifstream file(std::string(ENCCONV_TEST_DATA "/") + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string nameOf(const Detection& found) {
  return found.candidates.empty() ? "" : std::string(found.candidates[0].name);
}

// What the first candidate makes of the bytes.
std::string readAsFound(const Detection& found, const std::string& bytes) {
  return found.candidates.empty() ? ""
                                  : encconv::to_utf8(bytes, found.candidates[0].code_page).text;
}

TEST(Detect, ReadsSamplesAsTheTextThatTheyAre) {
  for (const std::string name : {"arabic.1256",
                                 "arabic.708",
                                 "chinese-simplified.936",
                                 "chinese-traditional.950",
                                 "french.1252",
                                 "german.1252",
                                 "greek.1253",
                                 "hebrew.1255",
                                 "hebrew.862",
                                 "japanese.51932",
                                 "japanese.932",
                                 "korean.1361",
                                 "korean.51949",
                                 "korean.949",
                                 "russian-plain.20866",
                                 "russian-plain.866",
                                 "russian.10007",
                                 "russian.1251",
                                 "thai.874",
                                 "mail.50220",
                                 "plane-korean.50225",
                                 "plane-chinese.hz",
                                 "header.65000",
                                 "listing.1047",
                                 "emoji.1200",
                                 "emoji.1201"}) {
    SCOPED_TRACE(name);
    const std::string bytes = readFile(name);
    const Detection found = encconv::detect(bytes);
    EXPECT_EQ(found.kind, DetectedKind::text);
    EXPECT_NE(found.sure(), nullptr);
    EXPECT_EQ(readAsFound(found, bytes), readFile(name.substr(0, name.find('.')) + ".txt"));
  }
  EXPECT_EQ(nameOf(encconv::detect(readFile("vietnamese.1258"))), "windows-1258");
  EXPECT_EQ(nameOf(encconv::detect(readFile("japanese.51932").substr(14, 40))), "EUC-JP");
  // Small letters are the same on Macs, which are fewer.
  EXPECT_EQ(nameOf(encconv::detect(encconv::from_utf8("привет, как дела?", 1251).text)),
            "windows-1251");
  // Which national page of EBCDIC it is, a text leaves open that has none of the letters.
  const Detection record = encconv::detect(readFile("record.37"));
  EXPECT_EQ(nameOf(record), "IBM037");
  EXPECT_EQ(record.sure(), nullptr);
  EXPECT_GT(record.candidates.size(), 1u);
  for (const char* few : {"0 00 000 0\n", "9 99 999 9\n", "A 1\n"}) {
    EXPECT_EQ(nameOf(encconv::detect(encconv::from_utf8(few, 37).text)), "IBM037") << few;
  }
}

// Text that has next to no letters beyond ASCII, which are those of any language in some page.
TEST(Detect, KnowsTextByItsQuotationMarks) {
  const char* const texts[] = {
      "We can’t – or won’t – do that…",
      "The company’s products — all of them — weren’t “ready” when they shipped.",
      "“Quite so,” said the Duke, “but it isn’t mine.” And he didn’t come back.",
      "L’été où l’on s’est aimés… c’était « hier ».",
  };
  for (const char* const text : texts) {
    for (const char* const name : {"windows-1252", "macintosh"}) {
      EXPECT_EQ(nameOf(encconv::detect(encconv::from_utf8(text, name).text)), name) << text;
    }
  }
  // Umlauts of DOS are such marks in windows-1252, but within words.
  const std::string umlauts = encconv::from_utf8("schön möglich, große Länge, hören für", 850).text;
  EXPECT_EQ(nameOf(encconv::detect(umlauts)), "IBM850");
}

// Cyrillic capitals of a page are small letters of another, and Hebrew ones of a third.
TEST(Detect, KnowsWordsInCapitals) {
  const std::pair<const char*, const char*> cases[] = {
      {"windows-1251", "ВНИМАНИЕ! ВАЖНОЕ СООБЩЕНИЕ ДЛЯ ВСЕХ СОТРУДНИКОВ"},
      {"IBM866", "ВНИМАНИЕ! ВАЖНОЕ СООБЩЕНИЕ ДЛЯ ВСЕХ СОТРУДНИКОВ"},
      {"KOI8-R", "внимание! важное сообщение для всех сотрудников"},
      {"windows-1252", "ÜBERGRÖSSE FÜR ÄRZTE: GRÖSSE ÄNDERN"},
  };
  for (const auto& [name, text] : cases) {
    const std::string bytes = encconv::from_utf8(text, name).text;
    EXPECT_EQ(readAsFound(encconv::detect(bytes), bytes), text) << name;
  }
}

TEST(Detect, FindsWideFormsOfAnyScriptWithoutAMark) {
  for (const char* name :
       {"arabic", "chinese-simplified", "chinese-traditional", "english", "german", "greek",
        "hebrew", "japanese", "korean", "russian", "thai", "vietnamese", "invoice"}) {
    for (const int form : {1200, 1201, 12000, 12001}) {
      const std::string text = readFile(std::string(name) + ".txt");
      std::string bytes = encconv::from_utf8(text, form).text;
      const Detection found = encconv::detect(bytes);
      ASSERT_EQ(found.candidates.size(), 1u) << name << ' ' << form;
      EXPECT_EQ(found.candidates[0].code_page, form) << name;
      EXPECT_EQ(found.candidates[0].evidence, Evidence::structure);
      // Cut within a character.
      bytes.resize(bytes.size() / 8 * 4 + 3);
      encconv::DetectOptions options;
      options.is_beginning = true;
      EXPECT_EQ(nameOf(encconv::detect(bytes, options)), found.candidates[0].name) << name;
    }
  }
  // One character in 200 may be of private use.
  for (const std::size_t length : {198u, 199u}) {
    std::string text;
    while (text.size() < length) text += "hello world ";
    const std::string wide = encconv::from_utf8(text.substr(0, length) + "\uE000", 1200).text;
    const Detection found = encconv::detect(wide);
    EXPECT_EQ(found.kind == DetectedKind::text, length == 199);
  }
  // Not a blank or line end of ASCII in it, and so no NUL byte.
  const std::string chinese =
      "床前明月光，疑是地上霜。举头望明月，低头思故乡。春眠不觉晓，处处闻啼鸟。";
  for (const int form : {1200, 1201}) {
    EXPECT_EQ(encconv::detect(encconv::from_utf8(chinese, form).text).candidates.at(0).code_page,
              form);
  }
}

TEST(Detect, ReadsDeclarations) {
  const std::string latin2 = "\xB1\xE6\xEA\xB3\xF3";  // in ISO-8859-2
  const struct {
    std::string bytes, name;
    Evidence evidence;
  } cases[] = {
      {"<?xml version='1.0' encoding='iso-8859-2'?><a>" + latin2 + "</a>", "ISO-8859-2",
       Evidence::declaration},
      {"<html><meta content=\"text/html; charset=iso-8859-2\">" + latin2, "ISO-8859-2",
       Evidence::declaration},
      {"@charset \"iso-8859-2\";\n/* " + latin2 + " */", "ISO-8859-2", Evidence::declaration},
      {"Subject: x\nContent-Type: text/plain;\n\tcharset=\"ISO-8859-2\"\n\n" + latin2, "ISO-8859-2",
       Evidence::declaration},
      {"msgid \"\"\nmsgstr \"\"\n\"Content-Type: text/plain; charset=ISO-8859-2\\n\"\n" + latin2,
       "ISO-8859-2", Evidence::declaration},
      {"#!/usr/bin/python\n# -*- coding: latin-2-unix -*-\n#" + latin2, "ISO-8859-2",
       Evidence::declaration},
      {"# coding=iso8859-2\n#" + latin2, "ISO-8859-2", Evidence::declaration},
      {latin2 + "\n# vim: set fileencoding=latin2 :\n", "ISO-8859-2", Evidence::declaration},
      {latin2 + "\n;; Local Variables:\n;; coding: latin-2\n;; End:\n", "ISO-8859-2",
       Evidence::declaration},
      // What is well formed in UTF-8 is UTF-8, and what is declared must be well formed.
      {"# coding: latin-2\ncaf\xC3\xA9 na\xC3\xAFve \xE2\x82\xAC", "UTF-8", Evidence::structure},
      {"# coding: utf-8\n" + readFile("russian.1251"), "windows-1251", Evidence::statistics},
      {"# coding: iso-8859-1\n" + readFile("japanese.932"), "Shift_JIS", Evidence::statistics},
      // No declarations.
      {"the decoding: latin-2, charset=latin-2\n" + readFile("russian.1251"), "windows-1251",
       Evidence::statistics},
  };
  for (const auto& c : cases) {
    const Detection found = encconv::detect(c.bytes);
    ASSERT_FALSE(found.candidates.empty()) << c.bytes;
    EXPECT_EQ(found.candidates[0].name, c.name) << c.bytes;
    EXPECT_EQ(found.candidates[0].evidence, c.evidence) << c.bytes;
    EXPECT_NE(found.sure(), nullptr) << c.bytes;
  }
}

TEST(Detect, TellsWhatIsNoText) {
  std::string noise, numbers;
  std::uint32_t seed = 1;
  for (int i = 0; i < 4000; ++i) {
    seed = seed * 1664525 + 1013904223;
    noise += static_cast<char>(seed >> 24 == 0 ? 1 : seed >> 24);
    numbers += static_cast<char>(i & 0xFF);
    numbers += static_cast<char>(i >> 8);
  }
  const struct {
    std::string bytes;
    DetectedKind kind;
  } cases[] = {
      {"", DetectedKind::empty},
      {"plain\n", DetectedKind::ascii},
      {"\x1B[1mbold\x1B[0m 1+2 ~{ x ~}", DetectedKind::ascii},
      {"in HZ ~{w~!!~}", DetectedKind::text},  // rows 1 to 87, and no more
      {"not HZ ~{xa~}", DetectedKind::ascii},
      {"a+b-c +x-y ++ +1234-", DetectedKind::ascii},
      {"SQLite format 3", DetectedKind::ascii},  // but for its NUL
      {std::string("SQLite format 3\0", 16), DetectedKind::binary},
      {"GIF89a", DetectedKind::binary},
      {"\xDE\x12\x04\x95", DetectedKind::binary},
      {std::string("\xA7\x0D\x0D\x0A\0\0\0\0", 8), DetectedKind::binary},
      {"x\r\r\ny\r\n", DetectedKind::ascii},
      {std::string("text\0with\0zeros", 15), DetectedKind::binary},
      {"\xFF\xFE" + numbers, DetectedKind::binary},  // no byte order mark
      {numbers, DetectedKind::binary},
      {noise, DetectedKind::binary},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(encconv::detect(c.bytes).kind, c.kind) << c.bytes.substr(0, 40);
  }
  // A byte or two are too little to be sure by.
  for (const char* few : {"\x81", "caf\xE9", "\xE4\xF6"}) {
    EXPECT_EQ(encconv::detect(few).sure(), nullptr) << few;
  }
}

TEST(Detect, LooksAtSamplesOfLongTexts) {
  // Two MiB of ASCII; then lines that are not.
  std::string text;
  while (text.size() < 2u << 20) text += "nothing but ASCII in this line\n";
  const std::string ascii = text;
  const std::string line = readFile("russian-plain.20866");
  while (text.size() < 4u << 20) text += line;
  EXPECT_EQ(nameOf(encconv::detect(text)), "KOI8-R");
  text[text.size() - 1000] = '\0';
  EXPECT_EQ(nameOf(encconv::detect(text)), "KOI8-R");  // not every byte is looked at
  encconv::DetectOptions options;
  options.is_beginning = true;
  const std::string declared = "# coding: koi8-r\n" + ascii;
  EXPECT_EQ(encconv::detect(declared, options).kind, DetectedKind::ascii);
  EXPECT_EQ(encconv::detect(declared, options).candidates.at(1).name, "KOI8-R");
  const std::string minorities = readFile("minorities.54936");
  EXPECT_EQ(nameOf(encconv::detect(minorities.substr(0, minorities.size() - 2), options)),
            "GB18030");
  // A sequence that the end cuts off is no fault; in a whole text it is.
  EXPECT_EQ(nameOf(encconv::detect("caf\xC3\xA9 \xE2\x82", options)), "UTF-8");
  EXPECT_EQ(encconv::detect("caf\xC3\xA9 \xE2\x82").sure(), nullptr);
}

TEST(Detect, NamesWhatDoesNotFitInPlaces) {
  const struct {
    std::string bytes;
    const char* name;
  } cases[] = {{readFile("mail.50220") + "\xA0", "ISO-2022-JP"},
               {readFile("japanese.txt") + "\xA0", "UTF-8"}};
  for (const auto& c : cases) {
    const Detection found = encconv::detect(c.bytes);
    EXPECT_EQ(nameOf(found), c.name);
    EXPECT_EQ(found.sure(), nullptr);
    EXPECT_NE(found.candidates.at(0).reason.find("but for 1 place"), std::string::npos);
  }
  // A damaged byte in a short piece of text.
  for (const auto& [file, name] : {std::pair("japanese.932", "Shift_JIS"),
                                   {"japanese.51932", "EUC-JP"},
                                   {"korean.949", "KS_C_5601-1987"}}) {
    std::string bytes = readFile(file).substr(0, 330);
    const auto high = std::ranges::find_if(bytes.begin() + 100, bytes.end(),
                                           [](char c) { return static_cast<signed char>(c) < 0; });
    *high = '\xFF';
    const Detection found = encconv::detect(bytes);
    EXPECT_EQ(nameOf(found), name) << file;
    EXPECT_EQ(found.sure(), nullptr) << file;
  }
  // Controls of ISO 8859-2 that no text has, whatever is declared.
  EXPECT_EQ(nameOf(encconv::detect("<meta charset=iso-8859-2>\x84Za\xBF\xF3\xB3\xE6 g\xEA\x9Cl\xB9 "
                                   "ja\x9F\xF1\x94")),
            "windows-1250");
}

TEST(Detect, FindsEscapesOfManyKinds) {
  const Detection found = encconv::detect("\x1B$)A\x0E<:Ky2;S{#,\x0F");
  EXPECT_EQ(nameOf(found), "ISO-2022-CN");
  EXPECT_EQ(found.candidates[0].code_page, 50227);
}

TEST(Detect, ServesC) {
  const std::string bytes = readFile("greek.1253");
  const Detection expected = encconv::detect(bytes);
  encconv_detection* const found = encconv_detect(bytes.data(), bytes.size(), 0);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(encconv_detection_kind(found), ENCCONV_DETECTED_TEXT);
  ASSERT_EQ(encconv_candidate_count(found), expected.candidates.size());
  for (std::size_t i = 0; i < expected.candidates.size(); ++i) {
    encconv_candidate candidate = ENCCONV_CANDIDATE_INIT;
    ASSERT_EQ(encconv_candidate_at(found, i, &candidate), 1);
    EXPECT_EQ(candidate.code_page, expected.candidates[i].code_page);
    EXPECT_EQ(candidate.name, expected.candidates[i].name);
    EXPECT_EQ(candidate.confidence, expected.candidates[i].confidence);
    EXPECT_EQ(candidate.evidence, ENCCONV_EVIDENCE_STATISTICS);
    EXPECT_EQ(candidate.reason, expected.candidates[i].reason);
  }
  encconv_candidate candidate = ENCCONV_CANDIDATE_INIT;
  EXPECT_EQ(encconv_candidate_at(found, expected.candidates.size(), &candidate), 0);
  candidate.struct_size = sizeof(std::size_t);
  EXPECT_EQ(encconv_candidate_at(found, 0, &candidate), 0);
  encconv_detection_free(found);

  encconv_detection* const picture = encconv_detect("GIF89a", 6, 1);
  EXPECT_EQ(encconv_detection_kind(picture), ENCCONV_DETECTED_BINARY);
  EXPECT_STREQ(encconv_detection_reason(picture), "begins as GIF");
  encconv_detection_free(picture);
  EXPECT_EQ(encconv_detect(nullptr, 1, 0), nullptr);
  EXPECT_EQ(encconv_candidate_count(nullptr), 0u);
  encconv_detection_free(nullptr);
}

}  // namespace
