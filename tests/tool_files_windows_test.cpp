// The tool and files on Windows: names, what is replaced, standard streams.
#include <windows.h>

#include <string_view>

#include "tests/tool_support.h"

namespace {

constexpr const char* kNames = "日本語-Ελληνικά-😀";

fs::path unicode(const std::string& name) {
  return {std::u8string(reinterpret_cast<const char8_t*>(name.data()), name.size())};
}

// The name that files of any length are reached by.
fs::path longName(const fs::path& path) { return LR"(\\?\)" + path.wstring(); }

bool writeFile(const fs::path& file, std::string_view bytes) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(handle);
  return written == bytes.size();
}

// With all that is in it; the library does not reach long names.
void removeDirectory(const fs::path& directory) {
  WIN32_FIND_DATAW found = {};
  const HANDLE search = FindFirstFileW((directory / "*").c_str(), &found);
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      removeDirectory(directory / name);
    } else {
      DeleteFileW((directory / name).c_str());
    }
  } while (FindNextFileW(search, &found) != 0);
  FindClose(search);
  RemoveDirectoryW(directory.c_str());
}

std::string hexOf(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    text += kDigits[static_cast<unsigned char>(c) >> 4];
    text += kDigits[c & 15];
  }
  return text;
}

TEST_F(ToolTest, NamesMayHoldAnyCharacters) {
  const std::string name = kNames;
  ASSERT_TRUE(writeFile(m_directory / unicode(name), "caf\xE9"));
  EXPECT_EQ(run("-f 1252 -t utf-8 " + name).out, "café");
  EXPECT_EQ(run("-f 1252 -t utf-8 " + name + " -o " + name + ".out").status, 0);
  EXPECT_EQ(readFile(m_directory / unicode(name + ".out")), "café");
  EXPECT_EQ(run("-f 1252 -t utf-8 --in-place=.alt " + name).status, 0);
  EXPECT_EQ(readFile(m_directory / unicode(name)), "café");
  EXPECT_EQ(readFile(m_directory / unicode(name + ".alt")), "caf\xE9");
  EXPECT_EQ(run("-f 1252 -t utf-8 --output-dir " + name + ".dir latin").status, 0);
  EXPECT_EQ(readFile(m_directory / unicode(name + ".dir") / "latin"), "café\n");
  // Messages have the name as it is.
  const ToolRun missing = run("-f 1252 -t utf-8 x" + name);
  EXPECT_EQ(missing.err, "encconv: x" + name + ": No such file or directory\n");
  // Half of a pair is no character, but may be in a name, if not in Wine's.
  const fs::path half = std::wstring(L"half-") + static_cast<wchar_t>(0xD83D);
  if (writeFile(m_directory / half, "\xE9")) {
    EXPECT_EQ(run("-f 1252 -t utf-8 half-*").out, "é");
  }
}

TEST_F(ToolTest, NamesMayHaveAnyLength) {
  const std::string part(100, 'n');
  fs::path deep = m_directory;
  std::string name;
  for (int i = 0; i < 4; ++i) {
    deep /= part;
    name += part + "/";
    ASSERT_NE(CreateDirectoryW(longName(deep).c_str(), nullptr), 0) << GetLastError();
  }
  ASSERT_TRUE(writeFile(longName(deep / "file"), "\xE9"));
  EXPECT_EQ(run("-f 1252 -t utf-8 " + name + "file -o " + name + "made").status, 0);
  EXPECT_EQ(readFile(longName(deep / "made")), "é");
  EXPECT_EQ(run("-f 1252 -t utf-8 --in-place=.old " + name + "file").status, 0);
  EXPECT_EQ(readFile(longName(deep / "file")), "é");
  EXPECT_EQ(readFile(longName(deep / "file.old")), "\xE9");
  // Through directories, and into ones that are made.
  EXPECT_EQ(run("-f utf-8 -t utf-8 -r --include made " + part).out, "é");
  const ToolRun into = run("-f utf-8 -t 1252 -r --include made --output-dir into " + part);
  EXPECT_EQ(into.err, "");
  deep = m_directory / "into";
  for (int i = 0; i < 3; ++i) deep /= part;
  EXPECT_EQ(readFile(longName(deep / "made")), "\xE9");
  removeDirectory(longName(m_directory / part));
  removeDirectory(longName(m_directory / "into"));
}

TEST_F(ToolTest, ReplacesFilesAndKeepsWhatTheyAre) {
  write("good", "\xE9");
  write("bad", "\x98");
  write("twin", "\xE9");
  write("saved", "\xE9");
  write("saved.old", "an older one");
  ASSERT_NE(CreateHardLinkW(path("second").c_str(), path("twin").c_str(), nullptr), 0);
  const auto setTime = [&] {
    fs::last_write_time(path("good"), fs::file_time_type::clock::now() - std::chrono::hours(1000));
    return fs::last_write_time(path("good"));  // the library sets whole seconds
  };
  auto time = setTime();
  const ToolRun outcome = run("-f 1253 -t 737 --in-place=.old -j 4 good bad twin saved missing");
  EXPECT_EQ(outcome.status, 2);
  for (const char* part :
       {"encconv: bad: byte offset 0", "encconv: twin: is one of 2 hard links",
        "saved.old exists already", "encconv: missing: No such file or directory"}) {
    EXPECT_TRUE(contains(outcome.err, part)) << outcome.err;
  }
  EXPECT_EQ(read("good"), "\xA0");
  EXPECT_EQ(read("good.old"), "\xE9");
  EXPECT_GT(fs::last_write_time(path("good")), time);
  EXPECT_EQ(fs::last_write_time(path("good.old")), time);
  EXPECT_EQ(read("bad") + read("twin") + read("saved"), "\x98\xE9\xE9");
  EXPECT_EQ(read("saved.old"), "an older one");
  // Temporary files are gone.
  EXPECT_EQ(files(), "bad good good.old latin saved saved.old second twin utf8 ");
  // The times, where that is asked for; and what is as it was, is left alone.
  time = setTime();
  EXPECT_EQ(run("-f 737 -t 1253 --in-place --preserve-time good").status, 0);
  EXPECT_EQ(read("good"), "\xE9");
  EXPECT_EQ(fs::last_write_time(path("good")), time);
}

