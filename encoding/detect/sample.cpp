#include "encoding/detect/sample.h"

#include <algorithm>

namespace detection {
namespace {

// What begins behind the next line end; no trail byte of any encoding is a line feed.
Bytes fromNextLine(Bytes bytes) {
  const auto end = std::find(bytes.begin(), bytes.end(), '\n');
  return end == bytes.end() ? Bytes()
                            : bytes.subspan(static_cast<std::size_t>(end - bytes.begin()) + 1);
}

}  // namespace

Sample::Sample(Bytes text, bool isWhole) {
  head = text.first(std::min(text.size(), kHead));
  isHeadCut = !isWhole || head.size() < text.size();
  isEverything = !isHeadCut;
  pieces.push_back({head, isHeadCut});
  const Bytes rest = text.subspan(head.size());
  if (rest.size() > kFurtherPieces * kFurtherBytes) {
    const std::size_t step = rest.size() / kFurtherPieces;
    for (std::size_t i = 0; i < kFurtherPieces; ++i) {
      const Bytes line = fromNextLine(rest.subspan(i * step, kFurtherBytes));
      if (!line.empty()) pieces.push_back({line, true});
    }
  } else if (const Bytes line = fromNextLine(rest); !line.empty()) {
    pieces.push_back({line, !isWhole});
  }
  for (const Piece& piece : pieces) {
    size += piece.bytes.size();
    for (const unsigned char byte : piece.bytes) ++counts[byte];
  }
}

std::vector<Piece> Sample::forStatistics() const {
  constexpr std::size_t kBefore = 4u << 10;
  const auto first = static_cast<std::size_t>(
      std::find_if(head.begin(), head.end(), [](unsigned char c) { return c >= 0x80; }) -
      head.begin());
  std::size_t begin = 0;
  if (first > kBefore) {
    // From a line's beginning, as near as there is one.
    const Bytes before = head.subspan(first - kBefore, kBefore);
    const auto lineEnd = std::find(before.rbegin(), before.rend(), '\n');
    const auto found = static_cast<std::size_t>(before.rend() - lineEnd);
    begin = found == 0 ? 0 : first - kBefore + found;
    if (found == 0 && head.size() > kStatisticsBytes) begin = first;
  }
  std::vector<Piece> chosen;
  const std::size_t count = std::min(kStatisticsBytes, head.size() - begin);
  chosen.push_back({head.subspan(begin, count), isHeadCut || begin + count < head.size()});
  chosen.insert(chosen.end(), pieces.begin() + 1, pieces.end());
  for (Piece& piece : chosen) {
    if (piece.bytes.size() <= kStatisticsBytes) continue;
    piece = {piece.bytes.first(kStatisticsBytes), true};
  }
  return chosen;
}

}  // namespace detection
