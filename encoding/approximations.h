// Approximations: the text that a stream may write for a character, which its target lacks.
#ifndef ENCODING_APPROXIMATIONS_H_
#define ENCODING_APPROXIMATIONS_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "encoding/repertoire.h"
#include "encoding/transliteration.h"
#include "support/hash_convert.h"

namespace fast {

// Of the target of one repertoire: what its table, or its codec, has of them, and, where asked for,
// its best fits and the transliterations of any target. An object is cheap to prepare again and to
// ask; the tables are shared by all threads.
class Approximations {
 public:
  // What is tried where the encoding itself has nothing, in this order.
  struct Attempts {
    bool bestFit = false;
    bool translit = false;
  };

  // target has to stay while the object is asked. False when memory is short.
  bool prepare(Repertoire& target, Attempts attempts);

  // The characters to be written for one that has no place in the target, each of which has a
  // place; they may be none. Valid until the next call. The repertoire tells when memory was short.
  std::optional<std::u32string_view> find(std::uint32_t scalar);

 private:
  std::uint32_t findCharacter(std::uint32_t scalar);
  std::uint32_t findInTable(std::uint32_t scalar) const;
  std::uint32_t findBestFit(std::uint32_t scalar) const;
  std::optional<std::u32string_view> findTransliteration(std::uint32_t scalar);

  Repertoire* m_target = nullptr;
  const HashConvert* m_bestFits = nullptr;
  bool m_transliterates = false;
  char32_t m_text[Transliterations::kMaxLength];  // found last
};

// Whether a target has something to write for a character that it lacks. Any thread may call.
bool hasApproximation(int to, char32_t character, Approximations::Attempts attempts);

}  // namespace fast

#endif  // ENCODING_APPROXIMATIONS_H_
