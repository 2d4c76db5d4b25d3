// What the error actions write, in and out of a pivot, and what the observer is told.
#include <cstring>
#include <vector>

#include "support/log_base.h"
#include "tests/test_support.h"

namespace {

constexpr unsigned char kQuestion[] = {'?'};

// What an error action depends on.
struct ActionSettings {
  int action;
  bool toUtf16 = false, fromUtf16 = false;  // pivot flags
  int from = 1252, alternate = 0;
  std::string_view defBytes = "?";
  void apply(EncodingConvert& converter) const {
    converter.setErrorAction(action);
    converter.setAltDestCodepage(alternate);
    converter.setDefBytes(bytesOf(defBytes), static_cast<int>(defBytes.size()));
    converter.m_pivotToUtf16 = toUtf16;
    converter.m_pivotFromUtf16 = fromUtf16;
    converter.m_fromCodePage = from;
    converter.m_toCodePage = 65001;
  }
};

struct HandlerCase {
  enum Handler { kSingle, kUnicode, kUtf8, kUnknown } handler;
  ActionSettings settings;
  const char* in;
  const char* out;
  unsigned int skip = 0;
};

TEST(ErrorActionsTest, EachHandlerWritesWhatTheActionAsksFor) {
  using H = HandlerCase;
  const HandlerCase cases[] = {
      {H::kSingle, {.action = 0}, "81", ""},
      {H::kSingle, {.action = 1}, "81", "3F"},
      {H::kSingle, {.action = 1, .toUtf16 = true}, "81", "FD EF 01 3F"},
      {H::kSingle, {.action = 2}, "81", "26 23 78 38 31 3B"},
      {H::kSingle, {.action = 2, .toUtf16 = true}, "81", "FD EF 05 26 23 78 38 31 3B"},
      {H::kSingle, {.action = 4, .toUtf16 = true}, "81", ""},
      {H::kSingle, {.action = 6, .alternate = 1200}, "80", "AC 20"},
      {H::kSingle, {.action = 6, .toUtf16 = true}, "80", "E2 82 AC"},
      {H::kSingle, {.action = 6, .fromUtf16 = true, .alternate = 1200}, "80", ""},
      {H::kSingle, {.action = 7, .toUtf16 = true}, "81", "FD EF 01 81"},
      {H::kSingle, {.action = 8, .toUtf16 = true}, "A4", "A4 00"},
      {H::kSingle, {.action = 9}, "A4", ""},
      {H::kUnicode, {.action = 1, .fromUtf16 = true}, "AC 20", "3F"},
      {H::kUnicode, {.action = 2}, "AC 20", "26 23 78 41 43 32 30 3B"},
      {H::kUnicode, {.action = 2, .toUtf16 = true}, "AC 20", "FD EF 06 26 23 78 41 43 32 30 3B"},
      {H::kUnicode,
       {.action = 6, .fromUtf16 = true, .from = 65001, .alternate = 1252},
       "AC 20",
       "80"},
      {H::kUnicode, {.action = 7, .toUtf16 = true}, "AC 20", "FD EF 02 AC 20"},
      {H::kUnicode, {.action = 8}, "AC 20", ""},
      {H::kUtf8, {.action = 2}, "C3 28", "26 23 78 43 33 3B", 1},
      {H::kUtf8, {.action = 2, .toUtf16 = true}, "C3 28", "FD EF 05 26 23 78 43 33 3B", 1},
      {H::kUtf8,
       {.action = 2, .toUtf16 = true},
       "F0 9F 98",
       "FD EF 07 26 23 78 46 30 39 46 39 38 3B",
       3},
      {H::kUtf8, {.action = 6, .fromUtf16 = true}, "C3", "", 1},
      {H::kUtf8, {.action = 7, .toUtf16 = true}, "E2 82 41", "FD EF 02 E2 82", 2},
      {H::kUtf8, {.action = 8}, "FF 41", "", 1},
      {H::kUtf8, {.action = 1, .toUtf16 = true}, "FF", "FD EF 01 3F", 1},
      {H::kUnknown, {.action = 1, .from = 936}, "81 FF", "3F", 2},
      {H::kUnknown,
       {.action = 2, .toUtf16 = true, .from = 936},
       "81 FF",
       "FD EF 06 26 23 78 38 31 46 46 3B",
       2},
      {H::kUnknown, {.action = 6, .from = 932, .alternate = 1200}, "82 A0", "42 30", 2},
      {H::kUnknown, {.action = 7, .from = 936}, "81 FF", "81 FF", 2},
      {H::kUnknown, {.action = 7, .from = 1361}, "81 FF", "81", 1},
      {H::kUnknown,
       {.action = 2, .toUtf16 = true, .from = 52936},
       "81 FF",
       "FD EF 05 26 23 78 38 31 3B",
       1},
      {H::kUnknown, {.action = 8, .from = 51949}, "81 FF", "", 2},
  };
  LogBase log;
  for (const HandlerCase& c : cases) {
    EncodingConvert converter;
    c.settings.apply(converter);
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
    EXPECT_EQ(hex(out), c.out) << "handler " << c.handler << " action " << c.settings.action << " "
                               << c.in;
    EXPECT_EQ(skip, c.skip) << c.in;
    EXPECT_EQ(converter.m_errorAction, c.settings.action);
    EXPECT_EQ(converter.m_fromCodePage, c.settings.from) << "put back after a nested conversion";
    EXPECT_EQ(converter.m_toCodePage, 65001);
    EXPECT_EQ(converter.m_foundErrors, c.settings.action != 6 || hex(out).empty());
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
    int from, to;
    ActionSettings settings;
    const char* in;
    const char* result;
  } const cases[] = {
      {65001, 1252, {.action = 0}, "61 E4 B8 80 62", "false, errors [61 62]"},
      {65001, 1252, {.action = 1}, "61 E4 B8 80 62", "false, errors [61 3F 62]"},
      // The substitute crosses the pivot behind an escape.
      {65001, 1252, {.action = 1}, "61 FF 62", "true, errors [61 3F 62]"},
      {65001, 1252, {.action = 7}, "61 FF 62", "true, errors [61 FF 62]"},
      {1200, 1252, {.action = 2}, "61 00 00 4E", "false, errors [61 26 23 78 30 30 34 45 3B]"},
      {1251, 1252, {.action = 2}, "61 C0", "false, errors [61 26 23 78 43 30 3B]"},
      {1200, 1252, {.action = 7}, "61 00 00 4E", "false, errors [61 00 4E]"},
      // Even numbers of bytes make the pivot odd; the unit at its end is whole all the same.
      {932, 1252, {.action = 7}, "61 81 00 62", "true, errors [61 81 00 62]"},
      {65001, 1252, {.action = 7}, "E2 82 41 42", "true, errors [E2 82 41 42]"},
      {932, 1252, {.action = 7}, "85 40 41 42 0A", "true, errors [85 40 41 42 0A]"},
      {65001,
       1252,
       {.action = 1, .defBytes = "??"},
       "FF 41 42 0A",
       "true, errors [3F 3F 41 42 0A]"},
      {20127, 932, {.action = 1, .defBytes = "??"}, "41 81 7A", "true, errors [41 3F 3F 7A]"},
      // Arabic digits are folded at even places only.
      {65001, 1256, {.action = 7}, "E2 82 41 E2 82 D9 A1", "true, errors [E2 82 41 E2 82 31]"},
      {65001, 1256, {.action = 7}, "E2 82 D9 A1 41", "false, errors [E2 82 D9 A1 41]"},
      // What runs past the even length is no escape: 40 85 is put back into 932, which lacks it.
      {932, 1252, {.action = 7}, "41 42 85 40", "false, errors [41 42]"},
      {932, 1200, {.action = 7}, "61 81 00 62", "true, errors [61 00 81 00 62 00]"},
      // The decoder's raw bytes are read as units on the way to UTF-8: EFFD, then 3F01.
      {932, 65001, {.action = 1}, "61 81 00 62", "true, errors [61 EE BF BD E3 BC 81 62]"},
      {10021, 1251, {.action = 6, .alternate = 65001}, "41 83 42", "true, errors [41 42]"},
      // The nested call clears the flag.
      {1251, 1252, {.action = 6, .alternate = 65001}, "61 C0", "false [61 D0 90]"},
      {65001, 932, {.action = 6, .alternate = 1252}, "61 C3 A9", "false [61 E9]"},
      // Half a unit in the pivot is ignored where it is not all of it.
      {65001, 20277, {.action = 6, .alternate = 65001}, "00 D1", "true [00]"},
      {65001, 50220, {.action = 6, .alternate = 65001}, "41 D1", "true [41]"},
      // But UTF-7 tells of it, behind the text.
      {1200, 65000, {.action = 0}, "41 00 42", "false [41]"},
      {65001, 65000, {.action = 6, .alternate = 65001}, "41 D1", "false [41]"},
  };
  for (const auto& c : cases) {
    EncodingConvert converter;
    c.settings.apply(converter);
    const ConversionResult result = convert(converter, c.from, c.to, unhex(c.in));
    EXPECT_EQ(testing::PrintToString(result), c.result)
        << c.from << " to " << c.to << " action " << c.settings.action << ": " << c.in;
  }
}

// What has to be read for its target by way of another encoding, but cannot be read.
TEST(ErrorActionsTest, AFailedPivotLeavesTheOutputAlone) {
  for (const int from : {28600, 20936, 12345}) {
    for (const int to : {65000, 12000, 12001, 65005, 1201, 50220, 50222, 50225}) {
      for (const std::string& input : {std::string("A"), std::string(40000, 'A')}) {
        EncodingConvert converter;
        LogBase log;
        DataBuffer out;
        out.append("old", 3);
        const bool ok = converter.EncConvert(from, to, bytesOf(input),
                                             static_cast<unsigned int>(input.size()), out, log);
        EXPECT_EQ(ok, to == 1201) << from << " to " << to;  // to 1201 only the flag tells
        EXPECT_TRUE(converter.m_foundErrors) << from << " to " << to;
        EXPECT_EQ(textOf(out), "old") << from << " to " << to;
      }
    }
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
    seen += piece.step == ConversionStep::kDecode ? 'd' : 'e';
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
    const char* dropping;      // what the observer sees with action 0
    const char* substituting;  // and with action 1
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
        EXPECT_EQ(recorder.seen, action == 0 ? c.dropping : c.substituting) << c.in;
      }
      EXPECT_EQ(observed.m_observer, &recorder);
    }
  }
}

}  // namespace
