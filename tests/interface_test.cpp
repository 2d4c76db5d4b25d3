// Tests of the C++ and the C interface: what they add to the stream beneath them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "encoding/stream/stream_converter.h"

using namespace std::string_literals;
using encconv::OnError;
using encconv::Options;
using encconv::Status;

TEST(Interface, ConvertsWholeTexts) {
  const encconv::Result text = encconv::convert("\x93\xFA\x96\x7B", "sjis", "utf-8");
  EXPECT_TRUE(text);
  EXPECT_EQ(text.text, "\xE6\x97\xA5\xE6\x9C\xAC");
  EXPECT_FALSE(text.first_problem);

  Options hex;
  hex.on_error = OnError::hex;
  const encconv::Result treated = encconv::from_utf8("a\n\xD0\x96\xFF", 1252, hex);
  EXPECT_TRUE(treated);
  EXPECT_EQ(treated.text, "a\n&#x0416;&#xFF;");
  EXPECT_EQ(treated.problem_count, 2u);
  ASSERT_TRUE(treated.first_problem);
  EXPECT_EQ(treated.first_problem->offset, 2u);
  EXPECT_EQ(treated.first_problem->line, 2u);
  EXPECT_EQ(treated.first_problem->length, 2u);
  EXPECT_EQ(treated.first_problem->code_point, 0x416);
  EXPECT_FALSE(treated.first_problem->malformed);
  EXPECT_EQ(treated.first_problem->bytes, "\xD0\x96");

  const encconv::Result stopped = encconv::from_utf8(
      "ab\xD0\x96"
      "c",
      1252);
  EXPECT_FALSE(stopped);
  EXPECT_EQ(stopped.status, Status::stopped);
  EXPECT_EQ(stopped.text, "ab");

  // More than fits into one buffer of the stream.
  const std::string large(3000000, '\xE9');
  EXPECT_EQ(encconv::to_utf8(large, 1252).text.size(), 6000000u);
  EXPECT_EQ(encconv::convert(large, 1252, 1252).text, large);
}

TEST(Interface, TakesAndGivesUtf16) {
  const encconv::Utf16Result units = encconv::to_utf16(
      "\xF0\x9F\x98\x80"
      "a",
      "utf-8");
  EXPECT_EQ(units.text,
            u"\xD83D\xDE00"
            "a");
  EXPECT_EQ(encconv::from_utf16(units.text, "utf-8").text,
            "\xF0\x9F\x98\x80"
            "a");
  // No unit of the text is a byte order mark.
  EXPECT_EQ(encconv::from_utf16(u"\xFFFE"
                                "a",
                                "utf-8")
                .text,
            "\xEF\xBF\xBE"
            "a");
  EXPECT_EQ(encconv::from_utf16(u"\xFEFF"
                                "a",
                                "utf-8")
                .text,
            "\xEF\xBB\xBF"
            "a");
  EXPECT_EQ(encconv::from_utf16(u"\xFFFE"
                                "a",
                                1200)
                .text,
            "\xFE\xFF"
            "a\0"s);
  EXPECT_EQ(encconv::from_utf16(u"", 1252).text, "");
  EXPECT_EQ(encconv::to_utf16("\xFF\xFE"
                              "a\0"s,
                              1200)
                .text,
            u"a");
  EXPECT_EQ(encconv::to_utf16("\xFE\xFF\0a"s, 1200).text, u"a");
  EXPECT_EQ(encconv::to_utf8("\xEF\xBB\xBF"
                             "a",
                             65001)
                .text,
            "a");

  const encconv::Result stopped = encconv::from_utf16(
      u"ab\x65E5"
      "c",
      1252);
  ASSERT_TRUE(stopped.first_problem);
  EXPECT_EQ(stopped.first_problem->offset, 2u);
  EXPECT_EQ(stopped.first_problem->length, 1u);
  EXPECT_EQ(encconv::from_utf16(u"a\xD800", 1252).first_problem->offset, 1u);
}

