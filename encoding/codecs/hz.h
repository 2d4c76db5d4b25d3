// HZ (RFC 1843) over code page 936.
#ifndef ENCODING_CODECS_HZ_H_
#define ENCODING_CODECS_HZ_H_

#include "encoding/codecs/codec.h"

extern const Codec kHzCodec;

#endif  // ENCODING_CODECS_HZ_H_
