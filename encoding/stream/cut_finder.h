// Where a text can be cut into pieces that are converted apart.
#ifndef ENCODING_STREAM_CUT_FINDER_H_
#define ENCODING_STREAM_CUT_FINDER_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "encoding/codecs/cut_rules.h"

struct CutSettings {
  std::uint64_t position = 0;  // of the window's first byte in the text
  bool isAtCut = false;        // a piece can begin there; at the beginning of a text it can
  bool isBehindLine = false;   // only places behind a line end, U+000A or U+0085, are wanted;
                               // none in encodings that hide them
};

// Finds the places where a piece of a text in one encoding can begin: in front of a character, in
// the initial state, and not in front of a character that may become one with that before it, such
// as a mark, or half of a pair of surrogates. It does not cut in front of a byte order mark, which
// would be lost there.
//
// If the text is clean, its pieces, each converted to any encoding without a state and without a
// mark of its own, give the conversion of the whole. If it is not, a place may be within what the
// whole text's reader takes for one malformed piece, or in a state that damaged bytes brought
// about; who needs that exactly compares the states (StreamConverter::place).
//
// One thread uses an object at a time.
class CutFinder {
 public:
  // A code page that cannot be read has no cuts.
  explicit CutFinder(int codePage);
  ~CutFinder();

  // The first cut at offset or behind it in a window of a text, less than size but for the
  // beginning of an empty text. CutWindow::kNone: none is in sight.
  std::size_t find(const unsigned char* data, std::size_t size, std::size_t offset,
                   const CutSettings& settings = {});

 private:
  class Filter;
  std::unique_ptr<Filter> m_filter;
};

#endif  // ENCODING_STREAM_CUT_FINDER_H_
