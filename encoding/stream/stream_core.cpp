#include "encoding/stream/stream_core.h"

#include <algorithm>
#include <limits>
#include <new>

#include "encoding/special_units.h"
#include "support/utf.h"

namespace {

std::uint32_t scalarAt(const unsigned char* p, bool bigEndian) {
  const std::uint32_t first = unitAt(p, bigEndian);
  const std::uint32_t second = unitAt(p + 2, bigEndian);
  return bigEndian ? first << 16 | second : second << 16 | first;
}

// Whether the three-byte form of a high surrogate stands at p.
bool isHighForm(const unsigned char* p) {
  return p[0] == 0xED && p[1] >= 0xA0 && p[1] < 0xB0 && isContinuation(p[2]);
}

// Whether what follows may make a well-formed sequence of the UTF-8 at p, or the pair of a
// surrogate.
bool isCutUtf8(const unsigned char* p, std::size_t left) {
  constexpr std::size_t kPairBytes = 6;
  if (left >= 3 && left < kPairBytes && isHighForm(p)) return true;
  const std::size_t length = p[0] < 0xC2 ? 1 : p[0] < 0xE0 ? 2 : p[0] < 0xF0 ? 3 : 4;
  return left < length && std::all_of(p + 1, p + left, isContinuation);
}

}  // namespace

// ---- Text. ----

// Converts a short piece that needs no more than its plan: clean, and with nothing in front. False,
// with nothing done, for any other.
bool StreamConverter::Core::convertShort(const unsigned char* data, std::size_t length,
                                         Output& out) {
  if (m_plan == nullptr || m_plan->whole == nullptr || m_plan->hasCodec() ||
      m_composer != nullptr || length > fast::kShortBytes || m_waiting.getSize() != 0 || m_isPdf) {
    return false;
  }
  const bool isPlain = m_hasBegun || (!m_settings.writeMark && !m_settings.pdfPassthrough &&
                                      (length == 0 || !m_plan->mayBeginWithMark(data, length)));
  if (!isPlain) return false;
  if (length == 0) return m_hasBegun = true;
  if (out.room() >= length * fast::kWorstFactor + fast::kKernelSlack) {
    unsigned char* const end = m_plan->whole(*m_plan, data, length, out.next, out.end);
    if (end == nullptr) return false;
    out.next = end;
  } else {
    unsigned char text[fast::kShortOutput];
    const unsigned char* const end = m_plan->whole(*m_plan, data, length, text, text + sizeof text);
    if (end == nullptr) return false;
    m_out = &out;
    if (!out.append(text, bytesBetween(text, end))) fail();
  }
  m_hasBegun = true;
  m_offset += length;
  m_lines += countLineEnds(data, data + length);
  return true;
}

// Converts as much of data as can be told without what follows; returns how many bytes that was.
// Data goes in parts: places in a part have 32 bits, and the text of one for a codec is kept.
std::size_t StreamConverter::Core::convert(const unsigned char* data, std::size_t length,
                                           bool last) {
  constexpr std::size_t kMaxPart = 1024 * 1024 * 1024;
  const std::size_t part = m_stage != nullptr ? m_stage->reach()
                           : m_target         ? SourceStage::kBlock
                                              : kMaxPart;
  std::size_t done = 0;
  bool waits = false;
  while (done < length && !waits && m_status == StreamStatus::kGood) {
    const std::size_t left = length - done;
    const std::size_t window = std::min(left, part);
    const bool isLast = last && window == left;
    const unsigned char* const outBegin = m_out->next;
    const unsigned char* const outEnd = m_out->end;
    m_data = data + done;
    m_dataOffset = m_offset + done;
    std::size_t used = 0;
    if (m_stage != nullptr) {
      used = convertStaged(static_cast<std::uint32_t>(window), isLast, waits);
    } else {
      m_text = m_counted = m_data;
      m_isEnd = isLast;
      used = bytesBetween(m_data, convertText(m_data, m_data + window, isLast));
      waits = used < window && window == left;
    }
    done += used;
    // The rest will take about as much as this part did.
    if (used != 0 && m_out->end == outEnd) {
      const std::uint64_t rest = length - done;
      m_out->expect(rest * bytesBetween(outBegin, m_out->next) / used + rest / 16);
    }
  }
  return done;
}

