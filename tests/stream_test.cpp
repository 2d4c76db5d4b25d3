// Tests of what a stream does in particular: treatments, reports, marks, and the end of a stream.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include "tests/stream_support.h"

using namespace std::string_literals;

namespace {

// What operator new has given out and not got back.
std::size_t g_allocated = 0;
std::size_t g_mostAllocated = 0;

// In front of each block stands how long it is.
constexpr std::size_t kFront = alignof(std::max_align_t);

void* counted(std::size_t size) {
  auto* const block = static_cast<char*>(std::malloc(kFront + size));
  *reinterpret_cast<std::size_t*>(block) = size;
  g_allocated += size;
  g_mostAllocated = std::max(g_mostAllocated, g_allocated);
  return block + kFront;
}
void release(void* memory) {
  if (memory == nullptr) return;
  char* const block = static_cast<char*>(memory) - kFront;
  g_allocated -= *reinterpret_cast<std::size_t*>(block);
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return counted(size); }
void* operator new[](std::size_t size) { return counted(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return counted(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }

namespace {

constexpr int kLe = 1200, kBe = 1201, kUtf32 = 12000, kUtf32Be = 12001, kUtf7 = 65000,
              kUtf8 = 65001;

struct Conversion {
  int from, to;
  std::string input, output;
};

void expectAll(std::initializer_list<Conversion> conversions, const std::string& treatment) {
  for (const Conversion& c : conversions) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to) + " of " + hex(c.input) +
                 ", " + treatment);
    const StreamResult result = stream(settingsFor(c.from, c.to, treatment), c.input);
    EXPECT_EQ(result.status, StreamStatus::kGood);
    EXPECT_EQ(hex(result.text), hex(c.output));
  }
}

}  // namespace

TEST(Stream, KeepsWhatEncConvertLoses) {
  expectAll({{1252, kUtf8, "a\0b"s, "a\0b"s},
             {kLe, kUtf8, "\0\0a\0"s, "\0a"s},
             {1252, kUtf32, "\0a"s, "\0\0\0\0a\0\0\0"s},
             {kBe, kLe, "\0a\x20\xAC"s, "a\0\xAC\x20"s},
             {kLe, kBe, "a\0\xAC\x20"s, "\0a\x20\xAC"s},
             {kBe, kUtf7, "\0a\x20\xAC"s, "a+IKw-"s},
             {kUtf7, kLe, "a+IKw-"s, "a\0\xAC\x20"s},
             {kUtf7, kBe, "a+IKw-"s, "\0a\x20\xAC"s},
             {kUtf32Be, kUtf7, "\0\0\x20\xAC"s, "+IKw-"s},
             {kUtf7, kUtf32, "+2D3eAA-"s, "\0\xF6\1\0"s},
             {kLe, kUtf8, "\xFE\xFF\0a"s, "a"s},
             {kBe, kUtf8, "\xFF\xFE"s + "a\0"s, "a"s},
             {kBe, 1252, "\xFF\xFE"s + "a\0"s, "a"s},
             {kLe, kBe, "\xFE\xFF\0a"s, "\0a"s},
             {kLe, kLe, "\xFE\xFF\0a"s, "\xFF\xFE"s + "a\0"s},
             {kBe, kBe, "\xFE\xFF\0a"s, "\xFE\xFF\0a"s},
             {kUtf32, 1252, "\0\0\xFE\xFF\0\0\0a"s, "a"s},
             {kUtf8, kUtf32, "\xEF\xBB\xBF\x61"s, "a\0\0\0"s},
             {kUtf8, kUtf8, "\xEF\xBB\xBF\x61"s, "\xEF\xBB\xBF\x61"s},
             {950, kUtf8, "\x83\x4B\x01"s, "\xEE\xBF\xBD\x01"s},
             {950, 936, "\x83\x4B\x03"s + "ab"s, "!\x03\x61\x62"s},
             {1252, kUtf8, "%PDF-1.7 \xE9"s, "%PDF-1.7 \xC3\xA9"s},
             {99, 99, "\x80\0a"s, "\x80\0a"s},
             {kUtf7, kUtf8, "a+"s, "a!"s},
             // A code without a character.
             {50225, kUtf8, "\x1B$)Ca\x0E-!0!\x0F"s, "a!\xEA\xB0\x80"s},
             // Only the beginning of a stream has a mark.
             {kUtf8, kLe, "a\xEF\xBB\xBF"s, "a\0\xFF\xFE"s},
             {kLe, kUtf8, "\xFF\xFE\xFF\xFE"s, "\xEF\xBB\xBF"s},
             // Both halves of a pair in their three-byte forms are the pair.
             {kUtf8, kLe, "\xED\xA0\xBD\xED\xB8\x80"s, "\x3D\xD8\x00\xDE"s}},
            "substitute=!");
}

