// The C++ interface, over the stream of the engine.
#include "encconv/encconv.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "encoding/plan.h"
#include "encoding/special_code_pages.h"
#include "encoding/stream/cut_finder.h"
#include "encoding/stream/stream_converter.h"
#include "interface/outputs.h"
#include "interface/stream_settings.h"
#include "support/zv_base.h"

namespace encconv {
namespace {

// What a stream has to tell of its text.
template <typename Outcome>
void tellProblems(const ::StreamConverter& stream, Outcome& outcome) {
  outcome.problem_count = stream.errorCount();
  if (outcome.problem_count != 0) outcome.first_problem = problemOf(stream.firstError());
  outcome.approximation_count = stream.approximationCount();
  if (outcome.approximation_count != 0) {
    outcome.first_approximation = problemOf(stream.firstApproximation());
  }
}

// Whether the options ask for nothing of a text that is clean, and are no mistake in themselves.
bool areForProblems(const Options& options) {
  return !options.byte_order_mark && !options.pdf_passthrough && !options.substitute &&
         options.on_error != OnError::alternate;
}

// Streams a text to an output, with something in front of it.
template <typename Outcome, typename Out>
void convertTo(std::string_view front, std::string_view text, const StreamSettings& settings,
               Out& out, Outcome& outcome) {
  const auto bytesOf = [](std::string_view piece) {
    return reinterpret_cast<const unsigned char*>(piece.data());
  };
  ::StreamConverter stream;
  StreamStatus status = beginStream(stream, settings);
  if (status == StreamStatus::kGood) status = stream.push(bytesOf(front), front.size(), out);
  if (status == StreamStatus::kGood) status = stream.finish(bytesOf(text), text.size(), out);
  if (!out.flush() && status == StreamStatus::kGood) {
    status = out.isFull ? StreamStatus::kDrainFailed : StreamStatus::kNoMemory;
  }
  outcome.status = statusOf(status);
  tellProblems(stream, outcome);
}

template <typename Text>
BasicResult<Text> convertLong(std::string_view front, std::string_view text,
                              const StreamSettings& settings) {
  BasicResult<Text> result;
  TextOutput<Text> out(result.text);
  convertTo(front, text, settings, out, result);
  return result;
}

// The text of a conversion, or of the part of it that came before an error.
template <typename Text>
BasicResult<Text> convertText(std::string_view bytes, int from, int to, const Options& options) {
  using Unit = typename Text::value_type;
  if (areForProblems(options)) {
    alignas(16) unsigned char text[fast::kShortOutput];
    const unsigned char* const end = fast::convertShort(from, to, bytes.data(), bytes.size(), text);
    if (end != nullptr) {
      const auto count = static_cast<std::size_t>(end - text) / sizeof(Unit);
      BasicResult<Text> result;
      result.text.assign(reinterpret_cast<const Unit*>(text), count);
      return result;
    }
  }
  return convertLong<Text>({}, bytes, settingsOf(from, to, options));
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
  options.compose = settings.compose;
  options.best_fit = settings.bestFit;
  options.translit = settings.translit;
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
    case Status::output_full:
      return "the output does not fit into its place";
    case Status::misuse:
      break;
  }
  return "the stream has ended";
}

Result convert(std::string_view bytes, Encoding from, Encoding to, const Options& options) {
  return convertText<std::string>(bytes, from.code_page(), to.code_page(), options);
}

IntoResult convert_into(std::string_view bytes, Encoding from, Encoding to, char* output,
                        std::size_t capacity, const Options& options) {
  IntoResult result;
  if (areForProblems(options)) {
    unsigned char text[fast::kShortOutput];
    const unsigned char* const end =
        fast::convertShort(from.code_page(), to.code_page(), bytes.data(), bytes.size(), text);
    if (end != nullptr && static_cast<std::size_t>(end - text) <= capacity) {
      result.size = static_cast<std::size_t>(end - text);
      std::memcpy(output, text, result.size);
      return result;
    }
  }
  auto* const begin = reinterpret_cast<unsigned char*>(output);
  SpanOutput out(begin, capacity);
  convertTo({}, bytes, settingsOf(from, to, options), out, result);
  result.size = static_cast<std::size_t>(out.written() - begin);
  return result;
}

std::size_t max_output_size(std::size_t size, Encoding from, Encoding to) {
  const std::uint64_t most = fast::maxOutputSize(size, from.code_page(), to.code_page());
  return static_cast<std::size_t>(std::min<std::uint64_t>(most, SIZE_MAX));
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
  Utf16Result result = convertText<std::u16string>(bytes, from.code_page(), hostUtf16(), options);
  const bool isCopy = from.code_page() == hostUtf16() && !options.byte_order_mark;
  if (isCopy && !result.text.empty() && result.text.front() == u'\uFEFF') result.text.erase(0, 1);
  return result;
}

Result from_utf16(std::u16string_view text, Encoding to, const Options& options) {
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size() * 2);
  const bool mayBeginOtherwise =
      options.pdf_passthrough || text.starts_with(u'\xFEFF') || text.starts_with(u'\xFFFE');
  if (!mayBeginOtherwise) {
    Result result = convertText<std::string>(bytes, hostUtf16(), to.code_page(), options);
    if (result.first_problem) {
      result.first_problem->offset /= 2;
      result.first_problem->length /= 2;
    }
    return result;
  }
  // A mark of our own in front, so that no units of the text are taken for one, or for PDF.
  const std::string_view mark = zvIsBigEndian() ? "\xFE\xFF" : "\xFF\xFE";
  const bool isCopy = to.code_page() == hostUtf16();
  Result result = convertLong<std::string>(mark, bytes, settingsOf(hostUtf16(), to, options));
  if (isCopy && !options.byte_order_mark) result.text.erase(0, mark.size());
  if (result.first_problem) {
    result.first_problem->offset = (result.first_problem->offset - mark.size()) / 2;
    result.first_problem->length /= 2;
  }
  return result;
}

