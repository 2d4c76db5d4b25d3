// Approximations: the characters that a stream may write for others, which its target lacks.
#ifndef ENCODING_APPROXIMATIONS_H_
#define ENCODING_APPROXIMATIONS_H_

#include <cstdint>

#include "encoding/repertoire.h"
#include "support/hash_convert.h"

namespace fast {

// Of the target of one repertoire: what its table, or its codec, has of them, and, where asked for,
// its best fits. An object is cheap to prepare again and to ask; the tables are shared by all
// threads.
class Approximations {
 public:
  // target has to stay while the object is asked. False when memory is short.
  bool prepare(Repertoire& target, bool withBestFit);

  // The character to be written for one that has no place in the target, which has a place; 0 for
  // none. The repertoire tells when memory was short.
  std::uint32_t find(std::uint32_t scalar);

 private:
  std::uint32_t findInTable(std::uint32_t scalar) const;
  std::uint32_t findBestFit(std::uint32_t scalar) const;

  Repertoire* m_target = nullptr;
  const HashConvert* m_bestFits = nullptr;
};

// Whether a target has something to write for a character that it lacks, with its best fits. Any
// thread may call.
bool hasBestFit(int to, char32_t character);

}  // namespace fast

#endif  // ENCODING_APPROXIMATIONS_H_
