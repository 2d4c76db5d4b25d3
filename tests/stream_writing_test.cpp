// Tests of what streams write for characters that the target lacks: other characters, of which they
// tell.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "encoding/approximations.h"
#include "encoding/composer.h"
#include "encoding/composition_pairs.h"
#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

constexpr int kUtf8 = 65001;

// "offset+length line U+hex as text", for each.
std::string describe(const std::vector<StreamError>& approximations) {
  std::string text;
  for (const StreamError& a : approximations) {
    char place[64];
    std::snprintf(place, sizeof place, "%llu+%u line %llu U+%04X as ",
                  static_cast<unsigned long long>(a.offset), a.length,
                  static_cast<unsigned long long>(a.line), static_cast<unsigned int>(a.codePoint));
    text += (text.empty() ? "" : ", ") + (place + std::string(a.written));
  }
  return text;
}

struct Writing {
  int from, to;
  std::string treatment, input, output, approximations;
  std::size_t errors = 0;
};

void expectAll(const std::vector<Writing>& writings) {
  for (const Writing& w : writings) {
    SCOPED_TRACE(std::to_string(w.to) + " " + w.treatment + " of " + hex(w.input));
    const StreamSettings settings = settingsFor(w.from, w.to, w.treatment);
    const StreamResult result = stream(settings, w.input);
    EXPECT_EQ(hex(result.text), hex(w.output));
    EXPECT_EQ(describe(result.approximations), w.approximations);
    EXPECT_EQ(result.errors.size(), w.errors);
    EXPECT_EQ(result, stream(settings, w.input, [] { return 1; }));
    // Without a handler the same is written and counted.
    StreamConverter quiet;
    DataBuffer out;
    EXPECT_EQ(quiet.begin(settings), StreamStatus::kGood);
    StreamStatus status = quiet.push(bytesOf(w.input), w.input.size(), out);
    if (status == StreamStatus::kGood) status = quiet.finish(out);
    EXPECT_EQ(status, result.status);
    EXPECT_EQ(textOf(out), result.text);
    EXPECT_EQ(quiet.approximationCount(), result.approximations.size());
    if (!result.approximations.empty()) {
      EXPECT_EQ(quiet.firstApproximation(), result.approximations[0]);
    }
  }
}

}  // namespace

TEST(StreamWriting, TellsOfWhatIsAlwaysWrittenAsSomethingElse) {
  expectAll({
      {kUtf8, 932, "stop", "a\u00A0b\n¥日", "a b\n\\\x93\xFA",
       "1+2 line 1 U+00A0 as  , 5+2 line 2 U+00A5 as \\"},
      {kUtf8, 50220, "stop", "日\u00A0本", "\x1B$BF|\x1B(B \x1B$BK\\\x1B(B",
       "3+2 line 1 U+00A0 as  "},
      {1252, 20127, "drop", "\xA0x\xA0\xE9", " x ",
       "0+1 line 1 U+00A0 as  , 2+1 line 1 U+00A0 as  ", 1},
      {1200, 28596, "hex", "\x61\x06\xF9\x06\x31\0"s, "191",
       "0+2 line 1 U+0661 as 1, 2+2 line 1 U+06F9 as 9"},
      {kUtf8, 51932, "stop", "\uE060", "\xF0\xA1", "0+3 line 1 U+E060 as \u965D"},
      {kUtf8, kCodePageEucJp, "stop", "日¥\n‾é", "\xC6\xFC\\\n~\x8F\xAB\xB1",
       "3+2 line 1 U+00A5 as \\, 6+3 line 2 U+203E as ~"},
      {1201, kCodePageEucJp, "drop", "\0\xA5\xD8\0\x20\x3E"s, "\\~",
       "0+2 line 1 U+00A5 as \\, 4+2 line 1 U+203E as ~", 1},
      {65000, kCodePageEucJp, "stop", "a+AKU-b", "a\\b", "2+3 line 1 U+00A5 as \\"},
      {kUtf8, 930, "stop", "a～日∥", "\x62\x0E\x43\xA1\x45\x62\x44\x7C\x0F",
       "1+3 line 1 U+FF5E as 〜, 7+3 line 1 U+2225 as ‖"},
      // What reads back as it was, or as text that means the same, is no approximation.
      {kUtf8, 1258, "stop", "Ắ\u00A0", "\xC3\xEC\xA0", ""},
      {932, 932, "stop", "\x5C\xA0", "\x5C\xA0", ""},
  });
}