TEST(Stream, PassesPdfThroughWhenAsked) {
  StreamSettings settings = settingsFor(1252, kUtf8);
  settings.pdfPassthrough = true;
  for (const auto& [input, output] : {std::pair{"%PDF-1.7 \xE9"s, "%PDF-1.7 \xE9"s},
                                      {"%PDF-1"s, "%PDF-1"s},
                                      {"%PDF-2 \xE9"s, "%PDF-2 \xC3\xA9"s}}) {
    EXPECT_EQ(stream(settings, input).text, output);
    EXPECT_EQ(stream(settings, input, [] { return 1; }).text, output);
  }
}

TEST(Stream, KeepsAndDropsMarksWhenAsked) {
  const std::string mark = "\xEF\xBB\xBF";
  const struct {
    int from, to;
    bool keeps, drops;
    std::string input, output;
  } cases[] = {
      {kUtf8, kUtf8, true, false, mark + "a", mark + "a"},
      {kUtf8, kLe, true, false, mark + "a", "\xFF\xFE\x61\0"s},
      {kUtf8, kLe, true, false, "a", "a\0"s},
      {kUtf8, 1252, true, false, mark + "a", "a"},
      {kUtf8, kUtf8, false, true, mark + mark + "a", mark + "a"},
      {kLe, kLe, false, true, "\xFE\xFF\0a"s, "a\0"s},
      {kUtf8, kUtf8, false, true, "\xEF\xBB", "?"},
  };
  for (const auto& c : cases) {
    StreamSettings settings = settingsFor(c.from, c.to, "substitute=0x3F");
    settings.keepMark = c.keeps;
    settings.dropMark = c.drops;
    EXPECT_EQ(hex(stream(settings, c.input).text), hex(c.output)) << hex(c.input);
    EXPECT_EQ(hex(stream(settings, c.input, [] { return 1; }).text), hex(c.output));
  }
}

TEST(Stream, StopsAtMalformedInputUnderAnyTreatment) {
  for (const auto& [treatment, output] :
       {std::pair{"drop", "ab"s}, {"substitute=!", "a!b"s}, {"hex", "a&#x4E00;b"s}}) {
    for (const std::size_t size : {1u, 100u}) {
      StreamSettings settings = settingsFor(kUtf8, 1252, treatment);
      settings.stopsAtMalformed = true;
      const StreamResult result = stream(settings,
                                         "a\xE4\xB8\x80"
                                         "b\xFFzzz",
                                         [&] { return size; });
      EXPECT_EQ(result.status, StreamStatus::kStopped);
      EXPECT_EQ(result.text, output);
      ASSERT_EQ(result.errors.size(), 2u);
      EXPECT_EQ(result.errors[1].offset, 5u);
    }
  }
}

TEST(Stream, WritesAMarkWhenAsked) {
  for (const Conversion& c : {Conversion{1252, kLe, "a"s, "\xFF\xFE\x61\0"s},
                              {1252, kUtf8, ""s, "\xEF\xBB\xBF"s},
                              {kUtf8, kUtf8, "\xEF\xBB\xBF\x61"s, "\xEF\xBB\xBF\x61"s},
                              {kLe, kUtf32Be, "\xFF\xFE\x61\0"s, "\0\0\xFE\xFF\0\0\0a"s},
                              {kUtf8, 1252, "a"s, "a"s}}) {
    StreamSettings settings = settingsFor(c.from, c.to);
    settings.writeMark = true;
    EXPECT_EQ(hex(stream(settings, c.input).text), hex(c.output));
  }
}

