// PumpBlock: where text lies between the two steps of a plan.
#ifndef ENCODING_PUMP_BLOCK_H_
#define ENCODING_PUMP_BLOCK_H_

#include "encoding/plan.h"

namespace fast {

// Stays in the first-level cache. What it holds does not matter before and after a text.
struct PumpBlock {
  alignas(32) unsigned char bytes[8192 + kKernelSlack];
};

// The bytes that the source of a plan has for a unit of well-formed text that was decoded from what
// begins at in: of a pair, for its first unit all or half of them.
std::size_t sourceBytes(const Plan& plan, unsigned int unit, const unsigned char* in);

}  // namespace fast

#endif  // ENCODING_PUMP_BLOCK_H_