TEST(StreamWriting, TriesBestFits) {
  expectAll({
      {kUtf8, 1252, "best-fit,substitute=?", "ąＡ？\u2212\u4E00", "aA?-?",
       "0+2 line 1 U+0105 as a, 2+3 line 1 U+FF21 as A, 5+3 line 1 U+FF1F as ?, 8+3 line 1 U+2212 "
       "as -",
       1},
      {kUtf8, 819, "best-fit", "“é", "\"\xE9", "0+3 line 1 U+201C as \""},
      {kUtf8, 1252, "best-fit", "ą\u4E00x", "a", "0+2 line 1 U+0105 as a", 1},
      {kUtf8, 1252, "best-fit,drop", "\u4E00ą\xFF\U0001F600z", "az", "3+2 line 1 U+0105 as a", 3},
      {kUtf8, 932, "best-fit,hex", "〜‖−—¢£¬‾ą",
       "\x81\x60\x81\x61\x81\x7C\x81\x5C\x81\x91\x81\x92\x81\xCA~&#x0105;",
       "0+3 line 1 U+301C as ～, 3+3 line 1 U+2016 as ∥, 6+3 line 1 U+2212 as －, 9+3 line 1 "
       "U+2014 as ―, 12+2 line 1 U+00A2 as ￠, 14+2 line 1 U+00A3 as ￡, 16+2 line 1 U+00AC as ￢, "
       "18+3 line 1 U+203E as ~",
       1},
      {kUtf8, 50221, "best-fit", "日〜", "\x1B$BF|!A\x1B(B", "3+3 line 1 U+301C as ～"},
      {1252, 51932, "best-fit", "\xAC", "\xA2\xCC", "0+1 line 1 U+00AC as ￢"},
      {1252, 866, "best-fit", "\xAB", "<", "0+1 line 1 U+00AB as <"},
      {kUtf8, kCodePageEucJp, "best-fit,hex", "～\u2225\uFF0D—￠ạ\uFA19ą①",
       "\x8F\xA2\xB7\xA1\xC2\xA1\xDD\xA1\xBD\xA1\xF1\x61\xBF\xC0\x8F\xAB\xA8&#x2460;",
       "3+3 line 1 U+2225 as ‖, 6+3 line 1 U+FF0D as −, 9+3 line 1 U+2014 as ―, 12+3 line 1 U+FFE0 "
       "as ¢, 15+3 line 1 U+1EA1 as a, 18+3 line 1 U+FA19 as 神",
       1},
      {932, kCodePageEucJp, "best-fit", "\x81\x7C\x88\xA0", "\xA1\xDD\xB0\xA2",
       "0+2 line 1 U+FF0D as −"},
      {kUtf8, 55000, "best-fit,substitute", "ça“1”ά–ж", "ca\"1\"A-?",
       "0+2 line 1 U+00E7 as c, 3+3 line 1 U+201C as \", 7+3 line 1 U+201D as \", 10+2 line 1 "
       "U+03AC as A, 12+3 line 1 U+2013 as -",
       1},
      {kUtf8, 939, "best-fit,substitute", "é日ğ", "\x85\x0E\x45\x62\x0F\x6F",
       "0+2 line 1 U+00E9 as e", 1},
      // The best fit of a code page is none where the codec in front of it lacks that too.
      {kUtf8, kCodePageHz, "best-fit,drop", "\uF900\uF901", "~{8|~}", "3+3 line 1 U+F901 as 更", 1},
      {kUtf8, kUtf8, "best-fit", "ą", "ą", ""},
      {kUtf8, 10000, "best-fit,substitute", "Ą", "?", "", 1},  // which has none
  });
}

