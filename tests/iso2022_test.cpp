#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "encoding/clean_conversion.h"
#include "support/japanese.h"
#include "support/korean.h"
#include "tests/test_support.h"

namespace {

// The calls for whole texts, and the engine, which goes through them.
TEST(Iso2022, ConvertsWholeTexts) {
  DataBuffer out;
  LogBase log;
  EXPECT_TRUE(Japanese().Iso2022ToShiftJis(bytesOf("\x1B$B$\""), 5, out, log));
  EXPECT_FALSE(Japanese().Iso2022ToShiftJis(bytesOf("\x1B$B$"), 4, out, log));
  EXPECT_TRUE(Japanese().ShiftJisToIso2022(bytesOf("\xB1"), 1, out, log));
  EXPECT_FALSE(Japanese().ShiftJisToIso2022(bytesOf("\xF0\x40"), 2, out, log));
  EXPECT_TRUE(Korean().KscToIso2022(bytesOf("a"), -1, out));
  EXPECT_EQ(hex(textOf(out)), hex("\x82\xA0\x81\xAC\x1B(I1\x1B(B\x1B$B\".\x1B(B"));
  out.clear();
  EXPECT_TRUE(Korean().KscToIso2022(bytesOf("\xB0\xA1"), 2, out));
  EXPECT_FALSE(Korean().KscToIso2022(bytesOf("\xFF"), 1, out));
  EXPECT_TRUE(Korean().Iso2022ToKsc(bytesOf("\x0E\x30!\x0F"), 4, out));
  EXPECT_FALSE(Korean().Iso2022ToKsc(bytesOf("\x80"), 1, out));
  EXPECT_EQ(hex(textOf(out)), hex("\x1B$)C\x0E\x30!\x0F\x1B$)C\x0E!k\x0F\xB0\xA1\xA1\xEB"));

  const std::string mail = "a\xEF\xBD\xB1\xE2\x91\xA0\xE9\xAB\x99\xE2\x89\x92\n\xEA\xB0\x80";
  const std::string jp = convert(65001, 50220, mail.substr(0, 14)).out;
  const std::string kr = convert(65001, 50225, mail.substr(14)).out;
  EXPECT_EQ(hex(jp), hex("a\x1B(I1\x1B$B-!|\x62\"b\x1B(B\n"));
  EXPECT_EQ(convert(50222, 65001, jp).out + convert(50225, 65001, kr).out, mail);
}

// Clean text goes through the engine a block at a time, which must not show.
TEST(Iso2022, BlocksEqualTheWhole) {
  std::string text;
  for (int i = 0; i < 4000; ++i) {
    text += i % 7 == 0   ? "\n"
            : i % 3 == 0 ? "\xE3\x81\x82 \xEF\xBC\xA1"
                         : "\xE4\xB8\x80 a\x1B\x0E\r";
  }
  const std::string rare = "\xEE\x80\x80\xEF\xBB\xBF\xE9\xAB\x99\xF0\x9F\x98\x80";
  const std::string inputs[] = {text,
                                "%PDF-1" + text,
                                text + rare + text,
                                "\xEF\xBB\xBF" + text,
                                std::string(16384, 'a') + rare.substr(3),
                                ""};
  const auto run = [](bool fastPath, int from, int to, const std::string& input, int action) {
    fast::setFastPathForTesting(fastPath);
    EncodingConvert converter;
    converter.setErrorAction(action);
    const ConversionResult outcome = convert(converter, from, to, input);
    fast::setFastPathForTesting(true);
    return std::tuple(outcome, converter.m_fromCodePage, converter.m_toCodePage,
                      converter.m_pivotToUtf16, converter.m_pivotFromUtf16);
  };
  for (const int iso : {50220, 50225}) {
    for (const int other : {65001, 1200, 1201, 12000, 65000, 1252, 932, 949, 936, 50225}) {
      for (const std::string& input : inputs) {
        for (const int action : {0, 2, 6}) {
          const std::string source = convert(65001, other, input).out;
          // Behind an escape, so that the PDF test meets what the codec reads.
          const std::string coded =
              (iso == 50220 ? "\x1B(J" : "\x1B$)C") + convert(65001, iso, input).out;
          EXPECT_TRUE(run(true, other, iso, source, action) ==
                      run(false, other, iso, source, action))
              << other << " to " << iso << hex(input.substr(0, 8)) << " action " << action;
          EXPECT_TRUE(run(true, iso, other, coded, action) == run(false, iso, other, coded, action))
              << iso << " to " << other << hex(input.substr(0, 8)) << " action " << action;
        }
      }
    }
  }
}

TEST(Iso2022, LastBlockIsSharedAndComesBack) {
  std::vector<const unsigned char*> seen(4);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (auto& list : seen) {
    threads.emplace_back([&list] { list = Japanese::GetSjisFrom2022_LastBlock(); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const unsigned char* list : seen) EXPECT_EQ(list, Japanese::GetSjisFrom2022_LastBlock());
  const std::string before(reinterpret_cast<const char*>(seen[0]), 2 * Japanese::kLastBlockCodes);
  EXPECT_EQ(hex(before.substr(718)),
            "FC 4B 81 45 81 45 FA 40 FA 41 FA 42 FA 43 FA 44 FA 45 FA 46 "
            "FA 47 FA 48 FA 49 81 CA FA 55 FA 56 FA 57");
  // The codec computes it.
  std::string pairs = "\x1B$B";
  for (int i = 0; i < Japanese::kLastBlockCodes; ++i) {
    pairs += {static_cast<char>(0x79 + i / 94), static_cast<char>(0x21 + i % 94)};
  }
  DataBuffer out;
  LogBase log;
  Japanese().Iso2022ToShiftJis(bytesOf(pairs), static_cast<int>(pairs.size()), out, log);
  EXPECT_EQ(hex(out), hex(before));
  Japanese::releaseLastBlock();
  Japanese::releaseLastBlock();
  const auto* again = reinterpret_cast<const char*>(Japanese::GetSjisFrom2022_LastBlock());
  EXPECT_EQ(std::string(again, before.size()), before);
}

}  // namespace
