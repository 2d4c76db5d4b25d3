#include "apps/encconv/error_report.h"

#include <array>
#include <cstdio>

#include "encoding/approximations.h"
#include "encoding/code_page_list.h"
#include "encoding/composer.h"
#include "support/utf.h"

namespace tool {
namespace {

std::string hex(const char* format, unsigned int value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

}  // namespace

std::string nameOfCodePage(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row == nullptr || row->name[0] == 0 ? "code page " + std::to_string(codePage) : row->name;
}

std::string describeCodePage(int codePage) {
  const std::string number = "code page " + std::to_string(codePage);
  const std::string name = nameOfCodePage(codePage);
  return name == number ? number : name + " (" + number + ")";
}

std::string describeCharacter(char32_t character) {
  return hex("U+%04X", static_cast<unsigned int>(character));
}

std::string_view kindOf(const StreamError& error) {
  switch (error.kind) {
    case StreamErrorKind::kMalformed:
      return "malformed";
    case StreamErrorKind::kNoPlace:
      return "no place";
    case StreamErrorKind::kApproximated:
      break;
  }
  return "approximated";
}

namespace {

std::string hexBytes(std::string_view bytes, std::uint64_t length) {
  std::string text;
  for (const char byte : bytes) {
    if (!text.empty()) text += ' ';
    text += hex("%02X", static_cast<unsigned char>(byte));
  }
  if (bytes.size() < length) text += " ...";
  return text;
}

}  // namespace

std::string bytesOf(const StreamError& error) {
  return hexBytes({reinterpret_cast<const char*>(error.bytes), error.byteCount}, error.length);
}

namespace {

// The code points of UTF-8.
std::string charactersOf(std::string_view utf8) {
  std::string text;
  while (!utf8.empty()) {
    const Utf8Sequence sequence =
        decodeScalar(reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size());
    if (!text.empty()) text += ' ';
    text += describeCharacter(static_cast<char32_t>(sequence.value));
    utf8.remove_prefix(sequence.length);
  }
  return text;
}

bool hasPlace(std::int32_t codePoint, int codePage) {
  const auto value = static_cast<std::uint32_t>(codePoint);
  const unsigned char bytes[] = {static_cast<unsigned char>(value),
                                 static_cast<unsigned char>(value >> 8),
                                 static_cast<unsigned char>(value >> 16), 0};
  StreamSettings settings;
  settings.from = 12000;
  settings.to = codePage;
  StreamConverter stream;
  DataBuffer out;
  return stream.begin(settings) == StreamStatus::kGood &&
         stream.push(bytes, sizeof bytes, out) == StreamStatus::kGood &&
         stream.finish(out) == StreamStatus::kGood;
}

}  // namespace

namespace {

// What is wrong, without the place.
std::string describeText(const StreamError& error, const StreamSettings& settings) {
  std::string text;
  if (error.kind == StreamErrorKind::kMalformed) {
    return bytesOf(error) + " is not valid " + describeCodePage(settings.from);
  }
  if (error.codePoint >= 0) {
    text += describeCharacter(static_cast<char32_t>(error.codePoint)) + " (" + bytesOf(error) + ")";
  } else {
    text += bytesOf(error);
  }
  if (error.kind == StreamErrorKind::kApproximated) {
    return text + " became " + (error.written[0] == 0 ? "nothing" : charactersOf(error.written));
  }
  return text + " has no place in " + describeCodePage(settings.to);
}

// The same in the words of the engine.
StreamError errorOf(const encconv::Problem& problem) {
  StreamError error;
  error.offset = problem.offset;
  error.line = problem.line;
  error.length = problem.length;
  error.codePoint = problem.code_point;
  error.kind = problem.malformed      ? StreamErrorKind::kMalformed
               : problem.approximated ? StreamErrorKind::kApproximated
                                      : StreamErrorKind::kNoPlace;
  error.byteCount = static_cast<std::uint8_t>(
      problem.bytes.copy(reinterpret_cast<char*>(error.bytes), StreamError::kMaxBytes));
  problem.written.copy(error.written, StreamError::kMaxWritten);
  return error;
}

}  // namespace

std::string describeError(const StreamError& error, const StreamSettings& settings) {
  return "byte offset " + std::to_string(error.offset) + ", line " + std::to_string(error.line) +
         ": " + describeText(error, settings);
}

std::string_view kindOf(const encconv::RecordProblem& problem) {
  switch (problem.kind) {
    case encconv::RecordProblemKind::text:
      return kindOf(errorOf(*problem.text));
    case encconv::RecordProblemKind::descriptor:
      return "descriptor";
    case encconv::RecordProblemKind::cut:
      return "cut";
    case encconv::RecordProblemKind::number:
      return "number";
    case encconv::RecordProblemKind::too_long:
      return "too long";
    case encconv::RecordProblemKind::missing:
      return "missing";
    case encconv::RecordProblemKind::row:
      break;
  }
  return "row";
}

std::string bytesOf(const encconv::RecordProblem& problem) {
  return hexBytes(problem.bytes, problem.length);
}

std::string describeProblem(const encconv::RecordProblem& problem, const StreamSettings& settings) {
  std::string text = "byte offset " + std::to_string(problem.offset);
  if (problem.record != 0) {
    text += ", record " + std::to_string(problem.record);
  } else if (problem.text) {
    text += ", line " + std::to_string(problem.text->line);
  }
  if (!problem.field.empty()) text += ", field '" + problem.field + "'";
  text += ": ";
  if (problem.text) return text + describeText(errorOf(*problem.text), settings);
  text += problem.reason;
  return problem.bytes.empty() ? text : text + " (" + bytesOf(problem) + ")";
}

std::string adviceFor(const StreamError& error, const StreamSettings& settings) {
  if (error.kind == StreamErrorKind::kMalformed) {
    return "check -f (--detect may help), or go on with --on-error";
  }
  // What is called ISO-8859-1 on the web, and what has its number in Windows, has more characters.
  constexpr int kLatin1 = 819, kWindowsWestern = 1252;
  if (settings.to == kLatin1 && error.codePoint >= 0 &&
      hasPlace(error.codePoint, kWindowsWestern)) {
    return "windows-1252 has it, which the web means by iso-8859-1: choose it or another -t, such "
           "as utf-8, or go on with --on-error";
  }
  const std::string advice = "choose another -t, such as utf-8, or go on with --on-error";
  const auto character = static_cast<std::uint32_t>(error.codePoint);
  if (!settings.compose && error.codePoint >= 0 && fast::isTakenApart(character)) {
    return advice + " compose, which joins letters and marks";
  }
  const auto has = [&](fast::Approximations::Attempts attempts) {
    return error.codePoint >= 0 &&
           fast::hasApproximation(settings.to, static_cast<char32_t>(error.codePoint), attempts);
  };
  if (!settings.bestFit && has({.bestFit = true})) {
    return advice + " best-fit, which writes a similar character";
  }
  return !settings.translit && has({.translit = true})
             ? advice + " translit, which says it in other characters"
             : advice;
}

std::string adviceFor(const encconv::RecordProblem& problem, const StreamSettings& settings) {
  const std::string_view goOn = "go on with --on-error";
  const auto advice = [&](const char* before, const char* behind) {
    return before + std::string(goOn) + behind;
  };
  switch (problem.kind) {
    case encconv::RecordProblemKind::text:
      return adviceFor(errorOf(*problem.text), settings);
    case encconv::RecordProblemKind::descriptor:
    case encconv::RecordProblemKind::cut:
      return advice("check --records, or ", ", which takes what can be told apart");
    case encconv::RecordProblemKind::number:
      return advice("check --fields, or ", ", which takes no number");
    case encconv::RecordProblemKind::too_long:
      return advice("", ", which cuts it between two characters");
    case encconv::RecordProblemKind::missing:
      return advice("", ", which writes blanks");
    case encconv::RecordProblemKind::row:
      break;
  }
  return advice("", ", which leaves it out");
}

std::string describeStatus(StreamStatus status, const StreamSettings& settings) {
  switch (status) {
    case StreamStatus::kNoDecoder:
      return describeCodePage(settings.from) + " can be written but not read";
    case StreamStatus::kNoEncoder:
      return describeCodePage(settings.to) + " can be read but not written";
    case StreamStatus::kNoAlternate:
      return "--on-error: " + describeCodePage(settings.alternate) + " cannot be the alternate";
    case StreamStatus::kBadSubstitute:
      return "--on-error: the substitute cannot be written in " + describeCodePage(settings.to);
    case StreamStatus::kNoMemory:
      return "not enough memory";
    default:
      return "the conversion could not be done";
  }
}

}  // namespace tool
