// Finding out which encoding a file is in, for --detect and -f auto.
#ifndef APPS_ENCCONV_DETECT_H_
#define APPS_ENCCONV_DETECT_H_

#include <span>
#include <string>

#include "apps/encconv/console.h"
#include "apps/encconv/options.h"

namespace tool {

// Bytes of a file that are looked at.
inline constexpr std::size_t kDetectionSample = 1u << 20;

// The encoding that -f auto reads a file from.
struct ChosenSource {
  int codePage = 0;    // 0: none; the file is left alone
  std::string reason;  // a few words
};

// sample is the beginning of the file, and all of it if isWhole. Refused is what is no text, and,
// unless acceptsGuess, what no encoding is likely enough for.
ChosenSource chooseSource(std::span<const unsigned char> sample, bool isWhole, bool acceptsGuess);

// --detect: one line for each input on standard output. Returns the exit status.
int runDetection(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_DETECT_H_
