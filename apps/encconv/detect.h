// Finding out which encoding a text is in.
#ifndef APPS_ENCCONV_DETECT_H_
#define APPS_ENCCONV_DETECT_H_

#include <span>
#include <string>

#include "apps/encconv/console.h"
#include "apps/encconv/options.h"

namespace tool {

// Bytes that are looked at.
inline constexpr std::size_t kDetectionSample = 1u << 20;

enum class Sureness : unsigned char { kUnknown, kGuess, kLikely, kCertain };

struct Detection {
  int codePage = 0;  // 0: unknown, or an encoding that cannot be converted
  Sureness sureness = Sureness::kUnknown;
  std::string reason;  // a few words
};

// sample is the beginning of the text, and all of it if isWhole.
Detection detectEncoding(std::span<const unsigned char> sample, bool isWhole);

// --detect: one line for each input on standard output. Returns the exit status.
int runDetection(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_DETECT_H_
