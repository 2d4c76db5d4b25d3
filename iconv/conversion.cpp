// Conversion: the order of work, and clean text.
#include "iconv/conversion.h"

#include <algorithm>
#include <cstring>

#include "encoding/output.h"
#include "iconv/lent_buffer.h"
#include "support/utf.h"

namespace iconv_layer {
namespace {

using fast::kKernelSlack;

// Of the room of the caller, as much as a buffer can be told of.
constexpr std::size_t kMostLent = 0xFFFFFFFFu;

// The room of the caller, and no more.
class Room final : public Output {
 public:
  Room(unsigned char* begin, unsigned char* roomEnd) {
    next = begin;
    end = roomEnd;
  }

 private:
  bool grow(std::size_t /*count*/, std::uint64_t /*expected*/) override { return false; }
};

int otherByteOrder(const EncodingRow& row) {
  constexpr int kOrders[][2] = {{1200, 1201}, {12000, 12001}};
  for (const auto& order : kOrders) {
    if (findEncodingRow(order[0])->form == row.form) return order[row.bigEndian ? 0 : 1];
  }
  return row.number;
}

}  // namespace

bool Conversion::hasSurrogate(Text text, bool bigEndian) {
  for (std::size_t i = bigEndian ? 0 : 1; i < text.size; i += 2) {
    if ((text.bytes[i] & 0xF8) == 0xD8) return true;
  }
  return false;
}

Conversion::Status Conversion::convert(Place& place, std::size_t& irreversible) {
  Outcome outcome;
  Status status = Status::kGood;
  // In one step from wide characters the mark comes first, whatever the text.
  if (m_route.from.isWide && m_route.to.hasMark && !m_hasMark) status = writeMark(place);
  if (m_route.from.hasMark && status == Status::kGood) status = beginSource(place);
  if (status == Status::kGood && m_waitingBytes != 0) status = takeWaiting(place, outcome);
  while (status == Status::kGood && place.in != place.inEnd) {
    const bool isMarkDue = m_route.to.hasMark && !m_hasMark;
    const unsigned char* const before = place.out;
    const std::size_t heldBefore = m_heldBytes;
    const bool isRestCut = !isMarkDue && takeClean(place, outcome);
    // What the writer holds is as good as written.
    if (place.out != before || m_heldBytes != heldBefore) outcome.unwritten = nullptr;
    if (place.in == place.inEnd) break;
    if (isRestCut) {
      status = keepWaiting(place) ? Status::kGood : Status::kCut;
    } else {
      status = takeCharacter(place, outcome);
    }
  }
  // What stands in front of a character that does not fit is looked at again with it.
  if (status == Status::kFull && outcome.unwritten != nullptr) {
    place.in = outcome.unwritten;
    m_reading = outcome.beforeUnwritten;
  }
  // What waits at the end of a text says nothing of the next one.
  if (place.in == place.inEnd) m_steps = 0;
  irreversible += outcome.irreversible;
  return status == Status::kGood && outcome.ignoredSome ? Status::kIgnored : status;
}

// Looks for the mark of the source, which tells its byte order.
Conversion::Status Conversion::beginSource(Place& place) {
  if (m_hasBegun || place.in == place.inEnd) return Status::kGood;
  const EncodingRow& source = *m_route.from.row;
  const std::size_t width = source.form == EncodingForm::kUtf32   ? 4
                            : source.form == EncodingForm::kUtf16 ? 2
                                                                  : 1;
  if (place.left() < width) return Status::kCut;
  for (const Mark& mark : marksOf(source)) {
    const std::size_t length = mark.bytes.size();
    if (std::memcmp(place.in, mark.bytes.data(), std::min(place.left(), length)) != 0) continue;
    if (place.left() < length) return Status::kCut;
    place.in += length;
    if (mark.bigEndian != source.bigEndian) {
      const fast::Plan* const other =
          fast::openPlan(otherByteOrder(source), m_plan->to, fast::Reader::kStream);
      if (other != nullptr) m_plan = other;
    }
    break;
  }
  m_hasBegun = true;
  return Status::kGood;
}

// ---- Clean text. ----

// Converts a text that is no longer than a window, where nothing waits. False when it is not known
// what becomes of the rest.
bool Conversion::takeOnly(Place& place, Status& status) {
  const std::size_t length = place.left();
  if (m_steps != 0 || m_waitingBytes != 0) return false;
  if (length - 1 >= m_window || length > place.room()) return false;
  if (!takeWindow(place, length)) {
    narrowWindow(length);
    return false;
  }
  if (place.in == place.inEnd) return true;
  if (!waitsBehindWindow()) return false;
  status = keepWaiting(place) ? Status::kGood : Status::kCut;
  return true;
}

// Converts as much as it can without looking at single characters. True when what is left is known
// to be the beginning of one.
bool Conversion::takeClean(Place& place, Outcome& outcome) {
  if (isPlain()) {
    takePlain(place, outcome);
    return false;
  }
  if (m_steps != 0) {
    --m_steps;
    return false;
  }
  while (place.in != place.inEnd) {
    const std::size_t length = std::min({place.left(), std::size_t{m_window}, place.room()});
    const unsigned char* const before = place.in;
    if (length != 0 && takeWindow(place, length) && place.in != before) {
      m_window = std::min<std::uint16_t>(m_window * 4, kLargestWindow);
      const bool isLast = before + length == place.inEnd;
      if (isLast && place.in != place.inEnd && waitsBehindWindow()) return true;
      continue;
    }
    narrowWindow(length);
    if (m_steps != 0) return false;
  }
  return false;
}

// A short text may hold a character that its end cuts, and nothing else that stops.
void Conversion::narrowWindow(std::size_t length) {
  m_window = static_cast<std::uint16_t>(std::min<std::size_t>(m_window, length) / 4);
  if (m_window >= kLeastWindow) return;
  m_window = kLeastWindow;
  m_steps = kLeastWindow;
}

// Between encodings without codecs.
void Conversion::takePlain(Place& place, Outcome& outcome) {
  const fast::Plan& plan = *m_plan;
  const std::size_t length = place.left();
  if (length <= fast::kShortBytes && plan.whole != nullptr) {
    unsigned char* const end = takeWhole(place.in, length, place.out, place.room());
    if (end != nullptr) {
      place.in = place.inEnd;
      place.out = end;
      return;
    }
  }
  if (length <= fast::kShortBytes && plan.whole == nullptr && takeShort(place, length)) return;
  takePlainWindows(place, outcome);
  // In the rest of the room, less and less at a time.
  std::size_t part = std::min<std::size_t>({place.left(), place.room(), kKernelSlack});
  while (part >= 8 && place.room() < kKernelSlack) {
    unsigned char text[kKernelSlack * fast::kWorstFactor + kKernelSlack];
    Place aside{place.in, place.in + part, text, text + sizeof text};
    takeByPump(aside, part, nullptr);
    const auto size = static_cast<std::size_t>(aside.out - text);
    if (size > place.room()) {
      part /= 2;
      continue;
    }
    if (size == 0) return;
    std::memcpy(place.out, text, size);
    place.out += size;
    place.in = aside.in;
    part = std::min({part, place.left(), place.room()});
  }
}

// Converts a short text as a whole. Null, with nothing done, where it is not clean or does not fit.
unsigned char* Conversion::takeWhole(const unsigned char* in, std::size_t length,
                                     unsigned char* out, std::size_t room) const {
  const fast::Plan& plan = *m_plan;
  if (room >= length * fast::kWorstFactor + kKernelSlack) {
    return plan.whole(plan, in, length, out, out + room);
  }
  unsigned char text[fast::kShortOutput];
  const unsigned char* const end = plan.whole(plan, in, length, text, text + sizeof text);
  const auto size = static_cast<std::size_t>(end - text);
  if (end == nullptr || size > room) return nullptr;
  std::memcpy(out, text, size);
  return out + size;
}

// Converts a short text by the two steps; false, with nothing done, where it is not clean or does
// not fit.
bool Conversion::takeShort(Place& place, std::size_t length) const {
  const fast::Plan& plan = *m_plan;
  unsigned char units[2 * fast::kShortBytes + kKernelSlack];
  unsigned char text[fast::kShortOutput];
  const unsigned char* const end = place.in + length;
  fast::KernelResult r{place.in, text};
  if (plan.direct != nullptr) {
    r = plan.direct(plan, place.in, end, text, text + sizeof text);
    if (r.in != end) return false;
  } else {
    const fast::KernelResult decoded =
        fast::decode(plan, place.in, end, units, units + sizeof units);
    if (decoded.in != end) return false;
    r = fast::encode(plan, units, decoded.out, text, text + sizeof text);
    if (r.in != decoded.out) return false;
  }
  const auto size = static_cast<std::size_t>(r.out - text);
  if (size > place.room()) return false;
  std::memcpy(place.out, text, size);
  place.in = end;
  place.out += size;
  return true;
}

// Converts up to what is not clean, or up to where fewer than kKernelSlack bytes of room are left.
// The pump decodes what is behind its stop in vain, so windows are small where much is not clean.
void Conversion::takePlainWindows(Place& place, Outcome& outcome) {
  constexpr std::size_t kLongestCharacter = 6;
  while (place.left() != 0 && place.room() >= kKernelSlack) {
    const unsigned char* const begin = place.in;
    const std::size_t length = std::min<std::size_t>(place.left(), m_plainWindow);
    takeByPump(place, length, &outcome);
    const std::size_t rest = length - static_cast<std::size_t>(place.in - begin);
    const bool isClean = rest < kLongestCharacter && place.in != begin;
    if (!isClean && place.room() >= kKernelSlack) {
      m_plainWindow = std::max(m_plainWindow / 4, kLeastPlainWindow);
      return;
    }
    m_plainWindow = std::min(m_plainWindow * 4, kLargestPlainWindow);
  }
}

// Converts up to what is not clean, or up to where fewer than kKernelSlack bytes are left. With an
// outcome, characters without a place are treated as the target's suffixes say.
void Conversion::takeByPump(Place& place, std::size_t length, Outcome* outcome) const {
  fast::PumpBlock block;
  fast::Pump pump;
  Room out(place.out, place.outEnd);
  pump.start(*m_plan, block, place.in, place.in + length);
  while (pump.run(out) == fast::Pump::Stop::kUnmappable && outcome != nullptr &&
         passUnmappable(pump, out, *outcome)) {
  }
  place.out = out.next;
  place.in = pump.unit() != pump.unitEnd() ? pump.sourceOf(pump.unit()) : pump.in();
}

// Converts a part of the text where codecs are concerned. False, with nothing done, where it is not
// clean or does not fit.
bool Conversion::takeWindow(Place& place, std::size_t length) {
  return reader() != nullptr ? takeReadWindow(place, length) : takeWrittenWindow(place, length);
}

bool Conversion::takeReadWindow(Place& place, std::size_t length) {
  LentBuffer<kWindowStorage> read;
  MarkCounter marks;
  const CodecState before = m_reading;
  const unsigned int used =
      strictReader()(place.in, static_cast<unsigned int>(length), false, m_reading, read, &marks);
  const bool isClean = used != 0 && marks.count() == 0 && !read.hasFailed();
  if (!isClean || !putRead({read.getData2(), read.getSize()}, place)) {
    m_reading = before;
    return false;
  }
  place.in += used;
  return true;
}

// Writes the text of a reader.
bool Conversion::putRead(Text text, Place& place) {
  if (writer() == nullptr && isEncodedAtOnce()) return encodeAtOnce(text, place);
  if (writer() == nullptr && isEncodedInSteps()) {
    unsigned char units[kWindowStorage];
    const unsigned char* const end = text.bytes + text.size;
    const fast::KernelResult r =
        fast::decode(*m_plan, text.bytes, end, units, units + sizeof units);
    return r.in == end && encodeAtOnce({units, static_cast<std::size_t>(r.out - units)}, place);
  }
  LentBuffer<kWindowStorage> segment;
  return makeSegment(text, segment) == text.size && !segment.hasFailed() &&
         putSegment({segment.getData2(), segment.getSize()}, place);
}

bool Conversion::takeWrittenWindow(Place& place, std::size_t length) {
  const Text text{place.in, length};
  if (m_route.from.isUcs2 && hasSurrogate(text, m_plan->decoding.bigEndian)) return false;
  if (writer() != nullptr && isDecodedOnly()) {
    // Behind what is held, which the codec takes together with it.
    unsigned char units[kMostHeld + kWindowStorage];
    std::memcpy(units, m_held, sizeof m_held);
    const fast::KernelResult r = fast::decode(*m_plan, text.bytes, text.bytes + text.size,
                                              units + m_heldBytes, units + sizeof units);
    if (r.in == text.bytes || !writeText({units, static_cast<std::size_t>(r.out - units)}, place)) {
      return false;
    }
    place.in = r.in;
    return true;
  }
  LentBuffer<kWindowStorage> segment;
  const std::size_t taken = makeSegment(text, segment);
  if (taken == 0 || segment.hasFailed() ||
      !putSegment({segment.getData2(), segment.getSize()}, place)) {
    return false;
  }
  place.in += taken;
  return true;
}

// Whether the text of a reader needs the second step of the plan only, which looks for surrogates.
bool Conversion::isEncodedAtOnce() const {
  return m_plan->decoding.form == EncodingForm::kUtf16 && !m_plan->decoding.bigEndian &&
         !m_plan->isCopy && m_plan->encoding.form != EncodingForm::kUtf16;
}

// Whether it needs both steps.
bool Conversion::isEncodedInSteps() const {
  return m_plan->direct == nullptr && m_plan->encoding.form != EncodingForm::kUtf16;
}

bool Conversion::encodeAtOnce(Text text, Place& place) const {
  const unsigned char* const end = text.bytes + text.size;
  if (place.room() >= text.size * 2 + kKernelSlack) {
    const fast::KernelResult r = fast::encode(*m_plan, text.bytes, end, place.out, place.outEnd);
    if (r.in != end) return false;
    place.out = r.out;
    return true;
  }
  unsigned char aside[kWindowStorage];
  const fast::KernelResult r = fast::encode(*m_plan, text.bytes, end, aside, aside + sizeof aside);
  const auto size = static_cast<std::size_t>(r.out - aside);
  if (r.in != end || size > place.room()) return false;
  std::memcpy(place.out, aside, size);
  place.out += size;
  return true;
}

// Whether the first step of the plan makes what the writer takes.
bool Conversion::isDecodedOnly() const {
  return m_plan->encoding.form == EncodingForm::kUtf16 && !m_plan->encoding.bigEndian &&
         m_plan->decoding.form != EncodingForm::kUtf16;
}

// Brings text to the encoding of the plan's other side; returns how much of it.
std::size_t Conversion::makeSegment(Text text, DataBuffer& segment) const {
  const fast::Plan& plan = *m_plan;
  if (isDecodedOnly()) {
    unsigned char* const out = segment.reserveTail(kWindowStorage);
    if (out == nullptr) return 0;
    const fast::KernelResult r =
        fast::decode(plan, text.bytes, text.bytes + text.size, out, out + kWindowStorage);
    segment.commitTail(static_cast<unsigned int>(r.out - out));
    return static_cast<std::size_t>(r.in - text.bytes);
  }
  const bool isAll = reader() != nullptr;  // of a reader's text it is all or nothing
  if (plan.direct == nullptr && (isAll || !plan.isCopy)) {
    unsigned char units[kWindowStorage];
    const unsigned char* const end = text.bytes + text.size;
    unsigned char* const out = segment.reserveTail(kWindowStorage);
    if (out == nullptr) return 0;
    const fast::KernelResult decoded =
        fast::decode(plan, text.bytes, end, units, units + sizeof units);
    if (isAll && decoded.in != end) return 0;
    const fast::KernelResult r = fast::encode(plan, units, decoded.out, out, out + kWindowStorage);
    if (r.in == decoded.out) {
      segment.commitTail(static_cast<unsigned int>(r.out - out));
      return static_cast<std::size_t>(decoded.in - text.bytes);
    }
    if (isAll) return 0;
  }
  fast::PumpBlock block;
  fast::Pump pump;
  DataBufferOutput out(segment);
  pump.start(plan, block, text.bytes, text.bytes + text.size);
  const fast::Pump::Stop stop = pump.run(out);
  if (stop == fast::Pump::Stop::kEnd) return text.size;
  const unsigned char* const reached =
      pump.unit() != pump.unitEnd() ? pump.sourceOf(pump.unit()) : pump.in();
  return static_cast<std::size_t>(reached - text.bytes);
}

// Writes a text of the plan's other side, by the target's codec where it has one.
bool Conversion::putSegment(Text segment, Place& place) {
  if (writer() == nullptr) {
    if (segment.size > place.room()) return false;
    if (m_route.to.isUcs2 && hasSurrogate(segment, m_plan->encoding.bigEndian)) return false;
    std::memcpy(place.out, segment.bytes, segment.size);
    place.out += segment.size;
    return true;
  }
  if (m_heldBytes == 0) return writeText(segment, place);
  LentBuffer<kWindowStorage> joined;
  joined.append(m_held, m_heldBytes);
  joined.append(segment.bytes, static_cast<unsigned int>(segment.size));
  return !joined.hasFailed() && writeText({joined.getData2(), joined.getSize()}, place);
}

// Writes a text that begins with what is held by the target's codec: straight to the caller where
// there is room for whatever it may become.
bool Conversion::writeText(Text text, Place& place) {
  unsigned char aside[kWindowStorage];
  DataBuffer out;
  if (place.room() >= text.size * 4 + 2 * kKernelSlack) {
    out.lendStorage(place.out,
                    static_cast<unsigned int>(std::min<std::size_t>(place.room(), kMostLent)));
  } else {
    out.lendStorage(aside, sizeof aside);
  }
  MarkCounter marks;
  const CodecState before = m_writing;
  const unsigned int taken = writer()->write(text.bytes, static_cast<unsigned int>(text.size),
                                             false, m_writing, out, &marks);
  const std::size_t rest = text.size - taken;
  if (marks.count() != 0 || out.hasFailed() || out.getSize() > place.room() || rest > kMostHeld) {
    m_writing = before;
    return false;
  }
  if (out.getData2() != place.out) std::memcpy(place.out, out.getData2(), out.getSize());
  place.out += out.getSize();
  if (rest != 0) std::memcpy(m_held, text.bytes + taken, rest);
  m_heldBytes = static_cast<std::uint8_t>(rest);
  return true;
}

// ---- The end of a text. ----

Conversion::Status Conversion::finish(Place& place) {
  if (m_waitingBytes != 0) {
    if (const Status status = writeWaiting(place); status != Status::kGood) return status;
  }
  if (const Codec* const codec = writer()) {
    LentBuffer<256> out;
    CodecState writing = m_writing;
    // Nothing was written, so there is nothing to end.
    const bool isUntouched = writing == CodecState{} && m_heldBytes == 0;
    if (!isUntouched) codec->write(m_held, m_heldBytes, true, writing, out, nullptr);
    if (out.getSize() > place.room()) return Status::kFull;
    std::memcpy(place.out, out.getData2(), out.getSize());
    place.out += out.getSize();
  }
  restart();
  return Status::kGood;
}

void Conversion::restart() {
  m_plan = m_route.plan;
  m_reading = m_writing = {};
  m_heldBytes = m_waitingBytes = 0;
  m_hasBegun = m_hasMark = false;
  m_window = kFirstWindow;
  m_steps = 0;
}

}  // namespace iconv_layer
