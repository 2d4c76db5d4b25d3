// Treatment: what a stream writes in place of input that it could not convert.
#ifndef ENCODING_STREAM_TREATMENTS_H_
#define ENCODING_STREAM_TREATMENTS_H_

#include <cstdint>

#include "encoding/stream/engine_legs.h"
#include "encoding/stream/rows.h"
#include "encoding/stream/stream_converter.h"
#include "encoding/stream/target.h"

class Treatment {
 public:
  // A replacement: text, which the target holds, or bytes to be written as they are. Valid until
  // the next call.
  struct Replacement {
    bool isRaw;
    const std::uint16_t* units;
    const unsigned char* bytes;
    std::uint32_t count;  // units or bytes
  };

  // target and legs must outlive the object; target is only asked what it holds.
  Treatment(StreamTarget& target, EngineLegs& legs) : m_target(target), m_legs(legs) {}

  // Takes the settings over; kGood, or why they cannot be served.
  StreamStatus prepare(const StreamSettings& settings);

  // True once memory was short: a replacement may be another than it should be.
  bool hasFailed() const { return m_failed || m_text.hasFailed() || m_bytes.hasFailed(); }

  // What replaces a piece of length bytes of the source.
  Replacement replace(const StreamError& error, const unsigned char* piece, std::uint32_t length);

 private:
  StreamStatus prepareKind(const StreamSettings& settings);
  StreamStatus prepareSubstitute(const StreamSettings& settings);
  StreamStatus prepareAlternate(int codePage);
  void chooseDefault();
  bool holds(const std::uint16_t* units, std::uint32_t count);
  // The replacements of the kinds; a text that the target cannot hold gives way to the default.
  Replacement defaultSubstitute() const;
  Replacement textOrDefault();
  Replacement hexReference(const StreamError& error);
  Replacement alternate(const StreamError& error, const unsigned char* piece, std::uint32_t length);

  StreamTarget& m_target;
  EngineLegs& m_legs;
  StreamTreatment m_kind = StreamTreatment::kStop;
  bool m_isDefault = true;  // of kSubstitute
  bool m_isRaw = false;
  int m_alternate = 0;
  std::uint16_t m_default = 0;  // U+FFFD, "?", or 0 where the target has neither
  bool m_holdsHex = false;      // the target has what references are made of
  Rows<std::uint16_t> m_text;   // of kSubstitute, or made for one replacement
  DataBuffer m_bytes;           // the same for bytes
  bool m_failed = false;
};

#endif  // ENCODING_STREAM_TREATMENTS_H_
