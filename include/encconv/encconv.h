/// @file
/// The C++ interface of encconv: texts and streams of bytes from one encoding to another.
///
/// Nothing here throws for bad input or unknown encodings: results say what happened and where.
/// std::bad_alloc may come from the standard containers. Functions may be called from any thread;
/// an object belongs to one thread at a time.
///
/// Marks: a byte order mark at the beginning of a Unicode source tells the byte order of UTF-16 and
/// UTF-32, and is taken off; where source and target are the same, it stays. The output begins with
/// one when Options::byte_order_mark asks for it. Functions that say so do otherwise.
///
/// Lines: end with U+000A, however the source encodes it. U+000D and U+0085 end none.
#ifndef ENCCONV_ENCCONV_H_
#define ENCCONV_ENCCONV_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/export.h"
#include "encconv/version.h"

/// Conversion of text between character encodings.
namespace encconv {

/// The version of the library that runs, which may be newer than ENCCONV_VERSION.
ENCCONV_API std::string_view version();

// ---- Encodings. ----

/// What is known of an encoding. The texts are the library's own and stay valid.
struct CodePage {
  int number;                             ///< by which conversions name it: 1252, 932, 65001, ...
  std::string_view name;                  ///< its preferred name
  std::vector<std::string_view> aliases;  ///< its other names
  std::string_view kind;                  ///< "unicode", "single-byte", "double-byte", ...
  std::string_view description;           ///< a few words for people
  bool can_read;                          ///< may be the source of a conversion
  bool can_write;                         ///< may be the target
};

/// All encodings, in ascending order of number.
ENCCONV_API std::vector<CodePage> code_pages();

/// The number of the encoding that a name means ("utf-8", "Shift_JIS", "cp1252", "1252", ...), or
/// nothing. Case, punctuation and leading zeros do not matter.
ENCCONV_API std::optional<int> find_code_page(std::string_view name);

/// An encoding by its number or by one of its names.
class ENCCONV_API Encoding {
 public:
  // NOLINTBEGIN(google-explicit-constructor,hicpp-explicit-conversions): meant to be converted from
  /// By number. It need not be a known one; conversions refuse those that are not.
  Encoding(int code_page) : m_code_page(code_page) {}
  /// By name, or by a number written out, as find_code_page() takes them.
  Encoding(std::string_view name);
  /// As above; name ends with NUL.
  Encoding(const char* name) : Encoding(std::string_view(name)) {}
  /// As above.
  Encoding(const std::string& name) : Encoding(std::string_view(name)) {}
  // NOLINTEND(google-explicit-constructor,hicpp-explicit-conversions)

  /// The number; -1 for a name that is not known, which conversions refuse.
  int code_page() const { return m_code_page; }

