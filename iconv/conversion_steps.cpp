// Conversion: one character at a time, where clean text ends.
#include <algorithm>
#include <cstring>

#include "encoding/codecs/escape_sequence.h"
#include "encoding/output.h"
#include "encoding/special_units.h"
#include "iconv/conversion_character.h"
#include "iconv/lent_buffer.h"
#include "iconv/similar.h"
#include "support/utf.h"

namespace iconv_layer {
namespace {

using fast::kKernelSlack;

// The least that a character takes.
std::size_t leastWidth(const EncodingRow& row) {
  return row.form == EncodingForm::kUtf16 ? 2 : row.form == EncodingForm::kUtf32 ? 4 : 1;
}

// Writes a few units where there is room for whatever they become; false, with nothing done, where
// one has no place.
bool encodeAll(const fast::Plan& plan, const unsigned char* units, std::size_t bytes, Output& out) {
  unsigned char* to = out.next;
  if (const fast::SingleByteEncoder* const table = plan.encoding.table.singleByte) {
    for (std::size_t i = 0; i < bytes; i += 2) {
      *to = table->bytes[unitAt(units + i)];
      if (*to++ == 0) return false;
    }
  } else {
    const fast::KernelResult r = fast::encode(plan, units, units + bytes, to, out.end);
    if (r.in != units + bytes) return false;
    to = r.out;
  }
  out.next = to;
  return true;
}

// The room of a character.
class SmallOutput final : public Output {
 public:
  SmallOutput(unsigned char* begin, std::size_t size) {
    next = begin;
    end = begin + size;
  }

