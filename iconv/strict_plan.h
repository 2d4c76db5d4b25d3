// Plans between encodings as the C library has them, which gives no characters to the bytes that
// their maker left free.
#ifndef ICONV_STRICT_PLAN_H_
#define ICONV_STRICT_PLAN_H_

#include "encoding/plan.h"

namespace iconv_layer {

// Windows reads free codes of its code pages as control characters, U+0080 to U+009F, or as
// characters for private use. The plan without these in its source, its target or both, which have
// no codec. Made once for each plan, and kept. Null when memory is
// short. Any thread may call.
const fast::Plan* strictPlan(const fast::Plan& plan, bool isSourceStrict, bool isTargetStrict);

}  // namespace iconv_layer

#endif  // ICONV_STRICT_PLAN_H_
