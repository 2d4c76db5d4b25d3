// Encodings whose accents are bytes of their own: what they are, with whom they agree, and that
// they stand anything.
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "support/utf.h"
#include "tests/codec_support.h"
#include "tests/stream_support.h"

namespace {

using namespace std::string_literals;

constexpr int kIso6937 = 200860, kIso6937Part2 = 200861, kT61 = 200862, kX3110 = 200863,
              kTcvn = 200864, kAnsel = 200865, kMarc8 = 200866;
constexpr int kEncodings[] = {kIso6937, kIso6937Part2, kT61, kX3110, kTcvn, kAnsel, kMarc8};

// What other converters wrote, as of glibc 2.36, yaz 5.32 and MARC::Charset 1.35.
const struct {
  const char* tool;
  int number;
  std::u16string text;
  std::string coded;
  bool isWritten = true;
  bool isRead = true;
} kPeers[] = {
    {"iconv ISO_6937, ISO_6937-2, T.61-8BIT and ANSI_X3.110", kIso6937, u"Él señor ž ş Ő ů\n",
     "\xC2"
     "El se\xC4nor \xCFz \xCBs \xCDO \xCAu\n"},
    {"iconv TCVN5712-1", kTcvn, u"Tiếng Việt: ằ Ằ ỵ ơ Ǹ\n",
     "Ti\xD5ng Vi\xD6t: \xBB \xAF \xFE \xAC N\xB0\n"},
    {"iconv TCVN5712-1", kTcvn, u"ằ ế ỹ\u0301x\u0301\n", "\xA8\xB0 \xAA\xB3 y\xB2\xB3x\xB3\n",
     false},
    {"yaz-iconv marc8; MARC::Charset", kAnsel, u"e\u0301 a\u0323\u0302 x\u0303 Łı\u20AC i\u0361t\n",
     "\xE2"
     "e \xF2\xE3"
     "a \xE4x \xA1\xB8\xC8 \xEBi\xECt\n",
     false},
    {"yaz-iconv marc8", kMarc8, u"Война e\u0301 中文 test α² x² שָׁלוֹם\n",
     "\x1B(NwOJNA\x1B(B \xE2"
     "e \x1B$1!04!BX\x1B(B test \x1B(Sa\x1Bp2\x1Bs x\x1Bp2\x1Bs \x1B(2AMylEem\x1B(B\n"},
    {"yaz-iconv marc8", kMarc8, u"δυ\u0301 и\u0306\n",
     "\x1B(Se\x1B(B\xE2\x1B(Sy\x1B(B \xE6\x1B(NI\x1B(B\n", false},
    {"MARC::Charset", kMarc8, u"ђα²₃ и мир e\u0301\n",
     "\x1B)Q\xC1\x1B)E\x1Bga\x1Bp2\x1B"
     "b3 \x1B(NI MIR \x1B(B\xE2"
     "e\x1Bs\n",
     false},
    {"MARC::Charset", kAnsel, u"éấẽệÅ\n",
     "\xE2"
     "e\xE3\xE2"
     "a\xE4"
     "e\xF2\xE3"
     "e\xEA"
     "A\n",
     true, false},
};

TEST(Accents, AgreeWithOtherConverters) {
  for (const auto& peer : kPeers) {
    const Codec& codec = codecOf(peer.number);
    const std::string text = utf16(peer.text);
    if (peer.isWritten) {
      EXPECT_EQ(hex(wholly(codec.write, text).text), hex(peer.coded)) << peer.tool;
    }
    if (!peer.isRead) continue;
    EXPECT_EQ(hex(wholly(codec.read, peer.coded).text), hex(text)) << peer.tool;
    // Every truncation, up to the accents that wait for their letter.
    for (std::size_t length = 0; length < peer.coded.size(); ++length) {
      const std::string_view cut(peer.coded.data(), length);
      EXPECT_TRUE(text.starts_with(inPieces(codec.read, cut, {}, false).text)) << length;
      EXPECT_TRUE(wholly(codec.read, cut) == inPieces(codec.read, cut, {length / 2})) << length;
    }
  }
}

TEST(Accents, ConvertAndReportHoweverTheTextIsCut) {
  const Codec &iso = codecOf(kIso6937), &ansel = codecOf(kAnsel), &tcvn = codecOf(kTcvn),
              &marc = codecOf(kMarc8);
  const Case cases[] = {
      // Letters that have no composed character; several accents; one before no letter; too many.
      {iso.read,
       "\xC1x\xC2 \xC1\xC2"
       "a\xC2\n\xC2\xA4\xC1\xC2\xC3\xC4"
       "az\xC2",
       utf16(u"x\u0300´a\u0300\u0301\xFFFD\n\xFFFD\xFFFD\xFFFD"
             u"a\u0301\u0302\u0303z\xFFFD"),
       {{7, 1, 12}, {9, 1, 16}, {10, 1, 18}, {11, 1, 20}, {17, 1, 32}}},
      // Marks behind their letter and behind none; a third one; no character at all.
      {iso.write,
       utf16(u"e\u0301é\u0302\u0303\u0301\n\u0301x\u20AC\xD83D\xDE00"
             u"a\u0301"),
       "\xC2"
       "e\xC2\xC3\xC4"
       "e?\n?x??\xC2"
       "a",
       {{10, 2, 6}, {14, 2, 8}, {18, 2, 10}, {20, 4, 11}}},
      {ansel.read,
       "\xEBi\xECt\xE1\xE1\xE1\xFF",
       utf16(u"i\u0361t\xFFFD\xFFFD\xFFFD\xFFFD"),
       {{4, 1, 6}, {5, 1, 8}, {6, 1, 10}, {7, 1, 12}}},
      {ansel.write,
       utf16(u"ệ\u0301 Å\u0300\u0323"),
       "\xF2\xE3\xE2"
       "e \xEA\xE1\xF2"
       "A",
       {}},
      // No more than three in front of a letter.
      {ansel.write,
       utf16(u"ệ\u0301\u0300"),
       "\xF2\xE3\xE2"
       "e?",
       {{4, 2, 4}}},
      {tcvn.read,
       "a\xB3\xB0"
       "b\xB3\xA9\xB4",
       utf16(u"á\u0300b\u0301ậ"),
       {}},
      {tcvn.write,
       utf16(u"\u0301a\u0301\u20AC"),
       "\xB3"
       "a\xB3?",
       {{6, 2, 3}}},
      // Marks beside other sets; half a character; sets that are not known; other controls.
      {marc.read,
       "\x1B(N\xE2_\x1B$1!04!0\x1B(ZAb\xE2\x1B(B\x1B)Nz\xF7\x85\x1B[",
       utf16(u"ъ\u0301中\xFFFD\xFFFD\xFFFD\xFFFD\xFFFDzВ\xFFFD\x1B["),
       {{11, 2, 6}, {13, 3, 8}, {16, 1, 10}, {17, 1, 12}, {18, 1, 14}, {27, 1, 20}}},
      {marc.write,
       utf16(u"ά\u0323 ộ中\u0301\x1B[€\u0301\xD800z"),
       "\x1B(S\xE2\xF2"
       "a\x1B(B \xF2\xE3o\x1B$1\xE2!04\x1B(B?[\xE2\xC8?z",
       {{12, 2, 23}, {20, 2, 27}}},
  };
  for (const Case& c : cases) checkCase(c);
}

TEST(Accents, StandAnyBytesHoweverTheyAreCut) {
  const std::string accents =
      "aeouxAEIy \n\x1B\x1B($)NB1!0gs\xC1\xC2\xC8\xE1\xE2\xEB\xF2\xB0\xB3\xB4\xA9";
  const std::string units("a\0e\0u\0\x01\x03\x03\x03\xE9\0\xC3\x1E\x23\x03\n\0\xD8\xDC", 20);
  std::vector<Direction> directions;
  for (const int number : kEncodings) {
    directions.push_back({codecOf(number).read, -1, 2, accents});
    directions.push_back({codecOf(number).write, -1, 6, units});
  }
  checkAnyBytes(directions, 300);
}

// Everything that is written comes back, that of ANSEL taken apart; and as many characters have a
// place as iconv writes, character for character; in ANSEL and MARC-8 all that Unicode takes apart
// into what it has.
TEST(Accents, KeepEveryCharacterThatHasAPlace) {
  const struct {
    int number, written;
  } counts[] = {{kIso6937, 238}, {kIso6937Part2, 234}, {kT61, 216},    {kX3110, 241},
                {kTcvn, 196},    {kAnsel, 449},        {kMarc8, 16454}};
  for (const auto& c : counts) {
    const Codec& codec = codecOf(c.number);
    std::string text;
    int written = 0;
    for (char16_t unit = 0xA0; unit < 0xFFFF; ++unit) {
      if (isSurrogate(unit)) continue;
      const std::string alone = utf16(std::u16string(1, unit));
      const Result coded = wholly(codec.write, alone);
      if (coded.state.replaced) continue;
      ++written;
      const std::string back = wholly(codec.read, coded.text).text;
      if (c.number < kAnsel) {
        ASSERT_EQ(hex(back), hex(alone));
      } else {
        ASSERT_EQ(hex(wholly(codec.write, back).text), hex(coded.text)) << hex(alone);
      }
      text += alone + utf16(u" ");
    }
    EXPECT_EQ(written, c.written) << c.number;
    const std::string coded = wholly(codec.write, text).text;
    const std::string back = wholly(codec.read, coded).text;
    EXPECT_TRUE(c.number >= kAnsel || back == text) << c.number;
    EXPECT_EQ(wholly(codec.write, back).text, coded) << c.number;
  }
}

// By streams: the places of what is malformed and of what has no place.
TEST(Accents, AreReportedByStreams) {
  const StreamResult read = stream(settingsFor(kIso6937, 65001, "hex"),
                                   "a\xC2\n\xC2"
                                   "e\xC2\xC3z\xA4");
  EXPECT_EQ(read.text, "a<0xC2>\néz\u0301\u0302<0xA4>");
  ASSERT_EQ(read.errors.size(), 2u);
  EXPECT_EQ(read.errors[0].offset, 1u);
  EXPECT_EQ(read.errors[1].offset, 8u);
  const StreamResult written = stream(settingsFor(65001, kAnsel, "hex"), "e\u0301\u20ACж\u0301ộ");
  EXPECT_EQ(hex(written.text), hex("\xE2"
                                   "e\xC8&#x0436;&#x0301;\xF2\xE3o"));
  ASSERT_EQ(written.errors.size(), 2u);
  EXPECT_EQ(written.errors[0].offset, 6u);
  EXPECT_EQ(written.errors[1].offset, 8u);
}

// A mark joins no letter across a character that has no place, whatever that is treated as.
TEST(Accents, AreTreatedAlikeHoweverTheTextIsCut) {
  const StreamSettings dropping = settingsFor(1200, kIso6937, "drop");
  EXPECT_EQ("SNA", stream(dropping, utf16(u"SN\u0305\u0308\u0308A"), [] { return 1; }).text);
  // Nor across what is malformed.
  EXPECT_EQ("eA", stream(settingsFor(65001, kIso6937, "drop"), "e\xFF\xCC\x81\x41").text);
  // Besides those above: 1258, Big5-HKSCS, JIS X 0213 in three forms, 1390, Johab of the standard.
  std::vector<int> targets = {1258, 200706, 200723, 200724, 200730, 1390, 200453};
  targets.insert(targets.end(), std::begin(kEncodings), std::end(kEncodings));
  const std::vector<char16_t> letters = {u'N',      u'e',      u'\x00CA', u'\x304B', u'\x0436',
                                         u'\x02E9', u'\x1112', u'\x1161', u' ',      u'\x0304',
                                         u'\x0308', u'\x0301', u'\x0305', u'\x309A', u'\x02E5',
                                         u'\x11A8', u'\x20AC', u'\x1B',   u'\xDC00'};
  std::minstd_rand0 random(12);
  for (const int target : targets) {
    for (const char* treatment :
         {"drop", "substitute", "hex", "best-fit,drop", "translit,drop", "compose,hex"}) {
      SCOPED_TRACE(std::to_string(target) + " " + treatment);
      const StreamSettings settings = settingsFor(1200, target, treatment);
      for (int i = 0; i < 100; ++i) {
        std::u16string text;
        for (int j = 0; j < 10; ++j) text += letters[random() % letters.size()];
        ASSERT_EQ(stream(settings, utf16(text)), stream(settings, utf16(text), [] { return 1; }))
            << hex(utf16(text));
      }
    }
  }
}

}  // namespace