TEST(StreamWriting, Transliterates) {
  constexpr int kAscii = 20127, kLatin1 = 819, kLatin2 = 28592;
  const std::string script = "\U0001D49C\U0001D4CE";
  expectAll({
      {kUtf8, kAscii, "translit,substitute=?", "Straße: 5 €\u2026\u4E00", "Strasse: 5 EUR...?",
       "4+2 line 1 U+00DF as ss, 11+3 line 1 U+20AC as EUR, 14+3 line 1 U+2026 as ...", 1},
      // The first candidate that is held: the letter with fewer marks.
      {kUtf8, kLatin1, "translit", "ǖể㎡", "\xFC\xEAm\xB2",
       "0+2 line 1 U+01D6 as ü, 2+3 line 1 U+1EC3 as ê, 5+3 line 1 U+33A1 as m²"},
      {kUtf8, kAscii, "translit", "ǖể㎡", "uem^2",
       "0+2 line 1 U+01D6 as u, 2+3 line 1 U+1EC3 as e, 5+3 line 1 U+33A1 as m^2"},
      // A mark of its own goes, but for the stroke that makes a sign say the contrary.
      {kUtf8, kAscii, "translit,drop", "e\u0301=\u0338≠\uFEFFx", "e=!=x",
       "1+2 line 1 U+0301 as , 6+3 line 1 U+2260 as !=, 9+3 line 1 U+FEFF as ", 1},
      {kUtf8, kLatin2, "compose,translit", "e\u0301\u0302“", "\xE9\"",
       "3+2 line 1 U+0302 as , 5+3 line 1 U+201C as \""},
      // Beyond the basic plane, in all forms of Unicode.
      {kUtf8, kAscii, "translit", script, "Ay", "0+4 line 1 U+1D49C as A, 4+4 line 1 U+1D4CE as y"},
      {1200, kAscii, "translit", "\x35\xD8\x9C\xDC"s, "A", "0+4 line 1 U+1D49C as A"},
      {kUtf8, kAscii, "translit,drop", "\xED\xA0\xB5\xED\xB2\x9C", "A", "0+6 line 1 U+1D49C as A"},
      {kUtf8, 50220, "translit", script + "日½", "Ay\x1B$BF|\x1B(B 1/2 ",
       "0+4 line 1 U+1D49C as A, 4+4 line 1 U+1D4CE as y, 11+2 line 1 U+00BD as  1/2 "},
      {12000, kCodePageHz, "translit", "\x9C\xD4\x01\0\0\x4E\0\0"s, "A~{R;~}",
       "0+4 line 1 U+1D49C as A"},
      // A best fit comes first where it is asked for too.
      {kUtf8, 1252, "translit", "−Ω", "\x96O", "0+3 line 1 U+2212 as –, 3+2 line 1 U+03A9 as O"},
      {kUtf8, 20127, "best-fit,translit", "«Ж", "<ZH",
       "0+2 line 1 U+00AB as <, 2+2 line 1 U+0416 as ZH"},
      {kUtf8, kUtf8, "translit", "é\xFF", "é", "", 1},
      // One beyond the first plane, by a codec.
      {kUtf8, 200706, "translit", "\uFA6C", "\x9B\xAD", "0+3 line 1 U+FA6C as 𤋮"},
      // Texts of many characters.
      {kUtf8, 932, "translit", "㌕", "\x83\x4C\x83\x8D\x83\x4F\x83\x89\x83\x80",
       "0+3 line 1 U+3315 as キログラム"},
      {kUtf8, 1256, "translit", "\uFDFA",
       "\xD5\xE1\xEC \xC7\xE1\xE1\xE5 \xDA\xE1\xED\xE5 \xE6\xD3\xE1\xE3",
       "0+3 line 1 U+FDFA as صلى الله عليه وسلم"},
  });
}

