// Tests of the C++ interface: what it adds to the stream beneath it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"

using namespace std::string_literals;
using encconv::OnError;
using encconv::Options;
using encconv::Status;

constexpr int kHz = 1052936;

TEST(Interface, ConvertsWholeTexts) {
  const encconv::Result text = encconv::convert("\x93\xFA\x96\x7B", "sjis", "utf-8");
  EXPECT_TRUE(text);
  EXPECT_EQ(text.text, "\xE6\x97\xA5\xE6\x9C\xAC");
  EXPECT_FALSE(text.first_problem);

  Options hex;
  hex.on_error = OnError::hex;
  const encconv::Result treated = encconv::from_utf8("a\n\xD0\x96\xFF", 1252, hex);
  EXPECT_TRUE(treated);
  EXPECT_EQ(treated.text, "a\n&#x0416;<0xFF>");
  EXPECT_EQ(treated.problem_count, 2u);
  ASSERT_TRUE(treated.first_problem);
  EXPECT_EQ(treated.first_problem->offset, 2u);
  EXPECT_EQ(treated.first_problem->line, 2u);
  EXPECT_EQ(treated.first_problem->length, 2u);
  EXPECT_EQ(treated.first_problem->code_point, 0x416);
  EXPECT_FALSE(treated.first_problem->malformed);
  EXPECT_EQ(treated.first_problem->bytes, "\xD0\x96");

  Options fit;
  ASSERT_TRUE(encconv::parse_on_error("best-fit,drop", fit));
  const encconv::Result fitted = encconv::from_utf8("x\u00A0\u0105\u4E00", 932, fit);
  EXPECT_EQ(fitted.text, "x \x88\xEA");
  EXPECT_EQ(fitted.problem_count, 1u);
  EXPECT_EQ(fitted.approximation_count, 1u);
  ASSERT_TRUE(fitted.first_approximation);
  EXPECT_TRUE(fitted.first_approximation->approximated);
  EXPECT_EQ(fitted.first_approximation->offset, 1u);
  EXPECT_EQ(fitted.first_approximation->written, " ");
  EXPECT_FALSE(fitted.first_problem->approximated);

  const encconv::Result stopped = encconv::from_utf8("ab\xD0\x96\x63", 1252);
  EXPECT_FALSE(stopped);
  EXPECT_EQ(stopped.status, Status::stopped);
  EXPECT_EQ(stopped.text, "ab");

  // More than fits into one buffer of the stream.
  const std::string large(3000000, '\xE9');
  EXPECT_EQ(encconv::to_utf8(large, 1252).text.size(), 6000000u);
  EXPECT_EQ(encconv::convert(large, 1252, 1252).text, large);
}

TEST(Interface, TakesAndGivesUtf16) {
  const encconv::Utf16Result units = encconv::to_utf16("\xF0\x9F\x98\x80\x61", "utf-8");
  EXPECT_EQ(units.text, u"\xD83D\xDE00\x61");
  EXPECT_EQ(encconv::from_utf16(units.text, "utf-8").text, "\xF0\x9F\x98\x80\x61");
  // No unit of the text is a byte order mark.
  EXPECT_EQ(encconv::from_utf16(u"\xFFFE\x61", "utf-8").text, "\xEF\xBF\xBE\x61");
  EXPECT_EQ(encconv::from_utf16(u"\xFEFF\x61", "utf-8").text, "\xEF\xBB\xBF\x61");
  EXPECT_EQ(encconv::from_utf16(u"\xFFFE\x61", 1200).text, "\xFE\xFF\x61\0"s);
  EXPECT_EQ(encconv::from_utf16(u"", 1252).text, "");
  EXPECT_EQ(encconv::to_utf16("\xFF\xFE\x61\0"s, 1200).text, u"a");
  EXPECT_EQ(encconv::to_utf16("\xFE\xFF\0a"s, 1200).text, u"a");
  EXPECT_EQ(encconv::to_utf8("\xEF\xBB\xBF\x61", 65001).text, "a");

  const encconv::Result stopped = encconv::from_utf16(u"ab\x65E5\x63", 1252);
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
  Options misspelt = alternate, named = alternate;
  misspelt.alternate = "windows-125";
  named.alternate = "windows-1251";
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
               {28602, 1252, {}, Status::unknown_source},
               {28602, 28602, {}, Status::unknown_source},
               {1252, 28602, {}, Status::unknown_target},
               {65001, 1252, substitute, Status::invalid_substitute},
               {65001, 1251, substitute, Status::ok},
               {65001, 1252, alternate, Status::unknown_alternate},
               {65001, 1252, misspelt, Status::unknown_alternate},
               {65001, 1252, named, Status::ok}};
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
  EXPECT_EQ(options.alternate.code_page(), 1251);
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
      {"%PDF-1.7\xE9", 1252, "utf-8", Options(), "%PDF-1.7\xC3\xA9"},
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

