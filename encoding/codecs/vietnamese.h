// The decomposition of Vietnamese letters for Windows-1258.
#ifndef ENCODING_CODECS_VIETNAMESE_H_
#define ENCODING_CODECS_VIETNAMESE_H_

#include <cstdint>

// Windows-1258 writes most accented letters as a base letter and a combining mark.
struct VietnameseDecomposition {
  std::uint16_t unit;  // the precomposed letter
  std::uint8_t base;   // 1258 bytes of the base letter and of the mark
  std::uint8_t mark;
};

// The decomposition of a unit, or null when it has none.
const VietnameseDecomposition* findVietnameseDecomposition(unsigned int unit);

#endif  // ENCODING_CODECS_VIETNAMESE_H_
