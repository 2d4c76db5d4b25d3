// The kernels with 16-byte registers, for 64-bit ARM, where NEON is always there.
#if defined(__aarch64__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#include "encoding/kernels/arm/forms.h"
#include "encoding/kernels/vector_form.h"

const fast::Kernels& fast::neonKernels() {
  static constexpr Kernels form = vectorForm<Vector16>("neon");
  return form;
}
#endif