TEST(Stream, WritesTreatmentsAsTextOfTheTarget) {
  const std::string e = "\xC3\xA9", emoji = "\xF0\x9F\x98\x80";
  expectAll({{kUtf8, 1251, "a" + e + "b" + emoji + "\xFF\x63", "a&#x00E9;b&#x1F600;<0xFF>c"},
             {kUtf8, 37, "\xFF\x31", "\x4C\xF0\xA7\xC6\xC6\x6E\xF1"},
             {kUtf8, 1251, "\xF4\x8F\xBF\xBD", "&#x10FFFD;"},
             {kUtf8, 20108, "a\xFF", "a?"},  // which lacks the number sign
             {10021, kLe, "\xFC",
              "<\0"
              "0\0x\0F\0C\0>\0"s},
             {kUtf8, 50220, "\xE6\x97\xA5\xFF\xE6\x97\xA5", "\x1B$BF|\x1B(B<0xFF>\x1B$BF|\x1B(B"},
             {50220, kUtf8, "\x1B$BF|\x1B$(D\"/\x1B(B.", "\xE6\x97\xA5<0x222F>."},
             {kUtf8, kCodePageHz, "\xE6\x97\xA5" + emoji, "~{HU~}&#x1F600;"},
             {kUtf8, 55000, "~\xC3\xB1" + emoji, "\x1B\x3D\x7D&#x1F600;"},
             {kUtf8, 55000, "\xED\xA0\xBD\xED\xB8\x80", "&#x1F600;"},
             {kLe, kUtf8, "\x3D\xD8\x61\0\x00\xDE"s, "<0x3DD8>a<0x00DE>"},
             {932, 932, "\x93\xFA\xFF\x85\x40", "\x93\xFA\xFF<0x85>@"},
             {kUtf7, kUtf8, "a+IK-b", "a<0x494B>b"},
             {20127, 1252, "a\xE9", "a<0xE9>"}},
            "hex");
  expectAll({{kUtf8, 1252, "a\xFF\xD0\x96", "a??"},
             {kUtf8, kUtf8, "a\xFF\x62", "a\xEF\xBF\xBD\x62"},
             {kUtf32, kUtf8, "\0\0\x11\0a\0\0\0"s, "\xEF\xBF\xBD\x61"},
             {kUtf8, 37, "\xFF", "\x6F"},
             {kUtf8, 55000, "a\xE6\x97\xA5", "a?"},
             {949, 50225, "\xB0\xA1\x81\x41", "\x1B$)C\x0E\x30!\x0F?"}},
            "substitute");
  expectAll({{kUtf8, 1252, "\xFF", "<\x80>"}, {kUtf8, kLe, "\xFF", "<\0\xAC\x20>\0"s}},
            "substitute=<\xE2\x82\xAC>");
  expectAll({{kUtf8, kLe, "\xFF", "\xFF\xFF\0\xD8\0\xDC"s}},
            "substitute=\xEF\xBF\xBF\xF0\x90\x80\x80");
  expectAll({{kUtf8, 50220, "\xE6\x97\xA5\xFF", "\x1B$BF|\x1B(B\x01\xFF"},
             {kUtf8, kUtf7, "\xE2\x82\xAC\xFF\x61", "+IKw-\x01\xFF\x61"}},
            "substitute=0x01fF");
  expectAll({{kUtf8, 20127, "a" + e + "b\xE9\x63", "a\xE9\x62?c"},
             {kUtf8, kUtf8, "a\xE9\x63", "a" + e + "c"},
             {kUtf8, 20127, emoji, "?"}},
            "alternate=1252");
  expectAll({{kUtf8, 1252, "a\xC5\x81\xFF", "a\xA3?"}}, "alternate=latin2");
  expectAll({{kUtf8, kUtf8, "a\x85\xFF", "a\xC2\x85\xC3\xBF"}, {kUtf8, 1251, e, "\xE9"}},
            "alternate=latin1");
  expectAll({{kUtf8, 1252, "a\xE6\x97\xA5", "a~{HU~}"}}, "alternate=hz");
  expectAll(
      {{kUtf8, 20127, "a" + e + "\xFF", "a" + e + "\xFF"}, {50220, 1252, "\x1B$BF|\x1B(B.", "F|."}},
      "raw");
}

