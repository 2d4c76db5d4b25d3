#include "encoding/detect/text_score.h"

#include "support/utf.h"

namespace detection {
namespace {

// Natural logarithms, as those of the profiles are.
constexpr double kBeyondBmp = -9;     // emoji and rare ideographs: no sign of garbled text
constexpr double kReplacement = -12;  // U+FFFD
constexpr double kMark = -3;          // quotation marks and dashes where they belong
constexpr double kSymbol = -6;        // other signs that stand by themselves
constexpr double kWide = -5;          // wide forms of ASCII
constexpr double kLoneLetter = -1.5;  // a word of one letter beyond ASCII, besides the letter
constexpr double kAllCapitals = -2;   // a word of them, besides its letters as small ones

// Quotation marks, apostrophes and dashes that stand to their neighbours as they do in text.
bool isPlacedMark(char16_t before, char16_t unit, char16_t after, bool isBehindLetter) {
  switch (unit) {
    case u'\u2018':
    case u'\u201C':
    case u'\u201E':
    case u'\u00AB':
      return !isBehindLetter && after > u' ';
    case u'\u2019':
    case u'\u201D':
    case u'\u00BB':
    case u'\u2026':
      return before > u' ';
    case u'\u2013':
    case u'\u2014':
      return (before == u' ') == (after == u' ');
    default:
      return false;
  }
}

}  // namespace

const LetterKind& TextScore::kindOf(char16_t unit) {
  if (!m_isKnown[unit]) {
    m_kinds[unit] = letterKindOf(unit);
    m_isKnown[unit] = true;
  }
  return m_kinds[unit];
}

TextScore::Word TextScore::wordAt(std::u16string_view text) {
  Word word;
  for (; word.length < text.size(); ++word.length) {
    const LetterKind& kind = kindOf(text[word.length]);
    if (!kind.isLetter) break;
    if (!kind.isCapital) word.isAllCapitals = false;
  }
  return word;
}

double TextScore::of(std::u16string_view text) {
  Sums sums(m_logs);
  for (std::size_t i = 0; i < text.size();) {
    const Word word = wordAt(text.substr(i));
    if (word.length == 0) {
      i += addSign(text, i, sums);
    } else {
      addWord(text.substr(i, word.length), word.isAllCapitals && word.length > 1, sums);
      i += word.length;
    }
  }
  return sums.common + logOfShares(sums.ascii, sums.others) + sums.letters.best().log;
}

void TextScore::addWord(std::u16string_view word, bool isAllCapitals, Sums& sums) {
  if (isAllCapitals) sums.common += kAllCapitals;
  if (word.size() == 1 && word[0] >= 0x80) sums.common += kLoneLetter;
  LetterKind before;
  for (const char16_t given : word) {
    const char16_t unit = isAllCapitals ? lowerOf(given) : given;
    const LetterKind& kind = kindOf(unit);
    sums.common += logOfNeighbours(before, kind);
    before = kind;
    sums.add(unit);
  }
}

std::size_t TextScore::addSign(std::u16string_view text, std::size_t at, Sums& sums) {
  const char16_t unit = text[at];
  const char16_t before = at == 0 ? u' ' : text[at - 1];
  const char16_t after = at + 1 == text.size() ? u' ' : text[at + 1];
  if (isHighSurrogate(unit) && isLowSurrogate(after)) {
    sums.addOther(kBeyondBmp);
    return 2;
  }
  const bool isBehindLetter = kindOf(before).isLetter;
  const bool isAlone = !isBehindLetter && !kindOf(after).isLetter;
  if (unit == 0xFFFD) {
    sums.addOther(kReplacement);
  } else if (unit > 0xFF00 && unit < 0xFF5F) {
    sums.addOther(kWide);
  } else if (isPlacedMark(before, unit, after, isBehindLetter)) {
    sums.addOther(kMark);
  } else if (unit >= 0xA0 && unit < 0x2600 && isAlone) {
    sums.addOther(kSymbol);
  } else {
    sums.add(unit);
  }
  return 1;
}

void TextScore::Sums::add(char16_t unit) {
  if (unit < 0x80) {
    ++ascii;
    common += static_cast<double>(logOfAscii(unit));
  } else {
    ++others;
    letters.add(unit);
  }
}

void TextScore::Sums::addOther(double log) {
  ++others;
  common += log;
}

}  // namespace detection
