#include "encoding/codecs/cut_rules.h"

#include <algorithm>
#include <string_view>

#include "encoding/codecs/accents.h"
#include "encoding/codecs/ebcdic_shifts.h"
#include "encoding/codecs/escape_sequence.h"
#include "encoding/codecs/iso2022.h"
#include "encoding/codecs/multi_byte.h"

namespace {

constexpr std::size_t kNone = CutWindow::kNone;
using Entry = CodeTable::Entry;

constexpr bool isLineEnd(unsigned char byte) { return byte == '\n' || byte == '\r'; }
constexpr bool isNode(Entry entry) { return (entry & CodeTable::kKind) == CodeTable::kNode; }

// The first place of a window that allows() and the window take.
template <typename Allows>
std::size_t firstPlace(const CutWindow& window, Allows allows) {
  for (std::size_t place = window.offset; place < window.size; ++place) {
    if (allows(place) && window.takes(place)) return place;
  }
  return kNone;
}

// The first place at which a state is the initial one. step() is told of each byte, or run of bytes
// that stays together, by its place; it says how long that is, and isInitial() how things are
// behind it.
template <typename State>
std::size_t firstInitial(const CutWindow& window, State state) {
  for (std::size_t place = 0; place < window.size;) {
    if (state.isInitial() && window.takes(place)) return place;
    place += state.step(window.data + place, window.size - place);
  }
  return kNone;
}

bool beginsWith(const unsigned char* text, std::size_t size, std::string_view what) {
  return size >= what.size() &&
         std::equal(what.begin(), what.end(), text,
                    [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

// Adds the codes below a node, whose own bytes are before.
void addNode(const CodeTable& table, Entry node, std::array<unsigned char, 4>& before,
             unsigned int depth, CutBytes& bytes) {
  const Entry* const entries = table.node(node);
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const Entry entry = entries[byte];
    before[depth] = static_cast<unsigned char>(byte);
    if (entry == CodeTable::kNothing) continue;
    if (isNode(entry)) {
      addNode(table, entry, before, depth + 1, bytes);
      continue;
    }
    const bool isCounted = entry == CodeTable::kCounted;
    const unsigned int count = isCounted ? CodeTable::kMaxBytes : depth + 1;
    for (unsigned int i = 0; i <= depth; ++i) bytes.add(before[i], count, i);
    if (!isCounted) continue;
    bytes.addRange(0x81, 0xFE, count, 2);
    bytes.addRange('0', '9', count, 3);
  }
}

}  // namespace

// ---- Encodings without a state. ----

void CutBytes::add(const CodeTable& table) {
  std::array<unsigned char, 4> before{};
  addNode(table, CodeTable::kNode, before, 0, *this);
}

std::size_t CutBytes::find(const CutWindow& window) const {
  std::uint32_t possible = window.isAtCut ? kFirst : kAll;
  for (std::size_t place = 0; place < window.size; ++place) {
    const std::uint32_t places = possible & m_places[window.data[place]];
    if (places != 0 && (places & ~std::uint32_t{kFirst}) == 0 && window.takes(place)) return place;
    const std::uint32_t next = (places & ~std::uint32_t{kLast}) << 1;
    possible = next | ((places & kLast) != 0 ? kFirst : 0u);
    if (possible == 0) possible = kAll;  // no text: what follows is to be found out anew
  }
  return kNone;
}

std::size_t cutAnywhere(const CutWindow& window) {
  return firstPlace(window, [](std::size_t) { return true; });
}

std::size_t cutAligned(const CutWindow& window, unsigned int unitSize) {
  return firstPlace(window,
                    [&](std::size_t place) { return (window.position + place) % unitSize == 0; });
}

std::size_t cutUtf8(const void*, const CutWindow& window) {
  static const CutBytes bytes = [] {
    CutBytes made;
    made.addRange(0x00, 0x7F, 1, 0);
    const struct {
      unsigned int first, last, count;
    } kLeads[] = {{0xC0, 0xDF, 2}, {0xE0, 0xEF, 3}, {0xF0, 0xF7, 4}};
    for (const auto& lead : kLeads) {
      made.addRange(lead.first, lead.last, lead.count, 0);
      for (unsigned int i = 1; i < lead.count; ++i) made.addRange(0x80, 0xBF, lead.count, i);
    }
    return made;
  }();
  return bytes.find(window);
}

std::size_t cutMultiByte(const void* parameters, const CutWindow& window) {
  const CodeTable* const table = CodeTable::open(*static_cast<const Mapping*>(parameters));
  if (table == nullptr) return kNone;
  CutBytes bytes;
  bytes.add(*table);
  return bytes.find(window);
}

std::size_t cutRuled(const void* parameters, const CutWindow& window) {
  return cutMultiByte(&static_cast<const RuledMapping*>(parameters)->mapping, window);
}

std::size_t cutAccents(const void* parameters, const CutWindow& window) {
  const auto& scheme = *static_cast<const AccentScheme*>(parameters);
  const CodeTable* const table = CodeTable::open(*scheme.mapping);
  if (table == nullptr) return kNone;
  const auto isAccent = [&](unsigned char byte) { return isNode(table->root()[byte]); };
  return firstPlace(window, [&](std::size_t place) {
    if (scheme.isBehind) return !isAccent(window.data[place]);
    return place != 0 && !isAccent(window.data[place - 1]);
  });
}

std::size_t cutTscii(const void*, const CutWindow& window) {
  return firstPlace(window, [&](std::size_t place) { return window.data[place] < 0x80; });
}

namespace {
constexpr unsigned char kGsmEscape = 0x1B, kGsmReturn = 0x0D;
}  // namespace

std::size_t cutGsm(const void*, const CutWindow& window) {
  return firstPlace(window, [&](std::size_t place) {
    return place != 0 && window.data[place - 1] != kGsmEscape;
  });
}

// Seven bytes are eight septets. A return that ends a text is none of it.
std::size_t cutPackedGsm(const void*, const CutWindow& window) {
  return firstPlace(window, [&](std::size_t place) {
    if (place == 0 || (window.position + place) % 7 != 0) return false;
    const unsigned char last = window.data[place - 1] >> 1;
    return last != kGsmEscape && last != kGsmReturn;
  });
}

// ---- Encodings with a state. ----

namespace {

// ISO-2022-JP of mail: ASCII begins behind its designation and with each line.
struct JpState {
  bool isAscii;
  bool isInitial() const { return isAscii; }
  std::size_t step(const unsigned char* at, std::size_t left) {
    constexpr std::size_t kLength = 3;
    if (*at == kEscape) {
      isAscii = beginsWith(at, left, "\x1B(B") || beginsWith(at, left, "\x1B(J");
      return isAscii ? kLength : 1;
    }
    if (isLineEnd(*at)) isAscii = true;
    if (*at == kShiftOut) isAscii = false;
    return 1;
  }
};

// And of the web: with its designation alone, which says nothing if another one follows at once.
struct WebJpState {
  bool isAscii;
  bool isBehindEscape = false;
  bool isInitial() const { return isAscii && !isBehindEscape; }
  std::size_t step(const unsigned char* at, std::size_t left) {
    constexpr std::size_t kLength = 3;
    isBehindEscape = *at == kEscape;
    if (!isBehindEscape) return 1;
    isAscii = beginsWith(at, left, "\x1B(B");
    return isAscii ? kLength : 1;
  }
};

// The designation stands once in a text and is not needed for reading.
struct KrState {
  bool isAscii;
  bool isInitial() const { return isAscii; }
  std::size_t step(const unsigned char* at, std::size_t left) {
    constexpr std::string_view kHeader = "\x1B$)C";
    if (beginsWith(at, left, kHeader)) return kHeader.size();
    if (*at == kShiftIn || isLineEnd(*at)) {
      isAscii = true;
    } else if (*at == kShiftOut || *at == kEscape || *at >= 0x80) {
      isAscii = false;
    }
    return 1;
  }
};

// Where the text may be among pairs, any byte may be half of one, also that of a tilde, but for
// those of a line end.
struct HzState {
  enum { kUnknown, kAscii, kPairs } mode;
  bool isInitial() const { return mode == kAscii; }
  std::size_t step(const unsigned char* at, std::size_t left) {
    if (*at == '\n' || (*at == '\r' && left > 1 && at[1] != '\n')) {
      mode = kAscii;
      return 1;
    }
    if (mode == kUnknown || *at == '\r') return 1;
    const bool isEscape = *at == '~';
    if (mode == kPairs) {
      if (isEscape) mode = beginsWith(at, left, "~}") ? kAscii : kUnknown;
      return std::min<std::size_t>(2, left);
    }
    if (!isEscape) return 1;
    if (beginsWith(at, left, "~{")) mode = kPairs;
    return std::min<std::size_t>(beginsWith(at, left, "~\r\n") ? 3 : 2, left);
  }
};

// G0 is ASCII and the other places are as at the beginning.
struct Iso2022State {
  const Iso2022& scheme;
  bool isAscii;
  bool hasNoOthers;
  // Whether the end of a line may leave something other than ASCII in G0: another set of letters.
  bool mayBeOther = false, mayHaveOthers = false;

  Iso2022State(const Iso2022& its, bool isAtCut)
      : scheme(its), isAscii(isAtCut), hasNoOthers(isAtCut) {
    bool hasG0 = false;
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      const Designation& designation = scheme.designations[i];
      const bool isG0 = designation.place == 0;
      hasG0 = hasG0 || isG0;
      mayHaveOthers = mayHaveOthers || !isG0;
      mayBeOther = mayBeOther || (isG0 && designation.set->isLatin && designation.set->mapping);
    }
    isAscii = isAscii || !hasG0;
    hasNoOthers = hasNoOthers || !mayHaveOthers;
  }
  bool isInitial() const { return isAscii && hasNoOthers; }

  std::size_t step(const unsigned char* at, std::size_t left) {
    if (*at == kEscape) return designate(at, left);
    if (scheme.right == nullptr && isLineEnd(*at)) {
      if (*at == '\n') hasNoOthers = true;
      isAscii = isAscii || !mayBeOther;
    }
    if (scheme.hasShifts && *at == kShiftOut) hasNoOthers = false;
    return 1;
  }
  std::size_t designate(const unsigned char* at, std::size_t left) {
    for (std::size_t i = 0; i < scheme.designationCount; ++i) {
      const Designation& designation = scheme.designations[i];
      if (!beginsWith(at + 1, left - 1, designation.escape)) continue;
      const GraphicSet& set = *designation.set;
      if (designation.place == 0) {
        isAscii = set.mapping == nullptr;
      } else {
        hasNoOthers = &set == scheme.right;
      }
      return 1 + designation.escape.size();
    }
    isAscii = false;
    hasNoOthers = !mayHaveOthers;
    return 1;
  }
};

// The sets of MARC-8 are chosen by escapes alone. A mark stands in front of its letter.
struct Marc8State {
  bool isAscii, isAnsel;
  bool isBehindMark = false;
  bool isInitial() const { return isAscii && isAnsel && !isBehindMark; }
  std::size_t step(const unsigned char* at, std::size_t left) {
    constexpr unsigned char kFirstMark = 0xE0;
    if (*at != kEscape) {
      isBehindMark = *at >= kFirstMark;
      return 1;
    }
    std::size_t i = 1;
    const auto is = [&](std::string_view bytes) {
      return i < left && bytes.find(static_cast<char>(at[i])) != std::string_view::npos;
    };
    if (is("sgbp")) {
      isAscii = is("s");
      return 2;
    }
    const bool isMulti = is("$");
    if (isMulti) ++i;
    const bool isG1 = is(")-");
    if (is("()-,")) ++i;
    if (is("!")) ++i;
    (isG1 ? isAnsel : isAscii) = !isMulti && is(isG1 ? "E" : "B");
    return std::min(i + 1, left);
  }
};

template <unsigned char shift, unsigned char lastDigit>
std::size_t cutBehindRuns(const CutWindow& window) {
  const auto endsRun = [](unsigned char byte) {
    const bool isDigit = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
                         (byte >= '0' && byte <= '9') || byte == '+' || byte == lastDigit;
    return !isDigit && byte != shift;
  };
  return firstPlace(
      window, [&](std::size_t place) { return place != 0 && endsRun(window.data[place - 1]); });
}

}  // namespace

// Single bytes behind SI and behind a line end, which ends the pairs in any case; and in front of
// an SO, as far as there is no other shift.
std::size_t cutShifted(const void* parameters, const CutWindow& window) {
  const auto& sets = *static_cast<const ShiftedSets*>(parameters);
  const CodeTable* const singles = CodeTable::open(*sets.singles);
  if (singles == nullptr) return kNone;
  std::array<bool, 256> isEnd{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const Entry entry = singles->root()[byte];
    for (const unsigned int scalar : {0x0Au, 0x0Du, 0x85u}) {
      isEnd[byte] = isEnd[byte] || entry == (CodeTable::kScalar | scalar);
    }
  }
  const unsigned char* const end = window.data + window.size;
  const unsigned char* const first = std::find_if(window.data, end, [&](unsigned char byte) {
    return byte == kShiftOut || byte == kShiftIn || isEnd[byte];
  });
  struct State {
    const std::array<bool, 256>& isEnd;
    bool isSingle;
    bool isInitial() const { return isSingle; }
    std::size_t step(const unsigned char* at, std::size_t) {
      if (*at == kShiftIn || isEnd[*at]) isSingle = true;
      if (*at == kShiftOut) isSingle = false;
      return 1;
    }
  };
  return firstInitial(window, State{isEnd, window.isAtCut || (first != end && *first != kShiftIn)});
}

std::size_t cutIso2022(const void* parameters, const CutWindow& window) {
  return firstInitial(window,
                      Iso2022State(*static_cast<const Iso2022*>(parameters), window.isAtCut));
}
std::size_t cutIso2022Jp(const void*, const CutWindow& window) {
  return firstInitial(window, JpState{window.isAtCut});
}
std::size_t cutIso2022Kr(const void*, const CutWindow& window) {
  return firstInitial(window, KrState{window.isAtCut});
}
std::size_t cutWebIso2022Jp(const void*, const CutWindow& window) {
  return firstInitial(window, WebJpState{window.isAtCut});
}
std::size_t cutHz(const void*, const CutWindow& window) {
  return firstInitial(window, HzState{window.isAtCut ? HzState::kAscii : HzState::kUnknown});
}
std::size_t cutMarc8(const void*, const CutWindow& window) {
  return firstInitial(window, Marc8State{window.isAtCut, window.isAtCut});
}

std::size_t cutUtf7(const void*, const CutWindow& window) {
  return cutBehindRuns<'+', '/'>(window);
}
std::size_t cutImapUtf7(const void*, const CutWindow& window) {
  return cutBehindRuns<'&', ','>(window);
}

// Controls that are never part of a longer form set everything back.
std::size_t cutBocu1(const void*, const CutWindow& window) {
  return firstPlace(window, [&](std::size_t place) {
    if (place == 0) return false;
    const unsigned char byte = window.data[place - 1];
    return byte == 0 || (byte >= 0x07 && byte <= 0x0F) || byte == 0x1A || byte == 0x1B;
  });
}

std::size_t cutIscii(const void*, const CutWindow& window) {
  return firstPlace(
      window, [&](std::size_t place) { return place != 0 && isLineEnd(window.data[place - 1]); });
}
