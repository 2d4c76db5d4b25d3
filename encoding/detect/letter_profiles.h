// How often the letters of languages are, roughly: what the statistics judge by.
#ifndef ENCODING_DETECT_LETTER_PROFILES_H_
#define ENCODING_DETECT_LETTER_PROFILES_H_

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "encoding/detect/characters.h"

namespace detection {

// One language, or several that are written alike. Immutable.
class LetterProfile {
 public:
  // letters, in UTF-8: beyond ASCII, the most frequent first, small ones only.
  LetterProfile(std::string_view language, Script script, std::string_view letters);

  std::string_view language() const { return m_language; }
  Script script() const { return m_script; }
  // The natural logarithm of how probable it is that a character beyond ASCII is this one.
  float logOf(char16_t unit) const;

 private:
  struct Letter {
    char16_t unit;
    float log;
  };
  std::string_view m_language;
  Script m_script;
  std::vector<Letter> m_letters;  // in order of unit
};

// All of them. Made on first use; any thread may call it.
std::span<const LetterProfile> letterProfiles();

// The logarithm of the frequency of an ASCII character in text of Western languages.
float logOfAscii(char16_t unit);

}  // namespace detection

#endif  // ENCODING_DETECT_LETTER_PROFILES_H_
