// RecordReader: descriptor words, segments, and what to do when they are wrong.
#include <algorithm>
#include <iterator>
#include <utility>

#include "encconv/records.h"
#include "interface/records/problem_bytes.h"

namespace encconv {
namespace {

constexpr std::size_t kWord = 4;               // bytes of a descriptor word
constexpr std::size_t kMaxJoined = 16u << 20;  // of a spanned record

unsigned int byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

std::uint32_t bigEndian(std::string_view bytes, std::size_t count) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value = value << 8 | byteAt(bytes, i);
  return value;
}

std::string numbered(std::uint64_t count, const char* thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

// The place of the data of a record, which may lie in several segments.
struct Extent {
  std::size_t index;
  std::uint64_t offset;
};

// The last two bits of the third byte of a record descriptor word.
enum Segment : unsigned char { kComplete = 0, kFirst = 1, kLast = 2, kMiddle = 3 };

}  // namespace

struct RecordReader::State {
  enum class Place : unsigned char { kBlock, kDescriptor, kData, kSkip, kLost };
  // What a call of next() comes to, or nothing while it goes on.
  using Step = std::optional<RecordStep>;
  static constexpr std::nullopt_t kGoOn = std::nullopt;

  explicit State(const RecordFormat& known) : format(known) {
    place = known.form == RecordForm::fixed ? Place::kData
            : known.form == RecordForm::rdw ? Place::kDescriptor
                                            : Place::kBlock;
    needed = known.length;
  }

  bool inBlocks() const { return format.form == RecordForm::bdw; }

  bool take(std::size_t count, std::string_view& bytes);
  Step step();
  Step stepBlock();
  Step stepDescriptor();
  Step stepData();
  Step stepSkip();
  RecordStep stepEnd();
  Step finishSegment(std::string_view data);
  RecordStep give(std::string_view data, std::uint64_t at);
  RecordStep giveJoined();
  RecordStep damage(RecordProblemKind kind, std::uint64_t at, std::uint64_t length,
                    std::string_view bytes, std::string reason);
  RecordStep giveUp(std::uint64_t at, std::string_view word, const std::string& reason);

  RecordFormat format;
  std::string_view piece;    // what was pushed and not taken
  std::string held;          // the beginning of what is to be taken, from earlier pieces
  std::string taken;         // what was taken, where it was not in one piece
  std::uint64_t offset = 0;  // of the piece in the file
  bool isFinished = false;

  Place place;
  std::size_t needed;           // bytes of the data
  std::uint64_t blockLeft = 0;  // behind what was taken
  Segment segment = kComplete;

  bool isOpen = false;  // a spanned record lacks its last segment
  std::string joined;
  std::vector<Extent> joinedExtents;

  // What the next step gives, before anything else: a record behind the problem that it has.
  bool givesJoined = false;
  bool givesHeld = false;

