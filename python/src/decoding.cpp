// Bytes to str.
#include <algorithm>
#include <cstring>

#include "encoding/code_page_list.h"
#include "encoding/plan.h"
#include "python/src/codec_call.h"
#include "python/src/error_handling.h"
#include "python/src/text_builder.h"

namespace {

// How many bytes in front are ASCII.
std::size_t countAscii(const unsigned char* data, std::size_t size) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  constexpr std::size_t kStep = 64;
  std::size_t i = 0;
  for (; size - i >= kStep; i += kStep) {
    std::uint64_t words[kStep / 8];
    std::memcpy(words, data + i, kStep);
    std::uint64_t bits = 0;
    for (const std::uint64_t word : words) bits |= word;
    if ((bits & kHighBits) != 0) break;
  }
  for (; size - i >= 8; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, data + i, 8);
    if ((word & kHighBits) != 0) break;
  }
  while (i < size && data[i] < 0x80) ++i;
  return i;
}

// How many bytes Python's codec of an encoding that is in its place asks for before it judges what
// begins with these. Of most it is two, whether or not the first can begin a pair.
std::size_t askedByPython(int codePage, const unsigned char* data, std::size_t size) {
  const unsigned char first = data[0];
  switch (codePage) {
    case 200722:  // Shift_JIS
      return (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xEA) ? 2 : 1;
    case 200948:  // with JIS X 0213
    case 200949:
      return (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xFC) ? 2 : 1;
    case 200947:  // EUC-KR, which composes a syllable of a filler and three letters
      return size >= 2 && first == 0xA4 && data[1] == 0xD4 ? 8 : 2;
    case 200730:  // EUC-JP, which has a third plane behind 8F
    case kCodePageEucJp:
      return first == 0x8F ? 3 : 2;
    case 200700:  // GB18030
      return size >= 2 && data[1] >= '0' && data[1] <= '9' ? 4 : 2;
    default:
      return 2;
  }
}

// One text on its way. Segments of it, each up to what is malformed, go through the stream.
class Decoding {
 public:
  Decoding(CodecCall& call, const HeldBuffer& buffer)
      : m_call(call),
        m_entry(*call.entry),
        m_buffer(buffer),
        m_data(buffer.data()),
        m_size(buffer.size()),
        m_errors(call.label, call.errors),
        m_countsAsPython(call.spans == ErrorSpans::kPython && m_entry.isStateless &&
                         !m_entry.isSingleByte),
        m_lock(buffer.isConstant() && buffer.size() >= kUnlockedBytes),
        m_text(buffer.size(), call.entry->mayHavePairs, &m_lock) {
    m_settings.from = m_entry.codePage;
    m_settings.to = kHostUnits.utf16;
    m_settings.dropMark = true;
    const BuiltinErrors builtin = builtinErrors(call.errors);
    const bool isOwn = call.spans == ErrorSpans::kPieces;
    if (isOwn && builtin == BuiltinErrors::kIgnore) m_settings.treatment = StreamTreatment::kDrop;
    if (isOwn && builtin == BuiltinErrors::kReplace) {
      m_settings.treatment = StreamTreatment::kSubstitute;
    }
  }

  PyObject* run();

 private:
  enum class Step : unsigned char { kEnd, kError, kFailure };
  bool takeNarrow();
  Step convertSegment();
  bool findBad(Step step, std::size_t& start, std::size_t& length);
  bool treatError(std::size_t start, std::size_t length);
  bool repeatSegment(std::size_t end);
  std::size_t endOfPiece(std::size_t start, std::size_t length, const char*& reason);
  bool isCutShort(std::size_t start);
  bool isCutForPython(std::size_t start) const {
    return askedByPython(m_entry.codePage, m_data + start, m_size - start) > m_size - start;
  }
  bool failMemory();

  CodecCall& m_call;
  EncodingEntry& m_entry;
  const HeldBuffer& m_buffer;
  const unsigned char* m_data;
  std::size_t m_size;
  CallErrors m_errors;
  BorrowedStream m_stream;
  StreamSettings m_settings;
  bool m_countsAsPython;  // the bytes of bad text
  ReleasedLock m_lock;
  TextBuilder m_text;
  std::size_t m_begin = 0;  // of the segment, in the data
  std::size_t m_begun = 0;  // and in the text
};

