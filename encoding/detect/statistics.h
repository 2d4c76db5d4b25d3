// Which encoding makes the likeliest text of the bytes, by the frequencies of letters.
#ifndef ENCODING_DETECT_STATISTICS_H_
#define ENCODING_DETECT_STATISTICS_H_

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "encoding/detect/letter_profiles.h"
#include "encoding/detect/sample.h"
#include "encoding/detect/trial.h"

namespace detection {

// What reading the text in one encoding gives.
struct Reading {
  int codePage = 0;        // 0: cannot be converted
  std::string_view name;   // preferred
  double fit = 0;          // mean logarithm of a character beyond ASCII
  bool isOfPairs = false;  // two bytes a character
  double score = 0;        // logarithm of the probability, but for a term that all readings share
  std::uint64_t malformed = 0;
  std::uint64_t characters = 0;   // beyond ASCII
  std::uint64_t fingerprint = 0;  // equal for readings that give the same text
  std::string_view language;      // whose letters fit best
};

class Statistics {
 public:
  // pieces must outlive the object.
  Statistics(std::span<const Piece> pieces, Trial& trial);

  // Reads the text in each of the encodings, which are named; those that are not known here are
  // left out, and so are those that find it malformed, unless all do.
  std::vector<Reading> read(std::span<const std::string_view> names);
  // The same, sorted by score, without those that read the text as a better one does.
  std::vector<Reading> rank(std::span<const std::string_view> names, std::string_view favourite,
                            double favour);
  // In GB 18030, which is GBK and sequences of four bytes. The score is meaningless, and malformed
  // not 0, when there are no such sequences.
  Reading readGb18030();

  std::uint64_t beyondAscii() const { return m_beyondAscii; }

 private:
  struct Pair {
    unsigned char first, second;
    std::uint32_t count;
  };
  bool isHopeless(int codePage);
  bool readSingleByte(int codePage, Reading& reading);
  bool readOther(int codePage, Reading& reading);

  std::span<const Piece> m_pieces;
  Trial& m_trial;
  std::uint32_t m_counts[256] = {};
  std::vector<Pair> m_pairs;  // of neighbours that are not both ASCII
  std::uint64_t m_beyondAscii = 0;
  ProfileLogs m_letterLogs{letterProfiles()};
  ProfileLogs m_eastAsianLogs{eastAsianProfiles()};
};

// How sure the best reading is, from 0 to 1: by how much better its score is than the second's, and
// how many characters beyond ASCII there were to judge by.
double confidenceOf(double lead, std::uint64_t characters);

// The encodings that texts of bytes are judged in, and those with the letters of EBCDIC; of those
// that read a text alike, the one that stands first is named.
std::span<const std::string_view> judgedEncodings();
std::span<const std::string_view> judgedEbcdic();

}  // namespace detection

#endif  // ENCODING_DETECT_STATISTICS_H_
