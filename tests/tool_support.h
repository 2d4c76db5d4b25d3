// ToolTest: the tool as its users run it, the program itself, on files in a directory of its own.
#ifndef TESTS_TOOL_SUPPORT_H_
#define TESTS_TOOL_SUPPORT_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

// What one run of the tool left behind.
struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

class ToolTest : public ::testing::Test {
 protected:
  ToolTest() : m_directory(makeDirectory()) {
    write("latin", "caf\xE9\n");
    write("utf8", "caf\u00E9\n");
  }
  ~ToolTest() override { fs::remove_all(m_directory); }

  fs::path path(const std::string& name) const { return m_directory / name; }

  void write(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
  }

  static std::string readFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::string read(const std::string& name) const { return readFile(path(name)); }

  // Runs "encconv ARGUMENTS" in the directory. The arguments may be in quotes.
  ToolRun run(const std::string& arguments, const std::string& input = "") const;
  // Runs a script in the directory. Where there is a shell.
  ToolRun shell(const std::string& script, const std::string& input = "") const;

  // Files in the directory, but for those of run().
  std::string files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(m_directory)) {
      const std::string name = entry.path().filename().string();
      if (name[0] != '.') names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    std::string list;
    for (const std::string& name : names) list += name + " ";
    return list;
  }

  static fs::path makeDirectory();

  fs::path m_directory;
};

inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// One line that names the program and the thing.
inline void expectOneLine(const ToolRun& outcome, const std::string& part) {
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  EXPECT_TRUE(outcome.err.starts_with("encconv: ")) << outcome.err;
  EXPECT_TRUE(contains(outcome.err, part)) << outcome.err;
}

#endif  // TESTS_TOOL_SUPPORT_H_
