#include <windows.h>

// Behind windows.h, which it needs.
#include <shellapi.h>

#include <atomic>
#include <memory>

#include "apps/encconv/system/files.h"
#include "apps/encconv/system/process.h"
#include "apps/encconv/system/windows_text.h"

namespace tool {
namespace {

// What the console had; 0 while it has that.
std::atomic<UINT> consoleBefore = 0;

void restoreConsole() {
  const UINT before = consoleBefore.exchange(0);
  if (before != 0) SetConsoleOutputCP(before);
}

// Goes on to what ends the process.
BOOL WINAPI onInterrupt(DWORD) {
  restoreConsole();
  return FALSE;
}

}  // namespace

std::vector<std::string> programArguments(int, char**) {
  // What main() has is in the ANSI code page.
  int count = 0;
  const std::unique_ptr<LPWSTR, HLOCAL(WINAPI*)(HLOCAL)> all(
      CommandLineToArgvW(GetCommandLineW(), &count),
      reinterpret_cast<HLOCAL(WINAPI*)(HLOCAL)>(LocalFree));
  std::vector<std::string> arguments;
  for (int i = 1; all != nullptr && i < count; ++i) arguments.push_back(fromWide(all.get()[i]));
  return arguments;
}

std::string systemEncodingName() { return std::to_string(GetACP()); }

ConsoleCodePage::ConsoleCodePage(int fd, int codePage) {
  const auto wanted = static_cast<UINT>(codePage);
  const UINT present = GetConsoleOutputCP();
  if (!files::isTerminal(fd) || present == 0 || present == wanted || IsValidCodePage(wanted) == 0) {
    return;
  }
  consoleBefore = present;
  SetConsoleCtrlHandler(onInterrupt, TRUE);
  SetConsoleOutputCP(wanted);
}

ConsoleCodePage::~ConsoleCodePage() {
  if (consoleBefore == 0) return;
  restoreConsole();
  SetConsoleCtrlHandler(onInterrupt, FALSE);
}

}  // namespace tool
