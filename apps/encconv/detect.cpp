#include "apps/encconv/detect.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "apps/encconv/error_report.h"
#include "apps/encconv/file_io.h"
#include "encoding/detect/detector.h"
#include "support/utf.h"

namespace tool {
namespace {

using detection::Candidate;
using detection::Finding;
using detection::Kind;

constexpr int kUtf8 = 65001;

std::string_view wordFor(double confidence) {
  return confidence >= 1                                  ? "certain"
         : confidence >= 0.8                              ? "likely"
         : confidence >= detection::kSufficientConfidence ? "guess"
                                                          : "doubtful";
}

std::string percent(double confidence) {
  return std::to_string(static_cast<int>(confidence * 100 + 0.5)) + " %";
}

std::string describe(const Candidate& candidate) {
  return candidate.codePage == 0 ? std::string(candidate.name) + " (which cannot be converted)"
                                 : describeCodePage(candidate.codePage);
}

std::string inWords(const Finding& finding) {
  if (finding.candidates.empty()) {
    const std::string kind(detection::nameOf(finding.kind));
    return kind == finding.reason ? kind : kind + ": " + finding.reason;
  }
  const Candidate& first = finding.candidates.front();
  std::string text = describe(first) + ", ";
  text += wordFor(first.confidence);
  text += ": " + first.reason;
  std::string_view separator = "; else ";
  for (const Candidate& other : std::span(finding.candidates).subspan(1)) {
    text += separator;
    text += describe(other) + " " + percent(other.confidence);
    separator = ", ";
  }
  return text;
}

std::string_view inBrief(const Finding& finding) {
  return finding.candidates.empty() ? detection::nameOf(finding.kind)
                                    : finding.candidates.front().name;
}

// A JSON string. Names of files are bytes; those that are no UTF-8 become U+FFFD.
std::string quoted(std::string_view text) {
  std::string result = "\"";
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());
  const unsigned char* const end = at + text.size();
  while (at < end) {
    const Utf8Sequence piece = decodeScalar(at, static_cast<std::size_t>(end - at));
    if (!piece.valid) {
      result += "\uFFFD";
    } else if (piece.value < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned int>(piece.value));
      result += escape;
    } else {
      if (piece.value == '"' || piece.value == '\\') result += '\\';
      result.append(reinterpret_cast<const char*>(at), piece.length);
    }
    at += piece.length;
  }
  return result + '"';
}

std::string inJson(std::string_view file, const Finding& finding) {
  std::string text = "{\"file\": " + quoted(file) +
                     ", \"kind\": " + quoted(detection::nameOf(finding.kind)) +
                     ", \"reason\": " + quoted(finding.reason) + ", \"candidates\": [";
  std::string_view separator;
  for (const Candidate& candidate : finding.candidates) {
    char confidence[16];
    std::snprintf(confidence, sizeof confidence, "%.2f", candidate.confidence);
    text += separator;
    text += "{\"name\": " + quoted(candidate.name) + ", \"codePage\": " +
            (candidate.codePage == 0 ? "null" : std::to_string(candidate.codePage)) +
            ", \"confidence\": " + confidence +
            ", \"evidence\": " + quoted(detection::nameOf(candidate.evidence)) +
            ", \"reason\": " + quoted(candidate.reason) + "}";
    separator = ", ";
  }
  return text + "]}";
}

// Whether --detect has an answer.
bool isAnswered(const Finding& finding) {
  return finding.candidates.empty() ? finding.kind != Kind::kUnknown
                                    : finding.candidates.front().codePage != 0;
}

}  // namespace

ChosenSource chooseSource(std::span<const unsigned char> sample, bool isWhole, bool acceptsGuess) {
  const Finding finding = detection::detect(sample, isWhole);
  if (finding.kind == Kind::kEmpty) return {kUtf8, finding.reason};
  if (finding.kind == Kind::kAscii) {
    // Behind the sample may be what the text declares, or else what nearly all text is in.
    const bool isDeclared = finding.candidates.size() > 1;
    return {isDeclared ? finding.candidates[1].codePage : kUtf8,
            finding.reason + (isDeclared ? ", " + finding.candidates[1].reason : "")};
  }
  if (finding.kind == Kind::kBinary) return {0, "is not text but binary: " + finding.reason};
  const std::string refusal = "cannot find out the encoding: ";
  if (finding.candidates.empty()) return {0, refusal + finding.reason + "; name it with -f"};
  const Candidate& first = finding.candidates.front();
  if (first.codePage == 0) return {0, refusal + "it looks like " + describe(first)};
  if (first.confidence >= detection::kSufficientConfidence || acceptsGuess) {
    return {first.codePage, first.reason};
  }
  std::string names;
  for (const Candidate& candidate : finding.candidates) {
    names +=
        (names.empty() ? "" : ", ") + describe(candidate) + " " + percent(candidate.confidence);
  }
  return {0, refusal + "perhaps " + names + "; name one with -f, or take the first with --guess"};
}

int runDetection(const Options& options, Console& console) {
  int status = kDone;
  std::vector<unsigned char> sample(kDetectionSample);
  for (const std::string& name : options.inputs) {
    InputFile input;
    std::size_t count = 0;
    if (!input.open(name) || !input.readFully(sample, count)) {
      console.report(input.error());
      status = kUsage;
      continue;
    }
    const Finding finding =
        detection::detect(std::span(sample).first(count), count < sample.size());
    if (!isAnswered(finding)) status = std::max<int>(status, kNotConverted);
    const std::string line = options.json    ? inJson(input.label(), finding)
                             : options.brief ? std::string(inBrief(finding))
                                             : input.label() + ": " + inWords(finding);
    const int printed = console.print(line + "\n");
    if (printed != kDone) return printed;
  }
  return status;
}

}  // namespace tool
