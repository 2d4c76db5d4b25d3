// Tests of the C interface: that it serves what the C++ interface does, and takes anything from C.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <set>
#include <string>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"

using namespace std::string_literals;
using encconv::Status;

encconv_options optionsOf(const char* onError, bool mark = false) {
  encconv_options options = ENCCONV_OPTIONS_INIT;
  options.on_error = onError;
  options.byte_order_mark = mark ? 1 : 0;
  return options;
}

// "3+3, line 2, U+65E5: E6 97 A5"; nothing when there is no problem.
std::string describe(const encconv_problem& problem) {
  if (problem.length == 0) return "";
  char text[64];
  std::snprintf(text, sizeof text, "%u+%u, line %u, ", static_cast<unsigned>(problem.offset),
                problem.length, static_cast<unsigned>(problem.line));
  std::string all = text;
  std::snprintf(text, sizeof text, "U+%04X:", static_cast<unsigned>(problem.code_point));
  all += problem.malformed == 0 ? text : "malformed:";
  EXPECT_EQ(problem.code_point == -1, problem.malformed == 1);
  for (unsigned i = 0; i < problem.byte_count; ++i) {
    std::snprintf(text, sizeof text, " %02X", problem.bytes[i]);
    all += text;
  }
  EXPECT_EQ(problem.approximated == 1, problem.written[0] != 0);
  if (problem.approximated != 0) all += std::string(" as ") + problem.written;
  return all;
}

TEST(Interface, ServesC) {
  const std::string large(3u << 20, '\xE9');  // more than one block of output
  const struct {
    int from, to;
    std::string input;
    const char* onError = nullptr;
    encconv_status status = ENCCONV_OK;
    std::string output = "";
    std::string problem = "";
    bool mark = false;
  } cases[] = {
      {.from = 65001,
       .to = 1251,
       .input = "\n\xD0\x96\xE6\x97\xA5",
       .onError = "hex",
       .output = "\n\xC6&#x65E5;",
       .problem = "3+3, line 2, U+65E5: E6 97 A5"},
      {.from = 65001,
       .to = 1251,
       .input = "a\xFF",
       .status = ENCCONV_STOPPED,
       .output = "a",
       .problem = "1+1, line 1, malformed: FF"},
      {.from = 1252, .to = 1252, .input = large, .output = large},
      {.from = 65001, .to = 1251, .input = ""},
      {.from = 65001, .to = 1200, .input = "a", .output = "\xFF\xFE\x61\0"s, .mark = true},
      {.from = 65001, .to = 2, .input = "a", .status = ENCCONV_UNKNOWN_TARGET},
      {.from = 0, .to = 1251, .input = "a", .status = ENCCONV_UNKNOWN_SOURCE},
      {.from = 28602, .to = 28602, .input = "a", .status = ENCCONV_UNKNOWN_SOURCE},
      {.from = 65001,
       .to = 1251,
       .input = "a",
       .onError = "never",
       .status = ENCCONV_INVALID_ON_ERROR},
      {.from = 65001,
       .to = 1252,
       .input = "a",
       .onError = "substitute=\xD0\x96",
       .status = ENCCONV_INVALID_SUBSTITUTE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to) + ": " +
                 (c.input == large ? "much" : c.input));
    unsigned char* output = nullptr;
    std::size_t size = 1;
    encconv_problem problem = ENCCONV_PROBLEM_INIT;
    problem.length = 7;
    encconv_result result = ENCCONV_RESULT_INIT;
    result.first_problem = &problem;
    const encconv_options options = optionsOf(c.onError, c.mark);
    EXPECT_EQ(encconv_convert(c.from, c.to, c.input.empty() ? nullptr : c.input.data(),
                              c.input.size(), &options, &output, &size, &result),
              c.status);
    EXPECT_EQ(result.problem_count, c.problem.empty() ? 0u : 1u);
    EXPECT_TRUE(std::string_view(reinterpret_cast<char*>(output), size) == c.output);
    EXPECT_EQ(output == nullptr, c.output.empty());
    EXPECT_EQ(describe(problem), c.problem);
    encconv_free(output);

    encconv_status status = ENCCONV_MISUSE;
    encconv_stream* const stream = encconv_open(c.from, c.to, &options, &status);
    const bool canBegin = c.status == ENCCONV_OK || c.status == ENCCONV_STOPPED;
    EXPECT_EQ(stream != nullptr, canBegin);
    EXPECT_EQ(status, canBegin ? ENCCONV_OK : c.status);
    encconv_close(stream);
  }
}

