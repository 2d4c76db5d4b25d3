#include "encoding/codecs/euc_kr_jamo.h"

#include <iterator>

namespace {

// The second bytes of the letters, whose first is this, in the order of Unicode's syllables. Vowels
// follow each other from kFirstVowel on.
constexpr unsigned char kRow = 0xA4, kFiller = 0xD4, kFirstVowel = 0xBF;
constexpr unsigned int kVowels = 21;
constexpr unsigned char kInitials[] = {0xA1, 0xA2, 0xA4, 0xA7, 0xA8, 0xA9, 0xB1, 0xB2, 0xB3, 0xB5,
                                       0xB6, 0xB7, 0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE};
constexpr unsigned char kFinals[] = {kFiller, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, 0xA9, 0xAA,
                                     0xAB,    0xAC, 0xAD, 0xAE, 0xAF, 0xB0, 0xB1, 0xB2, 0xB4, 0xB5,
                                     0xB6,    0xB7, 0xB8, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE};
constexpr std::uint32_t kFirstSyllable = 0xAC00;
constexpr std::uint32_t kSyllables = std::size(kInitials) * kVowels * std::size(kFinals);

constexpr unsigned int kLength = 8;

template <std::size_t count>
constexpr std::size_t indexOf(const unsigned char (&letters)[count], unsigned char letter) {
  std::size_t i = 0;
  while (i < count && letters[i] != letter) ++i;
  return i;
}

unsigned int read(const unsigned char* bytes, std::size_t known, bool last, char32_t& scalar) {
  if (known < 2 || bytes[0] != kRow || bytes[1] != kFiller) return 0;
  if (known < kLength) return last ? 0 : LongForms::kUndecided;
  const std::size_t initial = indexOf(kInitials, bytes[3]);
  const unsigned int vowel = bytes[5] - unsigned{kFirstVowel};
  const std::size_t final = indexOf(kFinals, bytes[7]);
  const bool isSyllable = bytes[2] == kRow && bytes[4] == kRow && bytes[6] == kRow &&
                          initial < std::size(kInitials) && vowel < kVowels &&
                          final < std::size(kFinals);
  if (!isSyllable) return 0;
  const std::size_t index = (initial * kVowels + vowel) * std::size(kFinals) + final;
  scalar = kFirstSyllable + static_cast<char32_t>(index);
  return kLength;
}

unsigned int write(char32_t scalar, unsigned char* bytes) {
  if (scalar < kFirstSyllable || scalar >= kFirstSyllable + kSyllables) return 0;
  const std::uint32_t index = scalar - kFirstSyllable;
  constexpr auto kFinalCount = static_cast<std::uint32_t>(std::size(kFinals));
  const unsigned char seconds[] = {
      kFiller, kInitials[index / kFinalCount / kVowels],
      static_cast<unsigned char>(kFirstVowel + index / kFinalCount % kVowels),
      kFinals[index % kFinalCount]};
  for (const unsigned char second : seconds) {
    *bytes++ = kRow;
    *bytes++ = second;
  }
  return kLength;
}

}  // namespace

extern const LongForms kEucKrJamo = {read, write};

// The letters of a syllable are pairs of one row, which clean text has in few other places.
std::size_t cutEucKrJamo(const void* parameters, const CutWindow& window) {
  CutWindow rest = window;
  std::size_t place = cutRuled(parameters, rest);
  while (place != CutWindow::kNone && place >= 2 && rest.data[place - 1] >= 0x80 &&
         rest.data[place - 2] == kRow) {
    rest.offset = place + 1;
    place = cutRuled(parameters, rest);
  }
  // What stands in front of a window may be the first three pairs.
  const bool isSeen =
      place == CutWindow::kNone || place == 0 || place >= 2 || rest.data[place - 1] < 0x80;
  return isSeen ? place : CutWindow::kNone;
}
