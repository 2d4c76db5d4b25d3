#include "encoding/codecs/encoding_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "encoding/codecs/encoding_row_list.h"

namespace {

using encoding_rows::kEncodings;

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

// Calls visit(name) for each name of a row, the preferred one first.
template <typename Visit>
constexpr void forEachName(const EncodingRow& row, Visit visit) {
  if (row.name[0] == 0) return;
  visit(std::string_view(row.name));
  std::string_view rest = row.aliases;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    visit(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

constexpr bool isNamed(const EncodingRow& row) { return row.name[0] != 0; }
constexpr bool isNamedInEngine(const EncodingRow& row) { return isNamed(row) && row.inEngine; }
constexpr std::size_t kNameCount = [] {
  std::size_t count = 0;
  for (const EncodingRow& row : kEncodings) forEachName(row, [&](std::string_view) { ++count; });
  return count;
}();

// All names, row after row, and the row that each belongs to.
struct NameList {
  std::array<std::string_view, kNameCount> names;
  std::array<std::uint8_t, kNameCount> rowOfName;
};
static_assert(kEncodings.size() <= 256);

constexpr NameList kNameList = [] {
  NameList list{};
  std::size_t count = 0;
  for (std::size_t row = 0; row < kEncodings.size(); ++row) {
    forEachName(kEncodings[row], [&](std::string_view name) {
      list.rowOfName[count] = static_cast<std::uint8_t>(row);
      list.names[count++] = name;
    });
  }
  return list;
}();

// A hash table of all names with open addressing, half full at most; a slot holds the index of a
// name plus 1, or 0.
constexpr std::size_t kIndexSize = 2048;
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
    if (!name.fits || name.length == 0) throw "a name is too long, or empty";
    for (const char c : name.view()) names.text[size++] = c;
    names.begin[i + 1] = static_cast<std::uint16_t>(size);
  }
  return names;
}();

constexpr bool isOfEngine(std::size_t name) {
  return kEncodings[kNameList.rowOfName[name]].inEngine;
}

constexpr std::array<std::uint16_t, kIndexSize> kIndex = [] {
  std::array<std::uint16_t, kIndexSize> index{};
  for (std::size_t i = 0; i < kNameCount; ++i) {
    std::size_t slot = firstSlot(kNormalized[i]);
    while (index[slot] != 0) {
      const std::size_t other = index[slot] - 1U;
      if (kNormalized[other] == kNormalized[i] && isOfEngine(other) == isOfEngine(i)) {
        throw "two names match each other";
      }
      slot = (slot + 1) % kIndexSize;
    }
    index[slot] = static_cast<std::uint16_t>(i + 1);
  }
  return index;
}();

// A row that the engine has, or that only streams have.
constexpr const EncodingRow* findListedName(std::string_view normalized, bool ofEngine) {
  for (std::size_t slot = firstSlot(normalized); kIndex[slot] != 0;
       slot = (slot + 1) % kIndexSize) {
    const std::size_t name = kIndex[slot] - 1U;
    if (isOfEngine(name) == ofEngine && kNormalized[name] == normalized) {
      return &kEncodings[kNameList.rowOfName[name]];
    }
  }
  return nullptr;
}

// ---- Lists. ----

// How many of its listed names a row has in streams: all up to the first alias that is a name of a
// row which only streams have. Its preferred name counts, whether it is one or not.
constexpr std::size_t countNamesInStreams(const EncodingRow& row, std::size_t first,
                                          std::size_t end) {
  if (!row.inEngine) return end - first;
  const auto isTaken = [](std::size_t name) {
    return findListedName(kNormalized[name], false) != nullptr;
  };
  if (isTaken(first) != (row.streamName != nullptr)) throw "a row needs a name in streams";
  std::size_t name = first + 1;
  while (name < end && !isTaken(name)) ++name;
  for (std::size_t i = name; i < end; ++i) {
    if (!isTaken(i)) throw "names that streams give to another row stand last";
  }
  return name - first;
}

template <std::size_t kCount>
constexpr std::array<CharsetNames, kCount> makeList(bool ofEngine) {
  std::array<CharsetNames, kCount> list{};
  std::size_t count = 0, name = 0;
  for (const EncodingRow& row : kEncodings) {
    const std::size_t first = name;
    forEachName(row, [&](std::string_view) { ++name; });
    if (name == first || (ofEngine && !row.inEngine)) continue;
    const bool isRenamed = !ofEngine && row.streamName != nullptr;
    const std::size_t names = ofEngine ? name - first : countNamesInStreams(row, first, name);
    list[count++] = {row.number,
                     isRenamed ? row.streamName : row.name,
                     std::span(kNameList.names).subspan(first + 1, names - 1),
                     row.kind,
                     row.description,
                     row.isDispatched,
                     row.isDispatched};
  }
  return list;
}

constexpr auto kEngineNames = makeList<std::ranges::count_if(kEncodings, isNamedInEngine)>(true);
constexpr auto kStreamNames = makeList<std::ranges::count_if(kEncodings, isNamed)>(false);

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
  const EncodingRow* const row = findEncodingRow(number);
  return row != nullptr && isNamed(*row) ? row : nullptr;
}

}  // namespace

std::span<const CharsetNames> engineNames() { return kEngineNames; }
std::span<const CharsetNames> streamNames() { return kStreamNames; }

const EncodingRow* findEngineEncoding(std::string_view name) {
  const NormalizedName normalized(name);
  if (!normalized.fits || normalized.length == 0) return nullptr;
  const EncodingRow* row = findListedName(normalized.view(), true);
  if (row == nullptr) row = findNumberedName(normalized.view());
  return row != nullptr && row->inEngine ? row : nullptr;
}

const EncodingRow* findStreamEncoding(std::string_view name) {
  const NormalizedName normalized(name);
  if (!normalized.fits || normalized.length == 0) return nullptr;
  for (const bool ofEngine : {false, true}) {
    const EncodingRow* const row = findListedName(normalized.view(), ofEngine);
    if (row != nullptr) return row;
  }
  return findNumberedName(normalized.view());
}

bool containsName(std::string_view text, std::string_view part) {
  const NormalizedName whole(text);
  const NormalizedName wanted(part);
  if (!wanted.fits || wanted.length == 0) return false;
  return whole.view().find(wanted.view()) != std::string_view::npos;
}
