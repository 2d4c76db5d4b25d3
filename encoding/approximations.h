// Approximations: the characters that a stream may write for others, which its target lacks.
#ifndef ENCODING_APPROXIMATIONS_H_
#define ENCODING_APPROXIMATIONS_H_

#include <cstdint>

#include "encoding/plan.h"
#include "support/hash_convert.h"

namespace fast {

// Of one plan for streams: what the target's table itself has of them, and, where asked for, its
// best fits. An object is cheap to prepare again and to ask; the tables are shared by all threads.
class Approximations {
 public:
  // False when memory is short.
  bool prepare(const Plan& plan, bool withBestFit);

  // The unit to be written for one that has no place in the target, which has a place; 0 for none.
  std::uint16_t find(std::uint32_t unit) const;

 private:
  const Encoding* m_encoding = nullptr;
  const HashConvert* m_bestFits = nullptr;
};

// Whether the best fits of a target have something for a character. Any thread may call.
bool hasBestFit(int to, char32_t character);

}  // namespace fast

#endif  // ENCODING_APPROXIMATIONS_H_
