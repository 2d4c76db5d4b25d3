#include "apps/encconv/system/windows_text.h"

#include <cstddef>

namespace tool {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void appendUtf8(char32_t c, std::string& text) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (c < 0x80) {
    add(c);
  } else if (c < 0x800) {
    add(0xC0 | c >> 6);
    add(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    add(0xE0 | c >> 12);
    add(0x80 | (c >> 6 & 0x3F));
    add(0x80 | (c & 0x3F));
  } else {
    add(0xF0 | c >> 18);
    add(0x80 | (c >> 12 & 0x3F));
    add(0x80 | (c >> 6 & 0x3F));
    add(0x80 | (c & 0x3F));
  }
}

// Takes one character off the front, halves of pairs included.
char32_t takeUtf8(std::string_view& text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const char32_t first = byteAt(0);
  const std::size_t length = first < 0x80                     ? 1
                             : first >= 0xC2 && first < 0xE0  ? 2
                             : first >= 0xE0 && first < 0xF0  ? 3
                             : first >= 0xF0 && first <= 0xF4 ? 4
                                                              : 0;
  char32_t c = length < 2 ? first : first & (0x7Fu >> length);
  std::size_t used = 1;
  while (used < length && used < text.size() && (byteAt(used) & 0xC0) == 0x80) {
    c = c << 6 | (byteAt(used++) & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isGood = length != 0 && used == length && c >= kLeast[length] && c <= 0x10FFFF;
  text.remove_prefix(isGood ? used : 1);
  return isGood ? c : kReplacement;
}

}  // namespace

std::string fromWide(std::wstring_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (isHigh(c) && i + 1 < text.size() && isLow(text[i + 1])) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
    }
    appendUtf8(c, bytes);
  }
  return bytes;
}

std::wstring toWide(std::string_view text) {
  std::wstring units;
  while (!text.empty()) {
    const char32_t c = takeUtf8(text);
    if (c < 0x10000) {
      units += static_cast<wchar_t>(c);
    } else {
      units += static_cast<wchar_t>(0xD7C0 + (c >> 10));
      units += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
    }
  }
  return units;
}

}  // namespace tool
