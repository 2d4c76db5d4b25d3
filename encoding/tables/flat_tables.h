// Flat tables: what the kernels read of a code page, derived from its published tables.
#ifndef ENCODING_TABLES_FLAT_TABLES_H_
#define ENCODING_TABLES_FLAT_TABLES_H_

#include "encoding/codecs/encoding_row.h"
#include "encoding/tables/kernel_tables.h"

namespace fast {

// Who converts: the engine knows the codes that tables list for both directions; streams read,
// besides, those that rows list as only read, and do not write a unit as another without a word.
enum class Reader : unsigned char { kEngine, kStream };

// The unit that an encoder of EncConvert reads as an escape when it comes out of a pivot.
inline constexpr std::uint16_t kEscapeUnit = 0xEFFD;

// One of the two is set, or neither: then the code page is left to the reference converters,
// because memory is short or because its table says what flat tables cannot.
struct Decoder {
  const SingleByteDecoder* singleByte = nullptr;
  const DoubleByteDecoder* doubleByte = nullptr;
};
struct Encoder {
  const SingleByteEncoder* singleByte = nullptr;
  const DoubleByteEncoder* doubleByte = nullptr;
};

// The tables of a row that has its to-Unicode, or from-Unicode, table published. Built on first use
// and published like those; at most 257 KiB a code page for both, and 129 KiB for what streams read
// besides. Units are numbers, whatever the
// byte order of the host. What the encoder of a code page does besides looking up (Arabic digits,
// Vietnamese letters) is in its table; kEscapeUnit is in none. Any thread may call.
Decoder decoderFor(const EncodingRow& row, Reader reader = Reader::kEngine);
Encoder encoderFor(const EncodingRow& row);

// The unit of a code as encoders have it: below 100 a byte, else first byte + second byte * 256; 0
// for none.
std::uint16_t readUnit(const Decoder& decoder, std::uint16_t code);
// And the code of a unit; 0 for none, and for U+0000.
inline std::uint16_t codeOf(const Encoder& encoder, std::uint32_t unit) {
  if (encoder.singleByte != nullptr) return encoder.singleByte->bytes[unit];
  return encoder.doubleByte != nullptr ? encoder.doubleByte->codes[unit] : std::uint16_t{0};
}
// Whether an encoder writes one code for several units, so that all but one of them change.
bool mayApproximate(const Encoder& encoder);
// The encoder of a row that has both its tables published, without the units that are read back as
// others: a no-break space that is written as a space, say. What 1258 writes as a letter and a mark
// is text that means the same, and stays.
Encoder exactEncoderFor(const EncodingRow& row);

// Releases all of them. Must not overlap any conversion.
void releaseFlatTables();

}  // namespace fast

#endif  // ENCODING_TABLES_FLAT_TABLES_H_
