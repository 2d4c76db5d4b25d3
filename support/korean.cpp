#include "support/korean.h"

#include "encoding/codecs/iso2022_kr.h"

bool Korean::Iso2022ToKsc(const unsigned char* data, int length, DataBuffer& out) {
  return convertWhole(kIso2022KrCodec.read, data, length, out);
}

bool Korean::KscToIso2022(const unsigned char* data, int length, DataBuffer& out) {
  return convertWhole(kIso2022KrCodec.write, data, length, out);
}
