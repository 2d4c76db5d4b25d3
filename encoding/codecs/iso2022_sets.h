// A character set of ISO 2022 with its table, and the runs of text that are copied by it.
#ifndef ENCODING_CODECS_ISO2022_SETS_H_
#define ENCODING_CODECS_ISO2022_SETS_H_

#include "encoding/codecs/iso2022.h"
#include "encoding/codecs/unit_text.h"

namespace {  // NOLINT(cert-dcl59-cpp): internal linkage, see lanes.h

constexpr GraphicSet kAsciiSet = {nullptr, 1, false, 0, true};

// Of the 7 bits of the bytes of a character; and the least that these are.
constexpr std::uint32_t maskOf(const GraphicSet& set) { return set.length == 2 ? 0x7F7F : 0x7F; }
constexpr std::uint32_t leastOf(const GraphicSet& set) {
  return set.length == 2 ? 0x2121 : set.has96 ? 0x20 : 0x21;
}
// A code of the table of a set, in 7 bits; 0 where it is none of the set.
constexpr std::uint32_t codeIn(const GraphicSet& set, std::uint32_t code) {
  const std::uint32_t mask = maskOf(set), own = code & mask;
  return (code & ~mask) == set.bits && own >= leastOf(set) ? own : 0;
}

struct OpenSet {
  const GraphicSet* set = nullptr;  // null: unknown
  const CodeTable* table = nullptr;
  CodeTable::Entry node = CodeTable::kNode;  // of the first byte of a character
  unsigned char high = 0;                    // the high bit of its bytes in the table
  std::uint32_t mask = 0;                    // maskOf() the set
  std::uint32_t least = 0;                   // leastOf() it

  OpenSet() = default;
  // Set to true is isOutOfMemory when the table cannot be made; the set is unknown then.
  OpenSet(const GraphicSet* which, bool& isOutOfMemory) : set(which) {
    if (set == nullptr || set->mapping == nullptr) return;
    table = CodeTable::open(*set->mapping);
    high = static_cast<unsigned char>(set->bits & 0x80);
    mask = maskOf(*set);
    least = leastOf(*set);
    if (table == nullptr) {
      isOutOfMemory = true;
      set = nullptr;
      return;
    }
    // Bytes that stand in front of those of the character.
    for (unsigned int shift = 24; shift >= 8u * set->length; shift -= 8) {
      const std::uint32_t byte = set->bits >> shift & 0xFF;
      if (byte != 0) node = table->node(node)[byte];
    }
  }

  bool isAscii() const { return set != nullptr && set->mapping == nullptr; }
  bool isPairs() const { return set != nullptr && set->length == 2; }
  bool isGraphic(unsigned char byte) const {
    return (byte > 0x20 && byte < 0x7F) || (set != nullptr && set->has96 && byte >= 0x20);
  }
  // The same as codeIn() of the set.
  std::uint32_t codeIn(std::uint32_t code) const {
    const std::uint32_t own = code & mask;
    return (code & ~mask) == set->bits && own >= least ? own : 0;
  }
  // What the table has for bytes, of which the high bits do not count; kNothing or a node where
  // that is nothing.
  CodeTable::Entry entryOf(const unsigned char* bytes, unsigned int length) const {
    CodeTable::Entry entry = node;
    for (unsigned int i = 0; i < length; ++i) {
      if ((entry & CodeTable::kKind) != CodeTable::kNode) return CodeTable::kNothing;
      entry = table->node(entry)[(bytes[i] & 0x7F) | high];
    }
    return entry;
  }
};

// Characters of two bytes that are one unit.
inline void copyPairs(UnitReader& reader, const OpenSet& set, const unsigned char* stop) {
  const CodeTable& table = *set.table;
  const bool isFlat = set.high != 0 && set.node == CodeTable::kNode;
  if (const auto* const pairs = isFlat ? table.pairDecoder() : nullptr) {
    return reader.copyPairs(stop, *pairs);
  }
  const CodeTable::Entry* const rows = table.node(set.node);
  const unsigned char high = set.high;
  const unsigned char* in = reader.p;
  unsigned char* to = reader.dest;
  for (; in < stop && reader.end - in > 1; in += 2, to += 2) {
    if (in[0] <= 0x20 || in[0] >= 0x7F || in[1] <= 0x20 || in[1] >= 0x7F) break;
    CodeTable::Entry entry = rows[in[0] | high];
    if ((entry & CodeTable::kKind) != CodeTable::kNode) break;
    entry = table.node(entry)[in[1] | high];
    if (entry - CodeTable::kScalar > 0xFFFF) break;
    storeLow(to, static_cast<std::uint16_t>(entry));
  }
  reader.p = in;
  reader.dest = to;
}

// Units that a set of pairs has, up to one for which `stops` says so.
template <class Stops>
inline void copyPairs(UnitWriter& writer, const OpenSet& set, const unsigned char* stop,
                      const Stops& stops) {
  const CodeTable::Codes codes = set.table->codes();
  const std::uint32_t bits = set.set->bits, mask = set.mask, least = set.least;
  const unsigned char* in = writer.p;
  unsigned char* to = writer.dest;
  // Of the codes of a set, and of no others, only bits of the mask are left.
  const auto ownAt = [=](const unsigned char* at) { return codes.loadAt(at) ^ bits; };
  constexpr std::uint64_t kEach = 0x0001000100010001;
  for (; stop - in >= 8; in += 8, to += 8) {
    std::uint64_t four = 0;
    std::uint32_t all = 0;
    bool isStopped = false;
    for (unsigned int i = 0; i < 8; i += 2) {
      const std::uint32_t own = ownAt(in + i);
      all |= own;
      four = four << 16 | own;
      isStopped |= stops(loadLow<std::uint16_t>(in + i));
    }
    const std::uint64_t enough = four + (0x8000 - least) * kEach;
    if ((all & ~mask) != 0 || (~enough & 0x8000 * kEach) != 0 || isStopped) break;
    storeBig(to, four);
  }
  for (; stop - in >= 2; in += 2, to += 2) {
    const std::uint32_t own = ownAt(in);
    if ((own & ~mask) != 0 || own < least || stops(loadLow<std::uint16_t>(in))) break;
    to[0] = static_cast<unsigned char>(own >> 8);
    to[1] = static_cast<unsigned char>(own);
  }
  writer.p = in;
  writer.dest = to;
}

}  // namespace

#endif  // ENCODING_CODECS_ISO2022_SETS_H_
