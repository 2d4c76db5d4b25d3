// Tests of places: where streams stand, and where somebody says that one stood.
#include "encoding/stream/stream_place.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "encoding/codecs/encoding_row.h"
#include "tests/stream_support.h"

namespace {

class Random {
 public:
  unsigned int below(unsigned int end) { return static_cast<unsigned int>(m_source() >> 4) % end; }
  bool isOneIn(unsigned int count) { return below(count) == 0; }
  // As often small as large.
  std::uint32_t number() { return static_cast<std::uint32_t>(m_source() * 3) >> below(32); }

 private:
  std::minstd_rand m_source{29};
};

// Words of many scripts, with marks, line ends and escapes, in UTF-16.
std::string someText(Random& random, unsigned int words) {
  constexpr struct {
    char32_t first;
    unsigned int count;
  } kBlocks[] = {{' ', 95},    {'a', 26},     {0xA0, 96},    {0x300, 16},    {0x391, 58},
                 {0x410, 64},  {0x5D0, 27},   {0x621, 42},   {0x901, 100},   {0x981, 100},
                 {0xA01, 117}, {0xB82, 100},  {0xE01, 58},   {0x1E00, 256},  {0x2000, 256},
                 {0x3041, 83}, {0x30A1, 86},  {0x4E00, 999}, {0x5B00, 9999}, {0xAC00, 9999},
                 {0xE000, 16}, {0xFF61, 60},  {'\n', 4},     {0x1B, 1},      {0xD800, 2048},
                 {'\\', 1},    {0x1F600, 60}, {0x20000, 99}};
  std::string text;
  const auto put = [&](std::uint32_t unit) {
    text += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
  };
  for (; words != 0; --words) {
    const auto& block = kBlocks[random.below(std::size(kBlocks))];
    for (unsigned int length = 1 + random.below(5); length != 0; --length) {
      const char32_t scalar = block.first + random.below(block.count);
      if (scalar > 0xFFFF) put(0xD7C0 + (scalar >> 10));
      put(scalar > 0xFFFF ? 0xDC00 + (scalar & 0x3FF) : scalar);
    }
  }
  return text;
}

// With bytes changed here and there, and shifts and designations of sets that may not be known.
std::string damaged(Random& random, std::string bytes) {
  const std::string kBits[] = {"\x0E",     "\x0F",    "\x1B(I", "\x1B$(D", "\x1B.A", "\x1BN",
                               "\x1B$*H",  "\x1B$)X", "\x1B(Z", "~{",      "+AGEA",  "\xEF\x46",
                               "\x1B$$ZB", "\x1B-L",  "\x1Bg",  "\x1B)Q",  "\xFF",   "\x0F\x0F",
                               "\x1B$)A",  "\x1B)!E", "\x1B(?", "\x1B$1",  "\n"};
  for (std::size_t i = 0; i < bytes.size(); i += 1 + random.below(30)) {
    if (random.isOneIn(2)) bytes.insert(i, kBits[random.below(std::size(kBits))]);
    if (random.isOneIn(4)) bytes[i] = static_cast<char>(random.below(256));
  }
  return bytes;
}

struct Walk {
  std::string text;
  std::vector<StreamPlace> places;  // at the cuts, of which the last is the end of the source
};

// Converts a source by a new stream for each piece, which is given what waits byte by byte.
Walk walk(const StreamSettings& settings, const std::string& source, Random& random) {
  Walk walk;
  StreamConverter converter;
  StreamPlace place;
  std::string left;
  std::size_t done = 0;
  do {
    const std::size_t size = std::min<std::size_t>(1 + random.below(7), source.size() - done);
    left.append(source, done, size);
    done += size;
    DataBuffer out;
    EXPECT_EQ(converter.begin(settings, place), StreamStatus::kGood);
    for (const char& byte : left) {
      EXPECT_EQ(converter.push(bytesOf({&byte, 1}), 1, out), StreamStatus::kGood);
    }
    place = converter.place();
    walk.places.push_back(place);
    left.erase(0, static_cast<std::size_t>(place.settled));
    if (done == source.size()) {
      EXPECT_EQ(converter.finish(out), StreamStatus::kGood);
    }
    walk.text += textOf(out);
  } while (done != source.size());
  return walk;
}

// The places of a stream between two encodings with states are taken for places.
void expectPlaces(const StreamSettings& settings, const std::string& source) {
  StreamConverter stream, other;
  DataBuffer out;
  ASSERT_EQ(stream.begin(settings), StreamStatus::kGood);
  for (const char& byte : source) {
    ASSERT_EQ(stream.push(bytesOf({&byte, 1}), 1, out), StreamStatus::kGood);
    ASSERT_EQ(other.begin(settings, stream.place()), StreamStatus::kGood);
  }
}

// A place with some of its members replaced.
StreamPlace invented(Random& random, StreamPlace place) {
  for (unsigned int changes = 1 + random.below(3); changes != 0; --changes) {
    CodecState& state = place.state;
    const std::uint32_t number = random.number();
    switch (random.below(8)) {
      case 0:
        state.set = static_cast<std::uint8_t>(number);
        break;
      case 1:
        state.bitCount = static_cast<std::uint8_t>(number);
        break;
      case 2:
        state.bits = number;
        break;
      case 3:
        state.bits ^= (random.isOneIn(2) ? number & 0xFF : ~number & 0xFF) << 8 * random.below(4);
        break;
      case 4:
        state.windows[random.below(8)] = random.isOneIn(2) ? number & ~0x7Fu : number;
        break;
      case 5:
        state.shiftedOut = !state.shiftedOut;
        break;
      case 6:
        state.headerWritten = !state.headerWritten;
        break;
      default:
        place.repeated = number;
        place.isOtherOrder = random.isOneIn(2);
        place.hasBegun = random.isOneIn(2);
    }
  }
  return place;
}

// Whether the place is taken for one; then text goes on there, through places like it.
bool goesOnAt(const StreamPlace& place, const StreamSettings& settings, const std::string& source,
              Random& random) {
  StreamConverter converter;
  StreamPlace at = place;
  std::size_t begin = 0;
  do {
    const StreamStatus status = converter.begin(settings, at);
    EXPECT_TRUE(status == StreamStatus::kGood || status == StreamStatus::kMisuse);
    if (status != StreamStatus::kGood) {
      EXPECT_EQ(begin, 0u) << "a place where a stream stood is none";
      return false;
    }
    DataBuffer out;
    const std::string piece = source.substr(begin, 1 + random.below(40));
    EXPECT_EQ(converter.push(bytesOf(piece), piece.size(), out), StreamStatus::kGood);
    begin += piece.size();
    at = converter.place();
    if (random.isOneIn(4)) {
      EXPECT_EQ(converter.finish(out), StreamStatus::kGood);
    }
  } while (begin != source.size());
  return true;
}

}  // namespace

