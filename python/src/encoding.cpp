// str to bytes.
#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "encoding/plan.h"
#include "python/src/bytes_output.h"
#include "python/src/codec_call.h"
#include "python/src/error_handling.h"
#include "python/src/text_builder.h"
#include "support/utf.h"

namespace {

// The characters of a str as text of an encoding that has them as they are.
struct Characters {
  const unsigned char* data = nullptr;
  std::size_t count = 0;
  std::size_t width = 1;  // bytes of each
  std::size_t ascii = 0;  // how many are ASCII, where the width is 2

  int codePage() const {
    return width == 1 ? kHostUnits.bytes : width == 2 ? kHostUnits.utf16 : kHostUnits.utf32;
  }
};

// What has to be known of units before they are converted, told in one go over them, by numbers
// of sixteen bits: as many of them stand in a register as units.
struct UnitCounts {
  std::size_t ascii = 0;
  bool hasSurrogates = false;
};

UnitCounts countsOf(const Py_UCS2* units, std::size_t count) {
  constexpr std::size_t kBlock = 32768;  // may be counted in sixteen bits
  UnitCounts all;
  for (std::size_t i = 0; i < count; i += kBlock) {
    const std::size_t end = std::min(count, i + kBlock);
    std::uint16_t ascii = 0, surrogates = 0;
    for (std::size_t j = i; j < end; ++j) {
      ascii = static_cast<std::uint16_t>(ascii + (units[j] < 0x80 ? 1 : 0));
      const auto fromFirst = static_cast<std::uint16_t>(units[j] - 0xD800);
      surrogates = static_cast<std::uint16_t>(surrogates + (fromFirst < 0x800 ? 1 : 0));
    }
    all.ascii += ascii;
    all.hasSurrogates |= surrogates != 0;
  }
  return all;
}

// The most that the characters may become, where that is little more than they mostly do. What is
// large is told nearly to the byte: malloc gives an object that had to shrink pages of its own
// again each time, and to touch those for the first time costs as much as half of a conversion.
std::size_t expectedBytes(const EncodingRow& row, const Characters& text) {
  constexpr std::size_t kSlack = fast::kKernelSlack + 64;
  switch (row.form) {
    case EncodingForm::kSingleByte:
      return text.count + kSlack;
    case EncodingForm::kDoubleByte:
    case EncodingForm::kCodec:  // mostly
      if (text.width != 2 || text.count < kUnlockedBytes) {
        return text.count * std::min<std::size_t>(text.width, 2) + kSlack;
      }
      return text.count * 2 - text.ascii + kSlack;
    case EncodingForm::kUtf16:
      return text.count * std::max<std::size_t>(text.width, 2) + kSlack;
    case EncodingForm::kUtf32:
      return text.count * 4 + kSlack;
    default:
      return text.count * std::min<std::size_t>(text.width + 1, 4) + kSlack;
  }
}

// One text on its way. Segments of it, each up to what cannot be encoded, go through the stream.
class Encoding final : private StreamErrorHandler {
 public:
  Encoding(CodecCall& call, PyObject* text)
      : m_call(call),
        m_entry(*call.entry),
        m_string(text),
        m_errors(call.label, call.errors),
        m_characters(charactersOf(text)),
        m_lock(m_characters.count * m_characters.width >= kUnlockedBytes),
        m_bytes(expectedBytes(*call.entry->row, m_characters), &m_lock) {
    m_settings.to = m_entry.codePage;
    m_settings.errorHandler = this;
    useBuiltin();
  }

  PyObject* run();

 private:
  enum class Step : unsigned char { kEnd, kError, kFailure };

  Characters charactersOf(PyObject* text);
  void useBuiltin();
  bool writeMark();
  Step convertSegment();
  bool treatError();
  bool repeatSegment(std::size_t end);
  bool settle(StreamConverter& stream, std::size_t begin, std::size_t end);
  bool lacks(std::size_t character) const;
  std::size_t endOfRun(std::size_t start) const;
  bool writeReplacement(PyObject* replacement);
  bool failMemory();
  void onStreamError(const StreamError& error) override;

