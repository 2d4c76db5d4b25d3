// Telling files that hold no text from those that do.
#ifndef ENCODING_DETECT_BINARY_FILES_H_
#define ENCODING_DETECT_BINARY_FILES_H_

#include <string_view>

#include "encoding/detect/sample.h"

namespace detection {

// The format that the beginning of a file shows, such as "PNG"; empty when it is none that is
// known.
std::string_view binaryFormat(Bytes head);

// Whether there are more control characters than text of one or two bytes a character has.
bool hasTooManyControls(const Sample& sample);

}  // namespace detection

#endif  // ENCODING_DETECT_BINARY_FILES_H_
