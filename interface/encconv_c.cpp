// The C interface, over the stream of the engine. Nothing may throw out of here.
#include "encconv/encconv_c.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <new>
#include <string_view>

#include "encconv/encconv.h"
#include "encoding/plan.h"
#include "encoding/stream/stream_converter.h"
#include "interface/outputs.h"

struct encconv_stream {
  StreamConverter stream;
  DataBuffer out;
  encconv_status status = ENCCONV_OK;
};

namespace {

constexpr unsigned char kNoBytes = 0;

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

void fillProblem(const StreamError& error, encconv_problem& problem) {
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
}

std::string_view treatmentOf(const char* text) {
  return text == nullptr ? std::string_view("stop") : text;
}

encconv_status begin(StreamConverter& stream, int from, int to, const char* treatment) {
  try {
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    if (!parseStreamTreatment(treatmentOf(treatment), settings)) return ENCCONV_INVALID_TREATMENT;
    if (!isStreamCodePage(from)) return ENCCONV_UNKNOWN_SOURCE;
    if (!isStreamCodePage(to)) return ENCCONV_UNKNOWN_TARGET;
    return statusOf(stream.begin(settings));
  } catch (const std::bad_alloc&) {
    return ENCCONV_OUT_OF_MEMORY;
  }
}

// Converts to any place.
template <typename Out>
encconv_status convert(int from, int to, const void* data, std::size_t size, const char* treatment,
                       Out& out, encconv_problem* firstProblem) {
  const std::string_view text = treatmentOf(treatment);
  if (text == "stop" || text == "drop") {
    unsigned char written[fast::kShortOutput];
    const unsigned char* const end =
        fast::convertShort(from, to, static_cast<const char*>(data), size, written);
    const bool isConverted =
        end != nullptr && out.append(written, static_cast<std::size_t>(end - written));
    if (isConverted && out.flush()) return ENCCONV_OK;
    if (end != nullptr) return out.isFull ? ENCCONV_OUTPUT_FULL : ENCCONV_OUT_OF_MEMORY;
  }
  StreamConverter stream;
  encconv_status status = begin(stream, from, to, treatment);
  if (status == ENCCONV_OK) {
    status = statusOf(stream.finish(static_cast<const unsigned char*>(data), size, out));
  }
  if (!out.flush() && status == ENCCONV_OK) {
    status = out.isFull ? ENCCONV_OUTPUT_FULL : ENCCONV_OUT_OF_MEMORY;
  }
  if (firstProblem != nullptr && stream.errorCount() != 0) {
    fillProblem(stream.firstError(), *firstProblem);
  } else if (firstProblem != nullptr && stream.approximationCount() != 0) {
    fillProblem(stream.firstApproximation(), *firstProblem);
  }
  return status;
}

}  // namespace

const char* encconv_version(void) { return ENCCONV_VERSION; }

const char* encconv_describe(encconv_status status) {
  switch (status) {
    case ENCCONV_INVALID_TREATMENT:
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
  if (page == nullptr || index >= encconv_code_page_count()) return 0;
  const CharsetNames& info = streamCodePages()[index];
  *page = {info.codePage,           info.preferredName.data(), kindName(info.kind).data(),
           info.description.data(), info.canRead ? 1 : 0,      info.canWrite ? 1 : 0};
  return 1;
}

encconv_status encconv_convert(int from, int to, const void* data, size_t size,
                               const char* treatment, unsigned char** output, size_t* output_size,
                               encconv_problem* first_problem) {
  if (output == nullptr || output_size == nullptr || (data == nullptr && size != 0)) {
    return ENCCONV_MISUSE;
  }
  if (first_problem != nullptr) *first_problem = {};
  BlockOutput out;
  const encconv_status status = convert(from, to, data, size, treatment, out, first_problem);
  *output = out.release(*output_size);
  return status;
}

encconv_status encconv_convert_into(int from, int to, const void* data, size_t size,
                                    const char* treatment, void* output, size_t capacity,
                                    size_t* output_size, encconv_problem* first_problem) {
  if (output_size == nullptr || (output == nullptr && capacity != 0) ||
      (data == nullptr && size != 0)) {
    return ENCCONV_MISUSE;
  }
  if (first_problem != nullptr) *first_problem = {};
  auto* const begin = static_cast<unsigned char*>(output);
  SpanOutput out(begin, capacity);
  const encconv_status status = convert(from, to, data, size, treatment, out, first_problem);
  *output_size = static_cast<std::size_t>(out.written() - begin);
  return status;
}

size_t encconv_max_output_size(size_t size, int from, int to) {
  return encconv::max_output_size(size, from, to);
}

void encconv_free(unsigned char* output) { std::free(output); }

encconv_stream* encconv_open(int from, int to, const char* treatment, encconv_status* status) {
  encconv_status ignored;
  if (status == nullptr) status = &ignored;
  auto* stream = new (std::nothrow) encconv_stream;
  *status = stream == nullptr ? ENCCONV_OUT_OF_MEMORY : encconv_begin(stream, from, to, treatment);
  if (*status == ENCCONV_OK) return stream;
  delete stream;
  return nullptr;
}

encconv_status encconv_begin(encconv_stream* stream, int from, int to, const char* treatment) {
  if (stream == nullptr) return ENCCONV_MISUSE;
  stream->out.clear();
  return stream->status = begin(stream->stream, from, to, treatment);
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
  if (problem == nullptr || encconv_problem_count(stream) == 0) return 0;
  fillProblem(stream->stream.firstError(), *problem);
  return 1;
}

uint64_t encconv_approximation_count(const encconv_stream* stream) {
  return stream == nullptr ? 0 : stream->stream.approximationCount();
}

int encconv_first_approximation(const encconv_stream* stream, encconv_problem* problem) {
  if (problem == nullptr || encconv_approximation_count(stream) == 0) return 0;
  fillProblem(stream->stream.firstApproximation(), *problem);
  return 1;
}

void encconv_close(encconv_stream* stream) { delete stream; }
