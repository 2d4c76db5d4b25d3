// The tool's own parsing: command lines and treatments. Each line is an argument.
#include "apps/encconv/options.h"

#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> arguments(1);
  for (const std::uint8_t byte : std::span(data, size)) {
    if (byte == '\n') {
      arguments.emplace_back();
    } else {
      arguments.back().push_back(static_cast<char>(byte));
    }
  }
  const tool::ParsedArguments parsed = tool::parseArguments(arguments);
  const bool hasError = !parsed.err.empty();
  check(hasError == (parsed.status == tool::kUsage), "a usage error says what is wrong");
  check(!parsed.run || (!hasError && !parsed.options.inputs.empty()), "what runs has an input");
  return 0;
}