std::optional<std::size_t> find_cut(std::string_view bytes, Encoding encoding, std::size_t offset,
                                    const CutOptions& options) {
  CutFinder finder(encoding.code_page());
  const std::size_t place =
      finder.find(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), offset,
                  {options.position, options.at_cut, options.behind_line});
  return place == CutWindow::kNone ? std::nullopt : std::optional(place);
}

// ---- Streams. ----

struct StreamConverter::State : StreamErrorHandler {
  void onStreamError(const StreamError& error) override {
    if (handler) handler(problemOf(error));
  }

  // Hands over what a call wrote, and settles how that left things.
  bool end(StreamStatus ended, TextOutput<std::string>& out) {
    const bool isWritten = out.flush();
    status = ended == StreamStatus::kGood && !isWritten ? Status::out_of_memory : statusOf(ended);
    return status == Status::ok;
  }

  ::StreamConverter stream;
  std::function<void(const Problem&)> handler;
  Status status = Status::ok;
};

StreamConverter::StreamConverter(Encoding from, Encoding to, const Options& options)
    : m_state(std::make_unique<State>()) {
  begin(from, to, options);
}

StreamConverter::~StreamConverter() = default;
StreamConverter::StreamConverter(StreamConverter&&) noexcept = default;
StreamConverter& StreamConverter::operator=(StreamConverter&&) noexcept = default;

bool StreamConverter::begin(Encoding from, Encoding to, const Options& options) {
  if (m_state == nullptr) m_state = std::make_unique<State>();
  StreamSettings settings = settingsOf(from, to, options);
  if (m_state->handler) settings.errorHandler = m_state.get();
  m_state->status = statusOf(beginStream(m_state->stream, settings));
  return m_state->status == Status::ok;
}

void StreamConverter::on_problem(std::function<void(const Problem&)> handler) {
  if (m_state == nullptr) return;
  m_state->handler = std::move(handler);
  m_state->stream.setErrorHandler(m_state->handler ? m_state.get() : nullptr);
}

bool StreamConverter::push(std::string_view piece, std::string& output) {
  if (m_state == nullptr || m_state->status != Status::ok) return false;
  TextOutput<std::string> out(output);
  const auto* const data = reinterpret_cast<const unsigned char*>(piece.data());
  return m_state->end(m_state->stream.push(data, piece.size(), out), out);
}

bool StreamConverter::finish(std::string& output) {
  if (m_state == nullptr || m_state->status != Status::ok) return false;
  TextOutput<std::string> out(output);
  return m_state->end(m_state->stream.finish(out), out);
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

std::uint64_t StreamConverter::approximation_count() const {
  return m_state == nullptr ? 0 : m_state->stream.approximationCount();
}

std::optional<Problem> StreamConverter::first_approximation() const {
  if (approximation_count() == 0) return std::nullopt;
  return problemOf(m_state->stream.firstApproximation());
}

}  // namespace encconv
