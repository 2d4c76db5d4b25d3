// The C interface, over the stream of the engine. Nothing may throw out of here.
#include "encconv/encconv_c.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <string_view>

#include "encconv/encconv.h"
#include "encoding/plan.h"
#include "encoding/stream/stream_converter.h"
#include "interface/outputs.h"

namespace {

constexpr unsigned char kNoBytes = 0;

// ---- Structures that grow. ----

// How large each was first; what claims to be smaller has no size set.
template <typename Struct>
constexpr std::size_t kLeastSize = 0;
template <>
constexpr std::size_t kLeastSize<encconv_options> = offsetof(encconv_options, pdf_passthrough) +
                                                    sizeof(encconv_options::pdf_passthrough);
template <>
constexpr std::size_t kLeastSize<encconv_problem> = offsetof(encconv_problem, bytes) +
                                                    sizeof(encconv_problem::bytes);
template <>
constexpr std::size_t kLeastSize<encconv_result> = offsetof(encconv_result, problem_count) +
                                                   sizeof(encconv_result::problem_count);
template <>
constexpr std::size_t kLeastSize<encconv_code_page> = offsetof(encconv_code_page, can_write) +
                                                      sizeof(encconv_code_page::can_write);

template <>
constexpr std::size_t kLeastSize<encconv_cut_options> = offsetof(encconv_cut_options, behind_line) +
                                                        sizeof(encconv_cut_options::behind_line);

template <typename Struct>
bool isSized(const Struct* given) {
  return given != nullptr && given->struct_size >= kLeastSize<Struct>;
}

// Fills in as much of the caller's structure as it has room for.
template <typename Struct>
void fill(Struct* given, Struct known) {
  known.struct_size = given->struct_size;
  std::memcpy(given, &known, std::min(known.struct_size, sizeof known));
}

// What the caller's structure says, and what the initialiser does where it says nothing.
template <typename Struct>
Struct read(const Struct* given, Struct initial) {
  std::memcpy(&initial, given, std::min(given->struct_size, sizeof initial));
  return initial;
}

// The caller's options, with nothing asked for that the caller did not know of. False when the
// structure has no size, or asks for something that this library does not know of.
bool readOptions(const encconv_options* given, encconv_options& options) {
  options = ENCCONV_OPTIONS_INIT;
  if (given == nullptr) return true;
  if (!isSized(given)) return false;
  options = read(given, options);
  const auto* const bytes = reinterpret_cast<const unsigned char*>(given);
  return given->struct_size <= sizeof options ||
         std::all_of(bytes + sizeof options, bytes + given->struct_size,
                     [](unsigned char byte) { return byte == 0; });
}

bool isUsable(const encconv_result* result) {
  const auto isNoneOrSized = [](const encconv_problem* problem) {
    return problem == nullptr || isSized(problem);
  };
  if (result == nullptr) return true;
  if (!isSized(result)) return false;
  const encconv_result known = read<encconv_result>(result, ENCCONV_RESULT_INIT);
  return isNoneOrSized(known.first_problem) && isNoneOrSized(known.first_approximation);
}

// ---- Words of the stream in words of C. ----

encconv_status statusOf(StreamStatus status) {
  switch (status) {
    case StreamStatus::kGood:
      return ENCCONV_OK;
    case StreamStatus::kStopped:
      return ENCCONV_STOPPED;
    case StreamStatus::kNoDecoder:
      return ENCCONV_UNKNOWN_SOURCE;
    case StreamStatus::kNoEncoder:
      return ENCCONV_UNKNOWN_TARGET;
    case StreamStatus::kNoAlternate:
      return ENCCONV_UNKNOWN_ALTERNATE;
    case StreamStatus::kBadSubstitute:
      return ENCCONV_INVALID_SUBSTITUTE;
    case StreamStatus::kMisuse:
      return ENCCONV_MISUSE;
    case StreamStatus::kDrainFailed:
      return ENCCONV_OUTPUT_FULL;
    case StreamStatus::kNoMemory:
      break;
  }
  return ENCCONV_OUT_OF_MEMORY;
}

encconv_problem problemOf(const StreamError& error) {
  encconv_problem problem = ENCCONV_PROBLEM_INIT;
  problem.offset = error.offset;
  problem.line = error.line;
  problem.length = error.length;
  problem.code_point = error.codePoint;
  problem.malformed = error.kind == StreamErrorKind::kMalformed ? 1 : 0;
  problem.byte_count = error.byteCount;
  static_assert(sizeof problem.bytes == sizeof error.bytes);
  std::copy(std::begin(error.bytes), std::end(error.bytes), problem.bytes);
  problem.approximated = error.kind == StreamErrorKind::kApproximated ? 1 : 0;
  static_assert(sizeof problem.written == sizeof error.written);
  std::copy(std::begin(error.written), std::end(error.written), problem.written);
  return problem;
}

std::string_view onErrorOf(const encconv_options& options) {
  return options.on_error == nullptr ? std::string_view("stop") : options.on_error;
}

// ---- Conversions. ----

encconv_status begin(StreamConverter& stream, int from, int to, const encconv_options& options,
                     StreamErrorHandler* handler) {
  try {
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    settings.writeMark = options.byte_order_mark != 0;
    settings.pdfPassthrough = options.pdf_passthrough != 0;
    settings.errorHandler = handler;
    if (!parseStreamTreatment(onErrorOf(options), settings)) return ENCCONV_INVALID_ON_ERROR;
    if (!isStreamCodePage(from)) return ENCCONV_UNKNOWN_SOURCE;
    if (!isStreamTarget(to)) return ENCCONV_UNKNOWN_TARGET;
    return statusOf(stream.begin(settings));
  } catch (const std::bad_alloc&) {
    return ENCCONV_OUT_OF_MEMORY;
  }
}

// Whether the options ask for nothing of a text that is clean, and are no mistake in themselves.
bool areForProblems(const encconv_options& options) {
  const std::string_view text = onErrorOf(options);
  return (text == "stop" || text == "drop") && options.byte_order_mark == 0 &&
         options.pdf_passthrough == 0;
}

void report(const StreamConverter& stream, encconv_result* result) {
  if (result == nullptr) return;
  encconv_result known = read<encconv_result>(result, ENCCONV_RESULT_INIT);
  known.problem_count = stream.errorCount();
  known.approximation_count = stream.approximationCount();
  if (known.first_problem != nullptr && known.problem_count != 0) {
    fill(known.first_problem, problemOf(stream.firstError()));
  }
  if (known.first_approximation != nullptr && known.approximation_count != 0) {
    fill(known.first_approximation, problemOf(stream.firstApproximation()));
  }
  fill(result, known);
}

// Converts to any place.
template <typename Out>
encconv_status convert(int from, int to, const void* data, std::size_t size,
                       const encconv_options* given, Out& out, encconv_result* result) {
  encconv_options options;
  if (!readOptions(given, options)) return ENCCONV_MISUSE;
  if (result != nullptr) {
    encconv_result nothing = read<encconv_result>(result, ENCCONV_RESULT_INIT);
    nothing.problem_count = nothing.approximation_count = 0;
    for (encconv_problem* const first : {nothing.first_problem, nothing.first_approximation}) {
      if (first != nullptr) fill<encconv_problem>(first, ENCCONV_PROBLEM_INIT);
    }
    fill(result, nothing);
  }
  if (areForProblems(options)) {
    unsigned char written[fast::kShortOutput];
    const unsigned char* const end =
        fast::convertShort(from, to, static_cast<const char*>(data), size, written);
    const bool isConverted =
        end != nullptr && out.append(written, static_cast<std::size_t>(end - written));
    if (isConverted && out.flush()) return ENCCONV_OK;
    if (end != nullptr) return out.isFull ? ENCCONV_OUTPUT_FULL : ENCCONV_OUT_OF_MEMORY;
  }
  StreamConverter stream;
  encconv_status status = begin(stream, from, to, options, nullptr);
  if (status == ENCCONV_OK) {
    status = statusOf(stream.finish(static_cast<const unsigned char*>(data), size, out));
  }
  if (!out.flush() && status == ENCCONV_OK) {
    status = out.isFull ? ENCCONV_OUTPUT_FULL : ENCCONV_OUT_OF_MEMORY;
  }
  report(stream, result);
  return status;
}

}  // namespace

