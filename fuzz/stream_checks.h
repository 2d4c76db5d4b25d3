// A text streamed in pieces, and what must hold of any.
#ifndef FUZZ_STREAM_CHECKS_H_
#define FUZZ_STREAM_CHECKS_H_

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "encoding/stream/stream_converter.h"
#include "fuzz/fuzz_support.h"

struct StreamedPiece {
  std::uint64_t offset;
  std::uint32_t length;
  auto operator<=>(const StreamedPiece&) const = default;
};

class StreamErrors : public StreamErrorHandler {
 public:
  explicit StreamErrors(int from) : m_isOrdered(from != 10004) {}  // which turns runs of text round

  void onStreamError(const StreamError& error) override {
    // Controls may have to wait for what follows them.
    if (m_isOrdered && error.codePoint != 0x1B && error.codePoint != 0x0E &&
        error.codePoint != 0x0F) {
      check(error.offset >= m_last, "errors come in the order of the source");
      m_last = error.offset;
    }
    // What another character is written for is not left out.
    if (error.kind == StreamErrorKind::kApproximated) {
      isApproximated = true;
    } else {
      pieces.push_back({error.offset, error.length});
    }
    digest = digest * 31 + error.offset * 5 + error.length * 3 + error.line * 7 +
             static_cast<std::uint32_t>(error.codePoint);
  }
  std::vector<StreamedPiece> pieces;
  bool isApproximated = false;
  std::uint64_t digest = 0;

 private:
  bool m_isOrdered;
  std::uint64_t m_last = 0;
};

struct StreamedText {
  StreamStatus status;
  std::vector<StreamedPiece> errors;
  bool isApproximated;
  std::uint64_t digest;
  std::string out;
  bool operator==(const StreamedText&) const = default;
};

// Streams a text in pieces of the sizes that nextSize() gives.
template <class NextSize>
StreamedText streamPieces(StreamSettings settings, std::span<const std::uint8_t> text,
                          NextSize nextSize) {
  StreamErrors errors(settings.from);
  settings.errorHandler = &errors;
  StreamConverter stream;
  DataBuffer out;
  StreamStatus status = stream.begin(settings);
  for (std::size_t at = 0; status == StreamStatus::kGood && at < text.size();) {
    // A copy, so that a read behind the piece is seen.
    const auto piece = text.subspan(at, std::min<std::size_t>(nextSize(), text.size() - at));
    at += piece.size();
    const std::vector<std::uint8_t> copy(piece.begin(), piece.end());
    status = stream.push(copy.data(), copy.size(), out);
  }
  if (status == StreamStatus::kGood) status = stream.finish(out);
  check(status != StreamStatus::kNoMemory && status != StreamStatus::kMisuse, "memory suffices");
  check(stream.errorCount() == errors.pieces.size(), "each error is told once");
  check(out.getSize() <= 1024 * (text.size() + 1), "the output is linear in the input");
  return {status, errors.pieces, errors.isApproximated, errors.digest, std::string(viewOf(out))};
}

#endif  // FUZZ_STREAM_CHECKS_H_
