// EBCDIC line ends: which code pages have them, and their rewriting.
#ifndef APPS_ENCCONV_EBCDIC_H_
#define APPS_ENCCONV_EBCDIC_H_

#include <array>

#include "apps/encconv/options.h"

namespace tool {

// The byte that ends a line in EBCDIC files, whatever the code page says about it.
inline constexpr unsigned char kEbcdicNl = 0x15;

// How an EBCDIC code page reads bytes 15 and 25, its two line ends.
struct EbcdicLineEnds {
  unsigned char lineFeed = 0;  // the byte of U+000A
  unsigned char nextLine = 0;  // the byte of U+0085
};

// Asks the engine. False when the code page is no EBCDIC page.
bool findEbcdicLineEnds(int codePage, EbcdicLineEnds& lineEnds);
inline bool isEbcdic(int codePage) {
  EbcdicLineEnds lineEnds;
  return findEbcdicLineEnds(codePage, lineEnds);
}

using ByteMap = std::array<unsigned char, 256>;

// What to do to each byte of EBCDIC text before it is read, and after it was written. The identity
// for kKeep and for code pages that are not EBCDIC.
ByteMap mapBeforeReading(int codePage, EbcdicNewline mode);
ByteMap mapAfterWriting(int codePage, EbcdicNewline mode);

}  // namespace tool

#endif  // APPS_ENCCONV_EBCDIC_H_
