#include "encoding/detect/ebcdic_text.h"

#include <cmath>

#include "encoding/detect/letter_profiles.h"

namespace detection {
namespace {

// The letters a to z, in three runs; the capitals stand 40 above.
constexpr unsigned char kRuns[][2] = {{0x81, 0x89}, {0x91, 0x99}, {0xA2, 0xA9}};

// How near the frequencies of the letters are to those of Western languages: 1 for the same. Random
// letters come to about 0.75.
double likenessOfLetters(const Sample& sample, std::uint64_t& letters) {
  double product = 0, ofSample = 0, ofText = 0;
  char16_t letter = u'a';
  letters = 0;
  for (const auto& run : kRuns) {
    for (unsigned int byte = run[0]; byte <= run[1]; ++byte, ++letter) {
      const std::uint32_t seen = sample.counts[byte] + sample.counts[byte + 0x40];
      const auto count = static_cast<double>(seen);
      const double share = std::exp(static_cast<double>(logOfAscii(letter)));
      letters += seen;
      product += count * share;
      ofSample += count * count;
      ofText += share * share;
    }
  }
  return letters == 0 ? 0 : product / std::sqrt(ofSample * ofText);
}

}  // namespace

EbcdicLook lookForEbcdic(const Sample& sample) {
  const std::uint32_t* const counts = sample.counts;
  // Blanks at 40, none where ASCII has them, and of the controls none but tab and line ends.
  std::uint64_t controls = 0;
  for (unsigned int byte = 0; byte < 0x40; ++byte) controls += counts[byte];
  controls -= counts[0x05] + counts[0x0C] + counts[0x0D] + counts[0x15] + counts[0x25];
  const bool hasBlanks = std::uint64_t{counts[0x40]} * 25 >= sample.size && counts[0x40] != 0;
  if (!hasBlanks || controls * 100 > sample.size) return EbcdicLook::kNone;

  std::uint64_t letters = 0;
  const double likeness = likenessOfLetters(sample, letters);
  std::uint64_t usual = letters + counts[0x40] + counts[0x15] + counts[0x25] + counts[0x0D];
  for (unsigned int byte = 0xF0; byte <= 0xF9; ++byte) usual += counts[byte];
  const bool isMostlyLatin = usual * 4 > sample.size * 3;
  constexpr std::uint64_t kEnoughLetters = 30;
  if (isMostlyLatin && (letters < kEnoughLetters || likeness > 0.8)) return EbcdicLook::kLatin;
  return EbcdicLook::kPossible;
}

}  // namespace detection
