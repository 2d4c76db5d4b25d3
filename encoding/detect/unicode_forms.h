// The forms of Unicode, with and without a byte order mark.
#ifndef ENCODING_DETECT_UNICODE_FORMS_H_
#define ENCODING_DETECT_UNICODE_FORMS_H_

#include <cstdint>

#include "encoding/detect/sample.h"
#include "encoding/detect/trial.h"

namespace detection {

// The code page whose byte order mark the text begins with, and whose text follows it; 0 for none.
int pageOfMark(const Sample& sample, Trial& trial);

// The code page of UTF-16 or UTF-32 without a mark; 0 when it is neither. Any script is recognised,
// by what all text has: characters that exist, mostly letters, few scripts, blanks or line ends.
// isByZeros tells whether NUL bytes show it, rather than the characters alone.
int pageOfWideForm(const Sample& sample, Trial& trial, bool& isByZeros);

struct Utf8Look {
  std::uint64_t sequences = 0;  // characters beyond ASCII
  std::uint64_t malformed = 0;
};
Utf8Look lookForUtf8(const Sample& sample);

}  // namespace detection

#endif  // ENCODING_DETECT_UNICODE_FORMS_H_
