// Finding out an encoding, in the C++ interface.
#include <utility>

#include "encconv/encconv.h"
#include "encoding/detect/detector.h"

namespace encconv {
namespace {

constexpr bool areEqual(DetectedKind kind, detection::Kind other) {
  return static_cast<int>(kind) == static_cast<int>(other);
}
static_assert(areEqual(DetectedKind::empty, detection::Kind::kEmpty) &&
              areEqual(DetectedKind::ascii, detection::Kind::kAscii) &&
              areEqual(DetectedKind::text, detection::Kind::kText) &&
              areEqual(DetectedKind::binary, detection::Kind::kBinary) &&
              areEqual(DetectedKind::unknown, detection::Kind::kUnknown));
constexpr bool areEqual(Evidence evidence, detection::Evidence other) {
  return static_cast<int>(evidence) == static_cast<int>(other);
}
static_assert(areEqual(Evidence::mark, detection::Evidence::kMark) &&
              areEqual(Evidence::declaration, detection::Evidence::kDeclaration) &&
              areEqual(Evidence::structure, detection::Evidence::kStructure) &&
              areEqual(Evidence::statistics, detection::Evidence::kStatistics));
static_assert(sufficient_confidence == detection::kSufficientConfidence);

}  // namespace

Detection detect(std::string_view bytes, const DetectOptions& options) {
  const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  detection::Finding finding = detection::detect({data, bytes.size()}, !options.is_beginning);
  Detection result;
  result.kind = static_cast<DetectedKind>(finding.kind);
  result.reason = std::move(finding.reason);
  result.candidates.reserve(finding.candidates.size());
  for (detection::Candidate& candidate : finding.candidates) {
    result.candidates.push_back({candidate.codePage, candidate.name, candidate.confidence,
                                 static_cast<Evidence>(candidate.evidence),
                                 std::move(candidate.reason)});
  }
  return result;
}

}  // namespace encconv
