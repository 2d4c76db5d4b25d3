// Finding out an encoding, in the C interface. Nothing may throw out of here.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

#include "encconv/encconv_c.h"
#include "encoding/detect/detector.h"

struct encconv_detection {
  detection::Finding finding;
};

namespace {

constexpr bool areEqual(encconv_detected_kind kind, detection::Kind other) {
  return static_cast<int>(kind) == static_cast<int>(other);
}
static_assert(areEqual(ENCCONV_DETECTED_EMPTY, detection::Kind::kEmpty) &&
              areEqual(ENCCONV_DETECTED_ASCII, detection::Kind::kAscii) &&
              areEqual(ENCCONV_DETECTED_TEXT, detection::Kind::kText) &&
              areEqual(ENCCONV_DETECTED_BINARY, detection::Kind::kBinary) &&
              areEqual(ENCCONV_DETECTED_UNKNOWN, detection::Kind::kUnknown));
constexpr bool areEqual(encconv_evidence evidence, detection::Evidence other) {
  return static_cast<int>(evidence) == static_cast<int>(other);
}
static_assert(areEqual(ENCCONV_EVIDENCE_MARK, detection::Evidence::kMark) &&
              areEqual(ENCCONV_EVIDENCE_DECLARATION, detection::Evidence::kDeclaration) &&
              areEqual(ENCCONV_EVIDENCE_STRUCTURE, detection::Evidence::kStructure) &&
              areEqual(ENCCONV_EVIDENCE_STATISTICS, detection::Evidence::kStatistics));
static_assert(ENCCONV_SUFFICIENT_CONFIDENCE == detection::kSufficientConfidence);

// How large the structure was first; what claims to be smaller has no size set.
constexpr std::size_t kLeastCandidate =
    offsetof(encconv_candidate, reason) + sizeof(encconv_candidate::reason);

}  // namespace

encconv_detection* encconv_detect(const void* data, size_t size, int is_beginning) {
  if (data == nullptr && size != 0) return nullptr;
  try {
    const auto* const bytes = static_cast<const unsigned char*>(data);
    return new encconv_detection{detection::detect({bytes, size}, is_beginning == 0)};
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

encconv_detected_kind encconv_detection_kind(const encconv_detection* detection) {
  return detection == nullptr ? ENCCONV_DETECTED_UNKNOWN
                              : static_cast<encconv_detected_kind>(detection->finding.kind);
}

const char* encconv_detection_reason(const encconv_detection* detection) {
  return detection == nullptr ? "" : detection->finding.reason.c_str();
}

size_t encconv_candidate_count(const encconv_detection* detection) {
  return detection == nullptr ? 0 : detection->finding.candidates.size();
}

int encconv_candidate_at(const encconv_detection* detection, size_t index,
                         encconv_candidate* candidate) {
  if (candidate == nullptr || candidate->struct_size < kLeastCandidate ||
      index >= encconv_candidate_count(detection)) {
    return 0;
  }
  const detection::Candidate& found = detection->finding.candidates[index];
  const encconv_candidate known = {candidate->struct_size,
                                   found.codePage,
                                   found.name.data(),
                                   found.confidence,
                                   static_cast<encconv_evidence>(found.evidence),
                                   found.reason.c_str()};
  std::memcpy(candidate, &known, std::min(known.struct_size, sizeof known));
  return 1;
}

void encconv_detection_free(encconv_detection* detection) { delete detection; }
