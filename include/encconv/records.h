/// @file
/// Records of mainframe files: dividing a file into records and joining it, and the fields that
/// records are made of, as typed values and as CSV or JSON lines.
///
///     encconv::RecordReader reader(*encconv::parse_record_format("rdw"));
///     encconv::FieldLayout layout;
///     std::string why;
///     encconv::parse_field_layout("name 1 20 text, balance 21 5 packed:scale=2", layout, why);
///     encconv::FieldDecoder decoder(layout, {"ibm037"});
///     std::vector<encconv::Value> values;
///     while (read(piece)) {
///       reader.push(piece);
///       while (reader.next() == encconv::RecordStep::record) decoder.decode(reader, values);
///     }
///
/// Nothing here throws for bad input. Functions may be called from any thread; an object belongs to
/// one thread at a time. Memory does not grow with the length of a file.
#ifndef ENCCONV_RECORDS_H_
#define ENCCONV_RECORDS_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "encconv/encconv.h"
#include "encconv/export.h"

namespace encconv {

// ---- What goes wrong. ----

/// What a RecordProblem is about.
enum class RecordProblemKind {
  descriptor,  ///< a descriptor word that cannot be right, or segments that do not belong together
  cut,         ///< the input ends within a record or block, or a record within a field
  text,        ///< text that cannot be converted, or not as it is: RecordProblem::text
  number,      ///< bytes that are no number of the field, or a number that the field cannot hold
  too_long,    ///< a text that its field or record is too short for
  missing,     ///< no value for a number within a record that is written
  row,         ///< a line that is no row of the table
};

/// A place in records, or in a table, that is damaged or does not fit.
struct RecordProblem {
  RecordProblemKind kind = RecordProblemKind::descriptor;  ///< what it is about
  std::uint64_t record = 0;     ///< the record or row, counted from 1; 0 where it is not known
  std::uint64_t offset = 0;     ///< of the first byte; what it counts from, each class says
  std::uint64_t length = 0;     ///< bytes that it is about
  std::string bytes;            ///< the first of them, 16 at most
  std::string field;            ///< the name of the field; empty where it is about no field
  std::string reason;           ///< a few words for people; empty with text
  std::optional<Problem> text;  ///< of RecordProblemKind::text, with the same offset
};

// ---- Records. ----

/// How a file is divided into records.
enum class RecordForm {
  fixed,  ///< by a number of bytes
  rdw,    ///< by the record descriptor word in front of each
  bdw,    ///< likewise, with records in blocks that begin with a block descriptor word
};

/// The most bytes of a fixed record.
inline constexpr std::uint32_t max_fixed_length = 1u << 20;
/// The most bytes of a block, and of a record with its descriptor word, that are written.
inline constexpr std::uint32_t max_block_size = 32760;

/// A RecordForm with its sizes.
struct RecordFormat {
  RecordForm form = RecordForm::fixed;        ///< how records are divided
  std::uint32_t length = 80;                  ///< of RecordForm::fixed: bytes of each record
  std::uint32_t block_size = max_block_size;  ///< of RecordForm::bdw: bytes of a block, at most

