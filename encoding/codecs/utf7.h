// UTF-7 (RFC 2152) over UTF-16.
#ifndef ENCODING_CODECS_UTF7_H_
#define ENCODING_CODECS_UTF7_H_

#include "encoding/codecs/codec.h"

extern const Codec kUtf7Codec;

#endif  // ENCODING_CODECS_UTF7_H_
