// StreamConverter::Core: one stream under way. Clean text goes through a pump; what stops it is
// reported and treated here.
#ifndef ENCODING_STREAM_STREAM_CORE_H_
#define ENCODING_STREAM_STREAM_CORE_H_

#include <cstdint>
#include <memory>
#include <optional>

#include "encoding/approximations.h"
#include "encoding/composer.h"
#include "encoding/output.h"
#include "encoding/pump.h"
#include "encoding/repertoire.h"
#include "encoding/stream/codec_target.h"
#include "encoding/stream/source_stage.h"
#include "encoding/stream/stream_converter.h"
#include "encoding/stream/stream_place.h"
#include "encoding/stream/treatments.h"

inline std::size_t bytesBetween(const unsigned char* begin, const unsigned char* end) {
  return static_cast<std::size_t>(end - begin);
}
inline std::uint32_t unitAt(const unsigned char* p, bool bigEndian) {
  return bigEndian ? p[0] * 256u | p[1] : p[0] | p[1] * 256u;
}

class StreamConverter::Core final : private CodecTarget::Client {
 public:
  // Starts a stream, and forgets an earlier one; what was allocated for that is used again.
  StreamStatus begin(const StreamSettings& settings);
  // Goes on from a place, after begin().
  StreamStatus resume(const StreamPlace& place);
  StreamPlace place() const;
  // Converts the next bytes; last: nothing follows them.
  StreamStatus push(const unsigned char* data, std::size_t length, bool last, Output& out);

  void setErrorHandler(StreamErrorHandler* handler) {
    m_settings.errorHandler = handler;
    noteReports();
  }
  std::uint64_t errorCount() const { return m_errorCount; }
  const StreamError& firstError() const { return m_firstError; }
  std::uint64_t approximationCount() const { return m_approximationCount; }
  const StreamError& firstApproximation() const { return m_firstApproximation; }
  std::uint64_t line() const { return m_lines; }

 private:
  using Stop = fast::Pump::Stop;

  // ---- The beginning. ----
  bool isSame() const { return m_settings.from == m_settings.to; }
  StreamStatus open(int from);
  bool isPlace(const StreamPlace& place) const;
  bool openComposer();
  bool isUndecided(std::string_view head, bool last) const;
  StreamStatus beginText(std::string_view head);

  // ---- What waits between pieces. ----
  StreamStatus feed(const unsigned char* data, std::size_t length, bool last);
  std::size_t feedWaiting(const unsigned char* data, std::size_t length, bool last);
  void keep(const unsigned char* data, std::size_t length);
  void dropWaiting(std::size_t count);

  // ---- Text. Positions are in the text that the pump reads: the source, or what a stage made of
  // it. ----
  bool convertShort(const unsigned char* data, std::size_t length, Output& out);
  std::size_t convert(const unsigned char* data, std::size_t length, bool last);
  std::uint32_t convertStaged(std::uint32_t length, bool last, bool& waits, bool isAll = false);
  void copySource(std::uint32_t begin, std::uint32_t end);
  const unsigned char* convertText(const unsigned char* begin, const unsigned char* end, bool last);
  bool decideMalformed(bool last);
  bool decideUnmappable(bool last);
  bool decideUtf8(const unsigned char* at, std::size_t left, bool last);
  bool isCutPair(const unsigned char* at, std::size_t left, bool bigEndian) const;
  bool writeSegment(Stop stop);
  bool dropRun();
  bool writeSpecialUnit(const unsigned char* unit);
  bool writeApproximation(const unsigned char* unit, std::uint32_t scalar);
  bool writeInstead(const StreamError& error, std::u32string_view text);
  void finish();
  void fail();

  // ---- Errors. ----
  struct Piece {
    StreamErrorKind kind;
    const unsigned char* at;  // in the text
    std::size_t length;
    std::int32_t codePoint;
  };
  bool writeUnits(const unsigned char* units, std::size_t bytes, const Piece& piece);
  void writeCharacter(const unsigned char* bytes, std::size_t count, const Piece& piece);
  bool writeApproximation(Piece piece);
  void writeInstead(std::u32string_view text, Piece& piece);
  Piece characterAt(const unsigned char* at) const;
  void treatPiece(const Piece& piece);
  void treatMark(const ReplacedInput& mark);
  void treat(const StreamError& error, const unsigned char* piece, std::uint32_t length);
  void dropCopied(std::uint64_t offset, Treatment::Replacement& copied);
  void report(const StreamError& error);
  void reportInstead(StreamError error, std::u32string_view text);
  StreamError errorAt(const Piece& piece);
  void fillBytes(StreamError& error, std::uint32_t offset) const;
  // The line ends in a part of the text.
  std::uint64_t countLineEnds(const unsigned char* begin, const unsigned char* end) const;
  std::uint64_t lineOf(const unsigned char* at);
  void noteReports();
  StreamError pieceOf(const Piece& piece);
  void treatSilently(const Piece& piece);
  bool isApproximationWanted() const;

  StreamError placeAt(std::uint32_t byte) override;
  bool treatMisfit(const StreamError& error) override;

  StreamSettings m_settings;
  const fast::Plan* m_plan = nullptr;  // null: equal code pages that cannot be read, a plain copy
  bool m_isPdf = false;
  bool m_hasBegun = false;
  StreamStatus m_status = StreamStatus::kGood;
  Output* m_out = nullptr;  // of the call at hand
  std::unique_ptr<SourceStage> m_stage;
  std::uint32_t m_repeated = 0;  // bytes of the stage's next text that were converted before
  bool m_isCopied = false;       // the stage only checks text that is copied
  bool m_isReordered = false;    // errors may come in another order than that of the source
  std::optional<CodecTarget> m_target;
  fast::Repertoire m_repertoire;
  fast::Approximations m_approximations;
  Treatment m_treatment;
  DataBuffer m_waiting;        // of the source: what could not be converted yet
  std::uint64_t m_offset = 0;  // where that begins in the stream

  // The data at hand, the text made of it, and where they stand.
  const unsigned char* m_data = nullptr;
  std::uint64_t m_dataOffset = 0;
  const unsigned char* m_text = nullptr;
  std::uint64_t m_lines = 1;  // the line of the text that m_counted points to
  const unsigned char* m_counted = nullptr;
  bool m_isEnd = false;  // nothing follows the data

  // The segment on its way to the target's codec.
  DataBuffer m_segment;
  const unsigned char* m_segmentIn = nullptr;    // its source, where bytes stand for bytes
  const unsigned char* m_segmentUnit = nullptr;  // else: its units in the pump
  std::uint32_t m_walkedByte = 0;                // up to which placeAt() has come
  const unsigned char* m_walkedUnit = nullptr;
  const fast::DoubleByteDecoder* m_segmentTable = nullptr;  // of its code page; null for UTF-16
  const Piece* m_fixedPiece = nullptr;  // where the character came from that is written by itself

  std::uint64_t m_copiedBegin = 0;  // the piece of the source that was copied last
  std::uint64_t m_copiedEnd = 0;
  std::uint64_t m_errorCount = 0;
  StreamError m_firstError;
  bool m_isReportWanted =
      true;  // somebody wants to know more of the next error than that it is one
  std::uint64_t m_approximationCount = 0;
  StreamError m_firstApproximation;
  std::unique_ptr<fast::Composer> m_composer;  // null where nothing is to be composed
  fast::Pump m_pump;
  std::unique_ptr<fast::PumpBlock> m_block;  // of the pump; made when first needed
};

#endif  // ENCODING_STREAM_STREAM_CORE_H_
