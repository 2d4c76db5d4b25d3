// EncodingRow: everything that is particular to one encoding. Dispatch, tables, names, listings,
// byte order marks and the ends of streams are read from the rows.
#ifndef ENCODING_CODECS_ENCODING_ROW_H_
#define ENCODING_CODECS_ENCODING_ROW_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "support/string_buffer.h"

struct Codec;
struct Mapping;

// How an encoding is converted.
enum class EncodingForm : unsigned char {
  kUtf8,  // these three are computed by the kernels
  kUtf16,
  kUtf32,
  kSingleByte,  // these two have a mapping table
  kDoubleByte,
  kCodec,  // a codec in front of the code page that it names: UTF-7, GSM, ISO-2022, HZ, EUC-JP
};

// What an encoding is, for listings.
enum class CharsetKind : unsigned char {
  kUnicode,     // a UTF
  kSingleByte,  // one byte a character
  kDoubleByte,  // one or two bytes a character
  kMultiByte,   // one byte or more a character
  kStateful,    // seven bits, with escape sequences or shifts
};

// Mapping tables that rows may have at most.
inline constexpr unsigned int kMaxTableSlots = 512;

struct EncodingRow {
  int number = 0;            // code page
  const char* name = "";     // preferred, as at IANA; empty for a table that nothing converts with
  const char* aliases = "";  // separated by single spaces
  // Names besides, separated likewise, by which CharsetNaming has always known this encoding,
  // although they are those of another one, which streams take them for.
  const char* engineNames = "";
  CharsetKind kind = CharsetKind::kSingleByte;
  const char* description = "";  // a few words for people
  EncodingForm form = EncodingForm::kSingleByte;
  bool bigEndian = false;   // UTF-16 and UTF-32
  bool writesMark = false;  // these: what is written begins with the byte order mark

  // ---- Mapping tables. ----

  // The table text: appendText for the double-byte tables, which are kept in pieces; text for all
  // others. 10001 has both: its own text is a table of differences over Shift_JIS.
  const char* text = nullptr;
  void (*appendText)(StringBuffer& out) = nullptr;
  // Table text of codes that streams read besides, as units that are written as another code; null
  // for none.
  const char* onlyReadText = nullptr;
  // Instead of a text, a mapping file. EncConvert knows no such encoding.
  const Mapping* mapping = nullptr;
  std::uint16_t toUnicodeSize = 0;    // buckets of the to-Unicode map
  std::uint16_t fromUnicodeSize = 0;  // buckets of the from-Unicode map
  std::uint16_t slot = 0;             // index of its TableSlots; 936 and 52936 share one
  bool isReleased = true;             // teardown empties its slots
  const char* bestFit = nullptr;      // table text of what streams may write for units it lacks

  // ---- What converters do besides looking up. ----

  bool foldsArabicDigits = false;     // Arabic digits are written as ASCII digits
  bool decomposesVietnamese = false;  // letters are written taken apart; belongs to the destination
                                      // of a whole conversion, whatever table its parts use
  bool reordersMacArabic = false;     // right-to-left runs are turned round before decoding
  std::uint8_t malformedWidth = 1;    // bytes that an error action takes for one bad character
  std::uint8_t threeByteShift = 0;    // begins characters of three bytes, which the table lacks
  const Codec* codec = nullptr;       // of kCodec
  bool hidesLineEnds = false;         // the bytes of a line end also stand for other characters
  bool inEngine = true;               // false: only streams convert it, not EncConvert
  bool isWritten = true;              // false: text is only read in it
  // UTF-8 and UTF-16: what is malformed, and which byte order mark counts, as the Encoding Standard
  // has it.
  bool hasWebRules = false;

  bool operator==(const EncodingRow&) const = default;
};

// Any thread may call these; nothing is allocated.

// All rows, in ascending order of number.
std::span<const EncodingRow> encodingRows();
// The row of a code page, or null. Constant time.
const EncodingRow* findEncodingRow(int number);
// The codec of a code page that has one.
inline const Codec& codecOf(int number) { return *findEncodingRow(number)->codec; }

constexpr bool hasTable(const EncodingRow& row) {
  return row.form == EncodingForm::kSingleByte || row.form == EncodingForm::kDoubleByte;
}
constexpr bool hasTableSlots(const EncodingRow& row) {
  return hasTable(row) || row.bestFit != nullptr;
}

// A byte order mark, and the byte order that it means.
struct Mark {
  std::string_view bytes;
  bool bigEndian;
};
// All marks that a text may begin with, and the one that is written; empty for encodings without.
std::span<const Mark> marksOf(const EncodingRow& row);
std::string_view markOf(const EncodingRow& row);
bool beginsWithMark(const EncodingRow& row, const unsigned char* text, std::size_t length);

#endif  // ENCODING_CODECS_ENCODING_ROW_H_
