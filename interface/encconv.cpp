// The C++ interface, over the stream of the engine.
#include "encconv/encconv.h"

#include <new>
#include <utility>

#include "encoding/special_code_pages.h"
#include "encoding/stream/stream_converter.h"
#include "support/zv_base.h"

namespace encconv {
namespace {

StreamSettings settingsOf(const Encoding& from, const Encoding& to, const Options& options) {
  StreamSettings settings;
  settings.from = from.code_page();
  settings.to = to.code_page();
  settings.treatment = static_cast<StreamTreatment>(options.on_error);
  settings.hasSubstitute = options.substitute.has_value();
  settings.substituteIsRaw = options.substitute_is_raw;
  settings.substitute = options.substitute.value_or(std::string());
  settings.alternate = options.alternate;
  settings.writeMark = options.byte_order_mark;
  settings.pdfPassthrough = options.pdf_passthrough;
  return settings;
}

Status statusOf(StreamStatus status) {
  switch (status) {
    case StreamStatus::kGood:
      return Status::ok;
    case StreamStatus::kStopped:
      return Status::stopped;
    case StreamStatus::kNoDecoder:
      return Status::unknown_source;
    case StreamStatus::kNoEncoder:
      return Status::unknown_target;
    case StreamStatus::kNoAlternate:
      return Status::unknown_alternate;
    case StreamStatus::kBadSubstitute:
      return Status::invalid_substitute;
    case StreamStatus::kMisuse:
      return Status::misuse;
    case StreamStatus::kDrainFailed:
    case StreamStatus::kNoMemory:
      break;
  }
  return Status::out_of_memory;
}

Problem problemOf(const StreamError& error) {
  return {error.offset,
          error.line,
          error.length,
          error.codePoint,
          error.kind == StreamErrorKind::kMalformed,
          std::string(reinterpret_cast<const char*>(error.bytes), error.byteCount)};
}

// Output goes to a string of any size.
class StringDrain : public StreamDrain {
 public:
  explicit StringDrain(std::string& text) : m_text(text) {}
  bool onStreamOutput(DataBuffer& out) override {
    try {
      m_text.append(reinterpret_cast<const char*>(out.getData2()), out.getSize());
    } catch (const std::bad_alloc&) {
      return false;
    }
    out.clear();
    return true;
  }

 private:
  std::string& m_text;
};

// Begins a stream. Two names that are not known are no pair of equal encodings.
StreamStatus begin(::StreamConverter& stream, const StreamSettings& settings) {
  if (!isStreamCodePage(settings.from)) return StreamStatus::kNoDecoder;
  if (!isStreamCodePage(settings.to)) return StreamStatus::kNoEncoder;
  return stream.begin(settings);
}

// Streams pieces, one after another, into one result.
Result convertPieces(std::initializer_list<std::string_view> pieces, StreamSettings settings) {
  Result result;
  StringDrain drain(result.text);
  settings.drain = &drain;
  ::StreamConverter stream;
  DataBuffer out;
  StreamStatus status = begin(stream, settings);
  for (const std::string_view piece : pieces) {
    if (status != StreamStatus::kGood) break;
    status = stream.push(reinterpret_cast<const unsigned char*>(piece.data()), piece.size(), out);
  }
  if (status == StreamStatus::kGood) status = stream.finish(out);
  if (!drain.onStreamOutput(out)) status = StreamStatus::kNoMemory;
  result.status = statusOf(status);
  result.problem_count = stream.errorCount();
  if (result.problem_count != 0) result.first_problem = problemOf(stream.firstError());
  return result;
}

int hostUtf16() { return zvIsBigEndian() ? kUtf16Be : kUtf16Le; }

}  // namespace

std::string_view version() { return ENCCONV_VERSION; }

std::vector<CodePage> code_pages() {
  std::vector<CodePage> pages;
  for (const CharsetNames& page : streamCodePages()) {
    pages.push_back({page.codePage,
                     page.preferredName,
                     {page.aliases.begin(), page.aliases.end()},
                     kindName(page.kind),
                     page.description,
                     page.canRead,
                     page.canWrite});
  }
  return pages;
}

std::optional<int> find_code_page(std::string_view name) {
  const int codePage = streamCodePage(name);
  return codePage == 0 ? std::nullopt : std::optional(codePage);
}

Encoding::Encoding(std::string_view name) : m_code_page(find_code_page(name).value_or(-1)) {}

bool parse_on_error(std::string_view text, Options& options) {
  StreamSettings settings;
  if (!parseStreamTreatment(text, settings)) return false;
  options.on_error = static_cast<OnError>(settings.treatment);
  options.substitute = settings.hasSubstitute ? std::optional(settings.substitute) : std::nullopt;
  options.substitute_is_raw = settings.substituteIsRaw;
  if (settings.alternate != 0) options.alternate = settings.alternate;
  return true;
}

std::string_view describe(Status status) {
  switch (status) {
    case Status::ok:
      return "converted";
    case Status::stopped:
      return "stopped by input that could not be converted";
    case Status::unknown_source:
      return "the source encoding is not known or cannot be read";
    case Status::unknown_target:
      return "the target encoding is not known or cannot be written";
    case Status::unknown_alternate:
      return "the alternate encoding is not known";
    case Status::invalid_substitute:
      return "the substitute is not valid UTF-8 or not in the target encoding";
    case Status::out_of_memory:
      return "out of memory";
    case Status::misuse:
      break;
  }
  return "the stream has ended";
}

Result convert(std::string_view bytes, Encoding from, Encoding to, const Options& options) {
  return convertPieces({bytes}, settingsOf(from, to, options));
}

Result to_utf8(std::string_view bytes, Encoding from, const Options& options) {
  Result result = convert(bytes, from, kUtf8, options);
  const std::string_view mark = markOf(*findEncodingRow(kUtf8));
  const bool isCopy = from.code_page() == kUtf8 && !options.byte_order_mark;
  if (isCopy && bytes.starts_with(mark) && result.text.starts_with(mark)) {
    result.text.erase(0, mark.size());
  }
  return result;
}

Result from_utf8(std::string_view text, Encoding to, const Options& options) {
  return to.code_page() == kUtf8 ? to_utf8(text, kUtf8, options)
                                 : convert(text, kUtf8, to, options);
}

Utf16Result to_utf16(std::string_view bytes, Encoding from, const Options& options) {
  const Result result = convert(bytes, from, hostUtf16(), options);
  std::size_t begin = 0;
  const bool isCopy = from.code_page() == hostUtf16() && !options.byte_order_mark;
  const std::string_view mark = markOf(*findEncodingRow(hostUtf16()));
  if (isCopy && result.text.starts_with(mark)) begin = mark.size();
  Utf16Result units;
  units.text.resize((result.text.size() - begin) / 2);
  result.text.copy(reinterpret_cast<char*>(units.text.data()), units.text.size() * 2, begin);
  units.status = result.status;
  units.problem_count = result.problem_count;
  units.first_problem = result.first_problem;
  return units;
}

Result from_utf16(std::u16string_view text, Encoding to, const Options& options) {
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  // A mark of our own in front, so that no unit of the text is taken for one.
  const std::string_view mark = markOf(*findEncodingRow(hostUtf16()));
  const bool isCopy = to.code_page() == hostUtf16();
  Result result = convertPieces({mark, bytes}, settingsOf(hostUtf16(), to, options));
  if (isCopy && !options.byte_order_mark) result.text.erase(0, mark.size());
  if (result.first_problem) {
    result.first_problem->offset = (result.first_problem->offset - mark.size()) / 2;
    result.first_problem->length /= 2;
  }
  return result;
}

// ---- Streams. ----

struct StreamConverter::State : StreamErrorHandler {
  void onStreamError(const StreamError& error) override {
    if (handler) handler(problemOf(error));
  }

