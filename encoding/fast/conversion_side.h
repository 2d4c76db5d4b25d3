// The source and the target of a conversion, as the fast path sees them.
#ifndef ENCODING_FAST_CONVERSION_SIDE_H_
#define ENCODING_FAST_CONVERSION_SIDE_H_

#include "encoding/encoding_convert.h"
#include "encoding/tables/flat_tables.h"

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

// The same for a kind that is known: UTF-8 or a kind of table.
template <Side::Kind kind>
KernelResult decodeAs(const Kernels& kernels, const Side& source, const unsigned char* in,
                      const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd) {
  if constexpr (kind == Side::kUtf8) {
    return kernels.utf8ToUtf16(in, inEnd, out, outEnd);
  } else if constexpr (kind == Side::kSingleByte) {
    return kernels.singleByteToUtf16(*source.decoder.singleByte, in, inEnd, out, outEnd);
  } else {
    static_assert(kind == Side::kDoubleByte);
    return kernels.doubleByteToUtf16(*source.decoder.doubleByte, in, inEnd, out, outEnd);
  }
}
template <Side::Kind kind>
KernelResult encodeAs(const Kernels& kernels, const Side& target, const unsigned char* in,
                      const unsigned char* inEnd, unsigned char* out, unsigned char* outEnd) {
  if constexpr (kind == Side::kUtf8) {
    return kernels.utf16ToUtf8(in, inEnd, out, outEnd);
  } else if constexpr (kind == Side::kSingleByte) {
    return kernels.utf16ToSingleByte(*target.encoder.singleByte, in, inEnd, out, outEnd);
  } else {
    static_assert(kind == Side::kDoubleByte);
    return kernels.utf16ToDoubleByte(*target.encoder.doubleByte, in, inEnd, out, outEnd);
  }
}

// Beyond this many bytes of output the plain loops, which append what fits to the last byte,
// finish.
inline constexpr unsigned int kNearlyFull = 0xFFFFFFFFu - 64 * 1024;

// Whether the fast path may run at all: not with a verbose log, whose lines belong to the plain
// legs, and not on a big-endian host.
bool isFastPathOpen(const LogBase& log);

}  // namespace fast

#endif  // ENCODING_FAST_CONVERSION_SIDE_H_
