// StreamConverter: the beginning of a stream, and what waits between its pieces.
#include "encoding/stream/stream_converter.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "encoding/special_code_pages.h"
#include "encoding/stream/block_converter.h"

namespace {

// ---- Which ends serve a code page. ----

struct Ends {
  std::unique_ptr<StreamSource> source;
  std::unique_ptr<StreamTarget> target;
};

std::unique_ptr<StreamSource> makeSource(const EncodingRow& row, bool bigEndian, EngineLegs& legs) {
  if (row.form == EncodingForm::kUtf16) return makeUtf16Source(bigEndian);
  if (row.form == EncodingForm::kUtf32) return makeUtf32Source(bigEndian);
  if (row.reordersMacArabic) return makeMacArabicSource(legs);
  if (isIso2022Jp(row.number)) return makeIso2022JpSource(legs);
  switch (row.number) {
    case kUtf8:
      return makeUtf8Source(legs);
    case kUtf7:
      return makeUtf7Source();
    case kGsm:
      return makeGsmSource();
    case kUsAscii:
      return makeAsciiSource();
    case kIso2022Kr:
      return makeIso2022KrSource(legs);
    case kCodePageHz:
      return makeHzSource(legs);
    default:
      return makeTableSource(row.number, legs);
  }
}

std::unique_ptr<StreamTarget> makeTarget(const EncodingRow& row, EngineLegs& legs) {
  if (row.form == EncodingForm::kUtf16) return makeUtf16Target(row.bigEndian);
  if (row.form == EncodingForm::kUtf32) return makeUtf32Target(row.bigEndian);
  if (isIso2022Jp(row.number)) return makeIso2022JpTarget(legs);
  switch (row.number) {
    case kUtf7:
      return makeUtf7Target();
    case kGsm:
      return makeGsmTarget();
    case kIso2022Kr:
      return makeIso2022KrTarget(legs);
    case kCodePageHz:
      return makeHzTarget(legs);
    default:
      return makeTableTarget(row.number, legs);
  }
}

constexpr std::string_view kPdfMark = "%PDF-1";
constexpr std::size_t kPdfMinimum = 7;

}  // namespace

// ---- One stream. ----

class StreamConverter::Core {
 public:
  explicit Core(const StreamSettings& settings) : m_settings(settings) {}

  StreamStatus prepare();
  StreamStatus push(const unsigned char* data, std::size_t length, bool last, DataBuffer& out);

  const BlockConverter* blocks() const { return m_blocks.get(); }
  std::uint64_t sourceBytes() const { return m_sourceBytes; }

 private:
  bool isSame() const { return m_settings.from == m_settings.to; }
  bool makeBlocks(bool bigEndian);
  bool begin(std::string_view head, DataBuffer& out);
  bool isUndecided(std::string_view head, bool last) const;
  StreamStatus feed(const unsigned char* data, std::size_t length, bool last, DataBuffer& out);
  StreamStatus copy(const unsigned char* data, std::size_t length, DataBuffer& out);
  std::size_t feedWaiting(const unsigned char* data, std::size_t length, bool last,
                          DataBuffer& out);
  void keep(const unsigned char* data, std::size_t length);
  void dropWaiting(std::size_t count);

  StreamSettings m_settings;
  const EncodingRow* m_source = nullptr;  // these two are null for an opaque stream
  const EncodingRow* m_target = nullptr;
  EngineLegs m_legs;
  bool m_isOpaque = false;  // equal code pages that cannot be read: a plain copy
  bool m_isPdf = false;
  bool m_hasBegun = false;
  std::unique_ptr<BlockConverter> m_blocks;  // none for an opaque stream
  DataBuffer m_waiting;                      // of the source: what could not be converted yet
  std::uint64_t m_offset = 0;                // where that begins in the stream
  std::uint64_t m_sourceBytes = 0;
};

