#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <vector>

#include "encoding/fast/fast_path.h"
#include "support/hz.h"
#include "support/japanese.h"
#include "support/korean.h"
#include "tests/test_support.h"

namespace {

using namespace std::string_literals;

std::string code(unsigned int value) {
  std::string text;
  if (value > 0xFF) text.push_back(static_cast<char>(value >> 8));
  text.push_back(static_cast<char>(value & 0xFF));
  return text;
}

struct Place {
  std::size_t offset, length, mark;
  bool operator==(const Place&) const = default;
};
struct Result {
  std::string text;
  std::vector<Place> places;
  bool replaced = false;
  bool operator==(const Result&) const = default;
};
std::string describe(const Result& result) {
  std::string text = hex(result.text) + (result.replaced ? " replaced" : " whole");
  for (const Place& place : result.places) {
    for (const std::size_t number : {place.offset, place.length, place.mark}) {
      text += ' ';
      text += std::to_string(number);
    }
    text += ',';
  }
  return text;
}

// Feeds a codec as a stream would, with the input cut at the given places.
template <typename State, auto kPiece>
Result inPieces(std::string_view in, const std::vector<std::size_t>& cuts) {
  struct Sink : ReplacementSink {
    void onReplaced(const ReplacedInput& piece) override {
      places.push_back({base + piece.offset, piece.length, piece.markOffset});
    }
    std::size_t base = 0;
    std::vector<Place> places;
  } sink;
  State state;
  DataBuffer out;
  for (std::size_t i = 0; i <= cuts.size(); ++i) {
    const bool last = i == cuts.size();
    // A copy of exactly the piece, so that a sanitizer sees a read behind its end.
    const std::vector<unsigned char> piece(bytesOf(in) + sink.base,
                                           bytesOf(in) + (last ? in.size() : cuts[i]));
    const auto length = static_cast<unsigned int>(piece.size());
    const unsigned int used = kPiece(piece.data(), length, last, state, out, &sink);
    EXPECT_TRUE(used <= length && length - used < Japanese::kMaxRest && (!last || used == length));
    sink.base += used;
  }
  return {textOf(out), sink.places, state.replaced};
}

using Convert = Result (*)(std::string_view, const std::vector<std::size_t>&);
constexpr Convert kJpRead = inPieces<Iso2022JpState, Japanese::readPiece>;
constexpr Convert kJpWrite = inPieces<Iso2022JpState, Japanese::writePiece>;
constexpr Convert kKrRead = inPieces<Iso2022KrState, Korean::readPiece>;
constexpr Convert kKrWrite = inPieces<Iso2022KrState, Korean::writePiece>;
constexpr Convert kHzRead = inPieces<HzState, Hz::readPiece>;
constexpr Convert kHzWrite = inPieces<HzState, Hz::writePiece>;

struct Case {
  Convert convert;
  std::string in, out;
  std::vector<Place> places;
};

const Case kCases[] = {
    {kJpRead, "a\x1B$B$\"\x1B(Jb\x1B$@0!\x1B(Bc", "a\x82\xA0\x62\x88\x9F\x63", {}},
    {kJpRead,
     "\x1B&@\x1B$B$\"\x1B(I1\x1B(B\x0E"
     "1 2\x0F"
     "1",
     "\x82\xA0\xB1\xB1 \xB2"
     "1",
     {}},
    {kJpRead,
     "\x1B$B$\"\xB1$\"\x0E"
     "1\x0F$\"\t $\"",
     "\x82\xA0\xB1\x82\xA0\xB1\x82\xA0\t \x82\xA0",
     {}},
    // The writer forgot to return, in each set; a shift that has no end or no character.
    {kJpRead,
     "\x1B$B$\"\na\x1B(I1\r\nb\x0E"
     "1\nc\x0E\x0F\x0E",
     "\x82\xA0\na\xB1\r\nb\xB1\nc\x0E\x0F\x0E",
     {}},
    // NEC row 13, its repetitions of row 2, the NEC-selected characters, the gaps of their list.
    {kJpRead,
     "\x1B$B-!-py!|~|q|o",
     "\x87\x40\x81\xE0\xFA\x5C\xFA\x57\xFA\x40\x81\x45",
     {{13, 2, 10}}},
    // No form: JIS X 0212, rows 9 and 94, a katakana position; then half pairs, each beside text.
    {kJpRead,
     "\x1B$(D0!\x1B(Bx",
     "\x81\xAC"
     "x",
     {{4, 2, 0}}},
    {kJpRead, "\x1B$B)!~~$\"", "\x81\xAC\x81\xAC\x82\xA0", {{3, 2, 0}, {5, 2, 2}}},
    {kJpRead, "\x1B(I1a1", "\xB1\x81\xAC\xB1", {{4, 1, 1}}},
    {kJpRead,
     "\x1B$B$\x1B(Ba\x1B$B$\n\x1B$B$",
     "\x81\xAC"
     "a\x81\xAC\n\x81\xAC",
     {{3, 1, 0}, {11, 1, 3}, {16, 1, 6}}},
    {kJpRead,
     "a\x81"
     "b\xE0\x40\xFF",
     "a\x81\xAC"
     "b\x81\xAC@\x81\xAC",
     {{1, 1, 1}, {3, 1, 4}, {5, 1, 7}}},
    {kJpRead,
     "\x1B$B$\x81\"$\"",
     "\x81\xAC\x81\xAC\x81\xA2\x81\xAC",
     {{3, 1, 0}, {4, 1, 2}, {7, 1, 6}}},
    // Unknown, incomplete and doubled escapes.
    {kJpRead,
     "\x1B(Za\x1B$Ab\x1B$(Oc\x1B&@d\x1B\x1B$B$\"\x1B(Z$\"\x1B$\"\x1B",
     "\x1B(Za\x1B$Ab\x1B$(Oc\x1B&@d\x1B\x82\xA0\x1B(Z\x82\xA0\x1B\x82\xA0\x1B",
     {}},

    {kJpWrite,
     "a\x82\xA0\xB1\x88\x9F\nb\x87\x40",
     "a\x1B$B$\"\x1B(I1\x1B$B0!\x1B(B\nb\x1B$B-!\x1B(B",
     {}},
    {kJpWrite,
     "\xFA\x5C\xFA\x57\xFA\x40\xED\x40\xFA\x54\xFA\x4A\x87\x90",
     "\x1B$By!|~|qy!\"L-5-p\x1B(B",
     {}},
    {kJpWrite,
     "\xF0\x40"
     "a\x80\xA0\xFF\x85\x41\x85\x9F\x82",
     "\x1B$B\".\x1B(Ba\x1B$B\".\".\".\".\x1B(BA\x1B$B\".\".\x1B(B",
     {{0, 2, 3}, {3, 1, 12}, {4, 1, 14}, {5, 1, 16}, {6, 1, 18}, {8, 2, 27}, {10, 1, 29}}},
    // Controls of the text that would be read as escapes, and others that would not.
    {kJpWrite,
     "\x1B$Ba\x1B[m\x1B\x0E\x0F\x0E",
     "\x1B$B\".\x1B(B$Ba\x1B[m\x1B\x0E\x0F\x0E",
     {{0, 1, 3}}},
    {kJpWrite,
     "\x0E"
     "1",
     "\x1B$B\".\x1B(B1",
     {{0, 1, 3}}},

    {kKrRead,
     "\x1B$)Ca\x0E"
     "0!\x0F\x1B$)C\n\x0E"
     "0! 0!\nb\x0F",
     "a\xB0\xA1\n\xB0\xA1 \xB0\xA1\nb",
     {}},
    {kKrRead,
     "\x0E"
     "0!-!\"h0\x0F"
     "0\xB0\xA1\xB0"
     "a\xC7"
     "A",
     "\xB0\xA1\xA1\xEB\xA1\xEB\xA1\xEB"
     "0\xB0\xA1\xA1\xEB"
     "a\xA1\xEB"
     "A",
     {{3, 2, 2}, {5, 2, 4}, {7, 1, 6}, {12, 1, 11}, {14, 1, 14}}},
    {kKrRead,
     "\x1B(Z\x0E"
     "0\n\x0E\x1B$)B0!0",
     "\x1B(Z\xA1\xEB\n\x1B$)B\xB0\xA1\xA1\xEB",
     {{4, 1, 3}, {13, 1, 12}}},
    {kKrWrite,
     "\xB0\xA1"
     "a\n\xB0\xA1\r\n",
     "\x1B$)C\x0E"
     "0!\x0F"
     "a\n\x0E"
     "0!\x0F\r\n",
     {}},
    {kKrWrite,
     "\x81\x41"
     "a\x0E\x1B$)C\xC7"
     "A\xAD\xA1\xFF\xB0",
     "\x1B$)C\x0E!k\x0F"
     "a\x0E!k!k\x0F$)C\x0E!k\x0F"
     "A\x0E!k!k!k\x0F",
     {{0, 2, 5}, {3, 1, 10}, {4, 1, 12}, {8, 1, 19}, {10, 2, 24}, {12, 1, 26}, {13, 1, 28}}},

    {kHzRead,
     "a~~~{<:~}b~\nc~\r\nd~{<:\n<:",
     "a~\xBC\xBA"
     "bcd\xBC\xBA\n<:",
     {}},
    {kHzRead,
     "~x~{<\n~}~{~<<:~}\x81~",
     "\xA1\xFEx\xA1\xFE\n\xA1\xFE\xBC\xBA\xA1\xFE\xA1\xFE",
     {{0, 1, 0}, {4, 1, 3}, {10, 2, 6}, {16, 1, 10}, {17, 1, 12}}},
    {kHzWrite,
     "a~\xBC\xBA\n\x81\x40\xFE\xA1\x80\xBC",
     "a~~~{<:~}\n~{!~!~!~!~~}",
     {{5, 2, 12}, {7, 2, 14}, {9, 1, 16}, {10, 1, 18}}},
};

TEST(Iso2022, ConvertsAndReportsHoweverTheTextIsCut) {
  for (const Case& c : kCases) {
    const std::string expected = describe({c.out, c.places, !c.places.empty()});
    EXPECT_EQ(describe(c.convert(c.in, {})), expected) << hex(c.in);
    std::vector<std::size_t> everywhere;
    for (std::size_t i = 1; i < c.in.size(); ++i) {
      ASSERT_EQ(describe(c.convert(c.in, {i})), expected) << hex(c.in) << " cut at " << i;
      everywhere.push_back(i);
    }
    ASSERT_EQ(describe(c.convert(c.in, everywhere)), expected) << hex(c.in);
  }
}

// Whether a table-driven code page maps all of a text.
bool decodes(int codePage, std::string_view text) {
  return !convert(codePage, 1200, text).foundErrors;
}

std::vector<unsigned int> codesOf(int codePage) {
  std::vector<unsigned int> codes;
  std::vector<bool> isSingle(256);
  for (unsigned int byte = 0; byte < 256; ++byte) {
    isSingle[byte] = decodes(codePage, code(byte));
    if (isSingle[byte]) codes.push_back(byte);
  }
  for (unsigned int value = 0x8140; value <= 0xFEFE; ++value) {
    if (!isSingle[value >> 8] && (value & 0xFF) >= 0x40 && decodes(codePage, code(value))) {
      codes.push_back(value);
    }
  }
  return codes;
}

// Every code goes there and back, or becomes the mark where it has no place: on its own, on a line
// of its own, and in one long text, which takes the vector loops.
template <typename HasPlace>
void goThereAndBack(const std::vector<unsigned int>& codes, Convert write, Convert read,
                    const std::string& mark, HasPlace hasPlace) {
  std::string lines, expectedLines, text, expectedText;
  for (const unsigned int value : codes) {
    const std::string alone = code(value), expected = hasPlace(value) ? alone : mark;
    const Result written = write(alone, {});
    ASSERT_EQ(written.replaced, !hasPlace(value)) << hex(alone);
    ASSERT_EQ(hex(read(written.text, {}).text), hex(expected));
    lines += alone + "\r\n";
    expectedLines += expected + "\r\n";
    text += alone;
    expectedText += expected;
  }
  EXPECT_EQ(read(write(lines, {}).text, {}).text, expectedLines);
  EXPECT_EQ(read(write(text, {}).text, {}).text, expectedText);
}

TEST(Iso2022, KeepsEveryCodeThatHasAPlace) {
  const std::vector<unsigned int> shiftJis = codesOf(932), ksc = codesOf(949);
  ASSERT_EQ(shiftJis.size(), 128u + 63 + 5 + 9206);
  ASSERT_EQ(ksc.size(), 128u + 2 + 17236);
  goThereAndBack(shiftJis, kJpWrite, kJpRead, "\x81\xAC", [](unsigned int value) {
    return value > 0xFF ? value < 0xF040 || value > 0xF9FC
                        : value < 0x80 || (value > 0xA0 && value < 0xE0);
  });
  goThereAndBack(ksc, kKrWrite, kKrRead, "\xA1\xEB", [](unsigned int value) {
    if (value == 0x0E || value == 0x0F) return false;
    return value < 0x80 || (value >= 0xA1A1 && (value & 0xFF) >= 0xA1);
  });
  std::vector<unsigned int> gb;
  for (unsigned int value = 0xA1A1; value <= 0xFEFE; ++value) {
    if ((value & 0xFF) >= 0xA1 && (value & 0xFF) != 0xFF) gb.push_back(value);
  }
  goThereAndBack(gb, kHzWrite, kHzRead, "\xA1\xFE",
                 [](unsigned int value) { return value < 0xFE00; });
}

// Of all pairs of 7-bit bytes, each is read to one code that its code page has.
TEST(Iso2022, ReadsEveryPairToACode) {
  const struct {
    Convert read;
    std::string begin, end;
    int codePage;
  } sets[] = {{kJpRead, "\x1B$B", "\x1B(B", 932},
              {kJpRead, "\x1B$(D", "\x1B(B", 932},
              {kKrRead, "\x0E", "\x0F", 949}};
  for (const auto& set : sets) {
    std::string all, expected;
    for (unsigned int first = 0x21; first <= 0x7E; ++first) {
      for (unsigned int second = 0x21; second <= 0x7E; ++second) {
        const std::string pair = code(first << 8 | second);
        const std::string text = set.read(set.begin + pair + set.end, {}).text;
        ASSERT_TRUE(text.size() == 2 && decodes(set.codePage, text)) << hex(pair) << hex(text);
        all += pair;
        expected += text;
      }
    }
    EXPECT_EQ(set.read(set.begin + all, {}).text, expected);
  }
}

TEST(Iso2022, StandsAnyBytes) {
  const struct {
    Convert convert;
    int codePage;  // of the output, 0: it is 7-bit
    std::size_t growth;
  } codecs[] = {{kJpRead, 932, 2}, {kKrRead, 949, 2}, {kHzRead, 936, 2},
                {kJpWrite, 0, 5},  {kKrWrite, 0, 4},  {kHzWrite, 0, 4}};
  const std::string frequent =
      "\x1B\x1B$(&)@BCDIJ\x0E\x0F\r\n~{}0!$\"-y\x81\x85\xAC\xB0\xC7\xED\xFA\xFF"s;
  std::mt19937 random(2022);
  for (int round = 0; round < 4000; ++round) {
    std::string in(random() % 90, '\0');
    for (char& byte : in) {
      byte = random() % 4 == 0 ? static_cast<char>(random()) : frequent[random() % frequent.size()];
    }
    for (const auto& codec : codecs) {
      const Result whole = codec.convert(in, {});
      ASSERT_LE(whole.text.size(), codec.growth * in.size() + 8);
      ASSERT_TRUE(decodes(codec.codePage != 0 ? codec.codePage : 20127, whole.text)) << hex(in);
      ASSERT_EQ(whole.replaced, !whole.places.empty());
      std::size_t behind = 0;
      for (const Place& place : whole.places) {
        ASSERT_TRUE(place.offset >= behind && place.length >= 1 && place.mark < whole.text.size());
        behind = place.offset + place.length;
      }
      ASSERT_LE(behind, in.size());
      ASSERT_EQ(codec.convert(in, {in.size() / 3, in.size() / 2}), whole) << hex(in);
    }
  }
}

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
    const Outcome outcome = convert(converter, from, to, input);
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
  Japanese::releaseLastBlock();
  Japanese::releaseLastBlock();
  const auto* again = reinterpret_cast<const char*>(Japanese::GetSjisFrom2022_LastBlock());
  EXPECT_EQ(std::string(again, before.size()), before);
}

}  // namespace
