// The tool's own parsing: command lines, treatments, and records of fixed length. The settings of
// the record filter come first; each line of the text is an argument.
#include "apps/encconv/options.h"

#include "apps/encconv/record_filter.h"
#include "fuzz/fuzz_support.h"

namespace {

std::vector<unsigned char> filtered(unsigned int recordLength, bool trim,
                                    std::span<const std::uint8_t> text, std::size_t step) {
  tool::RecordFilter filter({recordLength, trim, "\n", "@"});
  std::vector<unsigned char> lines;
  for (std::size_t at = 0; at < text.size(); at += step) {
    filter.push(text.subspan(at, std::min(step, text.size() - at)), lines);
  }
  filter.finish(lines);
  check(lines.empty() || filter.inputOffset(lines.size() - 1) <= text.size(),
        "an offset lies in the input");
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const unsigned int settings = input.byte();
  const auto text = input.rest();
  const unsigned int recordLength = settings / 2 % 64 + 1;
  const bool trim = settings % 2 != 0;
  check(filtered(recordLength, trim, text, settings % 7 + 1) ==
            filtered(recordLength, trim, text, text.size() + 1),
        "the lines do not depend on the cuts");

  std::vector<std::string> arguments(1);
  for (const std::uint8_t byte : text) {
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
