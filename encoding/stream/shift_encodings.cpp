// Sources and targets in encodings with shifts over a double-byte code page: ISO-2022-JP over 932,
// ISO-2022-KR over 949, HZ over 936.
#include <algorithm>
#include <new>

#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/hz.h"
#include "encoding/codecs/iso2022_jp.h"
#include "encoding/codecs/iso2022_kr.h"
#include "encoding/stream/double_byte.h"
#include "encoding/stream/source.h"
#include "encoding/stream/target_kinds.h"

namespace {

class ReplacedList final : public ReplacementSink {
 public:
  void onReplaced(const ReplacedInput& piece) override { m_pieces.add(piece); }
  const Rows<ReplacedInput>& pieces() const { return m_pieces; }
  void clear() { m_pieces.clear(); }

 private:
  Rows<ReplacedInput> m_pieces;
};

// ---- Reading ----

class ShiftSource final : public SteppingSource {
 public:
  ShiftSource(const Codec& codec, EngineLegs& legs)
      : m_codec(codec), m_decoder(codec.codePage, legs), m_characters(codec.codePage) {}

  std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                     SourceBlock& block) override {
    m_data = data;
    m_length = length;
    m_last = last;
    m_mapState = m_state;
    m_bytes.clear();
    m_replaced.clear();
    m_used = m_codec.read(data, length, last, m_state, m_bytes, &m_replaced);
    // The codecs give only codes that the table has, so nothing else is bad.
    m_known.clear();
    for (std::uint32_t i = 0; i < m_replaced.pieces().size(); ++i) {
      const ReplacedInput& piece = m_replaced.pieces()[i];
      m_known.add({piece.offset, piece.length, 0, piece.markOffset, 2, -1});
    }
    const bool ok = !m_bytes.hasFailed() && !m_known.hasFailed() &&
                    decodeAround(m_known, m_decoder, m_bytes.getData2(), m_bytes.getSize(), block);
    if (!ok) block.bad.latchFailure();
    startMap();
    startWalk(m_bytes.getData2(), m_bytes.getSize(), block);
    return m_used;
  }

  SourcePlace locateUnit(std::uint32_t unit) override {
    return toSource(SteppingSource::locateUnit(unit));
  }
  SourcePlace locateByte(std::uint32_t byte) override {
    return toSource(SteppingSource::locateByte(byte));
  }
  int bytesCodePage() const override { return m_codec.codePage; }

 private:
  Step step(const unsigned char* p, std::uint32_t left) const override {
    return {m_characters.length(p, left), 1};
  }

  // ---- Where bytes came from: the piece is read once more, as little at a time as it allows. ----

  void startMap() {
    m_mapOffset = m_mapLength = 0;
    m_mapFirst = m_mapBytes = 0;
    m_mapNext = m_mapState;
    m_mapKnown = m_mapBehindKnown = m_mapBytesBehindKnown = 0;
  }

  // Goes on to the piece of the source that the byte came from.
  void mapTo(std::uint32_t byte) {
    while (m_mapBytes <= byte && m_mapOffset + m_mapLength < m_used) {
      m_mapOffset += m_mapLength;
      m_mapLength = 0;
      m_mapFirst = m_mapBytes;
      const std::uint32_t left = m_length - m_mapOffset;  // what decides may stand behind m_used
      for (std::uint32_t length = 1; length <= left && m_mapLength == 0; ++length) {
        DataBuffer& bytes = m_mapScratch;
        bytes.clear();
        m_mapLength = m_codec.read(m_data + m_mapOffset, length, m_last && length == left,
                                   m_mapNext, bytes, nullptr);
        m_mapBytes += bytes.getSize();
      }
      if (m_mapLength == 0) return;  // not reached: what was used once can be used again
    }
  }

