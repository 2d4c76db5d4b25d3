// StreamSource: the reading end of a stream, one kind for each family of source encodings.
#ifndef ENCODING_STREAM_SOURCE_H_
#define ENCODING_STREAM_SOURCE_H_

#include <cstdint>
#include <memory>

#include "encoding/stream/engine_legs.h"
#include "encoding/stream/rows.h"
#include "support/utf.h"

// The most that is converted at once, in bytes of the source.
inline constexpr std::uint32_t kStreamBlock = 32 * 1024;

// A piece of the source that is no text.
struct BadPiece {
  std::uint32_t offset;  // bytes, in the data that take() was given
  std::uint32_t length;  // bytes
  std::uint32_t unit;    // units of the block in front of it
  std::uint32_t byte;    // where it stands in the block's bytes, and how many of them it is
  std::uint32_t byteLength;
  std::int32_t codePoint;  // of an unpaired surrogate; -1 for other pieces
};

// A part of the source, decoded.
struct SourceBlock {
  Rows<std::uint16_t> units;  // the text, without the bad pieces
  Rows<BadPiece> bad;         // in order
  // The same text in StreamSource::bytesCodePage(), bad pieces included; valid until the next
  // take().
  const unsigned char* bytes = nullptr;
  std::uint32_t byteCount = 0;

  void clear() {
    units.clear();
    bad.clear();
    bytes = nullptr;
    byteCount = 0;
  }
  bool hasFailed() const { return units.hasFailed() || bad.hasFailed(); }
};

// Where a character of a block came from.
struct SourcePlace {
  std::uint32_t offset;  // bytes, in the data that take() was given
  std::uint32_t length;  // bytes
  std::uint32_t unit;    // the index of its first unit in the block
};

// Knows how its encodings may be cut, and keeps what they carry from one part to the next (shift
// states). One virtual call serves a block.
class StreamSource {
 public:
  virtual ~StreamSource() = default;

  // Decodes as much from the front of data as can be told without what follows, and fills block,
  // which is clear. Returns the bytes done with; the caller offers the rest again, with more
  // behind it. last: nothing follows, and everything is text or bad. 0 with an empty block asks for
  // more; 0 with a block asks to be called once more with the same data.
  virtual std::uint32_t take(const unsigned char* data, std::uint32_t length, bool last,
                             SourceBlock& block) = 0;

  // Where a unit, or a byte of block.bytes, of the block last taken came from. To be asked in
  // ascending order, with the data still there. The unit or byte is the first of its character.
  virtual SourcePlace locateUnit(std::uint32_t unit) = 0;
  virtual SourcePlace locateByte(std::uint32_t byte) = 0;

  // The code page of block.bytes: the source's own, or the double-byte page behind a shift
  // encoding; 0 when there are no such bytes.
  virtual int bytesCodePage() const { return 0; }

  // How much data a call of take() may need to see.
  virtual std::uint32_t reach() const { return kStreamBlock; }
};

// A source whose characters can be told apart where they stand, one after another.
class SteppingSource : public StreamSource {
 public:
  SourcePlace locateUnit(std::uint32_t unit) override;
  SourcePlace locateByte(std::uint32_t byte) override;

 protected:
  struct Step {
    std::uint32_t bytes;  // at least 1
    std::uint32_t units;  // 1 or 2
  };
  // The good character at p, of which left bytes may be read.
  virtual Step step(const unsigned char* p, std::uint32_t left) const = 0;

  // To be called by take(): what locateUnit() and locateByte() walk over.
  void startWalk(const unsigned char* data, std::uint32_t length, const SourceBlock& block);

 private:
  template <typename Arrived>
  SourcePlace walk(Arrived arrived);

  const unsigned char* m_data = nullptr;
  std::uint32_t m_length = 0;
  const SourceBlock* m_block = nullptr;
  std::uint32_t m_offset = 0;  // the walk so far
  std::uint32_t m_unit = 0;
  std::uint32_t m_nextBad = 0;
};

// Decodes data into block around the pieces listed in known, which are bad already; block.bytes
// becomes data. known is in ascending order and may be empty. False when memory is short.
bool decodeAround(const Rows<BadPiece>& known, TextDecoder& decoder, const unsigned char* data,
                  std::uint32_t length, SourceBlock& block);

// Appends the units of a scalar value.
inline void appendScalar(std::uint32_t scalar, Rows<std::uint16_t>& units) {
  if (scalar < 0x10000) {
    units.add(static_cast<std::uint16_t>(scalar));
    return;
  }
  units.add(static_cast<std::uint16_t>(0xD7C0 + (scalar >> 10)));
  units.add(static_cast<std::uint16_t>(0xDC00 | (scalar & 0x3FF)));
}

// True when a surrogate stands in count units without its other half.
bool hasUnpairedSurrogate(const std::uint16_t* units, std::uint32_t count);

// A source for each family; null when memory is short.
std::unique_ptr<StreamSource> makeTableSource(int codePage, EngineLegs& legs);
std::unique_ptr<StreamSource> makeMacArabicSource(EngineLegs& legs);
std::unique_ptr<StreamSource> makeUtf8Source(EngineLegs& legs);
std::unique_ptr<StreamSource> makeUtf16Source(bool bigEndian);
std::unique_ptr<StreamSource> makeUtf32Source(bool bigEndian);
std::unique_ptr<StreamSource> makeUtf7Source();
std::unique_ptr<StreamSource> makeGsmSource();
std::unique_ptr<StreamSource> makeAsciiSource();
std::unique_ptr<StreamSource> makeIso2022JpSource(EngineLegs& legs);
std::unique_ptr<StreamSource> makeIso2022KrSource(EngineLegs& legs);
std::unique_ptr<StreamSource> makeHzSource(EngineLegs& legs);

#endif  // ENCODING_STREAM_SOURCE_H_
