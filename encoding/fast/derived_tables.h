// What the fast path needs of a code page, derived from its published tables.
#ifndef ENCODING_FAST_DERIVED_TABLES_H_
#define ENCODING_FAST_DERIVED_TABLES_H_

#include "encoding/kernels/kernels.h"
#include "encoding/tables/code_pages.h"

namespace fast {

// One of the two is set, or neither: then the code page is left to the plain converters, because
// memory is short or because its table says what flat tables cannot.
struct Decoder {
  const SingleByteDecoder* singleByte = nullptr;
  const DoubleByteDecoder* doubleByte = nullptr;
};
struct Encoder {
  const SingleByteEncoder* singleByte = nullptr;
  const DoubleByteEncoder* doubleByte = nullptr;
};

// The tables of a code page whose row has its to-Unicode, or from-Unicode, table published. Built
// on first use and published like those; at most 257 KiB a code page for both. What the encoder of
// a code page does besides looking up (the Arabic digits of 28596 and 1256, the decompositions of
// 1258) is in its table; U+EFFD is in none, because a second leg reads it as an escape.
// Any thread may call.
Decoder decoderFor(const CodePageRow& row);
Encoder encoderFor(const CodePageRow& row);

// Releases all of them. Must not overlap any conversion.
void releaseDerivedTables();

}  // namespace fast

#endif  // ENCODING_FAST_DERIVED_TABLES_H_
