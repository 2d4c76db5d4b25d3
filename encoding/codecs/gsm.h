// GSM 03.38 (3GPP TS 23.038, 6.2.1) over UTF-16.
#ifndef ENCODING_CODECS_GSM_H_
#define ENCODING_CODECS_GSM_H_

#include "encoding/codecs/codec.h"

extern const Codec kGsmCodec;

#endif  // ENCODING_CODECS_GSM_H_
