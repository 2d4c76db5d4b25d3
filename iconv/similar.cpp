#include "iconv/similar.h"

#include "encoding/approximations.h"
#include "encoding/repertoire.h"

namespace iconv_layer {

std::size_t SimilarText::next(char32_t (&scalars)[kMostScalars]) {
  if (m_given == 0) {
    m_given = 1;
    fast::Repertoire repertoire;
    fast::Approximations approximations;
    if (repertoire.open(m_plan) && approximations.prepare(repertoire, true)) {
      scalars[0] = approximations.find(m_scalar);
      if (scalars[0] != 0) return 1;
    }
  }
  if (m_given++ > 1) return 0;
  scalars[0] = '?';
  return 1;
}

}  // namespace iconv_layer
