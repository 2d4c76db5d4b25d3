// Tests of what holds for every encoding that streams know.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "encoding/accent_pairs.h"
#include "encoding/codecs/encoding_row.h"
#include "encoding/plan.h"
#include "tests/codec_support.h"
#include "tests/stream_support.h"

namespace {

using Random = std::minstd_rand0;

std::string utf32(const std::vector<char32_t>& scalars) {
  std::string text;
  for (const char32_t scalar : scalars) {
    for (int shift = 0; shift < 32; shift += 8) text += static_cast<char>(scalar >> shift);
  }
  return text;
}

// Where encodings have characters: the basic plane, symbols, and the ideographs of plane 2. Marks
// that combine are left out: where they stand in a row they may come back as another character.
const std::vector<char32_t>& allScalars() {
  static const std::vector<char32_t> scalars = [] {
    std::vector<char32_t> made;
    const auto add = [&](char32_t first, char32_t last) {
      for (char32_t scalar = first; scalar <= last; ++scalar) made.push_back(scalar);
    };
    add(0, 0x02FF);
    add(0x0370, 0xD7FF);
    add(0xE000, 0xFEFE);  // behind that comes the mark, which is no text everywhere
    add(0xFF00, 0xFFFF);
    add(0x1F000, 0x1FAFF);
    add(0x20000, 0x2FA1F);
    return made;
  }();
  return scalars;
}

// Those of some characters that an encoding has as they are.
std::vector<char32_t> heldBy(int number, std::vector<char32_t> held) {
  const StreamResult all = stream(settingsFor(12000, number, "drop"), utf32(held));
  EXPECT_EQ(StreamStatus::kGood, all.status);
  for (const auto* misfits : {&all.errors, &all.approximations}) {
    std::vector<char32_t> lacking;
    for (const StreamError& error : *misfits) {
      lacking.push_back(static_cast<char32_t>(error.codePoint));
    }
    std::ranges::sort(lacking);
    std::erase_if(held, [&](char32_t c) { return std::ranges::binary_search(lacking, c); });
  }
  return held;
}

// Not those that turn text round or take letters apart, and so give back another text: those of
// libraries (ANSEL and MARC-8) write composed letters, and read them taken apart, and the
// ISO-2022-KR of Python writes shifts as characters.
bool keepsText(const EncodingRow& row) {
  if (row.number == 200865 || row.number == 200866 || row.number == 200946) return false;
  return row.number != 0 && row.isWritten && !row.reordersMacArabic && !row.decomposesVietnamese &&
         !fast::hasAccentPairs(row);
}

// A codec alone must make of a short text that is clean what a stream makes of it, and leave any
// other.
void expectTheSameOfCodec(int from, int to, const std::string& text) {
  const StreamResult whole = stream(settingsFor(from, to, "drop"), text);
  const fast::Plan* const plan = fast::findPlan(from, to, fast::Reader::kStream);
  if (plan->mayBeginWithMark(bytesOf(text), text.size())) return;
  const bool hasZero = whole.text.find('\0') != std::string::npos;  // which the kernels leave
  const bool isClean = whole.errors.empty() && whole.approximations.empty();
  unsigned char room[fast::kShortOutput];
  const unsigned char* const end = fast::convertShort(from, to, text.data(), text.size(), room);
  ASSERT_TRUE(hasZero || isClean == (end != nullptr)) << hex(text);
  if (end == nullptr) return;
  const auto* const begin = reinterpret_cast<const char*>(room);
  ASSERT_EQ(whole.text, std::string(begin, static_cast<std::size_t>(end - room)));
}

}  // namespace

