// The fast path of convert_a: clean stretches through the kernels, the rest through the plain legs.
#ifndef ENCODING_FAST_FAST_PATH_H_
#define ENCODING_FAST_FAST_PATH_H_

#include "encoding/encoding_convert.h"
#include "encoding/fast/conversion_side.h"

namespace fast {

enum class Outcome : unsigned char {
  kNotTaken,  // nothing was done: the plain legs have to run
  kFailed,    // the conversion ran and its result is false
  kDone,      // the conversion ran and its result is true
};

// Converts a normalised source (1200, 65001 or a table-driven code page, without byte order mark)
// to 1200, 65001 or a table-driven code page, with the output, result, flags and reports that the
// plain legs give for the same input. Not taken for pairs that it does not serve, and where the
// fast path is not open (isFastPathOpen).
Outcome convert(EncodingConvert& converter, int from, int to, const unsigned char* data,
                unsigned int length, DataBuffer& out, LogBase& log);

// The same between two sides that are open; returns the result of the conversion.
bool convertBetween(EncodingConvert& converter, int from, int to, const Side& source,
                    const Side& target, const unsigned char* data, unsigned int length,
                    DataBuffer& out, LogBase& log);

// Converts the beginning of a conversion from or to UTF-32 or UTF-16 big endian (the other side may
// be anything that convert() serves), up to a block in which something is not clean, and returns
// the bytes of input that it consumed. What is left is to be converted by the plain way, which
// gives for both together what it gives for the whole. Byte order marks are not this function's
// business: 0 for a source that begins with one.
unsigned int convertPrefix(EncodingConvert& converter, int from, int to, const unsigned char* data,
                           unsigned int length, DataBuffer& out, LogBase& log);

// For tests: makes every conversion take the plain legs, or the fast path again.
void setFastPathForTesting(bool enabled);

}  // namespace fast

#endif  // ENCODING_FAST_FAST_PATH_H_