 private:
  int m_code_page;
};

// ---- What to do about text that cannot be converted. ----

/// What is written in its place, as text of the target unless said otherwise.
enum class OnError {
  stop,        ///< nothing: the conversion ends before it
  drop,        ///< nothing
  substitute,  ///< Options::substitute; by default U+FFFD, or "?" where the target lacks it
  hex,         ///< "&#xHHHH;", the code point; of malformed bytes "<0xHH...>"
  alternate,   ///< malformed bytes are read, and characters that the target lacks are written, in
               ///< Options::alternate
  raw,         ///< the bytes of the source as they are
};

/// How to convert.
struct Options {
  OnError on_error = OnError::stop;       ///< what to do about text that cannot be converted
  std::optional<std::string> substitute;  ///< of OnError::substitute, in UTF-8
  bool substitute_is_raw = false;         ///< it is not UTF-8 but bytes of the target
  Encoding alternate = 1252;              ///< of OnError::alternate
  bool byte_order_mark = false;           ///< begin the output with the mark of a Unicode target
  bool pdf_passthrough = false;           ///< copy input that begins "%PDF-1"
  /// Try, before anything else, the composed character for a letter and marks of which the target
  /// lacks one: text as in file names of Macs.
  bool compose = false;
  /// Try, before on_error, the similar character that Windows writes for one that the target lacks.
  bool best_fit = false;
  /// Try, behind both and before on_error, text that says the same in characters that the target
  /// has: "ss" for a sharp s, a letter without its accent, "EUR" for the euro sign.
  bool translit = false;
};

/// Reads what the tool takes behind --on-error ("stop", "hex", "substitute=TEXT",
/// "substitute=0x1A", "alternate=windows-1252", "translit,hex", ...) into options. False,
/// with options unchanged, for anything else.
ENCCONV_API bool parse_on_error(std::string_view text, Options& options);

/// A piece of input that could not be converted, or not as it is.
struct Problem {
  std::uint64_t offset;     ///< where it begins, in bytes (in from_utf16: units) of the input
  std::uint64_t line;       ///< of the text, counted from 1
  std::uint32_t length;     ///< bytes (units)
  std::int32_t code_point;  ///< of the character that the target lacks; -1 when malformed
  bool malformed;           ///< the input is no text of its encoding
  std::string bytes;        ///< the first bytes of the piece, 16 at most
  bool approximated;        ///< the target lacks the character, and others were written for it
  std::string written;      ///< those, or none, in UTF-8
};

/// How a conversion ended.
enum class Status {
  ok,                  ///< all of the input was converted or treated
  stopped,             ///< by input that could not be converted, under OnError::stop
  unknown_source,      ///< the source encoding is not known or cannot be read
  unknown_target,      ///< the target encoding is not known or cannot be written
  unknown_alternate,   ///< the alternate encoding can be neither read nor written
  invalid_substitute,  ///< the substitute is not UTF-8, or the target cannot hold it
  out_of_memory,       ///< the output may be incomplete
  misuse,              ///< a stream was used after its end
  output_full,         ///< there is too little room for the output
};

/// A few words for people, such as "stopped by input that could not be converted".
ENCCONV_API std::string_view describe(Status status);

/// What became of a conversion.
template <typename Text>
struct BasicResult {
  Text text;                                   ///< the output; up to the problem when stopped
  Status status = Status::ok;                  ///< how it ended
  std::uint64_t problem_count = 0;             ///< pieces that could not be converted
  std::optional<Problem> first_problem;        ///< the first of them
  std::uint64_t approximation_count = 0;       ///< characters that others were written for
  std::optional<Problem> first_approximation;  ///< the first of them

  /// True when the conversion came to its end, with or without problems that were treated.
  explicit operator bool() const { return status == Status::ok; }
};
using Result = BasicResult<std::string>;          ///< with bytes, or UTF-8, for text
using Utf16Result = BasicResult<std::u16string>;  ///< with UTF-16 in the host's byte order

// ---- Whole texts. ----

/// Converts bytes from one encoding to another. Of any size.
ENCCONV_API Result convert(std::string_view bytes, Encoding from, Encoding to,
                           const Options& options = {});

/// Bytes of any encoding to UTF-8. A byte order mark of the input is taken off, also from UTF-8.
ENCCONV_API Result to_utf8(std::string_view bytes, Encoding from, const Options& options = {});
/// UTF-8 to bytes of any encoding. A byte order mark of the input is taken off, also to UTF-8.
ENCCONV_API Result from_utf8(std::string_view text, Encoding to, const Options& options = {});

/// Bytes of any encoding to UTF-16 in the host's byte order. A byte order mark of the input is
/// taken off, also from UTF-16.
ENCCONV_API Utf16Result to_utf16(std::string_view bytes, Encoding from,
                                 const Options& options = {});
/// UTF-16 in the host's byte order to bytes of any encoding. Looks for no byte order mark: U+FEFF
/// at the beginning is a character of the text.
ENCCONV_API Result from_utf16(std::u16string_view text, Encoding to, const Options& options = {});

/// What became of a conversion into the caller's memory.
struct IntoResult {
  std::size_t size = 0;                   ///< bytes written; of a part of the output where not ok
  Status status = Status::ok;             ///< how it ended
  std::uint64_t problem_count = 0;        ///< pieces that could not be converted
  std::optional<Problem> first_problem;   ///< the first of them
  std::uint64_t approximation_count = 0;  ///< characters that others were written for
  std::optional<Problem> first_approximation;  ///< the first of them

