// The characters of UTF-7 (RFC 2152) for sources and targets of streams.
#ifndef ENCODING_STREAM_UTF7_ALPHABET_H_
#define ENCODING_STREAM_UTF7_ALPHABET_H_

#include <cstdint>
#include <string_view>

inline constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The value of a base64 digit, -1 for other bytes.
constexpr int base64Value(unsigned char byte) {
  if (byte >= 'A' && byte <= 'Z') return byte - 'A';
  if (byte >= 'a' && byte <= 'z') return byte - 'a' + 26;
  if (byte >= '0' && byte <= '9') return byte - '0' + 52;
  return byte == '+' ? 62 : byte == '/' ? 63 : -1;
}

// The characters that are written as they are: set D and white space.
constexpr bool isUtf7Direct(std::uint32_t unit) {
  if (unit >= 0x80) return false;
  const auto byte = static_cast<unsigned char>(unit);
  if (byte == '+') return false;
  constexpr std::string_view kMarks = "'(),-./:? \t\r\n";
  return base64Value(byte) >= 0 || kMarks.find(static_cast<char>(byte)) != std::string_view::npos;
}

#endif  // ENCODING_STREAM_UTF7_ALPHABET_H_