// The parts of ISO 8859 that EncConvert lacks, or has with other characters.
TEST(Stream, ConvertsIso8859AsTheStandardsDo) {
  std::string bytes, text;
  for (unsigned int c = 0; c < 256; ++c) {
    bytes += static_cast<char>(c);
    if (c >= 0x80) text += static_cast<char>(0xC0 | c >> 6);
    text += static_cast<char>(c < 0x80 ? c : 0x80 | (c & 0x3F));
  }
  expectAll({{819, kUtf8, bytes, text},
             {kUtf8, 819, text + "\xE2\x82\xAC", bytes},
             {28600, kUtf8, "\xA2\xBD\xFF", "\xC4\x92\xE2\x80\x95\xC4\xB8"},
             {kUtf8, 28600, "\xC4\x92\xE2\x80\x95\xC4\xB8", "\xA2\xBD\xFF"},
             {28601, kUtf8, "\x80\xA1\xDB\xFB", "\xC2\x80\xE0\xB8\x81\xE0\xB9\x9B"},
             {874, 28601, "\x80\xA1", "\xA1"}},
            "drop");
}

TEST(Stream, ReportsWhatItCouldNotConvert) {
  const std::string text = "one\ntwo \xC3\xA9 \xF0\x9F\x98\x80\r\n\xE6\x97 x\n\xED\xA0\x80";
  for (const unsigned int size : {1u, 4u, 100u}) {
    const StreamResult result = stream(settingsFor(kUtf8, 932, "drop"), text, [=] { return size; });
    EXPECT_EQ(result.text, "one\ntwo  \r\n x\n");
    ASSERT_EQ(result.errors.size(), 4u);
    const struct {
      std::uint64_t offset, line;
      std::uint32_t length;
      std::int32_t codePoint;
      StreamErrorKind kind;
    } expected[] = {{8, 2, 2, 0xE9, StreamErrorKind::kNoPlace},
                    {11, 2, 4, 0x1F600, StreamErrorKind::kNoPlace},
                    {17, 3, 2, -1, StreamErrorKind::kMalformed},
                    {22, 4, 3, 0xD800, StreamErrorKind::kMalformed}};
    for (std::size_t i = 0; i < 4; ++i) {
      const StreamError& error = result.errors[i];
      EXPECT_EQ(error.offset, expected[i].offset);
      EXPECT_EQ(error.line, expected[i].line);
      EXPECT_EQ(error.length, expected[i].length);
      EXPECT_EQ(error.codePoint, expected[i].codePoint);
      EXPECT_EQ(error.kind, expected[i].kind);
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(error.bytes), error.byteCount),
                text.substr(static_cast<std::size_t>(error.offset), error.length));
    }
  }
  // The first and the last character of each length.
  const StreamResult limits =
      stream(settingsFor(kUtf8, 1251, "drop"), "\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF");
  std::vector<std::uint64_t> offsets;
  for (const StreamError& error : limits.errors) offsets.push_back(error.offset);
  EXPECT_EQ(offsets, (std::vector<std::uint64_t>{1, 3, 5, 8, 11, 15}));
  // Where the text passed through another form before the place was found to be bad.
  for (const auto& [from, to, input, offset] : {std::tuple{50220, 1252, "a\x1B$B$\"F|\x1B(B"s, 4u},
                                                {932, 50220, "\x93\xFA\xF0\x40"s, 2u},
                                                {10004, 1256, "a\xC0\xA1\xA1"s, 1u},
                                                {kUtf7, 1252, "a+BB8BBA-"s, 2u},
                                                {kCodePageHz, 1252, "~{<:~}"s, 2u}}) {
    const StreamResult stopped = stream(settingsFor(from, to), input);
    EXPECT_EQ(stopped.status, StreamStatus::kStopped);
    ASSERT_EQ(stopped.errors.size(), 1u) << from;
    EXPECT_EQ(stopped.errors[0].offset, offset) << from;
  }
}

