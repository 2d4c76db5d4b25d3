#include "encoding/fast/kernels.h"

namespace fast {

const Kernels* sse4Kernels() { return nullptr; }

}  // namespace fast
