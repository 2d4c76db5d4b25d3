// What holds for every pair of code pages, every error action and any bytes.
#include <random>
#include <vector>

#include "tests/test_support.h"

namespace {

std::vector<int> allCodePages() {
  std::vector<int> pages;
  for (const EncodingRow& row : encodingRows()) {
    if (row.inEngine) pages.push_back(row.number);
  }
  return pages;
}

// Counts the pieces that the observer is told of and checks that they lie within the input.
class Counter : public ConversionObserver {
 public:
  void onUnconvertible(const UnconvertibleInput& piece) override {
    ++count;
    if (piece.length == 0 || piece.bytes == nullptr) malformed = true;
  }
  int count = 0;
  bool malformed = false;
};

// Bytes with runs of text in them, so that some of every sample converts.
std::string randomBytes(std::mt19937& random, std::size_t size) {
  std::string bytes;
  while (bytes.size() < size) {
    switch (random() % 4) {
      case 0:
        bytes += "text 012 ";
        break;
      case 1:
        bytes += "\x82\xA0\xB0\xA1\xC3\xA9\xE4\xB8\x80";
        break;
      case 2:
        bytes += "\x1B$B$\"\x1B(B+AOk-\xFD\xEF";
        break;
      default:
        for (int i = 0; i < 6; ++i) bytes.push_back(static_cast<char>(random()));
    }
  }
  bytes.resize(size);
  return bytes;
}

void configure(EncodingConvert& converter, int action, unsigned int settings) {
  static constexpr int kAlternates[] = {0, 65001, 1252, 932, 50220, 1200, 12000, 7};
  static constexpr unsigned char kDefBytes[] = {'?', '!', 0xFD, 0xEF, 0xD8};
  converter.setErrorAction(action);
  converter.setAltDestCodepage(kAlternates[settings % 8]);
  converter.setDefBytes(kDefBytes, static_cast<int>(settings / 8 % 6));
}

TEST(PropertyTest, AnyBytesUnderAnySettings) {
  std::mt19937 random(20260101);
  const std::vector<int> pages = allCodePages();
  for (const int from : pages) {
    for (const int to : pages) {
      for (int action = 0; action < 10; ++action) {
        const std::string input = randomBytes(random, 1 + random() % 64);
        const auto settings = static_cast<unsigned int>(random());
        EncodingConvert first, observed;
        Counter counter;
        observed.m_observer = &counter;
        configure(first, action, settings);
        configure(observed, action, settings);
        const ConversionResult outcome = convert(first, from, to, input);
        const auto where = [&] {
          return std::to_string(from) + " to " + std::to_string(to) + " action " +
                 std::to_string(action) + ": " + hex(input);
        };
        ASSERT_EQ(convert(observed, from, to, input), outcome) << "observed: " << where();
        ASSERT_EQ(convert(first, from, to, input), outcome) << "again: " << where();
        ASSERT_FALSE(counter.malformed) << where();
        if (action != 6 && counter.count != 0) {
          ASSERT_TRUE(outcome.foundErrors) << where();
        }
        if (counter.count == 0) {  // clean input gives the same output under every action
          configure(first, static_cast<int>(random() % 10), settings);
          ASSERT_EQ(convert(first, from, to, input), outcome) << "other action: " << where();
        }
      }
    }
  }
}

// Without a pivot each substitution is one report, and nothing else is.
TEST(PropertyTest, EachSubstitutionIsReportedOnce) {
  std::mt19937 random(7);
  int reports = 0;
  for (const EncodingRow& row : tableRows()) {
    if (!row.inEngine) continue;
    for (const bool decoding : {true, false}) {
      if (decoding && row.form == EncodingForm::kDoubleByte)
        continue;  // action 0 cuts those pieces differently
      const int from = decoding ? row.number : 1200;
      const int to = decoding ? 1200 : row.number;
      const std::string input = randomBytes(random, 200);
      EncodingConvert dropping, substituting;
      substituting.setErrorAction(1);
      substituting.setDefBytes(bytesOf("12345"), 5);
      Counter counter;
      substituting.m_observer = &counter;
      const std::size_t dropped = convert(dropping, from, to, input).out.size();
      const std::size_t substituted = convert(substituting, from, to, input).out.size();
      EXPECT_EQ(substituted, dropped + 5u * static_cast<unsigned>(counter.count))
          << from << " to " << to;
      reports += counter.count;
    }
  }
  EXPECT_GT(reports, 1000);
}

}  // namespace
