// How unlikely two characters are as neighbours, over and above each by itself.
#ifndef ENCODING_DETECT_NEIGHBOURS_H_
#define ENCODING_DETECT_NEIGHBOURS_H_

#include "encoding/detect/characters.h"

namespace detection {

// What neighbours are judged by.
struct LetterKind {
  Script script = Script::kNone;
  bool isLetter = false;
  bool isCapital = false;
  bool isHigh = false;  // beyond ASCII
};

inline LetterKind letterKindOf(char16_t unit) {
  const Script script = scriptOf(unit);
  return {script, isLetterScript(script), lowerOf(unit) != unit, unit >= 0x80};
}

// A natural logarithm.
inline double logOfNeighbours(const LetterKind& first, const LetterKind& second) {
  if (!first.isLetter || !second.isLetter || (!first.isHigh && !second.isHigh)) return 0;
  if (first.script != second.script) return -3;
  if (!first.isCapital && second.isCapital) return -2.5;
  // Two letters beyond ASCII in a row are common in other scripts.
  return first.isHigh && second.isHigh && first.script == Script::kLatin ? -1 : 0;
}

}  // namespace detection

#endif  // ENCODING_DETECT_NEIGHBOURS_H_
