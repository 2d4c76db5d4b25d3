// The forms of the kernels for x86-64.
#ifndef ENCODING_KERNELS_X86_FORMS_H_
#define ENCODING_KERNELS_X86_FORMS_H_

#include "encoding/kernels/cpu_dispatch.h"

namespace fast {

const Kernels& sse4Kernels();
const Kernels& avx2Kernels();

inline bool hasSse4() {
  return __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
}
inline bool hasAvx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
         __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
}

inline constexpr KernelForm kProcessorForms[] = {{avx2Kernels, hasAvx2}, {sse4Kernels, hasSse4}};

}  // namespace fast

#endif  // ENCODING_KERNELS_X86_FORMS_H_
