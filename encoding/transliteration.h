// Transliterations: what may be written for a character that an encoding lacks.
#ifndef ENCODING_TRANSLITERATION_H_
#define ENCODING_TRANSLITERATION_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fast {

// The candidates for one character, the best first: of "ﬁ" the text "fi", of a letter with marks
// the letter without them, of a combining mark the empty text. Whoever writes takes the first that
// the target can hold as a whole. Looks a table up that never changes; allocates nothing.
class Transliterations {
 public:
  // Scalar values of a candidate, at most.
  static constexpr std::size_t kMaxLength = 18;

  explicit Transliterations(std::uint32_t scalar);

  // The next candidate, in UTF-8, which stays valid; false behind the last one.
  bool next(std::string_view& text);

 private:
  const char* m_next;  // null: there is none
};

}  // namespace fast

#endif  // ENCODING_TRANSLITERATION_H_
