// Running a stream in tests.
#ifndef TESTS_STREAM_SUPPORT_H_
#define TESTS_STREAM_SUPPORT_H_

#include <algorithm>
#include <string>
#include <vector>

#include "encoding/stream/stream_converter.h"
#include "tests/test_support.h"

struct StreamResult {
  StreamStatus status = StreamStatus::kGood;
  std::string text;
  std::vector<StreamError> errors;          // what could not be converted
  std::vector<StreamError> approximations;  // what others were written for

  bool operator==(const StreamResult&) const = default;
};
inline std::ostream& operator<<(std::ostream& stream, const StreamResult& r) {
  stream << "status " << static_cast<int>(r.status) << " " << ::testing::PrintToString(r.text);
  for (const StreamError& e : r.approximations) {
    stream << " " << e.offset << "+" << e.length << " line " << e.line << " U+" << e.codePoint
           << " as " << e.written;
  }
  for (const StreamError& e : r.errors) {
    stream << " " << e.offset << "+" << e.length << " line " << e.line
           << (e.kind == StreamErrorKind::kMalformed ? " malformed" : " U+") << e.codePoint;
  }
  return stream;
}

class ErrorList : public StreamErrorHandler {
 public:
  explicit ErrorList(StreamResult& result) : m_result(result) {}
  void onStreamError(const StreamError& error) override {
    const bool isApproximation = error.kind == StreamErrorKind::kApproximated;
    (isApproximation ? m_result.approximations : m_result.errors).push_back(error);
  }

 private:
  StreamResult& m_result;
};

inline void expectCounted(std::uint64_t count, const StreamError& first,
                          const std::vector<StreamError>& told) {
  EXPECT_EQ(count, told.size());
  if (told.empty()) return;
  EXPECT_EQ(first, *std::ranges::min_element(told, {}, &StreamError::offset));
}

// Streams a text, which convert(converter, out) gives.
template <typename Convert>
StreamResult streamBy(StreamSettings settings, Convert convert) {
  StreamResult result;
  ErrorList errors(result);
  settings.errorHandler = &errors;
  StreamConverter converter;
  DataBuffer out;
  result.status = converter.begin(settings);
  if (result.status == StreamStatus::kGood) result.status = convert(converter, out);
  expectCounted(converter.errorCount(), converter.firstError(), result.errors);
  expectCounted(converter.approximationCount(), converter.firstApproximation(),
                result.approximations);
  result.text = textOf(out);
  return result;
}

// In pieces whose sizes nextSize() gives.
template <typename NextSize>
StreamResult stream(const StreamSettings& settings, const std::string& text, NextSize nextSize) {
  return streamBy(settings, [&](StreamConverter& converter, DataBuffer& out) {
    for (std::size_t done = 0; done < text.size();) {
      const std::size_t size = std::min<std::size_t>(nextSize(), text.size() - done);
      const std::string piece = text.substr(done, size);  // so that a sanitizer sees its end
      const StreamStatus status = converter.push(bytesOf(piece), size, out);
      if (status != StreamStatus::kGood) return status;
      done += size;
    }
    return converter.finish(out);
  });
}
// All by one call, as the interfaces convert whole texts.
inline StreamResult stream(const StreamSettings& settings, const std::string& text) {
  return streamBy(settings, [&](StreamConverter& converter, DataBuffer& out) {
    DataBufferOutput output(out);
    return converter.finish(bytesOf(text), text.size(), output);
  });
}

inline StreamSettings settingsFor(int from, int to, const std::string& treatment = "stop") {
  StreamSettings settings;
  settings.from = from;
  settings.to = to;
  EXPECT_TRUE(parseStreamTreatment(treatment, settings)) << treatment;
  return settings;
}

#endif  // TESTS_STREAM_SUPPORT_H_
