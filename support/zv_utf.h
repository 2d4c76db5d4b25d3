// _zvUtf: the Unicode encodings that need no table: UTF-8, UTF-32, UTF-7 and GSM 03.38.
#ifndef SUPPORT_ZV_UTF_H_
#define SUPPORT_ZV_UTF_H_

#include "support/data_buffer.h"
#include "support/log_base.h"

// Static functions without state: any thread may call them. All append to the given buffer and
// never clear it; lengths are in bytes unless said otherwise. A failed append is latched in the
// output buffer (DataBuffer::hasFailed).
//
// What counts as one invalid UTF-8 sequence, everywhere in the engine: the maximal subpart of an
// ill-formed subsequence (The Unicode Standard, section 3.9, "U+FFFD substitution of maximal
// subparts"). Overlong forms, values above U+10FFFF and stray continuation bytes are invalid one
// byte at a time; a well-formed prefix that is cut short, by another byte or by the end of the
// input, is one error of its whole length. One exception: the three-byte forms of surrogates
// (ED A0..BF 80..BF) are accepted as one unit each, because the engine's UTF-16 side writes them,
// so that unpaired surrogates come back as they were. ED A0..BF without its third byte is one
// error of 2 bytes.
class _zvUtf {
 public:
  // Writes the UTF-8 form of a scalar value (1 to 4 bytes) at dest, which has room for 4, sets
  // count to the bytes written and returns true. False for surrogates and values above U+10FFFF,
  // with count 0.
  static bool oneUtf32ToUtf8(unsigned int scalar, char* dest, unsigned int& count);

  // Decodes one UTF-8 sequence at p, of which at most bytesLeft (>= 1) bytes may be read. Returns
  // the first UTF-16 unit in bits 0 to 15 and the low surrogate, if any, in bits 16 to 31; 0 for an
  // invalid sequence (and for the byte 00, which callers do not pass). consumed becomes the length
  // of the sequence, or of the invalid piece: at least 1, at most bytesLeft.
  static unsigned int utf16FromUtf8(const unsigned char* p, unsigned int bytesLeft,
                                    unsigned int& consumed);
  // The same without a length: reads on only while the bytes continue the sequence, so the text
  // must be followed by a byte that does not, such as NUL.
  static unsigned int utf16FromUtf8(const unsigned char* p, unsigned int& consumed);

  // The number of bytes that the sequence at p occupies, valid or not, as utf16FromUtf8 counts it:
  // at least 1 and at most bytesLeft; 0 when bytesLeft is not positive.
  static int NumUtf8Bytes(const unsigned char* p, int bytesLeft);

  // UTF-8 to UTF-32, big endian or little endian. Each invalid sequence and each unpaired surrogate
  // form becomes U+FFFD and makes the result false; two surrogate forms that are a pair are joined.
  static bool Utf8toUtf32(bool bigEndian, const DataBuffer& in, DataBuffer& out);
  static bool utf8toUtf32(bool bigEndian, const unsigned char* utf8, unsigned int length,
                          DataBuffer& out);

  // UTF-32 little endian to UTF-8. A value that is no scalar value becomes U+FFFD and makes the
  // result false; a tail of fewer than 4 bytes is dropped. numUnits counts 32-bit units.
  static bool Utf32ToUtf8(const DataBuffer& in, DataBuffer& out, LogBase& log);
  static bool utf32ToUtf8(const unsigned char* utf32, unsigned int numUnits, DataBuffer& out,
                          LogBase& log);

  // UTF-16 in host byte order to UTF-7 and back, as encoding/codecs/utf7.cpp says. False for a last
  // odd byte of UTF-16, which is dropped, and for malformed UTF-7, which becomes U+FFFD; the text
  // after it is kept.
  static bool Utf16XEToUtf7(DataBuffer& in, DataBuffer& out);
  static bool Utf7ToUtf16_xe(DataBuffer& in, DataBuffer& out);

  // GSM 03.38, as encoding/codecs/gsm.cpp says. Results are false when something had no
  // counterpart: what is malformed becomes U+FFFD on the way in; characters without a GSM form and
  // invalid UTF-8 become "?" each on the way out.
  static bool gsm_to_utf8(const unsigned char* gsm, unsigned int length, DataBuffer& out,
                          LogBase& log);
  static bool utf8_to_gsm(const unsigned char* utf8, unsigned int length, DataBuffer& out,
                          LogBase& log);
};

#endif  // SUPPORT_ZV_UTF_H_