TEST(Interface, SaysWhyItRefuses) {
  Options substitute;
  substitute.on_error = OnError::substitute;
  substitute.substitute = "\xD0\x96";
  Options alternate;
  alternate.on_error = OnError::alternate;
  alternate.alternate = 99;
  const struct {
    encconv::Encoding from, to;
    Options options;
    Status status;
  } cases[] = {{"no such name", 1252, {}, Status::unknown_source},
               {"", 1252, {}, Status::unknown_source},
               {1252, "no such name", {}, Status::unknown_target},
               {"no such name", "nor this", {}, Status::unknown_source},
               {0, 1252, {}, Status::unknown_source},
               {1252, 0, {}, Status::unknown_target},
               {28600, 1252, {}, Status::unknown_source},
               {28600, 28600, {}, Status::unknown_source},
               {1252, 28600, {}, Status::unknown_target},
               {65001, 1252, substitute, Status::invalid_substitute},
               {65001, 1251, substitute, Status::ok},
               {65001, 1252, alternate, Status::unknown_alternate}};
  for (const auto& c : cases) {
    EXPECT_EQ(encconv::convert("a", c.from, c.to, c.options).status, c.status);
    EXPECT_EQ(encconv::StreamConverter(c.from, c.to, c.options).status(), c.status);
  }

  Options options;
  EXPECT_TRUE(encconv::parse_on_error("substitute=0x3F21", options));
  EXPECT_EQ(encconv::from_utf8("\xD0\x96", 1252, options).text, "?!");
  EXPECT_TRUE(encconv::parse_on_error("alternate=windows-1251", options));
  EXPECT_EQ(encconv::from_utf8("\xD0\x96", 1252, options).text, "\xC6");
  EXPECT_FALSE(encconv::parse_on_error("sometimes", options));
  EXPECT_EQ(options.on_error, OnError::alternate);
  // What the text does not name stays, but for a substitute.
  EXPECT_TRUE(encconv::parse_on_error("substitute=!", options));
  EXPECT_EQ(options.alternate, 1251);
  EXPECT_EQ(encconv::from_utf8("\xD0\x96", 1252, options).text, "!");
  EXPECT_TRUE(encconv::parse_on_error("substitute", options));
  EXPECT_EQ(encconv::from_utf8("\xD0\x96", 1252, options).text, "?");
}

