#include "apps/encconv/error_report.h"

#include <array>
#include <cstdio>

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
  return error.kind == StreamErrorKind::kMalformed ? "malformed" : "no place";
}

std::string bytesOf(const StreamError& error) {
  std::string text;
  for (unsigned int i = 0; i < error.byteCount; ++i) {
    if (i != 0) text += ' ';
    text += hex("%02X", error.bytes[i]);
  }
  if (error.byteCount < error.length) text += " ...";
  return text;
}

std::string describeError(const StreamError& error, const StreamSettings& settings) {
  std::string text =
      "byte offset " + std::to_string(error.offset) + ", line " + std::to_string(error.line) + ": ";
  if (error.kind == StreamErrorKind::kMalformed) {
    return text + bytesOf(error) + " is not valid " + describeCodePage(settings.from);
  }
  if (error.codePoint >= 0) {
    text += describeCharacter(static_cast<char32_t>(error.codePoint)) + " (" + bytesOf(error) + ")";
  } else {
    text += bytesOf(error);
  }
  return text + " has no place in " + describeCodePage(settings.to);
}

std::string adviceFor(const StreamError& error) {
  return error.kind == StreamErrorKind::kMalformed
             ? "check -f (--detect may help), or go on with --on-error"
             : "choose another -t, such as utf-8, or go on with --on-error";
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
