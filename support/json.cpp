#include "support/json.h"

#include <array>
#include <cstdio>

#include "support/utf.h"

namespace encconv {
namespace {

void appendEscape(unsigned int unit, std::string& output) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\u%04x", unit & 0xFFFFu);
  output += text.data();
}

// The bytes at the beginning of text that stand in a string as they are.
std::size_t plainLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size()) {
    const auto byte = static_cast<unsigned char>(text[length]);
    if (byte < 0x20 || byte > 0x7E || byte == '"' || byte == '\\') break;
    ++length;
  }
  return length;
}

}  // namespace

void appendJsonString(std::string_view text, std::string& output) {
  output += '"';
  while (!text.empty()) {
    std::size_t length = plainLength(text);
    const auto byte = static_cast<unsigned char>(text[0]);
    if (length != 0) {
      output += text.substr(0, length);
    } else if (byte == '"' || byte == '\\') {
      output += '\\';
      output += text[0];
      length = 1;
    } else if (byte < 0x80) {
      appendEscape(byte, output);
      length = 1;
    } else {
      const Utf8Sequence sequence =
          decodeUtf8(reinterpret_cast<const unsigned char*>(text.data()), text.size());
      const bool isCharacter = sequence.valid && !isSurrogate(sequence.value);
      length = isCharacter ? sequence.length : 1;
      if (isCharacter) {
        output += text.substr(0, length);
      } else {
        appendEscape(0xDC00u + byte, output);
      }
    }
    text.remove_prefix(length);
  }
  output += '"';
}

std::string jsonString(std::string_view text) {
  std::string output;
  appendJsonString(text, output);
  return output;
}

}  // namespace encconv
