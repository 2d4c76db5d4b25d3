// Escape sequences of ISO-2022 text (ECMA-35).
#ifndef ENCODING_CODECS_ESCAPE_SEQUENCE_H_
#define ENCODING_CODECS_ESCAPE_SEQUENCE_H_

#include <cstddef>
#include <string_view>

constexpr unsigned char kEscape = 0x1B;
constexpr unsigned char kShiftOut = 0x0E;
constexpr unsigned char kShiftIn = 0x0F;

enum class EscapeMatch {
  kNo,
  kYes,
  kMaybe,  // the input ends too early to tell
};

// Whether the bytes behind an ESC, p to end, begin with tail.
inline EscapeMatch matchEscape(const unsigned char* p, const unsigned char* end,
                               std::string_view tail) {
  for (const char expected : tail) {
    if (p == end) return EscapeMatch::kMaybe;
    if (*p++ != static_cast<unsigned char>(expected)) return EscapeMatch::kNo;
  }
  return EscapeMatch::kYes;
}

// Length of the bytes from p, behind an ESC, that designate some character set: "$" with "@", "A"
// or "B", or "(" to "/" with a final byte, with or without "$" before. 0 when they do not, and
// then only the ESC itself can be told from text. Sets atEnd when the input ends too early to tell.
inline unsigned int designationLength(const unsigned char* p, const unsigned char* end,
                                      bool& atEnd) {
  const auto isIntermediate = [](unsigned char byte) { return byte >= 0x28 && byte <= 0x2F; };
  const auto isFinal = [](unsigned char byte) { return byte >= 0x30 && byte <= 0x7E; };
  const unsigned char* q = p;
  if (q != end && *q == '$') {
    ++q;
    if (q != end && *q >= '@' && *q <= 'B') return 2;
  }
  if (q != end && !isIntermediate(*q)) return 0;
  if (end - q < 2) {
    atEnd = true;
    return 0;
  }
  return isFinal(q[1]) ? static_cast<unsigned int>(q - p) + 2 : 0;
}

#endif  // ENCODING_CODECS_ESCAPE_SEQUENCE_H_
