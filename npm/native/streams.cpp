// Conversions, whole or piece by piece.
#include <cstring>
#include <deque>
#include <new>
#include <vector>

#include "encoding/code_page_list.h"
#include "encoding/stream/stream_converter.h"
#include "npm/native/exports.h"

namespace {

enum Flags : unsigned int {
  kWriteMark = 1,  // begin the output with a byte order mark
  kToText = 2,     // the output becomes a string: it begins with no mark
  kFromText = 4,   // the input is a string: what looks like a mark is a character
};

// A problem as JavaScript reads it; numbers that may be large are doubles.
struct ProblemRow {
  double offset;
  double outputOffset;
  double line;
  std::uint32_t length;
  std::int32_t codePoint;
  std::uint32_t kind;
  std::uint32_t byteCount;
  unsigned char bytes[StreamError::kMaxBytes];
  char written[StreamError::kMaxWritten + 1];
};
static_assert(sizeof(ProblemRow) == 104);

// Treatments by what they are called, parsed once each.
std::deque<StreamSettings>& treatments() {
  static std::deque<StreamSettings> all;
  return all;
}

class Conversion final : private StreamErrorHandler {
 public:
  StreamStatus begin(int from, int to, unsigned int treatment, unsigned int flags,
                     unsigned int maxProblems);
  StreamStatus push(const unsigned char* data, unsigned int size, bool isLast);

  const std::vector<ProblemRow>& problems() const { return m_problems; }
  // Those were told; of maxProblems, so many fewer are left.
  void forgetProblems() {
    m_most -= std::min(m_most, m_problems.size());
    m_problems.clear();
  }
  double errorCount() const { return static_cast<double>(m_stream.errorCount()); }
  double approximationCount() const { return static_cast<double>(m_stream.approximationCount()); }

 private:
  void onStreamError(const StreamError& error) override;
  StreamStatus pushMark();

  StreamConverter m_stream;
  StreamSettings m_settings;
  std::vector<ProblemRow> m_problems;
  unsigned int m_flags = 0;
  std::size_t m_most = 0;
  double m_writtenBefore = 0;  // by the calls before this one, in bytes
  bool m_isAtBeginning = true;
  std::uint32_t m_ownMark = 0;  // bytes that were pushed in front of the input
};

StreamStatus Conversion::begin(int from, int to, unsigned int treatment, unsigned int flags,
                               unsigned int maxProblems) {
  m_settings = treatments()[treatment];
  m_settings.from = from;
  m_settings.to = to;
  m_settings.writeMark = (flags & kWriteMark) != 0;
  m_settings.dropMark = (flags & kToText) != 0 || ((flags & kFromText) != 0 && to == from);
  m_settings.errorHandler = this;
  m_flags = flags;
  m_most = maxProblems;
  m_problems.clear();
  m_writtenBefore = 0;
  m_isAtBeginning = true;
  m_ownMark = 0;
  if (!isStreamCodePage(from)) return StreamStatus::kNoDecoder;
  if (!isStreamTarget(to)) return StreamStatus::kNoEncoder;
  return m_stream.begin(m_settings);
}

// A mark of our own, so that no character of a string is taken for one.
StreamStatus Conversion::pushMark() {
  constexpr unsigned char kMark[] = {0xFF, 0xFE};
  m_ownMark = sizeof kMark;
  return m_stream.push(kMark, sizeof kMark, output());
}

StreamStatus Conversion::push(const unsigned char* data, unsigned int size, bool isLast) {
  output().truncate(0);
  StreamStatus status = StreamStatus::kGood;
  if (m_isAtBeginning && size >= 2) {
    const unsigned int unit = data[0] | data[1] * 256u;
    if ((m_flags & kFromText) != 0 && (unit == 0xFEFF || unit == 0xFFFE)) status = pushMark();
    m_isAtBeginning = false;
  }
  if (status == StreamStatus::kGood) {
    status = isLast ? m_stream.finish(data, size, output()) : m_stream.push(data, size, output());
  }
  m_writtenBefore += static_cast<double>(output().written());
  return status;
}

void Conversion::onStreamError(const StreamError& error) {
  const bool isStop = m_settings.treatment == StreamTreatment::kStop &&
                      error.kind != StreamErrorKind::kApproximated;
  if (m_problems.size() >= m_most && !isStop) return;
  const std::uint32_t inUnit = (m_flags & kFromText) != 0 ? 2 : 1;
  const double outUnit = (m_flags & kToText) != 0 ? 2 : 1;
  ProblemRow row = {};
  row.offset = static_cast<double>((error.offset - m_ownMark) / inUnit);
  row.outputOffset = (m_writtenBefore + static_cast<double>(output().written())) / outUnit;
  row.line = static_cast<double>(error.line);
  row.length = error.length / inUnit;
  row.codePoint = error.codePoint;
  row.kind = static_cast<std::uint32_t>(error.kind);
  row.byteCount = error.byteCount;
  std::memcpy(row.bytes, error.bytes, sizeof row.bytes);
  std::memcpy(row.written, error.written, sizeof row.written);
  m_problems.push_back(row);
}

}  // namespace

// The number of a treatment, as the tool's --on-error takes it; -1 for one that is unknown.
ENCCONV_EXPORT(findTreatment) int findTreatment(const char* name, unsigned int length) {
  StreamSettings settings;
  if (!parseStreamTreatment(textAt(name, length), settings)) return -1;
  treatments().push_back(settings);
  return static_cast<int>(treatments().size()) - 1;
}
// The number of the encoding that a treatment needs besides; 0 for none.
ENCCONV_EXPORT(alternateOf) int alternateOf(unsigned int treatment) {
  const StreamSettings& settings = treatments()[treatment];
  return settings.treatment == StreamTreatment::kAlternate ? settings.alternate : 0;
}

ENCCONV_EXPORT(makeConversion) Conversion* makeConversion() {
  return new (std::nothrow) Conversion();
}
ENCCONV_EXPORT(deleteConversion) void deleteConversion(Conversion* conversion) {
  delete conversion;
}
// A StreamStatus.
ENCCONV_EXPORT(beginConversion)
unsigned int beginConversion(Conversion* conversion, int from, int to, unsigned int treatment,
                             unsigned int flags, unsigned int maxProblems) {
  return static_cast<unsigned int>(conversion->begin(from, to, treatment, flags, maxProblems));
}
// Converts a piece; what it became is the output. A StreamStatus.
ENCCONV_EXPORT(pushPiece)
unsigned int pushPiece(Conversion* conversion, const unsigned char* data, unsigned int size,
                       bool isLast) {
  return static_cast<unsigned int>(conversion->push(data, size, isLast));
}

// The problems that were not read yet: ProblemRow by ProblemRow.
ENCCONV_EXPORT(problemRows) const void* problemRows(const Conversion* conversion) {
  return conversion->problems().data();
}
ENCCONV_EXPORT(problemRowCount) unsigned int problemRowCount(const Conversion* conversion) {
  return conversion->problems().size();
}
ENCCONV_EXPORT(forgetProblems) void forgetProblems(Conversion* conversion) {
  conversion->forgetProblems();
}
// All that there were.
ENCCONV_EXPORT(problemCount) double problemCount(const Conversion* conversion) {
  return conversion->errorCount();
}
ENCCONV_EXPORT(approximationCount) double approximationCount(const Conversion* conversion) {
  return conversion->approximationCount();
}
