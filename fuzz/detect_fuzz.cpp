// Finding out an encoding: candidates in order, none twice, and what is sure can be read. The first
// byte says whether the text goes on; what declares it and what it holds is the fuzzer's.
#include "encoding/detect/detector.h"

#include <set>

#include "encoding/stream/stream_converter.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const bool isWhole = input.byte() % 2 == 0;
  const std::span<const std::uint8_t> text = input.rest();
  const detection::Finding found = detection::detect(text, isWhole);
  const bool hasCandidates =
      found.kind == detection::Kind::kText || found.kind == detection::Kind::kAscii;
  check(found.candidates.empty() != hasCandidates, "text has candidates, and nothing else has");
  check(found.candidates.size() <= detection::kMaxCandidates, "candidates are few");
  std::set<std::string_view> names;
  for (const detection::Candidate& candidate : found.candidates) {
    check(candidate.confidence > 0 && candidate.confidence <= 1, "confidence is from 0 to 1");
    check(found.kind == detection::Kind::kAscii ||
              candidate.confidence <= found.candidates[0].confidence,
          "the likeliest stands first");
    check(names.insert(candidate.name).second, "no candidate stands twice");
    check(!candidate.reason.empty(), "there is a reason");
  }
  if (found.kind != detection::Kind::kText || found.candidates[0].codePage == 0 ||
      found.candidates[0].confidence < detection::kSufficientConfidence) {
    return 0;
  }
  StreamSettings settings;
  settings.from = found.candidates[0].codePage;
  settings.to = 65001;
  settings.treatment = StreamTreatment::kDrop;
  StreamConverter stream;
  DataBuffer out;
  check(stream.begin(settings) == StreamStatus::kGood, "what is named can be read");
  check(stream.push(text.data(), text.size(), out) == StreamStatus::kGood, "and is");
  // Behind a mark some bytes may be broken.
  check(stream.errorCount() * 10 <= text.size() + 100, "what is sure is hardly malformed");
  return 0;
}
