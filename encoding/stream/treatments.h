// Treatment: what a stream writes in place of input that it could not convert.
#ifndef ENCODING_STREAM_TREATMENTS_H_
#define ENCODING_STREAM_TREATMENTS_H_

#include <cstdint>
#include <memory>

#include "encoding/plan.h"
#include "encoding/stream/codec_target.h"
#include "encoding/stream/stream_converter.h"
#include "support/rows.h"

class AlternateConverter;

class Treatment {
 public:
  // A replacement: text in the code page that the target's codec takes, or in the target's own; or
  // bytes to be written as they are. Valid until the next call.
  struct Replacement {
    const unsigned char* bytes = nullptr;
    std::uint32_t count = 0;
    bool isRaw = false;
  };

  Treatment();
  ~Treatment();

  // Takes the settings over; kGood, or why they cannot be served. target is that of the codec, if
  // there is one; it is only asked what it holds.
  StreamStatus prepare(const StreamSettings& settings, const CodecTarget* target);

  // True once memory was short: a replacement may be another than it should be.
  bool hasFailed() const { return m_failed || m_text.hasFailed() || m_bytes.hasFailed(); }

  // Whether the replacement of such a piece is made of its bytes.
  bool readsPieces(StreamErrorKind kind) const {
    const bool isMalformed = kind == StreamErrorKind::kMalformed;
    return m_kind == StreamTreatment::kRaw ||
           (isMalformed &&
            (m_kind == StreamTreatment::kAlternate || m_kind == StreamTreatment::kHex));
  }

  // What replaces a piece of length bytes of the source.
  Replacement replace(const StreamError& error, const unsigned char* piece, std::uint32_t length);

 private:
  StreamStatus prepareSubstitute(const StreamSettings& settings);
  StreamStatus prepareAlternate(int codePage);
  // The replacements of the kinds; a text that the target cannot hold gives way to the default.
  const Replacement& defaultSubstitute();
  Replacement textOrDefault(const std::uint16_t* units, std::uint32_t count);
  Replacement rememberedOrMade(const StreamError& error, const unsigned char* piece,
                               std::uint32_t length);
  bool prepareHex();
  Replacement hexReference(const StreamError& error);
  Replacement alternate(const StreamError& error, const unsigned char* piece, std::uint32_t length);
  // Makes m_bytes the text in the target; false when the target cannot hold it, or memory is short.
  bool encodeText(const std::uint16_t* units, std::uint32_t count);

  const CodecTarget* m_target = nullptr;
  int m_to = 0;
  const fast::Plan* m_plan = nullptr;  // from UTF-16 to the target; opened when first needed
  StreamTreatment m_kind = StreamTreatment::kStop;
  bool m_isGiven = false;     // the substitute is that of the settings
  bool m_isRaw = false;       // and to be written as it is
  bool m_hasDefault = false;  // m_default is known
  DataBuffer m_given;         // the substitute of the settings, in the target
  DataBuffer m_defaultBytes;  // U+FFFD, "?", or nothing where the target has neither
  Replacement m_default = {};
  DataBuffer m_hexForms;  // in the target, of what references are made of
  int m_hexWidth = -1;    // bytes of each; 0: the target lacks them, -1: not known
  int m_alternate = 0;
  std::unique_ptr<AlternateConverter> m_converter;
  Rows<std::uint16_t> m_text;  // these two made for one replacement
  DataBuffer m_bytes;
  bool m_failed = false;

  // A replacement that was made before, and what it was made of; the same few pieces come again
  // and again.
  struct Known {
    std::uint64_t key = 0;  // 0: none
    std::uint8_t count = 0;
    bool isRaw = false;
    unsigned char bytes[54];
  };
  static constexpr unsigned int kKnownBits = 6;
  Known* knownFor(std::uint64_t key);
  std::unique_ptr<Known[]> m_known;  // made when first needed
};

#endif  // ENCODING_STREAM_TREATMENTS_H_
