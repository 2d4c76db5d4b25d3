// StreamConverter: a stream in pieces against the stream in one piece. Settings: source, target,
// treatment, alternate code page, flags, size of the pieces, substitute.
#include "encoding/stream/stream_converter.h"

#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

class Errors : public StreamErrorHandler {
 public:
  explicit Errors(int from) : m_isOrdered(from != 10004) {}  // which turns runs of text round

  void onStreamError(const StreamError& error) override {
    // Controls may have to wait for what follows them.
    if (m_isOrdered && error.codePoint != 0x1B && error.codePoint != 0x0E &&
        error.codePoint != 0x0F) {
      check(error.offset >= m_last, "errors come in the order of the source");
      m_last = error.offset;
    }
    ++count;
    digest = digest * 31 + error.offset * 5 + error.length * 3 + error.line * 7 +
             static_cast<std::uint32_t>(error.codePoint);
  }
  std::uint64_t count = 0, digest = 0;

 private:
  bool m_isOrdered;
  std::uint64_t m_last = 0;
};

struct Result {
  StreamStatus status;
  std::uint64_t errorCount, digest;
  std::string out;
  bool operator==(const Result&) const = default;
};

Result run(StreamSettings settings, std::span<const std::uint8_t> text, std::size_t step) {
  Errors errors(settings.from);
  settings.errorHandler = &errors;
  StreamConverter stream;
  DataBuffer out;
  StreamStatus status = stream.begin(settings);
  for (std::size_t at = 0; status == StreamStatus::kGood && at < text.size(); at += step) {
    // A copy, so that a read behind the piece is seen.
    const auto piece = text.subspan(at, std::min(step, text.size() - at));
    const std::vector<std::uint8_t> copy(piece.begin(), piece.end());
    status = stream.push(copy.data(), copy.size(), out);
  }
  if (status == StreamStatus::kGood) status = stream.finish(out);
  check(status != StreamStatus::kNoMemory && status != StreamStatus::kMisuse, "memory suffices");
  check(stream.errorCount() == errors.count, "each error is told once");
  check(out.getSize() <= 1024 * (text.size() + 1), "the output is linear in the input");
  return {status, errors.count, errors.digest, std::string(viewOf(out))};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  StreamSettings settings;
  settings.from = input.choice(kFuzzCodePages);
  settings.to = input.choice(kFuzzCodePages);
  settings.treatment = static_cast<StreamTreatment>(input.byte() % 6);
  settings.alternate = input.choice(kFuzzCodePages);
  const unsigned int flags = input.byte();
  if ((flags & 1) != 0) settings.from = kCodePageHz;
  if ((flags & 2) != 0) settings.to = kCodePageHz;
  settings.writeMark = (flags & 4) != 0;
  settings.pdfPassthrough = (flags & 8) != 0;
  settings.hasSubstitute = (flags & 16) != 0;
  settings.substituteIsRaw = (flags & 32) != 0;
  const std::size_t step = input.byte() % 24 + 1;
  settings.substitute = textOf(input.bytes(input.byte() % 8));
  const auto text = input.rest();

  const Result whole = run(settings, text, text.size() + 1);
  check(run(settings, text, step) == whole, "the result does not depend on the cuts");
  return 0;
}
