// StreamConverter: the beginning of a stream, and what waits between its pieces.
#include "encoding/stream/stream_converter.h"

#include <algorithm>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "encoding/stream/stream_core.h"

namespace {

constexpr std::string_view kPdfMark = "%PDF-1";
constexpr std::size_t kPdfMinimum = 7;

std::string_view textOf(const unsigned char* data, std::size_t length) {
  return {reinterpret_cast<const char*>(data), length};
}

bool isBigEndian(const EncodingRow* row) { return row != nullptr && row->bigEndian; }

// The encoding of the same form in the other byte order.
int otherByteOrder(const EncodingRow& row) {
  for (const EncodingRow& other : encodingRows()) {
    if (other.form == row.form && other.bigEndian != row.bigEndian) return other.number;
  }
  return row.number;
}

// Writes into the caller's buffer, and has it emptied when it is full.
class DrainedOutput final : public Output {
 public:
  DrainedOutput(DataBuffer& buffer, StreamDrain* drain) : m_buffer(buffer), m_drain(drain) {}
  ~DrainedOutput() { commit(); }

  // Has the buffer emptied if it is full; false when that failed.
  bool drain() {
    commit();
    isFull = isFull || (m_drain != nullptr && m_buffer.getSize() >= StreamDrain::kDrainSize &&
                        !m_drain->onStreamOutput(m_buffer));
    return !isFull;
  }

 private:
  void commit() {
    m_buffer.commitTail(static_cast<unsigned int>(next - m_begin));
    next = end = m_begin = nullptr;
  }
  bool grow(std::size_t count, std::uint64_t expected) override {
    if (!drain()) return false;
    if (m_drain != nullptr) expected = std::max<std::uint64_t>(count, StreamDrain::kDrainSize);
    if (expected > count) m_buffer.expect(expected);
    m_begin = next = m_buffer.reserveTail(static_cast<unsigned int>(count));
    if (next == nullptr) return false;
    std::size_t room = m_buffer.getTailRoom();
    if (m_drain != nullptr)
      room = static_cast<std::size_t>(std::min<std::uint64_t>(room, expected));
    end = next + room;
    return true;
  }

  DataBuffer& m_buffer;
  StreamDrain* const m_drain;
  unsigned char* m_begin = nullptr;
};

}  // namespace

// ---- The beginning. ----

StreamStatus StreamConverter::Core::begin(const StreamSettings& settings) {
  m_settings = settings;
  if (m_settings.to == 0) m_settings.to = m_settings.from;
  if (m_settings.from == 0) m_settings.from = m_settings.to;
  m_isPdf = m_hasBegun = m_isEnd = false;
  m_waiting.clear();
  m_offset = m_errorCount = m_approximationCount = m_copiedBegin = m_copiedEnd = 0;
  m_firstError = m_firstApproximation = {};
  m_lines = 1;
  m_status = open(m_settings.from);
  return m_status;
}

// Finds the way from one encoding, which may be another than that of the settings in its byte
// order.
StreamStatus StreamConverter::Core::open(int from) {
  m_plan = fast::openPlan(from, m_settings.to, fast::Reader::kStream);
  m_stage.reset();
  m_repeated = 0;
  m_target.reset();
  m_isReordered = m_isCopied = false;
  if (m_plan == nullptr) {
    if (isSame() && !isStreamCodePage(from)) return StreamStatus::kGood;
    if (!isStreamCodePage(from)) return StreamStatus::kNoDecoder;
    return isStreamTarget(m_settings.to) ? StreamStatus::kNoMemory : StreamStatus::kNoEncoder;
  }
  if (!m_repertoire.open(*m_plan) ||
      !m_approximations.prepare(m_repertoire, {m_settings.bestFit, m_settings.translit})) {
    return StreamStatus::kNoMemory;
  }
  // Nothing is rewritten where nothing is converted.
  m_isReordered = m_plan->source->reordersMacArabic && !isSame();
  // What the plan decodes may be another text than that of the source.
  const bool isOther = m_plan->source->form != m_plan->decoding.form;
  if (isOther || m_isReordered) {
    m_stage = SourceStage::make(*m_plan->source);
    if (m_stage == nullptr) return StreamStatus::kNoMemory;
  }
  if (!openComposer()) return StreamStatus::kNoMemory;
  if (m_plan->target->form == EncodingForm::kCodec) {
    m_isCopied = isSame() && m_plan->target->codec->isStateless;
    const Codec& codec = *m_plan->target->codec;
    m_target.emplace(codec, static_cast<CodecTarget::Client&>(*this));
    const fast::Plan* const back = fast::openPlan(codec.codePage, 1200, fast::Reader::kStream);
    if (back == nullptr) return StreamStatus::kNoMemory;
    m_segmentTable = back->decoding.table.doubleByte;
  }
  noteReports();
  return m_treatment.prepare(m_settings, m_target ? &*m_target : nullptr);
}

