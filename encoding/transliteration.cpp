#include "encoding/transliteration.h"

#include <algorithm>
#include <array>

#include "encoding/transliteration_texts.h"

namespace fast {
namespace {

constexpr std::string_view kTexts(kTransliterations, sizeof kTransliterations - 1);
static_assert(kLongestTransliteration <= Transliterations::kMaxLength);
constexpr char kBetween = '\1', kEnd = '\0';

// The character that begins at p.
constexpr std::uint32_t readUtf8(const unsigned char* p) {
  if (p[0] < 0x80) return p[0];
  if (p[0] < 0xE0) return (p[0] & 0x1Fu) << 6 | (p[1] & 0x3Fu);
  const std::uint32_t three = (p[0] & 0xFu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu);
  return p[0] < 0xF0 ? three : (three & 0x7FFFu) << 6 | (p[3] & 0x3Fu);
}

// The character that begins a record.
constexpr std::uint32_t characterAt(std::size_t record) {
  unsigned char form[4] = {};
  for (std::size_t i = 0; i < 4; ++i) form[i] = static_cast<unsigned char>(kTexts[record + i]);
  return readUtf8(form);
}

// By hand: sanitizers keep string_view's own search from being constant.
constexpr std::size_t behind(std::size_t record) {
  while (kTransliterations[record] != kEnd) ++record;
  return record + 1;
}

constexpr std::size_t kRecords =
    static_cast<std::size_t>(std::count(kTexts.begin(), kTexts.end(), kEnd));

// Where records are, in their order; and in which of 256 characters each the first of them are, of
// which those from kLastPage on are together: these are the variation selectors.
constexpr std::uint32_t kPageBits = 8, kLastPage = 0x300;
struct Index {
  std::array<std::uint16_t, kRecords> places{};
  std::array<std::uint16_t, kLastPage + 2> pages{};
};

constexpr Index makeIndex() {
  static_assert(kTexts.size() <= 0xFFFF);
  Index index;
  std::uint32_t page = 0;
  std::size_t record = 0;
  for (std::size_t i = 0; i < kRecords; ++i, record = behind(record)) {
    const std::uint32_t own = std::min(characterAt(record) >> kPageBits, kLastPage);
    while (page < own) index.pages[++page] = static_cast<std::uint16_t>(i);
    index.places[i] = static_cast<std::uint16_t>(record);
  }
  while (page <= kLastPage) index.pages[++page] = static_cast<std::uint16_t>(kRecords);
  return index;
}
constexpr Index kIndex = makeIndex();

// Where the candidates of a character are in kTexts; npos where it has none. The searches for the
// characters of a text go every way: this one has no branches to guess.
std::size_t findCandidates(std::uint32_t scalar) {
  const std::uint32_t page = std::min(scalar >> kPageBits, kLastPage);
  const std::uint16_t* found = kIndex.places.data() + kIndex.pages[page];
  std::size_t count = kIndex.pages[page + 1] - std::size_t{kIndex.pages[page]};
  if (count == 0) return kTexts.npos;
  const std::size_t length = scalar < 0x800 ? 2 : scalar < 0x10000 ? 3 : 4;
  // The last two bytes of a form tell the characters of a page apart.
  const std::uint32_t key =
      (length == 2 ? 0xC080 : 0x8080) + (scalar << 2 & 0x3F00) + (scalar & 0x3F);
  const auto keyAt = [&](std::size_t record) {
    const char* const last = kTexts.data() + record + length - 2;
    return std::uint32_t{static_cast<unsigned char>(last[0])} << 8 |
           static_cast<unsigned char>(last[1]);
  };
  while (count > 1) {
    const std::size_t half = count / 2;
    found += keyAt(found[half]) <= key ? half : 0;
    count -= half;
  }
  return characterAt(*found) == scalar ? *found + length : kTexts.npos;
}

}  // namespace

Transliterations::Transliterations(std::uint32_t scalar) : m_next(nullptr) {
  constexpr std::uint32_t kFirst = 0xA0;
  if (scalar < kFirst) return;
  const std::size_t found = findCandidates(scalar);
  if (found != kTexts.npos) m_next = kTexts.data() + found;
}

bool Transliterations::next(std::string_view& text) {
  if (m_next == nullptr) return false;
  const char* end = m_next;
  while (*end != kBetween && *end != kEnd) ++end;
  text = {m_next, static_cast<std::size_t>(end - m_next)};
  m_next = *end == kEnd ? nullptr : end + 1;
  return true;
}

}  // namespace fast
