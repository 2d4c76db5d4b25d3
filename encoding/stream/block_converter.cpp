// The way of a stream's text from its source to its target.
#include "encoding/stream/block_converter.h"

#include <algorithm>
#include <type_traits>

BlockConverter::BlockConverter(std::unique_ptr<StreamSource> source,
                               std::unique_ptr<StreamTarget> target, EngineLegs& legs)
    : m_legs(legs),
      m_source(std::move(source)),
      m_target(std::move(target)),
      m_treatment(*m_target, legs),
      m_inBytes(m_source->bytesCodePage() != 0 &&
                m_source->bytesCodePage() == m_target->bytesCodePage()) {}

StreamStatus BlockConverter::prepare(const StreamSettings& settings) {
  m_stops = settings.treatment == StreamTreatment::kStop;
  m_drops = settings.treatment == StreamTreatment::kDrop;
  m_errorHandler = settings.errorHandler;
  m_drain = settings.drain;
  return m_treatment.prepare(settings);
}

// ---- Blocks. ----

std::size_t BlockConverter::convert(const unsigned char* data, std::size_t length, bool last,
                                    std::uint64_t offset, DataBuffer& out) {
  std::size_t done = 0;
  while (done < length && m_status == StreamStatus::kGood) {
    const std::size_t left = length - done;
    const auto window = static_cast<std::uint32_t>(std::min<std::size_t>(left, m_source->reach()));
    m_data = data + done;
    m_offset = offset + done;
    std::uint32_t used = 0;
    if (!takeBlock(m_data, window, last && window == left, used, out)) break;
    done += used;
  }
  return done;
}

// False when there was nothing to take.
bool BlockConverter::takeBlock(const unsigned char* data, std::uint32_t length, bool last,
                               std::uint32_t& used, DataBuffer& out) {
  m_block.clear();
  m_lineUnit = 0;
  used = m_source->take(data, length, last, m_block);
  if (m_block.hasFailed()) {
    m_status = StreamStatus::kNoMemory;
    return false;
  }
  if (m_inBytes) {
    writeBlock(m_block.bytes, m_block.byteCount, out);
  } else {
    writeBlock(m_block.units.data(), m_block.units.size(), out);
  }
  lineOf(m_block.units.size());
  if (m_drain != nullptr && out.getSize() >= StreamDrain::kDrainSize && !out.hasFailed() &&
      !m_drain->onStreamOutput(out) && m_status == StreamStatus::kGood) {
    m_status = StreamStatus::kDrainFailed;
  }
  return used != 0 || !m_block.units.isEmpty() || !m_block.bad.isEmpty();
}

// The text between the bad pieces, and what stands for these.
template <typename Element>
void BlockConverter::writeBlock(const Element* elements, std::uint32_t count, DataBuffer& out) {
  constexpr bool kAreBytes = std::is_same_v<Element, unsigned char>;
  std::uint32_t done = 0;
  for (std::uint32_t i = 0; i <= m_block.bad.size(); ++i) {
    const bool isLast = i == m_block.bad.size();
    const BadPiece bad = isLast ? BadPiece{} : m_block.bad[i];
    const std::uint32_t end = isLast ? count : kAreBytes ? bad.byte : bad.unit;
    if (end != done) {
      emit(Text<Element>{elements + done, end - done, nullptr, 0, false, done}, Behind::kMore, out);
    }
    if (isLast || m_status != StreamStatus::kGood) return;
    treat(malformed(bad), m_data + bad.offset, bad.length, out);
    if (m_status != StreamStatus::kGood) return;
    done = kAreBytes ? end + bad.byteLength : end;
  }
}

void BlockConverter::finish(DataBuffer& out) {
  flush(out);
  if (!m_target->leaveShift(out)) m_status = StreamStatus::kNoMemory;
}

// ---- Text. ----

template <typename Element>
BlockConverter::Text<Element> BlockConverter::Text<Element>::slice(std::uint32_t begin,
                                                                   std::uint32_t end) const {
  const std::uint32_t skipped = std::min(begin, placeCount);
  Text part = *this;
  part.elements += begin;
  part.count = end - begin;
  part.places += skipped;
  part.placeCount = std::min(placeCount - skipped, part.count);
  part.first += begin - skipped;
  return part;
}

template <>
Rows<std::uint16_t>& BlockConverter::waiting() {
  return m_waitingUnits;
}
template <>
Rows<unsigned char>& BlockConverter::waiting() {
  return m_waitingBytes;
}

template <typename Element>
bool BlockConverter::encode(const Text<Element>& text, Behind behind, DataBuffer& out,
                            EncodeResult& result) {
  if constexpr (std::is_same_v<Element, unsigned char>) {
    return m_target->encodeBytes(text.elements, text.count, behind, out, result);
  } else {
    return m_target->encode(text.elements, text.count, behind, out, result);
  }
}

// Writes a text, behind what waits, and treats the characters in it that have no place.
template <typename Element>
void BlockConverter::emit(const Text<Element>& text, Behind behind, DataBuffer& out) {
  if (!waiting<Element>().isEmpty()) return emitJoined(text, behind, out);
  if (text.count == 0) return;
  EncodeResult result;
  if (!encode(text, behind, out, result)) {
    m_status = StreamStatus::kNoMemory;
    return;
  }
  if (result.misfits.isEmpty()) {
    if (result.used < text.count) keepWaiting(text, result.used);
    return;
  }
  std::uint32_t done = 0;
  for (std::uint32_t i = 0; i < result.misfits.size(); ++i) {
    const MisfitPiece& misfit = result.misfits[i];
    if (misfit.index != done) emit(text.slice(done, misfit.index), Behind::kMisfit, out);
    if (m_status != StreamStatus::kGood) return;
    done = misfit.index + misfit.count;
    const StreamError error = placeOf(text, misfit.index);
    // A treatment's own text is not treated again.
    if (error.length != 0) treat(error, error.bytes, error.byteCount, out);
    if (m_status != StreamStatus::kGood) return;
  }
  emit(text.slice(done, text.count), behind, out);
}

