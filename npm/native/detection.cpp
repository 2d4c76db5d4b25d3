// Finding out an encoding, and tracing garbled text back.
#include <cmath>
#include <string>

#include "encconv/encconv.h"
#include "encoding/code_page_list.h"
#include "npm/native/exports.h"
#include "support/json.h"

namespace {

// In millionths: the C library's formatting of floating point would weigh more than this file.
std::string jsonConfidence(double confidence) {
  return std::to_string(std::lround(confidence * 1e6)) + "e-6";
}

}  // namespace

// What detect() found, as JSON.
ENCCONV_EXPORT(detect)
void detectEncoding(const char* bytes, unsigned int size, bool isBeginning) {
  constexpr const char* kKinds[] = {"empty", "ascii", "text", "binary", "unknown"};
  constexpr const char* kEvidence[] = {"mark", "declaration", "structure", "statistics"};
  const encconv::Detection found = encconv::detect({bytes, size}, {isBeginning});
  const encconv::Candidate* const sure = found.sure();
  std::string text = std::string("{\"kind\":\"") + kKinds[static_cast<int>(found.kind)] +
                     "\",\"encoding\":" + (sure ? encconv::jsonString(sure->name) : "null") +
                     ",\"candidates\":[";
  bool isFirst = true;
  for (const encconv::Candidate& candidate : found.candidates) {
    if (!isFirst) text += ',';
    isFirst = false;
    text += "{\"encoding\":" + encconv::jsonString(candidate.name) +
            ",\"number\":" + std::to_string(candidate.code_page) +
            ",\"confidence\":" + jsonConfidence(candidate.confidence) + ",\"evidence\":\"" +
            kEvidence[static_cast<int>(candidate.evidence)] +
            "\",\"reason\":" + encconv::jsonString(candidate.reason) + "}";
  }
  reply(text + "],\"reason\":" + encconv::jsonString(found.reason) + "}");
}

// What trace() found, as a JSON array.
ENCCONV_EXPORT(trace) void traceText(const char* text, unsigned int length) {
  const auto nameOf = [](int number) {
    const CharsetNames* const page = findCodePage(number);
    return encconv::jsonString(page != nullptr ? page->preferredName : "");
  };
  std::string all;
  for (const encconv::Origin& origin : encconv::trace(textAt(text, length))) {
    std::string steps;
    for (const encconv::Misreading& step : origin.misreadings) {
      if (!steps.empty()) steps += ',';
      steps += "{\"written\":" + nameOf(step.written) + ",\"read\":" + nameOf(step.read) + "}";
    }
    if (!all.empty()) all += ',';
    all += "{\"text\":" + encconv::jsonString(origin.text) + ",\"misreadings\":[" + steps +
           "],\"confidence\":" + jsonConfidence(origin.confidence) + "}";
  }
  reply("[" + all + "]");
}
