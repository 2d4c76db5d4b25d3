// Finding out which encoding a text is in, or that it is no text.
//
// The judges are asked in the order of how much their word is worth: byte order marks, signatures
// of file formats, the shape of UTF-16, UTF-32 and EBCDIC, the structure of UTF-8 and of the
// seven-bit encodings, declarations within the text, and the statistics of letters. No encoding is
// named whose decoder finds the text malformed while there is one that fits.
#ifndef ENCODING_DETECT_DETECTOR_H_
#define ENCODING_DETECT_DETECTOR_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace detection {

enum class Kind : unsigned char {
  kEmpty,    // no bytes
  kAscii,    // nothing but ASCII: the same text in nearly every encoding
  kText,     // text in the first candidate's encoding, as far as its confidence goes
  kBinary,   // no text
  kUnknown,  // perhaps text, in an encoding that nothing suggests
};

// What speaks for a candidate most.
enum class Evidence : unsigned char {
  kMark,         // a byte order mark
  kDeclaration,  // the text names its encoding, and is well formed in it
  kStructure,    // the bytes have a form that hardly anything else has
  kStatistics,   // the frequencies of letters
};

struct Candidate {
  int codePage = 0;       // 0: an encoding that is recognised but cannot be converted
  std::string_view name;  // its preferred name; static
  double confidence = 0;  // from 0 to 1
  Evidence evidence = Evidence::kStatistics;
  std::string reason;  // a few words for people
};

struct Finding {
  Kind kind = Kind::kUnknown;
  std::vector<Candidate> candidates;  // the likeliest first, at most kMaxCandidates; none that
                                      // reads the text as one before it does
  std::string reason;                 // of kEmpty, kAscii, kBinary and kUnknown, for people
};

inline constexpr std::size_t kMaxCandidates = 4;
// The confidence from which a candidate is worth converting from without asking anybody.
inline constexpr double kSufficientConfidence = 0.5;

// bytes are the text, or its beginning when isWhole is false. Looks at the first MiB, and at
// samples of what follows; only statistics take more than a glance, at 64 KiB at most. Any thread
// may call it. Throws std::bad_alloc only.
Finding detect(std::span<const unsigned char> bytes, bool isWhole);

// "mark", "declaration", "structure", "statistics"; NUL-terminated.
std::string_view nameOf(Evidence evidence);
// "empty", "ascii", "text", "binary", "unknown"; NUL-terminated.
std::string_view nameOf(Kind kind);

}  // namespace detection

#endif  // ENCODING_DETECT_DETECTOR_H_
