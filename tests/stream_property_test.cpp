// Tests of what holds for every stream: against other cuts, and against whole conversions.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/kernels/cpu_dispatch.h"
#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

// One EncConvert of everything; what that does not know by its codec.
std::string whole(int from, int to, const std::string& text) {
  DataBuffer out;
  const auto length = static_cast<unsigned int>(text.size());
  if (!findEncodingRow(from)->inEngine) {
    convertWhole(codecOf(from).read, bytesOf(text), length, out);
    return whole(codecOf(from).codePage, to, textOf(out));
  }
  // What EncConvert cannot do at all goes by UTF-8.
  const bool failsThere =
      from != to && (from == 1201 || from == 65000) && (to == 1200 || to == 1201 || to == 65000);
  if (failsThere) return whole(65001, to, whole(from, 65001, text));
  if (findEncodingRow(to)->inEngine) return convert(from, to, text).out;
  const std::string behind = whole(from, codecOf(to).codePage, text);
  convertWhole(codecOf(to).write, bytesOf(behind), static_cast<unsigned int>(behind.size()), out);
  return textOf(out);
}

// Every family of sources, and several of the table-driven ones.
constexpr int kSources[] = {65001, 1200,  1201,  12000, 12001, 65005, 65006,       65000,
                            55000, 20127, 1252,  1258,  37,    28596, 10004,       437,
                            874,   932,   936,   949,   950,   1361,  10001,       51932,
                            51936, 51949, 52936, 50220, 50221, 50225, kCodePageHz, kCodePageEucJp};
constexpr int kTargets[] = {65001, 1200,  1201,  12000,       65000,         55000, 20127,
                            1252,  1258,  1256,  37,          932,           949,   950,
                            50220, 50222, 50225, kCodePageHz, kCodePageEucJp};

// The code page that the text is written in, before a codec takes it.
int pageBehind(int page) {
  const EncodingRow& row = *findEncodingRow(page);
  return row.codec != nullptr ? row.codec->codePage : page;
}

bool hasShifts(int page) {
  return page == 65000 || (page >= 50220 && page <= 50225) || page == kCodePageHz;
}

// Whether whole() writes marks for what has no place.
bool writesMarks(int page) { return hasShifts(page) || page == 55000 || page == kCodePageEucJp; }

using Random = std::minstd_rand0;  // 31 bits

std::string randomBytes(Random& source, int page, std::size_t size) {
  const auto random = [&] { return static_cast<unsigned int>(source() >> 4); };
  std::string text = whole(65001, page, "T");
  const bool wide = page == 1200 || page == 1201;
  const bool wider = page == 12000 || page == 12001 || page == 65005 || page == 65006;
  while (text.size() < size) {
    const unsigned int kind = random() % 8;
    if (wide || wider) {
      unsigned int value = random() % 3 == 0 ? 0x41 : 1 + random() % 0x3100;
      if (kind == 0) value = 0xD7C0 + random() % 0x900;
      if (kind == 1 && wider) value = 1 + random() % 0x120000;
      value |= 1;  // never U+0000, however the bytes are paired
      const int bytes = wide ? 2 : 4;
      const bool big = page == 1201 || page == 12001 || page == 65006;
      for (int i = 0; i < bytes; ++i) {
        text.push_back(static_cast<char>(value >> (8 * (big ? bytes - 1 - i : i))));
      }
      if (random() % 64 == 0) text.push_back('\1');
    } else if (kind < 2) {
      text.push_back(static_cast<char>(1 + random() % 0xFF));
    } else if (kind < 5) {
      text.push_back(static_cast<char>(0x20 + random() % 0x60));
    } else if (kind == 5) {
      static const std::string kBits[] = {"\x1B$B"s,
                                          "\x1B(B"s,
                                          "\x1B(I"s,
                                          "\x0E"s,
                                          "\x0F"s,
                                          "~{"s,
                                          "~}"s,
                                          "+"s,
                                          "-"s,
                                          "\n"s,
                                          "\x1B$)C"s,
                                          "\xED\xA0\x80"s,
                                          "\xED\xB0\x80"s,
                                          "\xF0\x9F\x98\x80"s,
                                          "\x1B"s,
                                          "~"s};
      text += kBits[random() % std::size(kBits)];
    } else {
      text.push_back(static_cast<char>(0x80 + random() % 0x80));
      text.push_back(static_cast<char>(0x80 + random() % 0x80));
      if (kind == 7) text.push_back(static_cast<char>(0x80 + random() % 0x80));
    }
  }
  return text;
}