// The same for a part of the data, through the stage. waits: more must be seen to go on. isAll: the
// last character is as it is, whatever follows.
std::uint32_t StreamConverter::Core::convertStaged(std::uint32_t length, bool last, bool& waits,
                                                   bool isAll) {
  const std::uint32_t used = m_stage->read(m_data, length, last);
  waits = used == 0 && m_stage->text().getSize() == 0;
  if (m_stage->hasFailed()) {
    fail();
    return used;
  }
  const unsigned char* const begin = m_stage->text().getData2();
  const unsigned char* const end = begin + m_stage->text().getSize();
  m_text = begin;
  // Where a stream goes on, the source may come in smaller pieces than before.
  const std::uint32_t repeated = std::min(m_repeated, m_stage->text().getSize());
  m_repeated -= repeated;
  const unsigned char* done = begin + repeated;
  m_counted = done;
  std::uint32_t copied = 0;
  for (std::uint32_t i = 0; i < m_stage->marks().size(); ++i) {
    const ReplacedInput mark = m_stage->marks()[i];
    if (begin + mark.markOffset < done) continue;
    if (m_isCopied) {
      copySource(copied, mark.offset);
      copied = mark.offset + mark.length;
    } else {
      convertText(done, begin + mark.markOffset, true);
    }
    if (m_status == StreamStatus::kGood) treatMark(mark);
    if (m_status != StreamStatus::kGood) return used;
    done = begin + mark.markOffset + SourceStage::kMarkBytes;
    m_counted = std::max(m_counted, done);
  }
  if (m_isCopied) {
    copySource(copied, used);
    lineOf(end);
    return used;
  }
  const unsigned char* const reached = convertText(done, end, isAll || (last && used == length));
  if (m_status != StreamStatus::kGood || reached == end) return used;
  const TakenBack back = m_stage->giveBack(static_cast<std::uint32_t>(reached - begin));
  m_repeated = back.repeated;
  waits = back.offset == 0;
  // Behind the character may be shifts without end.
  const bool isStuck = waits && length >= m_stage->reach();
  return isStuck ? convertStaged(length, last, waits, true) : back.offset;
}

// Writes a part of the data as it is.
void StreamConverter::Core::copySource(std::uint32_t begin, std::uint32_t end) {
  if (!m_out->append(m_data + begin, end - begin)) fail();
}

// Returns how far it came: to the end, but for a character that what follows decides.
const unsigned char* StreamConverter::Core::convertText(const unsigned char* begin,
                                                        const unsigned char* end, bool last) {
  if (m_block == nullptr) m_block.reset(new (std::nothrow) fast::PumpBlock);
  if (m_block == nullptr) {
    fail();
    return begin;
  }
  if (m_composer != nullptr) m_composer->start(*m_plan, last);
  m_pump.start(*m_plan, *m_block, begin, end, m_target.has_value(), m_composer.get());
  m_segmentUnit = nullptr;
  const unsigned char* reached = end;
  while (m_status == StreamStatus::kGood) {
    Stop stop;
    if (m_target) {
      m_segment.clear();
      m_segmentIn = m_pump.in();
      DataBufferOutput segment(m_segment);
      stop = m_pump.run(segment);
    } else {
      stop = m_pump.run(*m_out);
    }
    if (m_composer != nullptr && m_repertoire.hasFailed()) fail();
    if (m_target && !writeSegment(stop)) break;
    if (stop == Stop::kEnd) {
      reached = m_pump.in();
      break;
    }
    if (stop == Stop::kFull) fail();
    if (stop == Stop::kMalformed && !decideMalformed(last)) {
      reached = m_pump.in();
      break;
    }
    if (stop == Stop::kUnmappable && !decideUnmappable(last)) {
      reached = m_pump.sourceOf(m_pump.unit());
      break;
    }
  }
  // At the end of the stream nobody asks for lines any more.
  if (m_status == StreamStatus::kGood && !m_isEnd) lineOf(reached);
  return reached;
}