bool Decoding::failMemory() {
  if (PyErr_Occurred() == nullptr) PyErr_NoMemory();
  return false;
}

Decoding::Step Decoding::convertSegment() {
  StreamConverter& stream = *m_stream;
  m_begun = m_text.size();
  StreamStatus status = stream.begin(m_settings, m_call.place);
  if (status == StreamStatus::kGood) {
    const unsigned char* const begin = m_data + m_begin;
    const std::size_t size = m_size - m_begin;
    status = m_call.isLast ? stream.finish(begin, size, m_text) : stream.push(begin, size, m_text);
  }
  const bool isWritten = m_text.flush();
  if (status == StreamStatus::kGood && isWritten) return Step::kEnd;
  return status == StreamStatus::kStopped && isWritten ? Step::kError : Step::kFailure;
}

// Whether what is left only lacks its end.
bool Decoding::isCutShort(std::size_t start) {
  if (m_countsAsPython) return m_call.isLast && isCutForPython(start);
  constexpr std::size_t kLongest = 16;  // an escape sequence
  const std::size_t left = m_size - start;
  if (!m_call.isLast || left > kLongest) return false;
  BorrowedStream stream;
  TextBuilder unused(kLongest, true);
  StreamPlace place;
  place.hasBegun = true;
  place.isOtherOrder = m_call.place.isOtherOrder;
  place.state = m_call.place.state;
  return stream->begin(m_settings, place) == StreamStatus::kGood &&
         stream->push(m_data + start, left, unused) == StreamStatus::kGood &&
         stream->place().settled == 0;
}

std::size_t Decoding::endOfPiece(std::size_t start, std::size_t length, const char*& reason) {
  const bool isUnit =
      m_entry.row->form == EncodingForm::kUtf16 || m_entry.row->form == EncodingForm::kUtf32;
  if (m_entry.isSingleByte) {
    reason = "character maps to <undefined>";
    return start + length;
  }
  if (isCutShort(start)) {
    reason = isUnit ? "truncated data" : "incomplete multibyte sequence";
    return m_size;
  }
  reason = isUnit ? "illegal encoding" : "illegal multibyte sequence";
  return start + (m_countsAsPython ? 1 : length);
}

// Takes the state from the segment up to a place, which is behind a malformed piece.
bool Decoding::repeatSegment(std::size_t end) {
  m_text.truncate(m_begun);
  StreamSettings settings = m_settings;
  settings.treatment = StreamTreatment::kDrop;
  BorrowedStream stream;
  const bool isRepeated =
      stream->begin(settings, m_call.place) == StreamStatus::kGood &&
      stream->push(m_data + m_begin, end - m_begin, m_text) == StreamStatus::kGood &&
      m_text.flush();
  m_call.place = stream->place();
  return isRepeated;
}

bool Decoding::treatError(std::size_t start, std::size_t length) {
  if (m_entry.isStateless) {
    m_call.place.isOtherOrder = m_stream->place().isOtherOrder;
  } else if (!repeatSegment(start + length)) {
    return failMemory();
  }
  m_call.place.hasBegun = true;
  const char* reason = nullptr;
  const std::size_t end = endOfPiece(start, length, reason);
  if (m_errors.object() == nullptr) {
    PyObject* const given = m_buffer.object();
    if (PyBytes_CheckExact(given)) {
      m_errors.setObject(given);
    } else {
      const Reference copy(
          PyBytes_FromStringAndSize(reinterpret_cast<const char*>(m_data), pySize(m_size)));
      if (copy == nullptr) return false;
      m_errors.setObject(copy.get());
    }
  }
  Handled handled;
  if (!m_errors.handleDecoding(start, end, reason, handled)) return false;
  m_data = reinterpret_cast<const unsigned char*>(PyBytes_AS_STRING(m_errors.object()));
  m_size = static_cast<std::size_t>(PyBytes_GET_SIZE(m_errors.object()));
  m_begin = handled.position;
  return m_text.append(handled.replacement.get());
}

