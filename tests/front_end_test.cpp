// Settings, dispatch, byte order marks, the pivot and the named entry points.
#include <climits>

#include "support/psdk.h"
#include "support/text_log.h"
#include "tests/test_support.h"

namespace {

struct Case {
  const char* what;
  int from, to;
  const char* in;   // hexadecimal
  const char* out;  // hexadecimal
  bool ok = true;
  bool foundErrors = false;
};

void expectAll(std::initializer_list<Case> cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(convert(c.from, c.to, unhex(c.in)),
              (ConversionResult{c.ok, c.foundErrors, unhex(c.out)}))
        << c.what << ": " << c.from << " to " << c.to << " of " << c.in;
  }
}

TEST(FrontEndTest, NewObjectAndSettings) {
  EncodingConvert converter;
  EXPECT_EQ(converter.m_errorAction, 0);
  EXPECT_EQ(converter.m_altDestCodepage, 0);
  EXPECT_EQ(converter.m_defBytesLen, 0);
  EXPECT_FALSE(converter.m_foundErrors || converter.m_pivotToUtf16 || converter.m_pivotFromUtf16);
  EXPECT_TRUE(converter.m_allow4ByteUtf8 && g_allow_4byte_utf8);
  converter.setErrorAction(-77);
  converter.setAltDestCodepage(INT_MAX);
  EXPECT_EQ(converter.m_errorAction, -77);
  EXPECT_EQ(converter.m_altDestCodepage, INT_MAX);
}

TEST(FrontEndTest, CopiesAndRefusals) {
  expectAll({
      {"pdf between refused pages", 5, 7, "25 50 44 46 2D 31 2E", "25 50 44 46 2D 31 2E"},
      {"six bytes are no pdf", 65001, 1200, "25 50 44 46 2D 31",
       "25 00 50 00 44 00 46 00 2D 00 31 00"},
      {"both zero", 0, 0, "41 E9", "41 E9"},
      {"zero target", 1252, 0, "41 E9", "41 E9"},
      {"zero source", 0, 1252, "41 E9", "41 E9"},
      {"equal, even if refused otherwise", 5, 5, "41", "41"},
      {"small source", 99, 1252, "41", "", false},
      {"small target", 1252, 36, "41", "", false},
      {"negative", -1, 1252, "41", "", false},
      {"37 is accepted", 37, 1252, "C1", "41"},
      {"no such table", 20936, 65001, "41", "", false},
      {"table without codec", 28600, 65001, "41", "", false},
      {"no target table", 65001, 28601, "41", "", false},
      {"no source of that number", 50223, 65001, "41", "", false},
      {"no target of that number", 65001, 50223, "41", "", false},
      {"empty", 99, 1, "", ""},
  });
}

TEST(FrontEndTest, ByteOrderMarks) {
  expectAll({
      {"utf-8 mark alone", 65001, 1252, "EF BB BF", ""},
      {"utf-8 mark", 65001, 1252, "EF BB BF 41", "41"},
      {"utf-16 mark alone", 1200, 65001, "FF FE", ""},
      {"1200 marked big endian", 1200, 1252, "FE FF 00 41", "41"},
      {"1201 marked little endian has no decoder", 1201, 65001, "FF FE 41 00", "", false},
      {"1201 loses an odd byte", 1201, 1252, "00 41 00", "41"},
      {"1201 of one byte", 1201, 1252, "00", ""},
      {"utf-32 mark beats the number", 12000, 65001, "00 00 FE FF 00 00 00 41", "41"},
      {"and the other way", 65006, 65001, "FF FE 00 00 41 00 00 00", "41"},
      {"utf-32 tail", 12001, 65001, "00 00 00 41 00 00", "41"},
      {"a utf-8 mark is text for utf-32", 65001, 12000, "EF BB BF", "FF FE 00 00"},
  });
}

