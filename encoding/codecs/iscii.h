// ISCII (IS 13194:1991): ASCII, and above it the letters of one of nine Indian scripts at a time.
// The attribute byte EF and a code behind it change the script, up to the end of the line.
#ifndef ENCODING_CODECS_ISCII_H_
#define ENCODING_CODECS_ISCII_H_

#include "encoding/codecs/codec.h"

// The scripts, in the order of their blocks in Unicode. Assamese is Bengali under a name of its
// own.
enum class IsciiScript : unsigned char {
  kDevanagari,
  kBengali,
  kGurmukhi,
  kGujarati,
  kOriya,
  kTamil,
  kTelugu,
  kKannada,
  kMalayalam,
  kAssamese,
};

struct IsciiSettings {
  IsciiScript script;  // which lines begin in
};

// The parameters are IsciiSettings.
unsigned int readIscii(const void* parameters, const unsigned char* data, unsigned int length,
                       bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeIscii(const void* parameters, const unsigned char* data, unsigned int length,
                        bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
// What a script only writes; see Codec::approximate.
std::uint32_t approximateIscii(const void* parameters, std::uint32_t scalar);
void visitIscii(const void* parameters, MappingVisitor& visitor);
bool isIsciiState(const void* parameters, const CodecState& state, bool isWriting);

template <IsciiScript script>
inline constexpr IsciiSettings kIsciiSettings = {script};
template <IsciiScript script>
inline constexpr Codec kIsciiCodec = {.codePage = 1200,
                                      .read = {readIscii, &kIsciiSettings<script>},
                                      .write = {writeIscii, &kIsciiSettings<script>},
                                      .approximate = approximateIscii,
                                      .cut = cutIscii,
                                      .mappings = visitIscii,
                                      .isState = isIsciiState};

#endif  // ENCODING_CODECS_ISCII_H_