// Takes what is ASCII in front, or in tables of single bytes Latin-1, which need no UTF-16. False
// when memory is short.
bool Decoding::takeNarrow() {
  constexpr std::size_t kWorthwhile = 1024;
  if (m_size < kWorthwhile) return true;
  if (m_entry.readsAscii) {
    // A block is copied while it is in the nearest cache.
    constexpr std::size_t kBlock = 16 * 1024;
    while (m_begin < m_size) {
      const std::size_t size = std::min(kBlock, m_size - m_begin);
      const std::size_t ascii = countAscii(m_data + m_begin, size);
      if (m_begin == 0 && ascii < kWorthwhile) break;
      if (!m_text.appendLatin1(m_data + m_begin, ascii, true)) return false;
      m_begin += ascii;
      if (ascii != size) break;
    }
  }
  const fast::Plan* const plan = m_entry.readingLatin1;
  if (plan != nullptr && plan->direct != nullptr) {
    while (m_begin < m_size) {
      const std::span<unsigned char> window = m_text.latin1Window();
      const fast::KernelResult r = plan->direct(*plan, m_data + m_begin, m_data + m_size,
                                                window.data(), window.data() + window.size());
      const auto count = static_cast<std::size_t>(r.out - window.data());
      // A str that soon has to become wider is not begun.
      if (m_begin == 0 && count < kWorthwhile) break;
      if (!m_text.takeLatin1(count)) return false;
      m_begin = static_cast<std::size_t>(r.in - m_data);
      if (window.size() - count >= fast::kKernelSlack) break;
    }
  }
  m_call.place.hasBegun = m_call.place.hasBegun || m_begin != 0;
  return true;
}

// Whether there is bad text to be treated where a segment ended; start is where that is, or how far
// all is done.
bool Decoding::findBad(Step step, std::size_t& start, std::size_t& length) {
  if (step == Step::kError) {
    const StreamError& error = m_stream->firstError();
    start = m_begin + static_cast<std::size_t>(error.offset);
    length = error.length;
    if (m_call.isLast || !m_countsAsPython) return true;
  } else {
    length = 1;
    start = m_call.isLast ? m_size : m_begin + static_cast<std::size_t>(m_stream->place().settled);
    if (!m_countsAsPython || start == m_size) return false;
  }
  return !isCutForPython(start);
}

PyObject* Decoding::run() {
  if (!takeNarrow()) {
    m_lock.takeBack();
    failMemory();
    return nullptr;
  }
  std::size_t start = 0, length = 0;
  while (true) {
    const Step step = convertSegment();
    m_lock.takeBack();
    if (step == Step::kFailure) {
      raiseFailure(m_stream->status());
      return nullptr;
    }
    if (!findBad(step, start, length)) break;
    if (!treatError(start, length)) return nullptr;
    if (m_buffer.isConstant() && m_size - m_begin >= kUnlockedBytes) m_lock.release();
  }
  m_call.place = m_stream->place();
  m_call.used = start;
  return m_text.finish();
}

}  // namespace

PyObject* decodeShort(EncodingEntry& entry, const unsigned char* data, std::size_t size) {
  constexpr std::size_t kAtOnce = 64 * 1024;
  if (size == 0) return PyUnicode_New(0, 0);
  if (entry.readsAscii && size < kAtOnce && (data[0] | data[size - 1]) < 0x80 &&
      countAscii(data, size) == size) {
    PyObject* const text = PyUnicode_New(pySize(size), 0x7F);
    if (text != nullptr) std::memcpy(PyUnicode_1BYTE_DATA(text), data, size);
    return text;
  }
  const fast::Plan& plan = *entry.reading;
  if (size > fast::kShortBytes) return nullptr;
  if (plan.whole == nullptr || plan.mayBeginWithMark(data, size)) return nullptr;
  alignas(32) unsigned char units[fast::kShortOutput];
  const unsigned char* const end = plan.whole(plan, data, size, units, units + sizeof units);
  if (end == nullptr) return nullptr;
  return textOfUnits(reinterpret_cast<const std::uint16_t*>(units),
                     static_cast<std::size_t>(end - units) / 2, entry.mayHavePairs);
}

PyObject* decodeBytes(CodecCall& call, const HeldBuffer& buffer) {
  if (!call.entry->openReading()) return nullptr;
  return Decoding(call, buffer).run();
}
