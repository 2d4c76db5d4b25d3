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
  // What stands in front of words in most languages, and behind them.
  bool isOpening = false;
  bool isClosing = false;
};

inline LetterKind letterKindOf(char16_t unit) {
  const Script script = scriptOf(unit);
  const bool isOpening = unit == u'\u2018' || unit == u'\u201A' || unit == u'\u201C' ||
                         unit == u'\u201E';  // single and double, at either height
  const bool isClosing =
      unit == u'\u201D' || unit == u'\u2026' || unit == u'\u03C2';  // the sigma of word ends
  return {script,   isLetterScript(script), lowerOf(unit) != unit, unit >= 0x80, isOpening,
          isClosing};
}

// A natural logarithm.
inline double logOfNeighbours(const LetterKind& first, const LetterKind& second) {
  if ((first.isLetter && second.isOpening) || (first.isClosing && second.isLetter)) return -2;
  if (!first.isLetter || !second.isLetter || (!first.isHigh && !second.isHigh)) return 0;
  if (first.script != second.script) return -3;
  if (!first.isCapital && second.isCapital) return -2.5;
  // Two letters beyond ASCII in a row are common in other scripts.
  return first.isHigh && second.isHigh && first.script == Script::kLatin ? -1 : 0;
}

}  // namespace detection

#endif  // ENCODING_DETECT_NEIGHBOURS_H_
