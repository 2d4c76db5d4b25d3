#include "encoding/composer.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "encoding/composition_pairs.h"
#include "support/utf.h"

namespace fast {
namespace {

// Hangul, which is composed by counting.
constexpr std::uint32_t kLeads = 0x1100, kVowels = 0x1161, kFinals = 0x11A7, kSyllables = 0xAC00;
constexpr std::uint32_t kLeadCount = 19, kVowelCount = 21, kFinalCount = 28;
constexpr std::uint32_t kSyllableCount = kLeadCount * kVowelCount * kFinalCount;

constexpr bool isAmong(std::uint32_t unit, std::uint32_t first, std::uint32_t count) {
  return unit - first < count;
}

std::uint16_t composeHangul(std::uint32_t first, std::uint32_t second) {
  if (isAmong(first, kLeads, kLeadCount) && isAmong(second, kVowels, kVowelCount)) {
    const std::uint32_t pair = (first - kLeads) * kVowelCount + second - kVowels;
    return static_cast<std::uint16_t>(kSyllables + pair * kFinalCount);
  }
  const bool isOpen =
      isAmong(first, kSyllables, kSyllableCount) && (first - kSyllables) % kFinalCount == 0;
  const bool isFinal = isAmong(second, kFinals + 1, kFinalCount - 1);
  return isOpen && isFinal ? static_cast<std::uint16_t>(first + second - kFinals)
                           : std::uint16_t{0};
}

std::uint32_t loadUnit(const unsigned char* p) { return p[0] | p[1] * 256u; }

}  // namespace

std::uint16_t compose(std::uint32_t first, std::uint32_t second) {
  if (const std::uint16_t syllable = composeHangul(first, second)) return syllable;
  const auto keyOf = [](const CompositionPair& pair) {
    return std::tuple<std::uint32_t, std::uint32_t>(pair.first, pair.second);
  };
  const auto* const found =
      std::ranges::lower_bound(kCompositionPairs, std::tuple(first, second), {}, keyOf);
  const bool isThere =
      found != std::end(kCompositionPairs) && found->first == first && found->second == second;
  return isThere ? found->composed : std::uint16_t{0};
}

bool mayCompose(std::uint32_t unit) {
  constexpr std::uint32_t kFirstMark = 0x300;
  if (unit < kFirstMark) return false;
  if (isAmong(unit, kVowels, kVowelCount) || isAmong(unit, kFinals + 1, kFinalCount - 1)) {
    return true;
  }
  // Marks are few: U+0300 to U+0345 for the most part.
  constexpr std::uint32_t kMarks[] = {0x0653, 0x0654, 0x0655, 0x093C, 0x09BE, 0x09D7,
                                      0x0B3E, 0x0B56, 0x0B57, 0x0BBE, 0x0BD7, 0x0C56,
                                      0x0CC2, 0x0CD5, 0x0CD6, 0x0D3E, 0x0D57, 0x0DCA,
                                      0x0DCF, 0x0DDF, 0x102E, 0x1B35, 0x3099, 0x309A};
  return unit <= 0x345 || std::ranges::binary_search(kMarks, unit);
}

bool isTakenApart(std::uint32_t unit) {
  return isAmong(unit, kLeads, kLeadCount) || mayCompose(unit);
}

void Composer::open(Repertoire& target) {
  m_target = &target;
  m_isKnown.reset();
}

bool Composer::isLackingInCodec(std::uint32_t unit) {
  if (!m_isKnown[unit]) {
    m_isLacking[unit] = !m_target->has(unit);
    m_isKnown.set(unit);
  }
  return m_isLacking[unit];
}

// How many of the units, a letter and marks, the target has as one character and lacks otherwise;
// 0 for none.
std::size_t Composer::composable(const unsigned char* units, std::size_t count,
                                 std::uint16_t& composed) {
  std::size_t best = 0;
  std::uint32_t whole = loadUnit(units);
  bool isOneLacking = isLacking(whole);
  for (std::size_t i = 1; i < count; ++i) {
    const std::uint32_t mark = loadUnit(units + 2 * i);
    whole = compose(whole, mark);
    if (whole == 0) break;
    isOneLacking = isOneLacking || isLacking(mark);
    if (!isOneLacking || isLacking(whole)) continue;
    composed = static_cast<std::uint16_t>(whole);
    best = i + 1;
  }
  return best;
}

bool Composer::run(unsigned char* block, std::size_t& size, const unsigned char* source,
                   bool holdsLast) {
  m_count = 0;
  const unsigned char* const end = block + size;
  const unsigned char* in = source;
  unsigned char* out = block;
  for (const unsigned char* p = block; p != end;) {
    std::size_t count = 1;
    while (count <= kMaxMarks && p + 2 * count != end && mayCompose(loadUnit(p + 2 * count))) {
      ++count;
    }
    // A pair of surrogates is not cut, and is no part of a composition.
    const bool mayGoOn = count <= kMaxMarks && !isSurrogate(loadUnit(p));
    if (holdsLast && mayGoOn && p + 2 * count == end) {
      m_sourceUsed = static_cast<std::size_t>(in - source);
      size = static_cast<std::size_t>(out - block);
      return true;
    }
    std::uint16_t composed = 0;
    const std::size_t used = count == 1 ? 0 : composable(p, count, composed);
    const unsigned char* const begin = in;
    for (std::size_t i = 0; i < used; ++i) in += sourceBytes(*m_plan, loadUnit(p + 2 * i), in);
    if (used != 0) {
      m_anchors[m_count++] = {static_cast<std::uint16_t>(out - block),
                              static_cast<std::uint16_t>(in - begin),
                              static_cast<std::uint32_t>(begin - source)};
      *out++ = static_cast<unsigned char>(composed);
      *out++ = static_cast<unsigned char>(composed >> 8);
    }
    for (std::size_t i = used; i < count; ++i) {
      in += sourceBytes(*m_plan, loadUnit(p + 2 * i), in);
      out[0] = p[2 * i];
      out[1] = p[2 * i + 1];
      out += 2;
    }
    p += 2 * count;
  }
  size = static_cast<std::size_t>(out - block);
  return false;
}

}  // namespace fast
