// The kernels with 16-byte registers, for processors with SSE4.2 and POPCNT.
#include "encoding/fast/kernels.h"

#if defined(__x86_64__) && defined(__SSE4_2__)

#include "encoding/fast/kernels_vector_sse4.h"
// The loops stand on the registers.
#include "encoding/fast/kernels_vector_form.h"

namespace fast {

const Kernels* sse4Kernels() {
  static constexpr Kernels form = vectorForm<Vector16>("sse4");
  return &form;
}

}  // namespace fast

#else

namespace fast {

const Kernels* sse4Kernels() { return nullptr; }

}  // namespace fast

#endif