  CodecCall& m_call;
  EncodingEntry& m_entry;
  PyObject* m_string;
  CallErrors m_errors;
  std::vector<Py_UCS4> m_scalars;  // of a str with surrogates, which are none of UTF-16 there
  Characters m_characters;
  BorrowedStream m_stream;
  StreamSettings m_settings;
  ReleasedLock m_lock;
  BytesOutput m_bytes;
  std::size_t m_begin = 0;      // of the segment, in characters
  std::size_t m_begun = 0;      // and in the bytes
  std::uint64_t m_stopped = 0;  // where the stream was stopped because a character would have been
  bool m_isStopped = false;     // written as another
};

Characters Encoding::charactersOf(PyObject* text) {
  Characters all;
  all.data = static_cast<const unsigned char*>(PyUnicode_DATA(text));
  all.count = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
  all.width = static_cast<std::size_t>(PyUnicode_KIND(text));
  if (all.width != 2) return all;
  const Py_UCS2* const units = PyUnicode_2BYTE_DATA(text);
  const UnitCounts counts = countsOf(units, all.count);
  all.ascii = counts.ascii;
  if (!counts.hasSurrogates) return all;
  m_scalars.assign(units, units + all.count);
  all.data = reinterpret_cast<const unsigned char*>(m_scalars.data());
  all.width = 4;
  return all;
}

// Handlers that write the same for every character need not be asked about each.
void Encoding::useBuiltin() {
  const BuiltinErrors builtin = builtinErrors(m_call.errors);
  m_settings.treatment = StreamTreatment::kStop;
  if (builtin == BuiltinErrors::kIgnore) m_settings.treatment = StreamTreatment::kDrop;
  if (builtin != BuiltinErrors::kReplace) return;
  m_settings.treatment = StreamTreatment::kSubstitute;
  m_settings.hasSubstitute = true;
  m_settings.substitute.assign(1, '?');
}

// A character that would be written as another one is one that the encoding lacks.
void Encoding::onStreamError(const StreamError& error) {
  if (error.kind != StreamErrorKind::kApproximated || m_isStopped) return;
  m_isStopped = true;
  m_stopped = error.offset;
  m_bytes.close();
}

bool Encoding::failMemory() {
  if (PyErr_Occurred() == nullptr) PyErr_NoMemory();
  return false;
}

Encoding::Step Encoding::convertSegment() {
  StreamConverter& stream = *m_stream;
  m_begun = m_bytes.size();
  m_isStopped = false;
  m_settings.from = m_characters.codePage();
  StreamStatus status = stream.begin(m_settings, m_call.place);
  if (status == StreamStatus::kBadSubstitute) {
    m_settings.treatment = StreamTreatment::kStop;
    m_settings.hasSubstitute = false;
    status = stream.begin(m_settings, m_call.place);
  }
  if (status == StreamStatus::kGood) {
    const unsigned char* const begin = m_characters.data + m_begin * m_characters.width;
    const std::size_t size = (m_characters.count - m_begin) * m_characters.width;
    status =
        m_call.isLast ? stream.finish(begin, size, m_bytes) : stream.push(begin, size, m_bytes);
  }
  if (m_isStopped) {
    m_bytes.reopen();
    // What cannot be known beforehand is settled by the handler: from now on it is asked.
    m_settings.treatment = StreamTreatment::kStop;
    m_settings.hasSubstitute = false;
    if (stream.errorCount() != 0 || status == StreamStatus::kGood) {
      m_bytes.truncate(m_begun);
      return convertSegment();
    }
    return Step::kError;
  }
  if (status == StreamStatus::kGood) return Step::kEnd;
  return status == StreamStatus::kStopped ? Step::kError : Step::kFailure;
}

// Takes the state from the segment up to a character, and writes what is in front of it.
bool Encoding::repeatSegment(std::size_t end) {
  m_bytes.truncate(m_begun);
  StreamSettings settings = m_settings;
  settings.errorHandler = nullptr;
  BorrowedStream stream;
  const std::size_t width = m_characters.width;
  if (stream->begin(settings, m_call.place) != StreamStatus::kGood) return false;
  if (stream->push(m_characters.data + m_begin * width, (end - m_begin) * width, m_bytes) !=
      StreamStatus::kGood) {
    return false;
  }
  m_call.place = stream->place();
  const std::size_t settled = m_begin + static_cast<std::size_t>(m_call.place.settled) / width;
  if (settled == end) return true;
  // The last characters wait for what follows, which is none of the text.
  return settle(*stream, settled, end);
}

// Writes characters that wait: nothing follows that they may belong to, but the text goes on in the
// shift that they are in. So what follows is no character, and dropped.
bool Encoding::settle(StreamConverter& stream, std::size_t begin, std::size_t end) {
  constexpr Py_UCS4 kNoCharacter = 0x110000;
  std::vector<Py_UCS4> waiting;
  for (std::size_t i = begin; i < end; ++i) {
    waiting.push_back(PyUnicode_READ_CHAR(m_string, pySize(i)));
  }
  waiting.push_back(kNoCharacter);
  StreamSettings settings;
  settings.from = kHostUnits.utf32;
  settings.to = m_entry.codePage;
  settings.treatment = StreamTreatment::kDrop;
  const StreamPlace before = m_call.place;
  if (stream.begin(settings, before) != StreamStatus::kGood) return false;
  const StreamStatus status = stream.push(reinterpret_cast<const unsigned char*>(waiting.data()),
                                          waiting.size() * sizeof waiting[0], m_bytes);
  m_call.place = stream.place();
  return status == StreamStatus::kGood;
}

bool Encoding::lacks(std::size_t character) const {
  const Py_UCS4 scalar = PyUnicode_READ_CHAR(m_string, pySize(character));
  if (scalar > 0xFFFF) return true;
  const auto unit = static_cast<std::uint16_t>(scalar);
  unsigned char units[2];
  std::memcpy(units, &unit, 2);
  unsigned char bytes[fast::kKernelSlack + 16];
  return fast::encode(*m_entry.writing2, units, units + 2, bytes, bytes + sizeof bytes).in == units;
}

// Single-byte encodings tell of all characters in a row at once, as Python's do.
std::size_t Encoding::endOfRun(std::size_t start) const {
  std::size_t end = start + 1;
  while (m_entry.isSingleByte && end < m_characters.count && lacks(end)) ++end;
  return end;
}

// Puts what a handler gave behind what is written, as a part of the text.
bool Encoding::writeReplacement(PyObject* replacement) {
  if (PyBytes_Check(replacement)) {
    return m_bytes.append(PyBytes_AS_STRING(replacement),
                          static_cast<std::size_t>(PyBytes_GET_SIZE(replacement))) ||
           failMemory();
  }
  if (PyUnicode_GET_LENGTH(replacement) == 0) return true;
  CodecCall call = m_call;
  call.errors = nullptr;
  call.isLast = false;
  call.isReplacement = true;
  const Reference written(Encoding(call, replacement).run());
  if (written == nullptr) {
    if (m_entry.isSingleByte && PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) {
      m_errors.raiseLast();
    }
    return false;
  }
  m_call.place = call.place;
  return m_bytes.append(PyBytes_AS_STRING(written.get()),
                        static_cast<std::size_t>(PyBytes_GET_SIZE(written.get()))) ||
         failMemory();
}

bool Encoding::treatError() {
  const std::uint64_t offset = m_isStopped ? m_stopped : m_stream->firstError().offset;
  const std::size_t start = m_begin + static_cast<std::size_t>(offset) / m_characters.width;
  // What waits for more text, or for a shift back, is written once it is known where the text ends.
  const bool isRepeated = m_entry.row->form == EncodingForm::kCodec;
  if (isRepeated && !repeatSegment(start)) return failMemory();
  m_call.place.hasBegun = true;
  const bool isUnit =
      m_entry.row->form == EncodingForm::kUtf16 || m_entry.row->form == EncodingForm::kUtf32;
  const char* const reason = m_entry.isSingleByte ? "character maps to <undefined>"
                             : m_entry.row->form == EncodingForm::kUtf8 || isUnit
                                 ? "surrogates not allowed"
                                 : "illegal multibyte sequence";
  if (m_errors.object() == nullptr) m_errors.setObject(m_string);
  Handled handled;
  if (!m_errors.handleEncoding(start, endOfRun(start), reason, handled)) return false;
  m_begin = handled.position;
  return writeReplacement(handled.replacement.get());
}

// Offsets of characters are those of the text behind the mark, which streams write in front of what
// they are given first.
bool Encoding::writeMark() {
  const bool writesMark =
      m_entry.row->writesMark && !m_call.place.hasBegun && m_characters.count != 0;
  m_call.place.hasBegun = m_call.place.hasBegun || m_characters.count != 0;
  const std::string_view mark = writesMark ? markOf(*m_entry.row) : std::string_view();
  return m_bytes.append(mark.data(), mark.size());
}

PyObject* Encoding::run() {
  if (!writeMark()) {
    m_lock.takeBack();
    failMemory();
    return nullptr;
  }
  while (true) {
    const Step step = convertSegment();
    m_lock.takeBack();
    if (step == Step::kFailure) {
      raiseFailure(m_stream->status());
      return nullptr;
    }
    if (step == Step::kEnd) break;
    if (!treatError()) return nullptr;
    if ((m_characters.count - m_begin) * m_characters.width >= kUnlockedBytes) m_lock.release();
  }
  m_call.place = m_stream->place();
  m_call.used = m_call.isLast
                    ? m_characters.count
                    : m_begin + static_cast<std::size_t>(m_call.place.settled) / m_characters.width;
  if (m_call.isReplacement && m_call.used != m_characters.count &&
      !settle(*m_stream, m_call.used, m_characters.count)) {
    failMemory();
    return nullptr;
  }
  return m_bytes.finish();
}

}  // namespace

