// Tests of where texts can be cut, over every encoding.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/encconv_c.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/codecs/web_encodings.h"
#include "encoding/composition_pairs.h"
#include "encoding/stream/cut_finder.h"
#include "tests/stream_support.h"

namespace {

using Random = std::minstd_rand0;

// Words of one script each, with marks, line ends and spaces between them, as UTF-16.
std::string randomText(Random& random, const std::vector<char16_t>& held, std::size_t words) {
  std::string text;
  const auto add = [&](char16_t unit) {
    text += static_cast<char>(unit & 0xFF);
    text += static_cast<char>(unit >> 8);
  };
  for (std::size_t i = 0; i < words; ++i) {
    const std::size_t from = random() % held.size();
    for (std::size_t count = 1 + random() % 8; count != 0; --count) {
      add(held[(from + random() % 12) % held.size()]);
    }
    const auto end = random() % 6;
    if (end < 4) add(u' ');
    if (end == 4) add(u'\n');
    if (end == 5) {
      for (const char16_t unit : {u'a', u'1', u'+', u'\r', u'\n'}) add(unit);
    }
  }
  return text;
}

std::vector<char16_t> charactersOf(Random& random, const EncodingRow& row) {
  std::string all;
  std::vector<char16_t> units;
  const auto step = static_cast<unsigned int>(1 + random() % 12);
  for (unsigned int unit = 0x20; unit < 0xFFFE; unit += unit < 0x500 ? 1 : step) {
    if ((unit >= 0x7F && unit < 0xA0) || (unit >= 0xD800 && unit < 0xE000) || unit == 0xFEFF)
      continue;
    units.push_back(static_cast<char16_t>(unit));
    all += static_cast<char>(unit & 0xFF);
    all += static_cast<char>(unit >> 8);
  }
  if (!row.isWritten) return units;
  const StreamResult written = stream(settingsFor(1200, row.number, "drop"), all);
  std::vector<bool> isLacking(0x10000);
  for (const auto* misfits : {&written.errors, &written.approximations}) {
    for (const StreamError& error : *misfits) {
      isLacking[static_cast<std::size_t>(error.codePoint)] = true;
    }
  }
  std::erase_if(units, [&](char16_t unit) { return isLacking[unit]; });
  return units;
}

// In the encoding of a row; empty where nothing is text in it.
std::string written(const EncodingRow& row, const std::string& utf16) {
  if (row.isWritten) return stream(settingsFor(1200, row.number, "drop"), utf16).text;
  if (row.form != EncodingForm::kUtf16) return {};
  return stream(settingsFor(1200, row.bigEndian ? 1201 : 1200), utf16).text;
}

std::size_t findIn(CutFinder& finder, const std::string& window, std::size_t offset,
                   const CutSettings& settings) {
  return finder.find(bytesOf(window), window.size(), offset, settings);
}

}  // namespace

