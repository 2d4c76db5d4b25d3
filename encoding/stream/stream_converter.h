// StreamConverter: conversion of a stream of any length, piece by piece, in constant memory.
#ifndef ENCODING_STREAM_STREAM_CONVERTER_H_
#define ENCODING_STREAM_STREAM_CONVERTER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "encoding/code_page_list.h"
#include "encoding/output.h"
#include "support/data_buffer.h"

// What is written in place of input that cannot be converted, as text of the target encoding
// unless said otherwise.
enum class StreamTreatment : unsigned char {
  kStop,        // nothing: the stream ends before the first such input
  kDrop,        // nothing
  kSubstitute,  // StreamSettings::substitute; by default U+FFFD, or "?" where the target lacks it
  kHex,         // "&#xHHHH;", the code point; of malformed bytes "<0xHH...>"
  kAlternate,   // bytes that are malformed in the source are read as text of the alternate code
                // page; a character that the target lacks is written as its bytes in that code
                // page; where that fails too, the default substitute
  kRaw,         // the bytes of the source as they are
};

// Why input could not be converted, or not as it is.
enum class StreamErrorKind : unsigned char {
  kMalformed,     // the bytes are no text of the source encoding
  kNoPlace,       // the character has no place in the target encoding
  kApproximated,  // the same, and another one was written for it: nothing is left to be treated
};

struct StreamError {
  static constexpr unsigned int kMaxBytes = 16;
  static constexpr unsigned int kMaxWritten = 47;

  std::uint64_t offset = 0;     // bytes, from the beginning of the stream
  std::uint64_t line = 0;       // of the text, counted from 1; lines end with U+000A
  std::uint32_t length = 0;     // bytes of the source
  std::int32_t codePoint = -1;  // of the character, -1 when malformed
  StreamErrorKind kind = StreamErrorKind::kMalformed;
  std::uint8_t byteCount = 0;           // valid entries of bytes: length, but at most kMaxBytes
  unsigned char bytes[kMaxBytes] = {};  // the first bytes of the piece
  char written[kMaxWritten + 1] = {};  // of kApproximated: what was written, UTF-8 that ends with 0

  bool operator==(const StreamError&) const = default;
};

// Is told of each piece that could not be converted, before its treatment is written, and of each
// character that another one is written for, in the order
// of the converted text. That is the order of the source but for Mac Arabic, whose right-to-left
// runs are turned round, and but for ESC, SO and SI on the way to ISO-2022: whether they have a
// place is told when what follows them is known. Called from within push() and finish(); must not
// use the stream.
class StreamErrorHandler {
 public:
  virtual ~StreamErrorHandler() = default;
  virtual void onStreamError(const StreamError& error) = 0;
};

// Takes the output while a call is still converting, so that a large piece needs no more memory
// than a small one.
class StreamDrain {
 public:
  virtual ~StreamDrain() = default;
  // Is called with the buffer that push() or finish() was given whenever it holds kDrainSize bytes
  // or more, about; to write them somewhere and clear it. Must not use the stream. False ends the
  // stream with StreamStatus::kDrainFailed.
  virtual bool onStreamOutput(DataBuffer& out) = 0;

  static constexpr unsigned int kDrainSize = 64 * 1024;
};

struct StreamSettings {
  int from = 0;  // code page of the source; 0 means the target's
  int to = 0;    // code page of the target; 0 means the source's
  // What is tried for a character without a place before the treatment, in this order.
  bool compose = false;   // the one that a letter and its marks make
  bool bestFit = false;   // the similar character that Windows writes in such a code page
  bool translit = false;  // the text that says the same in other letters
  StreamTreatment treatment = StreamTreatment::kStop;
  // Of kSubstitute: UTF-8 text that the target must be able to hold, or raw bytes of the target.
  // Without hasSubstitute the default serves.
  bool hasSubstitute = false;
  bool substituteIsRaw = false;
  std::string substitute;
  int alternate = 0;  // code page of kAlternate
  // Malformed input ends the stream as under kStop, and only characters without a place are
  // treated.
  bool stopsAtMalformed = false;
  bool writeMark = false;       // begin the output with the byte order mark of a Unicode target
  bool keepMark = false;        // the same if the source begins with one
  bool dropMark = false;        // the source's goes also where both encodings are the same, and a
                                // target that begins with one by itself does not
  bool pdfPassthrough = false;  // copy a stream of 7 bytes or more that begins "%PDF-1"
  StreamErrorHandler* errorHandler = nullptr;  // not owned
  StreamDrain* drain = nullptr;                // not owned; without one, output gathers
};