  SourcePlace toSource(const SourcePlace& place) {
    mapTo(place.offset);
    std::uint32_t begin = m_mapOffset, end = m_mapOffset + m_mapLength;
    std::uint32_t firstByte = m_mapFirst, endByte = m_mapBytes;
    // What was replaced may have been read together with its neighbours.
    for (; m_mapKnown < m_known.size(); ++m_mapKnown) {
      const BadPiece& bad = m_known[m_mapKnown];
      if (bad.byte >= place.offset) {
        end = std::min(end, bad.offset);
        endByte = std::min(endByte, bad.byte);
        break;
      }
      m_mapBehindKnown = bad.offset + bad.length;
      m_mapBytesBehindKnown = bad.byte + bad.byteLength;
    }
    begin = std::max(begin, m_mapBehindKnown);
    firstByte = std::max(firstByte, m_mapBytesBehindKnown);
    // Several characters read together, such as an escape sequence that is none, are copied.
    const std::uint32_t before = place.offset - firstByte;
    const std::uint32_t through = before + place.length;
    const unsigned char* const bytes = m_bytes.getDataAt2(firstByte);
    if (through <= end - begin && std::equal(bytes, bytes + through, m_data + begin)) {
      begin += before;
      if (firstByte + through != endByte) end = begin + place.length;
    }
    return {begin, end - begin, place.unit};
  }

  const Codec& m_codec;
  TextDecoder m_decoder;
  DoubleByteCharacters m_characters;
  CodecState m_state;
  DataBuffer m_bytes;
  ReplacedList m_replaced;
  Rows<BadPiece> m_known;

  const unsigned char* m_data = nullptr;  // of the last take()
  std::uint32_t m_length = 0;
  std::uint32_t m_used = 0;
  bool m_last = false;
  CodecState m_mapState;          // before the last take()
  CodecState m_mapNext;           // behind the piece found last
  std::uint32_t m_mapOffset = 0;  // the piece found last
  std::uint32_t m_mapLength = 0;
  std::uint32_t m_mapFirst = 0;             // its bytes
  std::uint32_t m_mapBytes = 0;             // their end
  std::uint32_t m_mapKnown = 0;             // the first of m_known behind it
  std::uint32_t m_mapBehindKnown = 0;       // the end of the one before, in the source
  std::uint32_t m_mapBytesBehindKnown = 0;  // and in the bytes
  DataBuffer m_mapScratch;
};

// ---- Writing ----

class ShiftTarget final : public StreamTarget {
 public:
  ShiftTarget(const Codec& codec, EngineLegs& legs)
      : m_codec(codec), m_encoder(codec.codePage, legs), m_characters(codec.codePage) {}

  bool encode(const std::uint16_t* units, std::uint32_t count, Behind behind, DataBuffer& out,
              EncodeResult& result) override {
    m_bytes.clear();
    if (!m_encoder.encode(units, count, m_bytes, result)) return false;
    if (!result.misfits.isEmpty()) return true;
    EncodeResult written;
    if (!encodeBytes(m_bytes.getData2(), m_bytes.getSize(), behind, out, written)) return false;
    result.used = written.used == m_bytes.getSize() ? count : unitsBefore(written.used);
    for (std::uint32_t i = 0; i < written.misfits.size(); ++i) {
      const MisfitPiece& misfit = written.misfits[i];
      result.misfits.add({unitsBefore(misfit.index), 1});
    }
    return !result.misfits.hasFailed();
  }

  bool encodeBytes(const unsigned char* bytes, std::uint32_t count, Behind behind, DataBuffer& out,
                   EncodeResult& result) override {
    m_walked = m_walkedUnits = 0;
    const bool last = behind == Behind::kNothing;
    const CodecState before = m_state;
    const unsigned int sizeBefore = out.getSize();
    result.used = write(bytes, count, last, out);
    if (last && m_codec.resume != nullptr) m_codec.resume(before, result.used != 0, m_state);
    const std::uint32_t waiting = firstToWait(bytes, result.used, count, behind);
    if (m_replaced.pieces().isEmpty() && waiting < result.used) {
      m_state = before;
      out.truncate(sizeBefore);
      result.used = write(bytes, waiting + 1, false, out);  // the last of them decides for no one
    }
    const Rows<ReplacedInput>& pieces = m_replaced.pieces();
    if (out.hasFailed() || pieces.hasFailed()) return false;
    if (pieces.isEmpty() && (result.used != 0 || last)) return true;
    // Nothing of the text is written, so nothing in front of it either, such as a header.
    m_state = before;
    out.truncate(sizeBefore);
    result.used = 0;
    for (std::uint32_t i = 0; i < pieces.size(); ++i) {
      const ReplacedInput& piece = pieces[i];
      result.misfits.add({piece.offset, piece.length});
    }
    return !result.misfits.hasFailed();
  }
  int bytesCodePage() const override { return m_codec.codePage; }