PyObject* encodeShort(EncodingEntry& entry, PyObject* text) {
  const auto count = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
  if (count == 0) return PyBytes_FromStringAndSize(nullptr, 0);
  if (entry.writesAscii && PyUnicode_IS_ASCII(text)) {
    return PyBytes_FromStringAndSize(static_cast<const char*>(PyUnicode_DATA(text)), pySize(count));
  }
  const auto width = static_cast<std::size_t>(PyUnicode_KIND(text));
  if (width == 4 || count * width > fast::kShortBytes) return nullptr;
  const fast::Plan& plan = width == 1 ? *entry.writing1 : *entry.writing2;
  const auto* const data = static_cast<const unsigned char*>(PyUnicode_DATA(text));
  if (width == 2 && entry.mayHavePairs && hasSurrogates(PyUnicode_2BYTE_DATA(text), count)) {
    return nullptr;
  }
  if (plan.whole == nullptr) return nullptr;
  unsigned char bytes[fast::kShortOutput];
  const unsigned char* const end =
      plan.whole(plan, data, count * width, bytes, bytes + sizeof bytes);
  if (end == nullptr) return nullptr;
  return PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes), end - bytes);
}

PyObject* encodeText(CodecCall& call, PyObject* text) {
  if (!call.entry->openWriting()) return nullptr;
  return Encoding(call, text).run();
}
