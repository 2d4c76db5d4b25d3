// SimilarText: what //TRANSLIT may write for a character.
#ifndef ICONV_SIMILAR_H_
#define ICONV_SIMILAR_H_

#include <cstddef>
#include <cstdint>

#include "encoding/plan.h"

namespace iconv_layer {

// The texts for one character, the best one first. An object is made for each character without a
// place.
class SimilarText {
 public:
  static constexpr std::size_t kMostScalars = 16;

  SimilarText(std::uint32_t scalar, const fast::Plan& plan) : m_scalar(scalar), m_plan(plan) {}

  // The next text, 1 to kMostScalars long; 0: there is no other.
  std::size_t next(char32_t (&scalars)[kMostScalars]);

 private:
  const std::uint32_t m_scalar;
  const fast::Plan& m_plan;
  unsigned int m_given = 0;
};

}  // namespace iconv_layer

#endif  // ICONV_SIMILAR_H_