  /// True when the conversion came to its end, with or without problems that were treated.
  explicit operator bool() const { return status == Status::ok; }
};

/// Converts bytes into the capacity bytes at output, which must not overlap them. Nothing is
/// written behind those; Status::output_full when they are too few.
ENCCONV_API IntoResult convert_into(std::string_view bytes, Encoding from, Encoding to,
                                    char* output, std::size_t capacity,
                                    const Options& options = {});
/// A capacity that is enough for size bytes of any text, unless OnError::hex, raw or alternate or a
/// substitute of several characters puts more in place of what cannot be converted. 0 for an
/// encoding that is not known.
ENCCONV_API std::size_t max_output_size(std::size_t size, Encoding from, Encoding to);

// ---- Cutting a text into pieces. ----

/// What is known of a part of a text in which a cut is looked for.
struct CutOptions {
  std::uint64_t position = 0;  ///< of its first byte in the text, or file
  bool at_cut = false;         ///< a piece can begin at its first byte; at position 0 one can
  bool behind_line = false;    ///< only places behind a line end are wanted, U+000A or U+0085
};

/// The first place at offset or behind it where a piece of a text can begin on its own: in front of
/// a character, in the state that texts begin in, and where no mark, second half or other part of
/// the character before follows. bytes are the text or any part of it; of what stands before offset
/// the last MiB is looked at. Nothing: no such place is in sight, because more bytes behind it or
/// in front of it would be needed, or because the encoding shows nothing of its state (SCSU,
/// Python's forms of ISO 2022).
///
/// If a text is clean, its pieces, each converted to an encoding without a state and without a byte
/// order mark of its own, give the conversion of the whole when they are joined; converted to
/// others, they give a text that reads the same. In damaged text the place is one as far as the
/// bytes show: there the pieces may be read otherwise than the whole, from the damage up to the
/// next character, or in an encoding with a state up to where it is set again. A byte order mark
/// tells the order of the piece that begins with it only; the others need the encoding by the name
/// that has the order in it (UTF-16LE).
ENCCONV_API std::optional<std::size_t> find_cut(std::string_view bytes, Encoding encoding,
                                                std::size_t offset = 0,
                                                const CutOptions& options = {});

// ---- Finding out an encoding. ----

/// What bytes turned out to be.
enum class DetectedKind {
  empty,    ///< there are none
  ascii,    ///< nothing but ASCII: the same text in nearly every encoding
  text,     ///< text, in the encoding of the first candidate as far as its confidence goes
  binary,   ///< no text: a picture, a program, compressed data
  unknown,  ///< perhaps text, but no encoding suggests itself
};

/// What speaks for a candidate most.
enum class Evidence {
  mark,         ///< a byte order mark
  declaration,  ///< the text names its encoding (XML, HTML, MIME header, .po, PEP 263, modeline),
                ///< and is well formed in it
  structure,    ///< the bytes have a form that hardly anything else has, as UTF-8 has
  statistics,   ///< the frequencies of letters
};

/// An encoding that a text may be in.
struct Candidate {
  int code_page;          ///< by which conversions name it; 0 for one that cannot be converted
  std::string_view name;  ///< its preferred name; the library's own
  double confidence;      ///< from 0 to 1
  Evidence evidence;      ///< what speaks for it most
  std::string reason;     ///< a few words for people
};

/// The confidence from which a candidate may be taken without asking anybody.
inline constexpr double sufficient_confidence = 0.5;

/// What detect() found.
struct Detection {
  DetectedKind kind = DetectedKind::unknown;  ///< of the bytes as a whole
  std::vector<Candidate> candidates;  ///< the likeliest first, a few at most; each reads the bytes
                                      ///< as another text. US-ASCII for DetectedKind::ascii.
  std::string reason;                 ///< where there are no candidates: why, for people

