// What kind of character a UTF-16 unit is, as far as telling text from noise needs it.
#ifndef ENCODING_DETECT_CHARACTERS_H_
#define ENCODING_DETECT_CHARACTERS_H_

#include <cstdint>

namespace detection {

enum class Script : std::uint8_t {
  kNone,  // punctuation, digits, symbols: with any script
  kLatin,
  kGreek,
  kCyrillic,
  kArmenian,
  kHebrew,
  kArabic,
  kIndic,  // and the other Brahmic ones up to Khmer
  kThai,
  kGeorgian,
  kEthiopic,
  kHangul,
  kKana,
  kHan,
  kHalfKana,  // half-width katakana
  kControl,   // C0 but for what text files have, and C1
  kOdd,       // private use, unassigned, no character; seldom or never in text
  kRare,      // box drawing, dingbats and other symbols
};

Script scriptOf(char16_t unit);
constexpr bool isLetterScript(Script script) {
  return script > Script::kNone && script < Script::kControl;
}
// Of Latin, Greek and Cyrillic letters; other units are themselves.
char16_t lowerOf(char16_t unit);

}  // namespace detection

#endif  // ENCODING_DETECT_CHARACTERS_H_
