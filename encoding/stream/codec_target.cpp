#include "encoding/stream/codec_target.h"

#include <algorithm>

#include "encoding/codecs/escape_sequence.h"
#include "support/utf.h"

namespace {

// Behind an ESC, what tells whether it begins an escape sequence.
constexpr std::uint32_t kMaxTail = 3;
// How many ESC are kept back, each so close before the next. Counting them, and not the bytes, lets
// the same ones wait however the text is cut.
constexpr int kMaxWaiting = 32;

// An ESC of the text has a place as long as it does not make an escape sequence with what follows
// it. What follows one so closely that it counts may change, should that turn out to have no place.
std::uint32_t firstToWait(const unsigned char* bytes, std::uint32_t used, std::uint32_t count,
                          Behind behind) {
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

constexpr int kUtf16Le = 1200;

// A header, shifts and whatever else a short text may take besides its characters.
constexpr std::uint32_t kSomeRoom = 256;

// Whether a byte of UTF-16 is not the first of a unit, or pair of surrogates.
bool isInsideCharacter(const unsigned char* text, std::uint32_t byte) {
  if (byte % 2 != 0) return true;
  const auto unitAt = [&](std::uint32_t at) { return text[at] | text[at + 1] * 256u; };
  return byte >= 2 && isLowSurrogate(unitAt(byte)) && isHighSurrogate(unitAt(byte - 2));
}

}  // namespace

CodecTarget::Text CodecTarget::Text::slice(std::uint32_t begin, std::uint32_t end) const {
  const std::uint32_t skipped = std::min(begin, placeCount);
  Text part = *this;
  part.bytes += begin;
  part.count = end - begin;
  part.places += skipped;
  part.placeCount = std::min(placeCount - skipped, part.count);
  part.first += begin - skipped;
  return part;
}

// Writes a text, behind what waits, and has the characters in it treated that have no place.
bool CodecTarget::emit(const Text& text, Behind behind, Output& out) {
  if (m_waiting.getSize() != 0) return emitJoined(text, behind, out);
  if (text.count == 0) return true;
  Result result;
  if (!encode(text.bytes, text.count, behind, out, result)) return false;
  if (result.misfits.isEmpty()) return result.used == text.count || keepWaiting(text, result.used);
  std::uint32_t done = 0;
  for (std::uint32_t i = 0; i < result.misfits.size(); ++i) {
    const ReplacedInput& misfit = result.misfits[i];
    if (misfit.offset != done && !emit(text.slice(done, misfit.offset), Behind::kMisfit, out)) {
      return false;
    }
    done = misfit.offset + misfit.length;
    const StreamError error = placeOf(text, misfit.offset);
    // A treatment's own text is not treated again.
    if (error.length != 0 && !m_client.treatMisfit(error)) return false;
  }
  return emit(text.slice(done, text.count), behind, out);
}

// The same for a text behind what waits.
bool CodecTarget::emitJoined(const Text& text, Behind behind, Output& out) {
  DataBuffer joined;
  Rows<StreamError> places;
  joined.append(m_waiting);
  joined.append(text.bytes, text.count);
  places.add(m_waitingPlaces.data(), m_waitingPlaces.size());
  places.add(text.places, text.placeCount);
  if (joined.hasFailed() || places.hasFailed()) return false;
  m_waiting.clear();
  m_waitingPlaces.clear();
  return emit({joined.getData2(), joined.getSize(), places.data(), places.size(), text.isTreatment,
               text.first},
              behind, out);
}

bool CodecTarget::keepWaiting(const Text& text, std::uint32_t from) {
  m_waiting.append(text.bytes + from, text.count - from);
  StreamError place;
  for (std::uint32_t i = from; i < text.count; ++i) {
    // Only characters have places, and not every byte of them.
    const bool isInside =
        m_codec.codePage == kUtf16Le && isInsideCharacter(text.bytes + from, i - from);
    if (!isInside) place = placeOf(text, i);
    m_waitingPlaces.add(place);
  }
  return !m_waiting.hasFailed() && !m_waitingPlaces.hasFailed();
}

// Its length is 0 when a treatment wrote the byte.
StreamError CodecTarget::placeOf(const Text& text, std::uint32_t index) {
  if (index < text.placeCount) return text.places[index];
  if (text.isTreatment) return {};
  return m_client.placeAt(text.first + index - text.placeCount);
}

bool CodecTarget::leave(Output& out) {
  Result result;
  return flush(out) && encode(nullptr, 0, Behind::kNothing, out, result);
}

bool CodecTarget::holds(const unsigned char* bytes, std::uint32_t count, bool& fits) const {
  DataBuffer scratch;
  fits = codecHolds(m_codec, bytes, count, scratch);
  return !scratch.hasFailed();
}

std::uint32_t CodecTarget::run(const unsigned char* bytes, std::uint32_t count, bool last,
                               DataBuffer& written, Result& result) {
  written.clear();
  result.misfits.clear();
  ReplacementRows misfits(result.misfits);
  return m_codec.write(bytes, count, last, m_state, written, &misfits);
}

// Writes the letter, with its marks, that only waits for more marks. Its own first character stands
// behind it for that: it joins nothing in front of it, takes no shift that the letter has not
// taken, and waits itself. What waits for another reason stays: an ESC, and what no codec joins
// marks to.
void CodecTarget::closeRest(const unsigned char* bytes, std::uint32_t count, DataBuffer& written,
                            Result& result) {
  const std::uint32_t rest = count - result.used;
  if (m_codec.codePage != kUtf16Le || !result.misfits.isEmpty() || rest < 2) return;
  const unsigned char* const letter = bytes + result.used;
  const bool isPair = rest >= 4 && isInsideCharacter(letter, 2);
  if (letter[0] == kEscape && letter[1] == 0) return;
  DataBuffer twice;
  twice.append(letter, rest);
  twice.append(letter, isPair ? 4 : 2);
  if (twice.hasFailed()) return written.latchFailure();
  const CodecState before = m_state;
  const unsigned int size = written.getSize();
  ReplacementRows misfits(result.misfits);
  const unsigned int used =
      m_codec.write(twice.getData2(), twice.getSize(), false, m_state, written, &misfits);
  if (used == rest && result.misfits.isEmpty()) {
    result.used = count;
    return;
  }
  result.misfits.clear();
  written.truncate(size);
  m_state = before;
}

bool CodecTarget::encode(const unsigned char* bytes, std::uint32_t count, Behind behind,
                         Output& out, Result& result) {
  const bool last = behind == Behind::kNothing;
  const CodecState before = m_state;
  // Where there is plenty of room, it is written where it stays.
  DataBuffer inPlace;
  const bool hasRoom = out.room() >= std::uint64_t{count} * 2 + kSomeRoom;
  if (hasRoom) {
    constexpr std::size_t kMost = 0xFFFFFFFF;
    inPlace.lendStorage(out.next, static_cast<unsigned int>(std::min(out.room(), kMost)));
  }
  DataBuffer& written = hasRoom ? inPlace : m_written;
  result.used = run(bytes, count, last, written, result);
  if (last && m_codec.resume != nullptr) m_codec.resume(before, result.used != 0, m_state);
  if (behind == Behind::kMisfit) closeRest(bytes, count, written, result);
  const std::uint32_t waiting = firstToWait(bytes, result.used, count, behind);
  if (result.misfits.isEmpty() && waiting < result.used) {
    m_state = before;
    // The last of them decides for no one.
    result.used = run(bytes, waiting + 1, false, written, result);
  }
  if (written.hasFailed() || result.misfits.hasFailed()) return false;
  if (result.misfits.isEmpty() && (result.used != 0 || last)) {
    // What the buffer in place had no room for has moved. Another buffer may well begin where the
    // room ends: some allocators put blocks side by side.
    const bool isInPlace = hasRoom && inPlace.getData2() == out.next;
    if (!isInPlace) return out.append(written.getData2(), written.getSize());
    out.next += written.getSize();
    return true;
  }
  // Nothing of the text is written, so nothing in front of it either, such as a header.
  m_state = before;
  result.used = 0;
  return true;
}