 private:
  bool grow(std::size_t /*count*/, std::uint64_t /*expected*/) override { return false; }
};

}  // namespace

// ---- Writing. ----

// The plan that writes units; that of one encoding to itself has nothing to write with.
const fast::Plan* Conversion::writingPlan() const {
  constexpr int kUtf16Le = 1200;
  return m_plan->isCopy ? fast::openPlan(kUtf16Le, m_plan->to, fast::Reader::kStream) : m_plan;
}

// Whether units have a place in the target, and what is written for them.
bool Conversion::write(const unsigned char* units, std::size_t bytes, Written& written) const {
  const fast::Plan* const plan = writingPlan();
  if (plan == nullptr) return false;
  unsigned char segment[kLongest * 4 + kKernelSlack];
  SmallOutput out(segment, sizeof segment);
  const unsigned char* const end = units + bytes;
  if (m_route.to.isUcs2) {
    for (std::size_t i = 0; i < bytes; i += 2) {
      if (isSurrogate(unitAt(units + i))) return false;
    }
  }
  while (units != end) {
    if (out.room() < kKernelSlack) return false;
    if (plan->isCopy) {  // UTF-16 to what has that behind its codec
      if (!out.append(units, static_cast<std::size_t>(end - units))) return false;
      break;
    }
    const fast::KernelResult r = fast::encode(*plan, units, end, out.next, out.end);
    out.next = r.out;
    units = r.in;
    if (units == end) break;
    if (out.room() < kKernelSlack) return false;
    if (!fast::mayBeSpecialUnit(unitAt(units)) || !fast::writeSpecialUnit(*plan, units, out)) {
      return false;
    }
    units += 2;
  }
  return writeSegment(segment, static_cast<std::size_t>(out.next - segment), written);
}

// The same for text as the codec of the target takes it, or for what is written where it has none.
bool Conversion::writeSegment(const unsigned char* segment, std::size_t bytes,
                              Written& written) const {
  written.writing = m_writing;
  written.heldBytes = 0;
  if (writer() == nullptr) {
    if (bytes > sizeof written.out) return false;
    std::memcpy(written.out, segment, bytes);
    written.bytes = bytes;
    return true;
  }
  LentBuffer<4096 + 512> out;
  LentBuffer<kLongest * 8> joined;
  joined.append(m_held, m_heldBytes);
  joined.append(segment, static_cast<unsigned int>(bytes));
  MarkCounter marks;
  const unsigned int taken =
      writer()->write(joined.getData2(), joined.getSize(), false, written.writing, out, &marks);
  written.bytes = out.getSize();
  written.heldBytes = joined.getSize() - taken;
  if (marks.count() != 0 || written.bytes > sizeof written.out || written.heldBytes > kMostHeld) {
    return false;
  }
  std::memcpy(written.out, out.getData2(), written.bytes);
  std::memcpy(written.held, joined.getData2() + taken, written.heldBytes);
  return true;
}

// Finds the first text that stands for a character and has a place in the target.
bool Conversion::writeSimilar(std::uint32_t scalar, Written& written) const {
  SimilarText similar(scalar);
  unsigned char units[SimilarText::kMostBytes];
  while (true) {
    const std::size_t bytes = similar.next(units);
    if (bytes == SimilarText::kNone) return false;
    if (write(units, bytes, written)) return true;
  }
}

// Writes the same for the characters that a pump has stopped at, or leaves them out, where there is
// room in any case; so that the text behind them is not decoded again. False, with nothing done,
// for what is to be looked at more closely.
bool Conversion::passUnmappable(fast::Pump& pump, Output& out, Outcome& outcome) const {
  const fast::SingleByteEncoder* const table = m_plan->encoding.table.singleByte;
  if (m_plan->isCopy || !passOne(pump, out, outcome)) return false;
  while (table != nullptr && pump.unitEnd() - pump.unit() >= 2 &&
         table->bytes[unitAt(pump.unit())] == 0 && passOne(pump, out, outcome)) {
  }
  return true;
}

bool Conversion::passOne(fast::Pump& pump, Output& out, Outcome& outcome) const {
  constexpr std::size_t kRoom = SimilarText::kMostBytes * 2 + kKernelSlack;
  const auto left = static_cast<std::size_t>(pump.unitEnd() - pump.unit());
  if (out.room() < kRoom || left < 2) return false;
  const std::uint32_t first = unitAt(pump.unit());
  const std::size_t length = isHighSurrogate(first) ? 4 : 2;
  if (fast::mayBeSpecialUnit(first) || left < length || !isText(pump.unit(), length)) return false;
  const Suffixes& suffixes = m_route.suffixes;
  bool isWritten = false;
  if (suffixes.transliterates) {
    SimilarText similar(length == 4 ? joinSurrogates(first, unitAt(pump.unit() + 2)) : first);
    unsigned char units[SimilarText::kMostBytes];
    std::size_t bytes = 0;
    while (!isWritten && (bytes = similar.next(units)) != SimilarText::kNone) {
      isWritten = encodeAll(*m_plan, units, bytes, out);
    }
  }
  if (!isWritten && !suffixes.ignores && !suffixes.discards) return false;
  outcome.ignoredSome = outcome.ignoredSome || (!isWritten && suffixes.ignores);
  ++outcome.irreversible;
  pump.skipUnits(length);
  return true;
}

// ---- One character. ----

Conversion::Status Conversion::put(const Written& written, Place& place) {
  if (written.bytes > place.room()) return Status::kFull;
  std::memcpy(place.out, written.out, written.bytes);
  place.out += written.bytes;
  m_writing = written.writing;
  std::memcpy(m_held, written.held, written.heldBytes);
  m_heldBytes = static_cast<std::uint8_t>(written.heldBytes);
  return Status::kGood;
}

// In front of the first character that is read.
Conversion::Status Conversion::writeMark(Place& place) {
  const std::string_view mark = markOf(*m_route.to.row);
  if (place.room() < mark.size()) return Status::kFull;
  std::memcpy(place.out, mark.data(), mark.size());
  place.out += mark.size();
  m_hasMark = true;
  return Status::kGood;
}

Conversion::Status Conversion::takeCharacter(Place& place, Outcome& outcome) {
  if (m_route.from.isWide || m_route.to.isWide) {
    if (place.left() < leastWidth(*m_route.from.row)) return Status::kCut;
    if (place.room() < leastWidth(*m_route.to.row)) return Status::kFull;
  }
  Character character;
  read(place, character);
  if (character.kind == Character::Kind::kCut) {
    return keepWaiting(place) ? Status::kGood : Status::kCut;
  }
  const Suffixes& suffixes = m_route.suffixes;
  if (character.kind == Character::Kind::kMalformed) {
    if (!suffixes.ignores) return Status::kBad;
    noteUnwritten(place, outcome);
    ++outcome.irreversible;
    outcome.ignoredSome = true;
  } else if (character.unitBytes != 0) {
    if (m_route.to.hasMark && !m_hasMark) {
      if (const Status status = writeMark(place); status != Status::kGood) return status;
    }
    if (const Status status = writeCharacter(place, character, outcome); status != Status::kGood) {
      return status;
    }
  } else {
    noteUnwritten(place, outcome);
  }
  m_reading = character.reading;
  place.in += character.length;
  return Status::kGood;
}

void Conversion::noteUnwritten(const Place& place, Outcome& outcome) const {
  if (outcome.unwritten != nullptr) return;
  outcome.unwritten = place.in;
  outcome.beforeUnwritten = m_reading;
}

// Writes a character, or what stands for it.
Conversion::Status Conversion::writeCharacter(Place& place, const Character& character,
                                              Outcome& outcome) {
  const Suffixes& suffixes = m_route.suffixes;
  Written written;
  bool isWritten = m_plan->isCopy ? writeSegment(character.text, character.textBytes, written)
                                  : write(character.units, character.unitBytes, written);
  const bool isReversible = isWritten;
  // With no room at all nobody looks at a character without a place.
  if (!isWritten && place.room() < leastWidth(*m_route.to.row)) return Status::kFull;
  if (!isWritten && suffixes.transliterates) {
    const std::uint32_t first = unitAt(character.units);
    const std::uint32_t scalar =
        isHighSurrogate(first) ? joinSurrogates(first, unitAt(character.units + 2)) : first;
    isWritten = writeSimilar(scalar, written);
  }
  if (isWritten) {
    if (const Status status = put(written, place); status != Status::kGood) return status;
    outcome.unwritten = nullptr;
  } else {
    if (!suffixes.ignores && !suffixes.discards) return Status::kBad;
    outcome.ignoredSome = outcome.ignoredSome || suffixes.ignores;
  }
  if (!isReversible) ++outcome.irreversible;
  return Status::kGood;
}

// ---- What waits. ----

// Keeps the rest of the input where it is a text, of which what follows may make another one. False
// where it ends within a character.
bool Conversion::keepWaiting(Place& place) {
  constexpr int kUtf7 = 65000;
  const std::size_t left = place.left();
  if (reader() == nullptr || left > kMostWaiting) return false;
  if (m_route.from.row->number == kUtf7) {
    // Behind the first byte of base64 its bytes are no characters on their own.
    if (left == 1 && place.in[0] == '+') return false;
  } else {
    // Of packed septets the last byte is known as such only when the text has ended. Where there
    // are escape sequences, ESC wants what follows it.
    const bool isPacked = reader()->cut == cutPackedGsm;
    const bool isStateful = m_route.from.row->kind == CharsetKind::kStateful;
    if (isStateful && !isPacked && place.in[0] == kEscape) return false;
    LentBuffer<4096 + 128> text;
    MarkCounter marks;
    CodecState state = m_reading;
    strictReader()(place.in, static_cast<unsigned int>(left), true, state, text, &marks);
    if (marks.count() != 0 || (text.getSize() == 0 && !isPacked)) return false;
  }
  std::memcpy(m_waiting, place.in, left);
  m_waitingBytes = static_cast<std::uint8_t>(left);
  place.in = place.inEnd;
  return true;
}

// Goes on with what waits and what follows it.
Conversion::Status Conversion::takeWaiting(Place& place, Outcome& outcome) {
  constexpr std::size_t kMostAdded = 240;
  if (place.in == place.inEnd) return Status::kGood;
  unsigned char joined[kMostWaiting + kMostAdded];
  const std::size_t waiting = m_waitingBytes;
  const std::size_t added = std::min(place.left(), kMostAdded);
  std::memcpy(joined, m_waiting, sizeof m_waiting);
  std::memcpy(joined + waiting, place.in, added);
  Place aside{joined, joined + waiting + added, place.out, place.outEnd};
  m_waitingBytes = 0;
  // A short text at once, where it is clean. With shifts in it one would have to know which of them
  // stand in front of a character that does not fit.
  const bool isMarkDue = m_route.to.hasMark && !m_hasMark;
  const bool isTaken = added == place.left() && reader()->isStateless && m_steps == 0 &&
                       !isMarkDue && takeWindow(aside, aside.left());
  Status status = Status::kGood;
  if (aside.in == joined) m_tooFew = static_cast<std::uint8_t>(waiting);
  while (status == Status::kGood && aside.in < joined + waiting && aside.in != aside.inEnd) {
    status = takeCharacter(aside, outcome);
    m_tooFew = 0;
  }
  outcome.unwritten = nullptr;
  place.out = aside.out;
  const auto used = static_cast<std::size_t>(aside.in - joined);
  if (used >= waiting) {
    place.in += used - waiting;
  } else if (status != Status::kBad) {  // else it is malformed, and told of as read
    m_waitingBytes = static_cast<std::uint8_t>(waiting - used);
    std::memcpy(m_waiting, aside.in, m_waitingBytes);
  }
  if (status == Status::kGood && isTaken && place.in != place.inEnd && waitsBehindWindow()) {
    return keepWaiting(place) ? Status::kGood : Status::kCut;
  }
  return status;
}

// Writes what waits as it is: nothing follows it.
Conversion::Status Conversion::writeWaiting(Place& place) {
  LentBuffer<4096 + 128> text;
  MarkCounter marks;
  CodecState state = m_reading;
  strictReader()(m_waiting, m_waitingBytes, true, state, text, &marks);
  // Bits that are left over at the end of base64 are no character.
  if (marks.count() != 0) text.truncate(marks.first().markOffset);
  Character character;
  if (text.getSize() <= sizeof character.text) {
    std::memcpy(character.text, text.getData2(), text.getSize());
    character.textBytes = text.getSize();
    const fast::KernelResult r =
        fast::decode(*m_plan, character.text, character.text + character.textBytes, character.units,
                     character.units + sizeof character.units);
    character.unitBytes = static_cast<std::size_t>(r.out - character.units);
    Outcome outcome;
    if (character.unitBytes != 0 && writeCharacter(place, character, outcome) == Status::kFull) {
      return Status::kFull;
    }
  }
  m_waitingBytes = 0;
  return Status::kGood;
}

}  // namespace iconv_layer