TEST(Stream, StopsBeforeTheFirstBadPiece) {
  StreamConverter converter;
  DataBuffer out;
  EXPECT_EQ(converter.push(bytesOf("a"), 1, out), StreamStatus::kMisuse);
  ASSERT_EQ(converter.begin(settingsFor(kUtf8, 50220)), StreamStatus::kGood);
  EXPECT_EQ(converter.push(bytesOf("\xE6\x97\xA5\x62\xFF\x63"), 6, out), StreamStatus::kStopped);
  EXPECT_EQ(textOf(out), "\x1B$BF|\x1B(Bb");
  EXPECT_EQ(converter.firstError().offset, 4u);
  EXPECT_EQ(converter.push(bytesOf("d"), 1, out), StreamStatus::kStopped);
  EXPECT_EQ(converter.finish(out), StreamStatus::kStopped);
  EXPECT_EQ(out.getSize(), 9u);

  ASSERT_EQ(converter.begin(settingsFor(932, kUtf8)), StreamStatus::kGood);
  EXPECT_EQ(converter.errorCount(), 0u);
  EXPECT_EQ(converter.push(bytesOf("\x93"), 1, out), StreamStatus::kGood);
  EXPECT_EQ(converter.finish(out), StreamStatus::kStopped);  // half a character at the end
  EXPECT_EQ(converter.begin(settingsFor(1252, kUtf8)), StreamStatus::kGood);
  EXPECT_EQ(converter.finish(out), StreamStatus::kGood);
  EXPECT_EQ(converter.finish(out), StreamStatus::kMisuse);
}

TEST(Stream, RefusesWhatItCannotServeBeforeAnythingIsWritten) {
  const struct {
    int from, to;
    const char* treatment;
    StreamStatus status;
  } cases[] = {{99, 1252, "drop", StreamStatus::kNoDecoder},
               {28602, 1252, "drop", StreamStatus::kNoDecoder},
               {1252, 28602, "drop", StreamStatus::kNoEncoder},
               {1252, -1, "drop", StreamStatus::kNoEncoder},
               {kUtf8, 1252, "substitute=\xD0\x96", StreamStatus::kBadSubstitute},
               {kUtf8, 1252, "substitute=\xFF", StreamStatus::kBadSubstitute},
               {kUtf8, 1251, "substitute=\xD0\x96", StreamStatus::kGood},
               {1252, 0, "drop", StreamStatus::kGood},
               {0, 0, "drop", StreamStatus::kGood},  // a plain copy
               {99, 99, "drop", StreamStatus::kGood},
               {37, 37, "drop", StreamStatus::kGood}};
  for (const auto& c : cases) {
    EXPECT_EQ(stream(settingsFor(c.from, c.to, c.treatment), "").status, c.status)
        << c.from << " to " << c.to;
  }
  StreamSettings settings = settingsFor(1252, kUtf8, "alternate=1253");
  settings.alternate = 28602;
  EXPECT_EQ(stream(settings, "a").status, StreamStatus::kNoAlternate);
  for (const char* text : {"", "Stop", "alternate", "alternate=", "alternate=nothing",
                           "hex=", "substitute=0x", "substitute=0xG1", "substitute=0x1G"}) {
    EXPECT_FALSE(parseStreamTreatment(text, settings)) << text;
  }
}

