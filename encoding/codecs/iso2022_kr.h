// ISO-2022-KR (RFC 1557) over code page 949.
#ifndef ENCODING_CODECS_ISO2022_KR_H_
#define ENCODING_CODECS_ISO2022_KR_H_

#include "encoding/codecs/codec.h"

extern const Codec kIso2022KrCodec;

#endif  // ENCODING_CODECS_ISO2022_KR_H_
