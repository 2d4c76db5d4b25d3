// Tests of the table of transliterations, beside the C library's.
#include "encoding/transliteration.h"

#include <gtest/gtest.h>
#ifdef __GLIBC__
#include <iconv.h>
#endif

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "support/utf.h"

namespace {

std::vector<std::string> candidatesOf(std::uint32_t scalar) {
  std::vector<std::string> all;
  fast::Transliterations candidates(scalar);
  for (std::string_view text; candidates.next(text);) all.emplace_back(text);
  return all;
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

TEST(Transliteration, HasTheBestCandidatesFirst) {
  using List = std::vector<std::string>;
  EXPECT_EQ(candidatesOf(0xDF), List{"ss"});
  EXPECT_EQ(candidatesOf(0x1D6), (List{"ü\u0304", "u\u0308\u0304", "ü", "u"}));
  EXPECT_EQ(candidatesOf(0x2126), (List{"Ω", "Ohm"}));
  EXPECT_EQ(candidatesOf(0x301), List{""});
  EXPECT_EQ(candidatesOf(0xF900), List{"豈"});
  EXPECT_EQ(candidatesOf(0xE01EF), List{""});  // the last of all
  // Neighbours of those that have some, and what cannot be looked for.
  for (const std::uint32_t none : {0u, 0x61u, 0x9Fu, 0xA4u, 0x338u, 0x4E00u, 0xE01F0u, 0x10FFFFu}) {
    EXPECT_EQ(candidatesOf(none), List()) << none;
  }
}

TEST(Transliteration, HasWellFormedCandidatesOnce) {
  std::size_t characters = 0;
  for (std::uint32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (!isScalarValue(scalar)) continue;
    const std::vector<std::string> all = candidatesOf(scalar);
    characters += all.empty() ? 0 : 1;
    EXPECT_EQ(std::set(all.begin(), all.end()).size(), all.size()) << scalar;
    for (const std::string& text : all) {
      std::size_t length = 0;
      const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
      for (std::size_t i = 0; i < text.size(); ++length) {
        const Utf8Sequence part = decodeScalar(bytes + i, text.size() - i);
        ASSERT_TRUE(part.valid && part.value > 1 && part.value != scalar) << scalar;
        i += part.length;
      }
      EXPECT_LE(length, fast::Transliterations::kMaxLength) << scalar;
      // Behind what can be written everywhere nothing is ever asked for.
      EXPECT_TRUE(!isAscii(text) || text == all.back()) << scalar;
    }
  }
  EXPECT_GT(characters, 7000u);
}

#ifdef __GLIBC__
namespace {

std::string utf8(std::uint32_t scalar) {
  unsigned char form[4];
  return {reinterpret_cast<const char*>(form),
          static_cast<std::size_t>(writeUtf8(form, scalar) - form)};
}

}  // namespace

// In the locale "C", as which a program starts, into ASCII.
TEST(Transliteration, SaysWhatTheCLibrarySays) {
  const iconv_t converter = iconv_open("ASCII//TRANSLIT", "UTF-8");
  ASSERT_NE(converter, reinterpret_cast<iconv_t>(-1));
  std::size_t known = 0;
  for (std::uint32_t scalar = 0xA0; scalar <= 0x10FFFF; ++scalar) {
    if (!isScalarValue(scalar)) continue;
    std::string text = utf8(scalar);
    char written[64];
    char *in = text.data(), *out = written;
    std::size_t inLeft = text.size(), outLeft = sizeof written;
    ASSERT_NE(iconv(converter, &in, &inLeft, &out, &outLeft), static_cast<std::size_t>(-1));
    const std::string expected(written, sizeof written - outLeft);
    if (expected == "?") continue;  // it has nothing
    ++known;
    const std::vector<std::string> all = candidatesOf(scalar);
    EXPECT_EQ(all.empty() ? "?" : all.back(), expected) << scalar;
  }
  EXPECT_GT(known, 1500u);
  iconv_close(converter);
}
#endif