StreamStatus StreamConverter::Core::prepare() {
  if (m_settings.to == 0) m_settings.to = m_settings.from;
  if (m_settings.from == 0) m_settings.from = m_settings.to;
  m_isOpaque = isSame() && !isStreamCodePage(m_settings.from);
  if (m_isOpaque) return StreamStatus::kGood;
  if (!isStreamCodePage(m_settings.from)) return StreamStatus::kNoDecoder;
  if (!isStreamCodePage(m_settings.to)) return StreamStatus::kNoEncoder;
  m_source = findEncodingRow(m_settings.from);
  m_target = findEncodingRow(m_settings.to);
  if (!makeBlocks(m_source->bigEndian)) return StreamStatus::kNoMemory;
  return m_blocks->prepare(m_settings);
}

bool StreamConverter::Core::makeBlocks(bool bigEndian) {
  Ends ends;
  // Nothing is rewritten where nothing is converted.
  ends.source = isSame() && m_source->reordersMacArabic ? makeTableSource(m_settings.from, m_legs)
                                                        : makeSource(*m_source, bigEndian, m_legs);
  ends.target = makeTarget(*m_target, m_legs);
  if (ends.source == nullptr || ends.target == nullptr) return false;
  m_blocks.reset(new (std::nothrow)
                     BlockConverter(std::move(ends.source), std::move(ends.target), m_legs));
  return m_blocks != nullptr;
}

// Whether more of the stream must be seen to tell how it begins.
bool StreamConverter::Core::isUndecided(std::string_view head, bool last) const {
  if (last) return false;
  if (m_settings.pdfPassthrough && head.size() < kPdfMinimum &&
      kPdfMark.substr(0, head.size()) == head.substr(0, kPdfMark.size())) {
    return true;
  }
  return !m_isOpaque && std::ranges::any_of(marksOf(*m_source), [&](const Mark& mark) {
    return head.size() < mark.bytes.size() && mark.bytes.substr(0, head.size()) == head;
  });
}

// Settles what the beginning of the stream decides; false when memory is short.
bool StreamConverter::Core::begin(std::string_view head, DataBuffer& out) {
  m_hasBegun = true;
  m_isPdf = m_settings.pdfPassthrough && head.size() >= kPdfMinimum && head.starts_with(kPdfMark);
  if (m_isPdf) return true;
  if (m_isOpaque) return !out.hasFailed();
  if (m_settings.writeMark) {
    const std::string_view mark = markOf(*m_target);
    out.append(mark.data(), static_cast<unsigned int>(mark.size()));
  }
  for (const Mark& mark : marksOf(*m_source)) {
    if (!head.starts_with(mark.bytes)) continue;
    // A copy keeps the mark as a character of the text.
    if (!isSame() || m_settings.writeMark) m_offset = mark.bytes.size();
    if (mark.bigEndian == m_source->bigEndian) continue;
    return makeBlocks(mark.bigEndian) && m_blocks->prepare(m_settings) == StreamStatus::kGood;
  }
  return !out.hasFailed();
}

StreamStatus StreamConverter::Core::push(const unsigned char* data, std::size_t length, bool last,
                                         DataBuffer& out) {
  m_sourceBytes += length;
  if (m_hasBegun) return feed(data, length, last, out);

  // Seven bytes are enough to tell how a stream begins.
  const auto taken =
      static_cast<unsigned int>(std::min<std::size_t>(length, kPdfMinimum - m_waiting.getSize()));
  keep(data, taken);
  if (m_waiting.hasFailed()) return StreamStatus::kNoMemory;
  const std::string_view head(reinterpret_cast<const char*>(m_waiting.getData2()),
                              m_waiting.getSize());
  if (isUndecided(head, last)) return StreamStatus::kGood;
  if (!begin(head, out)) return StreamStatus::kNoMemory;
  if (m_offset != 0) dropWaiting(static_cast<std::size_t>(m_offset));
  if (m_waiting.hasFailed()) return StreamStatus::kNoMemory;
  return feed(data + taken, length - taken, last, out);
}