  ::StreamConverter stream;
  DataBuffer out;
  std::function<void(const Problem&)> handler;
  Status status = Status::ok;
};

StreamConverter::StreamConverter(Encoding from, Encoding to, const Options& options)
    : m_state(std::make_unique<State>()) {
  StreamSettings settings = settingsOf(from, to, options);
  settings.errorHandler = m_state.get();
  m_state->status = statusOf(begin(m_state->stream, settings));
}

StreamConverter::~StreamConverter() = default;
StreamConverter::StreamConverter(StreamConverter&&) noexcept = default;
StreamConverter& StreamConverter::operator=(StreamConverter&&) noexcept = default;

void StreamConverter::on_problem(std::function<void(const Problem&)> handler) {
  if (m_state != nullptr) m_state->handler = std::move(handler);
}

namespace {

// Moves what the stream has written to the caller's string.
void moveOutput(DataBuffer& out, std::string& output) {
  output.append(reinterpret_cast<const char*>(out.getData2()), out.getSize());
  out.clear();
}

}  // namespace

bool StreamConverter::push(std::string_view piece, std::string& output) {
  if (m_state == nullptr) return false;
  // A part at a time, so that the buffer between the two stays small.
  constexpr std::size_t kPart = 1 << 20;
  do {
    const std::string_view part = piece.substr(0, kPart);
    piece.remove_prefix(part.size());
    m_state->status = statusOf(m_state->stream.push(
        reinterpret_cast<const unsigned char*>(part.data()), part.size(), m_state->out));
    moveOutput(m_state->out, output);
  } while (m_state->status == Status::ok && !piece.empty());
  return m_state->status == Status::ok;
}

bool StreamConverter::finish(std::string& output) {
  if (m_state == nullptr) return false;
  m_state->status = statusOf(m_state->stream.finish(m_state->out));
  moveOutput(m_state->out, output);
  return m_state->status == Status::ok;
}

Status StreamConverter::status() const {
  return m_state == nullptr ? Status::misuse : m_state->status;
}

std::uint64_t StreamConverter::problem_count() const {
  return m_state == nullptr ? 0 : m_state->stream.errorCount();
}

std::optional<Problem> StreamConverter::first_problem() const {
  if (problem_count() == 0) return std::nullopt;
  return problemOf(m_state->stream.firstError());
}

}  // namespace encconv