std::string describe(int from, int to, const std::string& text) {
  std::ostringstream line;
  line << from << " to " << to << " of " << ::testing::PrintToString(text) << " ";
  return line.str();
}

const std::string kTreatments[] = {
    "stop",           "drop", "substitute",   "substitute=[?]", "substitute=0x3F21", "hex",
    "alternate=1252", "raw",  "best-fit,hex", "compose,hex",    "translit,hex"};

}  // namespace

TEST(Stream, OutputAndReportsDoNotDependOnTheCuts) {
  Random random(7);
  for (const int from : kSources) {
    for (const int to : kTargets) {
      for (int round = 0; round < 2; ++round) {
        const std::string text = randomBytes(random, from, 1 + random() % 120);
        for (const std::string& treatment : kTreatments) {
          SCOPED_TRACE(describe(from, to, text) + treatment);
          const StreamSettings settings = settingsFor(from, to, treatment);
          const StreamResult atOnce = stream(settings, text);
          ASSERT_EQ(atOnce, stream(settings, text, [] { return 1; }));
          ASSERT_EQ(atOnce, stream(settings, text, [&] { return 1 + random() % 9; }));
        }
      }
    }
  }
}

// Controls and halves of escape sequences, hardly any text between them: what may not be told
// before more is seen.
TEST(Stream, NorDoItsShifts) {
  const std::string kBits[] = {
      "\x1B",         "\x1B",     "$",    "(",  ")C",     "B",      "&@",
      "\x0E",         "\x0F",     "\r",   "\n", "~",      "{",      "}",
      "\xC6",         "\xB0\xA1", "\x80", "!",  "\x1B(B", "\x1B$B", "\x1B$)C",
      "\x0E\x30\x21", "+AGE-"};
  const int kPages[] = {50220, 50222, 50225, kCodePageHz, 932, 65000};
  Random random(5);
  const auto pick = [&](const auto& list) { return list[(random() >> 4) % std::size(list)]; };
  for (int round = 0; round < 60000; ++round) {
    const int from = pick(kPages), to = pick(kPages);
    const StreamSettings settings = settingsFor(from, to, pick(kTreatments));
    std::string text;
    for (std::size_t bits = 1 + (random() >> 4) % 16; bits != 0; --bits) text += pick(kBits);
    const auto step = [&] { return 1 + (random() >> 4) % 3; };
    ASSERT_EQ(stream(settings, text), stream(settings, text, step)) << describe(from, to, text);
  }
}

// Nor what is written for what a codec lacks, which is told within its own text.
TEST(Stream, NorDoesWhatIsWrittenForSomethingElse) {
  const std::string kCharacters[] = {"¥",          "‾",      "〜", "—",      "¬",      "ą",
                                     "\u00A0",     "日",     "e",  "\u0301", "\u0323", "か",
                                     "\u3099",     "\u1112", "\n", "\u1161", "Ж",      "\x1B",
                                     "\U0001F600", "$B",     "“"};
  const int kFrom[] = {65001, 1200, 1201, 65000, 932, 949, kCodePageEucJp};
  const int kTo[] = {kCodePageEucJp, 55000, 50220, 50222, 50225, kCodePageHz, 1252};
  const std::string kTried[] = {"stop", "best-fit,hex", "compose,best-fit,translit,drop",
                                "compose,raw", "translit"};
  Random random(11);
  const auto pick = [&](const auto& list) { return list[(random() >> 4) % std::size(list)]; };
  std::size_t told = 0;
  for (int round = 0; round < 30000; ++round) {
    const int from = pick(kFrom), to = pick(kTo);
    std::string text;
    for (std::size_t count = 1 + (random() >> 4) % 12; count != 0; --count)
      text += pick(kCharacters);
    text = stream(settingsFor(65001, from, "drop"), text).text;
    if (random() % 8 == 0) text += "\xD8";
    const StreamSettings settings = settingsFor(from, to, pick(kTried));
    const StreamResult atOnce = stream(settings, text);
    const auto step = [&] { return 1 + (random() >> 4) % 3; };
    ASSERT_EQ(atOnce, stream(settings, text, step)) << describe(from, to, text);
    told += atOnce.approximations.size();
    for (const StreamError& approximation : atOnce.approximations) {
      ASSERT_TRUE(stream(settingsFor(65001, to), approximation.written).errors.empty());
    }
  }
  EXPECT_GT(told, 10000u);
}

