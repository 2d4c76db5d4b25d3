// Japanese: ISO-2022-JP to and from Shift_JIS (code page 932).
#ifndef SUPPORT_JAPANESE_H_
#define SUPPORT_JAPANESE_H_

#include "support/data_buffer.h"
#include "support/log_base.h"

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

  // The Shift_JIS codes of JIS rows 89 to 92 (the NEC-selected IBM characters) in order of
  // position: 376 codes, lead byte first, 752 bytes. Decoded on first use and kept until
  // EncodingConvert::cleanupMemory; null when memory is short. Any thread may call.
  static const unsigned char* GetSjisFrom2022_LastBlock();
  // Frees the list. Must not overlap any conversion.
  static void releaseLastBlock();
};

#endif  // SUPPORT_JAPANESE_H_
