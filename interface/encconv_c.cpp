// The C interface, over the stream of the engine. Nothing may throw out of here.
#include "encconv/encconv_c.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string_view>

#include "encconv/encconv.h"
#include "encoding/stream/stream_converter.h"

struct encconv_stream {
  StreamConverter stream;
  DataBuffer out;
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
}

encconv_status begin(StreamConverter& stream, int from, int to, const char* treatment,
                     StreamDrain* drain) {
  try {
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    settings.drain = drain;
    const std::string_view text = treatment == nullptr ? "stop" : treatment;
    if (!parseStreamTreatment(text, settings)) return ENCCONV_INVALID_TREATMENT;
    if (!isStreamCodePage(from)) return ENCCONV_UNKNOWN_SOURCE;
    if (!isStreamCodePage(to)) return ENCCONV_UNKNOWN_TARGET;
    return statusOf(stream.begin(settings));
  } catch (const std::bad_alloc&) {
    return ENCCONV_OUT_OF_MEMORY;
  }
}

// Output goes to a block from malloc, of any size.
class BlockDrain : public StreamDrain {
 public:
  ~BlockDrain() override { std::free(m_block); }

  bool onStreamOutput(DataBuffer& out) override {
    if (out.getSize() > m_capacity - m_size) {
      const std::size_t capacity = std::max(m_capacity * 2, m_size + out.getSize());
      void* block = std::realloc(m_block, capacity);
      if (block == nullptr) return false;
      m_block = static_cast<unsigned char*>(block);
      m_capacity = capacity;
    }
    std::copy_n(out.getData2(), out.getSize(), m_block + m_size);
    m_size += out.getSize();
    out.clear();
    return true;
  }

  unsigned char* release(std::size_t& size) {
    unsigned char* block = m_block;
    size = m_size;
    m_block = nullptr;
    return block;
  }

 private:
  unsigned char* m_block = nullptr;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

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
  BlockDrain drain;
  StreamConverter stream;
  DataBuffer out;
  encconv_status status = begin(stream, from, to, treatment, &drain);
  if (status == ENCCONV_OK) {
    status = statusOf(stream.push(static_cast<const unsigned char*>(data), size, out));
  }
  if (status == ENCCONV_OK) status = statusOf(stream.finish(out));
  if (out.getSize() != 0 && !drain.onStreamOutput(out)) status = ENCCONV_OUT_OF_MEMORY;
  *output = drain.release(*output_size);
  if (first_problem != nullptr && stream.errorCount() != 0) {
    fillProblem(stream.firstError(), *first_problem);
  }
  return status;
}

void encconv_free(unsigned char* output) { std::free(output); }

encconv_stream* encconv_open(int from, int to, const char* treatment, encconv_status* status) {
  encconv_status ignored;
  if (status == nullptr) status = &ignored;
  auto* stream = new (std::nothrow) encconv_stream;
  *status = stream == nullptr ? ENCCONV_OUT_OF_MEMORY
                              : begin(stream->stream, from, to, treatment, nullptr);
  if (*status == ENCCONV_OK) return stream;
  delete stream;
  return nullptr;
}

encconv_status encconv_push(encconv_stream* stream, const void* data, size_t size) {
  if (stream == nullptr || (data == nullptr && size != 0)) return ENCCONV_MISUSE;
  return statusOf(stream->stream.push(static_cast<const unsigned char*>(data), size, stream->out));
}

encconv_status encconv_finish(encconv_stream* stream) {
  return stream == nullptr ? ENCCONV_MISUSE : statusOf(stream->stream.finish(stream->out));
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

void encconv_close(encconv_stream* stream) { delete stream; }
