// The forms of the kernels for WebAssembly. A module says as a whole whether it has SIMD, so
// nothing is to be found out when it runs.
#ifndef ENCODING_KERNELS_WASM_FORMS_H_
#define ENCODING_KERNELS_WASM_FORMS_H_

#include "encoding/kernels/cpu_dispatch.h"

namespace fast {

const Kernels& simd128Kernels();

inline constexpr KernelForm kProcessorForms[] = {{simd128Kernels, [] { return true; }}};

}  // namespace fast

#endif  // ENCODING_KERNELS_WASM_FORMS_H_