// Reads "stop", "drop", "substitute", "substitute=TEXT", "substitute=0xHH...", "hex",
// "alternate=CODEPAGE" or "raw" into the fields of settings that concern treatments; in front of
// it, each with a comma behind it, may stand what is tried first: "compose", "best-fit",
// "translit". These alone mean "stop" behind them. False, with settings unchanged, when text is
// none of these.
bool parseStreamTreatment(std::string_view text, StreamSettings& settings);

enum class StreamStatus : unsigned char {
  kGood,
  kStopped,        // by input that could not be converted, under kStop; see firstError()
  kNoDecoder,      // the source code page cannot be read
  kNoEncoder,      // the target code page cannot be written
  kNoAlternate,    // the alternate code page can be neither read nor written
  kBadSubstitute,  // the substitute is not UTF-8, or the target cannot hold it
  kDrainFailed,
  kNoMemory,
  kMisuse,  // push() or finish() without begin(), or after the end; begin() at a place that is none
};

// Converts every pair of code pages that EncodingConvert::EncConvert accepts, and HZ. The output
// does not depend on how the source is cut into pieces. It is that of one EncConvert of the whole
// stream with what cannot be converted taken out; docs/differences.md lists where the two differ
// and why. Input that cannot be converted is treated as the settings say and reported, with its
// place in the stream; that includes what EncConvert replaces silently. Characters that the
// target's table writes as others, such as a no-break space as a space, are counted apart.
//
//   StreamConverter stream;
//   if (stream.begin(settings) != StreamStatus::kGood) ...
//   while (... read a piece ...) {
//     if (stream.push(piece, size, out) != StreamStatus::kGood) break;
//     ... write out, out.clear() ...
//   }
//   stream.finish(out);
//
// Keeps less than 8 MiB, whatever the stream; out is the caller's to empty, or a StreamDrain's. One
// thread uses an object at a time; separate objects may run on separate threads. Nothing throws.
struct StreamPlace;

class StreamConverter {
 public:
  StreamConverter();
  ~StreamConverter();
  StreamConverter(const StreamConverter&) = delete;
  StreamConverter& operator=(const StreamConverter&) = delete;

  // Starts a stream; what an earlier one left behind is forgotten, but memory that it had is used
  // again. kGood, or why the settings cannot be served; nothing is written then.
  StreamStatus begin(const StreamSettings& settings);
  // Starts one in the middle of a text, at a place that another stream with such settings told.
  // Offsets and lines count from here. kMisuse for a place where no such stream can stand, so that
  // one may come from anywhere.
  StreamStatus begin(const StreamSettings& settings, const StreamPlace& place);
  // Where the stream stands between two pieces; stream_place.h says more.
  StreamPlace place() const;

  // Converts the next length bytes of the source, and appends to out, which keeps what it held.
  // A few bytes at the end may wait for the next piece. Any status but kGood ends the stream; the
  // output up to the place that stopped it is in out.
  StreamStatus push(const unsigned char* data, std::size_t length, DataBuffer& out);
  // The same to any other place, which takes the output itself; there the drain is not asked.
  StreamStatus push(const unsigned char* data, std::size_t length, Output& out);

  // Ends the stream: converts what waited, and leaves the shift state of the target.
  StreamStatus finish(DataBuffer& out);
  StreamStatus finish(Output& out);
  // push() and finish() in one, which is faster for a stream in one piece.
  StreamStatus finish(const unsigned char* data, std::size_t length, Output& out);

  // From now on, tells another handler, or none. A stream that begins takes that of its settings.
  void setErrorHandler(StreamErrorHandler* handler);

  StreamStatus status() const;
  std::uint64_t errorCount() const;  // pieces that could not be converted so far
  const StreamError& firstError()
      const;  // the one that stands first; meaningless while there is none
  std::uint64_t approximationCount() const;       // characters that others were written for so far
  const StreamError& firstApproximation() const;  // as firstError()
  // The line of the text behind what is done, counted from 1; not told once the stream has ended.
  std::uint64_t line() const;

 private:
  class Core;
  Core* m_core = nullptr;  // null before begin(), or when memory was short
  StreamDrain* m_drain = nullptr;
  StreamStatus m_status = StreamStatus::kMisuse;
  bool m_isOpen = false;  // between begin() and the end
};

#endif  // ENCODING_STREAM_STREAM_CONVERTER_H_
