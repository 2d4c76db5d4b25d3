// GSM 03.38 (3GPP TS 23.038, 6.2.1) over UTF-16, and UTF-8.
#ifndef ENCODING_CODECS_GSM_H_
#define ENCODING_CODECS_GSM_H_

#include "encoding/codecs/codec.h"

// Both read the default alphabet, one septet a byte, with the extension table behind 1B. An escape
// before a code without an extension is read as that code's default character, before another
// escape (a further table) as a space. Bytes from 80 up and an escape with no septet behind it are
// malformed, one byte each. What has no septet is written as "?".
extern const Codec kGsmCodec;
// The same with UTF-8 (65001) on the other side; what counts as one invalid piece of it is said in
// support/zv_utf.h, and an unpaired surrogate form is one.
extern const Codec kGsmUtf8Codec;

#endif  // ENCODING_CODECS_GSM_H_