TEST(Cut, PiecesOfCleanTextGiveTheWhole) {
  constexpr unsigned int kTexts = 4, kCuts = 40;
  Random random(7);
  for (const EncodingRow& row : encodingRows()) {
    if (row.number == 0 || row.codec == &kWebReplacementCodec) continue;
    SCOPED_TRACE(row.number);
    const std::vector<char16_t> held = charactersOf(random, row);
    if (held.empty()) continue;
    CutFinder finder(row.number);
    const StreamSettings settings = settingsFor(row.number, 65001);
    unsigned int cleanTexts = 0, cuts = 0;
    for (unsigned int i = 0; i < kTexts; ++i) {
      const std::string text = written(row, randomText(random, held, 60));
      const StreamResult whole = stream(settings, text);
      if (whole.status != StreamStatus::kGood || text.size() < 2) continue;
      ++cleanTexts;
      for (unsigned int j = 0; j < kCuts; ++j) {
        const std::size_t begin = j % 8 == 1 ? 0 : random() % text.size();
        const std::string window = text.substr(begin, 1 + random() % (text.size() - begin));
        const std::size_t offset = random() % window.size();
        const std::size_t place = findIn(finder, window, offset, {begin, false, j % 4 == 0});
        if (place == CutWindow::kNone || begin + place == 0) continue;
        ++cuts;
        ASSERT_GE(place, offset);
        ASSERT_TRUE(place < window.size());
        SCOPED_TRACE(begin + place);
        const StreamResult first = stream(settings, text.substr(0, begin + place));
        const StreamResult second = stream(settings, text.substr(begin + place));
        ASSERT_EQ(StreamStatus::kGood, first.status);
        ASSERT_EQ(StreamStatus::kGood, second.status);
        ASSERT_TRUE(first.text + second.text == whole.text)
            << ::testing::PrintToString(first.text) << ::testing::PrintToString(second.text);
        if (j % 4 == 0 && place != 0) {
          ASSERT_TRUE(first.text.ends_with("\n") || first.text.ends_with("\xC2\x85"));
        }
      }
    }
    EXPECT_LT(0u, cleanTexts);
    // SCSU shows nothing of its state, and in Python's forms of ISO 2022 sets stay designated.
    const bool isShown = row.number != 1212 && (row.number < 200940 || row.number > 200946);
    EXPECT_EQ(isShown, cuts > 0);
  }
}