// What the decoder stopped at: a malformed piece, or text in a form that the kernels leave to
// others. False when what follows decides.
bool StreamConverter::Core::decideMalformed(bool last) {
  const unsigned char* const at = m_pump.in();
  const std::size_t left = bytesBetween(at, m_pump.inEnd());
  const bool bigEndian = m_plan->decoding.bigEndian;
  Piece piece{StreamErrorKind::kMalformed, at, 1, -1};
  switch (m_plan->decoding.form) {
    case EncodingForm::kUtf8:
      return decideUtf8(at, left, last);
    case EncodingForm::kUtf16:
      if (left < 2 || (left < 4 && isHighSurrogate(unitAt(at, bigEndian)))) {
        if (!last) return false;
      }
      if (left >= 2) {
        piece.length = 2;
        piece.codePoint = static_cast<std::int32_t>(unitAt(at, bigEndian));
      }
      if (isCutPair(at, left, bigEndian)) piece.length = left;
      break;
    case EncodingForm::kUtf32: {
      if (left < 4 && !last) return false;
      piece.length = std::min<std::size_t>(left, 4);
      const std::uint32_t value = left < 4 ? 0x110000 : scalarAt(at, bigEndian);
      if (value < 0x10000) piece.codePoint = static_cast<std::int32_t>(value);
      break;
    }
    case EncodingForm::kDoubleByte: {
      const fast::DoubleByteDecoder& table = *m_plan->decoding.table.doubleByte;
      if (left < table.decisiveLength(*at) && !last) return false;
      piece.length = table.lackingLength(at, left);
      break;
    }
    default:
      break;
  }
  m_pump.skip(piece.length);
  treatPiece(piece);
  return true;
}

// Whether the text ends within a pair of surrogates, of UTF-16 where that is one malformed piece.
bool StreamConverter::Core::isCutPair(const unsigned char* at, std::size_t left,
                                      bool bigEndian) const {
  return left == 3 && m_plan->source->hasWebRules && isHighSurrogate(unitAt(at, bigEndian));
}

// A pair of surrogates in two three-byte forms is read; a form on its own is malformed.
bool StreamConverter::Core::decideUtf8(const unsigned char* at, std::size_t left, bool last) {
  if (!last && isCutUtf8(at, left)) return false;
  if (m_plan->source->hasWebRules) {
    // A surrogate is no character: of its form, each byte is malformed.
    const bool isSurrogateForm = at[0] == 0xED && left > 1 && at[1] >= 0xA0;
    const std::size_t length = isSurrogateForm ? 1 : invalidLength(at, left);
    m_pump.skip(length);
    treatPiece({StreamErrorKind::kMalformed, at, length, -1});
    return true;
  }
  const Utf8Sequence whole = decodeScalar(at, left);
  if (whole.valid) {
    m_pump.skip(whole.length);
    if (m_plan->isCopy) {
      if (!m_out->append(at, whole.length)) fail();
      return true;
    }
    const std::uint32_t high = highSurrogateOf(whole.value), low = lowSurrogateOf(whole.value);
    const unsigned char units[4] = {
        static_cast<unsigned char>(high), static_cast<unsigned char>(high >> 8),
        static_cast<unsigned char>(low), static_cast<unsigned char>(low >> 8)};
    const Piece piece{StreamErrorKind::kNoPlace, at, whole.length,
                      static_cast<std::int32_t>(whole.value)};
    if (!writeUnits(units, sizeof units, piece) && !writeApproximation(piece)) treatPiece(piece);
    return true;
  }
  const bool mayBeSurrogate = at[0] == 0xED;
  const Utf8Sequence first = mayBeSurrogate ? decodeUtf8(at, left) : whole;
  m_pump.skip(first.length);
  treatPiece({StreamErrorKind::kMalformed, at, first.length,
              first.valid ? static_cast<std::int32_t>(first.value) : -1});
  return true;
}

