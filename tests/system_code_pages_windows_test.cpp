// The ANSI and OEM code pages where the system has them: held against its own conversions.
#include <windows.h>

#include <string>

#include "support/psdk.h"
#include "tests/test_support.h"

namespace {

// What the system makes of bytes, as UTF-8; empty for bytes that mean nothing.
std::string systemsUtf8(UINT codePage, const std::string& bytes) {
  wchar_t units[8] = {};
  const int count = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(),
                                        static_cast<int>(bytes.size()), units, 8);
  char text[32] = {};
  const int size = WideCharToMultiByte(CP_UTF8, 0, units, count, text, 32, nullptr, nullptr);
  return {text, static_cast<std::size_t>(size)};
}

TEST(SystemCodePagesTest, AreThoseOfTheSystem) {
  EXPECT_EQ(Psdk::getAnsiCodePage(), static_cast<int>(GetACP()));
  EXPECT_EQ(Psdk::getOemCodePage(), static_cast<int>(GetOEMCP()));
  EncodingConvert converter;
  LogBase log;
  int converted = 0;
  for (int i = 0x20; i < 0x100; ++i) {
    const std::string byte(1, static_cast<char>(i));
    const std::string ansi = systemsUtf8(CP_ACP, byte);
    const std::string oem = systemsUtf8(CP_OEMCP, byte);
    DataBuffer fromAnsi, fromOem, toAnsi, toOem;
    if (!ansi.empty() && ansi[0] != '\xC2') {  // controls of the upper half are not everywhere
      ++converted;
      EXPECT_TRUE(converter.AnsiToMultiByte(65001, byte.data(), 1, fromAnsi, log));
      EXPECT_TRUE(converter.MultiByteToAnsi(65001, bytesOf(ansi), static_cast<int>(ansi.size()),
                                            toAnsi, log));
      EXPECT_EQ(textOf(fromAnsi) + "|" + textOf(toAnsi), ansi + "|" + byte) << i;
    }
    if (!oem.empty()) {
      EXPECT_TRUE(converter.OemToMultiByte(65001, byte.data(), 1, fromOem, log));
      EXPECT_TRUE(
          converter.MultiByteToOem(65001, bytesOf(oem), static_cast<int>(oem.size()), toOem, log));
      EXPECT_EQ(textOf(fromOem) + "|" + textOf(toOem), oem + "|" + byte) << i;
    }
  }
  EXPECT_GT(converted, 90);
}

}  // namespace