// False when memory is short.
bool StreamConverter::Core::openComposer() {
  m_composer.reset();
  // Neither Mac Arabic nor a code page behind a codec has marks that compose, but for UTF-16; an
  // accent in front of its letter belongs to no other. And no Unicode encoding lacks what is taken
  // apart.
  const bool isUtf16 = m_plan->decoding.form == EncodingForm::kUtf16;
  const bool mayHaveParts =
      m_stage == nullptr ? isUtf16 || !m_plan->isCopy : isUtf16 && m_plan->source->codec != nullptr;
  const bool mayLack = !isSame() && m_plan->target->kind != CharsetKind::kUnicode;
  if (!m_settings.compose || !mayHaveParts || !mayLack) return true;
  m_composer.reset(new (std::nothrow) fast::Composer);
  if (m_composer == nullptr) return false;
  m_composer->open(m_repertoire);
  return true;
}

StreamStatus StreamConverter::Core::resume(const StreamPlace& place) {
  m_hasBegun = place.hasBegun;
  if (m_plan == nullptr) return m_status;
  if (place.isOtherOrder) m_status = open(otherByteOrder(*m_plan->source));
  if (m_status != StreamStatus::kGood) return m_status;
  if (!isPlace(place)) return m_status = StreamStatus::kMisuse;
  m_repeated = place.repeated;
  if (m_stage != nullptr) m_stage->resume(m_target ? place.sourceState : place.state);
  if (m_target) m_target->resume(place.state);
  return m_status;
}

// Whether a stream with these settings may stand at a place.
bool StreamConverter::Core::isPlace(const StreamPlace& place) const {
  // A unit of UTF-16 is written as a whole.
  const bool hasUnits = m_plan->decoding.form == EncodingForm::kUtf16;
  const std::uint32_t mostRepeated = m_stage != nullptr ? SourceStage::kMostRepeated : 0;
  if (place.repeated > mostRepeated || (hasUnits && place.repeated % 2 != 0)) return false;
  const auto isStateOfRow = [](const EncodingRow& row, const CodecState& state, bool isWriting) {
    return row.codec != nullptr ? isStateOf(*row.codec, state, isWriting) : hasOnly(state, {});
  };
  if (!m_target) return isStateOfRow(*m_plan->source, place.state, false);
  return isStateOfRow(*m_plan->source, place.sourceState, false) &&
         isStateOfRow(*m_plan->target, place.state, true);
}

StreamPlace StreamConverter::Core::place() const {
  StreamPlace place;
  place.settled = m_offset;
  place.hasBegun = m_hasBegun;
  place.isOtherOrder = m_plan != nullptr && m_plan->source->number != m_settings.from;
  place.repeated = m_repeated;
  if (m_stage != nullptr) place.state = m_stage->state();
  if (!m_target) return place;
  place.sourceState = std::exchange(place.state, m_target->state());
  if (const StreamError* const waiting = m_target->firstWaiting()) {
    place.settled = std::min(place.settled, waiting->offset);
  }
  return place;
}

// Whether more of the stream must be seen to tell how it begins.
bool StreamConverter::Core::isUndecided(std::string_view head, bool last) const {
  if (last) return false;
  if (m_settings.pdfPassthrough && head.size() < kPdfMinimum &&
      kPdfMark.substr(0, head.size()) == head.substr(0, kPdfMark.size())) {
    return true;
  }
  if (m_plan == nullptr) return false;
  return std::ranges::any_of(marksOf(*m_plan->source), [&](const Mark& mark) {
    return head.size() < mark.bytes.size() && mark.bytes.substr(0, head.size()) == head;
  });
}