  /// The likeliest, or null when it is not sufficient_confidence, or cannot be converted.
  const Candidate* sure() const {
    const bool is_sure = !candidates.empty() && candidates.front().code_page != 0 &&
                         candidates.front().confidence >= sufficient_confidence;
    return is_sure ? &candidates.front() : nullptr;
  }
};

/// How to look at bytes.
struct DetectOptions {
  bool is_beginning = false;  ///< the text goes on behind the bytes, perhaps within a character
};

/// Finds out which encoding a text is in, or that it is no text. Looks at the first MiB, and at
/// samples of what follows.
ENCCONV_API Detection detect(std::string_view bytes, const DetectOptions& options = {});

// ---- Garbled text. ----

/// Bytes of one encoding that were taken for those of another, so that text became garbled.
struct Misreading {
  int written;  ///< the code page that the bytes were in
  int read;     ///< the one that they were taken for
};

/// A text that may have become a garbled one.
struct Origin {
  std::string text;                     ///< in UTF-8
  std::vector<Misreading> misreadings;  ///< what happened to it, in that order; never empty
  double confidence;                    ///< from 0 to 1
};

/// Traces garbled UTF-8 text back ("Ã©tÃ©" to "été"): which encodings were mixed up, also several
/// times over, and what the text was. The likeliest origin first, four at most; none when the text
/// is likelier as it is. Characters that the misreading cannot have made stay; one that was lost in
/// it is U+FFFD. Judges by the first characters beyond ASCII and what follows them, 700 in all;
/// mends all.
ENCCONV_API std::vector<Origin> trace(std::string_view garbled);

// ---- Streams. ----

/// Converts input of any length piece by piece, in constant memory. The output does not depend on
/// how the input is cut.
///
///     encconv::StreamConverter stream("shift_jis", "utf-8");
///     while (read(piece)) {
///       if (!stream.push(piece, output)) break;
///       write(output);
///       output.clear();
///     }
///     stream.finish(output);
class ENCCONV_API StreamConverter {
 public:
  /// status() tells whether the stream can be used.
  StreamConverter(Encoding from, Encoding to, const Options& options = {});
  ~StreamConverter();
  StreamConverter(StreamConverter&&) noexcept;             ///< leaves a stream that can only end
  StreamConverter& operator=(StreamConverter&&) noexcept;  ///< as above

  /// Begins another conversion, whatever became of the one before; its memory is used again, and
  /// the handler of on_problem() stays. False when status() says why it cannot be done.
  bool begin(Encoding from, Encoding to, const Options& options = {});

  /// Has handler called for each piece that cannot be converted, in the order of the text, before
  /// its treatment is written, and for each character that another one is written for. To be set
  /// before the first push(); the handler must not use the stream and must not throw.
  void on_problem(std::function<void(const Problem&)> handler);

  /// Converts the next piece and appends to output. False when the stream ended, as status() says;
  /// what was converted until then is in output.
  bool push(std::string_view piece, std::string& output);
  /// Ends the stream: converts what waited for more, and appends what the target ends with.
  bool finish(std::string& output);

  Status status() const;                         ///< how things stand
  std::uint64_t problem_count() const;           ///< pieces that could not be converted so far
  std::optional<Problem> first_problem() const;  ///< the first of them
  std::uint64_t approximation_count() const;     ///< characters that others were written for so far
  std::optional<Problem> first_approximation() const;  ///< the first of them

 private:
  struct ENCCONV_HIDDEN State;
  std::unique_ptr<State> m_state;
};

}  // namespace encconv

#endif  // ENCCONV_ENCCONV_H_