// A stream that begins again has forgotten everything but its handler.
TEST(Interface, BeginsStreamsAgain) {
  encconv::StreamConverter stream("utf-8", 50220);
  std::vector<std::uint64_t> offsets;
  stream.on_problem([&](const encconv::Problem& problem) { offsets.push_back(problem.offset); });
  std::string output;
  EXPECT_TRUE(stream.push("\xE6\x97\xA5\xE6", output));
  Options drop;
  drop.on_error = OnError::drop;
  EXPECT_TRUE(stream.begin(932, "utf-8", drop));
  output.clear();
  EXPECT_TRUE(stream.push("\x93\xFA\x85\x40", output));
  EXPECT_TRUE(stream.finish(output));
  EXPECT_EQ(output, "\xE6\x97\xA5@");
  EXPECT_EQ(stream.problem_count(), 1u);
  EXPECT_EQ(offsets, std::vector<std::uint64_t>{2});

  // A beginning that is refused leaves nothing to go on with.
  EXPECT_TRUE(stream.begin(932, "utf-8"));
  EXPECT_FALSE(stream.begin(932, 4711));
  EXPECT_EQ(stream.status(), Status::unknown_target);
  EXPECT_FALSE(stream.push("a", output));
  EXPECT_EQ(stream.status(), Status::unknown_target);
  stream.on_problem(nullptr);
  EXPECT_TRUE(stream.begin("utf-8", 1252, drop));
  EXPECT_TRUE(stream.push("\xFF", output));
  EXPECT_TRUE(stream.finish(output));
  EXPECT_EQ(stream.problem_count(), 1u);
  EXPECT_EQ(offsets.size(), 1u);
}

// A byte of some encodings is a pair of surrogates, or two characters; seven may be eight.
TEST(Interface, BoundsTheOutputOfEncodingsThatCompress) {
  std::string emoji;
  for (int i = 0; i < 100; ++i) emoji += "\xF0\x9F\x98\x80";
  const std::pair<encconv::Encoding, std::string> cases[] = {
      {1212, encconv::convert(emoji, 65001, 1212).text},
      {1214, encconv::convert(emoji, 65001, 1214).text},
      {200453, std::string(100, '\xE2')},
      {"gsm-packed", encconv::convert(std::string(800, 'a'), 65001, "gsm-packed").text}};
  for (const auto& [from, bytes] : cases) {
    for (const encconv::Encoding to : {65001, 1200, 12000, 54936}) {
      const std::string text = encconv::convert(bytes, from, to).text;
      EXPECT_GT(text.size(), bytes.size());
      EXPECT_LE(text.size(), encconv::max_output_size(bytes.size(), from, to));
    }
  }
}

// Whatever the capacity: the output or a beginning of it, and not a byte behind.
TEST(Interface, ConvertsIntoRoomOfAnySize) {
  std::string text;
  for (int i = 0; i < 700; ++i) text += i % 7 == 0 ? "\xE6\x97\xA5" : "abc\xC3\xA9";
  const encconv::Encoding pairs[][2] = {
      {65001, 1200}, {65001, 12000}, {65001, 932}, {65001, 50220}, {65001, 65001}};
  Options options;
  options.on_error = OnError::substitute;
  encconv_options substitute = ENCCONV_OPTIONS_INIT;
  substitute.on_error = "substitute";
  for (const auto& [from, to] : pairs) {
    for (const unsigned int length : {0u, 1u, 20u, 3000u}) {
      const std::string_view input = std::string_view(text).substr(0, length);
      const std::string whole = encconv::convert(input, from, to, options).text;
      ASSERT_LE(whole.size(), encconv::max_output_size(length, from, to));
      std::vector<std::size_t> capacities = {0,
                                             1,
                                             whole.size() / 2,
                                             whole.size() - 1,
                                             whole.size(),
                                             whole.size() + 1,
                                             whole.size() + 5000};
      if (whole.empty()) capacities = {0, 1};
      for (const std::size_t capacity : capacities) {
        std::string room(capacity + 8, '#');
        const encconv::IntoResult into =
            encconv::convert_into(input, from, to, room.data(), capacity, options);
        EXPECT_EQ(into.status, capacity < whole.size() ? Status::output_full : Status::ok);
        ASSERT_LE(into.size, capacity);
        EXPECT_EQ(into.size == whole.size(), capacity >= whole.size());
        EXPECT_EQ(room.substr(0, into.size), whole.substr(0, into.size));
        EXPECT_EQ(room.substr(capacity), "########");

        std::string again(capacity + 8, '#');
        std::size_t size = 0;
        const encconv_status status =
            encconv_convert_into(from.code_page(), to.code_page(), input.data(), input.size(),
                                 &substitute, again.data(), capacity, &size, nullptr);
        EXPECT_EQ(status == ENCCONV_OK, into.status == Status::ok);
        EXPECT_EQ(status == ENCCONV_OUTPUT_FULL, into.status == Status::output_full);
        EXPECT_EQ(again.substr(0, size), room.substr(0, into.size));
        EXPECT_EQ(again.substr(capacity), "########");
      }
    }
  }
  EXPECT_EQ(encconv_max_output_size(20, 65001, 12000), encconv::max_output_size(20, 65001, 12000));
  EXPECT_EQ(encconv::max_output_size(20, 65001, 4711), 0u);
}

