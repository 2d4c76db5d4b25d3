// Tests of the single-byte encodings that have a mapping, against other converters than those that
// the mappings were made from.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "encoding/codecs/encoding_names.h"
#include "tests/stream_support.h"

namespace {

std::string utf32(char32_t scalar) {
  std::string text;
  for (int shift = 0; shift < 32; shift += 8) text += static_cast<char>(scalar >> shift);
  return text;
}

// What a byte is read as, in UTF-32; empty where it is malformed.
std::string read(int number, unsigned int byte) {
  const std::string text(1, static_cast<char>(byte));
  const StreamResult result = stream(settingsFor(number, 12000, "drop"), text);
  EXPECT_EQ(result.errors.empty(), !result.text.empty());
  return result.text;
}

}  // namespace

TEST(SingleByteTables, AreThoseOfOtherConverters) {
  std::ifstream file(ENCCONV_TEST_DATA "/single_byte_peers.txt");
  std::string line;
  int encodings = 0;
  while (std::getline(file, line)) {
    if (line.starts_with('#')) continue;
    SCOPED_TRACE(line);
    const EncodingRow* const row = findEncoding(line.substr(0, line.find(' ')));
    ASSERT_NE(row, nullptr);
    for (unsigned int byte = 0; byte < 256; ++byte) {
      std::string scalar;
      ASSERT_TRUE(file >> scalar);
      if (scalar == "-") {
        ASSERT_EQ(read(row->number, byte), "") << byte;
        continue;
      }
      const std::string text = utf32(static_cast<char32_t>(std::stoul(scalar, nullptr, 16)));
      ASSERT_EQ(read(row->number, byte), text) << byte;
      // A second code of a character is written as the first one.
      const StreamResult written = stream(settingsFor(12000, row->number), text);
      ASSERT_EQ(written.text.size(), 1u);
      ASSERT_EQ(read(row->number, static_cast<unsigned char>(written.text[0])), text) << byte;
    }
    std::getline(file, line);
    ++encodings;
  }
  EXPECT_GT(encodings, 10);
}

TEST(SingleByteTables, ReadMoreThanOneCodeAndTellOfWhatTheyOnlyWrite) {
  const struct {
    const char* name;
    char32_t written;
    unsigned int byte;
    char32_t read;
  } cases[] = {
      {"ibm-420_X120-1999", 0xFE8F, 0x58, 0x0628},  // the shape of a letter for the letter
      {"IBM1008", 0x0628, 0xBF, 0xFE8F},            // and the other way round
      {"IBM833", 0xFF21, 0xC1, 'A'},
      {"Adobe-Standard-Encoding", 0xA0, 0x20, ' '},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const int number = findEncoding(c.name)->number;
    const StreamResult result = stream(settingsFor(12000, number), utf32(c.written));
    EXPECT_EQ(result.text, std::string(1, static_cast<char>(c.byte)));
    ASSERT_EQ(result.approximations.size(), 1u);
    EXPECT_EQ(read(number, c.byte), utf32(c.read));
  }
  // Thai tone marks of 9066 have a second code, for the place above a tall consonant.
  EXPECT_EQ(read(9066, 0xA0), read(9066, 0xE8));
  EXPECT_EQ(stream(settingsFor(12000, 9066), utf32(0x0E48)).text, "\xE8");
}

// Sets of signs that the tables of single bytes cannot hold, and so have a codec.
TEST(SingleByteTables, HoldPatternsAtByteZeroAndSequences) {
  const int braille = findEncoding("ISO_11548-1")->number;
  EXPECT_EQ(read(braille, 0), utf32(0x2800));
  EXPECT_EQ(stream(settingsFor(12000, braille), utf32(0x2800)).text, std::string(1, '\0'));
  EXPECT_EQ(stream(settingsFor(12000, braille, "drop"), utf32(0) + utf32(0x28FF)).text, "\xFF");
  const int symbol = findEncoding("MacSymbol")->number;
  const std::string sansSerif = utf32(0xAE) + utf32(0xF87F);
  EXPECT_EQ(read(symbol, 0xE2), sansSerif);
  EXPECT_EQ(stream(settingsFor(12000, symbol), sansSerif + utf32(0xAE)).text, "\xE2\xD2");
}
