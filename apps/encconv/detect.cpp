#include "apps/encconv/detect.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "apps/encconv/error_report.h"
#include "apps/encconv/file_io.h"
#include "encoding/detect/detector.h"
#include "support/json.h"

namespace tool {
namespace {

using detection::Candidate;
using detection::Finding;
using detection::Kind;
using encconv::jsonString;

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

std::string inJson(std::string_view file, const Finding& finding) {
  std::string text = "{\"file\": " + jsonString(file) +
                     ", \"kind\": " + jsonString(detection::nameOf(finding.kind)) +
                     ", \"reason\": " + jsonString(finding.reason) + ", \"candidates\": [";
  std::string_view separator;
  for (const Candidate& candidate : finding.candidates) {
    char confidence[16];
    std::snprintf(confidence, sizeof confidence, "%.2f", candidate.confidence);
    text += separator;
    text += "{\"name\": " + jsonString(candidate.name) + ", \"codePage\": " +
            (candidate.codePage == 0 ? "null" : std::to_string(candidate.codePage)) +
            ", \"confidence\": " + confidence +
            ", \"evidence\": " + jsonString(detection::nameOf(candidate.evidence)) +
            ", \"reason\": " + jsonString(candidate.reason) + "}";
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
