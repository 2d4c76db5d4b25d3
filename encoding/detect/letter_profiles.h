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

// All of them; those of East Asia, which are written in pairs of bytes, stand last. Made on first
// use; any thread may call these.
std::span<const LetterProfile> letterProfiles();
std::span<const LetterProfile> eastAsianProfiles();

// The logarithms of characters in some profiles, each worked out once.
class ProfileLogs {
 public:
  explicit ProfileLogs(std::span<const LetterProfile> profiles)
      : m_profiles(profiles), m_rows(1u << 16) {}

  // As many as there are profiles, in their order; valid until the next call.
  std::span<const float> of(char16_t unit) {
    if (m_rows[unit] == 0) addRow(unit);
    return std::span(m_logs).subspan((m_rows[unit] - 1) * m_profiles.size(), m_profiles.size());
  }
  std::span<const LetterProfile> profiles() const { return m_profiles; }

 private:
  void addRow(char16_t unit);

  std::span<const LetterProfile> m_profiles;
  std::vector<std::uint32_t> m_rows;  // of each unit, counted from 1
  std::vector<float> m_logs;
};

// The logarithm of a text's characters in each profile.
class ProfileSums {
 public:
  struct Best {
    double log;
    std::string_view language;
  };

  // logs must outlive the object.
  explicit ProfileSums(ProfileLogs& logs) : m_logs(logs), m_sums(logs.profiles().size()) {}

  void add(char16_t unit, std::uint32_t count = 1);
  Best best() const;

 private:
  ProfileLogs& m_logs;
  std::vector<double> m_sums;
};

// The logarithm of the frequency of an ASCII character in text of Western languages.
float logOfAscii(char16_t unit);
// How likely it is that so many characters of a text, and those, are beyond ASCII; a logarithm.
double logOfShares(std::uint64_t ascii, std::uint64_t others);

}  // namespace detection

#endif  // ENCODING_DETECT_LETTER_PROFILES_H_
