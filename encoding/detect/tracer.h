// Garbled text traced back: bytes in one encoding that were read as another, and how to undo it.
#ifndef ENCODING_DETECT_TRACER_H_
#define ENCODING_DETECT_TRACER_H_

#include <string>
#include <string_view>
#include <vector>

#include "encoding/detect/misreading.h"

namespace detection {

// A text that may have become the garbled one.
struct Origin {
  std::u16string text;
  std::vector<Misreading> misreadings;  // what happened to it, in that order; never empty
  double confidence = 0;                // from 0 to 1
};

inline constexpr std::size_t kMaxOrigins = 4;

// The likeliest origins of a garbled text, the likeliest first, kMaxOrigins at most; none where the
// text itself is likelier than all that it could come from. Judges by the first few thousand
// characters, and mends all of them; characters that the misreading cannot have made stay as they
// are. Any thread may call it. Throws std::bad_alloc only.
std::vector<Origin> traceBack(std::u16string_view garbled);

}  // namespace detection

#endif  // ENCODING_DETECT_TRACER_H_
