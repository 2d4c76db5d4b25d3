// Telling EBCDIC from everything else.
#ifndef ENCODING_DETECT_EBCDIC_TEXT_H_
#define ENCODING_DETECT_EBCDIC_TEXT_H_

#include "encoding/detect/sample.h"

namespace detection {

enum class EbcdicLook : unsigned char {
  kNone,
  kLatin,     // Latin letters, as often as they are in text
  kPossible,  // blanks and line ends where EBCDIC has them; perhaps letters of another script
};

// All pages of EBCDIC have blanks, digits and the letters a to z at the same places.
EbcdicLook lookForEbcdic(const Sample& sample);

}  // namespace detection

#endif  // ENCODING_DETECT_EBCDIC_TEXT_H_
