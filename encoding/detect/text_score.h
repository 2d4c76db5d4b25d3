// How likely a text is to be one that people wrote, by its letters.
#ifndef ENCODING_DETECT_TEXT_SCORE_H_
#define ENCODING_DETECT_TEXT_SCORE_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "encoding/detect/letter_profiles.h"
#include "encoding/detect/neighbours.h"

namespace detection {

// One object judges any number of texts, and learns their characters while it does.
class TextScore {
 public:
  // The natural logarithm of the text's probability, to be compared with that of other texts which
  // may stand for the same bytes.
  double of(std::u16string_view text);

 private:
  struct Sums {
    explicit Sums(ProfileLogs& logs) : letters(logs) {}
    void add(char16_t unit);
    void addOther(double log);  // a character beyond ASCII that no language has as a letter

    double common = 0;  // of what is as likely in all languages
    std::uint64_t ascii = 0, others = 0;
    ProfileSums letters;
  };
  // The word that a text begins with.
  struct Word {
    std::size_t length = 0;
    bool isAllCapitals = true;
  };
  Word wordAt(std::u16string_view text);
  const LetterKind& kindOf(char16_t unit);
  void addWord(std::u16string_view word, bool isAllCapitals, Sums& sums);
  std::size_t addSign(std::u16string_view text, std::size_t at, Sums& sums);

  std::vector<LetterKind> m_kinds = std::vector<LetterKind>(1u << 16);  // where m_isKnown
  std::vector<bool> m_isKnown = std::vector<bool>(1u << 16);
  ProfileLogs m_logs{letterProfiles()};
};

}  // namespace detection

#endif  // ENCODING_DETECT_TEXT_SCORE_H_
