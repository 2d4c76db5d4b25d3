#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "support/zv_base.h"
#include "support/zv_utf.h"

namespace {

using namespace std::string_literals;

// What a function appended behind a first byte that must stay, and its result.
struct Transformed {
  std::string text;
  bool clean;
  bool operator==(const Transformed&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Transformed& outcome) {
  return os << testing::PrintToString(outcome.text) << (outcome.clean ? " clean" : " not clean");
}

template <typename Function>
Transformed collect(const std::string& input, Function function) {
  DataBuffer in, out;
  in.append(input.data(), static_cast<unsigned int>(input.size()));
  out.appendChar('k');
  const bool clean = function(in, out);
  const std::string text(reinterpret_cast<const char*>(out.getData2()), out.getSize());
  EXPECT_EQ(text[0], 'k');
  return {text.substr(1), clean};
}

LogBase noLog;

Transformed toUtf32(const std::string& utf8, bool bigEndian) {
  return collect(utf8,
                 [=](auto& in, auto& out) { return _zvUtf::Utf8toUtf32(bigEndian, in, out); });
}
Transformed fromUtf32(const std::string& utf32) {
  return collect(utf32, [](auto& in, auto& out) { return _zvUtf::Utf32ToUtf8(in, out, noLog); });
}
Transformed toUtf7(const std::string& utf16) { return collect(utf16, _zvUtf::Utf16XEToUtf7); }
Transformed fromUtf7(const std::string& utf7) { return collect(utf7, _zvUtf::Utf7ToUtf16_xe); }
template <auto Convert>
Transformed gsm(const std::string& text) {
  return collect(
      text, [](auto& in, auto& out) { return Convert(in.getData2(), in.getSize(), out, noLog); });
}
constexpr auto fromGsm = gsm<_zvUtf::gsm_to_utf8>;
constexpr auto toGsm = gsm<_zvUtf::utf8_to_gsm>;

std::string hostUtf16(const std::u16string& units) {
  std::string bytes(units.size() * 2, '\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    zvStoreHostUnit(reinterpret_cast<unsigned char*>(&bytes[2 * i]), units[i], zvIsBigEndian());
  }
  return bytes;
}

std::string utf32(const std::u32string& values, bool bigEndian) {
  std::string bytes;
  for (const char32_t value : values) {
    for (int i = 0; i < 4; ++i) {
      bytes.push_back(static_cast<char>(value >> (bigEndian ? 24 - 8 * i : 8 * i)));
    }
  }
  return bytes;
}

// The units of a text, invalid pieces as 0, with every function and bound that counts them asked.
std::u16string decodeUtf8(const std::string& text) {
  std::u16string units;
  const auto* p = reinterpret_cast<const unsigned char*>(text.c_str());
  for (auto left = static_cast<unsigned int>(text.size()); left != 0;) {
    unsigned int used = 0;
    unsigned int usedUnbounded = 0;
    const unsigned int found = _zvUtf::utf16FromUtf8(p, left, used);
    EXPECT_EQ(_zvUtf::utf16FromUtf8(p, usedUnbounded), found);
    EXPECT_EQ(usedUnbounded, used);
    EXPECT_EQ(_zvUtf::NumUtf8Bytes(p, static_cast<int>(left)), static_cast<int>(used));
    if (used == 0 || used > left) return u"bad count";
    units.push_back(static_cast<char16_t>(found));
    if (found >> 16 != 0) units.push_back(static_cast<char16_t>(found >> 16));
    p += used;
    left -= used;
  }
  return units;
}

TEST(UtfHelpers, CountInvalidUtf8AsMaximalSubparts) {
  const struct {
    std::string utf8;
    std::u16string units;
  } cases[] = {
      {"\x80\xBF", u"\0\0"s},
      {"\xC0\x80\xC1\xBF", u"\0\0\0\0"s},
      {"\xE0\x9F\xBF", u"\0\0\0"s},
      {"\xF0\x8F\xBF\xBF", u"\0\0\0\0"s},
      {"\xF4\x90\x80\x80\xF5\xFF", u"\0\0\0\0\0\0"s},
      {"\xC3z\xE2\x82z", u"\0z\0z"s},
      {"\xE2\x82\xE2\x82\xAC", u"\0\x20AC"s},
      {"\xF0\x9F\x98", u"\0"s},
      {"\xF0\x9F\x98\xF0\x9F\x98\x80", u"\0\xD83D\xDE00"s},
      {"\xED\xA0\x80\xED\xBF\xBF", u"\xD800\xDFFF"s},
      {"\xED\xA0z\xED\xBF", u"\0z\0"s},
      {"\xED\x9F\xBF\xEF\xBF\xBF\xF4\x8F\xBF\xBF", u"\xD7FF\xFFFF\xDBFF\xDFFF"s},
  };
  for (const auto& c : cases) EXPECT_EQ(decodeUtf8(c.utf8), c.units);
  EXPECT_EQ(_zvUtf::NumUtf8Bytes(nullptr, -1), 0);
}

TEST(UtfHelpers, KeepEveryCharacterOnTheWayThereAndBack) {
  std::u32string all;
  std::u16string units;
  std::string utf8;
  for (char32_t value = 1; value < 0x110003; ++value) {
    char bytes[4];
    unsigned int count = 7;
    const bool isScalar = value < 0x110000 && value >> 11 != 0x1B;
    ASSERT_EQ(_zvUtf::oneUtf32ToUtf8(value, bytes, count), isScalar);
    if (!isScalar) continue;
    const std::string one(bytes, count);
    const std::u16string found = decodeUtf8(one);
    ASSERT_EQ(found.size(), value < 0x10000 ? 1u : 2u);
    all += value;
    units += found;
    utf8 += one;
  }
  EXPECT_TRUE((toUtf32(utf8, true) == Transformed{utf32(all, true), true}));
  EXPECT_TRUE((toUtf32(utf8, false) == Transformed{utf32(all, false), true}));
  EXPECT_TRUE((fromUtf32(utf32(all, false)) == Transformed{utf8, true}));
  // Runs that begin anywhere in a group, and are cut anywhere by the chunks of the codec.
  for (const unsigned int lead : {0u, 1u, 2u, 16383u}) {
    const std::string utf16 = hostUtf16(std::u16string(lead, u'a') + units + u"\xDC00\xD800");
    EXPECT_TRUE((fromUtf7(toUtf7(utf16).text) == Transformed{utf16, true})) << lead;
  }
}

TEST(UtfHelpers, ReplaceWhatIsNoScalarValueInUtf32) {
  const struct {
    std::string utf8;
    std::u32string values;
    bool clean;
  } cases[] = {
      {"\xED\xA0\xBD\xED\xB8\x80z", U"\x1F600z", true},
      {"\xED\xB8\x80\xED\xA0\xBD", U"\xFFFD\xFFFD", false},
      {"\xED\xA0\xBD\xED\xA0\xBD\xED\xB8\x80", U"\xFFFD\x1F600", false},
      {"\xED\xA0\xBD\xED\xB8", U"\xFFFD\xFFFD", false},
      {"12345678\xE2\x82zzzzzzzz", U"12345678\xFFFDzzzzzzzz", false},
      {"", U"", true},
  };
  for (const auto& c : cases) {
    for (const bool bigEndian : {false, true}) {
      EXPECT_EQ(toUtf32(c.utf8, bigEndian), (Transformed{utf32(c.values, bigEndian), c.clean}));
    }
  }
  const std::u32string bad{0xD800, 0xDFFF, 0x110000, 0x80000041, 'A'};
  EXPECT_EQ(fromUtf32(utf32(bad, false)), (Transformed{"\uFFFD\uFFFD\uFFFD\uFFFDA", false}));
  EXPECT_EQ(fromUtf32("A\0\0\0B\0\0"s), (Transformed{"A", true}));
}

TEST(UtfHelpers, WriteAndReadUtf7) {
  const struct {
    std::u16string text;
    std::string utf7;
  } cases[] = {
      {u"Hi 'Mom' (9,-./:?)\t\r\n", "Hi 'Mom' (9,-./:?)\t\r\n"},
      {u"A\x2262\x0391.", "A+ImIDkQ."},
      {u"\x65E5\x672C\x8A9E", "+ZeVnLIqe-"},
      {u"\xE9-\xE9z\xE9/\xE9 \xE9(", "+AOk--+AOk-z+AOk-/+AOk +AOk("},
      {u"1+1=2", "1+-1+AD0-2"},
      {u"\xE9+", "+AOkAKw-"},
      {u"\\~!"s + u'\0', "+AFwAfgAhAAA-"},
      {u"\xD83D\xDE00\xDE00\xD83D", "+2D3eAN4A2D0-"},
      {u"", ""},
  };
  const bool host = zvIsBigEndian();
  for (const bool bigEndian : {!host, host}) {
    zvSetBigEndianForTesting(bigEndian);
    for (const auto& c : cases) {
      EXPECT_EQ(toUtf7(hostUtf16(c.text)), (Transformed{c.utf7, true}));
      EXPECT_EQ(fromUtf7(c.utf7), (Transformed{hostUtf16(c.text), true}));
    }
    EXPECT_EQ(toUtf7(hostUtf16(u"\xE9") + "a"), (Transformed{"+AOk-", false}));
  }
}

TEST(UtfHelpers, KeepTheTextAroundMalformedUtf7) {
  const struct {
    std::string utf7;
    std::u16string text;
    bool clean;
  } cases[] = {
      {"+AOk!\\~", u"\xE9!\\~", true},
      {"+ZeVnLIqe*ABC", u"\x65E5\x672C\x8A9E*ABC", true},
      {"a+ b+", u"a\xFFFD b\xFFFD", false},
      {"+A-z", u"\xFFFDz", false},
      {"+AOkA-z", u"\xE9\xFFFDz", false},
      {"+AOn-z+AOn", u"\xE9\xFFFDz\xE9\xFFFD", false},
      {"+ZeVnLIqe\xE9zBC", u"\x65E5\x672C\x8A9E\xFFFDzBC", false},
      {"12345678\xFFzzzzzzzz", u"12345678\xFFFDzzzzzzzz", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(fromUtf7(c.utf7), (Transformed{hostUtf16(c.text), c.clean})) << c.utf7;
  }
}

TEST(UtfHelpers, ConvertGsm) {
  std::string septets(128, '\0');
  std::iota(septets.begin(), septets.end(), '\0');
  septets.erase(0x1B, 1);
  const std::string alphabet =
      "@£$¥èéùìòÇ\nØø\rÅåΔ_ΦΓΛΩΠΨΣΘΞÆæßÉ !\"#¤%&'()*+,-./0123456789:;<=>?"
      "¡ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÑÜ§¿abcdefghijklmnopqrstuvwxyzäöñüà";
  const std::string extensions = "\33\x0A\33\x14\33(\33)\33/\33<\33=\33>\33@\33e";
  EXPECT_EQ(fromGsm(septets + extensions), (Transformed{alphabet + "\f^{}\\[~]|€", true}));
  EXPECT_EQ(toGsm(alphabet + "\f^{}\\[~]|€"), (Transformed{septets + extensions, true}));

  EXPECT_EQ(fromGsm("\33A\33\33A\33\r"), (Transformed{"A A\r", true}));
  EXPECT_EQ(fromGsm("a\x80\xFF"), (Transformed{"a\uFFFD\uFFFD", false}));
  EXPECT_EQ(fromGsm("a\33"), (Transformed{"a\uFFFD", false}));
  for (const char* foreign : {"`", "\33", "\x7F", "ç", "Α", "Ѐ", "日", "\xF0\x9F\x98\x80",
                              "\xED\xA0\xBD\xED\xB8\x80", "\xED\xA0\xBD", "\xE2\x82", "\xC0"}) {
    EXPECT_EQ(toGsm("<"s + foreign + ">"), (Transformed{"<?>", false})) << foreign;
  }
  EXPECT_EQ(toGsm("\0"s), (Transformed{"?", false}));
}

}  // namespace