// Every best fit is a character of its code page, for one that it lacks.
TEST(StreamWriting, HasBestFitsForWhatIsLackingOnly) {
  std::size_t pages = 0;
  for (const EncodingRow& row : encodingRows()) {
    if (row.bestFit == nullptr) continue;
    SCOPED_TRACE(row.number);
    ++pages;
    std::size_t fits = 0;
    for (char32_t unit = 1; unit < 0x10000; ++unit)
      fits += fast::hasApproximation(row.number, unit, {.bestFit = true}) ? 1 : 0;
    EXPECT_GE(fits, 7u);
  }
  EXPECT_GT(pages, 80u);
}

TEST(StreamWriting, ComposesWhatItsTargetLacksTakenApart) {
  expectAll({
      {kUtf8, 1252, "compose", "Re\u0301sume\u0301 u\u0308\n", "R\xE9sum\xE9 \xFC\n", ""},
      {kUtf8, 932, "compose", "か\u3099き\u3099く\n", "\x82\xAA\x82\xAC\x82\xAD\n", ""},
      {kUtf8, 50220, "compose", "は\u309A", "\x1B$B$Q\x1B(B", ""},
      {kUtf8, 949, "compose", "\u1112\u1161\u11AB\u1100\u1173\u11AF", "\xC7\xD1\xB1\xDB", ""},
      {kUtf8, 51949, "compose", "\u1100\u1161x", "\xB0\xA1x", ""},
      {1201, 1252, "compose", "\0\x65\x03\x01\0\x65"s, "\xE9\x65", ""},
      {12000, 1252, "compose", "e\0\0\0\x01\x03\0\0"s, "\xE9", ""},
      {65000, 1252, "compose,drop", "e+AwEAZQMB-e+AwEDAg-", "\xE9\xE9\xE9", "", 1},
      {20261, 1252, "compose,drop", "a\xCA\x65", "ae", "", 1},  // an accent of what follows it
      {kUtf8, kCodePageEucJp, "compose", "か\u3099e\u0301a", "\xA4\xAC\x8F\xAB\xB1\x61", ""},
      {1200, 55000, "compose", "e\0\0\x03n\0\x03\x03"s, "\x04\x7D", ""},
      {1201, kCodePageEucJp, "compose,drop", "\0e\x03\x01\xD8\0\0e\x03\x01"s,
       "\x8F\xAB\xB1\x8F\xAB\xB1", "", 1},
      {65000, 55000, "compose,best-fit,drop", "e+AwAAZQMBAGEDAdg9AGEDAA-",
       "\x04\x05"
       "a\x7F",
       "", 2},
      // A letter and a mark of 1258, on the way to a page that has them as one.
      {1258, 1252, "compose", "o\xCC", "\xF2", ""},
      // What the target has as it is stays; what it does not have composed is told.
      {kUtf8, 1258, "compose", "e\u0301", "e\xEC", ""},
      {kUtf8, 1252, "compose,hex", "x\u0301a\u0302\u0301", "x&#x0301;\xE2&#x0301;", "", 2},
      {kUtf8, 1252, "compose,best-fit,drop", "e\u0301\u0105\u0301e\u0301\xFFz", "\xE9\x61\xB4\xE9z",
       "3+2 line 1 U+0105 as a, 5+2 line 1 U+0301 as ´", 1},
      {kUtf8, 1252, "compose", "\U0001F600", "", "", 1},
  });
  const StreamResult stopped =
      stream(settingsFor(kUtf8, 1252, "compose"), "e\u0301\n e\u0301\u0431");
  ASSERT_EQ(stopped.errors.size(), 1u);
  EXPECT_EQ(stopped.errors[0].offset, 8u);
  EXPECT_EQ(stopped.errors[0].line, 2u);
  EXPECT_EQ(stopped.text, "\xE9\n \xE9");
}

