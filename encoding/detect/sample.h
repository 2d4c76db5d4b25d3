// The parts of a text that are looked at.
#ifndef ENCODING_DETECT_SAMPLE_H_
#define ENCODING_DETECT_SAMPLE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace detection {

using Bytes = std::span<const unsigned char>;

// A run of bytes that begins where a text or a line does.
struct Piece {
  Bytes bytes;
  bool isCut = false;  // the text goes on behind it, perhaps within a character
};

struct Sample {
  static constexpr std::size_t kHead = 1u << 20;
  static constexpr std::size_t kFurtherPieces = 8;
  static constexpr std::size_t kFurtherBytes = 4u << 10;
  static constexpr std::size_t kStatisticsBytes = 32u << 10;  // of the head

  Sample(Bytes text, bool isWhole);

  // For judges of statistics: the bytes around the first that is not ASCII, and the further pieces.
  std::vector<Piece> forStatistics() const;

  Bytes head;                 // the first kHead bytes
  bool isHeadCut = false;     // the text goes on behind the head
  bool isEverything = true;   // the pieces are the whole text
  std::vector<Piece> pieces;  // the head, and samples of what follows, from one line's beginning
  std::uint32_t counts[256] = {};  // of the bytes in all pieces
  std::size_t size = 0;            // of all pieces
};

}  // namespace detection

#endif  // ENCODING_DETECT_SAMPLE_H_
