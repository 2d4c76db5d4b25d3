// What the tests of the codecs share: a text fed whole and in pieces, what became of it, and what
// must hold for every codec.
#ifndef TESTS_CODEC_SUPPORT_H_
#define TESTS_CODEC_SUPPORT_H_

#include <cstddef>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "encoding/codecs/codec.h"
#include "tests/test_support.h"

struct Place {
  std::size_t offset, length, mark;
  bool operator==(const Place&) const = default;
};
// What became of a text, or of the beginning of one.
struct Result {
  std::string text;
  std::vector<Place> places;
  std::size_t used = 0;
  CodecState state;
  bool operator==(const Result&) const = default;
};
inline std::string describe(const Result& result) {
  std::string text = hex(result.text) + (result.state.replaced ? " replaced" : " whole");
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
inline Result inPieces(Codec::Convert convert, std::string_view in,
                       const std::vector<std::size_t>& cuts, bool isEnded = true) {
  struct Sink : ReplacementSink {
    void onReplaced(const ReplacedInput& piece) override {
      result.places.push_back({result.used + piece.offset, piece.length, piece.markOffset});
    }
    Result result;
  } sink;
  Result& result = sink.result;
  DataBuffer out;
  for (std::size_t i = 0; i <= cuts.size(); ++i) {
    const bool last = isEnded && i == cuts.size();
    // A copy of exactly the piece, so that a sanitizer sees a read behind its end.
    const std::vector<unsigned char> piece(bytesOf(in) + result.used,
                                           bytesOf(in) + (i == cuts.size() ? in.size() : cuts[i]));
    const auto length = static_cast<unsigned int>(piece.size());
    const unsigned int used = convert(piece.data(), length, last, result.state, out, &sink);
    EXPECT_TRUE(used <= length && length - used < Codec::kMaxRest && (!last || used == length));
    result.used += used;
  }
  result.text = textOf(out);
  return result;
}
inline Result wholly(Codec::Convert convert, std::string_view in) {
  return inPieces(convert, in, {});
}

inline std::string utf16(std::u16string_view units) {
  std::string bytes;
  for (const char16_t unit : units) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

struct Case {
  Codec::Convert convert;
  std::string in, out;
  std::vector<Place> places;
};

// Whole, and cut in two at every place, and cut everywhere.
inline void checkCase(const Case& c) {
  Result expected{c.out, c.places, c.in.size(), {}};
  expected.state.replaced = !c.places.empty();
  EXPECT_EQ(describe(wholly(c.convert, c.in)), describe(expected)) << hex(c.in);
  std::vector<std::size_t> everywhere;
  for (std::size_t i = 1; i < c.in.size(); ++i) {
    ASSERT_EQ(describe(inPieces(c.convert, c.in, {i})), describe(expected))
        << hex(c.in) << " cut at " << i;
    everywhere.push_back(i);
  }
  ASSERT_TRUE(inPieces(c.convert, c.in, everywhere) == expected) << hex(c.in);
}

// Whether a table-driven code page maps all of a text.
inline bool decodes(int codePage, std::string_view text) {
  return !convert(codePage, 1200, text).foundErrors;
}

struct Direction {
  Codec::Convert convert;
  int codePage;  // of the output, 0: it is 7-bit, -1: anything goes
  std::size_t growth;
  std::string frequent;  // what random texts are made of
};
// Random texts: short ones of frequent bytes, and longer ones that the vector loops take as well.
inline void checkAnyBytes(std::span<const Direction> directions, int rounds) {
  std::mt19937 random(2022);
  for (int round = 0; round < rounds; ++round) {
    const std::size_t run = round % 4 == 0 ? 40 : 1;
    for (const Direction& direction : directions) {
      std::string in;
      const std::size_t size = random() % 90 * run;
      while (in.size() < size) {
        const auto byte = random() % 4 == 0
                              ? static_cast<char>(random())
                              : direction.frequent[random() % direction.frequent.size()];
        in.append(random() % run + 1, byte);
      }
      const Result whole = wholly(direction.convert, in);
      ASSERT_LE(whole.text.size(), direction.growth * in.size() + 8);
      if (direction.codePage >= 0) {
        ASSERT_TRUE(decodes(direction.codePage != 0 ? direction.codePage : 20127, whole.text))
            << hex(in);
      }
      std::size_t behind = 0;
      for (const Place& place : whole.places) {
        ASSERT_TRUE(place.offset >= behind && place.length >= 1 && place.mark < whole.text.size());
        behind = place.offset + place.length;
      }
      ASSERT_LE(behind, in.size());
      std::vector<std::size_t> cuts{in.size() / 3, in.size() / 2};
      ASSERT_TRUE(inPieces(direction.convert, in, cuts) == whole) << hex(in);
      const Result begun = inPieces(direction.convert, in, {}, false);
      cuts.clear();
      for (std::size_t i = 1; i < in.size(); i += random() % run + 1) cuts.push_back(i);
      ASSERT_TRUE(inPieces(direction.convert, in, cuts) == whole) << hex(in);
      ASSERT_TRUE(inPieces(direction.convert, in, cuts, false) == begun) << hex(in);
    }
  }
}

#endif  // TESTS_CODEC_SUPPORT_H_
