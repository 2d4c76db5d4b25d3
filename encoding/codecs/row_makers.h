// What rows are made with: a function for each kind of encoding, and for what a row may have
// besides. They are applied one inside the other: streamOnly(with(&EncodingRow::x, single(...))).
#ifndef ENCODING_CODECS_ROW_MAKERS_H_
#define ENCODING_CODECS_ROW_MAKERS_H_

#include "encoding/codecs/encoding_row.h"

namespace encoding_rows {

constexpr EncodingRow single(int number, const char* name, const char* aliases,
                             const char* description, const char* text) {
  EncodingRow row{number, name, aliases, "", CharsetKind::kSingleByte, description};
  row.text = text;
  row.toUnicodeSize = 283;
  row.fromUnicodeSize = 269;
  return row;
}

constexpr EncodingRow doubleByte(int number, const char* name, const char* aliases,
                                 const char* description, void (*appendText)(StringBuffer&),
                                 std::uint16_t size, std::uint8_t malformedWidth) {
  EncodingRow row{number, name, aliases, "", CharsetKind::kDoubleByte, description};
  row.form = EncodingForm::kDoubleByte;
  row.appendText = appendText;
  row.toUnicodeSize = row.fromUnicodeSize = size;
  row.malformedWidth = malformedWidth;
  return row;
}

// Encodings with a mapping file: of one byte a character, all of them within the first 65,536 and
// byte 00 alone U+0000; and of one or two bytes, with ASCII.
constexpr EncodingRow mapped(int number, const char* name, const char* aliases,
                             const char* description, const Mapping* mapping) {
  EncodingRow row{number, name, aliases, "", CharsetKind::kSingleByte, description};
  row.mapping = mapping;
  row.inEngine = false;
  return row;
}

constexpr EncodingRow mappedDoubleByte(int number, const char* name, const char* aliases,
                                       const char* description, const Mapping* mapping) {
  EncodingRow row = mapped(number, name, aliases, description, mapping);
  row.kind = CharsetKind::kDoubleByte;
  row.form = EncodingForm::kDoubleByte;
  row.malformedWidth = 2;
  return row;
}

constexpr EncodingRow over(const char* differences, EncodingRow row) {
  row.text = differences;
  return row;
}

constexpr EncodingRow readingAlso(const char* onlyReadText, EncodingRow row) {
  row.onlyReadText = onlyReadText;
  return row;
}

// Of EUC-JP: behind 8F a character of JIS X 0212 has two bytes.
constexpr EncodingRow lackingJis0212(EncodingRow row) {
  row.threeByteShift = 0x8F;
  return row;
}

constexpr EncodingRow with(bool EncodingRow::*flag, EncodingRow row) {
  row.*flag = true;
  return row;
}

constexpr EncodingRow streamOnly(EncodingRow row) {
  row.inEngine = false;
  return row;
}

constexpr EncodingRow unicode(int number, const char* name, const char* aliases,
                              const char* description, EncodingForm form, bool bigEndian) {
  return {number, name, aliases, "", CharsetKind::kUnicode, description, form, bigEndian};
}

// UTF-16 and UTF-32 of which a byte order mark is part; the row's byte order is that of text
// without one, and of what is written.
constexpr EncodingRow marked(EncodingRow row) {
  row.writesMark = true;
  return streamOnly(row);
}

constexpr EncodingRow codec(int number, const char* name, const char* aliases,
                            const char* description, CharsetKind kind, const Codec* codec) {
  EncodingRow row{number, name, aliases, "", kind, description, EncodingForm::kCodec};
  row.codec = codec;
  return row;
}

constexpr EncodingRow onlyRead(EncodingRow row) {
  row.isWritten = false;
  return row;
}

// The tables of the row outlive teardown, as they always have.
constexpr EncodingRow kept(EncodingRow row) {
  row.isReleased = false;
  return row;
}

constexpr EncodingRow knownToEngineAs(const char* names, EncodingRow row) {
  row.engineNames = names;
  return row;
}

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROW_MAKERS_H_
