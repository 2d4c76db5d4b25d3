// _zvUtf: GSM 03.38 to and from UTF-8.
#include "encoding/codecs/gsm.h"
#include "support/zv_utf.h"

bool _zvUtf::gsm_to_utf8(const unsigned char* gsm, unsigned int length, DataBuffer& out, LogBase&) {
  return convertWhole(kGsmUtf8Codec.read, gsm, length, out);
}

bool _zvUtf::utf8_to_gsm(const unsigned char* utf8, unsigned int length, DataBuffer& out,
                         LogBase&) {
  return convertWhole(kGsmUtf8Codec.write, utf8, length, out);
}
