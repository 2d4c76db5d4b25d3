// The ANSI and OEM code pages where the environment names a locale.
#include <cstdlib>

#include "support/psdk.h"
#include "tests/test_support.h"

namespace {

// NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs.
TEST(PsdkTest, TheFirstVariableThatIsNotEmptyDecides) {
  const auto check = [](int ansi, int oem) {
    EXPECT_EQ(Psdk::getAnsiCodePage(), ansi);
    EXPECT_EQ(Psdk::getOemCodePage(), oem);
  };
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) unsetenv(variable);
  check(1252, 437);
  setenv("LANG", "pl_PL", 1);
  check(1250, 852);
  setenv("LC_CTYPE", "tr_TR.ISO-8859-9", 1);
  check(28599, 857);
  setenv("LC_ALL", "", 1);
  check(28599, 857);
  setenv("LC_ALL", "C", 1);
  check(1252, 437);
}

TEST(NamedConversionTest, PlatformCodePages) {
  setenv("LC_ALL", "ru_RU.CP1251", 1);
  EncodingConvert converter;
  LogBase log;
  DataBuffer ansi, oem, toAnsi, toOem;
  EXPECT_TRUE(converter.AnsiToMultiByte(65001, "\xC0", 1, ansi, log));
  EXPECT_TRUE(converter.OemToMultiByte(65001, "\x80", 1, oem, log));
  EXPECT_TRUE(converter.MultiByteToAnsi(65001, bytesOf("\xD0\x90"), 2, toAnsi, log));
  EXPECT_TRUE(converter.MultiByteToOem(65001, bytesOf("\xD0\x90"), 2, toOem, log));
  EXPECT_EQ(hex(ansi) + "|" + hex(oem) + "|" + hex(toAnsi) + "|" + hex(toOem), "D0 90|D0 90|C0|80");
  EXPECT_FALSE(converter.MultiByteToOem(65001, bytesOf("A"), -1, toOem, log));
  unsetenv("LC_ALL");
}

// NOLINTEND(concurrency-mt-unsafe)

}  // namespace
