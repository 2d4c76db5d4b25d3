// The reference decoders and encoders of tables, each by itself.
#include <memory>

#include "support/text_log.h"
#include "support/zv_base.h"
#include "tests/test_support.h"

namespace {

std::string decode(int from, std::string_view in, bool* ok = nullptr) {
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  const bool result =
      converter.convertToUnicodeHC(from, bytesOf(in), static_cast<unsigned>(in.size()), out, log);
  if (ok != nullptr) *ok = result;
  return hex(out);
}

// Encodes out of a pivot, or not.
ConversionResult encode(int to, std::string_view in, bool pivot = false) {
  EncodingConvert converter;
  converter.m_pivotFromUtf16 = pivot;
  converter.m_toCodePage = to;
  LogBase log;
  DataBuffer out;
  const bool ok =
      converter.convertFromUnicodeHC(to, bytesOf(in), static_cast<unsigned>(in.size()), out, log);
  return {ok, converter.m_foundErrors, hex(out)};
}

TEST(DecodeTest, ProbesPairsBeforeSingleBytes) {
  struct {
    int from;
    const char* in;
    const char* out;
  } const cases[] = {
      {1252, "41 00 80", "41 00 00 00 AC 20"},
      {37, "00 C1 25", "00 00 41 00 0A 00"},
      {10021, "41 83 42", "41 00 42 00"},  // unmapped: dropped, decoding goes on
      {932, "82 A0 B1 41 00", "42 30 71 FF 41 00 00 00"},
      {932, "82", ""},            // a lead byte at the end
      {932, "82 20", "20 00"},    // no pair: only the first byte goes
      {52936, "B0 A1", "4A 55"},  // with the table of 936
      {936, "80", "AC 20"},
      {949, "B0 A1 00", "00 AC 00 00"},
      {51932, "A4 A2 F9 F5", "42 30 11 FA"},  // two units share F9F5; the kanji wins
      {10001, "FD FE 86 9B", "A9 00 22 21 16 21"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(decode(c.from, unhex(c.in)), c.out) << c.from << " " << c.in;
  bool ok = true;
  EXPECT_EQ(decode(20936, "A", &ok), "");
  EXPECT_FALSE(ok);
}

// No double-byte code page lacks the ASCII flag, but a table may.
TEST(DecodeTest, TableWithoutAscii) {
  LogBase log;
  const std::unique_ptr<HashConvert> map(HashConvert::createNewObject(1));
  map->hcInitialize(7);
  map->hcInsert(bytesOf("AB"), bytesOf("\x11\x22"), 22, log);
  auto* const single = reinterpret_cast<unsigned char*>(&map->m_singleBytes[0x42]);
  zvStoreHostUnit(single, 0x0062, zvIsBigEndian());
  EncodingConvert converter;
  DataBuffer out;
  EXPECT_TRUE(converter.convertToUnicodeHCVar(map.get(), bytesOf("ABBAC\0"), 6, out, log));
  EXPECT_EQ(hex(out), "11 22 62 00 00 00");  // A and C have no unit; a last zero stays
  EXPECT_TRUE(converter.m_foundErrors);
}

TEST(DecodeTest, OutputLongerThanTheStagingAreaIsWhole) {
  std::string in, expected;
  for (int i = 0; i < 333; ++i) {
    in += "a\x82\xA0";
    expected += unhex("61 00 42 30");
  }
  EXPECT_EQ(decode(932, in), hex(expected));
}

TEST(DecodeTest, MissingTableIsAnErrorEvenInAQuietLog) {
  EncodingConvert converter;
  TextLog log;
  DataBuffer out;
  EXPECT_FALSE(converter.convertToUnicodeHCVar(nullptr, bytesOf("a"), 1, out, log));
  EXPECT_EQ(log.text(), "error: convertToUnicodeHCVar: missing hc\n");
  EXPECT_TRUE(converter.convertToUnicodeHC(1252, nullptr, 5, out, log));
}

TEST(EncodeTest, NothingToEncodeIsNoError) {
  const std::unique_ptr<HashConvert> map(HashConvert::createNewObject(1));
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  EXPECT_TRUE(converter.convertFromUnicodeHC(1252, nullptr, 4, out, log));
  EXPECT_TRUE(converter.convertFromUnicodeHC2(map.get(), nullptr, 4, out, log));
  EXPECT_TRUE(converter.convertFromUnicodeHC2(map.get(), bytesOf("a"), 0, out, log));
  EXPECT_FALSE(converter.convertFromUnicodeHC2(nullptr, nullptr, 0, out, log));
}

TEST(EncodeTest, LooksUpFoldsAndDecomposes) {
  struct {
    int to;
    const char* in;
    const char* out;
    bool ok = true;
  } const cases[] = {
      {1252, "41 00 AC 20 00 00", "41 80 00"},
      {1252, "41 00 42", "41"},  // the odd byte is ignored
      {1252, "41", "", false},
      {1252, "41 00 00 4E 42 00", "41 42", false},  // dropped, and reported
      {1252, "3D D8 00 DE 41 00", "41", false},     // each half of a pair by itself
      {37, "00 00 41 00", "00 C1"},
      {1256, "61 06 F2 06 21 06", "31 32 C1"},
      {28596, "60 06 F9 06", "30 39"},
      {864, "61 06", "B1"},
      {1258, "A0 1E C3 00 AC 1E 28 01", "41 F2 41 DE C2 F2 49 DE"},
      {1258, "A4 1E D4 1E", "C2 EC D4 D2"},
      {932, "42 30 71 FF A5 00", "82 A0 B1 5C"},
      {52936, "4A 55", "B0 A1"},
      {10001, "A0 00 A9 00 16 21", "A0 FD 86 9B"},
      {10001, "A5 00 11 22", "", false},  // removed by the differences
      {28600, "41 00", "", false},
      {28601, "41 00", "", false},
      {1200, "41 00", "", false},
  };
  for (const auto& c : cases) {
    const ConversionResult outcome = encode(c.to, unhex(c.in));
    EXPECT_EQ(outcome.out, c.out) << c.to << " " << c.in;
    EXPECT_EQ(outcome.ok, c.ok) << c.to << " " << c.in;
  }
}

TEST(EncodeTest, PassThroughEscape) {
  struct {
    const char* in;
    const char* out;
  } const cases[] = {
      {"41 00 FD EF 02 81 82 42 00", "41 81 82 42"},  // the last unit needs the ninth byte
      {"FD EF 02 81 82 42 00", "81 82 42"},
      {"FD EF 01 81 42 00", "81 42"},
      {"FD EF 01 81 42 00 43", "81 42"},        // at an even place the odd byte is ignored
      {"41 00 FD EF 02 42 00", "41 42"},        // its bytes would take the odd byte, too: a unit
      {"FD EF 02 81 82 42 00 43", "81 82 42"},  // an odd byte is left over
      {"FD EF 06 00 42 00", "06 42"},           // too long: only the mark goes
      {"FD EF 05 41 00 00", "41"},              // runs past the end: the count goes, too
      {"FD EF 00", ""},
  };
  for (const int to : {437, 1252, 932}) {
    for (const auto& c : cases) EXPECT_EQ(encode(to, unhex(c.in), true).out, c.out) << c.in;
  }
  // Outside a pivot the mark is a character like any other; 950 has it.
  EXPECT_EQ(encode(950, unhex("FD EF")).out, "83 4B");
}

TEST(EncodeTest, TwentyEightFiveNineOneIsWindows1252) {
  EXPECT_EQ(decode(28591, "\x80"), "AC 20");
  EXPECT_EQ(encode(28591, unhex("AC 20")).out, "80");
}

}  // namespace
