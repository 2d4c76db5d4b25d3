// The kernels with 16-byte registers, for processors with SSE4.2 and POPCNT.
#include "encoding/kernels/kernels.h"

#if defined(__x86_64__) && defined(__SSE4_2__)

#include "encoding/kernels/vector_form.h"

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