TEST(Stream, GivesTheSameByEveryFormOfTheKernels) {
  Random random(3);
  for (const int from : kSources) {
    const std::string text = randomBytes(random, from, 600);
    for (const int to : {65001, 1251, 932, 1200}) {
      SCOPED_TRACE(describe(from, to, text));
      const StreamSettings settings = settingsFor(from, to, "hex");
      ASSERT_TRUE(fast::setKernelsForTesting("scalar"));
      const StreamResult expected = stream(settings, text);
      for (const fast::Kernels* const form : fast::runnableKernels()) {
        ASSERT_TRUE(fast::setKernelsForTesting(form->name));
        EXPECT_EQ(stream(settings, text), expected) << form->name;
      }
    }
  }
  fast::setKernelsForTesting(nullptr);
}

TEST(Stream, TheLimitsOfItsBlocksDoNotShow) {
  Random random(9);
  for (const int from : kSources) {
    const std::string text = randomBytes(random, from, 70000);
    for (const int to : {65001, 50220}) {
      SCOPED_TRACE(std::to_string(from) + " to " + std::to_string(to));
      const StreamSettings settings = settingsFor(from, to, "hex");
      const StreamResult atOnce = stream(settings, text);
      ASSERT_TRUE(atOnce == stream(settings, text, [&] { return 1 + random() % 300; }));
      ASSERT_TRUE(atOnce == stream(settings, text, [&] { return 1 + random() % 80000; }));
    }
  }
}

// Text that is clean in every source comes out as from EncConvert; with shifts, as the same text.
TEST(Stream, ConvertsCleanTextAsEncConvertDoes) {
  Random random(10);
  for (const int from : kSources) {
    for (const int to : kTargets) {
      const std::string text =
          stream(settingsFor(1200, from, "drop"), randomBytes(random, 1200, 300)).text;
      SCOPED_TRACE(describe(from, to, text));
      const StreamResult result =
          stream(settingsFor(from, to, "drop"), text, [&] { return 1 + random() % 40; });
      if (!writesMarks(to)) {
        ASSERT_EQ(result.text, whole(from, to, text));
      } else if (result.errors.empty()) {  // else marks take the place of what is dropped here
        ASSERT_EQ(whole(to, 65001, result.text), whole(to, 65001, whole(from, to, text)));
      }
    }
  }
}

// Where EncConvert drops what it cannot convert, the stream drops the same; but of an unassigned
// pair, of which EncConvert takes the first byte alone, it drops both.
TEST(Stream, DropsWhatEncConvertDrops) {
  Random random(8);
  for (const int from : kSources) {
    if (findEncodingRow(from)->form != EncodingForm::kSingleByte || from == 20127) continue;
    for (const int to : kTargets) {
      if (writesMarks(to)) continue;  // in the place of what has none
      if (to == from) continue;       // a copy, which only the stream looks at
      for (int round = 0; round < 6; ++round) {
        const std::string text = randomBytes(random, from, 1 + random() % 200);
        SCOPED_TRACE(describe(from, to, text));
        ASSERT_EQ(stream(settingsFor(from, to, "drop"), text).text, whole(from, to, text));
      }
    }
  }
}

// A text without some pieces of it.
std::string without(std::string text, std::vector<StreamError> pieces) {
  std::ranges::sort(pieces, std::greater<>{}, &StreamError::offset);
  for (const StreamError& piece : pieces) {
    text.erase(static_cast<std::size_t>(piece.offset), piece.length);
  }
  return text;
}

