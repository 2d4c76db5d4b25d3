// Encodings of single bytes in which an accent is a byte of its own, in front of its letter (ISO
// 6937, T.61, ANSEL) or behind it (TCVN 5712). One reader and one writer, driven by a mapping.
#ifndef ENCODING_CODECS_ACCENTS_H_
#define ENCODING_CODECS_ACCENTS_H_

#include "encoding/codecs/codec.h"

struct Mapping;

struct AccentScheme {
  // Its codes are single bytes; accents with 00 behind them, which stand for combining marks, or
  // for 0000 where they are read as nothing (the second half of a mark over two letters); and
  // accents with a letter behind them, wherever they stand in the text, which stand for a composed
  // character.
  const Mapping* mapping;
  bool isBehind;  // the accent follows its letter, and is a character of its own without one
  bool composes;  // reads an accent and its letter as the composed character; else as two
};

// The parameters are an AccentScheme. What has no composed character is read as letter and marks;
// an accent in front of no letter is malformed. Writing takes characters apart, and takes marks
// behind their letter too.
unsigned int readAccents(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeAccents(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);

#endif  // ENCODING_CODECS_ACCENTS_H_
