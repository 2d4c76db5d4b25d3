// The kernels with 32-byte registers, for processors with AVX2, BMI1, BMI2 and POPCNT.
#include "encoding/kernels/kernels.h"

#if defined(__x86_64__) && defined(__AVX2__)

#include "encoding/kernels/vector_form.h"

namespace fast {

const Kernels* avx2Kernels() {
  static constexpr Kernels form = vectorForm<Vector32>("avx2");
  return &form;
}

}  // namespace fast

#else

namespace fast {

const Kernels* avx2Kernels() { return nullptr; }

}  // namespace fast

#endif
