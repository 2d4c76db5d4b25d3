#include "apps/encconv/json.h"

#include <array>
#include <cstdio>

#include "support/zv_utf.h"

namespace tool {
namespace {

std::string unicodeEscape(unsigned int unit) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "\\u%04x", unit & 0xFFFFu);
  return text.data();
}

// Bytes of the UTF-8 character that text begins with; 0 when it begins with none.
std::size_t utf8Length(std::string_view text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  const auto left = static_cast<unsigned int>(text.size());
  unsigned int used = 0;
  const bool isSurrogate = left > 1 && bytes[0] == 0xED && bytes[1] >= 0xA0;
  return isSurrogate || _zvUtf::utf16FromUtf8(bytes, left, used) == 0 ? 0 : used;
}

}  // namespace

std::string jsonString(std::string_view text) {
  std::string quoted = "\"";
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text[0]);
    std::size_t length = 1;
    if (byte == '"' || byte == '\\') {
      quoted += '\\';
      quoted += text[0];
    } else if (byte < 0x20 || byte == 0x7F) {
      quoted += unicodeEscape(byte);
    } else if (byte < 0x80) {
      quoted += text[0];
    } else if ((length = utf8Length(text)) != 0) {
      quoted += text.substr(0, length);
    } else {
      length = 1;
      quoted += unicodeEscape(0xDC00u + byte);
    }
    text.remove_prefix(length);
  }
  return quoted + "\"";
}

}  // namespace tool