// Writes the units of one character that stands at a place; false when it has no place.
bool StreamConverter::Core::writeUnits(const unsigned char* units, std::size_t bytes,
                                       const Piece& piece) {
  unsigned char written[fast::kKernelSlack + 16];
  const fast::KernelResult r =
      fast::encode(*m_plan, units, units + bytes, written, written + sizeof written);
  if (r.in != units + bytes) return false;
  writeCharacter(written, bytesBetween(written, r.out), piece);
  return true;
}

void StreamConverter::Core::writeCharacter(const unsigned char* bytes, std::size_t count,
                                           const Piece& piece) {
  m_fixedPiece = &piece;
  const bool isWritten =
      m_target ? m_target->write(bytes, static_cast<std::uint32_t>(count), Behind::kMore, *m_out)
               : m_out->append(bytes, count);
  m_fixedPiece = nullptr;
  if (!isWritten) fail();
}

// What the encoder stopped at: a character that has no place, or an unpaired surrogate. False when
// what follows decides.
bool StreamConverter::Core::decideUnmappable(bool last) {
  const unsigned char* const unit = m_pump.unit();
  const std::size_t left = bytesBetween(unit, m_pump.unitEnd());
  const bool isSource = m_pump.unitEnd() == m_pump.inEnd();
  if (left == 1) {  // of a source in UTF-16
    if (!last) return false;
    m_pump.skipUnits(1);
    treatPiece({StreamErrorKind::kMalformed, unit, 1, -1});
    return true;
  }
  if (m_settings.treatment == StreamTreatment::kDrop && !m_isReportWanted && dropRun()) return true;
  const std::uint32_t value = unitAt(unit, false);
  Piece piece{StreamErrorKind::kNoPlace, nullptr, 2, static_cast<std::int32_t>(value)};
  std::size_t units = 2;
  bool isWritten = false;
  if (isSurrogate(value)) {
    if (isHighSurrogate(value) && left < 4 && isSource && !last) return false;
    if (isHighSurrogate(value) && left >= 4 && isLowSurrogate(unitAt(unit + 2, false))) {
      piece.codePoint = static_cast<std::int32_t>(joinSurrogates(value, unitAt(unit + 2, false)));
      units = 4;
      isWritten = writeApproximation(unit, static_cast<std::uint32_t>(piece.codePoint));
    } else {
      piece.kind = StreamErrorKind::kMalformed;
    }
  } else {
    isWritten = writeSpecialUnit(unit) || writeApproximation(unit, value);
  }
  if (isWritten) return true;
  const bool isRead = m_isReportWanted || m_treatment.readsPieces(piece.kind);
  const bool isCut = isSource && isCutPair(unit, left, false);
  piece.at = isRead ? m_pump.sourceOf(unit) : nullptr;
  if (piece.at != nullptr) piece.length = m_pump.sourceLength(unit, units) + (isCut ? 1 : 0);
  m_pump.skipUnits(isCut ? left : units);
  if (m_target) m_segmentUnit = m_pump.unit();
  treatPiece(piece);
  return true;
}

// Drops the characters from unit() on that the table of the target lacks, where nobody asks about
// each of them. False when the first one is for others to decide.
bool StreamConverter::Core::dropRun() {
  const fast::Encoder& table = m_plan->encoding.table;
  const unsigned char* const begin = m_pump.unit();
  const unsigned char* unit = begin;
  for (; m_pump.unitEnd() - unit >= 2; unit += 2) {
    const std::uint32_t value = unitAt(unit, false);
    if (fast::mayBeSpecialUnit(value) || isSurrogate(value)) break;
    if (m_approximations.find(value)) break;
    const bool isLacking = table.singleByte != nullptr   ? table.singleByte->bytes[value] == 0
                           : table.doubleByte != nullptr ? table.doubleByte->codes[value] == 0
                                                         : false;
    if (!isLacking) break;
  }
  m_errorCount += bytesBetween(begin, unit) / 2;
  m_pump.skipUnits(bytesBetween(begin, unit));
  return unit != begin;
}