TEST(FrontEndTest, UnicodePairs) {
  expectAll({
      {"to 1201", 65001, 1201, "41 C3 A9", "00 41 00 E9"},
      {"1201 drops the odd byte of its source", 1200, 1201, "41 00 42", "00 41"},
      {"1200 to 1201 of one byte", 1200, 1201, "41", ""},
      {"1201 to 1200 copies, then fails", 1201, 1200, "00 41", "41 00", false},
      {"to utf-32 through utf-8", 1200, 12001, "3D D8 00 DE", "00 01 F6 00"},
      {"utf-32 alias", 65001, 65005, "41", "41 00 00 00"},
      {"utf-32 to utf-8", 12000, 65001, "00 F6 01 00", "F0 9F 98 80"},
      {"utf-7 both ways", 65001, 65000, "41 C3 A9 2D", "41 2B 41 4F 6B 2D 2D"},
      {"", 65000, 65001, "41 2B 41 4F 6B 2D 2D", "41 C3 A9 2D"},
      {"utf-7 to utf-16 copies, then fails", 65000, 1200, "41", "41 00", false},
      {"gsm euro", 55000, 65001, "1B 65", "E2 82 AC"},
      {"gsm to a table", 55000, 1252, "1B 65", "80"},
      {"gsm to gsm is a copy", 55000, 55000, "1B", "1B"},
      {"table to gsm", 1252, 55000, "80 41", "1B 65 41"},
      {"us-ascii is copied into iso-8859", 20127, 28602, "41 E9", "41 E9"},
      {"us-ascii to utf-8 drops high bytes", 20127, 65001, "41 E9 42", "41 42"},
      {"to utf-7 fails without a table", 28600, 65000, "41", "", false, true},
      {"to 1201 without a table counts as success", 28600, 1201, "41", "", true, true},
      {"truncated utf-8 to 1201", 65001, 1201, "41 E4", "00 41", true, true},
  });
  // The removal of high bytes works on the whole output buffer.
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  out.append("\xE9", 1);
  EXPECT_TRUE(converter.EncConvert(20127, 65001, bytesOf("A"), 1, out, log));
  EXPECT_EQ(hex(out), "41");
}

// A failed call leaves a pivot flag set; the next one clears it where it has steps to run.
TEST(FrontEndTest, LegsClearThePivotFlags) {
  struct {
    int from, to;
    const char* in;
    bool isCleared;
  } const cases[] = {
      {1252, 65001, "41", true},
      {1200, 12000, "41 00", true},
      {1201, 12000, "00 41 00", true},  // no unit is left for the last byte
      {1201, 1252, "00 41 00", true},
      {12001, 1201, "00 00 00 41 42", true},
      {12001, 50220, "00 00 00 41 42", true},
      {12001, 65000, "00 00 00 41 42", true},
      {12001, 1252, "41", false},
      {12000, 12001, "41 00 00 00", false},
      {12000, 65001, "41 00 00 00", false},
      {65001, 12000, "41", false},
      {20127, 12000, "41", false},
      {1200, 1201, "41 00", false},
      {932, 50220, "41", false},
      {1252, 0, "41", false},
  };
  for (const auto& c : cases) {
    EncodingConvert converter;
    EXPECT_FALSE(convert(converter, 28600, 1252, "A").ok);
    ASSERT_TRUE(converter.m_pivotToUtf16);
    convert(converter, c.from, c.to, unhex(c.in));
    EXPECT_EQ(converter.m_pivotToUtf16, !c.isCleared) << c.from << " to " << c.to;
    EXPECT_FALSE(converter.m_pivotFromUtf16);
  }
}

TEST(FrontEndTest, MacArabicPrePass) {
  expectAll({
      {"run is folded and reversed", 10004, 65001, "A1 A2 20", "22 21 20"},
      {"digits between letters", 10004, 65001, "C7 B1 B2 C8", "D8 A7 32 31 D8 A8"},
      {"run of one", 10004, 65001, "20 A1 20", "20 21 20"},
      {"run at the end", 10004, 65001, "41 A1 A2", "41 22 21"},
      {"letters are not", 10004, 65001, "FE FA", "DA 98 DA 91"},
      {"control byte ends a run", 10004, 65001, "A1 A2 0A A3", "22 21 0A 23"},
  });
}

TEST(FrontEndTest, Utf16ToUtf8) {
  expectAll({
      {"one byte", 1200, 65001, "41", "", false},
      {"odd", 1200, 65001, "41 00 42", "41", false},
      {"zero units vanish", 1200, 65001, "41 00 00 00 42 00", "41 42"},
      {"zero stays the other way", 65001, 1200, "41 00 42", "41 00 00 00 42 00"},
      {"pair", 1200, 65001, "3D D8 00 DE", "F0 9F 98 80"},
      {"lone low", 1200, 65001, "00 DC", "ED B0 80"},
      {"trailing high", 1200, 65001, "00 D8", "ED A0 80"},
      {"high before a letter", 1200, 65001, "00 D8 41 00", "ED A0 80 E0 81 81"},
      {"high before zero", 1200, 65001, "00 D8 00 00", "ED A0 80 E0 80 80"},
      {"the escape mark is text here", 1200, 65001, "FD EF EF FD", "EE BF BD EF B7 AF"},
  });
  for (const bool global : {false, true}) {
    EncodingConvert converter;
    g_allow_4byte_utf8 = global;
    converter.m_allow4ByteUtf8 = !global;
    EXPECT_EQ(hex(convert(converter, 1200, 65001, unhex("3D D8 00 DE")).out), "ED A0 BD ED B8 80");
    g_allow_4byte_utf8 = true;
  }
  // A character across the staging area's flush point.
  for (unsigned int before = 505; before < 515; ++before) {
    std::string utf16, utf8;
    for (unsigned int i = 0; i < before; ++i) {
      utf16 += std::string("a\0", 2);
      utf8 += 'a';
    }
    EXPECT_EQ(convert(1200, 65001, utf16 + unhex("3D D8 00 DE 62 00")),
              (ConversionResult{true, false,
                                utf8 + "\xF0\x9F\x98\x80"
                                       "b"}));
  }
}

