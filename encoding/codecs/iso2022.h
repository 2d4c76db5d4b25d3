// The encodings of ISO 2022 (ECMA-35), whose escape sequences say which character set the bytes
// mean: ISO-2022-CN, ISO-2022-JP-2 and their kin in seven bits, compound text in eight. One reader
// and one writer, driven by a table of designations.
//
// ISO-2022-JP, ISO-2022-KR and HZ have codecs of their own, which serve EncConvert too.
#ifndef ENCODING_CODECS_ISO2022_H_
#define ENCODING_CODECS_ISO2022_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "encoding/codecs/codec.h"

struct Mapping;

// A set of 94 or 96 characters of one byte, or of 94 rows of 94: some of the codes of a mapping.
struct GraphicSet {
  const Mapping* mapping;  // null for ASCII
  std::uint8_t length;     // bytes of a character
  bool has96;              // 20 and 7F are characters too
  // The code in the mapping of the character with bytes of 7 bits is those, with these bits set.
  std::uint32_t bits;
  bool isLatin = false;  // has letters where ASCII has them, and stays beyond the end of a line
  bool hasSequences = false;  // some characters are several scalar values
};

// An escape sequence that puts a set in one of the four places G0 to G3.
struct Designation {
  std::string_view escape;  // behind the ESC
  std::uint8_t place;
  const GraphicSet* set;
  bool isWritten = true;
};

// G0 is ASCII at the beginning, and G1 to G3 are nothing, also behind the end of each line.
struct Iso2022 {
  const Designation* designations;  // in the order in which they are tried for writing
  std::size_t designationCount;
  bool hasShifts;                 // SO and SI call G1 and G0
  std::uint8_t singleShiftBytes;  // of the character behind ESC N or ESC O, which are in G2 and G3;
                                  // 0: these two mean nothing
  // Text of eight bits: bytes from A0 up are characters of G1, which is this at the beginning, and
  // the places stay as they are at the end of a line. Null: text of seven bits.
  const GraphicSet* right = nullptr;
};

// The parameters are an Iso2022.
unsigned int readIso2022(const void* parameters, const unsigned char* data, unsigned int length,
                         bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
unsigned int writeIso2022(const void* parameters, const unsigned char* data, unsigned int length,
                          bool last, CodecState& state, DataBuffer& out, ReplacementSink* sink);
void visitIso2022(const void* parameters, MappingVisitor& visitor);
bool isIso2022State(const void* parameters, const CodecState& state, bool isWriting);

#endif  // ENCODING_CODECS_ISO2022_H_