  /// The most data that a record may hold when it is written.
  std::uint32_t max_length() const {
    return form == RecordForm::fixed ? length
           : form == RecordForm::rdw ? max_block_size - 4
                                     : block_size - 8;
  }
};

/// Reads "fixed:80", "rdw", "bdw" or "bdw:27998" (with the size of blocks that are written, from
/// 9). Nothing for anything else.
ENCCONV_API std::optional<RecordFormat> parse_record_format(std::string_view text);

/// The first place at offset or behind it, in bytes that are a file of records or any part of one,
/// where a part begins that a RecordReader can read on its own: a record, or with RecordForm::bdw a
/// block that begins with a record. Records of fixed length follow from CutOptions::position, and
/// the place may lie behind the bytes. The others are told by their descriptor words, one after the
/// other from the first byte on, where a part must begin (CutOptions::at_cut, or position 0).
/// Nothing: it does not, a descriptor word is damaged, or more bytes must be seen.
/// CutOptions::behind_line means nothing here.
ENCCONV_API std::optional<std::uint64_t> find_record_cut(std::string_view bytes,
                                                         const RecordFormat& format,
                                                         std::uint64_t offset = 0,
                                                         const CutOptions& options = {});

/// What a step of a reader came to.
enum class RecordStep {
  record,   ///< there is a record, or a row
  damaged,  ///< problem() says what is wrong; the next step goes on as far as may be
  more,     ///< what was pushed is used up
  end,      ///< nothing follows
};

/// Divides a file into records, piece by piece. What it finds does not depend on how the file is
/// cut. The data of a record is given without its descriptor word; segments of a spanned record are
/// joined.
///
/// Behind a damaged place the next step goes on with what can still be told apart: with the record
/// itself where its length may be right, with what there is of one that the input or another
/// record cuts off, with the next block where a record in a block has no length. A file of records
/// without blocks, and a block without a length, cannot be followed further: all that comes is left
/// out.
class ENCCONV_API RecordReader {
 public:
  explicit RecordReader(const RecordFormat& format);  ///< of a file of this format
  ~RecordReader();                                    ///< at any time
  RecordReader(RecordReader&&) noexcept;              ///< what is left may only be destroyed
  RecordReader& operator=(RecordReader&&) noexcept;   ///< as above

  /// Gives the next bytes of the file, which must stay where they are until next() asks for more;
  /// to be called only then.
  void push(std::string_view piece);
  /// Says that nothing follows. next() then gives what is left.
  void finish();

  /// Takes a step.
  RecordStep next();

  /// The data of the record, until the next step.
  std::string_view record() const;
  /// Its number, counted from 1.
  std::uint64_t number() const;
  /// Where a byte of the record is in the file; index may be the record's size.
  std::uint64_t offset_of(std::size_t index) const;
  /// What is wrong, after RecordStep::damaged. Offsets count from the beginning of the file.
  const RecordProblem& problem() const;

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

/// Puts records into a file.
class ENCCONV_API RecordWriter {
 public:
  /// A fixed record that is too short is filled with blank.
  explicit RecordWriter(const RecordFormat& format, std::string_view blank = "\x40");

  /// Appends a record to output; in blocks it may wait for others. False, with nothing done, when
  /// it is longer than RecordFormat::max_length(), or cannot be filled with whole blanks.
  bool write(std::string_view record, std::string& output);
  /// Appends the block that waits, if there is one. Others may follow.
  void finish(std::string& output);

 private:
  RecordFormat m_format;
  std::string m_blank;
  std::string m_block;
};

// ---- Text of records. ----

/// Converts texts each on its own, as the records of a file and the fields of a record are: each
/// begins and ends in the initial state of its encoding.
class ENCCONV_API RecordText {
 public:
  /// status() tells whether it can be used. Of options, byte_order_mark and pdf_passthrough are not
  /// heeded.
  RecordText(Encoding from, Encoding to, const Options& options = {});
  ~RecordText();                                 ///< at any time
  RecordText(RecordText&&) noexcept;             ///< what is left may only be destroyed
  RecordText& operator=(RecordText&&) noexcept;  ///< as above

  /// Status::ok, or why there can be no conversion.
  Status status() const;

  /// Has handler told of each piece that cannot be converted, or not as it is; offsets count from
  /// the beginning of the text.
  void on_problem(std::function<void(const Problem&)> handler);

  /// Appends a text to output. False when it was stopped by what cannot be converted; what comes
  /// before that is in output.
  bool convert(std::string_view text, std::string& output);

  /// What became of a text that must not take more than some bytes.
  enum class Fit {
    whole,     ///< all of it is there
    too_long,  ///< cut between two characters, where it fits with what ends its state
    stopped,   ///< by what cannot be converted; nothing was appended
  };
  /// Appends a text, of which no more than limit bytes are to come, to output.
  Fit fit(std::string_view text, std::size_t limit, std::string& output);