TEST(FrontEndTest, InvalidUtf8IsDroppedAndReported) {
  expectAll({
      {"stray continuation", 65001, 1200, "41 80 42", "41 00 42 00", true, true},
      {"truncated at the end", 65001, 1200, "41 F0 9F 98", "41 00", true, true},
      {"surrogate form comes back", 65001, 1200, "ED A0 80", "00 D8"},
      {"overlong", 65001, 1200, "C0 80 41", "41 00", true, true},
  });
}

TEST(FrontEndTest, TransformsOnABigEndianHost) {
  BigEndianHost host;
  LogBase log;
  struct {
    const char* in;
    const char* out;
    bool pivot;
  } const cases[] = {
      {"FD EF 01 61 00 41", "61 41", true},     // the escape carries one byte
      {"FD EF 06 00 00 41", "D8 80 41", true},  // too long: only the mark goes
      {"FD EF 05 61 00 41", "E6 84 80", true},  // runs past the end: units from there on
      {"FD EF 02 61 62 00", "61 62", true},     // an odd byte is left over
      {"FD EF 00 41", "EF B7 AF 41", false},   {"D8 3D DE 00", "F0 9F 98 80", false},
  };
  for (const auto& c : cases) {
    EncodingConvert converter;
    converter.m_pivotFromUtf16 = c.pivot;
    DataBuffer out;
    const std::string in = unhex(c.in);
    EXPECT_TRUE(
        converter.cv_utf16_to_utf8(bytesOf(in), static_cast<unsigned>(in.size()), out, log));
    EXPECT_EQ(hex(out), c.out) << c.in;
  }
  EncodingConvert converter;
  DataBuffer out;
  converter.cv_utf8_to_utf16(bytesOf("A\xC3\xA9"), 3, out, log);
  EXPECT_EQ(hex(out), "41 00 00 E9") << "ASCII is written low byte first on every host";
  EXPECT_EQ(hex(convert(1252, 1200, "A\x80").out), "00 41 20 AC") << "and a lookup's units are not";
}

TEST(FrontEndTest, LogLinesAndContexts) {
  TextLog log(true);
  EncodingConvert converter;
  DataBuffer out;
  EXPECT_TRUE(converter.EncConvert(1252, 65001, bytesOf("A\xE9"), 2, out, log));
  EXPECT_EQ(log.text(),
            "EncConvert:\n  fromCodePage: 1252\n  toCodePage: 65001\n  convert_a:\n"
            "    Converting to utf-8 using utf-16 as a pivot table...\n    convertToUnicodeHC:\n"
            "      fromCodePage: 1252\n      inDataLen: 2\n      convertToUnicodeByLookup:\n"
            "    szUtf16_inBytes: 4\n    convertFromUnicode:\n    szResult_inBytes: 3\n");
  log.clear();
  converter.EncConvert(65001, 1200, bytesOf("\xFF"), 1, out, log);
  EXPECT_EQ(log.text(),
            "EncConvert:\n  fromCodePage: 65001\n  toCodePage: 1200\n  convert_a:\n"
            "    converting from utf-8 to utf-16\n    cv_utf8_to_utf16:\n"
            "      error: Found invalid utf-8 when trying to convert to utf-16.\n"
            "      m_errorAction: 0\n      m_foundErrors: true\n");
  log.clear();
  EXPECT_TRUE(converter.EncConvert(1200, 28592, bytesOf({"A\0", 2}), 2, out, log));
  EXPECT_EQ(log.text(),
            "EncConvert:\n  fromCodePage: 1200\n  toCodePage: 28592\n  convert_a:\n"
            "    convertFromUnicodeHC:\n      toCodePage: 28592\n      inDataLen: 2\n"
            "      isLittleEndian: " +
                std::to_string(zvIsLittleEndian() ? 1 : 0) + "\n");
  TextLog quiet;
  converter.EncConvert(65001, 1200, bytesOf("\xFF"), 1, out, quiet);
  converter.EncConvert(28600, 65001, bytesOf("A"), 1, out, quiet);
  converter.EncConvert(99, 1252, bytesOf("A"), 1, out, quiet);
  EXPECT_EQ(quiet.text(), "");
}

