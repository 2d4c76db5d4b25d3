// Treatments as users write them.
#include <algorithm>
#include <iterator>
#include <string>

#include "encoding/code_page_list.h"
#include "encoding/stream/stream_converter.h"

namespace {

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// The bytes that pairs of hexadecimal digits stand for; false when digits is anything else.
bool readHexBytes(std::string_view digits, std::string& bytes) {
  if (digits.empty() || digits.size() % 2 != 0) return false;
  std::string read;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = hexValue(digits[i]);
    const int low = hexValue(digits[i + 1]);
    if (high < 0 || low < 0) return false;
    read.push_back(static_cast<char>(high * 16 + low));
  }
  bytes = read;
  return true;
}

bool readSubstitute(std::string_view text, StreamSettings& settings) {
  const bool isRaw = text.substr(0, 2) == "0x";
  // A slip in the digits is no text that anybody wants.
  if (isRaw && !readHexBytes(text.substr(2), settings.substitute)) return false;
  if (!isRaw) settings.substitute = text;
  settings.treatment = StreamTreatment::kSubstitute;
  settings.hasSubstitute = true;
  settings.substituteIsRaw = isRaw;
  return true;
}

bool readAlternate(std::string_view name, StreamSettings& settings) {
  const int codePage = streamCodePage(name);
  if (codePage == 0) return false;
  settings.treatment = StreamTreatment::kAlternate;
  settings.alternate = codePage;
  return true;
}

struct TreatmentName {
  std::string_view name;
  StreamTreatment treatment;
};
constexpr TreatmentName kNames[] = {
    {"stop", StreamTreatment::kStop},
    {"drop", StreamTreatment::kDrop},
    {"substitute", StreamTreatment::kSubstitute},
    {"hex", StreamTreatment::kHex},
    {"raw", StreamTreatment::kRaw},
};

// What may stand in front of a treatment.
struct AttemptName {
  std::string_view name;
  bool StreamSettings::*field;
};
constexpr AttemptName kAttempts[] = {{"compose", &StreamSettings::compose},
                                     {"best-fit", &StreamSettings::bestFit},
                                     {"translit", &StreamSettings::translit}};

// Takes the attempts off the front of text; false when nothing stands behind them.
bool readAttempts(std::string_view& text, StreamSettings& settings) {
  for (const AttemptName& attempt : kAttempts) settings.*attempt.field = false;
  while (true) {
    const auto isNamed = [&](const AttemptName& attempt) {
      return text.substr(0, text.find(',')) == attempt.name;
    };
    const auto* const found = std::ranges::find_if(kAttempts, isNamed);
    if (found == std::end(kAttempts)) return true;
    settings.*found->field = true;
    if (text.size() == found->name.size()) return false;
    text.remove_prefix(found->name.size() + 1);
  }
}

bool readFinalTreatment(std::string_view text, StreamSettings& settings) {
  for (const TreatmentName& known : kNames) {
    if (text != known.name) continue;
    settings.treatment = known.treatment;
    settings.hasSubstitute = false;
    return true;
  }
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string_view value = text.substr(equals + 1);
  if (text.substr(0, equals) == "alternate") return readAlternate(value, settings);
  return text.substr(0, equals) == "substitute" && readSubstitute(value, settings);
}

}  // namespace

bool parseStreamTreatment(std::string_view text, StreamSettings& settings) {
  StreamSettings read = settings;
  if (!readFinalTreatment(readAttempts(text, read) ? text : "stop", read)) return false;
  settings = read;
  return true;
}