  /// The blank in the target: U+0020, or U+3000 where that is the only one; empty for neither.
  std::string_view blank() const;
  /// What every text of the target begins with: the designation of ISO-2022-KR; mostly nothing.
  std::string_view opening() const;

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

// ---- Values. ----

/// An exact decimal number.
struct Decimal {
  bool negative = false;     ///< of zero as well, which packed and zoned fields tell apart
  std::string digits = "0";  ///< without leading zeros; "0" for zero
  int scale = 0;             ///< how many of the digits, or of zeros in front of them, are decimals

  /// As in "-1234.50", with all its decimals.
  ENCCONV_API std::string text() const;
  /// The value if it has no decimals and fits.
  ENCCONV_API std::optional<std::int64_t> integer() const;
  /// Equal in sign, digits and scale.
  friend bool operator==(const Decimal& a, const Decimal& b) {
    return a.negative == b.negative && a.digits == b.digits && a.scale == b.scale;
  }
};

/// Reads a number, with an exponent or without: "12", "-0.50", "1.5E3". Nothing for anything else,
/// and for exponents beyond 999.
ENCCONV_API std::optional<Decimal> parse_decimal(std::string_view text);

/// What a field holds: nothing, a text in UTF-8, or a number.
using Value = std::variant<std::monostate, std::string, Decimal>;

// ---- Fields. ----

/// How a field is written.
enum class FieldType {
  text,    ///< characters, with blanks behind them
  packed,  ///< two digits a byte and a sign in the last half byte: 12 34 5C
  zoned,   ///< a digit a byte, with the sign in the upper half of one of them: F1 F2 C3
  binary,  ///< an integer in two's complement, the highest byte first
};

/// A field of a record.
struct Field {
  std::string name;                  ///< of its column
  std::uint32_t position = 1;        ///< of its first byte in the data of the record, from 1
  std::uint32_t length = 1;          ///< in bytes
  FieldType type = FieldType::text;  ///< how it is written
  int scale = 0;                     ///< of numbers: decimals
  std::uint32_t digits = 0;          ///< of numbers: the most digits; 0: as many as it has room for
  bool is_signed = true;             ///< of numbers: may be negative
  bool leading = false;              ///< of zoned: the sign is with the first digit
  bool separate = false;             ///< of zoned: the sign is a byte of its own
  std::optional<bool> ascii;     ///< of zoned: digits are 30 to 39; otherwise as the encoding is
  bool little_endian = false;    ///< of binary: the lowest byte comes first
  std::optional<int> code_page;  ///< of text: another encoding than that of the record
};

/// The fields of a record, in the order of their columns.
struct FieldLayout {
  std::vector<Field> fields;  ///< at least one; no two have one name

  /// The bytes of a record in which all fields have room.
  ENCCONV_API std::size_t length() const;
};

/// Reads a layout: fields, one a line or separated by commas, each "NAME POSITION LENGTH TYPE",
/// where POSITION counts from 1, or is "+" for right behind the field before, and TYPE is "text",
/// "packed", "zoned" or "binary" with options behind colons:
///
///     scale=N  digits=N  signed  unsigned                     numbers; signed is the default
///     leading  trailing  separate  ebcdic  ascii              zoned; trailing is the default
///     little                                                  binary
///     encoding=NAME                                           text; the last option
///
/// What follows a "#" at the beginning of a line or behind a blank is a comment. False, with a
/// reason in why and layout unchanged, for anything else.
ENCCONV_API bool parse_field_layout(std::string_view text, FieldLayout& layout, std::string& why);

/// How fields are read and written.
struct FieldOptions {
  Encoding encoding = 37;  ///< of the text fields
  Options text = {};       ///< what to do about text that cannot be converted. With
                           ///< OnError::stop all problems end a record, otherwise none does.
  bool trim = false;       ///< take the blanks at the end of texts off
  RecordFormat format = {RecordForm::rdw, 0, max_block_size};  ///< of the records
};

/// Reads the fields of records.
///
/// A field that begins behind the end of the record is null. So is, under any treatment but
/// OnError::stop, a number that cannot be read; text that the end of a record cuts is what there is
/// of it.
class ENCCONV_API FieldDecoder {
 public:
  FieldDecoder(FieldLayout layout, const FieldOptions& options);  ///< error() may say why not
  ~FieldDecoder();                                                ///< at any time
  FieldDecoder(FieldDecoder&&) noexcept;             ///< what is left may only be destroyed
  FieldDecoder& operator=(FieldDecoder&&) noexcept;  ///< as above