  std::string_view data;
  std::vector<Extent> extents = {{0, 0}};
  std::uint64_t number = 0;
  RecordProblem problem;
};

// Takes bytes that were pushed, as soon as all of them were.
bool RecordReader::State::take(std::size_t count, std::string_view& bytes) {
  if (held.empty() && piece.size() >= count) {
    bytes = piece.substr(0, count);
    piece.remove_prefix(count);
    offset += count;
    return true;
  }
  const std::size_t part = std::min(count - held.size(), piece.size());
  held.append(piece, 0, part);
  piece.remove_prefix(part);
  offset += part;
  if (held.size() < count) return false;
  taken.swap(held);
  held.clear();
  bytes = taken;
  return true;
}

RecordStep RecordReader::State::damage(RecordProblemKind kind, std::uint64_t at,
                                       std::uint64_t length, std::string_view bytes,
                                       std::string reason) {
  problem = {};
  problem.kind = kind;
  problem.record = number + 1;
  problem.offset = at;
  problem.length = length;
  problem.bytes = shownBytes(bytes);
  problem.reason = std::move(reason);
  return RecordStep::damaged;
}

// There is no telling where the next record begins. A spanned record stays as far as it came.
RecordStep RecordReader::State::giveUp(std::uint64_t at, std::string_view word,
                                       const std::string& reason) {
  givesJoined = isOpen;
  if (place == Place::kDescriptor && inBlocks()) {
    place = Place::kSkip;
    return damage(
        RecordProblemKind::descriptor, at, word.size() + blockLeft, word,
        reason + "; the rest of its block, " + numbered(blockLeft, "byte") + ", is left out");
  }
  place = Place::kLost;
  return damage(RecordProblemKind::descriptor, at, word.size(), word,
                reason + "; all that follows is left out");
}

RecordStep RecordReader::State::give(std::string_view record, std::uint64_t at) {
  data = record;
  extents.resize(1);
  extents[0] = {0, at};
  ++number;
  return RecordStep::record;
}

RecordStep RecordReader::State::giveJoined() {
  givesJoined = isOpen = false;
  taken.swap(joined);
  joined.clear();
  data = taken;
  extents.swap(joinedExtents);
  joinedExtents.clear();
  ++number;
  return RecordStep::record;
}

RecordReader::State::Step RecordReader::State::stepBlock() {
  std::string_view word;
  if (!take(kWord, word)) return stepEnd();
  const std::uint64_t at = offset - kWord;
  const bool isExtended = (byteAt(word, 0) & 0x80u) != 0;
  const std::uint32_t length = isExtended ? bigEndian(word, 4) & 0x7FFFFFFFu : bigEndian(word, 2);
  if (length < kWord) {
    return giveUp(at, word, "a block has no length of " + std::to_string(length));
  }
  blockLeft = length - kWord;
  place = Place::kDescriptor;
  if (!isExtended && bigEndian(word.substr(2), 2) != 0) {
    return damage(RecordProblemKind::descriptor, at, kWord, word,
                  "the last two bytes of a block descriptor word are not zero");
  }
  return kGoOn;
}

RecordReader::State::Step RecordReader::State::stepDescriptor() {
  if (inBlocks() && blockLeft == 0) {
    place = Place::kBlock;
    return kGoOn;
  }
  const std::uint64_t at = offset - held.size();
  if (inBlocks() && blockLeft < kWord) {
    return giveUp(at, {}, "a block ends within a record descriptor word");
  }
  std::string_view word;
  if (!take(kWord, word)) return stepEnd();
  const std::uint32_t length = bigEndian(word, 2);
  if (inBlocks()) blockLeft -= kWord;
  if (length < kWord) {
    return giveUp(at, word, "a record has no length of " + std::to_string(length));
  }
  if (length > 0x7FFF) {
    return giveUp(at, word,
                  "a record has no length of " + std::to_string(length) + ", beyond 32767");
  }
  needed = length - kWord;
  if (inBlocks() && needed > blockLeft) {
    return giveUp(
        at, word,
        "a record of " + std::to_string(length) + " bytes goes beyond the end of its block");
  }
  segment = static_cast<Segment>(byteAt(word, 2) & 3u);
  place = Place::kData;
  const bool isOfOpen = segment == kMiddle || segment == kLast;
  const bool isMisplaced = isOfOpen != isOpen;
  if (isMisplaced) {
    givesJoined = isOpen;
    if (isOfOpen) segment = segment == kLast ? kComplete : kFirst;
  }
  if ((byteAt(word, 2) & ~3u) != 0 || byteAt(word, 3) != 0) {
    return damage(RecordProblemKind::descriptor, at, kWord, word,
                  "the reserved bits of a record descriptor word are not zero");
  }
  if (isMisplaced) {
    return damage(RecordProblemKind::descriptor, at, kWord, word,
                  isOfOpen ? "a segment goes on with a record that has not begun"
                           : "the record before lacks its last segment");
  }
  return kGoOn;
}

RecordReader::State::Step RecordReader::State::finishSegment(std::string_view bytes) {
  const std::uint64_t at = offset - bytes.size();
  if (format.form == RecordForm::fixed) return give(bytes, at);
  place = Place::kDescriptor;
  if (inBlocks()) blockLeft -= bytes.size();
  if (segment == kComplete) return give(bytes, at);
  if (joined.size() + bytes.size() > kMaxJoined) {
    givesJoined = true;
    return damage(RecordProblemKind::descriptor, at, bytes.size(), bytes,
                  "the segments of a record have more than 16 MiB; this one is left out");
  }
  isOpen = true;
  joinedExtents.push_back({joined.size(), at});
  joined += bytes;
  return segment == kLast ? Step(giveJoined()) : kGoOn;
}

RecordReader::State::Step RecordReader::State::stepData() {
  std::string_view bytes;
  if (!take(needed, bytes)) return stepEnd();
  return finishSegment(bytes);
}

RecordReader::State::Step RecordReader::State::stepSkip() {
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(blockLeft, piece.size()));
  piece.remove_prefix(count);
  offset += count;
  blockLeft -= count;
  if (blockLeft != 0) return stepEnd();
  place = Place::kBlock;
  return kGoOn;
}

