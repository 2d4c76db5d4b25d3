// What table texts are packed with: the ways back of NorvaneBzip2 and ContentCoding.
#ifndef TOOLS_TABLE_TEXT_PACKING_H_
#define TOOLS_TABLE_TEXT_PACKING_H_

#include "support/data_buffer.h"

// Makes out the bzip2 container (support/norvane_bzip2.h) of in, at block size 3. False when in is
// too long for a table, or memory is short.
bool packBzip2(const DataBuffer& in, DataBuffer& out);
// Appends the base64 of count bytes to out. False when memory is short.
bool encodeBase64(const unsigned char* data, unsigned int count, DataBuffer& out);

#endif  // TOOLS_TABLE_TEXT_PACKING_H_