// The same for a text behind what waits.
template <typename Element>
void BlockConverter::emitJoined(const Text<Element>& text, Behind behind, DataBuffer& out) {
  Rows<Element> joined;
  Rows<StreamError> places;
  joined.add(waiting<Element>().data(), waiting<Element>().size());
  joined.add(text.elements, text.count);
  places.add(m_waitingPlaces.data(), m_waitingPlaces.size());
  places.add(text.places, text.placeCount);
  if (joined.hasFailed() || places.hasFailed()) {
    m_status = StreamStatus::kNoMemory;
    return;
  }
  waiting<Element>().clear();
  m_waitingPlaces.clear();
  emit(Text<Element>{joined.data(), joined.size(), places.data(), places.size(), text.isTreatment,
                     text.first},
       behind, out);
}

template <typename Element>
void BlockConverter::keepWaiting(const Text<Element>& text, std::uint32_t from) {
  for (std::uint32_t i = from; i < text.count; ++i) {
    waiting<Element>().add(text.elements[i]);
    m_waitingPlaces.add(placeOf(text, i));
  }
  if (waiting<Element>().hasFailed() || m_waitingPlaces.hasFailed()) {
    m_status = StreamStatus::kNoMemory;
  }
}

void BlockConverter::flush(DataBuffer& out) {
  emit(Text<std::uint16_t>{nullptr, 0, nullptr, 0, true, 0}, Behind::kNothing, out);
  emit(Text<unsigned char>{nullptr, 0, nullptr, 0, true, 0}, Behind::kNothing, out);
}

// ---- Places. ----

StreamError BlockConverter::malformed(const BadPiece& piece) {
  StreamError error;
  error.kind = StreamErrorKind::kMalformed;
  error.offset = m_offset + piece.offset;
  error.length = piece.length;
  error.codePoint = piece.codePoint;
  error.line = lineOf(piece.unit);
  fillBytes(error);
  return error;
}

// Of a character without a place. Its length is 0 when a treatment wrote it.
template <typename Element>
StreamError BlockConverter::placeOf(const Text<Element>& text, std::uint32_t index) {
  if (index < text.placeCount) return text.places[index];
  StreamError error;
  if (text.isTreatment) return error;
  const std::uint32_t inBlock = text.first + index - text.placeCount;
  const SourcePlace place = std::is_same_v<Element, unsigned char> ? m_source->locateByte(inBlock)
                                                                   : m_source->locateUnit(inBlock);
  error.kind = StreamErrorKind::kNoPlace;
  error.offset = m_offset + place.offset;
  error.length = place.length;
  error.line = lineOf(place.unit);
  const std::uint16_t unit = m_block.units[place.unit];
  error.codePoint =
      isSurrogate(unit)
          ? static_cast<std::int32_t>(joinSurrogates(unit, m_block.units[place.unit + 1]))
          : unit;
  fillBytes(error);
  return error;
}

void BlockConverter::fillBytes(StreamError& error) const {
  error.byteCount =
      static_cast<std::uint8_t>(std::min<std::uint32_t>(error.length, StreamError::kMaxBytes));
  std::copy_n(m_data + (error.offset - m_offset), error.byteCount, error.bytes);
}

// To be asked in ascending order within a block; at its end for all of it.
std::uint64_t BlockConverter::lineOf(std::uint32_t unit) {
  if (unit > m_lineUnit) {
    const std::uint16_t* units = m_block.units.data();
    m_lines += static_cast<std::uint64_t>(
        std::count(units + m_lineUnit, units + unit, std::uint16_t{'\n'}));
    m_lineUnit = unit;
  }
  return m_lines;
}

// ---- Treatment. ----

// Reports a piece and writes what stands for it.
void BlockConverter::treat(const StreamError& error, const unsigned char* piece,
                           std::uint32_t length, DataBuffer& out) {
  if (m_errorCount++ == 0 || error.offset < m_firstError.offset) m_firstError = error;
  if (m_errorHandler != nullptr) m_errorHandler->onStreamError(error);
  if (m_stops) {
    flush(out);
    m_status = StreamStatus::kStopped;
  } else if (!m_drops) {
    const Treatment::Replacement replacement = m_treatment.replace(error, piece, length);
    if (m_treatment.hasFailed()) m_status = StreamStatus::kNoMemory;
    if (m_status == StreamStatus::kGood) write(replacement, out);
  }
}

void BlockConverter::write(const Treatment::Replacement& replacement, DataBuffer& out) {
  if (replacement.count == 0) return;
  if (replacement.isRaw) {
    flush(out);
    const bool ok = m_target->leaveShift(out) && out.append(replacement.bytes, replacement.count);
    if (!ok) m_status = StreamStatus::kNoMemory;
    return;
  }
  if (!m_inBytes) {
    emit(Text<std::uint16_t>{replacement.units, replacement.count, nullptr, 0, true, 0},
         Behind::kMore, out);
    return;
  }
  m_textBytes.clear();
  bool fits = false;
  if (!m_target->toBytes(replacement.units, replacement.count, m_textBytes, fits)) {
    m_status = StreamStatus::kNoMemory;
  }
  if (!fits || m_status != StreamStatus::kGood) return;
  emit(Text<unsigned char>{m_textBytes.getData2(), m_textBytes.getSize(), nullptr, 0, true, 0},
       Behind::kMore, out);
}
