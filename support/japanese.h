// Japanese: ISO-2022-JP to and from Shift_JIS (code page 932).
#ifndef SUPPORT_JAPANESE_H_
#define SUPPORT_JAPANESE_H_

#include <cstdint>

#include "support/data_buffer.h"
#include "support/log_base.h"
#include "support/replacement_sink.h"

// What a text in pieces carries from one piece to the next; the initial value begins a text. One
// state serves one direction. It may be copied, to go on from the same place twice.
struct Iso2022JpState {
  enum class Set : std::uint8_t {
    kAscii,     // ESC ( B; reading takes JIS X 0201 Roman (ESC ( J) for the same
    kKatakana,  // ESC ( I, half-width
    kJis0208,   // ESC $ @ and ESC $ B
    kJis0212,   // ESC $ ( D, only read: nothing in it has a Shift_JIS form
  };
  Set set = Set::kAscii;
  bool shiftedOut = false;  // reading: SO has put katakana in front of the set
  bool replaced = false;    // something had no form in the output; only ever set, never cleared
};

// No state: any thread may use an object. Lengths are in bytes; a negative length counts as 0.
class Japanese {
 public:
  // Number of codes in the last-block list, two bytes each.
  static constexpr int kLastBlockCodes = 376;

  // Appends the Shift_JIS form of ISO-2022-JP input. Every byte appended belongs to a code that
  // 932 has. Returns false when something had no such code (it became the geta mark, 81 AC, or at
  // the two empty positions of the last-block list the middle dot that stands there) or memory is
  // short.
  bool Iso2022ToShiftJis(const unsigned char* data, int length, DataBuffer& out, LogBase& log);
  // Appends the ISO-2022-JP form of Shift_JIS input; false as above.
  bool ShiftJisToIso2022(const unsigned char* data, int length, DataBuffer& out, LogBase& log);

  // The same for a text in pieces: appends the form of the piece, as far as it can be told without
  // what follows, and returns how many bytes that was. The caller puts the rest, fewer than
  // kMaxRest bytes, in front of the next piece. With last set nothing is left, the text is ended
  // (in ASCII) and the state is initial again but for its flag. Output, state and reports do not
  // depend on how the text is cut. When memory is short the failure is latched in out and the whole
  // piece counts as used. sink, which may be null, is told of every replacement.
  static constexpr unsigned int kMaxRest = 8;
  static unsigned int readPiece(const unsigned char* data, unsigned int length, bool last,
                                Iso2022JpState& state, DataBuffer& out,
                                ReplacementSink* sink = nullptr);
  static unsigned int writePiece(const unsigned char* data, unsigned int length, bool last,
                                 Iso2022JpState& state, DataBuffer& out,
                                 ReplacementSink* sink = nullptr);

  // The Shift_JIS codes of JIS rows 89 to 92 (the NEC-selected IBM characters) in order of
  // position: 376 codes, lead byte first, 752 bytes. Decoded on first use and kept until
  // EncodingConvert::cleanupMemory; null when memory is short. Any thread may call.
  static const unsigned char* GetSjisFrom2022_LastBlock();
  // Frees the list. Must not overlap any conversion.
  static void releaseLastBlock();
};

#endif  // SUPPORT_JAPANESE_H_
