// The encodings of ISO 2022 as the codecs of Python have them, which follow ECMA-35 more than the
// RFCs: a set stays where it was designated, also beyond the end of a line, ISO-2022-KR is
// designated where the first Korean character stands, and every escape sequence that ISO 2022 might
// mean is malformed if it is none of the encoding. Other ones are text.
#ifndef ENCODING_CODECS_PYTHON_ISO2022_H_
#define ENCODING_CODECS_PYTHON_ISO2022_H_

#include <cstdint>

#include "encoding/codecs/iso2022.h"

// The parameters are an Iso2022 of seven bits. Its single shift is ESC N alone; without shifts it
// knows the sequence that announces the second edition of JIS X 0208.
unsigned int readPythonIso2022(const void* parameters, const unsigned char* data,
                               unsigned int length, bool last, CodecState& state, DataBuffer& out,
                               ReplacementSink* sink);
unsigned int writePythonIso2022(const void* parameters, const unsigned char* data,
                                unsigned int length, bool last, CodecState& state, DataBuffer& out,
                                ReplacementSink* sink);

bool isPythonIso2022State(const void* parameters, const CodecState& state, bool isWriting);

// The state of these two, which is that of Python: in CodecState::bits the marks of G0 to G2, G0 in
// the low byte, and 0 for ASCII. The mark of a set is the last byte of its designation, with the
// high bit set for pairs.
constexpr std::uint8_t kPythonAsciiMark = 'B';
// CodecState::set: within an escape sequence that is text.
constexpr std::uint8_t kPythonInEscape = 1;

#endif  // ENCODING_CODECS_PYTHON_ISO2022_H_
