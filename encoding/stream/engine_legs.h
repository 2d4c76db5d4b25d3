// EngineLegs: single legs of the engine for streams; TextDecoder and TextEncoder: a leg that runs
// clean stretches through the kernels and tells what it could not convert.
#ifndef ENCODING_STREAM_ENGINE_LEGS_H_
#define ENCODING_STREAM_ENGINE_LEGS_H_

#include <cstdint>

#include "encoding/conversion_observer.h"
#include "encoding/encoding_convert.h"
#include "encoding/fast/conversion_side.h"
#include "encoding/stream/double_byte.h"
#include "encoding/stream/rows.h"
#include "support/log_base.h"

struct SourceBlock;
struct EncodeResult;

// Calls the engine's legs by themselves, outside a pivot and with error action 0, so that no byte
// order mark, escape or pass-through is looked for where a part of a stream happens to begin.
class EngineLegs : private ConversionObserver {
 public:
  EngineLegs() { m_converter.m_observer = this; }

  // Appends the UTF-16 of length bytes, or the bytes of count units. kBad when something could not
  // be converted, which is left out.
  enum class Outcome : unsigned char { kGood, kBad, kNoMemory };
  Outcome decode(int codePage, const unsigned char* data, std::uint32_t length,
                 Rows<std::uint16_t>& units);
  Outcome encode(int codePage, const std::uint16_t* units, std::uint32_t count, DataBuffer& out);

  // A whole conversion, with everything that EncConvert does. False also when anything in it could
  // not be converted.
  bool convertWhole(int from, int to, const unsigned char* data, std::uint32_t length,
                    DataBuffer& out);

  // For the kernels; false where they cannot be used.
  bool openSource(int codePage, fast::Side& side);
  bool openTarget(int codePage, fast::Side& side);

 private:
  void onUnconvertible(const UnconvertibleInput& piece) override;
  Outcome outcome(bool ok, const DataBuffer& out) const;

  EncodingConvert m_converter;
  LogBase m_log;
  bool m_isBad = false;  // the observer was told of something
};

// UTF-8 or a table-driven code page, to UTF-16.
class TextDecoder {
 public:
  // legs must outlive the object.
  TextDecoder(int codePage, EngineLegs& legs);

  // Appends the text of data[begin, end), which is whole characters, to the block: units and bad
  // pieces, whose offsets count from data. In UTF-8 an unpaired surrogate is bad, although the
  // engine has a form for it. False when memory is short.
  bool decode(const unsigned char* data, std::uint32_t begin, std::uint32_t end,
              SourceBlock& block);

 private:
  std::uint32_t decodePiece(const unsigned char* data, std::uint32_t offset, std::uint32_t end,
                            SourceBlock& block);
  std::uint32_t decodeUtf8Piece(const unsigned char* data, std::uint32_t offset, std::uint32_t end,
                                SourceBlock& block);

  int m_codePage;
  EngineLegs& m_legs;
  DoubleByteCharacters m_characters;
  fast::Side m_side;
  bool m_hasKernel;  // m_side is filled in
};

// UTF-16 whose surrogates come in pairs, to UTF-8 or a table-driven code page.
class TextEncoder {
 public:
  // legs must outlive the object.
  TextEncoder(int codePage, EngineLegs& legs);

  // Appends the bytes of count units. Where characters have no place they are listed in result and
  // nothing is appended. The engine drops U+0000 on the way to UTF-8; here it is kept. False when
  // memory is short.
  bool encode(const std::uint16_t* units, std::uint32_t count, DataBuffer& out,
              EncodeResult& result);

 private:
  int m_codePage;
  EngineLegs& m_legs;
  fast::Side m_side;
  bool m_hasKernel;  // m_side is filled in
};

#endif  // ENCODING_STREAM_ENGINE_LEGS_H_