TEST(Stream, CutsMacArabicRunsOnlyBeyondOneMebibyte) {
  constexpr std::size_t kLimit = 1 << 20;
  std::string text(kLimit + 70000, '\xC0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(0xA1 + i % 3);
  const std::string shorter = text.substr(0, kLimit - 1) + "x";
  const StreamSettings settings = settingsFor(10004, kUtf8);
  EXPECT_TRUE(stream(settings, shorter, [] { return 5000; }).text ==
              convert(10004, kUtf8, shorter).out);
  const std::string cut = convert(10004, kUtf8, text.substr(0, kLimit)).out +
                          convert(10004, kUtf8, text.substr(kLimit)).out;
  EXPECT_TRUE(stream(settings, text).text == cut);
  EXPECT_TRUE(stream(settings, text, [] { return 777; }).text == cut);
  // The places in such a run, which is written from its end.
  for (const std::size_t place : {std::size_t{0}, std::size_t{70001}, kLimit - 1}) {
    std::string run = text.substr(0, kLimit);
    run[place] = '\xC0';
    const StreamResult result = stream(settingsFor(10004, 1256, "drop"), run);
    ASSERT_EQ(result.errors.size(), 1u);
    EXPECT_EQ(result.errors[0].offset, place);
    EXPECT_EQ(result.errors[0].bytes[0], 0xC0);
  }
}

TEST(Stream, KeepsLittleWhateverTheInput) {
  const struct {
    int from, to;
    std::string unit;                     // repeated
  } cases[] = {{10004, 1256, "\xC0"},     // a run without end, of characters without a place
               {kUtf8, 1252, "\xFF"},     // nothing but errors
               {kUtf8, 50220, "\x1B"},    // what cannot be told until the end
               {kLe, 50225, "\x3D\xD8"},  // never the other half
               {kUtf7, kUtf8, "+2D0A"},   // pairs that do not come about
               {50220, 1252, "\x1B$B"},   // turns without text
               {kCodePageHz, kUtf8, "~\n"}};
  for (const auto& c : cases) {
    std::string piece;
    while (piece.size() < 2u << 20) piece += c.unit;
    convert(c.from, c.to, c.unit);  // the tables are the process's
    StreamConverter converter;
    DataBuffer out;
    const std::size_t before = g_allocated;
    g_mostAllocated = before;
    StreamSettings settings = settingsFor(c.from, c.to, "hex");
    struct : StreamDrain {
      bool onStreamOutput(DataBuffer& buffer) override {
        buffer.clear();
        return true;
      }
    } drain;
    settings.drain = &drain;
    ASSERT_EQ(converter.begin(settings), StreamStatus::kGood);
    ASSERT_EQ(converter.push(bytesOf(piece), piece.size(), out), StreamStatus::kGood);
    EXPECT_EQ(converter.finish(out), StreamStatus::kGood);
    EXPECT_LT(g_mostAllocated - before, 8u << 20) << c.from << " to " << c.to;
    RecordProperty(std::to_string(c.from), std::to_string(g_mostAllocated - before));
  }
}

// Counts what it takes, up to the output that it refuses.
struct CountingDrain : StreamDrain {
  explicit CountingDrain(std::size_t room) : m_room(room) {}
  bool onStreamOutput(DataBuffer& out) override {
    if (out.getSize() > m_room) return false;
    m_room -= out.getSize();
    out.clear();
    return true;
  }

 private:
  std::size_t m_room;
};

TEST(Stream, EndsWhenItsDrainFails) {
  const std::string text(1u << 20, 'a');
  const struct {
    int from, to;
    std::size_t room;
    std::string bad;
    StreamStatus status;
  } cases[] = {{kUtf8, 1252, 200000, "", StreamStatus::kDrainFailed},
               {99, 99, 200000, "", StreamStatus::kDrainFailed},  // a plain copy
               {1252, kLe, 2u << 20, "", StreamStatus::kGood},
               {kUtf8, 1252, 0, "\xFF", StreamStatus::kStopped}};  // before there is much output
  for (const auto& c : cases) {
    CountingDrain drain(c.room);
    StreamSettings settings = settingsFor(c.from, c.to);
    settings.drain = &drain;
    StreamConverter converter;
    DataBuffer out;
    ASSERT_EQ(converter.begin(settings), StreamStatus::kGood);
    const std::string input = c.bad + text;
    EXPECT_EQ(converter.push(bytesOf(input), input.size(), out), c.status) << c.from;
    EXPECT_EQ(converter.status(), c.status);
    EXPECT_EQ(converter.push(bytesOf("b"), 1, out), c.status);
    EXPECT_EQ(converter.finish(out), c.status);
  }
}

TEST(Stream, KnowsHzByName) {
  for (const char* name : {"hz-gb-2312", "HZ", "hz_gb_2312", "1052936"}) {
    EXPECT_EQ(streamCodePage(name), kCodePageHz) << name;
  }
  EXPECT_EQ(streamCodePage("shift_jis"), 932);
  EXPECT_EQ(streamCodePage("hz-gb-2313"), 0);
  EXPECT_EQ(streamCodePage(""), 0);
  // The example of RFC 1843, with a line that goes on.
  expectAll({{kCodePageHz, kUtf8, "~{<:Ky2;S{#,NpJ)l6HK!#~}Bye~~.~\n!",
              "\xE5\xB7\xB1\xE6\x89\x80\xE4\xB8\x8D\xE6\xAC\xB2\xEF\xBC\x8C\xE5\x8B\xBF\xE6\x96\xBD"
              "\xE6\x96\xBC\xE4\xBA\xBA\xE3\x80\x82\x42ye~.!"},
             {936, kCodePageHz, "\xBC\xBA~\n", "~{<:~}~~\n"},
             {kCodePageHz, 936, "~{<:~}~~", "\xBC\xBA~"}},
            "stop");
}
