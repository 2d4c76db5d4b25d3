// The forms of the kernels for 64-bit ARM: one, which all its processors run.
#ifndef ENCODING_KERNELS_ARM_FORMS_H_
#define ENCODING_KERNELS_ARM_FORMS_H_

#include "encoding/kernels/cpu_dispatch.h"

namespace fast {

const Kernels& neonKernels();

inline constexpr KernelForm kProcessorForms[] = {{neonKernels, [] { return true; }}};

}  // namespace fast

#endif  // ENCODING_KERNELS_ARM_FORMS_H_
