// The source stage of encodings with a codec.
#include <algorithm>
#include <new>

#include "encoding/stream/source_stage.h"

namespace {

constexpr int kUtf16Le = 1200;

class CodecStage final : public SourceStage {
 public:
  explicit CodecStage(const Codec& codec)
      : m_codec(codec), m_read(codec.readStrictly ? codec.readStrictly : codec.read) {}

  std::uint32_t read(const unsigned char* data, std::uint32_t length, bool last) override {
    m_data = data;
    m_length = length;
    m_last = last;
    m_used = 0;
    m_text.clear();
    m_marks.clear();
    m_begin = m_walk = walkFromHere();
    // What is given back stands at the end: that much is not to be walked through from the begin.
    constexpr std::uint32_t kEnd = 256;
    if (length > 2 * kEnd) readOn(length - kEnd, false);
    m_nearEnd = walkFromHere();
    readOn(length, last);
    return m_used;
  }

  SourcePlace locate(std::uint32_t byte, std::uint32_t length) override {
    if (m_codec.codePage == kUtf16Le) return locateUnits(byte, length);
    walkTo(byte, m_walk);
    std::uint32_t begin = m_walk.offset;
    std::uint32_t firstByte = m_walk.firstByte;
    std::uint32_t end = m_walk.offset + m_walk.length;
    std::uint32_t endByte = m_walk.bytes;
    // What was replaced may have been read together with its neighbours.
    for (; m_walk.mark < m_marks.size(); ++m_walk.mark) {
      const ReplacedInput& mark = m_marks[m_walk.mark];
      if (mark.markOffset >= byte) {
        end = std::min(end, mark.offset);
        endByte = std::min(endByte, mark.markOffset);
        break;
      }
      m_walk.behindMark = mark.offset + mark.length;
      m_walk.bytesBehindMark = mark.markOffset + kMarkBytes;
    }
    begin = std::max(begin, m_walk.behindMark);
    firstByte = std::max(firstByte, m_walk.bytesBehindMark);
    // Several characters read together, such as an escape sequence that is none, are copied.
    const std::uint32_t before = byte - firstByte;
    const std::uint32_t through = before + length;
    const unsigned char* const bytes = m_text.getDataAt2(firstByte);
    if (through <= end - begin && std::equal(bytes, bytes + through, m_data + begin)) {
      begin += before;
      if (firstByte + through != endByte) end = begin + length;
    }
    return {begin, end - begin};
  }

  TakenBack giveBack(std::uint32_t byte) override {
    Walk walk = byte < m_nearEnd.bytes ? m_begin : m_nearEnd;
    walkTo(byte, walk);
    m_state = walk.stateBefore;
    return {walk.offset, byte - walk.firstByte};
  }

  CodecState state() const override { return m_state; }
  void resume(const CodecState& state) override { m_state = state; }

 private:
  // Of UTF-16, a unit, a pair, or what was composed.
  SourcePlace locateUnits(std::uint32_t byte, std::uint32_t length) {
    const SourcePlace first = locateUnit(byte);
    if (length == 2) return first;
    const SourcePlace last = locateUnit(byte + length - 2);
    return {first.offset, last.offset + last.length - first.offset};
  }

  // A piece may be several units: of one code, or of characters of which the last one told what the
  // others are. As much of it as makes no more than the units in front is not of this one.
  SourcePlace locateUnit(std::uint32_t byte) {
    walkTo(byte, m_walk);
    const std::uint32_t before = byte - m_walk.firstByte, through = before + 2;
    const unsigned char* const units = m_text.getDataAt2(m_walk.firstByte);
    std::uint32_t begin = 0;
    for (std::uint32_t length = 1; length < m_walk.length; ++length) {
      m_scratch.clear();
      CodecState state = m_walk.stateBefore;
      state.replaced = false;
      m_read(m_data + m_walk.offset, length, true, state, m_scratch, nullptr);
      const std::uint32_t size = m_scratch.getSize();
      const std::uint32_t compared = std::min(size, through);
      const bool isMark = state.replaced && size == through;
      if (isMark || size == 0 || !std::equal(units, units + compared, m_scratch.getData2()))
        continue;
      if (size >= through) return {m_walk.offset + begin, length - begin};
      begin = length;
    }
    return {m_walk.offset + begin, m_walk.length - begin};
  }

  // The data is read once more, as little at a time as the codec allows.
  struct Walk {
    CodecState state;        // behind the piece found last
    CodecState stateBefore;  // and before it
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    std::uint32_t firstByte = 0;        // where its bytes begin in the text
    std::uint32_t bytes = 0;            // and end
    std::uint32_t mark = 0;             // the first mark behind it
    std::uint32_t behindMark = 0;       // the end of the one before, in the source
    std::uint32_t bytesBehindMark = 0;  // and in the text
  };

  // One that goes on behind what was read.
  Walk walkFromHere() const {
    Walk walk;
    walk.state = walk.stateBefore = m_state;
    walk.offset = m_used;
    walk.bytes = walk.firstByte = m_text.getSize();
    return walk;
  }

  // Goes on to the piece of the source that a byte of the text came from.
  void walkTo(std::uint32_t byte, Walk& walk) {
    while (walk.bytes <= byte && walk.offset + walk.length < m_used) {
      walk.offset += walk.length;
      walk.length = 0;
      walk.firstByte = walk.bytes;
      walk.stateBefore = walk.state;
      const std::uint32_t left = m_length - walk.offset;  // what decides may stand behind m_used
      for (std::uint32_t length = 1; length <= left && walk.length == 0; ++length) {
        readPiece(length, false, walk);
      }
      // The end is asked for only where all of the rest is not enough: what is in front of it is a
      // piece of its own, as in a stream that has not ended yet.
      if (walk.length == 0 && m_last) readPiece(left, true, walk);
      if (walk.length == 0) return;  // not reached: what was used once can be used again
    }
  }

  // Tries what so many bytes make.
  void readPiece(std::uint32_t length, bool last, Walk& walk) {
    m_scratch.clear();
    walk.length = m_read(m_data + walk.offset, length, last, walk.state, m_scratch, nullptr);
    walk.bytes += m_scratch.getSize();
  }

  // Reads on from m_used to an end.
  void readOn(std::uint32_t end, bool last) {
    const std::uint32_t before = m_marks.size();
    ReplacementRows marks(m_marks);
    const std::uint32_t begin = m_used;
    m_used += m_read(m_data + begin, end - begin, last, m_state, m_text, &marks);
    for (std::uint32_t i = before; i < m_marks.size(); ++i) m_marks.at(i).offset += begin;
  }

  const Codec& m_codec;
  const Codec::Convert m_read;
  CodecState m_state;
  Walk m_walk;   // of locate()
  Walk m_begin;  // at the beginning of the text, and near its end
  Walk m_nearEnd;
  DataBuffer m_scratch;
  // Of the last read().
  const unsigned char* m_data = nullptr;
  std::uint32_t m_length = 0;
  std::uint32_t m_used = 0;
  bool m_last = false;
};

}  // namespace

std::unique_ptr<SourceStage> SourceStage::make(const EncodingRow& row) {
  if (row.reordersMacArabic) return makeMacArabicStage();
  if (row.codec == nullptr) return makeAccentStage(row);
  return std::unique_ptr<SourceStage>(new (std::nothrow) CodecStage(*row.codec));
}
