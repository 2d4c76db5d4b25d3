// The kernels with 16-byte registers, for engines of WebAssembly with SIMD.
#if defined(__wasm_simd128__)
#include "encoding/kernels/vector_form.h"
#include "encoding/kernels/wasm/forms.h"

const fast::Kernels& fast::simd128Kernels() {
  static constexpr Kernels form = vectorForm<Vector16>("simd128");
  return form;
}
#endif
