// Plans between encodings as the C library has them: it gives no characters to the bytes that their
// maker left free, writes some letters as other shapes of them, and turns no text round.
#ifndef ICONV_STRICT_PLAN_H_
#define ICONV_STRICT_PLAN_H_

#include "encoding/plan.h"

namespace iconv_layer {

// Windows reads free codes of its code pages as control characters, U+0080 to U+009F, or as
// characters for private use. Strict sources and targets, which have no codec, are without these.
struct Strictness {
  bool source = false;
  bool target = false;
  bool writesOneWay = false;  // what the target writes as another character is as good as its own
  // What the source, Mac Arabic, has twice, for both directions, is read as one character.
  bool foldsDirections = false;
  bool operator==(const Strictness&) const = default;
};

// The plan with its tables changed so. Made once for each, and kept. Null when memory is short. Any
// thread may call.
const fast::Plan* strictPlan(const fast::Plan& plan, Strictness strictness);

}  // namespace iconv_layer

#endif  // ICONV_STRICT_PLAN_H_