// Settles what the beginning of the stream decides, and drops a mark from the front of what waits.
StreamStatus StreamConverter::Core::beginText(std::string_view head) {
  m_hasBegun = true;
  m_isPdf = m_settings.pdfPassthrough && head.size() >= kPdfMinimum && head.starts_with(kPdfMark);
  if (m_isPdf || m_plan == nullptr) return StreamStatus::kGood;
  const std::span<const Mark> marks = marksOf(*m_plan->source);
  const auto mark =
      std::ranges::find_if(marks, [&](const Mark& known) { return head.starts_with(known.bytes); });
  const bool hasMark = mark != marks.end();
  const bool isMarked = m_plan->target->writesMark && !m_settings.dropMark && !head.empty();
  const bool writesMark = m_settings.writeMark || (m_settings.keepMark && hasMark) || isMarked;
  if (writesMark) {
    const std::string_view written = markOf(*m_plan->target);
    if (!m_out->append(written.data(), written.size())) fail();
  }
  if (hasMark) {
    // A copy keeps the mark as a character of the text.
    if (!isSame() || writesMark || m_settings.dropMark) m_offset = mark->bytes.size();
    if (mark->bigEndian != isBigEndian(m_plan->source)) {
      const StreamStatus status = open(otherByteOrder(*m_plan->source));
      if (status != StreamStatus::kGood) return status;
    }
  }
  if (m_offset != 0) dropWaiting(static_cast<std::size_t>(m_offset));
  return m_waiting.hasFailed() ? StreamStatus::kNoMemory : m_status;
}

// ---- What waits between pieces. ----

StreamStatus StreamConverter::Core::push(const unsigned char* data, std::size_t length, bool last,
                                         Output& out) {
  if (convertShort(data, length, out)) return m_status;
  m_out = &out;
  if (!m_hasBegun) {
    // Seven bytes are enough to tell how a stream begins, and one is nearly always.
    const std::size_t waiting = m_waiting.getSize();
    const std::size_t taken = std::min(length, kPdfMinimum - waiting);
    std::string_view head = textOf(data, taken);
    const bool isSplit = waiting != 0 || isUndecided(head, last);
    if (isSplit) {
      keep(data, taken);
      head = textOf(m_waiting.getData2(), m_waiting.getSize());
    }
    if (m_waiting.hasFailed()) return StreamStatus::kNoMemory;
    if (isSplit && isUndecided(head, last)) return StreamStatus::kGood;
    m_status = beginText(head);
    if (m_status != StreamStatus::kGood) return m_status;
    const std::size_t skipped = isSplit ? taken : static_cast<std::size_t>(m_offset);
    data += skipped;
    length -= skipped;
  }
  return feed(data, length, last);
}

StreamStatus StreamConverter::Core::feed(const unsigned char* data, std::size_t length, bool last) {
  if (m_isPdf || m_plan == nullptr) {
    if (!m_out->append(m_waiting.getData2(), m_waiting.getSize())) fail();
    m_waiting.clear();
    if (!m_out->append(data, length)) fail();
    return m_status;
  }
  std::size_t done = 0;
  while (m_status == StreamStatus::kGood) {
    if (m_waiting.getSize() != 0) {
      done += feedWaiting(data + done, length - done, last);
      if (m_waiting.hasFailed()) return StreamStatus::kNoMemory;
      if (done == length) break;
      continue;
    }
    if (done == length && m_stage == nullptr) break;
    const std::size_t used = convert(data + done, length - done, last);
    m_offset += used;
    if (m_status == StreamStatus::kGood) keep(data + done + used, length - done - used);
    break;
  }
  if (last && m_status == StreamStatus::kGood) finish();
  return m_waiting.hasFailed() ? StreamStatus::kNoMemory : m_status;
}

// Goes on with what waits and as little of the new data as that needs; returns how much of the
// data is dealt with.
std::size_t StreamConverter::Core::feedWaiting(const unsigned char* data, std::size_t length,
                                               bool last) {
  constexpr std::size_t kSome = 256;
  const std::size_t before = m_waiting.getSize();
  const std::size_t added = std::min(length, kSome);
  keep(data, added);
  if (m_waiting.hasFailed()) return 0;
  const std::size_t size = m_waiting.getSize();
  const std::size_t used = convert(m_waiting.getData2(), size, last && added == length);
  m_offset += used;
  if (used >= before) {
    m_waiting.clear();  // the rest is looked at where it is
    return used - before;
  }
  if (used != 0) dropWaiting(used);
  return added;
}