TEST(FrontEndTest, MemoryExhaustedIsNeverAHole) {
  EncodingConvert converter;
  LogBase log;
  DataBuffer latched;
  latched.latchFailure();
  EXPECT_FALSE(converter.EncConvert(65001, 1200, bytesOf("A"), 1, latched, log));
}

// Called directly, with a converter that was last used for 1258.
TEST(FrontEndTest, ConvertAKnowsItsTargetsAndItsConverter) {
  struct {
    int from, to;
    const char* in;
    const char* out;
    bool ok;
  } const cases[] = {
      {12000, 12001, "41 00 00 00", "", false},
      {1201, 12000, "00 41", "", false},
      {1200, 1252, "A0 1E", "41 F2", true},  // decomposed for the converter's destination
  };
  for (const auto& c : cases) {
    EncodingConvert converter;
    LogBase log;
    DataBuffer out;
    converter.m_toCodePage = 1258;
    const std::string in = unhex(c.in);
    const auto length = static_cast<unsigned int>(in.size());
    EXPECT_EQ(converter.convert_a(c.from, c.to, bytesOf(in), length, out, log), c.ok) << c.in;
    EXPECT_EQ(hex(out), c.out) << c.from << " to " << c.to;
  }
}

TEST(NamedConversionTest, UnknownNames) {
  EncodingConvert converter;
  TextLog log;
  StringBuffer latin, unknown;
  latin.append("windows-1252");
  unknown.append("klingon");
  const unsigned char* utf8 = bytesOf("\xC3\xA9");
  DataBuffer out;
  EXPECT_FALSE(converter.ChConvert(unknown, latin, utf8, 2, out, log, true));
  EXPECT_FALSE(converter.ChConvert(latin, unknown, utf8, 2, out, log, true));
  EXPECT_EQ(out.getSize(), 0u);
  EXPECT_TRUE(converter.ChConvert(latin, latin, utf8, 0, out, log, true));
  EXPECT_EQ(log.text(), "");
  EXPECT_TRUE(converter.ChConvert2(unknown, 1252, utf8, 2, out, log));
  EXPECT_TRUE(converter.ChConvert2p("klingon", 1252, utf8, 2, out, log));
  EXPECT_EQ(hex(out), "E9 E9");
  EXPECT_EQ(log.text(),
            "error: Unrecognized fromCharset\ncharsetName: klingon\n"
            "error: Unrecognized fromCharset\ncharsetName: klingon\n");
  log.clear();
  out.clear();
  EXPECT_TRUE(converter.ChConvert3(1252, unknown, bytesOf("\xE9"), 1, out, log));
  EXPECT_TRUE(converter.ChConvert3p(1252, "klingon", bytesOf("\xE9"), 1, out, log));
  EXPECT_TRUE(converter.ChConvert3_withPreamble(1252, unknown, bytesOf("\xE9"), 1, out, log));
  EXPECT_TRUE(converter.ChConvert3_withPreamble(65001, latin, utf8, 2, out, log));
  EXPECT_EQ(hex(out), "C3 A9 C3 A9 EF BB BF C3 A9 E9");
  EXPECT_EQ(log.text(), "");
}

TEST(NamedConversionTest, PreambleComesFirstWhateverFollows) {
  EncodingConvert converter;
  LogBase log;
  struct {
    int from, to;
    const char* in;
    const char* out;
    bool ok;
  } const cases[] = {{1252, 65001, "", "EF BB BF", true},
                     {1200, 0, "41 00", "FF FE 41 00", true},
                     {1252, 1201, "41", "FE FF 00 41", true},
                     {1252, 12000, "41", "41 00 00 00", true},
                     {28600, 1200, "41", "FF FE", false},
                     {1252, 1200, "25 50 44 46 2D 31 2E", "FF FE 25 50 44 46 2D 31 2E", true}};
  for (const auto& c : cases) {
    DataBuffer out;
    const std::string in = unhex(c.in);
    EXPECT_EQ(converter.EncConvertWithPreamble(c.from, c.to, bytesOf(in),
                                               static_cast<unsigned>(in.size()), out, log),
              c.ok);
    EXPECT_EQ(hex(out), c.out) << c.from << " to " << c.to;
  }
}

}  // namespace
