// Korean: ISO-2022-KR (RFC 1557) to and from code page 949.
#ifndef SUPPORT_KOREAN_H_
#define SUPPORT_KOREAN_H_

#include "support/data_buffer.h"
#include "support/replacement_sink.h"

// What a text in pieces carries from one piece to the next; as Iso2022JpState.
struct Iso2022KrState {
  bool shiftedOut = false;     // KS X 1001 is in front, not ASCII
  bool headerWritten = false;  // writing: ESC $ ) C is out
  bool replaced = false;       // something had no form in the output; only ever set
};

// No state: any thread may use an object. Lengths are in bytes; a negative length counts as 0.
class Korean {
 public:
  // Appends the 949 form of ISO-2022-KR input. Returns false when something had no 949 form (it
  // became the geta mark, A1 EB) or memory is short.
  bool Iso2022ToKsc(const unsigned char* data, int length, DataBuffer& out);
  // Appends the ISO-2022-KR form of 949 input; false as above.
  bool KscToIso2022(const unsigned char* data, int length, DataBuffer& out);

  // For a text in pieces; the contract is that of Japanese::readPiece.
  static constexpr unsigned int kMaxRest = 8;
  static unsigned int readPiece(const unsigned char* data, unsigned int length, bool last,
                                Iso2022KrState& state, DataBuffer& out,
                                ReplacementSink* sink = nullptr);
  static unsigned int writePiece(const unsigned char* data, unsigned int length, bool last,
                                 Iso2022KrState& state, DataBuffer& out,
                                 ReplacementSink* sink = nullptr);
};

#endif  // SUPPORT_KOREAN_H_