  bool toBytes(const std::uint16_t* units, std::uint32_t count, DataBuffer& bytes,
               bool& fits) override {
    EncodeResult result;
    const bool ok = m_encoder.encode(units, count, bytes, result);
    fits = result.misfits.isEmpty();
    return ok;
  }

  bool holds(const std::uint16_t* units, std::uint32_t count, bool& fits) override {
    DataBuffer bytes, scratch;
    if (!toBytes(units, count, bytes, fits)) return false;
    CodecState state;
    m_codec.write(bytes.getData2(), bytes.getSize(), true, state, scratch, nullptr);
    fits = fits && !state.replaced;
    return !scratch.hasFailed();
  }

  bool leaveShift(DataBuffer& out) override {
    EncodeResult result;
    return encodeBytes(nullptr, 0, Behind::kNothing, out, result);
  }

 private:
  // Behind an ESC, what tells whether it begins an escape sequence.
  static constexpr std::uint32_t kMaxTail = 3;
  // How many ESC are kept back, each so close before the next. Counting them, and not the bytes,
  // lets the same ones wait however the text is cut.
  static constexpr int kMaxWaiting = 32;

  std::uint32_t write(const unsigned char* bytes, std::uint32_t count, bool last, DataBuffer& out) {
    m_replaced.clear();
    return m_codec.write(bytes, count, last, m_state, out, &m_replaced);
  }

  // An ESC of the text has a place as long as it does not make an escape sequence with what follows
  // it. What follows one so closely that it counts may change, should that turn out to have no
  // place.
  static std::uint32_t firstToWait(const unsigned char* bytes, std::uint32_t used,
                                   std::uint32_t count, Behind behind) {
    if (used == count) return used;
    // A misfit may be an ESC that waited itself before it could be told.
    std::uint32_t first = behind == Behind::kMisfit ? count : used;
    for (int waiting = 0; first > 0 && waiting < kMaxWaiting; ++waiting) {
      const unsigned char* const end = bytes + first;
      const unsigned char* const escape = std::find(end - std::min(first, kMaxTail), end, kEscape);
      if (escape == end) break;
      first = static_cast<std::uint32_t>(escape - bytes);
    }
    return std::min(first, used);
  }

  // How many units the first bytes of the text are; to be asked in ascending order.
  std::uint32_t unitsBefore(std::uint32_t byte) {
    for (; m_walked < byte; ++m_walkedUnits) {
      m_walked += m_characters.length(m_bytes.getDataAt2(m_walked), m_bytes.getSize() - m_walked);
    }
    return m_walkedUnits;
  }

  const Codec& m_codec;
  TextEncoder m_encoder;
  DoubleByteCharacters m_characters;
  CodecState m_state;
  DataBuffer m_bytes;
  ReplacedList m_replaced;
  std::uint32_t m_walked = 0;
  std::uint32_t m_walkedUnits = 0;
};

}  // namespace

std::unique_ptr<StreamSource> makeIso2022JpSource(EngineLegs& legs) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) ShiftSource(kIso2022JpCodec, legs));
}
std::unique_ptr<StreamSource> makeIso2022KrSource(EngineLegs& legs) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) ShiftSource(kIso2022KrCodec, legs));
}
std::unique_ptr<StreamSource> makeHzSource(EngineLegs& legs) {
  return std::unique_ptr<StreamSource>(new (std::nothrow) ShiftSource(kHzCodec, legs));
}
std::unique_ptr<StreamTarget> makeIso2022JpTarget(EngineLegs& legs) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) ShiftTarget(kIso2022JpCodec, legs));
}
std::unique_ptr<StreamTarget> makeIso2022KrTarget(EngineLegs& legs) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) ShiftTarget(kIso2022KrCodec, legs));
}
std::unique_ptr<StreamTarget> makeHzTarget(EngineLegs& legs) {
  return std::unique_ptr<StreamTarget>(new (std::nothrow) ShiftTarget(kHzCodec, legs));
}
