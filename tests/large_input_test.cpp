// Real inputs of more than 2 GiB, and outputs that end at 4 GiB: what has a 32-bit size is
// converted whole, what has none fails cleanly. Needs 12 GiB of memory; registered with CTest by
// the option ENCCONV_LARGE_TESTS only.
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "tests/stream_support.h"

namespace {

constexpr unsigned int kMiB = 1u << 20;
constexpr unsigned int kLength = 2560 * kMiB;
constexpr unsigned int kTwiceIsTooLong = 2'148'532'224;  // in 32 bits; whole characters of 2 and 3

struct Case {
  int from, to;
  std::string_view pattern;  // fills the input
  bool ok;
  std::uint64_t written = 0;  // bytes
  unsigned int length = kLength;
};

constexpr Case kCases[] = {
    // The UTF-16 of the pivot, or the output, would pass 4 GiB.
    {.from = 1252, .to = 65001, .pattern = "caf\xE9", .ok = false},
    {.from = 65001, .to = 1200, .pattern = "text", .ok = false},
    {.from = 65001, .to = 1252, .pattern = "text", .ok = false},
    {.from = 1252, .to = 1201, .pattern = "text", .ok = false},
    // The codecs of ISO-2022 take signed lengths.
    {.from = 50220, .to = 65001, .pattern = "text", .ok = false},
    // The output fits, and ends where it should.
    {1200, 1252, {"\xAC\x20\x61\x00", 4}, true, kLength / 2},
    {1200, 65001, "\xE5\x65\x2C\x67", true, std::uint64_t{kLength} * 3 / 2},
    {1201, 65001, {"\x65\xE5\x00\x61", 4}, true, kLength},
    {12000, 65001, {"\x61\x00\x00\x00", 4}, true, kLength / 4},
    {65001, 65001, "text", true, kLength},
    {20127, 65001, "te\x80t", true, std::uint64_t{kLength} * 3 / 4},
    // Twice the length has no 32-bit form, but the text has fewer units than bytes.
    {932, 936, "\x93\xFA\x96\x7B", true, kLength},
    {65001, 1200, "\xE4\xB8\x80", true, kTwiceIsTooLong / 3 * 2, kTwiceIsTooLong},
    {65001, 936, "\xE4\xB8\x80", true, kTwiceIsTooLong / 3 * 2, kTwiceIsTooLong},
    {65001, 12000, "\xE4\xB8\x80", true, kTwiceIsTooLong / 3 * 4, kTwiceIsTooLong},
    {932, 1200, "\x93\xFA", true, kTwiceIsTooLong, kTwiceIsTooLong},
    {932, 65001, "\x93\xFA", true, kTwiceIsTooLong / 2 * 3, kTwiceIsTooLong},
    {932, 936, "\x93\xFA", true, kTwiceIsTooLong, kTwiceIsTooLong},
};

TEST(LargeInput, IsConvertedWholeOrFailsCleanly) {
  const std::unique_ptr<unsigned char[]> input(zvNewUnsignedChar(kLength));
  ASSERT_NE(input, nullptr);
  LogBase log;
  EncodingConvert converter;
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to));
    std::memcpy(&input[0], c.pattern.data(), c.pattern.size());
    for (std::size_t filled = c.pattern.size(); filled < c.length; filled *= 2) {
      std::memcpy(&input[filled], &input[0], std::min(filled, c.length - filled));
    }
    DataBuffer out;
    EXPECT_EQ(converter.EncConvert(c.from, c.to, input.get(), c.length, out, log), c.ok);
    if (c.ok) {
      EXPECT_EQ(out.getSize(), c.written);
      // The last characters are what the same ones give alone.
      const std::string end = convert(c.from, c.to, c.pattern).out;
      ASSERT_GE(out.getSize(), end.size());
      EXPECT_EQ(hex({reinterpret_cast<const char*>(out.getData2()) + out.getSize() - end.size(),
                     end.size()}),
                hex(end));
    }
    EXPECT_EQ(convert(converter, 1252, 65001, "\xE9"), convert(1252, 65001, "\xE9")) << "next call";
  }
}

// Behind an output of nearly 4 GiB, most of it never written, so that it takes no memory.
TEST(LargeOutput, MayFillTheBufferToTheLastByte) {
  constexpr int kPages[] = {1200, 1201, 12000, 12001, 65000, 65001, 55000, 1252, 1258, 932, 949};
  LogBase log;
  for (const int from : kPages) {
    for (const int to : kPages) {
      for (const int times : {1, 300, 20000}) {
        std::string text;
        for (int i = 0; i < times; ++i) text += "text ";
        const std::string input = convert(65001, from, text).out;
        const ConversionResult expected = convert(from, to, input);
        if (!expected.ok) continue;
        for (const unsigned int excess : {0u, 1u}) {
          SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to) + ", " +
                       std::to_string(times) + " times, with " + std::to_string(excess));
          const auto before = 0xFFFFFFFFu - static_cast<unsigned int>(expected.out.size()) + excess;
          DataBuffer out;
          ASSERT_NE(out.reserveTail(before), nullptr);
          out.commitTail(before);
          EncodingConvert converter;
          const bool ok = converter.EncConvert(from, to, bytesOf(input),
                                               static_cast<unsigned int>(input.size()), out, log);
          ASSERT_EQ(ok, excess == 0);
          if (!ok) continue;
          ASSERT_EQ(out.getSize(), 0xFFFFFFFFu);
          EXPECT_TRUE(std::equal(
              expected.out.begin(), expected.out.end(), out.getData2() + before,
              [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; }));
        }
      }
    }
  }
}

// A stream takes pieces of any size. Most of this one is never written, so that it takes no memory.
TEST(LargeStream, PlacesAnErrorBehindFourGiBOfOnePiece) {
  constexpr std::size_t kPlace = (std::size_t{4} << 30) + 12345;
  const std::unique_ptr<unsigned char, decltype(&std::free)> piece(
      static_cast<unsigned char*>(std::calloc(kPlace + 2, 1)), std::free);
  ASSERT_NE(piece, nullptr);
  piece.get()[kPlace - 1] = '\n';
  piece.get()[kPlace] = 0xD2;
  struct : StreamDrain {
    bool onStreamOutput(DataBuffer& out) override {
      written += out.getSize();
      out.clear();
      return true;
    }
    std::uint64_t written = 0;
  } drain;
  for (const int to : {1250, 932}) {
    SCOPED_TRACE(to);
    StreamSettings settings = settingsFor(1253, to, "drop");
    settings.drain = &drain;
    drain.written = 0;
    StreamConverter converter;
    DataBuffer out;
    ASSERT_EQ(converter.begin(settings), StreamStatus::kGood);
    ASSERT_EQ(converter.push(piece.get(), kPlace + 2, out), StreamStatus::kGood);
    ASSERT_EQ(converter.finish(out), StreamStatus::kGood);
    ASSERT_EQ(converter.errorCount(), 1u);
    EXPECT_EQ(converter.firstError().offset, kPlace);
    EXPECT_EQ(converter.firstError().line, 2u);
    EXPECT_EQ(converter.firstError().bytes[0], 0xD2);
    EXPECT_EQ(drain.written + out.getSize(), kPlace + 1);
  }
}

}  // namespace
