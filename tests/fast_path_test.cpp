// Clean text by plan and pump gives what the reference converters give: output, result, flags and
// reports.
#include "encoding/clean_conversion.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "encoding/kernels/cpu_dispatch.h"
#include "tests/test_support.h"

namespace {

class Recorder : public ConversionObserver {
 public:
  void onUnconvertible(const UnconvertibleInput& piece) override {
    reports.push_back((std::uint64_t{piece.offset} << 8) + piece.length * 2u +
                      (piece.step == ConversionStep::kEncode ? 1u : 0u));
  }
  std::vector<std::uint64_t> reports;
};

struct Everything {
  ConversionResult outcome;
  bool pivotToUtf16, pivotFromUtf16;
  std::int32_t from, to;  // as the converter recorded them
  std::vector<std::uint64_t> reports;
  bool operator==(const Everything&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Everything& e) {
  return stream << (e.outcome.ok ? "true " : "false ") << e.outcome.foundErrors << e.pivotToUtf16
                << e.pivotFromUtf16 << " " << e.from << " to " << e.to << " " << e.reports.size()
                << " reports, " << e.outcome.out.size() << " bytes";
}

struct Settings {
  int action;
  int alternate;
  std::string defBytes;
  bool observed;
};

Everything run(bool fastPath, int from, int to, const std::string& input,
               const Settings& settings) {
  fast::setFastPathForTesting(fastPath);
  EncodingConvert converter;
  // What an earlier call, that failed, may have left.
  converter.m_pivotToUtf16 = converter.m_pivotFromUtf16 = converter.m_foundErrors = true;
  converter.m_fromCodePage = converter.m_toCodePage = 1;
  Recorder recorder;
  if (settings.observed) converter.m_observer = &recorder;
  converter.setErrorAction(settings.action);
  converter.setAltDestCodepage(settings.alternate);
  converter.setDefBytes(bytesOf(settings.defBytes), static_cast<int>(settings.defBytes.size()));
  const ConversionResult outcome = convert(converter, from, to, input);
  fast::setFastPathForTesting(true);
  return {outcome,
          converter.m_pivotToUtf16,
          converter.m_pivotFromUtf16,
          converter.m_fromCodePage,
          converter.m_toCodePage,
          recorder.reports};
}

// UTF-8 in several scripts, with a bad or special piece every so often.
std::string sampleUtf8(std::mt19937& random, std::size_t size, unsigned int badEvery) {
  static const char* const kWords[] = {"plain words, ",
                                       "d\xC3\xA9j\xC3\xA0 vu ",
                                       "\xD0\xBF\xD1\x80\xD0\xB8 ",
                                       "\xE6\x97\xA5\xE6\x9C\xAC",
                                       "\xEA\xB0\x80 ",
                                       "\xF0\x9F\x98\x80",
                                       "<b>markup</b>\r\n",
                                       "\xD9\xA1\xDB\xB2",
                                       "\xE1\xBB\x87\xC4\xA8"};
  static const char* const kSpecial[] = {"\xFF",         "\xE4\xB8",         "\xC0\x80",
                                         "\xED\xA0\x80", "\xEE\xBF\xBD",     "\xEF\xB7\xAF",
                                         "\xF0\x9F",     "\xED\xB0\x80\x41", "\x01"};
  std::string text;
  while (text.size() < size) {
    if (badEvery != 0 && random() % badEvery == 0) text += kSpecial[random() % 9];
    if (badEvery != 0 && random() % badEvery == 0) text.push_back('\0');
    text += kWords[random() % 9];
  }
  return text;
}

// Text that the code page can hold, with bytes that it may not know.
std::string sampleFor(int from, std::mt19937& random, std::size_t size, unsigned int badEvery) {
  std::string text = sampleUtf8(random, size, badEvery);
  if (from != 65001) text = convert(65001, from, text).out;
  for (std::size_t i = 0; badEvery != 0 && i < text.size(); i += 1 + random() % (20u * badEvery)) {
    text[i] = static_cast<char>(random());
  }
  return text;
}

Settings randomSettings(std::mt19937& random) {
  static const char* const kDefBytes[] = {
      "", "?", "??", "ab?", "\xFD\xEF\x01", "\xD8\x41\x42", "1234567"};
  static constexpr int kActions[] = {0, 1, 1, 1, 2, 3, 6, 7, 8, 9};
  static constexpr int kAlternates[] = {0, 65001, 1252, 1200, 932};
  return {kActions[random() % 10], kAlternates[random() % 5], kDefBytes[random() % 7],
          random() % 4 == 0};
}

std::vector<int> fastCodePages() {
  std::vector<int> pages = {1200,  1201,  12000, 12001, 65005, 65001,
                            65000, 55000, 50220, 50221, 50225};
  for (const EncodingRow& row : encodingRows()) {
    if (hasTable(row) && row.inEngine) pages.push_back(row.number);
  }
  return pages;
}

TEST(FastPathTest, EqualsTheReference) {
  std::mt19937 random(42);
  const std::vector<int> pages = fastCodePages();
  for (const int from : pages) {
    for (const int to : pages) {
      const std::size_t size = random() % 16 == 0 ? 20000 : random() % 300;
      const auto badEvery = static_cast<unsigned int>(random() % 3 == 0 ? 0 : 1 + random() % 200);
      std::string input = sampleFor(from, random, size, badEvery);
      // Some end in the middle of a unit, a few behind whole units that are clean.
      if (random() % 4 == 0) input.resize(input.size() - std::min<std::size_t>(input.size(), 1));
      const Settings settings = randomSettings(random);
      ASSERT_EQ(run(true, from, to, input, settings), run(false, from, to, input, settings))
          << from << " to " << to << " action " << settings.action << " with "
          << hex(settings.defBytes) << (settings.observed ? " observed" : "") << ", "
          << input.size() << " bytes: " << hex(input.substr(0, 300));
    }
  }
}

// A few pairs of each kind at every length around the sizes of blocks and vectors, with each form
// of the kernels.
TEST(FastPathTest, EqualsTheReferenceAtEveryLength) {
  const int pairs[][2] = {
      {65001, 1200}, {1200, 65001},  {1252, 65001}, {37, 65001},    {1251, 20866}, {932, 65001},
      {65001, 932},  {936, 1200},    {1200, 949},   {65001, 1258},  {950, 1256},   {1256, 65001},
      {65001, 37},   {10001, 51932}, {65000, 1251}, {65000, 65001}, {65001, 65000}};
  std::mt19937 random(1);
  for (const fast::Kernels* const form : fast::runnableKernels()) {
    ASSERT_TRUE(fast::setKernelsForTesting(form->name));
    for (const auto& pair : pairs) {
      for (const unsigned int badEvery : {0u, 30u}) {
        const bool isUtf7 = pair[0] == 65000 || pair[1] == 65000;  // has the biggest blocks
        const std::string text = sampleFor(pair[0], random, isUtf7 ? 40000 : 9000, badEvery);
        for (std::size_t length = 0; length < text.size(); length += length < 200 ? 1 : 401) {
          const std::string input = text.substr(text.size() - length);
          const Settings settings{badEvery == 0 ? 0 : 1, 0, "?", false};
          ASSERT_EQ(run(true, pair[0], pair[1], input, settings),
                    run(false, pair[0], pair[1], input, settings))
              << form->name << ": " << pair[0] << " to " << pair[1] << ", " << length << " bytes";
        }
      }
    }
  }
  fast::setKernelsForTesting(nullptr);
}

class ContextLog : public LogBase {
 public:
  explicit ContextLog(bool verbose) {
    m_verboseLogging = verbose ? 1 : 0;
    m_wantsContexts = true;
  }
  void enterContext(const char* name, bool /*verbose*/) override { contexts.append(name) += '('; }
  void leaveContext() override { contexts += ')'; }
  std::string contexts;
};

// A verbose log sees the reference converters at work; a quiet one that wants contexts gets the
// same ones.
TEST(FastPathTest, QuietLogGetsTheContextsOfTheReference) {
  std::mt19937 random(3);
  const std::vector<int> pages = fastCodePages();
  for (const int from : pages) {
    for (const int to : pages) {
      const auto badEvery = static_cast<unsigned int>(random() % 2 == 0 ? 0 : 1 + random() % 50);
      const std::string input = sampleFor(from, random, random() % 600, badEvery);
      const int action = static_cast<int>(random() % 9);
      std::string contexts[2];
      for (const bool verbose : {false, true}) {
        EncodingConvert converter;
        converter.setErrorAction(action);
        converter.setDefBytes(bytesOf("?"), 1);
        ContextLog log(verbose);
        DataBuffer out;
        converter.EncConvert(from, to, bytesOf(input), static_cast<unsigned int>(input.size()), out,
                             log);
        contexts[verbose] = log.contexts;
      }
      ASSERT_EQ(contexts[0], contexts[1])
          << from << " to " << to << " action " << action << ": " << hex(input.substr(0, 300));
    }
  }
}

// So many pieces, so close together, that the reference converters are left to finish.
TEST(FastPathTest, EqualsTheReferenceInGarbage) {
  std::mt19937 random(7);
  std::string garbage(48 * 1024, '\0');
  for (char& byte : garbage) byte = static_cast<char>(random());
  const std::string text = garbage + sampleUtf8(random, 5001, 40);
  for (const int from : {1200, 65001, 1252, 1253, 932, 949, 10001}) {
    for (const int to : {1200, 65001, 1251, 1258, 932, 37}) {
      for (const int action : {0, 1, 3, 4, 5}) {
        const Settings settings{action, 0, action == 1 ? "?" : "", false};
        ASSERT_EQ(run(true, from, to, text, settings), run(false, from, to, text, settings))
            << from << " to " << to << ", action " << action;
      }
    }
  }
}

// What flat tables take for granted about the tables.
TEST(FastPathTest, NoTableMeansTheMarkOfAnEscapeOrASurrogate) {
  for (const EncodingRow& row : encodingRows()) {
    if (!hasTable(row) || !row.inEngine) continue;
    const bool isDoubleByte = row.form == EncodingForm::kDoubleByte;
    std::string all;
    for (int lead = 0x80; lead < 0x100; ++lead) {
      for (int trail = 0x30; trail < 0x100; ++trail) {
        all.push_back(static_cast<char>(isDoubleByte ? lead : trail));
        all.push_back(static_cast<char>(isDoubleByte ? trail : lead));
      }
    }
    const std::string utf16 = convert(row.number, 1200, all).out;
    for (std::size_t i = 0; i + 1 < utf16.size(); i += 2) {
      const unsigned int unit = zvLoadHostUnit(bytesOf(utf16) + i, false);
      ASSERT_NE(unit, 0xFDEFu) << row.number;
      ASSERT_NE(unit & 0xF800, 0xD800u) << row.number;
    }
  }
}

}  // namespace
