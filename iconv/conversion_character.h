// What stands at a place of a text, and what is written for it; for the sources of Conversion.
#ifndef ICONV_CONVERSION_CHARACTER_H_
#define ICONV_CONVERSION_CHARACTER_H_

#include "iconv/conversion.h"

namespace iconv_layer {

// More than any codec reads as one character, shifts included, or writes for one.
inline constexpr std::size_t kLongest = 64;

inline std::uint32_t unitAt(const unsigned char* p) { return p[0] | p[1] * 256u; }

// Whether UTF-16 has scalar values only: no half a pair, or half a unit.
bool isText(const unsigned char* units, std::size_t bytes);

// What stands at a place of the source.
struct Conversion::Character {
  enum class Kind : unsigned char { kText, kCut, kMalformed };
  Kind kind = Kind::kMalformed;
  std::size_t length = 1;     // bytes of the source
  std::size_t unitBytes = 0;  // none: a shift, say
  unsigned char units[kLongest * 2 + fast::kKernelSlack];
  std::size_t textBytes = 0;  // as the plan decodes it
  unsigned char text[kLongest * 2];
  CodecState reading;  // behind it
};

// What is to be written for it, and what the descriptor becomes by that.
struct Conversion::Written {
  std::size_t bytes = 0;
  unsigned char out[kLongest * 4 + fast::kKernelSlack];
  CodecState writing;
  std::size_t heldBytes = 0;
  unsigned char held[kMostHeld];
};

}  // namespace iconv_layer

#endif  // ICONV_CONVERSION_CHARACTER_H_