TEST(StreamWriting, LooksAtEveryMarkThatComposes) {
  for (const fast::CompositionPair& pair : fast::kCompositionPairs) {
    EXPECT_EQ(fast::compose(pair.first, pair.second), pair.composed);
    EXPECT_TRUE(fast::mayCompose(pair.second)) << pair.second;
  }
}

// A long text, of which blocks and pieces end anywhere.
TEST(StreamWriting, ComposesAcrossBlocksAndPieces) {
  std::string text, composed;
  for (int i = 0; i < 9000; ++i) {
    text += std::string(static_cast<std::size_t>(i % 5), 'x') + "e\u0301";
    composed += std::string(static_cast<std::size_t>(i % 5), 'x') + "é";
  }
  for (const int from : {kUtf8, 1201, 65000}) {
    const std::string apart = stream(settingsFor(kUtf8, from), text).text;
    for (const int to : {1252, 55000, kCodePageEucJp}) {
      const std::string expected = stream(settingsFor(kUtf8, to), composed).text;
      const StreamSettings settings = settingsFor(from, to, "compose");
      for (const std::size_t size :
           {apart.size(), std::size_t{1}, std::size_t{7}, std::size_t{4099}}) {
        EXPECT_TRUE(stream(settings, apart, [&] { return size; }).text == expected)
            << from << " to " << to << " by " << size;
      }
    }
  }
}

// Wherever the room for what is written ends.
TEST(StreamWriting, KeepsPairsOfSurrogatesTogetherWhereItComposes) {
  for (const std::string front : {"", "a"}) {
    std::string text = front;
    for (int i = 0; i < 20000; ++i) text += "😀";
    for (const int from : {1200, 1201}) {
      const StreamResult result =
          stream(settingsFor(from, 54936, "compose"), stream(settingsFor(kUtf8, from), text).text);
      EXPECT_TRUE(result == stream(settingsFor(kUtf8, 54936), text)) << from << front;
    }
  }
}

TEST(StreamWriting, ReadsWhatIsTriedInFrontOfATreatment) {
  StreamSettings settings;
  for (const auto& [text, treatment] :
       {std::pair{"best-fit", StreamTreatment::kStop},
        {"best-fit,best-fit,drop", StreamTreatment::kDrop},
        {"best-fit,substitute=a,best-fit", StreamTreatment::kSubstitute}}) {
    ASSERT_TRUE(parseStreamTreatment(text, settings)) << text;
    EXPECT_TRUE(settings.bestFit);
    EXPECT_EQ(settings.treatment, treatment);
  }
  EXPECT_EQ(settings.substitute, "a,best-fit");
  for (const char* text : {"best-fit,", ",best-fit", "drop,best-fit", "best-fit=a", "bestfit"}) {
    EXPECT_FALSE(parseStreamTreatment(text, settings)) << text;
  }
  ASSERT_TRUE(parseStreamTreatment("hex", settings));
  EXPECT_FALSE(settings.bestFit);
}

// The characters of one code are each where the code is, and raw copies that once.
TEST(StreamWriting, KnowsTheCodeOfSeveralCharacters) {
  constexpr int kBig5Hkscs = 200706, kTscii = 200519;
  const StreamResult result = stream(settingsFor(kBig5Hkscs, 1252, "raw"), "A\x88\x62z");
  EXPECT_EQ("A\xCA\x88\x62z", result.text);  // 1252 has the letter, but not its mark
  ASSERT_EQ(1u, result.errors.size());
  EXPECT_EQ(1u, result.errors[0].offset);
  EXPECT_EQ(2u, result.errors[0].length);

  // All at once: 8A, of two characters, is told apart at the end only.
  StreamConverter converter;
  DataBuffer out;
  DataBufferOutput output(out);
  ASSERT_EQ(StreamStatus::kGood, converter.begin(settingsFor(kTscii, 932, "raw")));
  ASSERT_EQ(StreamStatus::kGood, converter.finish(bytesOf("A\x8A\xA8"s), 3, output));
  EXPECT_EQ("A\x8A\xA8", textOf(output.content()));
  EXPECT_EQ(3u, converter.errorCount());
}