// No code page that a target's codec takes has one.
bool StreamConverter::Core::writeSpecialUnit(const unsigned char* unit) {
  if (m_target || !fast::mayBeSpecialUnit(unitAt(unit, false))) return false;
  if (!fast::writeSpecialUnit(*m_plan, unit, *m_out)) return false;
  m_pump.skipUnits(2);
  return true;
}

// Writes what approximates the character at unit(), if there is anything.
bool StreamConverter::Core::writeApproximation(const unsigned char* unit, std::uint32_t scalar) {
  const auto text = m_approximations.find(scalar);
  if (m_repertoire.hasFailed()) {
    fail();
    return true;
  }
  if (!text) return false;
  const std::size_t units = scalar > 0xFFFF ? 4 : 2;
  Piece piece{StreamErrorKind::kApproximated, nullptr, units, static_cast<std::int32_t>(scalar)};
  if (isApproximationWanted()) {
    piece.at = m_pump.sourceOf(unit);
    piece.length = m_pump.sourceLength(unit, units);
  }
  m_pump.skipUnits(units);
  if (m_target) m_segmentUnit = m_pump.unit();
  writeInstead(*text, piece);
  return true;
}

// The same for a character whose place is known.
bool StreamConverter::Core::writeApproximation(Piece piece) {
  const auto text = m_approximations.find(static_cast<std::uint32_t>(piece.codePoint));
  if (m_repertoire.hasFailed()) fail();
  if (text) writeInstead(*text, piece);
  return text.has_value() || m_status != StreamStatus::kGood;
}

void StreamConverter::Core::writeInstead(std::u32string_view text, Piece& piece) {
  piece.kind = StreamErrorKind::kApproximated;
  if (isApproximationWanted()) {
    reportInstead(errorAt(piece), text);
  } else {
    ++m_approximationCount;
  }
  unsigned char bytes[fast::Repertoire::kMaxBytes];
  for (const char32_t other : text) {
    writeCharacter(bytes, m_repertoire.write(other, bytes), piece);
  }
}

// The same for one that only the target's codec lacks.
bool StreamConverter::Core::writeInstead(const StreamError& error, std::u32string_view text) {
  reportInstead(error, text);
  DataBuffer bytes;  // of all: a letter and its mark may have one code
  unsigned char form[fast::Repertoire::kMaxBytes];
  for (const char32_t other : text) bytes.append(form, m_repertoire.write(other, form));
  if (bytes.hasFailed() || !m_target->writeTreatment(bytes.getData2(), bytes.getSize(), *m_out)) {
    fail();
  }
  return m_status == StreamStatus::kGood;
}

// Gives what the pump wrote last to the target's codec.
bool StreamConverter::Core::writeSegment(Stop stop) {
  m_walkedByte = 0;
  m_walkedUnit = m_segmentUnit != nullptr ? m_segmentUnit : m_pump.blockBegin();
  const Behind behind = stop == Stop::kUnmappable ? Behind::kMisfit : Behind::kMore;
  if (m_segment.hasFailed() ||
      !m_target->write(m_segment.getData2(), m_segment.getSize(), behind, *m_out)) {
    fail();
    return false;
  }
  m_segmentUnit = stop == Stop::kUnmappable ? m_pump.unit() : nullptr;
  return m_status == StreamStatus::kGood;
}

// Writes what waits for more text, and ends the text of the target.
void StreamConverter::Core::finish() {
  if (m_target && !m_target->leave(*m_out)) fail();
}

void StreamConverter::Core::fail() {
  if (m_status != StreamStatus::kGood) return;
  m_status = m_out->isFull ? StreamStatus::kDrainFailed : StreamStatus::kNoMemory;
}
