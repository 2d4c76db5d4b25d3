// StreamTarget: the writing end of a stream, one kind for each family of target encodings.
#ifndef ENCODING_STREAM_TARGET_H_
#define ENCODING_STREAM_TARGET_H_

#include <cstdint>
#include <memory>

#include "encoding/stream/engine_legs.h"
#include "encoding/stream/rows.h"

// A character that has no place in the target.
struct MisfitPiece {
  std::uint32_t index;  // of its first unit (or byte) in what was to be encoded
  std::uint32_t count;  // units (or bytes)
};

// What became of a text that was to be encoded.
struct EncodeResult {
  // Units (or bytes) from the front that were written. What is left, a few at most, cannot be
  // encoded without knowing what follows and is to be offered again in front of that.
  std::uint32_t used = 0;
  Rows<MisfitPiece> misfits;  // in order; when there are any, nothing was written
};

// What stands behind a text that is to be encoded.
enum class Behind : unsigned char {
  kMore,     // not known yet
  kMisfit,   // a character that has no place; what becomes of it is not known yet
  kNothing,  // nothing that this text may be read together with
};

// Keeps what the encoding carries from one part to the next (shift states). Everything handed in is
// whole characters; surrogates come in pairs. One virtual call serves a block. The functions return
// false when memory is short; results are to be fresh.
class StreamTarget {
 public:
  virtual ~StreamTarget() = default;

  // Appends the encoding of count units, unless it finds characters among them that have no place.
  virtual bool encode(const std::uint16_t* units, std::uint32_t count, Behind behind,
                      DataBuffer& out, EncodeResult& result) = 0;

  // The same for text that is there already as bytes of bytesCodePage(), and well-formed.
  virtual bool encodeBytes(const unsigned char* bytes, std::uint32_t count, Behind behind,
                           DataBuffer& out, EncodeResult& result);
  // The code page of encodeBytes(): the target's own, or the double-byte page behind a shift
  // encoding; 0 when there is none.
  virtual int bytesCodePage() const { return 0; }
  // Appends a text as such bytes; fits: every character has a place.
  virtual bool toBytes(const std::uint16_t* units, std::uint32_t count, DataBuffer& bytes,
                       bool& fits);

  // Whether a text can be encoded from the beginning to the end. Changes no state.
  virtual bool holds(const std::uint16_t* units, std::uint32_t count, bool& fits);

  // Leaves any shift. What follows is the end, or bytes that are no business of this object.
  virtual bool leaveShift(DataBuffer& out);
};

// A target for each family; null when memory is short.
std::unique_ptr<StreamTarget> makeTableTarget(int codePage, EngineLegs& legs);  // and UTF-8
std::unique_ptr<StreamTarget> makeUtf16Target(bool bigEndian);
std::unique_ptr<StreamTarget> makeUtf32Target(bool bigEndian);
std::unique_ptr<StreamTarget> makeUtf7Target();
std::unique_ptr<StreamTarget> makeGsmTarget();
std::unique_ptr<StreamTarget> makeIso2022JpTarget(EngineLegs& legs);
std::unique_ptr<StreamTarget> makeIso2022KrTarget(EngineLegs& legs);
std::unique_ptr<StreamTarget> makeHzTarget(EngineLegs& legs);

#endif  // ENCODING_STREAM_TARGET_H_
