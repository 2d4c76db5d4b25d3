// Every scalar value through every Unicode encoding, held against the C library's iconv.
#include <iconv.h>

#include <algorithm>
#include <random>
#include <vector>

#include "tests/test_support.h"

namespace {

struct UnicodeEncoding {
  int codePage;
  const char* peer;  // iconv's name, or null where it writes the encoding differently
};
constexpr UnicodeEncoding kEncodings[] = {
    {1200, "UTF-16LE"},  {1201, "UTF-16BE"},  {12000, "UTF-32LE"}, {12001, "UTF-32BE"},
    {65005, "UTF-32LE"}, {65006, "UTF-32BE"}, {65000, nullptr}};

void appendUtf8(std::string& text, unsigned int scalar) {
  const auto put = [&](unsigned int byte) { text.push_back(static_cast<char>(byte)); };
  if (scalar < 0x80) return put(scalar);
  if (scalar < 0x800) {
    put(0xC0 | scalar >> 6);
  } else {
    if (scalar < 0x10000) {
      put(0xE0 | scalar >> 12);
    } else {
      put(0xF0 | scalar >> 18);
      put(0x80 | (scalar >> 12 & 0x3F));
    }
    put(0x80 | (scalar >> 6 & 0x3F));
  }
  put(0x80 | (scalar & 0x3F));
}

std::string byPeer(const char* to, const std::string& utf8) {
  std::string text = utf8;
  iconv_t peer = iconv_open(to, "UTF-8");
  std::string out(text.size() * 4 + 16, '\0');
  char* in = text.data();
  char* dest = out.data();
  std::size_t left = text.size(), room = out.size();
  EXPECT_EQ(iconv(peer, &in, &left, &dest, &room), 0u) << to;
  iconv_close(peer);
  out.resize(out.size() - room);
  return out;
}

void expectRoundTrips(const std::string& text) {
  for (const UnicodeEncoding& encoding : kEncodings) {
    const ConversionResult there = convert(65001, encoding.codePage, text);
    ASSERT_TRUE(there.ok && !there.foundErrors) << encoding.codePage;
    if (encoding.peer != nullptr) {
      ASSERT_TRUE(there.out == byPeer(encoding.peer, text)) << encoding.peer;
    }
    const ConversionResult back = convert(encoding.codePage, 65001, there.out);
    ASSERT_TRUE(back.ok && !back.foundErrors && back.out == text) << encoding.codePage;
  }
}

// U+0000 is left out, which the way from UTF-16 to UTF-8 drops; and a mark at the very beginning
// would be read as one.
std::vector<unsigned int> allScalars() {
  std::vector<unsigned int> scalars;
  for (unsigned int scalar = 1; scalar < 0x110000; ++scalar) {
    if (scalar < 0xD800 || scalar > 0xDFFF) scalars.push_back(scalar);
  }
  return scalars;
}

TEST(UnicodeTest, EveryScalarValueInOrder) {
  std::string text;
  for (const unsigned int scalar : allScalars()) appendUtf8(text, scalar);
  expectRoundTrips(text);
}

TEST(UnicodeTest, EveryScalarValueInRunningText) {
  std::vector<unsigned int> scalars = allScalars();
  std::shuffle(scalars.begin(), scalars.end(), std::mt19937(3));
  std::string text = "running ";
  for (std::size_t i = 0; i < scalars.size(); ++i) {
    appendUtf8(text, scalars[i]);
    if (i % 7 == 0) text += "text, ";
    if (i % 11 == 0) text += "\xD1\x82\xD0\xB5 ";
  }
  expectRoundTrips(text);
}

}  // namespace
