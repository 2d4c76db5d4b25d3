// What a stream tells of its text, and writes for what it cannot convert.
#include <algorithm>

#include "encoding/stream/stream_core.h"
#include "support/utf.h"

// Settles whether places are told: those of all errors, or of the first one.
void StreamConverter::Core::noteReports() {
  m_isReportWanted = m_errorCount == 0 || m_settings.errorHandler != nullptr || m_isReordered ||
                     m_target || m_settings.stopsAtMalformed;
}

bool StreamConverter::Core::isApproximationWanted() const {
  return m_approximationCount == 0 || m_settings.errorHandler != nullptr || m_isReordered ||
         m_target;
}

void StreamConverter::Core::treatPiece(const Piece& piece) {
  if (!m_isReportWanted) {
    treatSilently(piece);
    return;
  }
  const StreamError error = errorAt(piece);
  report(error);
  treat(error, m_data + (error.offset - m_dataOffset), error.length);
}

// Nobody asks where the piece is.
void StreamConverter::Core::treatSilently(const Piece& piece) {
  ++m_errorCount;
  if (m_settings.treatment == StreamTreatment::kDrop) return;
  if (m_treatment.readsPieces(piece.kind)) {
    const StreamError error = pieceOf(piece);
    treat(error, m_data + (error.offset - m_dataOffset), error.length);
    return;
  }
  StreamError error;
  error.kind = piece.kind;
  error.codePoint = piece.codePoint;
  treat(error, nullptr, 0);
}

void StreamConverter::Core::treatMark(const ReplacedInput& mark) {
  StreamError error;
  error.offset = m_dataOffset + mark.offset;
  error.length = mark.length;
  error.line = lineOf(m_text + mark.markOffset);
  fillBytes(error, mark.offset);
  report(error);
  treat(error, m_data + mark.offset, mark.length);
}

// All but the line.
StreamError StreamConverter::Core::pieceOf(const Piece& piece) {
  SourcePlace place{static_cast<std::uint32_t>(piece.at - m_text),
                    static_cast<std::uint32_t>(piece.length)};
  if (m_stage != nullptr) place = m_stage->locate(place.offset, place.length);
  StreamError error;
  error.kind = piece.kind;
  error.codePoint = piece.codePoint;
  error.offset = m_dataOffset + place.offset;
  error.length = place.length;
  fillBytes(error, place.offset);
  return error;
}

StreamError StreamConverter::Core::errorAt(const Piece& piece) {
  StreamError error = pieceOf(piece);
  error.line = lineOf(piece.at);
  return error;
}

void StreamConverter::Core::fillBytes(StreamError& error, std::uint32_t offset) const {
  error.byteCount =
      static_cast<std::uint8_t>(std::min<std::uint32_t>(error.length, StreamError::kMaxBytes));
  std::copy_n(m_data + offset, error.byteCount, error.bytes);
}

std::uint64_t StreamConverter::Core::countLineEnds(const unsigned char* begin,
                                                   const unsigned char* end) const {
  const fast::Plan& plan = *m_plan;
  const fast::Kernels& kernels = *plan.kernels;
  const bool isSwapped = plan.decoding.bigEndian;
  switch (plan.decoding.form) {
    case EncodingForm::kUtf16:
      return kernels.countUnit(begin, end, isSwapped ? 0x0A00 : 0x000A);
    case EncodingForm::kUtf32:
      return kernels.countScalar(begin, end, isSwapped ? 0x0A000000u : 0x0000000Au);
    default:
      return plan.hasLineFeed ? kernels.countByte(begin, end, plan.lineFeed) : 0;
  }
}

// The line at a place of the text; asked in ascending order, and at the end for all of it.
std::uint64_t StreamConverter::Core::lineOf(const unsigned char* at) {
  if (at > m_counted) {
    m_lines += countLineEnds(m_counted, at);
    m_counted = at;
  }
  return m_lines;
}

void StreamConverter::Core::report(const StreamError& error) {
  const bool isApproximation = error.kind == StreamErrorKind::kApproximated;
  std::uint64_t& count = isApproximation ? m_approximationCount : m_errorCount;
  StreamError& first = isApproximation ? m_firstApproximation : m_firstError;
  if (count++ == 0 || error.offset < first.offset) first = error;
  if (count == 1) noteReports();
  if (m_settings.errorHandler != nullptr) m_settings.errorHandler->onStreamError(error);
}

// Reports a character that a text is written for.
void StreamConverter::Core::reportInstead(StreamError error, std::u32string_view text) {
  error.kind = StreamErrorKind::kApproximated;
  auto* written = reinterpret_cast<unsigned char*>(error.written);
  const unsigned char* const end = written + StreamError::kMaxWritten;
  for (const char32_t other : text) {
    unsigned char form[4];
    const auto length = writeUtf8(form, other) - form;
    if (end - written < length) break;
    written = std::copy_n(form, length, written);
  }
  *written = 0;
  report(error);
}

