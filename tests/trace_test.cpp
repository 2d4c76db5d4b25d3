// Garbled text traced back: what became of texts whose bytes were taken for another encoding's.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"

namespace {

using encconv::Misreading;
using encconv::Origin;

std::string garble(std::string text, const std::vector<Misreading>& steps) {
  for (const Misreading& step : steps) {
    const encconv::Result bytes = encconv::from_utf8(text, step.written);
    EXPECT_TRUE(bytes) << text;
    encconv::Options lenient;
    lenient.on_error = encconv::OnError::substitute;
    text = encconv::to_utf8(bytes.text, step.read, lenient).text;
  }
  return text;
}

constexpr int kUtf8 = 65001;

struct Garbled {
  std::string_view text;
  std::vector<Misreading> steps;
};

TEST(Trace, FindsWhatTextsWere) {
  const Garbled cases[] = {
      {"Привет", {{kUtf8, 1252}}},
      {"テスト", {{932, 1252}}},
      {"Съешь ещё этих мягких французских булок", {{1251, 1252}}},
      {"Съешь ещё этих мягких французских булок", {{20866, 1251}}},
      {"Съешь ещё этих мягких французских булок", {{866, 1251}}},
      {"Съешь ещё этих мягких французских булок", {{kUtf8, 1252}, {kUtf8, 1252}}},
      {"naïve café", {{kUtf8, 1252}, {kUtf8, 1252}}},
      {"naïve “café” — résumé…", {{kUtf8, 1252}, {kUtf8, 1252}, {kUtf8, 1252}}},
      {"L'été dernier à la plage, où nous étions", {{kUtf8, 28591}}},
      {"Größe und Öl für Müller", {{10000, 1252}}},
      {"Größe und Öl für Müller", {{1252, 850}}},
      {"“Don’t,” she said — “it’s mine.”", {{10000, 1252}}},
      {"The price is £5 and €6", {{kUtf8, 1252}}},
      {"Zażółć gęślą jaźń", {{28592, 1252}}},
      {"Καλημέρα κόσμε", {{1253, 1252}}},
      {"مرحبا بالعالم كيف الحال", {{1256, 1252}}},
      {"日本語の文字化け", {{51932, 1252}}},
      {"我们都是中国人，今天天气很好", {{936, 1252}}},
      {"我們都是中國人", {{950, 1252}}},
      {"안녕하세요 세계", {{949, 1252}}},
      {"안녕하세요 세계", {{kUtf8, 1252}}},
      {"Hello World, this is the customer record", {{37, 1252}}},
      {"Bush hid the facts", {{kUtf8, 1200}}},
      {"😀 fun party 🎉", {{kUtf8, 1252}}},
  };
  for (const Garbled& c : cases) {
    const std::string garbled = garble(std::string(c.text), c.steps);
    ASSERT_NE(garbled, c.text);
    const std::vector<Origin> origins = encconv::trace(garbled);
    ASSERT_FALSE(origins.empty()) << garbled;
    EXPECT_EQ(origins[0].text, c.text) << garbled;
    EXPECT_EQ(garble(origins[0].text, origins[0].misreadings), garbled);
    EXPECT_GT(origins[0].confidence, 0.1) << garbled;
    for (std::size_t i = 1; i < origins.size(); ++i) {
      EXPECT_LE(origins[i].confidence, origins[i - 1].confidence);
      EXPECT_NE(origins[i].text, origins[i - 1].text);
    }
  }
}

TEST(Trace, LeavesGoodTextAlone) {
  for (const std::string_view text : {"",
                                      "plain",
                                      "Съешь ещё этих мягких булок",
                                      "L'été dernier à la plage",
                                      "naïve café",
                                      "Größe und Öl",
                                      "日本語の文字",
                                      "我们都是中国人",
                                      "안녕하세요 세계",
                                      "Zażółć gęślą jaźń",
                                      "Καλημέρα κόσμε",
                                      "São",
                                      "ß",
                                      "Ångström",
                                      "МОСКВА",
                                      "Łódź",
                                      "Žižek",
                                      "“quoted” — text…",
                                      "5 € £ ¥",
                                      "ŒUVRE",
                                      "§ 5 Abs. 2",
                                      "echo $BUILD $B $B(B $Bab(B $@(B; f($Bases, $@)(Bar)",
                                      "GNU\u00A0General Public License",
                                      "Ｈｅｌｌｏ"}) {
    const std::vector<Origin> origins = encconv::trace(text);
    EXPECT_TRUE(origins.empty()) << text << " was taken for " << origins[0].text;
  }
}

TEST(Trace, MendsWhatIsLeft) {
  struct Case {
    std::string_view garbled, text;
  };
  const Case cases[] = {
      // A no-break space that became a space.
      {"L'Ã©tÃ© dernier Ã  la plage", "L'été dernier à la plage"},
      // Bytes without a character were lost.
      {"Ð¡ÑŠÐµÑˆÑŒ ÐµÑ‰Ñ‘ Ñ\uFFFDÑ‚Ð¸Ñ… Ð¼Ñ\uFFFDÐ³ÐºÐ¸Ñ… Ð±ÑƒÐ»Ð¾Ðº",
       "Съешь ещё \uFFFDтих м\uFFFDгких булок"},
      // Some of the text was never garbled.
      {"DÃ©jÃ\u00A0 vu, Größe ☃, rÃ©sumÃ©, cafÃ©", "Déjà vu, Größe ☃, résumé, café"},
      // Escape characters of mail in ISO-2022-JP that were lost, or were never read.
      {"Re: $B$3$s$K$A$O(B world", "Re: こんにちは world"},
      {"$BF|K\\$N(J, \x1B$@EENO\x1B(J: 5$B(B", "日本の, 電力: 5$B(B"},
      // Ill-formed UTF-8, as of a text that was cut.
      {"Ð¿Ñ€Ð¸Ð²ÐµÑ‚ Ð¿Ñ€Ð¸Ð²ÐµÑ\xE2\x80", "привет приве\uFFFD"},
  };
  for (const Case& c : cases) {
    const std::vector<Origin> origins = encconv::trace(c.garbled);
    ASSERT_FALSE(origins.empty()) << c.garbled;
    EXPECT_EQ(origins[0].text, c.text);
  }
}

// Judged is only a part; mended is all.
TEST(Trace, MendsLongText) {
  std::string text(5000, ' ');
  for (int i = 0; i < 5000; ++i) text += "Ещё один день прошёл. ";
  const std::vector<Origin> origins = encconv::trace(garble(text, {{20866, 1251}, {kUtf8, 1252}}));
  ASSERT_FALSE(origins.empty());
  EXPECT_EQ(origins[0].text, text);
}

TEST(Trace, ServesC) {
  const std::string garbled = garble("Ёлка, ёлка! Где ты росла?", {{20866, 1251}, {kUtf8, 1252}});
  const std::vector<Origin> expected = encconv::trace(garbled);
  encconv_trace* const found = encconv_trace_back(garbled.data(), garbled.size());
  ASSERT_NE(found, nullptr);
  ASSERT_EQ(encconv_origin_count(found), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    encconv_origin origin = ENCCONV_ORIGIN_INIT;
    ASSERT_EQ(encconv_origin_at(found, i, &origin), 1);
    EXPECT_EQ(std::string(origin.text, origin.text_size), expected[i].text);
    EXPECT_EQ(origin.text[origin.text_size], '\0');
    EXPECT_EQ(origin.confidence, expected[i].confidence);
    ASSERT_EQ(origin.misreading_count, expected[i].misreadings.size());
    EXPECT_EQ(origin.misreadings[0].written, expected[i].misreadings[0].written);
    EXPECT_EQ(origin.misreadings[0].read, expected[i].misreadings[0].read);
  }
  encconv_origin origin = ENCCONV_ORIGIN_INIT;
  EXPECT_EQ(encconv_origin_at(found, expected.size(), &origin), 0);
  origin.struct_size = sizeof(std::size_t);
  EXPECT_EQ(encconv_origin_at(found, 0, &origin), 0);
  encconv_trace_free(found);
  EXPECT_EQ(encconv_trace_back(nullptr, 1), nullptr);
  EXPECT_EQ(encconv_origin_count(nullptr), 0u);
  encconv_trace_free(nullptr);
}

}  // namespace