TEST(Interface, HonoursItsOptions) {
  Options mark, pdf, raw;
  mark.byte_order_mark = true;
  pdf.pdf_passthrough = true;
  raw.on_error = OnError::substitute;
  raw.substitute = "\x01\xFF";
  raw.substitute_is_raw = true;
  const struct {
    std::string input;
    encconv::Encoding from, to;
    Options options;
    std::string output;
  } cases[] = {
      {"a", 1252, 1200, mark, "\xFF\xFE\x61\0"s},
      {"a", 1252, 1252, mark, "a"},
      {"a", "utf-8", "utf-8", mark, "\xEF\xBB\xBF\x61"},
      {"\xEF\xBB\xBF\x61", "utf-8", "utf-8", mark, "\xEF\xBB\xBF\x61"},
      {"%PDF-1.7\xE9", 1252, "utf-8", pdf, "%PDF-1.7\xE9"},
      {"%PDF-2.0\xE9", 1252, "utf-8", pdf, "%PDF-2.0\xC3\xA9"},
      {"%PDF-1.7\xE9", 1252, "utf-8", {}, "%PDF-1.7\xC3\xA9"},
      {"\xD0\x96", "utf-8", 1252, raw, "\x01\xFF"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(encconv::convert(c.input, c.from, c.to, c.options).text, c.output);
    encconv::StreamConverter stream(c.from, c.to, c.options);
    std::string output;
    EXPECT_TRUE(stream.push(c.input, output) && stream.finish(output));
    EXPECT_EQ(output, c.output);
    EXPECT_EQ(stream.first_problem().has_value(), stream.problem_count() != 0);
  }
  // A mark that is asked for stays where one of the text would go.
  for (const std::string text : {"a", "\xEF\xBB\xBF\x61"}) {
    EXPECT_EQ(encconv::to_utf8(text, 65001, mark).text, "\xEF\xBB\xBF\x61");
    EXPECT_EQ(encconv::from_utf8(text, 65001, mark).text, "\xEF\xBB\xBF\x61");
  }
  for (const std::u16string text : {u"a", u"\uFEFFa"}) {
    const std::string bytes = encconv::from_utf16(text, 1200).text;
    EXPECT_EQ(encconv::to_utf16(bytes, 1200, mark).text, u"\uFEFFa");
  }
  EXPECT_EQ(encconv::from_utf16(u"a", 1200, mark).text, "\xFF\xFE\x61\0"s);

  Options drop;
  drop.on_error = OnError::drop;
  EXPECT_EQ(encconv::to_utf16("\xFF\x61\xFF", 65001, drop).problem_count, 2u);
}

TEST(Interface, Streams) {
  Options drop;
  drop.on_error = OnError::drop;
  encconv::StreamConverter stream("utf-16be", "utf-8", drop);
  std::vector<encconv::Problem> problems;
  stream.on_problem([&](const encconv::Problem& problem) { problems.push_back(problem); });
  std::string output;
  encconv::StreamConverter moved = std::move(stream);
  for (const char byte : "\0a\xD8\0\0b\x20\xAC"s) EXPECT_TRUE(moved.push({&byte, 1}, output));
  EXPECT_TRUE(moved.finish(output));
  EXPECT_EQ(output, "ab\xE2\x82\xAC");
  ASSERT_EQ(problems.size(), 1u);
  EXPECT_EQ(problems[0].offset, 2u);
  EXPECT_TRUE(problems[0].malformed);
  EXPECT_EQ(moved.problem_count(), 1u);
  EXPECT_EQ(moved.first_problem()->bytes, "\xD8\0"s);
  EXPECT_FALSE(moved.push("a", output));
  EXPECT_EQ(moved.status(), Status::misuse);
  // NOLINTBEGIN(bugprone-use-after-move): it can only end
  stream.on_problem(nullptr);
  EXPECT_FALSE(stream.push("a", output));
  EXPECT_FALSE(stream.finish(output));
  EXPECT_EQ(stream.status(), Status::misuse);
  EXPECT_EQ(stream.problem_count(), 0u);
  EXPECT_FALSE(stream.first_problem());
  // NOLINTEND(bugprone-use-after-move)
}

// One piece of any size is as good as many: the offsets and lines of what is wrong count from the
// beginning of the text, and shifts hold on.
TEST(Interface, StreamsPiecesOfMegabytes) {
  const struct {
    encconv::Encoding from, to;
    std::string line, lineOut;  // the input repeats the one, and the output the other
    std::size_t badOffset, badLength;
    std::string start = {}, startOut = {}, endOut = {};
  } cases[] = {
      {.from = "utf-8",
       .to = "utf-8",
       .line = "\xE6\x97\xA5\xE6\x9C\xAC\xFF.\n",
       .lineOut = "\xE6\x97\xA5\xE6\x9C\xAC.\n",
       .badOffset = 6,
       .badLength = 1},
      {.from = "utf-8",
       .to = "iso-2022-jp",
       .line = "\xE6\x97\xA5\xE6\x9C\xAC\xFF.\n",
       .lineOut = "\x1B$BF|K\\\x1B(B.\n",
       .badOffset = 6,
       .badLength = 1},
      {.from = "utf-8",
       .to = "hz",
       .line = "\xE6\x97\xA5\xF0\x9F\x98\x80\xE6\x9C\xAC.\n",
       .lineOut = "~{HU1>~}.\n",
       .badOffset = 3,
       .badLength = 4},
      {.from = "utf-8",  // without a line end, so that the shift stands until the end
       .to = "iso-2022-kr",
       .line = "\xEA\xB0\x80\xF0\x9F\x98\x80",
       .lineOut = "0!",
       .badOffset = 3,
       .badLength = 4,
       .startOut = "\x1B$)C\x0E",
       .endOut = "\x0F"},
      {.from = "utf-8",
       .to = "utf-7",
       .line = "\xE6\x97\xA5\xE6\x9C\xAC\xFF\xE6\x97\xA5",
       .lineOut = "ZeVnLGXl",
       .badOffset = 6,
       .badLength = 1,
       .startOut = "+",
       .endOut = "-"},
      {.from = "iso-2022-jp",
       .to = "windows-1252",
       .line = "F|\x1B(B.\n\x1B$B",
       .lineOut = ".\n",
       .badOffset = 0,
       .badLength = 2,
       .start = "\x1B$B"},
      {.from = "utf-16be",
       .to = "koi8-r",
       .line = "\xD8\x3D\x04\x1F\0\n"s,
       .lineOut = "\xF0\n",
       .badOffset = 0,
       .badLength = 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.from.code_page()) + " to " + std::to_string(c.to.code_page()));
    const std::size_t lines = (5u << 18) / c.line.size();
    const bool hasLineEnds = c.lineOut.ends_with('\n');
    std::string input = c.start, expected = c.startOut;
    for (std::size_t i = 0; i < lines; ++i) input += c.line, expected += c.lineOut;
    expected += c.endOut;
    for (const std::size_t size : {input.size(), std::size_t{777}}) {
      Options drop;
      drop.on_error = OnError::drop;
      encconv::StreamConverter stream(c.from, c.to, drop);
      std::uint64_t seen = 0, wrong = 0;
      stream.on_problem([&](const encconv::Problem& problem) {
        const std::size_t offset = c.start.size() + seen * c.line.size() + c.badOffset;
        const std::uint64_t line = hasLineEnds ? seen + 1 : 1;
        const bool isRight = problem.offset == offset && problem.line == line &&
                             problem.length == c.badLength &&
                             problem.bytes == input.substr(offset, c.badLength);
        ++seen;
        if (!isRight && ++wrong == 1) {
          ADD_FAILURE() << seen << ". problem at " << problem.offset << ", line " << problem.line;
        }
      });
      std::string output;
      for (std::size_t at = 0; at < input.size(); at += size) {
        ASSERT_TRUE(stream.push(std::string_view(input).substr(at, size), output));
      }
      EXPECT_TRUE(stream.finish(output));
      EXPECT_TRUE(output == expected) << "in pieces of " << size;
      EXPECT_EQ(wrong, 0u);
      EXPECT_EQ(seen, lines);
      EXPECT_EQ(stream.problem_count(), lines);
    }
    // When the text ends the stream, nothing behind the problem is written.
    encconv::StreamConverter stopping(c.from, c.to);
    std::string output;
    EXPECT_FALSE(stopping.push(input, output));
    EXPECT_EQ(stopping.status(), Status::stopped);
    EXPECT_EQ(stopping.problem_count(), 1u);
    EXPECT_LT(output.size(), 20u);
  }
}