// Nothing more can be taken: more is to come, or the file ends here.
RecordStep RecordReader::State::stepEnd() {
  if (!isFinished) return RecordStep::more;
  const std::uint64_t at = offset - held.size();
  const bool isWithinData = place == Place::kData && needed != 0;
  if (isWithinData && (!held.empty() || format.form != RecordForm::fixed)) {
    givesHeld = true;
    return damage(RecordProblemKind::cut, at, held.size(), held,
                  "the input ends within a record: " + numbered(held.size(), "byte") + " of " +
                      std::to_string(needed));
  }
  const bool isWithinWord = !held.empty();
  const bool isWithinBlock = inBlocks() && blockLeft != 0;
  const bool isOpenStill = std::exchange(isOpen, false);
  givesJoined = isOpenStill;
  const std::size_t count = held.size();
  const std::string rest = std::exchange(held, {});
  const bool wasLost = place == Place::kLost;
  place = Place::kLost;
  blockLeft = 0;
  if (wasLost || !(isWithinWord || isWithinBlock || isOpenStill)) return RecordStep::end;
  return damage(RecordProblemKind::cut, at, count, rest,
                isWithinWord    ? "the input ends within a descriptor word"
                : isWithinBlock ? "the input ends within a block"
                                : "the input ends before the last segment of a record");
}

RecordReader::State::Step RecordReader::State::step() {
  if (givesJoined) return giveJoined();
  if (givesHeld) {
    givesHeld = false;
    const std::uint64_t at = offset - held.size();
    taken.swap(held);
    held.clear();
    place = Place::kLost;
    const bool goesOn = isOpen && (segment == kMiddle || segment == kLast);
    if (!goesOn) return give(taken, at);
    joinedExtents.push_back({joined.size(), at});
    joined += taken;
    return giveJoined();
  }
  switch (place) {
    case Place::kBlock:
      return stepBlock();
    case Place::kDescriptor:
      return stepDescriptor();
    case Place::kData:
      return stepData();
    case Place::kSkip:
      return stepSkip();
    case Place::kLost:
      break;
  }
  offset += piece.size();
  piece = {};
  return stepEnd();
}

// ---- The interface. ----

RecordReader::RecordReader(const RecordFormat& format) : m_state(std::make_unique<State>(format)) {}
RecordReader::~RecordReader() = default;
RecordReader::RecordReader(RecordReader&&) noexcept = default;
RecordReader& RecordReader::operator=(RecordReader&&) noexcept = default;

void RecordReader::push(std::string_view piece) { m_state->piece = piece; }

void RecordReader::finish() { m_state->isFinished = true; }

RecordStep RecordReader::next() {
  for (;;) {
    if (const State::Step result = m_state->step()) return *result;
  }
}

std::string_view RecordReader::record() const { return m_state->data; }

std::uint64_t RecordReader::number() const { return m_state->number; }

std::uint64_t RecordReader::offset_of(std::size_t index) const {
  const auto behind = std::upper_bound(
      m_state->extents.begin(), m_state->extents.end(), index,
      [](std::size_t wanted, const Extent& extent) { return wanted < extent.index; });
  const Extent& extent = *std::prev(behind);
  return extent.offset + (index - extent.index);
}

const RecordProblem& RecordReader::problem() const { return m_state->problem; }

}  // namespace encconv