struct encconv_stream final : private StreamErrorHandler {
  void onStreamError(const StreamError& error) override {
    const encconv_problem problem = problemOf(error);
    handler(&problem, context);
  }
  StreamErrorHandler* errorHandler() { return handler == nullptr ? nullptr : this; }

  StreamConverter stream;
  DataBuffer out;
  encconv_status status = ENCCONV_OK;
  encconv_problem_handler handler = nullptr;
  void* context = nullptr;
};

const char* encconv_version(void) { return ENCCONV_VERSION; }

const char* encconv_describe(encconv_status status) {
  switch (status) {
    case ENCCONV_INVALID_ON_ERROR:
      return "the treatment is not known";
    case ENCCONV_OK:
      return encconv::describe(encconv::Status::ok).data();
    case ENCCONV_STOPPED:
      return encconv::describe(encconv::Status::stopped).data();
    case ENCCONV_UNKNOWN_SOURCE:
      return encconv::describe(encconv::Status::unknown_source).data();
    case ENCCONV_UNKNOWN_TARGET:
      return encconv::describe(encconv::Status::unknown_target).data();
    case ENCCONV_UNKNOWN_ALTERNATE:
      return encconv::describe(encconv::Status::unknown_alternate).data();
    case ENCCONV_INVALID_SUBSTITUTE:
      return encconv::describe(encconv::Status::invalid_substitute).data();
    case ENCCONV_OUT_OF_MEMORY:
      return encconv::describe(encconv::Status::out_of_memory).data();
    case ENCCONV_OUTPUT_FULL:
      return encconv::describe(encconv::Status::output_full).data();
    case ENCCONV_MISUSE:
      break;
  }
  return encconv::describe(encconv::Status::misuse).data();
}