TEST(Interface, KnowsTheEncodings) {
  const std::vector<encconv::CodePage> pages = encconv::code_pages();
  ASSERT_EQ(pages.size(), encconv_code_page_count());
  for (std::size_t i = 0; i < pages.size(); ++i) {
    encconv_code_page page;
    ASSERT_EQ(encconv_code_page_at(i, &page), 1);
    EXPECT_EQ(page.number, pages[i].number);
    EXPECT_EQ(page.name, pages[i].name);
    EXPECT_EQ(page.kind, pages[i].kind);
    EXPECT_EQ(page.description, pages[i].description);
    EXPECT_EQ(page.can_read != 0, pages[i].can_read);
    EXPECT_EQ(page.can_write != 0, pages[i].can_write);
    EXPECT_LT(i == 0 ? 0 : pages[i - 1].number, pages[i].number);
    EXPECT_EQ(encconv::find_code_page(pages[i].name), pages[i].number);
    for (const std::string_view alias : pages[i].aliases) {
      EXPECT_EQ(encconv_find_code_page(std::string(alias).c_str()), pages[i].number) << alias;
    }
    const bool canRead = encconv::to_utf8("", pages[i].number).status == Status::ok;
    const bool canWrite = encconv::from_utf8("", pages[i].number).status == Status::ok;
    EXPECT_EQ(canRead, pages[i].can_read) << pages[i].number;
    EXPECT_EQ(canWrite, pages[i].can_write) << pages[i].number;
  }
  encconv_code_page page;
  EXPECT_EQ(encconv_code_page_at(pages.size(), &page), 0);
  EXPECT_EQ(encconv::find_code_page("nothing"), std::nullopt);
}