// Writes what stands for a piece.
void StreamConverter::Core::treat(const StreamError& error, const unsigned char* piece,
                                  std::uint32_t length) {
  const bool stops = m_settings.treatment == StreamTreatment::kStop ||
                     (m_settings.stopsAtMalformed && error.kind == StreamErrorKind::kMalformed);
  if (stops) {
    // What waits for more text is text.
    if (m_target && !m_target->flush(*m_out)) fail();
    if (m_status == StreamStatus::kGood) m_status = StreamStatus::kStopped;
    return;
  }
  Treatment::Replacement replacement;
  if (m_settings.treatment != StreamTreatment::kDrop) {
    replacement = m_treatment.replace(error, piece, length);
  }
  if (m_settings.treatment == StreamTreatment::kRaw) dropCopied(error.offset, replacement);
  bool isWritten = true;
  if (m_treatment.hasFailed()) {
    isWritten = false;
  } else if (replacement.count == 0) {
    isWritten = !m_target || m_target->close(*m_out);
  } else if (!m_target) {
    isWritten = m_out->append(replacement.bytes, replacement.count);
  } else if (replacement.isRaw) {
    isWritten = m_target->leave(*m_out) && m_out->append(replacement.bytes, replacement.count);
  } else {
    isWritten = m_target->writeTreatment(replacement.bytes, replacement.count, *m_out);
  }
  if (!isWritten) fail();
}

// Takes off what was copied for the character before, which one code has together with this one.
void StreamConverter::Core::dropCopied(std::uint64_t offset, Treatment::Replacement& copied) {
  const std::uint64_t end = offset + copied.count;
  if (offset >= m_copiedBegin && offset < m_copiedEnd) {
    const std::uint64_t before = std::min(m_copiedEnd, end) - offset;
    copied.bytes += before;
    copied.count -= static_cast<std::uint32_t>(before);
  }
  m_copiedBegin = offset;
  m_copiedEnd = end;
}

// ---- For the target's codec. ----

StreamError StreamConverter::Core::placeAt(std::uint32_t byte) {
  if (m_fixedPiece != nullptr) return errorAt(*m_fixedPiece);
  const bool isDirect = m_plan->direct != nullptr && m_composer == nullptr;
  if (isDirect) return errorAt(characterAt(m_segmentIn + byte));
  while (m_walkedByte < byte) {
    const unsigned char lead = m_segment.getData2()[m_walkedByte];
    const bool isSingle =
        m_segmentTable != nullptr && (lead < 0x80 || !m_segmentTable->isLead(lead));
    m_walkedByte += isSingle ? 1 : 2;
    m_walkedUnit += 2;
  }
  const std::uint32_t unit = unitAt(m_walkedUnit, false);
  const bool isPair = isHighSurrogate(unit);
  const std::uint32_t scalar =
      isPair ? joinSurrogates(unit, unitAt(m_walkedUnit + 2, false)) : unit;
  const unsigned char* const at = m_pump.sourceOf(m_walkedUnit);
  return errorAt({StreamErrorKind::kNoPlace, at, m_pump.sourceLength(m_walkedUnit, isPair ? 4 : 2),
                  static_cast<std::int32_t>(scalar)});
}

// The character at a place of text that is given to the target's codec as it is.
StreamConverter::Core::Piece StreamConverter::Core::characterAt(const unsigned char* at) const {
  std::size_t length = 2;
  if (m_plan->decoding.form == EncodingForm::kUtf16) {
    if (isHighSurrogate(unitAt(at, m_plan->decoding.bigEndian))) length = 4;
  } else if (*at < 0x80 || !m_plan->decoding.table.doubleByte->isLead(*at)) {
    length = 1;
  }
  unsigned char units[fast::kKernelSlack + 16];
  fast::decode(*m_plan, at, at + length, units, units + sizeof units);
  const std::uint32_t unit = unitAt(units, false);
  const std::uint32_t scalar = length == 4 ? joinSurrogates(unit, unitAt(units + 2, false)) : unit;
  return {StreamErrorKind::kNoPlace, at, length, static_cast<std::int32_t>(scalar)};
}

bool StreamConverter::Core::treatMisfit(const StreamError& error) {
  std::optional<std::u32string_view> text;
  if (error.codePoint >= 0) {
    text = m_approximations.find(static_cast<std::uint32_t>(error.codePoint));
  }
  if (m_repertoire.hasFailed()) {
    fail();
    return false;
  }
  if (text) return writeInstead(error, *text);
  report(error);
  treat(error, error.bytes, error.byteCount);
  return m_status == StreamStatus::kGood;
}
