// ContentCoding: base64.
#ifndef SUPPORT_CONTENT_CODING_H_
#define SUPPORT_CONTENT_CODING_H_

#include "support/data_buffer.h"

// Standard base64 (RFC 4648, section 4): alphabet A-Z a-z 0-9 + /, "=" padding, no line breaks.
// No state: an object serves any number of calls.
class ContentCoding {
 public:
  // Appends the decoded bytes of length characters to out. False, with out unchanged, when the
  // text is not base64 or memory is short.
  bool decodeBase64ToDb(const char* text, unsigned int length, DataBuffer& out) const;
  // The decoded bytes in a new array that the caller frees with delete[], their count in outLength;
  // null, with a count of 0, when the text is not base64 or memory is short.
  unsigned char* decodeBase64(const char* text, unsigned int length, unsigned int* outLength) const;
};

#endif  // SUPPORT_CONTENT_CODING_H_