  /// Empty, or why records cannot be read so.
  const std::string& error() const;
  /// Has handler told of each problem.
  void on_problem(std::function<void(const RecordProblem&)> handler);

  /// Reads a record; values has one for each field then. False when a problem ended it. Offsets of
  /// problems count from the beginning of the record.
  bool decode(std::string_view record, std::vector<Value>& values);
  /// The same for the record of a reader; offsets count from the beginning of its file.
  bool decode(const RecordReader& reader, std::vector<Value>& values);

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

/// Writes the fields of records. What no field covers is filled with blanks. In a record that may
/// have any length, fields at its end that are null are left out; any other text that is null is
/// blanks. A number may be given as a text.
///
/// Under any treatment but OnError::stop a text that is too long is cut between two characters, and
/// a number that is missing or does not fit is blanks, which are read as no number.
class ENCCONV_API FieldEncoder {
 public:
  FieldEncoder(FieldLayout layout, const FieldOptions& options);  ///< error() may say why not
  ~FieldEncoder();                                                ///< at any time
  FieldEncoder(FieldEncoder&&) noexcept;             ///< what is left may only be destroyed
  FieldEncoder& operator=(FieldEncoder&&) noexcept;  ///< as above

  /// Empty, or why records cannot be written so.
  const std::string& error() const;
  /// Has handler told of each problem. Its offset is that of the field in the record, but that of
  /// RecordProblem::text counts from the beginning of the value.
  void on_problem(std::function<void(const RecordProblem&)> handler);

  /// Makes a record of one value for each field. False when a problem ended it.
  bool encode(const std::vector<Value>& values, std::string& record);
  /// What records are filled with.
  std::string_view blank() const;

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

// ---- Tables. ----

/// How values are written as text, a row for each record.
enum class TableFormat {
  csv,           ///< RFC 4180 with a header; nothing between two commas is null, "" an empty text
  json,          ///< an object a line, numbers with all their digits
  json_strings,  ///< likewise, with numbers in quotes
};

/// Reads "csv", "json" or "json-strings".
ENCCONV_API std::optional<TableFormat> parse_table_format(std::string_view text);

/// Writes a table, in UTF-8.
class ENCCONV_API TableWriter {
 public:
  TableWriter(const FieldLayout& layout, TableFormat format);  ///< with a column for each field
  /// Appends the names of the columns to output, where the format has a line for them.
  void header(std::string& output) const;
  /// Appends a row: a value for each column.
  void row(const std::vector<Value>& values, std::string& output) const;

 private:
  TableFormat m_format;
  std::vector<std::string> m_names;  // as they are written
};

/// Reads a table in UTF-8, with a byte order mark or without one, piece by piece. Columns may come
/// in any order; what a row lacks is null, and numbers are given as texts. A row that cannot be
/// read is a problem, and left out; a header that cannot be, and the name of a column that no field
/// has, leave all out.
class ENCCONV_API TableReader {
 public:
  TableReader(const FieldLayout& layout, TableFormat format);  ///< with a column for each field
  ~TableReader();                                              ///< at any time
  TableReader(TableReader&&) noexcept;             ///< what is left may only be destroyed
  TableReader& operator=(TableReader&&) noexcept;  ///< as above

  /// Gives the next bytes, which must stay where they are until next() asks for more.
  void push(std::string_view piece);
  /// Says that nothing follows. next() then gives what is left.
  void finish();
  /// Takes a step.
  RecordStep next();

  /// The values of the row, one for each field of the layout, until the next step.
  const std::vector<Value>& row() const;
  /// The number of the row or of the damaged one, counted from 1 without the header.
  std::uint64_t number() const;
  /// Where the row begins in the table.
  std::uint64_t offset() const;
  /// What is wrong, after RecordStep::damaged. Offsets count from the beginning of the table.
  const RecordProblem& problem() const;

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

}  // namespace encconv

#endif  // ENCCONV_RECORDS_H_
