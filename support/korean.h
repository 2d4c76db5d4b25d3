// Korean: ISO-2022-KR (RFC 1557) to and from code page 949.
#ifndef SUPPORT_KOREAN_H_
#define SUPPORT_KOREAN_H_

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"

// No state: any thread may use an object. Lengths are in bytes; a negative length counts as 0.
class Korean {
 public:
  // Appends the 949 form of ISO-2022-KR input. Returns false when something had no 949 form (it
  // became the geta mark, A1 EB) or memory is short.
  bool Iso2022ToKsc(const unsigned char* data, int length, DataBuffer& out) {
    return convertWhole(codecOf(50225).read, data, length, out);
  }
  // Appends the ISO-2022-KR form of 949 input; false as above.
  bool KscToIso2022(const unsigned char* data, int length, DataBuffer& out) {
    return convertWhole(codecOf(50225).write, data, length, out);
  }
};

#endif  // SUPPORT_KOREAN_H_
