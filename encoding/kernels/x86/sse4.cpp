// The kernels with 16-byte registers, for processors with SSE4.2 and POPCNT.
#if defined(__x86_64__)
#include "encoding/kernels/vector_form.h"
#include "encoding/kernels/x86/forms.h"

const fast::Kernels& fast::sse4Kernels() {
  static constexpr Kernels form = vectorForm<Vector16>("sse4");
  return form;
}
#endif
