// GSM 03.38 over UTF-8. The codec of the encoding's row has UTF-16 on the other side.
#ifndef ENCODING_CODECS_GSM_H_
#define ENCODING_CODECS_GSM_H_

#include "encoding/codecs/codec.h"

// What counts as one malformed piece of UTF-8 is said in support/zv_utf.h; an unpaired surrogate
// form is one.
extern const Codec kGsmUtf8Codec;

#endif  // ENCODING_CODECS_GSM_H_