TEST(Interface, ServesC) {
  const std::string large(3u << 20, '\xE9');  // more than one block of output
  const struct {
    int from, to;
    std::string input;
    const char* treatment = nullptr;
    encconv_status status = ENCCONV_OK;
    std::string output = "";
    encconv_problem problem = {};
  } cases[] = {
      {.from = 65001,
       .to = 1251,
       .input = "\n\xD0\x96\xE6\x97\xA5",
       .treatment = "hex",
       .output = "\n\xC6&#x65E5;",
       .problem = {.offset = 3,
                   .line = 2,
                   .length = 3,
                   .code_point = 0x65E5,
                   .malformed = 0,
                   .byte_count = 3,
                   .bytes = {0xE6, 0x97, 0xA5}}},
      {.from = 65001,
       .to = 1251,
       .input = "a\xFF",
       .status = ENCCONV_STOPPED,
       .output = "a",
       .problem = {.offset = 1,
                   .line = 1,
                   .length = 1,
                   .code_point = -1,
                   .malformed = 1,
                   .byte_count = 1,
                   .bytes = {0xFF}}},
      {.from = 1252, .to = 1252, .input = large, .output = large},
      {.from = 65001, .to = 1251, .input = ""},
      {.from = 65001, .to = 2, .input = "a", .status = ENCCONV_UNKNOWN_TARGET},
      {.from = 0, .to = 1251, .input = "a", .status = ENCCONV_UNKNOWN_SOURCE},
      {.from = 28600, .to = 28600, .input = "a", .status = ENCCONV_UNKNOWN_SOURCE},
      {.from = 65001,
       .to = 1251,
       .input = "a",
       .treatment = "never",
       .status = ENCCONV_INVALID_TREATMENT},
      {.from = 65001,
       .to = 1252,
       .input = "a",
       .treatment = "substitute=\xD0\x96",
       .status = ENCCONV_INVALID_SUBSTITUTE},
      {.from = 65001,
       .to = 1252,
       .input = "a",
       .treatment = "alternate=hz",
       .status = ENCCONV_UNKNOWN_ALTERNATE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to) + ": " +
                 (c.input == large ? "much" : c.input));
    unsigned char* output = nullptr;
    std::size_t size = 1;
    encconv_problem problem;
    EXPECT_EQ(encconv_convert(c.from, c.to, c.input.empty() ? nullptr : c.input.data(),
                              c.input.size(), c.treatment, &output, &size, &problem),
              c.status);
    EXPECT_TRUE(std::string_view(reinterpret_cast<char*>(output), size) == c.output);
    EXPECT_EQ(output == nullptr, c.output.empty());
    EXPECT_EQ(problem.offset, c.problem.offset);
    EXPECT_EQ(problem.line, c.problem.line);
    EXPECT_EQ(problem.length, c.problem.length);
    EXPECT_EQ(problem.code_point, c.problem.code_point);
    EXPECT_EQ(problem.malformed, c.problem.malformed);
    EXPECT_EQ(problem.byte_count, c.problem.byte_count);
    EXPECT_TRUE(std::ranges::equal(problem.bytes, c.problem.bytes));
    encconv_free(output);

    encconv_status status = ENCCONV_MISUSE;
    encconv_stream* const stream = encconv_open(c.from, c.to, c.treatment, &status);
    const bool canBegin = c.status == ENCCONV_OK || c.status == ENCCONV_STOPPED;
    EXPECT_EQ(stream != nullptr, canBegin);
    EXPECT_EQ(status, canBegin ? ENCCONV_OK : c.status);
    encconv_close(stream);
  }
}

