// The source and the target of a conversion, as the fast path sees them.
#ifndef ENCODING_FAST_CONVERSION_SIDE_H_
#define ENCODING_FAST_CONVERSION_SIDE_H_

#include "encoding/encoding_convert.h"
#include "encoding/fast/derived_tables.h"

namespace fast {

struct Side {
  enum Kind : unsigned char {
    kUtf16,
    kUtf8,
    kSingleByte,
    kDoubleByte,
    kUtf16Be,  // this and the following only for convertPrefix
    kUtf32Le,
    kUtf32Be,
  };
  Kind kind = kUtf16;
  Decoder decoder;
  Encoder encoder;
};

// Fills in a side for a code page; the tables are built where they are missing. False for code
// pages that the fast path does not serve, and when memory is short.
bool openSource(int codePage, LogBase& log, Side& side);
bool openTarget(int codePage, const EncodingConvert& converter, LogBase& log, Side& side);

// The kernel of a side; the source is not UTF-16 itself.
KernelResult decode(const Kernels& kernels, const Side& source, const unsigned char* in,
                    const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd);
KernelResult encode(const Kernels& kernels, const Side& target, const unsigned char* in,
                    const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd);

// Whether the fast path may run at all: not with a verbose log, whose lines belong to the plain
// legs, and not on a big-endian host.
bool isFastPathOpen(const LogBase& log);

}  // namespace fast

#endif  // ENCODING_FAST_CONVERSION_SIDE_H_
