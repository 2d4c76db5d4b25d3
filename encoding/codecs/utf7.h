// UTF-7 (RFC 2152) over UTF-16.
#ifndef ENCODING_CODECS_UTF7_H_
#define ENCODING_CODECS_UTF7_H_

#include "encoding/codecs/codec.h"

// Written directly are the set D characters, space, tab, CR and LF; a "+" outside a run as "+-",
// everything else in base64, unpaired surrogates included. A run ends with "-" only before a
// character that could belong to it, and at the end of the text. Half a unit at the end of the
// UTF-16 is left out, and not reported but by CodecState::replaced.
//
// Every ASCII character outside a run but "+" is read as itself. Malformed are: a byte from 80 up;
// a
// "+" before anything but base64 or "-" (one byte); digits at the end of a run that make no unit;
// bits behind the last unit that are not 0 (one byte, the last digit of that unit). Each becomes
// U+FFFD. Surrogates are units like others, paired or not. A unit is used together with its digits
// as soon as it can be told, the "+" of a run before the first of them.
extern const Codec kUtf7Codec;

#endif  // ENCODING_CODECS_UTF7_H_