// Elsewhere what it drops might as well not have been there.
TEST(Stream, DropsNothingButWhatItReports) {
  Random random(8);
  for (const int from : kSources) {
    // Taking pieces out would change what the others mean.
    if (hasShifts(from) || from == 10004) continue;
    for (const int to : kTargets) {
      for (int round = 0; round < 4; ++round) {
        std::string text = randomBytes(random, from, 1 + random() % 200);
        SCOPED_TRACE(describe(from, to, text));
        StreamResult dropped = stream(settingsFor(from, to, "drop"), text);
        // What a codec lacks is a mark in a whole conversion, whatever streams write for it.
        if (findEncodingRow(to)->codec != nullptr) {
          text = without(text, dropped.approximations);
          dropped = stream(settingsFor(from, to, "drop"), text);
        }
        text = without(text, dropped.errors);
        // In the codes that EncConvert reads too.
        if (findEncodingRow(from)->onlyReadText != nullptr && from != pageBehind(to)) {
          text = whole(65001, from, stream(settingsFor(from, 65001), text).text);
        }
        ASSERT_EQ(dropped.text, whole(from, to, text));
      }
    }
  }
}

// Text with one bad piece in each hundred characters, both ways, in all encodings: the others are
// all there, in order, and each bad piece becomes what it becomes by itself.
TEST(Stream, TreatsOnlyTheBadPiecesOfAText) {
  const std::string line =
      "the quick brown fox, ÄÖÜ é ñ; Wörter Ελληνικά русский 日本語 テスト 简体 繁體 한국어 ไทย "
      "and 0123456789 to fill the rest of it.\n";
  const auto twice = [](std::string bad, const std::string& good) {
    bad += good;
    return bad.append(bad);
  };
  std::vector<std::string> candidates;
  for (int byte = 0xFF; byte >= 0x80; --byte) candidates.emplace_back(1, static_cast<char>(byte));
  candidates.insert(candidates.end(), {"\xDC\xDC"s, "\0\0\x11\0"s, "\0\x11\0\0"s});
  int withMalformed = 0;
  int withoutPlace = 0;
  for (const CharsetNames& names : streamCodePages()) {
    const int page = names.codePage;
    const std::string clean = stream(settingsFor(65001, page, "drop"), line).text;
    const std::string read = stream(settingsFor(page, 65001), clean).text;
    const auto isMalformed = [&](const std::string& piece) {
      const StreamResult result = stream(settingsFor(page, 65001, "drop"), piece + clean);
      return result.text == read && result.errors.size() == 1 &&
             result.errors[0].length == piece.size();
    };
    const std::string foreign = "\U0010FFFD";
    if (read.size() <= 70) continue;  // sets of signs, and of ideographs only
    for (const std::string& treatment : kTreatments) {
      if (treatment == "stop") continue;
      SCOPED_TRACE(std::to_string(page) + " " + treatment);
      const StreamSettings reading = settingsFor(page, 65001, treatment);
      const auto bad = std::ranges::find_if(candidates, isMalformed);
      if (bad != candidates.end()) {
        const std::string alone = stream(reading, *bad).text;
        ASSERT_EQ(stream(reading, twice(*bad, clean)).text, twice(alone, read));
        ASSERT_EQ(alone.empty(), treatment == "drop");
        ++withMalformed;
      }
      const StreamSettings writing = settingsFor(65001, page, treatment);
      const StreamResult alone = stream(writing, foreign);
      if (alone.errors.empty() || treatment == "raw" || treatment.find("0x") != treatment.npos) {
        continue;  // the encoding has everything, or what is written need not be text of it
      }
      // A set of signs has nothing to substitute.
      if (!stream(settingsFor(65001, page, "drop"), "?<&0x").errors.empty()) continue;
      const StreamSettings back = settingsFor(page, 65001);
      const std::string stands = stream(back, alone.text).text;
      const std::string whole = stream(writing, twice(foreign, read)).text;
      ASSERT_EQ(stream(back, whole).text, twice(stands, read));
      ASSERT_EQ(stands.empty(), treatment == "drop");
      ++withoutPlace;
    }
  }
  EXPECT_GT(withMalformed, 7 * 30);
  EXPECT_GT(withoutPlace, 5 * 100);
}
