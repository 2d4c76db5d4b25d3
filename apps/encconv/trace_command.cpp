#include "apps/encconv/trace_command.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "apps/encconv/error_report.h"
#include "apps/encconv/file_io.h"
#include "encconv/encconv.h"
#include "support/json.h"

namespace tool {
namespace {

using encconv::jsonString;
using encconv::Misreading;
using encconv::Origin;

constexpr std::size_t kPieceBytes = 64u << 10;
constexpr std::size_t kPreviewBytes = 160;

// The beginning of a text, in one line, without what a terminal might obey.
std::string previewOf(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r')) text.remove_suffix(1);
  std::size_t end = std::min(text.size(), kPreviewBytes);
  while (end < text.size() && end > 0 && (text[end] & 0xC0) == 0x80) --end;
  std::string preview = printable(std::string(text.substr(0, end)));
  return end < text.size() ? preview + "..." : preview;
}

std::string describe(const std::vector<Misreading>& steps) {
  std::string text;
  for (const Misreading& step : steps) {
    text += (text.empty() ? "" : ", then as ") + nameOfCodePage(step.written) + " read as " +
            nameOfCodePage(step.read);
  }
  return text;
}

// Whether escape characters may have been lost, which no conversion brings back.
bool mayLackEscapes(const std::vector<Misreading>& steps) {
  constexpr Misreading kLost = {50220, 20127};  // ISO-2022-JP, US-ASCII
  return steps.size() == 1 && steps[0].written == kLost.written && steps[0].read == kLost.read;
}

// The commands that take the last misreading back first.
std::string remedyFor(const std::vector<Misreading>& steps, const std::string& from,
                      const std::string& file) {
  if (mayLackEscapes(steps)) return "encconv -f " + from + " --trace --brief " + file;
  std::string command;
  std::string current = from;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    const std::string read = nameOfCodePage(step->read);
    if (current != read) {
      command += (command.empty() ? "encconv -f " : " | encconv -f ") + current + " -t " + read +
                 (command.empty() ? " " + file : "");
    }
    current = nameOfCodePage(step->written);
  }
  if (current == "UTF-8") return command;
  return command + " | encconv -f " + current + " -t utf-8";
}

std::string percent(double confidence) {
  return std::to_string(static_cast<int>(confidence * 100 + 0.5)) + " %";
}

std::string inWords(const InputFile& input, const Options& options,
                    const std::vector<Origin>& origins) {
  if (origins.empty()) return input.label() + ": nothing suggests that it is garbled\n";
  const std::string from = nameOfCodePage(options.fromCodePage);
  const std::string file = input.name() == "-" ? "-" : input.label();
  std::string lines;
  for (const Origin& origin : origins) {
    lines += input.label() + ": " + describe(origin.misreadings) + ", " +
             percent(origin.confidence) + "\n    " + previewOf(origin.text) + "\n";
    const std::string remedy = remedyFor(origin.misreadings, from, file);
    if (!remedy.empty()) lines += "    mend it: " + remedy + "\n";
  }
  return lines;
}

std::string inJson(const InputFile& input, const std::vector<Origin>& origins) {
  std::string line = "{\"file\": " + jsonString(input.label()) + ", \"origins\": [";
  std::string_view separator;
  for (const Origin& origin : origins) {
    char confidence[16];
    std::snprintf(confidence, sizeof confidence, "%.2f", origin.confidence);
    line += separator;
    line += "{\"text\": " + jsonString(origin.text) + ", \"confidence\": " + confidence +
            ", \"misreadings\": [";
    separator = "";
    for (const Misreading& step : origin.misreadings) {
      line += separator;
      line += "{\"written\": " + jsonString(nameOfCodePage(step.written)) +
              ", \"read\": " + jsonString(nameOfCodePage(step.read)) + "}";
      separator = ", ";
    }
    line += "]}";
    separator = ", ";
  }
  return line + "]}\n";
}

bool readWhole(InputFile& input, std::string& bytes) {
  std::vector<unsigned char> piece(kPieceBytes);
  for (std::size_t count = 1; count != 0;) {
    if (!input.read(piece, count)) return false;
    bytes.append(reinterpret_cast<const char*>(piece.data()), count);
  }
  return true;
}

}  // namespace

int runTrace(const Options& options, Console& console) {
  int status = kDone;
  encconv::Options lenient;
  lenient.on_error = encconv::OnError::substitute;
  for (const std::string& name : options.inputs) {
    InputFile input;
    std::string bytes;
    if (!input.open(name) || !readWhole(input, bytes)) {
      console.report(input.error());
      status = kUsage;
      continue;
    }
    const std::string text = encconv::to_utf8(bytes, options.fromCodePage, lenient).text;
    const std::vector<Origin> origins = encconv::trace(text);
    if (origins.empty()) status = std::max<int>(status, kNotConverted);
    const std::string& mended = origins.empty() ? text : origins.front().text;
    const int printed = console.print(options.json    ? inJson(input, origins)
                                      : options.brief ? mended
                                                      : inWords(input, options, origins));
    if (printed != kDone) return printed;
  }
  return status;
}

}  // namespace tool
