// SourceStage: what turns the bytes of a stream into text of a code page first, where the encoding
// is not one of the kernels' own.
#ifndef ENCODING_STREAM_SOURCE_STAGE_H_
#define ENCODING_STREAM_SOURCE_STAGE_H_

#include <cstdint>
#include <memory>

#include "encoding/codecs/codec.h"
#include "encoding/codecs/encoding_row.h"
#include "support/rows.h"

// A part of the source, in bytes of the data that read() was given.
struct SourcePlace {
  std::uint32_t offset;
  std::uint32_t length;
};

// Where the source begins of text that was taken back, and how much text in front of that comes of
// the same bytes: it will be read again.
struct TakenBack {
  std::uint32_t offset;
  std::uint32_t repeated;
};

// Keeps what the encoding carries from one part to the next. One virtual call serves a block.
class SourceStage {
 public:
  // The most that is read at once.
  static constexpr std::uint32_t kBlock = 32 * 1024;
  // What stands in text() for a malformed piece.
  static constexpr std::uint32_t kMarkBytes = 2;
  // More text is never repeated: a part of what bytes become that are read together.
  static constexpr std::uint32_t kMostRepeated = 4 * 2 * Codec::kMaxRest;

  virtual ~SourceStage() = default;

  // The stage of an encoding; null where memory is short.
  static std::unique_ptr<SourceStage> make(const EncodingRow& row);

  // Reads as much from the front of data as can be told without what follows, and makes text() and
  // marks() what that is. Returns the bytes done with; the caller offers the rest again, with more
  // behind it. last: nothing follows. 0 without any text asks for more; 0 with text asks to be
  // called once more with the same data.
  virtual std::uint32_t read(const unsigned char* data, std::uint32_t length, bool last) = 0;

  // The malformed pieces in what was read last, in order; each has a mark in text().
  const Rows<ReplacedInput>& marks() const { return m_marks; }
  const DataBuffer& text() const { return m_text; }
  bool hasFailed() const { return m_text.hasFailed() || m_marks.hasFailed(); }

  // Where the character at a byte of text(), of length bytes, came from. To be asked in ascending
  // order, with the data still there.
  virtual SourcePlace locate(std::uint32_t byte, std::uint32_t length) = 0;
  // Takes the text from a byte on back, as if it had not been read.
  virtual TakenBack giveBack(std::uint32_t byte) = 0;

  // What the encoding carries in front of the data that was not used. Stages whose data alone says
  // what it means carry nothing.
  virtual CodecState state() const { return {}; }
  virtual void resume(const CodecState& /*state*/) {}

  // How much data a call of read() may need to see.
  virtual std::uint32_t reach() const { return kBlock; }

 protected:
  DataBuffer m_text;
  Rows<ReplacedInput> m_marks;
};

// For make().
std::unique_ptr<SourceStage> makeMacArabicStage();
std::unique_ptr<SourceStage> makeAccentStage(const EncodingRow& row);

#endif  // ENCODING_STREAM_SOURCE_STAGE_H_
