// The choice of kernels for the processor at hand.
#ifndef ENCODING_KERNELS_CPU_DISPATCH_H_
#define ENCODING_KERNELS_CPU_DISPATCH_H_

#include <vector>

#include "encoding/kernels/kernels.h"

namespace fast {

// A form of the kernels for one kind of processor, and whether the processor at hand is of it. The
// folder of a processor has a header that lists its forms as kProcessorForms, the best one first.
struct KernelForm {
  const Kernels& (*kernels)();
  bool (*runsHere)();
};

// The best kernels that this processor can run; chosen on the first call. The environment variable
// ENCCONV_KERNELS may then name another form: scalar, sse4, avx2 or neon. A name that is unknown,
// or not for this processor, is ignored. Any thread may call.
const Kernels& kernels();

// All that this processor can run: the best first, the scalar ones last.
std::vector<const Kernels*> runnableKernels();

// Makes kernels() return the named form, or its own choice again for a null name. False when the
// name is unknown, or not for this processor. Not for use while conversions run.
bool setKernelsForTesting(const char* name);

// Has a function called by setKernelsForTesting, for a layer above that keeps kernels; it takes the
// place of the one before, null for none. Any thread may call.
void onKernelsChanged(void (*call)());

}  // namespace fast

#endif  // ENCODING_KERNELS_CPU_DISPATCH_H_
