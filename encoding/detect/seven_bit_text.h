// Encodings that are written in ASCII bytes alone: the ISO-2022 family, HZ and UTF-7.
#ifndef ENCODING_DETECT_SEVEN_BIT_TEXT_H_
#define ENCODING_DETECT_SEVEN_BIT_TEXT_H_

#include <cstdint>
#include <string_view>

#include "encoding/detect/sample.h"
#include "encoding/detect/trial.h"

namespace detection {

struct SevenBitLook {
  std::string_view name;    // empty: ASCII is ASCII
  bool mayConvert = false;  // a code page of this name reads the text
  std::string_view reason;
  std::uint64_t malformed = 0;  // places; few where mayConvert
};

SevenBitLook lookForSevenBitText(const Sample& sample, Trial& trial);

}  // namespace detection

#endif  // ENCODING_DETECT_SEVEN_BIT_TEXT_H_
