// Hz: HZ (RFC 1843) to and from code page 936.
#ifndef SUPPORT_HZ_H_
#define SUPPORT_HZ_H_

#include "support/data_buffer.h"
#include "support/replacement_sink.h"

// What a text in pieces carries from one piece to the next; as Iso2022JpState.
struct HzState {
  bool inGb = false;      // between "~{" and "~}"
  bool replaced = false;  // something had no form in the output; only ever set
};

// No state: any thread may use it. Lengths are in bytes.
class Hz {
 public:
  // Appends the 936 form of HZ input. Returns false when something was malformed (it became the
  // geta mark, A1 FE) or memory is short.
  static bool hzToGbk(const unsigned char* data, unsigned int length, DataBuffer& out);
  // Appends the HZ form of 936 input; false when something had no HZ form (it became the geta
  // mark) or memory is short.
  static bool gbkToHz(const unsigned char* data, unsigned int length, DataBuffer& out);

  // For a text in pieces; the contract is that of Japanese::readPiece.
  static constexpr unsigned int kMaxRest = 8;
  static unsigned int readPiece(const unsigned char* data, unsigned int length, bool last,
                                HzState& state, DataBuffer& out, ReplacementSink* sink = nullptr);
  static unsigned int writePiece(const unsigned char* data, unsigned int length, bool last,
                                 HzState& state, DataBuffer& out, ReplacementSink* sink = nullptr);
};

#endif  // SUPPORT_HZ_H_