TEST(EveryEncoding, GivesBackWhatItHolds) {
#ifdef ENCCONV_SANITIZED
  constexpr std::size_t kCutText = 12000;  // slow there, and the way of each is the same
#else
  constexpr std::size_t kCutText = 100000;
#endif
  Random random(3);
  for (const EncodingRow& row : encodingRows()) {
    if (!keepsText(row)) continue;
    SCOPED_TRACE(row.number);
    const std::string text = utf32(heldBy(row.number, allScalars()));
    ASSERT_GT(text.size(), 4 * 10u);
    const StreamSettings writing = settingsFor(12000, row.number);
    const StreamSettings reading = settingsFor(row.number, 12000);
    const StreamResult written = stream(writing, text);
    ASSERT_EQ(StreamStatus::kGood, written.status);
    const StreamResult read = stream(reading, written.text);
    ASSERT_EQ(StreamStatus::kGood, read.status);
    ASSERT_TRUE(read.text == text);
    const std::string part = text.substr(0, kCutText);
    const StreamResult atOnce = stream(writing, part);
    const auto randomSize = [&] { return 1 + random() % 11; };
    for (int round = 0; round < 2; ++round) {
      const auto size = [&] { return round == 0 ? 1 : randomSize(); };
      ASSERT_EQ(atOnce, stream(writing, part, size));
      ASSERT_TRUE(stream(reading, atOnce.text, size).text == part);
    }
  }
}

// However often the room for output ends on the way; streams would give a codec again what it left.
TEST(EveryEncoding, IsConvertedToTheEndByOneCallOfItsCodec) {
  const std::string texts[] = {std::string(4000, 'a'), std::string(4000, '\xFF'),
                               utf16(std::u16string(4000, u'a')),
                               utf16(std::u16string(4000, u'\u3042'))};
  for (const EncodingRow& row : encodingRows()) {
    if (row.codec == nullptr) continue;
    SCOPED_TRACE(row.number);
    for (const std::string& text : texts) {
      wholly(row.codec->read, text);
      if (row.isWritten) wholly(row.codec->write, text);
    }
  }
}

// Texts that end anywhere, and bytes of any kind among those of text.
TEST(EveryEncoding, ReadsTheSameWhereverTheInputIsCut) {
  Random random(5);
  for (const EncodingRow& row : encodingRows()) {
    SCOPED_TRACE(row.number);
    std::vector<char32_t> held = {'A', 'b', ' ', '1', '2', '\n'};
    for (int i = 0; i < 2000 && keepsText(row); ++i) {
      held.push_back(allScalars()[random() % allScalars().size()]);
    }
    if (row.isWritten) held = heldBy(row.number, held);
    if (held.empty()) continue;  // a small set of signs, none of which came up
    std::vector<char32_t> sample;
    for (int i = 0; i < 24; ++i) sample.push_back(held[random() % held.size()]);
    const std::string utf32Text = utf32(sample);
    const std::string text =
        row.isWritten ? stream(settingsFor(12000, row.number, "drop"), utf32Text).text : utf32Text;
    if (row.form == EncodingForm::kCodec && row.isWritten) {
      for (int i = 0; i < 100; ++i) {
        sample[random() % sample.size()] = allScalars()[random() % allScalars().size()];
        const std::vector<char32_t> front(sample.begin(), sample.begin() + random() % 8 + 1);
        const std::string utf8 = stream(settingsFor(12000, 65001), utf32(front)).text;
        ASSERT_NO_FATAL_FAILURE(expectTheSameOfCodec(65001, row.number, utf8));
        if (i % 2 == 0) sample[random() % sample.size()] = held[random() % held.size()];
      }
    }
    // To what holds all, and to what lacks most of it.
    const StreamSettings toAll = settingsFor(row.number, 65001, "hex"),
                         toFew = settingsFor(row.number, 20127, "raw");
    for (std::size_t length = 0; length <= text.size(); ++length) {
      std::string cut = text.substr(0, length);
      for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(::testing::PrintToString(cut));
        for (const StreamSettings& settings : {toAll, toFew}) {
          const StreamResult atOnce = stream(settings, cut);
          ASSERT_EQ(StreamStatus::kGood, atOnce.status);
          ASSERT_EQ(atOnce, stream(settings, cut, [] { return 1; }));
          ASSERT_EQ(atOnce, stream(settings, cut, [&] { return 1 + random() % 5; }));
        }
        if (row.form == EncodingForm::kCodec && !cut.empty()) {
          ASSERT_NO_FATAL_FAILURE(expectTheSameOfCodec(row.number, 65001, cut));
          if (row.isWritten) {
            ASSERT_NO_FATAL_FAILURE(expectTheSameOfCodec(row.number, row.number, cut));
          }
        }
        for (int i = 0; i < 4; ++i) {
          cut.insert(random() % (cut.size() + 1), 1, static_cast<char>(random()));
        }
      }
    }
  }
}