StreamStatus StreamConverter::Core::feed(const unsigned char* data, std::size_t length, bool last,
                                         DataBuffer& out) {
  if (m_isPdf || m_isOpaque) {
    out.append(m_waiting);
    m_waiting.clear();
    return copy(data, length, out);
  }
  std::size_t done = 0;
  while (m_blocks->status() == StreamStatus::kGood) {
    if (m_waiting.getSize() != 0) {
      done += feedWaiting(data + done, length - done, last, out);
      if (m_waiting.hasFailed()) return StreamStatus::kNoMemory;
      if (done == length) break;
      continue;
    }
    const std::size_t used = m_blocks->convert(data + done, length - done, last, m_offset, out);
    m_offset += used;
    if (m_blocks->status() == StreamStatus::kGood) keep(data + done + used, length - done - used);
    break;
  }
  if (last && m_blocks->status() == StreamStatus::kGood) m_blocks->finish(out);
  if (m_waiting.hasFailed() || out.hasFailed()) return StreamStatus::kNoMemory;
  return m_blocks->status();
}

StreamStatus StreamConverter::Core::copy(const unsigned char* data, std::size_t length,
                                         DataBuffer& out) {
  while (length != 0) {
    const std::size_t part = std::min<std::size_t>(length, StreamDrain::kDrainSize);
    if (!out.append(data, static_cast<unsigned int>(part))) return StreamStatus::kNoMemory;
    const bool isFull = m_settings.drain != nullptr && out.getSize() >= StreamDrain::kDrainSize;
    if (isFull && !m_settings.drain->onStreamOutput(out)) return StreamStatus::kDrainFailed;
    data += part;
    length -= part;
  }
  return StreamStatus::kGood;
}

// Goes on with what waits and as little of the new data as that needs; returns how much of the
// data is dealt with.
std::size_t StreamConverter::Core::feedWaiting(const unsigned char* data, std::size_t length,
                                               bool last, DataBuffer& out) {
  constexpr std::size_t kSome = 256;
  const std::size_t before = m_waiting.getSize();
  const std::size_t added = std::min(length, kSome);
  keep(data, added);
  if (m_waiting.hasFailed()) return 0;
  const std::size_t size = m_waiting.getSize();
  const std::size_t used =
      m_blocks->convert(m_waiting.getData2(), size, last && added == length, m_offset, out);
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
  delete m_core;
  m_core = nullptr;
  m_isOpen = false;
  m_status = StreamStatus::kNoMemory;
  try {
    m_core = new Core(settings);  // copies the substitute
  } catch (const std::bad_alloc&) {
    return m_status;
  }
  m_status = m_core->prepare();
  m_isOpen = m_status == StreamStatus::kGood;
  return m_status;
}

StreamStatus StreamConverter::push(const unsigned char* data, std::size_t length, DataBuffer& out) {
  if (!m_isOpen) return m_status == StreamStatus::kGood ? StreamStatus::kMisuse : m_status;
  if (length != 0) m_status = m_core->push(data, length, false, out);
  m_isOpen = m_status == StreamStatus::kGood;
  return m_status;
}

StreamStatus StreamConverter::finish(DataBuffer& out) {
  if (!m_isOpen) return m_status == StreamStatus::kGood ? StreamStatus::kMisuse : m_status;
  constexpr unsigned char kNothing = 0;
  m_status = m_core->push(&kNothing, 0, true, out);
  m_isOpen = false;
  return m_status;
}

StreamStatus StreamConverter::status() const { return m_status; }

std::uint64_t StreamConverter::errorCount() const {
  const BlockConverter* blocks = m_core == nullptr ? nullptr : m_core->blocks();
  return blocks == nullptr ? 0 : blocks->errorCount();
}

const StreamError& StreamConverter::firstError() const {
  static constexpr StreamError kNone;
  const BlockConverter* blocks = m_core == nullptr ? nullptr : m_core->blocks();
  return blocks == nullptr ? kNone : blocks->firstError();
}

std::uint64_t StreamConverter::sourceBytes() const {
  return m_core == nullptr ? 0 : m_core->sourceBytes();
}