TEST(Interface, CountsApproximationsForC) {
  const encconv_options fit = optionsOf("compose,best-fit");
  encconv_problem problem = ENCCONV_PROBLEM_INIT;
  encconv_result result = ENCCONV_RESULT_INIT;
  result.first_approximation = &problem;
  char output[16];
  std::size_t size = 0;
  EXPECT_EQ(encconv_convert_into(65001, 932, "a\u00A0\u301C", 6, &fit, output, sizeof output, &size,
                                 &result),
            ENCCONV_OK);
  EXPECT_EQ(std::string(output, size), "a \x81\x60");
  EXPECT_EQ(result.approximation_count, 2u);
  EXPECT_EQ(describe(problem), "1+2, line 1, U+00A0: C2 A0 as  ");

  const encconv_options drop = optionsOf("drop");
  encconv_stream* const stream = encconv_open(65001, 932, &drop, nullptr);
  EXPECT_EQ(encconv_first_approximation(stream, &problem), 0);
  EXPECT_EQ(encconv_push(stream, "\xC2\xA5\xC2\xA0", 4), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  EXPECT_EQ(encconv_problem_count(stream), 0u);
  EXPECT_EQ(encconv_approximation_count(stream), 2u);
  ASSERT_EQ(encconv_first_approximation(stream, &problem), 1);
  EXPECT_EQ(describe(problem), "0+2, line 1, U+00A5: C2 A5 as \\");
  encconv_close(stream);
}

// What is null is an error or nothing, never a crash.
TEST(Interface, TakesNullFromC) {
  unsigned char* output = nullptr;
  std::size_t size = 1;
  encconv_problem problem = ENCCONV_PROBLEM_INIT;
  EXPECT_EQ(encconv_convert(1252, 1251, nullptr, 1, nullptr, &output, &size, nullptr),
            ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, nullptr, nullptr, &size, nullptr), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, nullptr, &output, nullptr, nullptr),
            ENCCONV_MISUSE);
  EXPECT_EQ(encconv_convert(1252, 1251, "a", 1, nullptr, &output, &size, nullptr), ENCCONV_OK);
  encconv_free(output);
  EXPECT_EQ(encconv_find_code_page(nullptr), 0);
  EXPECT_EQ(encconv_code_page_at(0, nullptr), 0);
  EXPECT_EQ(encconv_push(nullptr, "a", 1), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_finish(nullptr), ENCCONV_MISUSE);
  EXPECT_NE(encconv_output(nullptr, &size), nullptr);
  EXPECT_EQ(size, 0u);
  encconv_clear_output(nullptr);
  encconv_on_problem(nullptr, nullptr, nullptr);
  EXPECT_EQ(encconv_problem_count(nullptr), 0u);
  EXPECT_EQ(encconv_first_problem(nullptr, &problem), 0);
  encconv_close(nullptr);
  encconv_free(nullptr);

  const encconv_options drop = optionsOf("drop");
  encconv_stream* const stream = encconv_open(65001, 1251, &drop, nullptr);
  EXPECT_EQ(encconv_push(stream, nullptr, 1), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_push(stream, nullptr, 0), ENCCONV_OK);
  EXPECT_EQ(encconv_push(stream, "\xFF", 1), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  EXPECT_EQ(encconv_problem_count(stream), 1u);
  EXPECT_NE(encconv_output(stream, nullptr), nullptr);
  EXPECT_EQ(encconv_first_problem(stream, nullptr), 0);
  encconv_close(stream);
}

// A structure as a program has it that was built against headers with more or fewer members.
template <typename Struct>
struct Grown {
  explicit Grown(std::size_t size) {
    std::memset(this, 0, sizeof *this);
    known.struct_size = size;
  }
  Struct known;
  unsigned char more[8];
};

TEST(Interface, TakesStructuresOfOtherSizesFromC) {
  unsigned char* output = nullptr;
  std::size_t size = 0;
  const auto convertsWith = [&](const encconv_options* options, encconv_result* result) {
    const encconv_status status =
        encconv_convert(65001, 1252, "a\xFF", 2, options, &output, &size, result);
    if (status != ENCCONV_MISUSE) encconv_free(output);
    return status;
  };
  Grown<encconv_options> options(sizeof options);
  options.known.on_error = "drop";
  EXPECT_EQ(convertsWith(&options.known, nullptr), ENCCONV_OK);
  options.more[7] = 1;  // asks for what nobody knows of
  EXPECT_EQ(convertsWith(&options.known, nullptr), ENCCONV_MISUSE);
  EXPECT_EQ(encconv_open(65001, 1252, &options.known, nullptr), nullptr);
  options.known.struct_size = 0;  // was forgotten
  EXPECT_EQ(convertsWith(&options.known, nullptr), ENCCONV_MISUSE);

  Grown<encconv_problem> problem(sizeof problem);
  Grown<encconv_result> result(sizeof result);
  result.known.first_problem = &problem.known;
  EXPECT_EQ(convertsWith(nullptr, &result.known), ENCCONV_STOPPED);
  EXPECT_EQ(problem.known.offset, 1u);
  EXPECT_EQ(problem.known.struct_size, sizeof problem);
  EXPECT_EQ(result.known.problem_count, 1u);
  EXPECT_EQ(result.known.struct_size, sizeof result);
  problem.known.struct_size = sizeof(std::size_t);
  EXPECT_EQ(convertsWith(nullptr, &result.known), ENCCONV_MISUSE);
  result.known.struct_size = 0;
  EXPECT_EQ(convertsWith(nullptr, &result.known), ENCCONV_MISUSE);

  Grown<encconv_code_page> page(sizeof page);
  EXPECT_EQ(encconv_code_page_at(0, &page.known), 1);
  EXPECT_EQ(page.known.number, 37);
  page.known.struct_size = 0;
  EXPECT_EQ(encconv_code_page_at(0, &page.known), 0);
}

