#include "encoding/transliteration.h"

#include <algorithm>
#include <array>

#include "encoding/transliteration_texts.h"
#include "support/utf.h"

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

// The form of a character in UTF-8.
struct Key {
  unsigned char bytes[4];
  std::size_t length;

  explicit Key(std::uint32_t scalar)
      : length(static_cast<std::size_t>(writeUtf8(bytes, scalar) - bytes)) {}
  std::string_view text() const { return {reinterpret_cast<const char*>(bytes), length}; }
};

// Where the records of 256 characters each begin; those from kLastPage on are together.
constexpr std::uint32_t kPageBits = 8, kLastPage = 0x300;
using Pages = std::array<std::uint16_t, kLastPage + 2>;

constexpr Pages findPages() {
  static_assert(kTexts.size() <= 0xFFFF);
  Pages pages{};
  std::uint32_t page = 0;
  for (std::size_t record = 0; record < kTexts.size(); record = kTexts.find(kEnd, record) + 1) {
    unsigned char lead[4] = {};
    for (std::size_t i = 0; i < 4; ++i) lead[i] = static_cast<unsigned char>(kTexts[record + i]);
    const std::uint32_t own = std::min(readUtf8(lead) >> kPageBits, kLastPage);
    while (page < own) pages[++page] = static_cast<std::uint16_t>(record);
  }
  while (page < kLastPage + 1) pages[++page] = static_cast<std::uint16_t>(kTexts.size());
  return pages;
}
constexpr Pages kPages = findPages();

// Where the candidates of a character are in kTexts; npos where it has none.
std::size_t findCandidates(std::uint32_t scalar) {
  const Key key(scalar);
  const std::uint32_t page = std::min(scalar >> kPageBits, kLastPage);
  // Records begin at low and at high, and so does the wanted one at some place from low on, below
  // high. UTF-8 has the order of the characters.
  std::size_t low = kPages[page], high = kPages[page + 1];
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    std::size_t record = middle;
    while (record != low && kTexts[record - 1] != kEnd) --record;
    const int order = kTexts.compare(record, key.length, key.text());
    if (order == 0) return record + key.length;
    if (order < 0) {
      low = kTexts.find(kEnd, middle) + 1;
    } else {
      high = record;
    }
  }
  return kTexts.npos;
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
