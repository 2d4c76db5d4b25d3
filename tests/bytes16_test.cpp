// The bytes that codecs look at sixteen at a time, against loops over single ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "encoding/codecs/pair_runs.h"
#include "encoding/codecs/text_bytes.h"

namespace {

using Byte = unsigned char;

std::mt19937 g_random(20240501);
unsigned int below(unsigned int limit) { return static_cast<unsigned int>(g_random() % limit); }
unsigned int between(unsigned int low, unsigned int high) { return low + below(high - low + 1); }

// The first of sixteen places where a test of the place holds; 16 for none.
template <class Test>
unsigned int firstPlace(Test test) {
  unsigned int i = 0;
  while (i < 16 && !test(i)) ++i;
  return i;
}

TEST(Bytes16Test, EqualsLoopsOverBytes) {
  for (int round = 0; round < 10000; ++round) {
    // Equal bytes are frequent, so that each place is now and then the first.
    Byte text[32];
    const unsigned int usual = below(256);
    for (Byte& byte : text) byte = static_cast<Byte>(below(16) != 0 ? usual : below(256));
    const fast::Bytes16 bytes = fast::Bytes16::load(text);
    const auto low = static_cast<Byte>(below(256));
    const auto high = static_cast<Byte>(between(low, 255));
    const auto least = static_cast<Byte>(high / 4);

    EXPECT_EQ(countHigh(bytes), firstPlace([&](auto i) { return text[i] < 0x80; }));
    EXPECT_EQ(countLow(bytes), firstPlace([&](auto i) { return text[i] >= 0x80; }));
    EXPECT_EQ(countLow(equal(bytes, low)), firstPlace([&](auto i) { return text[i] == low; }));
    EXPECT_EQ(countLow(isBetween(bytes, low, high)),
              firstPlace([&](auto i) { return text[i] >= low && text[i] <= high; }));
    EXPECT_EQ(countHigh(isAsciiLetter(bytes)), firstPlace([&](auto i) {
                return !((text[i] >= 'A' && text[i] <= 'Z') || (text[i] >= 'a' && text[i] <= 'z'));
              }));
    const bool isAny = std::any_of(text, text + 16, [&](Byte byte) { return byte == low; });
    EXPECT_EQ(equal(bytes, low).any(), isAny);
    EXPECT_EQ(equal(bytes, low).none(), !isAny);

    const auto isOutside = [&](auto i) {
      return text[2 * i] < low || text[2 * i] > high || text[2 * i + 1] < least ||
             text[2 * i + 1] > 0xF0;
    };
    EXPECT_EQ(
        codec_vectors::bytesBefore(~codec_vectors::inBox(bytes.native(), {low, high, least, 0xF0})),
        2 * firstPlace([&](auto i) { return i >= 8 || isOutside(i); }));

    Byte narrowed[16], units[32];
    loadUnits(text).store(narrowed);
    storeAsUnits(bytes, units);
    for (unsigned int i = 0; i < 16; ++i) {
      EXPECT_EQ(narrowed[i], text[2 * i + 1] != 0 ? 0xFF : text[2 * i]);
      EXPECT_EQ(units[2 * i], text[i]);
      EXPECT_EQ(units[2 * i + 1], 0);
    }
  }
}

}  // namespace