TEST(Interface, StreamsForC) {
  encconv_problem problem = ENCCONV_PROBLEM_INIT;
  std::size_t size = 1;
  const encconv_options drop = optionsOf("drop"), nonsense = optionsOf("nonsense");
  encconv_stream* const stream = encconv_open(65001, 50220, &drop, nullptr);
  ASSERT_NE(stream, nullptr);
  std::string told;
  encconv_on_problem(
      stream,
      [](const encconv_problem* each, void* all) {
        *static_cast<std::string*>(all) += describe(*each) + "; ";
      },
      &told);
  EXPECT_EQ(encconv_first_problem(stream, &problem), 0);
  EXPECT_EQ(encconv_push(stream, "\xE6\x97", 2), ENCCONV_OK);
  EXPECT_NE(encconv_output(stream, &size), nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(encconv_push(stream, "\xA5\xFF\n\xFE.", 5), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  const unsigned char* bytes = encconv_output(stream, &size);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), size), "\x1B$BF|\x1B(B\n.");
  encconv_clear_output(stream);
  encconv_output(stream, &size);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(encconv_problem_count(stream), 2u);
  EXPECT_EQ(encconv_first_problem(stream, &problem), 1);
  EXPECT_EQ(problem.offset, 3u);
  EXPECT_EQ(told, "3+1, line 1, malformed: FF; 5+1, line 2, malformed: FE; ");
  EXPECT_EQ(encconv_push(stream, "a", 1), ENCCONV_MISUSE);

  // The handler stays until another one comes.
  told.clear();
  EXPECT_EQ(encconv_begin(stream, 932, 65001, nullptr), ENCCONV_OK);
  EXPECT_EQ(encconv_push(stream, "\x93\xFA\x85\x40", 4), ENCCONV_STOPPED);
  EXPECT_EQ(told, "2+1, line 1, malformed: 85; ");
  bytes = encconv_output(stream, &size);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), size), "\xE6\x97\xA5");
  EXPECT_EQ(encconv_begin(stream, 932, 65001, &nonsense), ENCCONV_INVALID_ON_ERROR);
  EXPECT_EQ(encconv_push(stream, "a", 1), ENCCONV_INVALID_ON_ERROR);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_INVALID_ON_ERROR);
  encconv_output(stream, &size);
  EXPECT_EQ(size, 0u);
  encconv_on_problem(stream, nullptr, nullptr);
  told.clear();
  EXPECT_EQ(encconv_begin(stream, 65001, 1252, &drop), ENCCONV_OK);
  EXPECT_EQ(encconv_push(stream, "\xFF", 1), ENCCONV_OK);
  EXPECT_EQ(encconv_finish(stream), ENCCONV_OK);
  EXPECT_EQ(encconv_problem_count(stream), 1u);
  EXPECT_EQ(told, "");
  EXPECT_EQ(encconv_begin(nullptr, 932, 65001, nullptr), ENCCONV_MISUSE);
  encconv_close(stream);
}

TEST(Interface, DescribesEachStatusInOtherWords) {
  std::set<std::string_view> cTexts, texts;
  for (int i = ENCCONV_OK; i <= ENCCONV_OUTPUT_FULL; ++i) {
    EXPECT_TRUE(cTexts.insert(encconv_describe(static_cast<encconv_status>(i))).second) << i;
  }
  for (int i = 0; i <= static_cast<int>(Status::output_full); ++i) {
    EXPECT_TRUE(texts.insert(encconv::describe(static_cast<Status>(i))).second) << i;
  }
  for (const std::string_view text : texts) EXPECT_TRUE(cTexts.contains(text)) << text;
}