// What is null is an error or nothing, never a crash.
TEST(Interface, TakesNullFromC) {
  unsigned char* output = nullptr;
  std::size_t size = 1;
  encconv_problem problem;
  EXPECT_EQ(encconv_convert(1252, 1251, nullptr, 1, "hex", &output, &size, nullptr),
            ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, "hex", nullptr, &size, nullptr), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, "hex", &output, nullptr, nullptr), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, nullptr, &output, &size, nullptr), ENCCONV_OK);
  encconv_free(output);
  EXPECT_EQ(encconv_find_code_page(nullptr), 0);
  EXPECT_EQ(encconv_code_page_at(0, nullptr), 0);
  EXPECT_EQ(encconv_push(nullptr, "a", 1), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_finish(nullptr), ENCCONV_MISUSE);
  EXPECT_NE(encconv_output(nullptr, &size), nullptr);
  EXPECT_EQ(size, 0u);
  encconv_clear_output(nullptr);
  EXPECT_EQ(encconv_problem_count(nullptr), 0u);
  EXPECT_EQ(encconv_first_problem(nullptr, &problem), 0);
  encconv_close(nullptr);
  encconv_free(nullptr);

  encconv_stream* const stream = encconv_open(65001, 1251, "drop", nullptr);
  EXPECT_EQ(encconv_push(stream, nullptr, 1), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_push(stream, nullptr, 0), ENCCONV_OK);
  EXPECT_EQ(encconv_push(stream, "\xFF", 1), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  EXPECT_EQ(encconv_problem_count(stream), 1u);
  EXPECT_NE(encconv_output(stream, nullptr), nullptr);
  EXPECT_EQ(encconv_first_problem(stream, nullptr), 0);
  encconv_close(stream);
}

TEST(Interface, StreamsForC) {
  encconv_problem problem;
  std::size_t size = 1;
  encconv_stream* const stream = encconv_open(65001, 50220, "drop", nullptr);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(encconv_first_problem(stream, &problem), 0);
  EXPECT_EQ(encconv_push(stream, "\xE6\x97", 2), ENCCONV_OK);
  EXPECT_NE(encconv_output(stream, &size), nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(encconv_push(stream, "\xA5\xFF", 2), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  const unsigned char* bytes = encconv_output(stream, &size);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), size), "\x1B$BF|\x1B(B");
  encconv_clear_output(stream);
  encconv_output(stream, &size);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(encconv_problem_count(stream), 1u);
  EXPECT_EQ(encconv_first_problem(stream, &problem), 1);
  EXPECT_EQ(problem.offset, 3u);
  EXPECT_EQ(encconv_push(stream, "a", 1), ENCCONV_MISUSE);
  encconv_close(stream);
}

TEST(Interface, DescribesEachStatusInOtherWords) {
  std::set<std::string_view> cTexts, texts;
  for (int i = ENCCONV_OK; i <= ENCCONV_MISUSE; ++i) {
    EXPECT_TRUE(cTexts.insert(encconv_describe(static_cast<encconv_status>(i))).second) << i;
  }
  for (int i = 0; i <= static_cast<int>(Status::misuse); ++i) {
    EXPECT_TRUE(texts.insert(encconv::describe(static_cast<Status>(i))).second) << i;
  }
  for (const std::string_view text : texts) EXPECT_TRUE(cTexts.contains(text)) << text;
}