int encconv_find_code_page(const char* name) { return name == nullptr ? 0 : streamCodePage(name); }

size_t encconv_code_page_count(void) { return streamCodePages().size(); }

int encconv_code_page_at(size_t index, encconv_code_page* page) {
  if (!isSized(page) || index >= encconv_code_page_count()) return 0;
  const CharsetNames& info = streamCodePages()[index];
  encconv_code_page known = ENCCONV_CODE_PAGE_INIT;
  known.number = info.codePage;
  known.name = info.preferredName.data();
  known.aliases = findEncodingRow(info.codePage)->aliases;
  known.kind = kindName(info.kind).data();
  known.description = info.description.data();
  known.can_read = info.canRead ? 1 : 0;
  known.can_write = info.canWrite ? 1 : 0;
  fill(page, known);
  return 1;
}

encconv_status encconv_convert(int from, int to, const void* data, size_t size,
                               const encconv_options* options, unsigned char** output,
                               size_t* output_size, encconv_result* result) {
  if (output == nullptr || output_size == nullptr || (data == nullptr && size != 0) ||
      !isUsable(result)) {
    return ENCCONV_MISUSE;
  }
  BlockOutput out;
  const encconv_status status = convert(from, to, data, size, options, out, result);
  *output = out.release(*output_size);
  return status;
}

encconv_status encconv_convert_into(int from, int to, const void* data, size_t size,
                                    const encconv_options* options, void* output, size_t capacity,
                                    size_t* output_size, encconv_result* result) {
  if (output_size == nullptr || (output == nullptr && capacity != 0) ||
      (data == nullptr && size != 0) || !isUsable(result)) {
    return ENCCONV_MISUSE;
  }
  auto* const begin = static_cast<unsigned char*>(output);
  SpanOutput out(begin, capacity);
  const encconv_status status = convert(from, to, data, size, options, out, result);
  *output_size = static_cast<std::size_t>(out.written() - begin);
  return status;
}

