#include <stdlib.h>
#include <sys/wait.h>

#include "tests/tool_support.h"

fs::path ToolTest::makeDirectory() {
  std::string pattern = (fs::temp_directory_path() / "encconv_test_XXXXXX").string();
  return mkdtemp(pattern.data());
}

ToolRun ToolTest::run(const std::string& arguments, const std::string& input) const {
  return shell(std::string(ENCCONV_TOOL " ") + arguments, input);
}

ToolRun ToolTest::shell(const std::string& script, const std::string& input) const {
  write(".in", input);
  const std::string command =
      "cd '" + m_directory.string() + "' && {\n" + script + "\n} < .in > .out 2> .err";
  // The shell is what the tool is used from.
  const int status = std::system(command.c_str());  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read(".out"), read(".err")};
}
