#include "encoding/codecs/encoding_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "encoding/codecs/encoding_row_list.h"

namespace {

using encoding_rows::kEncodings;

// A list that is made by calling this does not compile, since it is no constant.
void refuse(const char* /*why*/) {}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Letters in lower case, and digits; 0 for what does not count.
constexpr std::array<char, 256> kFolded = [] {
  std::array<char, 256> folded{};
  for (unsigned char c = '0'; c <= '9'; ++c) folded[c] = static_cast<char>(c);
  for (unsigned char c = 'a'; c <= 'z'; ++c)
    folded[c] = folded[c - 'a' + 'A'] = static_cast<char>(c);
  return folded;
}();

// A name as it is compared. Names are short; what does not fit matches nothing.
struct NormalizedName {
  static constexpr std::size_t kCapacity = 64;

  std::array<char, kCapacity> chars;
  std::size_t length = 0;
  bool fits = true;

  constexpr explicit NormalizedName(std::string_view name) {
    for (const char character : name) {
      const char c = kFolded[static_cast<unsigned char>(character)];
      if (c == 0) continue;
      if (c == '0' && (length == 0 || !isDigit(chars[length - 1]))) continue;
      if (length == kCapacity) {
        fits = false;
        return;
      }
      chars[length++] = c;
    }
  }