void StreamConverter::Core::keep(const unsigned char* data, std::size_t length) {
  if (length != 0) m_waiting.append(data, static_cast<unsigned int>(length));
}

// Takes bytes off the front of what waits.
void StreamConverter::Core::dropWaiting(std::size_t count) {
  if (m_waiting.getSize() == 0) return;
  const auto begin = static_cast<unsigned int>(count);
  DataBuffer rest;
  rest.append(m_waiting.getData2() + begin, m_waiting.getSize() - begin);
  m_waiting.clear();
  m_waiting.append(rest);
  if (rest.hasFailed()) m_waiting.latchFailure();
}

// ---- The public face. ----

StreamConverter::StreamConverter() = default;
StreamConverter::~StreamConverter() { delete m_core; }

StreamStatus StreamConverter::begin(const StreamSettings& settings) {
  m_isOpen = false;
  m_status = StreamStatus::kNoMemory;
  try {
    if (m_core == nullptr) m_core = new Core;  // its blocks need no zeros
    m_drain = settings.drain;
    m_status = m_core->begin(settings);  // copies the substitute
  } catch (const std::bad_alloc&) {
    return m_status;
  }
  m_isOpen = m_status == StreamStatus::kGood;
  return m_status;
}

StreamStatus StreamConverter::begin(const StreamSettings& settings, const StreamPlace& place) {
  if (begin(settings) != StreamStatus::kGood) return m_status;
  m_status = m_core->resume(place);
  m_isOpen = m_status == StreamStatus::kGood;
  return m_status;
}

StreamPlace StreamConverter::place() const {
  return m_core == nullptr ? StreamPlace() : m_core->place();
}

StreamStatus StreamConverter::push(const unsigned char* data, std::size_t length, Output& out) {
  if (!m_isOpen) return m_status == StreamStatus::kGood ? StreamStatus::kMisuse : m_status;
  if (length != 0) m_status = m_core->push(data, length, false, out);
  m_isOpen = m_status == StreamStatus::kGood;
  return m_status;
}

StreamStatus StreamConverter::finish(Output& out) {
  constexpr unsigned char kNothing = 0;
  return finish(&kNothing, 0, out);
}

StreamStatus StreamConverter::finish(const unsigned char* data, std::size_t length, Output& out) {
  if (!m_isOpen) return m_status == StreamStatus::kGood ? StreamStatus::kMisuse : m_status;
  m_status = m_core->push(data, length, true, out);
  m_isOpen = false;
  return m_status;
}

StreamStatus StreamConverter::push(const unsigned char* data, std::size_t length, DataBuffer& out) {
  DrainedOutput output(out, m_drain);
  const StreamStatus status = push(data, length, output);
  if (status != StreamStatus::kGood || output.drain()) return status;
  m_isOpen = false;
  return m_status = StreamStatus::kDrainFailed;
}

StreamStatus StreamConverter::finish(DataBuffer& out) {
  DrainedOutput output(out, m_drain);
  return finish(output);
}

void StreamConverter::setErrorHandler(StreamErrorHandler* handler) {
  if (m_core != nullptr) m_core->setErrorHandler(handler);
}

StreamStatus StreamConverter::status() const { return m_status; }

std::uint64_t StreamConverter::errorCount() const {
  return m_core == nullptr ? 0 : m_core->errorCount();
}

const StreamError& StreamConverter::firstError() const {
  static constexpr StreamError kNone;
  return m_core == nullptr ? kNone : m_core->firstError();
}

std::uint64_t StreamConverter::approximationCount() const {
  return m_core == nullptr ? 0 : m_core->approximationCount();
}

const StreamError& StreamConverter::firstApproximation() const {
  static constexpr StreamError kNone;
  return m_core == nullptr ? kNone : m_core->firstApproximation();
}

std::uint64_t StreamConverter::line() const { return m_core == nullptr ? 1 : m_core->line(); }
