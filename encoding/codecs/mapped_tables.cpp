#include "encoding/codecs/mapped_tables.h"

namespace fast {
namespace {

using Entry = CodeTable::Entry;

// Puts what an entry stands for, if that is a unit. False when it is something else.
bool putUnit(Entry entry, std::uint16_t& unit) {
  if (entry == CodeTable::kNothing) return true;
  if (entry <= CodeTable::kScalar || entry > (CodeTable::kScalar | 0xFFFF)) return false;
  unit = static_cast<std::uint16_t>(entry);
  return true;
}

bool putCode(char32_t unit, std::uint32_t code, SingleByteEncoder& table) {
  if (code > 0xFF) return false;
  table.bytes[unit] = static_cast<std::uint8_t>(code);
  return true;
}
bool putCode(char32_t unit, std::uint32_t code, DoubleByteEncoder& table) {
  const bool isPair = code > 0xFF;
  if (code > 0xFFFF || (isPair && (code & 0xFF) == 0)) return false;
  table.codes[unit] = static_cast<std::uint16_t>(isPair ? code >> 8 | (code & 0xFF) << 8 : code);
  return true;
}

template <class Table>
bool fillTwoWays(const CodeTable& mapping, Table& table) {
  bool isAll = mapping.sequences().isEmpty();
  for (std::uint32_t block = 0; block <= 0x10FF; ++block) {
    if (!mapping.hasBlock(block)) continue;
    for (char32_t scalar = block * 256; scalar <= block * 256 + 255; ++scalar) {
      const std::uint32_t code = mapping.loadCode(scalar);
      if (code != 0 && (scalar > 0xFFFF || !putCode(scalar, code, table))) isAll = false;
    }
  }
  return isAll;
}

template <class Table>
bool fill(const CodeTable& mapping, Table& table) {
  bool isAll = fillTwoWays(mapping, table);
  for (std::uint32_t i = 0; i < mapping.approximations().size(); ++i) {
    const CodeTable::OneWay& oneWay = mapping.approximations()[i];
    // There are few that have no unit, and no table can say them.
    if (oneWay.scalar <= 0xFFFF && !putCode(oneWay.scalar, oneWay.code, table)) isAll = false;
  }
  table.prepare();
  return isAll;
}

}  // namespace

bool fillFromMapping(const CodeTable& mapping, SingleByteDecoder& table) {
  bool isAll = mapping.root()[0] == CodeTable::kScalar;
  for (unsigned int byte = 1; byte < 256; ++byte) {
    isAll &= putUnit(mapping.root()[byte], table.units[byte]);
  }
  table.prepare();
  return isAll;
}

bool fillFromMapping(const CodeTable& mapping, DoubleByteDecoder& table) {
  bool isAll = mapping.isAscii();
  for (unsigned int first = 0; first < 256; ++first) {
    const Entry entry = mapping.root()[first];
    if ((entry & CodeTable::kKind) != CodeTable::kNode) {
      if (first >= 0x80) isAll &= putUnit(entry, table.singles[first]);
      continue;
    }
    for (unsigned int second = 0; second < 256; ++second) {
      isAll &= putUnit(mapping.node(entry)[second], table.units[first + 256 * second]);
    }
  }
  if (mapping.isAscii()) table.prepare();
  return isAll;
}

bool fillFromMapping(const CodeTable& mapping, SingleByteEncoder& table) {
  return fill(mapping, table);
}
bool fillFromMapping(const CodeTable& mapping, DoubleByteEncoder& table) {
  return fill(mapping, table);
}

void fillExactly(const CodeTable& mapping, SingleByteEncoder& table) {
  fillTwoWays(mapping, table);
  table.prepare();
}
void fillExactly(const CodeTable& mapping, DoubleByteEncoder& table) {
  fillTwoWays(mapping, table);
  table.prepare();
}

}  // namespace fast