  constexpr std::string_view view() const { return {chars.data(), length}; }
};

// Calls visit(name) for each name of a list.
template <typename Visit>
constexpr void forEachIn(std::string_view rest, Visit visit) {
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    visit(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

// Calls visit(name) for each name of a row, the preferred one first.
template <typename Visit>
constexpr void forEachName(const EncodingRow& row, Visit visit) {
  visit(std::string_view(row.name));
  forEachIn(row.aliases, visit);
}

constexpr std::size_t kNameCount = [] {
  std::size_t count = 0;
  for (const EncodingRow& row : kEncodings) forEachName(row, [&](std::string_view) { ++count; });
  return count;
}();

// All names, row after row, and the row that each belongs to.
struct NameList {
  std::array<std::string_view, kNameCount> names;
  std::array<std::uint16_t, kNameCount> rowOfName;
};

constexpr NameList kNameList = [] {
  NameList list{};
  std::size_t count = 0;
  for (std::size_t row = 0; row < kEncodings.size(); ++row) {
    forEachName(kEncodings[row], [&](std::string_view name) {
      list.rowOfName[count] = static_cast<std::uint16_t>(row);
      list.names[count++] = name;
    });
  }
  return list;
}();

constexpr std::array<CharsetNames, kEncodings.size()> kCharsets = [] {
  std::array<CharsetNames, kEncodings.size()> charsets{};
  std::size_t count = 0, name = 0;
  for (const EncodingRow& row : kEncodings) {
    const std::size_t first = name;
    forEachName(row, [&](std::string_view) { ++name; });
    charsets[count++] = {row.number,
                         row.name,
                         std::span(kNameList.names).subspan(first + 1, name - first - 1),
                         row.kind,
                         row.description,
                         true,
                         row.isWritten};
  }
  return charsets;
}();

constexpr auto kEngineCharsets = [] {
  std::array<CharsetNames, std::ranges::count_if(kEncodings, &EncodingRow::inEngine)> charsets{};
  std::size_t count = 0;
  for (std::size_t i = 0; i < kEncodings.size(); ++i) {
    if (kEncodings[i].inEngine) charsets[count++] = kCharsets[i];
  }
  return charsets;
}();

// A hash table of all names with open addressing, half full at most; a slot holds the index of a
// name plus 1, or 0.
constexpr std::size_t kIndexSize = 8192;
static_assert(kNameCount * 2 <= kIndexSize);

constexpr std::size_t firstSlot(std::string_view normalized) {
  std::uint32_t hash = 2166136261U;  // FNV-1a
  for (const char c : normalized) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  }
  return (hash ^ (hash >> 15)) % kIndexSize;
}

// The names as they are compared, one after another: text[begin[i]] to text[begin[i + 1]].
constexpr std::size_t kNormalizedSize = [] {
  std::size_t size = 0;
  for (const std::string_view name : kNameList.names) size += NormalizedName(name).length;
  return size;
}();
struct NormalizedNames {
  std::array<char, kNormalizedSize> text;
  std::array<std::uint16_t, kNameCount + 1> begin;

  constexpr std::string_view operator[](std::size_t i) const {
    return {text.data() + begin[i], static_cast<std::size_t>(begin[i + 1] - begin[i])};
  }
};
static_assert(kNormalizedSize < 0x10000);

constexpr NormalizedNames kNormalized = [] {
  NormalizedNames names{};
  std::size_t size = 0;
  for (std::size_t i = 0; i < kNameCount; ++i) {
    const NormalizedName name(kNameList.names[i]);
    if (!name.fits || name.length == 0) refuse("a name is too long, or empty");
    for (const char c : name.view()) names.text[size++] = c;
    names.begin[i + 1] = static_cast<std::uint16_t>(size);
  }
  return names;
}();

constexpr std::array<std::uint16_t, kIndexSize> kIndex = [] {
  std::array<std::uint16_t, kIndexSize> index{};
  for (std::size_t i = 0; i < kNameCount; ++i) {
    std::size_t slot = firstSlot(kNormalized[i]);
    while (index[slot] != 0) {
      if (kNormalized[index[slot] - 1U] == kNormalized[i]) refuse("two names match each other");
      slot = (slot + 1) % kIndexSize;
    }
    index[slot] = static_cast<std::uint16_t>(i + 1);
  }
  return index;
}();

const EncodingRow* findListedName(std::string_view normalized) {
  for (std::size_t slot = firstSlot(normalized); kIndex[slot] != 0;
       slot = (slot + 1) % kIndexSize) {
    const std::size_t name = kIndex[slot] - 1U;
    if (kNormalized[name] == normalized) return &kEncodings[kNameList.rowOfName[name]];
  }
  return nullptr;
}

// "1252", "cp1252" and "windows1252", for encodings that have a name as well.
const EncodingRow* findNumberedName(std::string_view normalized) {
  for (const std::string_view prefix : {std::string_view("cp"), std::string_view("windows")}) {
    if (normalized.starts_with(prefix)) {
      normalized.remove_prefix(prefix.size());
      break;
    }
  }
  constexpr std::size_t kMaxDigits = 7;
  if (normalized.size() > kMaxDigits || !std::ranges::all_of(normalized, isDigit)) return nullptr;
  int number = 0;
  for (const char c : normalized) number = number * 10 + (c - '0');
  return findEncodingRow(number);
}

// The few names that mean something else to the engine, as they are compared.
struct EngineName {
  std::array<char, NormalizedName::kCapacity> chars{};
  std::size_t length = 0;
  std::uint16_t row = 0;

  constexpr std::string_view view() const { return {chars.data(), length}; }
};
constexpr auto kEngineNames = [] {
  constexpr std::size_t kCount = [] {
    std::size_t count = 0;
    for (const EncodingRow& row : kEncodings) {
      forEachIn(row.engineNames, [&](std::string_view) { ++count; });
    }
    return count;
  }();
  std::array<EngineName, kCount> names{};
  std::size_t count = 0;
  for (std::size_t row = 0; row < kEncodings.size(); ++row) {
    forEachIn(kEncodings[row].engineNames, [&](std::string_view name) {
      const NormalizedName normalized(name);
      for (const char c : normalized.view()) names[count].chars[names[count].length++] = c;
      names[count++].row = static_cast<std::uint16_t>(row);
    });
  }
  return names;
}();

}  // namespace

std::span<const CharsetNames> encodingNames() { return kCharsets; }
std::span<const CharsetNames> engineEncodingNames() { return kEngineCharsets; }

const EncodingRow* findEncoding(std::string_view name) {
  const NormalizedName normalized(name);
  if (!normalized.fits || normalized.length == 0) return nullptr;
  const EncodingRow* const listed = findListedName(normalized.view());
  return listed != nullptr ? listed : findNumberedName(normalized.view());
}

const EncodingRow* findEngineEncoding(std::string_view name) {
  const NormalizedName normalized(name);
  for (const EngineName& known : kEngineNames) {
    if (normalized.fits && normalized.view() == known.view()) return &kEncodings[known.row];
  }
  const EncodingRow* const row = findEncoding(name);
  return row != nullptr && row->inEngine ? row : nullptr;
}

bool containsName(std::string_view text, std::string_view part) {
  const NormalizedName whole(text);
  const NormalizedName wanted(part);
  if (!wanted.fits || wanted.length == 0) return false;
  return whole.view().find(wanted.view()) != std::string_view::npos;
}
