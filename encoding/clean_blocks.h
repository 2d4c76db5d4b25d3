// Conversions from and to the ISO-2022 encodings and UTF-7, a clean block at a time: the text
// between the codec and the engine stays in the cache and is never held as a whole.
#ifndef ENCODING_CLEAN_BLOCKS_H_
#define ENCODING_CLEAN_BLOCKS_H_

#include "encoding/codecs/codec.h"
#include "encoding/encoding_convert.h"

// All of these convert the beginning of a text and return how many bytes of it are used. What is
// left is to be converted by the plain way, which gives for both together what it gives for the
// whole. Nothing is used where the fast path does not serve the other side. When memory is short,
// out or the last buffer has the failure latched.

// From ISO-2022 into the code page `to`. state is that of the reader behind the used bytes, and
// rest has what was read of them but not converted. isBegun says that something was converted.
unsigned int readCleanBlocks(EncodingConvert& converter, const Codec& codec, int to,
                             const unsigned char* data, unsigned int length, DataBuffer& out,
                             LogBase& log, CodecState& state, DataBuffer& rest, bool& isBegun);

// From the code page `from` into the codec's encoding. state is that of the writer behind the used
// bytes, and rest has what stands between it and them in the codec's code page.
unsigned int writeCleanBlocks(EncodingConvert& converter, const Codec& codec, int from,
                              const unsigned char* data, unsigned int length, DataBuffer& out,
                              LogBase& log, CodecState& state, DataBuffer& rest);

// From UTF-7 into a code page other than UTF-16. state is that of the reader behind the used bytes,
// and rest has the UTF-16 of them that is not converted.
unsigned int readCleanUtf7(EncodingConvert& converter, int to, const unsigned char* data,
                           unsigned int length, DataBuffer& out, LogBase& log, CodecState& state,
                           DataBuffer& rest);

#endif  // ENCODING_CLEAN_BLOCKS_H_
