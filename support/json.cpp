#include "support/json.h"

#include "support/utf.h"

namespace encconv {
namespace {

void appendEscape(unsigned int unit, std::string& output) {
  output += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) output += "0123456789abcdef"[unit >> shift & 0xFu];
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
