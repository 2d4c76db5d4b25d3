// ISO-2022-JP over code page 932 (Shift_JIS).
#ifndef ENCODING_CODECS_ISO2022_JP_H_
#define ENCODING_CODECS_ISO2022_JP_H_

#include "encoding/codecs/codec.h"

extern const Codec kIso2022JpCodec;

#endif  // ENCODING_CODECS_ISO2022_JP_H_
