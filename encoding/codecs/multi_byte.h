// The codecs of encodings without a state whose characters have one to four bytes: GB18030, EUC-TW,
// Big5-HKSCS, Shift_JISX0213, ... One algorithm, driven by a mapping.
#ifndef ENCODING_CODECS_MULTI_BYTE_H_
#define ENCODING_CODECS_MULTI_BYTE_H_

#include "encoding/codecs/code_table.h"
#include "encoding/codecs/codec.h"

// The parameters are a Mapping. A code that is not assigned is one malformed piece, unless a byte
// below 80 stands in it: a delimiter is never taken along.
unsigned int readMultiByte(const void* parameters, const unsigned char* data, unsigned int length,
                           bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeMultiByte(const void* parameters, const unsigned char* data, unsigned int length,
                            bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
// What the mapping only writes; see Codec::approximate.
std::uint32_t approximateMultiByte(const void* parameters, std::uint32_t scalar);
void visitMultiByte(const void* parameters, MappingVisitor& visitor);

// How many bytes a malformed piece has that begins with these, of which `known` (1 to 4) can be
// seen; last: nothing follows them. 0: what follows decides.
using PieceRule = unsigned int (*)(const unsigned char* bytes, std::size_t known, bool last);

// Of EUC-JP: a pair that is not assigned is one malformed piece, and so are three bytes behind 8F;
// a byte that cannot end a character is read again as itself.
unsigned int eucJpPiece(const unsigned char* bytes, std::size_t known, bool last);

// Characters that the mapping has no code for, but the encoding a longer form, of kLongest bytes at
// most.
struct LongForms {
  static constexpr unsigned int kLongest = 8;
  static constexpr unsigned int kUndecided = 0xFFFFFFFF;  // what follows decides
  // The length of the form that stands at bytes where no code of the mapping does, and what it
  // stands for; 0 for none.
  unsigned int (*read)(const unsigned char* bytes, std::size_t known, bool last, char32_t& scalar);
  // Writes it; 0 for a character without one.
  unsigned int (*write)(char32_t scalar, unsigned char* bytes);
};

// A mapping whose encoding has rules of its own: which pieces are malformed (null: as the mapping
// says), how long a code may be that is written, and longer forms (null for none).
struct RuledMapping {
  const Mapping& mapping;
  PieceRule pieceRule;
  unsigned int longestWritten = CodeTable::kMaxBytes;
  const LongForms* longForms = nullptr;
};

// The same; the parameters are a RuledMapping.
unsigned int readRuled(const void* parameters, const unsigned char* data, unsigned int length,
                       bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeRuled(const void* parameters, const unsigned char* data, unsigned int length,
                        bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);

std::uint32_t approximateRuled(const void* parameters, std::uint32_t scalar);
void visitRuled(const void* parameters, MappingVisitor& visitor);

template <const Mapping& mapping, std::uint8_t unitsPerByte = 1>
inline constexpr Codec kMultiByteCodec = {.codePage = 1200,
                                          .read = {readMultiByte, &mapping},
                                          .write = {writeMultiByte, &mapping},
                                          .isStateless = true,
                                          .approximate = approximateMultiByte,
                                          .unitsPerByte = unitsPerByte,
                                          .readsPairs = true,
                                          .cut = cutMultiByte,
                                          .mappings = visitMultiByte};

template <const RuledMapping& mapping>
inline constexpr Codec kRuledCodec = {.codePage = 1200,
                                      .read = {readRuled, &mapping},
                                      .write = {writeRuled, &mapping},
                                      .isStateless = true,
                                      .approximate = approximateRuled,
                                      .readsPairs = true,
                                      .cut = cutRuled,
                                      .mappings = visitRuled};

#endif  // ENCODING_CODECS_MULTI_BYTE_H_
