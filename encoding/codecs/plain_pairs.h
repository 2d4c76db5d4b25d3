// Sets of 94 rows of 94 characters by themselves: every character is two bytes, and there is
// nothing else, not even a space or a line end. X11 fonts and other standards refer to them so.
#ifndef ENCODING_CODECS_PLAIN_PAIRS_H_
#define ENCODING_CODECS_PLAIN_PAIRS_H_

#include "encoding/codecs/codec.h"

struct Mapping;

// The pairs of a mapping.
struct PlainPairs {
  const Mapping& mapping;
  std::uint32_t bits;  // of a code in the mapping besides: 8080 for one in EUC, if it has none here
  unsigned char first = 0x21;  // the lowest of 94 bytes
};

// The parameters are a PlainPairs.
unsigned int readPlainPairs(const void* parameters, const unsigned char* data, unsigned int length,
                            bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writePlainPairs(const void* parameters, const unsigned char* data, unsigned int length,
                             bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
void visitPlainPairs(const void* parameters, MappingVisitor& visitor);

template <const PlainPairs& pairs>
inline constexpr Codec kPlainPairsCodec = {.codePage = 1200,
                                           .read = {readPlainPairs, &pairs},
                                           .write = {writePlainPairs, &pairs},
                                           .isStateless = true,
                                           .mappings = visitPlainPairs};

#endif  // ENCODING_CODECS_PLAIN_PAIRS_H_