// What another encoding writes together is not taken apart.
TEST(Cut, LeavesTogetherWhatOtherEncodingsJoin) {
  const auto isCut = [](unsigned int first, unsigned int second) {
    const std::string text = {static_cast<char>(first & 0xFF), static_cast<char>(first >> 8),
                              static_cast<char>(second & 0xFF), static_cast<char>(second >> 8)};
    return encconv::find_cut(text, 1200, 2).has_value();
  };
  for (const fast::CompositionPair& pair : fast::kCompositionPairs) {
    EXPECT_FALSE(isCut(pair.first, pair.second)) << pair.first << "+" << pair.second;
  }
  // The blocks of marks, of Indian scripts, and of vowels and finals of Hangul.
  constexpr unsigned int kBlocks[][2] = {{0x0300, 0x036F}, {0x0900, 0x0DFF}, {0x1160, 0x11FF},
                                         {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF},
                                         {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
  for (const auto& [first, last] : kBlocks) {
    for (unsigned int mark = first; mark <= last; ++mark) EXPECT_FALSE(isCut('a', mark)) << mark;
    EXPECT_TRUE(isCut('a', last + 1)) << last;
  }
  // Big5-HKSCS, JIS X 0213 in three forms, TCVN, ISO 6937, ANSEL, Johab, Mac Symbol, 1258.
  constexpr int kTargets[] = {200706, 200723, 200730, 200724, 200864,
                              200860, 200865, 1361,   200453, 1258};
  Random random(11);
  for (const int target : kTargets) {
    SCOPED_TRACE(target);
    const std::vector<char16_t> held = charactersOf(random, *findEncodingRow(target));
    std::vector<char16_t> letters = {u'\x00CA', u'\x00EA', u'\x304B', u'\x30AB', u'\x02E9', u'a',
                                     u'\x0304', u'\x030C', u'\x309A', u'\x02E5', u'\x0301', u' '};
    letters.insert(letters.end(), held.begin(), held.end());
    for (unsigned int i = 0; i < 200; ++i) {
      const bool isDense = i % 2 == 0;
      const std::string utf16 = randomText(
          random, isDense ? std::vector(letters.begin(), letters.begin() + 12) : letters, 12);
      const std::string text = stream(settingsFor(1200, 65001), utf16).text;
      const std::size_t offset = random() % text.size();
      const auto place = encconv::find_cut(text, 65001, offset);
      if (!place) continue;
      const StreamSettings settings = settingsFor(65001, target, "compose,drop");
      ASSERT_EQ(stream(settings, text).text, stream(settings, text.substr(0, *place)).text +
                                                 stream(settings, text.substr(*place)).text)
          << ::testing::PrintToString(text) << *place;
    }
  }
}

// What is said of the window, in all interfaces.
TEST(Cut, TakesWhatIsKnownOfTheWindow) {
  using namespace std::string_literals;
  const struct {
    const char* encoding;
    std::string window;
    std::size_t offset;
    encconv::CutOptions options;
    std::optional<std::size_t> place;
  } kRows[] = {
      {"932", "\x83\x65\x83\x58", 1, {0}, 2},
      {"932", "\x83\x83\x83\x83\x83", 1, {9}, std::nullopt},
      {"932", "\x83\x83\x83\x83\x83", 1, {9, true}, 2},
      {"932", "\x65\x83\x58\n\x41", 0, {9}, 1},
      {"932", "\x65\x83\x58\n\x41", 0, {9, false, true}, 4},
      {"gb18030", "\x30\x81\x35\x94\x39\xDA\x33 a", 0, {9}, 7},
      {"utf-8", "\x8B\xE2\x82\xAC z", 0, {9}, 1},
      {"utf-8", "a\xEF\xBB\xBF!", 1, {}, 4},  // a byte order mark would be lost
      {"utf-16le", "\x00z\x00"s, 0, {7}, 1},
      {"utf-16le", "\x3D\xD8\x00\xDE\x20\x00"s, 2, {8}, 4},
      {"ibm930", "\x42\x81\x0F\xC1\xC2", 0, {9}, 3},
      {"ibm930", "\xC1\xC2\x0E\x42\x81\x0F", 1, {9}, 1},
      {"ibm930", "\xC1\xC2\xC3\xC4", 1, {9}, std::nullopt},
      {"ibm930", "\xC1\xC2\xC3\xC4", 1, {9, true}, 1},
      {"iso-2022-jp", "\x46\x7C\x1B(B a", 0, {9}, 5},
      {"iso-2022-jp-2004", "F|\x1B(Ba", 0, {9}, 5},
      {"iso-2022-jp-2", "a\x1B(J\\\na", 4, {0}, std::nullopt},  // letters, but not ASCII
      {"iso-2022-kr", "0!\x0Fz", 0, {9}, 3},
      {"iso-2022-cn", "\x0Fz\nz", 0, {9}, 3},
      {"marc-8", "\033gb\033sc d", 1, {}, 5},
      {"hz", "~}~}~}\nz", 0, {9}, 7},
      {"hz", "a~{VP~}z", 1, {}, 1},
      {"hz", "a~{VP~}z", 2, {}, 7},
      {"utf-7", "ABC-def ghi", 0, {9}, 4},
      {"iso_6937",
       "\xC2"
       "e ",
       1,
       {},
       2},
      {"tcvn", "e\xB3 x", 1, {}, 2},
      {"bocu-1", "\xD0\x0A\x90", 0, {9}, 2},
      {"scsu", "abc\n\nabc", 1, {}, std::nullopt},
      {"gsm", "\x1B\x1B\x65z", 1, {}, 3},
      {"no-such-encoding", "abc", 0, {}, std::nullopt},
      {"932", "", 0, {}, 0},
      {"932", "abc", 3, {}, std::nullopt},  // nothing shows that no mark follows
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(std::string(row.encoding) + ::testing::PrintToString(row.window));
    EXPECT_EQ(row.place, encconv::find_cut(row.window, row.encoding, row.offset, row.options));
    encconv_cut_options options = ENCCONV_CUT_OPTIONS_INIT;
    options.position = row.options.position;
    options.at_cut = row.options.at_cut;
    options.behind_line = row.options.behind_line;
    std::size_t cut = 77;
    const int isFound =
        encconv_find_cut(row.window.data(), row.window.size(), encconv_find_code_page(row.encoding),
                         row.offset, &options, &cut);
    EXPECT_EQ(row.place.has_value(), isFound == 1);
    EXPECT_EQ(row.place.value_or(77), cut);
  }
}
