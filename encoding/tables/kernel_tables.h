// The tables of code pages in the form that the kernels read: plain arrays, with what can be told
// of them beforehand. Units are UTF-16 code units, as numbers.
#ifndef ENCODING_TABLES_KERNEL_TABLES_H_
#define ENCODING_TABLES_KERNEL_TABLES_H_

#include <cstddef>
#include <cstdint>

namespace fast {

// A single-byte code page, decoding.
struct SingleByteDecoder {
  // No surrogates. 0: unmapped, but for byte 00, which is unit 0.
  alignas(32) std::uint16_t units[256];
  // Derived by prepare(): whether 00..7F are ASCII; the halves of units, for byte shuffles; the
  // units below 80 again, with FF for all others; the three bytes of the UTF-8 forms, flush with
  // the last one and filled up with 0 (all 0 for units 0); and these forms as one number, the
  // length in bits 24 up.
  bool isAscii;
  alignas(32) std::uint8_t low[256];
  alignas(32) std::uint8_t high[256];
  alignas(32) std::uint8_t ascii[256];
  alignas(32) std::uint8_t utf8Bytes[3][256];
  std::uint32_t utf8[256];

  void prepare();  // call when units is filled
};

// A byte for each byte: two single-byte code pages in one step.
struct ByteMap {
  alignas(32) std::uint8_t bytes[256];  // 0: unmapped, but for byte 00, which is byte 00
};

// A single-byte code page, encoding.
struct SingleByteEncoder {
  std::uint8_t bytes[65536];  // by unit; 0: unmapped, but for unit 0, which is byte 00
  // Set by prepare(): whether units 00..7F are themselves, and units A0..FF too.
  bool isAscii;
  bool isLatin1;
  // Set by prepare(): the first of those 128 units from 80 up, at a multiple of 128, that have most
  // of the code page.
  static constexpr unsigned int kRangeUnits = 128;
  std::uint16_t mainRange;

  void prepare();  // call when bytes is filled
};

// A code page of one- and two-byte characters, of which bytes 00..7F stand alone and for
// themselves; decoding.
struct DoubleByteDecoder {
  // Unit of each pair, by first byte + second byte * 256; 0: no pair, the first byte stands alone.
  // Into the places of bytes that begin no pair prepare() writes their single units.
  std::uint16_t units[65536];
  std::uint16_t singles[256];  // unit of each byte from 80 up; 0: unmapped
  // Begins characters of three bytes, all of which the code page lacks; 0: no byte does.
  std::uint8_t threeByteShift;
  // Derived by prepare(): by the lower half of a byte from 80 up, the upper halves of those that
  // begin a pair: bit 0 for 8, bit 7 for F.
  alignas(16) std::uint8_t leads[16];
  // Derived likewise: of bytes from 80 up, those within the range of first bytes, unless they stand
  // for a character, and those within the range of second bytes.
  bool mayBegin[256];
  bool mayEnd[256];

  // How many of the bytes at p, left of them and from 80 up the first, are one character that the
  // code page lacks. A byte below 80 is never taken along: it may be a quote or a line end.
  std::size_t lackingLength(const std::uint8_t* p, std::size_t left) const {
    if (p[0] != 0 && p[0] == threeByteShift) {
      return left > 2 && mayEnd[p[1]] && mayEnd[p[2]] ? 3 : 1;
    }
    return left > 1 && mayBegin[p[0]] && mayEnd[p[1]] ? 2 : 1;
  }
  // How many bytes have to be seen to tell.
  std::size_t decisiveLength(unsigned int first) const { return first == threeByteShift ? 3 : 2; }

  bool isLead(unsigned int byte) const {  // a byte from 80 up
    return (leads[byte & 0x0F] >> (byte >> 4 & 7) & 1) != 0;
  }
  void prepare();  // call when units and singles are filled
};

// A code page of one- and two-byte characters, encoding.
struct DoubleByteEncoder {
  // By unit: up to 0xFF a single byte, above first byte + second byte * 256; 0: unmapped, but for
  // unit 0, which is byte 00.
  std::uint16_t codes[65536];
  bool isAscii;  // set by prepare(): units 00..7F are themselves

  void prepare();  // call when codes is filled
};

}  // namespace fast

#endif  // ENCODING_TABLES_KERNEL_TABLES_H_
