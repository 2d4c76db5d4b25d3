#include <algorithm>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "encoding/clean_conversion.h"
#include "support/japanese.h"
#include "support/korean.h"
#include "support/utf.h"
#include "tests/codec_support.h"
#include "tests/stream_support.h"

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

// An SO of the text stays where no reader takes it for a shift: in front of an SI or a line end.
TEST(Iso2022, ShiftsOfTheTextStayWhereTheyAreHarmless) {
  for (const std::string text : {"a\x0E\nb", "a\x0E\rb", "a\x0E\x0F"}) {
    const ConversionResult written = convert(65001, 50220, text + "b");
    EXPECT_TRUE(written.ok);
    EXPECT_EQ(hex(written.out), hex(text + "b"));
  }
  const std::string shifted = "a\016b";
  EXPECT_NE(hex(convert(65001, 50220, shifted).out), hex(shifted));
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

// ---- The encodings that are driven by a table of designations ----

constexpr int kCn = 50227, kCnTraditional = 50229, kCnExt = 200850, kJp1 = 200851, kJp2 = 200852,
              kJp3 = 200853, kJp2004 = 200854, kJpExt = 200855, kJis8 = 200856, kCompound = 200857;
constexpr int kSchemes[] = {kCn,  kCnTraditional, kCnExt, kJp1,  kJp2,
                            kJp3, kJp2004,        kJpExt, kJis8, kCompound};

// What other converters wrote, as of glibc 2.36, Python 3.11 and ICU 72.
const struct {
  const char* tool;
  int number;
  const char *text, *coded;
  bool isWritten = true;
} kPeers[] = {
    {"iconv ISO-2022-JP-2", kJp2, "件名：丂 é Ωabc\n¥100 ～ ｱｲ 俱你 한글 ·\r\n",
     "\x1B$B7oL>!'\x1B$(D0!\x1B(B \x1B$(D+1\x1B(B \x1B$B&8\x1B(Babc\n\x1B(J\\100\x1B(B \x1B$(D\"7"
     "\x1B(B \x1B(I12\x1B(B \x1B$A>cDc\x1B(B \x1B$(CGQ1[\x1B(B \x1B.A\x1BN7\r\n"},
    {"uconv ISO_2022,locale=ja,version=2", kJp2, "é¥a ¥\n¥ Ω 漢字é\r\nά",
     "\x1B.A\x1BNi\x1BN%a \x1BN%\n\x1B(J\\ \x1B$B&8\x1B(B \x1B$B4A;z\x1B.A\x1BNi\x1B(B\r\n\x1B.F"
     "\x1BN\\",
     false},
    {"iconv ISO-2022-JP-3", kJp3, "俱 か゚き 𠀋〘丂é̀\nｱ¥ 亜\n",
     "\x1B$(Q.!\x1B(B \x1B$(O$w$-\x1B(B \x1B$(O.\"\"X\x1B$(P!\"\x1B$(O)_+\\\x1B(B\n\x1B(I1\x1B(J\\"
     "\x1B(B \x1B$B0!\x1B(B\n"},
    {"Python iso2022_jp_3", kJp3, "か゚き 𠀋〘丂é̀\n亜\n",
     "\x1B$(O$w\x1B$B$-\x1B(B \x1B$(O.\"\"X\x1B$(P!\"\x1B$(O)_+\\\x1B(B\n\x1B$B0!\x1B(B\n", false},
    {"Python iso2022_jp_2004", kJp2004, "俱 か゚き 𠀋〘丂é̀\n亜\n",
     "\x1B$(Q.!\x1B(B \x1B$(Q$w\x1B$B$-\x1B(B \x1B$(Q.\"\"X\x1B$(P!\"\x1B$(Q)_+\\\x1B(B\n\x1B$B0!"
     "\x1B(B\n",
     false},
    {"Python iso2022_jp_1", kJp1, "丂é¥ ~\\漢\n", "\x1B$(D0!+1\x1B(J\\\x1B(B ~\\\x1B$B4A\x1B(B\n"},
    {"Python iso2022_jp_ext", kJpExt, "丂ｱ¥漢\n", "\x1B$(D0!\x1B(I1\x1B(J\\\x1B$B4A\x1B(B\n"},
    {"iconv ISO-2022-CN and -CN-EXT", kCn, "中文 abc 個仉個\n中仉囀龘\r\n",
     "\x1B$)A\x0EVPND\x0F abc \x1B$)G\x0ET6\x1B$*H\x1BN!3T6\x0F\n\x1B$)A\x0EVPXk\x1B$)Gze\x1B$*H"
     "\x1BNrD\x0F\r\n"},
    {"iconv ISO-2022-CN-EXT", kCnExt, "中文 abc 個丂㐀\n𠀋",
     "\x1B$)A\x0EVPND\x0F abc \x1B$)G\x0ET6\x1B$+J\x1BO!&\x1B$+L\x1BO\",\x0F\n\x1B$+I\x1BO!D"},
    {"uconv ISO_2022,locale=ja,version=4", kJis8, "Aｱ日本ﾝ\n", "A\xB1\x1B$BF|K\\\x1B(J\xDD\n\x1B(B",
     false},
    {"uconv x11-compound-text", kCompound, "é\né Aşα日本丂한é",
     "\xE9\n\xE9 "
     "A\x1B-B\xBA\x1B-F\xE1\x1B$)B\xC6\xFC\xCB\xDC\x1B$)D\xB0\xA1\x1B$)C\xC7\xD1\x1B-A\xE9"},
    {"by hand: what is in the right half at the beginning is there at the end", kCompound, "ş",
     "\x1B-B\xBA\x1B-A"},
    // Pairs in the left half, beside letters in the right one.
    {"by hand", kCompound, "亜é中é\né", "\x1B$(B0!\xE9\x1B$AVP\xE9\x1B(B\n\xE9", false},
    {"by hand", kCnTraditional, "中文 仉亚\n",
     "\x1B$)G\x0E"
     "DcEF\x0F \x1B$*H\x1BN!3\x1B$)A\x0EQG\x0F\n"},
};

TEST(Iso2022Sets, AgreeWithOtherConverters) {
  for (const auto& peer : kPeers) {
    const Codec& codec = codecOf(peer.number);
    const std::string text = convert(65001, 1200, peer.text).out, coded = peer.coded;
    const Result read = wholly(codec.read, coded);
    EXPECT_EQ(hex(read.text), hex(text)) << peer.tool;
    EXPECT_FALSE(read.state.replaced) << peer.tool;
    if (peer.isWritten) {
      EXPECT_EQ(hex(wholly(codec.write, text).text), hex(coded)) << peer.tool;
    }
    // Every truncation is read up to its end as the whole text is, and alike in pieces.
    for (std::size_t length = 0; length < coded.size(); ++length) {
      const std::string_view cut(coded.data(), length);
      const Result begun = inPieces(codec.read, cut, {}, false), ended = wholly(codec.read, cut);
      EXPECT_TRUE(text.starts_with(begun.text)) << peer.tool << ' ' << length;
      EXPECT_TRUE(ended.text.starts_with(begun.text)) << peer.tool << ' ' << length;
      EXPECT_TRUE(ended == inPieces(codec.read, cut, {length / 2})) << peer.tool << ' ' << length;
    }
  }
}

TEST(Iso2022Sets, ConvertAndReportHoweverTheTextIsCut) {
  const Codec &cn = codecOf(kCn), &jp2 = codecOf(kJp2), &jp3 = codecOf(kJp3);
  const Case cases[] = {
      // All forms of a designation; what the end of a line forgets, and what it keeps.
      {jp2.read,
       "\x1B$@0!\x1B$(B0!\x1B&@\x1B$B0!\x1B$(A>c\n0!\x1B(J\\\r\n\\\x1B(I1\n1",
       utf16(u"亜亜亜俱\n0!¥\r\n¥ｱ\n1"),
       {}},
      {cn.read,
       "\x1B$)A\x0EVP VP\nVP\x0EVP\x0F\x1B$)G\x1B$*H\x0E!\"\x1BN!3!\"\r\x0E!\"\n\x1BN!3",
       utf16(u"中 中\nVP\xFFFD\xFFFD，仉，\r，\n\xFFFD"),
       {{13, 1, 12}, {14, 2, 14}, {39, 4, 28}}},
      // Half a pair, an unassigned one, bytes of 8 bits; half a character behind a single shift.
      {cn.read,
       "\x1B$)A\x0EV V\x0FV\x0E)!V\x80\xD6\xD0\x1B$*H\x1BN!\n\x1BN",
       utf16(u"\xFFFD \xFFFDV\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\n\xFFFD"),
       {{5, 1, 0},
        {7, 1, 4},
        {11, 2, 8},
        {13, 1, 10},
        {14, 1, 12},
        {15, 1, 14},
        {16, 1, 16},
        {21, 3, 18},
        {25, 2, 22}}},
      {jp2.read,
       "\x1BNi\x1B.A\x1BNi\x1BN\x1BN\x7F\x1B.Z\x1BNiz",
       utf16(u"\xFFFDéÿ\xFFFD\xFFFDz"),
       {}},
      // Sets that are not known, until one is or the line ends; other controls are text.
      {jp3.read,
       "\x1B$(D0!0!\x1B(Zab c\x1B$B0!\x1B$)C\x1B$AVP\nVP\x1B[m\x1B\x0E\x1B(",
       utf16(u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD "
             u"\xFFFD亜\xFFFD\xFFFD\xFFFD\nVP\x1B[m\x1B\x0E\x1B("),
       {{0, 4, 0},
        {4, 2, 2},
        {6, 2, 4},
        {8, 3, 6},
        {11, 1, 8},
        {12, 1, 10},
        {14, 1, 14},
        {20, 4, 18},
        {24, 3, 20},
        {27, 2, 22}}},
      // A letter that begins a sequence, at the end of one; and the sequence that is none.
      {jp3.write,
       utf16(u"かか゚かæ̀æ") + std::string("\x4B\x30", 2),
       "\x1B$B$+\x1B$(O$w$++D)\\$+\x1B(B",
       {}},
      {jp3.write,
       utf16(u"か゚") + std::string("\x4B\x30\xCA", 3),
       "\x1B$(O$w$+\x1B(B?",
       {{6, 1, 11}}},
      // Controls that would be read as shifts, and those that would not; no character; no place.
      {cn.write,
       utf16(u"\x1B$\x1BN\x1B(\x1B[\x1B\x1B\x0E中\x0F\x1B"),
       "?$?N?(\x1B[\x1B\x1B?\x1B$)A\x0EVP\x0F?\x1B",
       {{0, 2, 0}, {4, 2, 2}, {8, 2, 4}, {20, 2, 10}, {24, 2, 19}}},
      // Bytes of eight bits without a set, of half a pair, and below the right half.
      {codecOf(kCompound).read,
       "\x1B$)BZ\xC6z\xC6\xFC\x80\x1B-Z\xE9\x1B-A\xE9",
       utf16(u"Z\xFFFDz日\xFFFD\xFFFD\xFFFDé"),
       {{5, 1, 2}, {9, 1, 8}, {10, 3, 10}, {13, 1, 12}}},
      {jp2.write, utf16(u"\x1BN\x1BO\xDE00丏\xD83D\xDE00亜¥a €") + "z", "?N?O?\x1B$A\x1B(B?", {}},
  };
  for (const Case& c : cases) {
    if (!c.places.empty() || !wholly(c.convert, c.in).state.replaced) checkCase(c);
  }
}

TEST(Iso2022Sets, StandAnyBytesHoweverTheyAreCut) {
  const std::string shifts =
      "\x1B\x1B\x1B$$()*+.&@ABCDEGHIJFOPQMNO\x0E\x0F\r\n0!$\"VPi~+\x20\x7F\x80";
  // Letters that begin sequences and their second halves among them, both bytes of which are here.
  const std::string units(
      "\0\0\0\0az\x1B$(\n\x0E\x0F\x4B\x30\x4B\x30\x9A\x30\xE9\x02\xE5\x4E\xD8\xDC", 24);
  std::vector<Direction> directions;
  for (const int number : kSchemes) {
    directions.push_back({codecOf(number).read, -1, 4, shifts});
    const bool isSevenBit = number != kJis8 && number != kCompound;
    directions.push_back({codecOf(number).write, isSevenBit ? 0 : -1, 6, units});
  }
  checkAnyBytes(directions, 300);
}

// Everything that is written comes back, each on a line of its own and in one text. As many
// characters have a place as with the peers, character for character: glibc for -JP-2, -JP-3 and
// -CN-EXT, and -CN; Python for the others, but for FF5E, and 0xFF5F, FF60, 2014 of -JP-2004.
TEST(Iso2022Sets, KeepEveryCharacterThatHasAPlace) {
  const struct {
    int number;
    int written;
  } counts[] = {{kCn, 16299},     {kCnTraditional, 16299}, {kCnExt, 51284},
                {kJp1, 12948},    {kJp2, 18670},           {kJp3, 11274},
                {kJp2004, 11209}, {kJpExt, 13011},         {kJis8, 13011}};
  for (const auto& c : counts) {
    const Codec& codec = codecOf(c.number);
    std::string lines, text;
    int written = 0;
    for (char32_t scalar = 0xA0; scalar < 0x30000; ++scalar) {
      if (isSurrogate(scalar) || (scalar > 0xFFFF && scalar < 0x20000)) continue;
      const std::u16string units =
          scalar < 0x10000 ? std::u16string(1, static_cast<char16_t>(scalar))
                           : std::u16string{static_cast<char16_t>(highSurrogateOf(scalar)),
                                            static_cast<char16_t>(lowSurrogateOf(scalar))};
      const std::string alone = utf16(units);
      const Result coded = wholly(codec.write, alone);
      if (coded.state.replaced) continue;
      ++written;
      ASSERT_EQ(hex(wholly(codec.read, coded.text).text), hex(alone));
      lines += alone + std::string("\n", 2);
      text += alone;
    }
    EXPECT_EQ(written, c.written) << c.number;
    EXPECT_TRUE(wholly(codec.read, wholly(codec.write, lines).text).text == lines) << c.number;
    EXPECT_TRUE(wholly(codec.read, wholly(codec.write, text).text).text == text) << c.number;
  }
}

// Texts that can be written come back, as streams cut them; EncConvert converts none of these.
TEST(Iso2022Sets, ComeBackFromStreams) {
  std::mt19937 random(2022);
  const char32_t parts[] = {U'a', U' ', U'\n', U'中', U'個', U'仉', U'丏',   U'か', 0x309A, U'ｱ',
                            U'é', U'α', U'한', U'¥',  0x1B,  U'(',  0x2000B, U'㐀', U'龘',  U'ǎ'};
  for (int round = 0; round < 200; ++round) {
    for (const int number : kSchemes) {
      std::u32string scalars;
      for (std::size_t size = random() % 60; size != 0; --size) {
        scalars += parts[random() % std::size(parts)];
      }
      const std::string text(reinterpret_cast<const char*>(scalars.data()), 4 * scalars.size());
      const auto pieces = [&] { return random() % 7 + 1; };
      StreamResult coded = stream(settingsFor(12000, number, "drop"), text, pieces);
      std::ranges::sort(coded.errors, {}, &StreamError::offset);
      const StreamResult back = stream(settingsFor(number, 12000), coded.text, pieces);
      std::string kept;
      std::size_t done = 0;
      for (const StreamError& error : coded.errors) {
        const auto offset = static_cast<std::size_t>(error.offset);
        kept += text.substr(done, offset - done);
        done = offset + error.length;
      }
      ASSERT_EQ(hex(back.text), hex(kept + text.substr(done))) << number << hex(coded.text);
      ASSERT_TRUE(back.errors.empty()) << number;
    }
  }
  for (const int number : kSchemes) {
    EXPECT_FALSE(convert(number, 65001, "a").ok && convert(65001, number, "a").ok);
  }
}

}  // namespace
