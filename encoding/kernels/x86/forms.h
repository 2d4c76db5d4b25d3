// The forms of the kernels for x86-64.
#ifndef ENCODING_KERNELS_X86_FORMS_H_
#define ENCODING_KERNELS_X86_FORMS_H_

#include "encoding/kernels/cpu_dispatch.h"
#include "support/compiler.h"

namespace fast {

const Kernels& sse4Kernels();
const Kernels& avx2Kernels();

inline bool hasSse4() { return COMPILER_CPU_HAS("sse4.2") && COMPILER_CPU_HAS("popcnt"); }
inline bool hasAvx2() {
  return COMPILER_CPU_HAS("avx2") && COMPILER_CPU_HAS("bmi") && COMPILER_CPU_HAS("bmi2") &&
         COMPILER_CPU_HAS("popcnt");
}

inline constexpr KernelForm kProcessorForms[] = {{avx2Kernels, hasAvx2}, {sse4Kernels, hasSse4}};

}  // namespace fast

#endif  // ENCODING_KERNELS_X86_FORMS_H_
