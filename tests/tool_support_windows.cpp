#include <windows.h>

#include <utility>

#include "tests/tool_support.h"

namespace {

std::wstring wide(const std::string& utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring text(utf8.size(), 0);
  text.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), size)));
  return text;
}

// The words of a command line of a shell, without the quotes.
std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  bool isInWord = false;
  char quote = 0;
  for (const char c : line) {
    if (quote == 0 && c == ' ') {
      isInWord = false;
    } else {
      if (!std::exchange(isInWord, true)) words.emplace_back();
      if (quote == 0 && (c == '\'' || c == '"')) {
        quote = c;
      } else if (c == quote) {
        quote = 0;
      } else {
        words.back() += c;
      }
    }
  }
  return words;
}

// A word in quotes, as programs for Windows take them apart.
std::string quoted(const std::string& word) {
  std::string text = " \"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  text.append(backslashes, '\\');
  return text + '"';
}

HANDLE open(const fs::path& file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Of some thousand processes that Wine is to start, one may be lost before it begins, which is told
// as an error of Wine's own.
bool start(std::wstring command, const fs::path& directory, STARTUPINFOW& startup,
           PROCESS_INFORMATION& process) {
  constexpr int kAttempts = 3;
  for (int i = 0; i < kAttempts; ++i) {
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       directory.c_str(), &startup, &process) != 0) {
      return true;
    }
    if (GetLastError() != ERROR_INTERNAL_ERROR) return false;
  }
  return false;
}

}  // namespace

fs::path ToolTest::makeDirectory() {
  static int count = 0;
  for (;;) {
    const std::string name = "encconv_test_" + std::to_string(GetCurrentProcessId()) + "_";
    const fs::path directory = fs::temp_directory_path() / (name + std::to_string(++count));
    if (fs::create_directory(directory)) return directory;
  }
}

ToolRun ToolTest::run(const std::string& arguments, const std::string& input) const {
  write(".in", input);
  std::string line = quoted(ENCCONV_TOOL);
  for (const std::string& word : wordsOf(arguments)) line += quoted(word);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = open(path(".in"), GENERIC_READ, OPEN_EXISTING);
  startup.hStdOutput = open(path(".out"), GENERIC_WRITE, CREATE_ALWAYS);
  startup.hStdError = open(path(".err"), GENERIC_WRITE, CREATE_ALWAYS);
  PROCESS_INFORMATION process = {};
  DWORD status = 0xFFFF;
  if (start(wide(line.substr(1)), m_directory, startup, process)) {
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  } else {
    ADD_FAILURE() << "CreateProcess: error " << GetLastError();
  }
  for (const HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
    CloseHandle(handle);
  }
  return {static_cast<int>(status), read(".out"), read(".err")};
}