TEST_F(ToolTest, LeavesAloneWhatMustNotBeWritten) {
  write("target", "old");
  ASSERT_NE(SetFileAttributesW(path("target").c_str(), FILE_ATTRIBUTE_READONLY), 0);
  expectOneLine(run("-f 1252 -t utf-8 latin -o target"), "target: Permission denied");
  expectOneLine(run("-f 1252 -t utf-8 --in-place target"), "target: Permission denied");
  SetFileAttributesW(path("target").c_str(), FILE_ATTRIBUTE_NORMAL);

  // One that another program has open and shares with nobody.
  const HANDLE held = CreateFileW(path("target").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  expectOneLine(run("-f 1252 -t utf-8 latin -o target"), "target: ");
  CloseHandle(held);
  EXPECT_EQ(read("target"), "old");
  EXPECT_EQ(run("-f 1252 -t utf-8 latin -o target").status, 0);
  EXPECT_EQ(read("target"), "café\n");
  EXPECT_EQ(files(), "latin target utf8 ");

  expectOneLine(run("-f 1252 -t utf-8 --in-place latin NUL"), "NUL: is not a regular file");
  EXPECT_EQ(run("-f 1252 -t utf-8 latin -o NUL").err, "");
  EXPECT_EQ(files(), "latin target utf8 ");
}

// A process that is ended in the middle leaves the old file and no other.
TEST_F(ToolTest, LeavesNothingBehindWhenItIsEnded) {
  write("target", "old");
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  ASSERT_NE(CreatePipe(&reader, &writer, &inherited, 0), 0);
  SetHandleInformation(writer, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = reader;
  std::wstring command = fs::path(ENCCONV_TOOL).wstring() + L" -f 1252 -t utf-8 - -o target";
  PROCESS_INFORMATION process = {};
  ASSERT_NE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                           m_directory.c_str(), &startup, &process),
            0);
  const auto temporaries = [&] {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(m_directory)) {
      count += contains(entry.path().filename().string(), "target.") ? 1 : 0;
    }
    return count;
  };
  for (int i = 0; i < 600 && temporaries() == 0; ++i) Sleep(50);
  EXPECT_EQ(temporaries(), 1u);
  TerminateProcess(process.hProcess, 99);
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  CloseHandle(reader);
  CloseHandle(writer);
  for (int i = 0; i < 100 && temporaries() != 0; ++i) Sleep(50);
  EXPECT_EQ(files(), "latin target utf8 ");
  EXPECT_EQ(read("target"), "old");
}

// No byte is added to or taken from what goes through pipes and files.
TEST_F(ToolTest, StandardStreamsAreBinary) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  bytes += "\r\n\n\r\x1A\x1A\n";
  EXPECT_EQ(hexOf(run("-f 437 -t 437", bytes).out), hexOf(bytes));
  EXPECT_EQ(hexOf(run("-f 1252 -t utf-16le", "\n\x1A\r\n").out),
            hexOf(std::string("\n\0\x1A\0\r\0\n\0", 8)));
  EXPECT_FALSE(contains(run("--list").out, "\r"));
}

// Started by a program without a console or standard streams, as services and windows do.
TEST_F(ToolTest, NeedsNoConsole) {
  const auto start = [&](const wchar_t* arguments) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    std::wstring command = fs::path(ENCCONV_TOOL).wstring() + arguments;
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                       m_directory.c_str(), &startup, &process) == 0) {
      return -1;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD status = 0xFFFF;
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return static_cast<int>(status);
  };
  EXPECT_EQ(start(L" -f 1252 -t utf-8 latin -o made"), 0);
  EXPECT_EQ(read("made"), "café\n");
  EXPECT_EQ(start(L" -f 1252 -t utf-8 missing -o none"), 2);
  EXPECT_EQ(start(L" -f 1252 -t utf-8 latin"), 2);  // there is nothing to write to
}

// What is not said about an encoding, the system says; what shells leave to programs, they do.
TEST_F(ToolTest, AsksTheSystem) {
  const std::string ansi = std::to_string(GetACP());
  const std::string bytes = "caf\xE9 \x80";
  EXPECT_EQ(run("-t utf-8", bytes).out, run("-f " + ansi + " -t utf-8", bytes).out);
  EXPECT_EQ(run("-f utf-8", "café").out, run("-f utf-8 -t " + ansi, "café").out);
  write("a1.txt", "1");
  write("A2.TXT", "2");
  write("a3.text", "3");
  EXPECT_EQ(run("-f utf-8 -t utf-8 a*.txt").out, "12");
  EXPECT_EQ(run("-f utf-8 -t utf-8 ./a?.t[ex]*").out, "123");
  expectOneLine(run("-f utf-8 -t utf-8 z*"), "z*: No such file or directory");
}

}  // namespace
