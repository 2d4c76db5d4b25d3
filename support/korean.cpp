#include "support/korean.h"

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"

bool Korean::Iso2022ToKsc(const unsigned char* data, int length, DataBuffer& out) {
  return convertWhole(codecOf(50225).read, data, length, out);
}

bool Korean::KscToIso2022(const unsigned char* data, int length, DataBuffer& out) {
  return convertWhole(codecOf(50225).write, data, length, out);
}
