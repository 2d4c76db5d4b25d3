// What conversions do on a big-endian host. Units that come from tables and transforms are in host
// order there; the ASCII shortcuts, the table encoder and the tables of differences are not, and
// nothing reorders UTF-16 that a caller hands in. The differences are known and kept.
#include <iterator>
#include <vector>

#include "encoding/tables/flat_tables.h"
#include "encoding/tables/table_registry.h"
#include "tests/test_support.h"

namespace {

struct Case {
  const char* what;
  int from, to, action;
  const char* input;
  const char* output;
  bool ok, foundErrors;
};

constexpr Case kCases[] = {
    // Single-byte decoding is in host order, and so is what the way to UTF-8 reads.
    {"lookup to units", 1252, 1200, 0, "41 80", "00 41 20 AC", true, false},
    {"lookup to UTF-8", 1252, 65001, 0, "41 80", "41 E2 82 AC", true, false},
    {"swapped to the other order", 1252, 1201, 0, "41 80", "41 00 AC 20", true, false},
    {"EBCDIC to UTF-8", 37, 65001, 0, "C1 51", "41 C3 A9", true, false},
    // The encoder reads low byte first. Keys of tables are in host order and match all the same;
    // ASCII, which tables do not list, is not recognised when it comes in host order.
    {"lookup to table, ASCII", 1252, 1250, 0, "41 E9", "E9", false, true},
    {"lookup to table that lists ASCII", 1252, 37, 0, "41 E9", "C1 51", true, false},
    // UTF-8 gives ASCII low byte first and everything else in host order.
    {"UTF-8 to units", 65001, 1200, 0, "41 C3 A9", "41 00 00 E9", true, false},
    {"UTF-8 to table", 65001, 1252, 0, "41 C3 A9", "41 E9", true, false},
    {"UTF-8 to double-byte table", 65001, 932, 0, "41 E6 97 A5", "41 93 FA", true, false},
    {"UTF-8 to UTF-32", 65001, 12000, 0, "41 C3 A9", "41 00 00 00 E9 00 00 00", true, false},
    {"UTF-32 to UTF-8", 12000, 65001, 0, "41 00 00 00 E9 00 00 00", "41 C3 A9", true, false},
    {"pair to UTF-8", 65001, 1200, 0, "F0 9F 98 80", "D8 3D DE 00", true, false},
    // Double-byte decoding has its own ASCII shortcut, low byte first, which UTF-8 then reads in
    // host order.
    {"double byte to units", 932, 1200, 0, "41 93 FA", "41 00 65 E5", true, false},
    {"double byte to UTF-8", 932, 65001, 0, "41 93 FA", "E4 84 80 E6 97 A5", true, false},
    {"double byte to table", 932, 936, 0, "41 93 FA", "41 C8 D5", true, false},
    // UTF-16 of the caller is normalised to little endian, and read in host order by the way to
    // UTF-8; the way to a table reads it right but finds only ASCII.
    {"UTF-16 to UTF-8", 1200, 65001, 0, "41 00 E9 00", "E4 84 80 EE A4 80", true, false},
    {"UTF-16 big endian to UTF-8", 1201, 65001, 0, "00 41", "E4 84 80", true, false},
    {"UTF-16 to table", 1200, 1252, 0, "41 00 E9 00", "41", false, true},
    // UTF-7 goes through host order, numbered 1201, which no table serves.
    {"UTF-7 source", 65000, 65001, 0, "41", "", false, false},
    {"UTF-7 target", 65001, 65000, 0, "41", "", false, true},
    // The pass-through escape is seen by the way to UTF-8 on this kind of host only.
    {"escape to UTF-8", 949, 65001, 7, "81", "81", true, true},
    {"escape to table", 949, 1252, 7, "81", "81", true, true},
    // What the encoder knows about single units it looks for low byte first.
    {"Arabic digit", 65001, 1256, 0, "D9 A1", "", false, true},
    {"Vietnamese letter", 65001, 1258, 0, "E1 BA A0", "", false, true},
    // The keys of the table of differences are low byte first, so it removes nothing and adds
    // units that nobody means.
    {"table of differences", 10001, 65001, 0, "FD", "EA A4 80", true, false},
    {"over its base", 65001, 10001, 0, "C2 A9", "", false, true},
    // The ISO-2022 codecs and GSM work on bytes; what they stand on does as above.
    {"ISO-2022-JP", 50220, 65001, 0, "1B 24 42 46 7C 1B 28 42", "E6 97 A5", true, false},
    {"GSM", 55000, 65001, 0, "41 1B 65", "41 E2 82 AC", true, false},
};

TEST(BigEndianHost, ConvertsAsKnown) {
  const BigEndianHost host;
  for (const Case& c : kCases) {
    EncodingConvert converter;
    converter.setErrorAction(c.action);
    EXPECT_EQ(convert(converter, c.from, c.to, unhex(c.input)),
              (ConversionResult{c.ok, c.foundErrors, unhex(c.output)}))
        << c.what;
  }
}

// All units and codes of the flat tables of a row.
std::vector<std::uint16_t> flatTablesOf(const EncodingRow& row) {
  LogBase log;
  EXPECT_TRUE(ensureToUnicode(row, log) && ensureFromUnicode(row, log)) << row.number;
  const fast::Decoder decoder = fast::decoderFor(row);
  const fast::Encoder encoder = fast::encoderFor(row);
  std::vector<std::uint16_t> all;
  const auto add = [&](const auto& table) {
    all.insert(all.end(), std::begin(table), std::end(table));
  };
  if (decoder.singleByte != nullptr) add(decoder.singleByte->units);
  if (decoder.doubleByte != nullptr)
    add(decoder.doubleByte->units), add(decoder.doubleByte->singles);
  if (encoder.singleByte != nullptr) add(encoder.singleByte->bytes);
  if (encoder.doubleByte != nullptr) add(encoder.doubleByte->codes);
  return all;
}

TEST(BigEndianHost, HasTheSameFlatTables) {
  for (const EncodingRow& row : tableRows()) {
    if (!row.inEngine) continue;
    const std::vector<std::uint16_t> native = flatTablesOf(row);
    const BigEndianHost host;
    EXPECT_TRUE(flatTablesOf(row) == native) << row.number;
    EXPECT_GE(native.size(), 65536u + 256u) << row.number;
  }
}

TEST(BigEndianHost, LeavesNothingBehind) {
  const ConversionResult before = convert(1252, 65001, "A\x80");
  { const BigEndianHost host; }
  EXPECT_EQ(convert(1252, 65001, "A\x80"), before);
}

}  // namespace