// In every encoding, another stream goes on where one stands; no text comes to harm by a place that
// was made up, or is none.
TEST(StreamPlaces, AreWhereAnotherStreamGoesOn) {
  Random random;
  int taken = 0, refused = 0;
  for (const EncodingRow& row : encodingRows()) {
    if (!isStreamCodePage(row.number)) continue;
    const bool hasStates = row.codec != nullptr && !row.codec->isStateless;
    std::vector<StreamSettings> ways = {settingsFor(row.number, 1200, "drop")};
    if (hasStates) ways.push_back(settingsFor(row.number, 1252, "compose,drop"));
    if (isStreamTarget(row.number)) ways.push_back(settingsFor(1200, row.number, "drop"));
    for (const StreamSettings& settings : ways) {
      SCOPED_TRACE(std::to_string(settings.from) + " to " + std::to_string(settings.to));
      std::vector<StreamPlace> places(1);
      std::string source;
      for (int round = hasStates ? 10 : 1; round != 0; --round) {
        source = someText(random, 60);
        if (settings.from != 1200) {
          if (row.isWritten) source = stream(settingsFor(1200, row.number, "drop"), source).text;
          if (round % 2 == 0) source = damaged(random, source);
        }
        if (hasStates && settings.from == row.number && row.isWritten) {
          expectPlaces(settingsFor(row.number, row.number, "drop"), source);
        }
        const Walk parts = walk(settings, source, random);
        const std::string whole = stream(settings, source, [] { return 1; }).text;
        ASSERT_EQ(parts.text, whole);
        // Marks behind a character without a place are judged with more of the text in sight.
        if (settings.to == 1200) {
          ASSERT_EQ(stream(settings, source).text, whole);
        }
        places.insert(places.end(), parts.places.begin(), parts.places.end());
      }
      for (int round = hasStates ? 200 : 4; round != 0; --round) {
        const StreamPlace& real = places[random.below(static_cast<unsigned int>(places.size()))];
        const StreamPlace place = invented(random, real);
        const bool isTaken = goesOnAt(place, settings, source, random);
        EXPECT_FALSE(isTaken && !hasStates && !hasOnly(place.state, {}));
        ++(isTaken ? taken : refused);
      }
    }
  }
  EXPECT_GT(taken, 2000);
  EXPECT_GT(refused, 20000);
}

TEST(StreamPlaces, AreOfStatesThatTextsLeadTo) {
  constexpr int kMarc8 = 200866, kWebIso2022Jp = 200933;
  const auto marc8 = [](unsigned char first, unsigned char second) {
    return CodecState{.bits = std::uint32_t(first ^ 'B') | std::uint32_t(second ^ 'E') << 8};
  };
  const struct {
    int from, to;
    CodecState state;
    bool isTaken;
  } cases[] = {
      {kMarc8, 1200, marc8('S', 'Q'), true},  // of the sets in both halves
      {kMarc8, 1200, marc8('g', 'E'), true},
      {kMarc8, 1200, marc8('?', '?'), true},
      {kMarc8, 1200, marc8('B', 'g'), false},
      {kMarc8, 1200, marc8('X', 'E'), false},
      {1200, kMarc8, marc8('p', 'E'), true},
      {1200, kMarc8, marc8('?', 'E'), false},
      {1200, kMarc8, marc8('B', 'N'), false},
      {kWebIso2022Jp, 1200, {.set = 2, .shiftedOut = true}, true},
      {kWebIso2022Jp, 1200, {.set = 4}, false},
      {1200, kWebIso2022Jp, {.set = 3}, true},
      {1200, kWebIso2022Jp, {.set = 2}, false},
      {1200, kWebIso2022Jp, {.set = 1, .shiftedOut = true}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(&c - cases));
    StreamConverter converter;
    StreamPlace place;
    place.hasBegun = true;
    place.state = c.state;
    EXPECT_EQ(converter.begin(settingsFor(c.from, c.to, "drop"), place),
              c.isTaken ? StreamStatus::kGood : StreamStatus::kMisuse);
  }
}
