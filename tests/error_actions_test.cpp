// What the error actions write, in and out of a pivot, and what the observer is told.
#include <cstring>
#include <vector>

#include "support/log_base.h"
#include "tests/test_support.h"

namespace {

constexpr unsigned char kQuestion[] = {'?'};

// Calls one handler with the given input and settings; returns what it wrote.
struct HandlerCase {
  enum Handler { kSingle, kUnicode, kUtf8, kUnknown } handler;
  int action;
  bool toUtf16, fromUtf16;  // pivot flags
  const char* in;
  const char* out;
  unsigned int skip = 0;
  int from = 1252;
  int alternate = 0;
};

TEST(ErrorActionsTest, EachHandlerWritesWhatTheActionAsksFor) {
  using H = HandlerCase;
  const HandlerCase cases[] = {
      {H::kSingle, 0, false, false, "81", ""},
      {H::kSingle, 1, false, false, "81", "3F"},
      {H::kSingle, 1, true, false, "81", "FD EF 01 3F"},
      {H::kSingle, 2, false, false, "81", "26 23 78 38 31 3B"},
      {H::kSingle, 2, true, false, "81", "FD EF 05 26 23 78 38 31 3B"},
      {H::kSingle, 4, true, false, "81", ""},
      {H::kSingle, 6, false, false, "80", "AC 20", 0, 1252, 1200},
      {H::kSingle, 6, true, false, "80", "E2 82 AC", 0, 1252, 0},
      {H::kSingle, 6, false, true, "80", "", 0, 1252, 1200},
      {H::kSingle, 7, true, false, "81", "FD EF 01 81"},
      {H::kSingle, 8, true, false, "A4", "A4 00"},
      {H::kSingle, 9, false, false, "A4", ""},
      {H::kUnicode, 1, false, true, "AC 20", "3F"},
      {H::kUnicode, 2, false, false, "AC 20", "26 23 78 41 43 32 30 3B"},
      {H::kUnicode, 2, true, false, "AC 20", "FD EF 06 26 23 78 41 43 32 30 3B"},
      {H::kUnicode, 6, false, true, "AC 20", "80", 0, 65001, 1252},
      {H::kUnicode, 7, true, false, "AC 20", "FD EF 02 AC 20"},
      {H::kUnicode, 8, false, false, "AC 20", ""},
      {H::kUtf8, 2, false, false, "C3 28", "26 23 78 43 33 3B", 1},
      {H::kUtf8, 2, true, false, "C3 28", "FD EF 05 26 23 78 43 33 3B", 1},
      {H::kUtf8, 2, true, false, "F0 9F 98", "FD EF 07 26 23 78 46 30 39 46 39 38 3B", 3},
      {H::kUtf8, 6, false, true, "C3", "", 1},
      {H::kUtf8, 7, true, false, "E2 82 41", "FD EF 02 E2 82", 2},
      {H::kUtf8, 8, false, false, "FF 41", "", 1},
      {H::kUtf8, 1, true, false, "FF", "FD EF 01 3F", 1},
      {H::kUnknown, 1, false, false, "81 FF", "3F", 2, 936},
      {H::kUnknown, 2, true, false, "81 FF", "FD EF 06 26 23 78 38 31 46 46 3B", 2, 936},
      {H::kUnknown, 6, false, false, "82 A0", "42 30", 2, 932, 1200},
      {H::kUnknown, 7, false, false, "81 FF", "81 FF", 2, 936},
      {H::kUnknown, 7, false, false, "81 FF", "81", 1, 1361},
      {H::kUnknown, 2, true, false, "81 FF", "FD EF 05 26 23 78 38 31 3B", 1, 52936},
      {H::kUnknown, 8, false, false, "81 FF", "", 2, 51949},
  };
  LogBase log;
  for (const HandlerCase& c : cases) {
    EncodingConvert converter;
    converter.setErrorAction(c.action);
    converter.setAltDestCodepage(c.alternate);
    converter.setDefBytes(kQuestion, 1);
    converter.m_pivotToUtf16 = c.toUtf16;
    converter.m_pivotFromUtf16 = c.fromUtf16;
    converter.m_fromCodePage = c.from;
    converter.m_toCodePage = 65001;
    const std::string in = unhex(c.in);
    DataBuffer out;
    unsigned int skip = 0;
    switch (c.handler) {
      case H::kSingle:
        converter.handleErrorFromSingleByte(bytesOf(in), out, log);
        break;
      case H::kUnicode:
        converter.handleErrorFromUnicode(bytesOf(in), out, log);
        break;
      case H::kUtf8:
        skip = converter.handleErrorFromUtf8(bytesOf(in), static_cast<int>(in.size()), out, log);
        break;
      case H::kUnknown:
        skip = converter.handleErrorFromUnknown(bytesOf(in), out, log);
        break;
    }
    EXPECT_EQ(hex(out), c.out) << "handler " << c.handler << " action " << c.action << " " << c.in;
    EXPECT_EQ(skip, c.skip) << c.in;
    EXPECT_EQ(converter.m_errorAction, c.action);
    EXPECT_EQ(converter.m_fromCodePage, c.from) << "put back after a nested conversion";
    EXPECT_EQ(converter.m_toCodePage, 65001);
    EXPECT_EQ(converter.m_foundErrors, c.action != 6 || hex(out).empty());
  }
}

TEST(ErrorActionsTest, NullPointersAndDefBytes) {
  EncodingConvert converter;
  LogBase log;
  DataBuffer out;
  converter.setErrorAction(2);
  converter.handleErrorFromSingleByte(nullptr, out, log);
  converter.handleErrorFromUnicode(nullptr, out, log);
  EXPECT_EQ(textOf(out), "&#x;&#x;");
  out.clear();
  converter.m_foundErrors = false;
  EXPECT_EQ(converter.handleErrorFromUtf8(nullptr, 5, out, log), 0u);
  EXPECT_EQ(converter.handleErrorFromUtf8(kQuestion, 0, out, log), 0u);
  EXPECT_FALSE(converter.m_foundErrors);

  converter.setErrorAction(1);
  const std::string many(150, 'x');
  converter.setDefBytes(bytesOf(many), 150);
  converter.handleErrorFromSingleByte(kQuestion, out, log);
  EXPECT_EQ(textOf(out), std::string(100, 'x'));
  out.clear();
  converter.setDefBytes(nullptr, 2);
  converter.handleErrorFromSingleByte(kQuestion, out, log);
  EXPECT_EQ(textOf(out), "xx") << "a null pointer keeps the old bytes";
  for (const int off : {0, -3}) {
    converter.setDefBytes(bytesOf(many), off);
    EXPECT_EQ(converter.m_defBytesLen, 0);
  }
}

// Whole conversions: what crosses the pivot, on this (little-endian) host.
TEST(ErrorActionsTest, SubstitutionsThroughAConversion) {
  struct {
    int from, to, action;
    const char* in;
    const char* out;
    bool ok, foundErrors;
    int alternate = 0;
    const char* defBytes = "?";
  } const cases[] = {
      {65001, 1252, 0, "61 E4 B8 80 62", "61 62", false, true},
      {65001, 1252, 1, "61 E4 B8 80 62", "61 3F 62", false, true},
      {65001, 1252, 1, "61 FF 62", "61 3F 62", true, true},  // carried by the escape
      {65001, 1252, 7, "61 FF 62", "61 FF 62", true, true},
      {1200, 1252, 2, "61 00 00 4E", "61 26 23 78 30 30 34 45 3B", false, true},
      {1200, 1252, 7, "61 00 00 4E", "61 00 4E", false, true},
      // Even numbers of bytes make the pivot odd; the unit at its end is whole all the same.
      {932, 1252, 7, "61 81 00 62", "61 81 00 62", true, true},
      {65001, 1252, 7, "E2 82 41 42", "E2 82 41 42", true, true},
      {932, 1252, 7, "85 40 41 42 0A", "85 40 41 42 0A", true, true},
      {65001, 1252, 1, "FF 41 42 0A", "3F 3F 41 42 0A", true, true, 0, "??"},
      {20127, 932, 1, "41 81 7A", "41 3F 3F 7A", true, true, 0, "??"},
      // Arabic digits are folded at even places only.
      {65001, 1256, 7, "E2 82 41 E2 82 D9 A1", "E2 82 41 E2 82 31", true, true},
      {65001, 1256, 7, "E2 82 D9 A1 41", "E2 82 D9 A1 41", false, true},
      // What runs past the even length is no escape: 40 85 is put back into 932, which lacks it.
      {932, 1252, 7, "41 42 85 40", "41 42", false, true},
      {932, 1200, 7, "61 81 00 62", "61 00 81 00 62 00", true, true},
      // The first leg's raw bytes are read as units on the way to UTF-8: EFFD, then 3F01.
      {932, 65001, 1, "61 81 00 62", "61 EE BF BD E3 BC 81 62", true, true},
      {10021, 1251, 6, "41 83 42", "41 42", true, true, 65001},
      {1251, 1252, 6, "61 C0", "61 D0 90", false, false, 65001},  // the nested call clears the flag
      {65001, 932, 6, "61 C3 A9", "61 E9", false, false, 1252},
      // Half a unit in the pivot is ignored where it is not all of it.
      {65001, 20277, 6, "00 D1", "00", true, false, 65001},
      {65001, 50220, 6, "41 D1", "41", true, false, 65001},
  };
  for (const auto& c : cases) {
    EncodingConvert converter;
    converter.setErrorAction(c.action);
    converter.setAltDestCodepage(c.alternate);
    converter.setDefBytes(bytesOf(c.defBytes), static_cast<int>(std::strlen(c.defBytes)));
    EXPECT_EQ(convert(converter, c.from, c.to, unhex(c.in)),
              (Outcome{c.ok, c.foundErrors, unhex(c.out)}))
        << c.from << " to " << c.to << " action " << c.action << ": " << c.in;
  }
}

// After a unit was put back into the source code page the pivot flags are those of that nested
// conversion, so the second reference is of the unit and not of the source's bytes.
TEST(ErrorActionsTest, PivotFlagsStayAsTheNestedConversionLeftThem) {
  EncodingConvert converter;
  converter.setErrorAction(2);
  EXPECT_EQ(convert(converter, 65001, 1252, "a\xE4\xB8\x80z\xE4\xB8\x80q").out,
            "a&#xE4B880;z&#x004E;q");
  // A failed call never changes how the next one reports.
  converter.m_pivotToUtf16 = true;
  EXPECT_EQ(hex(convert(converter, 65001, 1200, "a\xFF").out), "61 00 26 23 78 46 46 3B");
  EXPECT_FALSE(converter.m_pivotToUtf16);
}

TEST(ErrorActionsTest, FoundErrorsIsClearedByTheNextConversion) {
  EncodingConvert converter;
  EXPECT_TRUE(convert(converter, 65001, 1252, "\xE4\xB8\x80").foundErrors);
  EXPECT_FALSE(convert(converter, 65001, 1252, "a").foundErrors);
}

class Recorder : public ConversionObserver {
 public:
  void onUnconvertible(const UnconvertibleInput& piece) override {
    seen += piece.leg == ConversionLeg::kDecode ? 'd' : 'e';
    seen += std::to_string(piece.offset);
    seen += '+';
    seen += std::to_string(piece.length);
    seen += ':';
    seen += hex({reinterpret_cast<const char*>(piece.bytes), piece.length});
    seen += ';';
  }
  std::string seen;
};

TEST(ErrorActionsTest, ObserverIsToldOfEachPieceAndChangesNothing) {
  struct {
    int from, to;
    const char* in;
    const char* seen;        // with action 0
    const char* seenActing;  // with action 1
  } const cases[] = {
      {65001, 1252, "61 FF E4 B8 80", "d1+1:FF;e2+2:00 4E;", "d1+1:FF;e6+2:00 4E;"},
      {65001, 1200, "F0 9F 98", "d0+3:F0 9F 98;", "d0+3:F0 9F 98;"},
      {932, 65001, "61 81 00 80 FD 85", "d1+1:81;d5+1:85;", "d1+2:81 00;d5+1:85;"},
      {10021, 1200, "83 41 84", "d0+1:83;d2+1:84;", "d0+1:83;d2+1:84;"},
      {1251, 1252, "61 C0", "e2+2:10 04;", "e2+2:10 04;"},
      {1252, 65001, "61 81", "", ""},
  };
  for (const auto& c : cases) {
    for (const int action : {0, 1, 2, 6, 7}) {
      EncodingConvert plain, observed;
      Recorder recorder;
      observed.m_observer = &recorder;
      for (EncodingConvert* converter : {&plain, &observed}) {
        converter->setErrorAction(action);
        converter->setDefBytes(kQuestion, 1);
      }
      const std::string in = unhex(c.in);
      EXPECT_EQ(convert(plain, c.from, c.to, in), convert(observed, c.from, c.to, in));
      if (action <= 1) {
        EXPECT_EQ(recorder.seen, action == 0 ? c.seen : c.seenActing) << c.in;
      }
      EXPECT_EQ(observed.m_observer, &recorder);
    }
  }
}

}  // namespace
