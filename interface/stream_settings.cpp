// What the C++ interface says, in the words of the engine's streams, and back.
#include "interface/stream_settings.h"

namespace encconv {
namespace {

constexpr bool areEqual(OnError error, StreamTreatment treatment) {
  return static_cast<int>(error) == static_cast<int>(treatment);
}
static_assert(areEqual(OnError::stop, StreamTreatment::kStop) &&
              areEqual(OnError::drop, StreamTreatment::kDrop) &&
              areEqual(OnError::substitute, StreamTreatment::kSubstitute) &&
              areEqual(OnError::hex, StreamTreatment::kHex) &&
              areEqual(OnError::alternate, StreamTreatment::kAlternate) &&
              areEqual(OnError::raw, StreamTreatment::kRaw));

}  // namespace

StreamSettings settingsOf(Encoding from, Encoding to, const Options& options) {
  StreamSettings settings;
  settings.from = from.code_page();
  settings.to = to.code_page();
  settings.treatment = static_cast<StreamTreatment>(options.on_error);
  settings.hasSubstitute = options.substitute.has_value();
  settings.substituteIsRaw = options.substitute_is_raw;
  settings.substitute = options.substitute.value_or(std::string());
  settings.alternate = options.alternate.code_page();
  settings.writeMark = options.byte_order_mark;
  settings.pdfPassthrough = options.pdf_passthrough;
  settings.compose = options.compose;
  settings.bestFit = options.best_fit;
  settings.translit = options.translit;
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
      return Status::output_full;
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
          std::string(reinterpret_cast<const char*>(error.bytes), error.byteCount),
          error.kind == StreamErrorKind::kApproximated,
          error.written};
}

StreamStatus beginStream(::StreamConverter& stream, const StreamSettings& settings) {
  const bool isPair = settings.from != settings.to && settings.from != 0 && settings.to != 0;
  if (!isPair && !isStreamCodePage(settings.from)) return StreamStatus::kNoDecoder;
  if (!isPair && !isStreamTarget(settings.to)) return StreamStatus::kNoEncoder;
  return stream.begin(settings);
}

}  // namespace encconv
