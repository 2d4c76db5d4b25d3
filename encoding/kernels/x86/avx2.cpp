// The kernels with 32-byte registers, for processors with AVX2, BMI1, BMI2 and POPCNT.
#if defined(__x86_64__)
#include "encoding/kernels/vector_form.h"
#include "encoding/kernels/x86/forms.h"

const fast::Kernels& fast::avx2Kernels() {
  static constexpr Kernels form = vectorForm<Vector32>("avx2");
  return form;
}
#endif
