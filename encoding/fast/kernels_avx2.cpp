// The kernels with 32-byte registers, for processors with AVX2, BMI1, BMI2 and POPCNT.
#include "encoding/fast/kernels.h"

#if defined(__x86_64__) && defined(__AVX2__)

#include "encoding/fast/kernels_vector_avx2.h"
#include "encoding/fast/kernels_vector_sse4.h"
// The loops stand on the registers.
#include "encoding/fast/kernels_vector_form.h"

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