// One piece of any size is as good as many: the offsets and lines of what is wrong count from the
// beginning of the text, and shifts hold on.
TEST(Interface, StreamsPiecesOfMegabytes) {
  const std::string nihon = "\xE6\x97\xA5\xE6\x9C\xAC", ga = "\xEA\xB0\x80";
  const std::string emoji = "\xF0\x9F\x98\x80", half = "\xD8\x3D";
  const struct {
    int from, to;
    std::string line, bad, out;  // the line, with what is bad in it, is repeated, and out written
    std::string start = {}, startOut = {}, endOut = {};
  } cases[] = {
      {.from = 65001, .to = 65001, .line = nihon + "\xFF.\n", .bad = "\xFF", .out = nihon + ".\n"},
      {.from = 65001,
       .to = 50220,
       .line = nihon + "\xFF\n",
       .bad = "\xFF",
       .out = "\x1B$BF|K\\\x1B(B\n"},
      {.from = 65001, .to = kHz, .line = nihon + emoji + "\n", .bad = emoji, .out = "~{HU1>~}\n"},
      {.from = 50220,
       .to = 1252,
       .line = "F|\x1B(B\n\x1B$B",
       .bad = "F|",
       .out = "\n",
       .start = "\x1B$B"},
      {.from = 1201, .to = 20866, .line = half + "\x04\x1F\0\n"s, .bad = half, .out = "\xF0\n"},
      // Without line ends, so that the shift stands until the end.
      {.from = 65001,
       .to = 50225,
       .line = ga + emoji,
       .bad = emoji,
       .out = "0!",
       .startOut = "\x1B$)C\x0E",
       .endOut = "\x0F"},
      {.from = 65001,
       .to = 65000,
       .line = nihon + "\xFF" + nihon.substr(0, 3),
       .bad = "\xFF",
       .out = "ZeVnLGXl",
       .startOut = "+",
       .endOut = "-"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to));
    const std::size_t lines = (5u << 18) / c.line.size();
    const bool hasLineEnds = c.out.ends_with('\n');
    std::string input = c.start, expected = c.startOut;
    for (std::size_t i = 0; i < lines; ++i) input += c.line, expected += c.out;
    expected += c.endOut;
    for (const std::size_t size : {input.size(), std::size_t{777}}) {
      Options drop;
      drop.on_error = OnError::drop;
      encconv::StreamConverter stream(c.from, c.to, drop);
      std::size_t seen = 0, wrong = 0;
      stream.on_problem([&](const encconv::Problem& problem) {
        const std::size_t offset = c.start.size() + seen * c.line.size() + c.line.find(c.bad);
        const std::uint64_t line = hasLineEnds ? seen + 1 : 1;
        const bool isRight = problem.offset == offset && problem.line == line &&
                             problem.length == c.bad.size() &&
                             problem.bytes == input.substr(offset, c.bad.size());
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
    encconv_code_page page = ENCCONV_CODE_PAGE_INIT;
    ASSERT_EQ(encconv_code_page_at(i, &page), 1);
    EXPECT_EQ(page.number, pages[i].number);
    EXPECT_EQ(page.name, pages[i].name);
    EXPECT_EQ(page.kind, pages[i].kind);
    EXPECT_EQ(page.description, pages[i].description);
    EXPECT_EQ(page.can_read != 0, pages[i].can_read);
    EXPECT_EQ(page.can_write != 0, pages[i].can_write);
    EXPECT_LT(i == 0 ? 0 : pages[i - 1].number, pages[i].number);
    EXPECT_EQ(encconv::find_code_page(pages[i].name), pages[i].number);
    std::string aliases;
    for (const std::string_view alias : pages[i].aliases) {
      EXPECT_EQ(encconv_find_code_page(std::string(alias).c_str()), pages[i].number) << alias;
      aliases.append(aliases.empty() ? "" : " ").append(alias);
    }
    EXPECT_EQ(page.aliases, aliases);
    const bool canRead = encconv::to_utf8("", pages[i].number).status == Status::ok;
    const bool canWrite = encconv::from_utf8("", pages[i].number).status == Status::ok;
    EXPECT_EQ(canRead, pages[i].can_read) << pages[i].number;
    EXPECT_EQ(canWrite, pages[i].can_write) << pages[i].number;
  }
  encconv_code_page page = ENCCONV_CODE_PAGE_INIT;
  EXPECT_EQ(encconv_code_page_at(pages.size(), &page), 0);
  EXPECT_EQ(encconv::find_code_page("nothing"), std::nullopt);
}
