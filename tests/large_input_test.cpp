// A real input of 2.5 GiB: what has a 32-bit size is converted whole, what has none fails cleanly.
// Needs 12 GiB of memory; registered with CTest by the option ENCCONV_LARGE_TESTS only.
#include <memory>

#include "tests/test_support.h"

namespace {

constexpr unsigned int kMiB = 1u << 20;
constexpr unsigned int kLength = 2560 * kMiB;

struct Case {
  int from, to;
  const char* pattern;  // fills the input, its last copy cut off
  unsigned int size;    // of the pattern, in bytes
  bool ok;
  std::uint64_t written;  // bytes
};

constexpr Case kCases[] = {
    // The UTF-16 between the legs would pass 4 GiB.
    {1252, 65001, "caf\xE9", 4, false, 0},
    {932, 936, "\x93\xFA\x96\x7B", 4, false, 0},
    {65001, 1200, "text", 4, false, 0},
    {65001, 1252, "text", 4, false, 0},
    {1252, 1201, "text", 4, false, 0},
    // The codecs of ISO-2022 take signed lengths.
    {50220, 65001, "text", 4, false, 0},
    // The output fits, and ends where it should.
    {1200, 1252, "\xAC\x20\x61\x00", 4, true, kLength / 2},
    {1200, 65001, "\xE5\x65\x2C\x67", 4, true, std::uint64_t{kLength} * 3 / 2},
    {1201, 65001, "\x65\xE5\x00\x61", 4, true, kLength},
    {12000, 65001, "\x61\x00\x00\x00", 4, true, kLength / 4},
    {65001, 65001, "text", 4, true, kLength},
    {20127, 65001, "te\x80t", 4, true, std::uint64_t{kLength} * 3 / 4},
};

TEST(LargeInput, IsConvertedWholeOrFailsCleanly) {
  const std::unique_ptr<unsigned char[]> input(zvNewUnsignedChar(kLength));
  ASSERT_NE(input, nullptr);
  LogBase log;
  EncodingConvert converter;
  for (const Case& c : kCases) {
    for (unsigned int i = 0; i < kLength; i += c.size) std::memcpy(&input[i], c.pattern, c.size);
    DataBuffer out;
    EXPECT_EQ(converter.EncConvert(c.from, c.to, input.get(), kLength, out, log), c.ok)
        << c.from << " to " << c.to;
    if (c.ok) {
      EXPECT_EQ(out.getSize(), c.written) << c.from << " to " << c.to;
      // The last characters are what the same ones give alone.
      const std::string end = convert(c.from, c.to, {c.pattern, c.size}).out;
      ASSERT_GE(out.getSize(), end.size());
      EXPECT_EQ(hex({reinterpret_cast<const char*>(out.getData2()) + out.getSize() - end.size(),
                     end.size()}),
                hex(end))
          << c.from << " to " << c.to;
    }
    EXPECT_EQ(convert(converter, 1252, 65001, "\xE9"), convert(1252, 65001, "\xE9")) << "next call";
  }
}

}  // namespace
