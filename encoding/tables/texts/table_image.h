// The images that table texts hold (docs/code-pages.md).
#ifndef ENCODING_TABLES_TEXTS_TABLE_IMAGE_H_
#define ENCODING_TABLES_TEXTS_TABLE_IMAGE_H_

#include "support/data_buffer.h"

// Makes image the image of a table text, with zero bytes behind it that end the sections of one that
// is damaged; empty when the text does not decode. Lack of memory is latched in image.
void unpackTableImage(const char* tableText, DataBuffer& image);

inline unsigned int loadImageU16(const unsigned char* p) {
  return p[0] | (static_cast<unsigned int>(p[1]) << 8);
}

#endif  // ENCODING_TABLES_TEXTS_TABLE_IMAGE_H_