size_t encconv_max_output_size(size_t size, int from, int to) {
  return encconv::max_output_size(size, from, to);
}

void encconv_free(unsigned char* output) { std::free(output); }

int encconv_find_cut(const void* data, size_t size, int encoding, size_t offset,
                     const encconv_cut_options* options, size_t* cut) {
  if (cut == nullptr || (data == nullptr && size != 0)) return 0;
  if (options != nullptr && !isSized(options)) return 0;
  encconv_cut_options wanted = ENCCONV_CUT_OPTIONS_INIT;
  if (options != nullptr) wanted = read(options, wanted);
  try {
    const auto place =
        encconv::find_cut({static_cast<const char*>(data), size}, encoding, offset,
                          {wanted.position, wanted.at_cut != 0, wanted.behind_line != 0});
    if (place) *cut = *place;
    return place ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

encconv_stream* encconv_open(int from, int to, const encconv_options* options,
                             encconv_status* status) {
  encconv_status ignored;
  if (status == nullptr) status = &ignored;
  auto* stream = new (std::nothrow) encconv_stream;
  *status = stream == nullptr ? ENCCONV_OUT_OF_MEMORY : encconv_begin(stream, from, to, options);
  if (*status == ENCCONV_OK) return stream;
  delete stream;
  return nullptr;
}

encconv_status encconv_begin(encconv_stream* stream, int from, int to,
                             const encconv_options* options) {
  if (stream == nullptr) return ENCCONV_MISUSE;
  stream->out.clear();
  encconv_options known;
  return stream->status = readOptions(options, known)
                              ? begin(stream->stream, from, to, known, stream->errorHandler())
                              : ENCCONV_MISUSE;
}

void encconv_on_problem(encconv_stream* stream, encconv_problem_handler handler, void* context) {
  if (stream == nullptr) return;
  stream->handler = handler;
  stream->context = context;
  stream->stream.setErrorHandler(stream->errorHandler());
}

encconv_status encconv_push(encconv_stream* stream, const void* data, size_t size) {
  if (stream == nullptr || (data == nullptr && size != 0)) return ENCCONV_MISUSE;
  if (stream->status != ENCCONV_OK) return stream->status;
  return stream->status = statusOf(
             stream->stream.push(static_cast<const unsigned char*>(data), size, stream->out));
}

encconv_status encconv_finish(encconv_stream* stream) {
  if (stream == nullptr) return ENCCONV_MISUSE;
  if (stream->status != ENCCONV_OK) return stream->status;
  return stream->status = statusOf(stream->stream.finish(stream->out));
}

const unsigned char* encconv_output(const encconv_stream* stream, size_t* size) {
  const std::size_t count = stream == nullptr ? 0 : stream->out.getSize();
  if (size != nullptr) *size = count;
  return count == 0 ? &kNoBytes : stream->out.getData2();
}

void encconv_clear_output(encconv_stream* stream) {
  if (stream != nullptr) stream->out.clear();
}

uint64_t encconv_problem_count(const encconv_stream* stream) {
  return stream == nullptr ? 0 : stream->stream.errorCount();
}

int encconv_first_problem(const encconv_stream* stream, encconv_problem* problem) {
  if (!isSized(problem) || encconv_problem_count(stream) == 0) return 0;
  fill(problem, problemOf(stream->stream.firstError()));
  return 1;
}

uint64_t encconv_approximation_count(const encconv_stream* stream) {
  return stream == nullptr ? 0 : stream->stream.approximationCount();
}

int encconv_first_approximation(const encconv_stream* stream, encconv_problem* problem) {
  if (!isSized(problem) || encconv_approximation_count(stream) == 0) return 0;
  fill(problem, problemOf(stream->stream.firstApproximation()));
  return 1;
}

void encconv_close(encconv_stream* stream) { delete stream; }
