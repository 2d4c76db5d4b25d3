#include "encoding/tables/mapped_tables.h"

namespace fast {
namespace {

using Entry = CodeTable::Entry;

// Puts what an entry of a mapping stands for, which is to be a unit or nothing.
template <class Unit>
bool putUnit(Entry entry, Unit& unit) {
  if (entry == CodeTable::kNothing) return true;
  const Entry scalar = entry & ~CodeTable::kKind;
  unit = static_cast<Unit>(scalar);
  return (entry & CodeTable::kKind) == CodeTable::kScalar && scalar != 0 && scalar <= 0xFFFF;
}

// Calls put(unit, code) for everything that is written. False where put is, and for values beyond
// U+FFFF.
template <class Put>
bool forEachCode(const CodeTable& mapping, Put put) {
  if (!mapping.sequences().isEmpty()) return false;
  for (std::uint32_t block = 0; block <= 0x10FF; ++block) {
    if (!mapping.hasBlock(block)) continue;
    for (char32_t scalar = block * 256; scalar <= block * 256 + 255; ++scalar) {
      const std::uint32_t code = mapping.codeOf(scalar);
      if (code != 0 && (scalar > 0xFFFF || !put(scalar, code))) return false;
    }
  }
  for (std::uint32_t i = 0; i < mapping.approximations().size(); ++i) {
    const CodeTable::OneWay& oneWay = mapping.approximations()[i];
    // There are few that have no unit, and no table can say them.
    if (oneWay.scalar <= 0xFFFF && !put(oneWay.scalar, oneWay.code)) return false;
  }
  return true;
}

}  // namespace

bool fillFromMapping(const CodeTable& mapping, SingleByteDecoder& table) {
  if (mapping.root()[0] != CodeTable::kScalar) return false;
  for (unsigned int byte = 1; byte < 256; ++byte) {
    if (!putUnit(mapping.root()[byte], table.units[byte])) return false;
  }
  table.prepare();
  return true;
}

bool fillFromMapping(const CodeTable& mapping, SingleByteEncoder& table) {
  const bool isFlat = forEachCode(mapping, [&](char32_t unit, std::uint32_t code) {
    table.bytes[unit] = static_cast<std::uint8_t>(code);
    return code <= 0xFF;
  });
  table.prepare();
  return isFlat;
}

bool fillFromMapping(const CodeTable& mapping, DoubleByteDecoder& table) {
  if (!mapping.isAscii()) return false;
  for (unsigned int first = 0x80; first < 256; ++first) {
    const Entry entry = mapping.root()[first];
    if ((entry & CodeTable::kKind) != CodeTable::kNode) {
      if (!putUnit(entry, table.singles[first])) return false;
      continue;
    }
    for (unsigned int second = 0; second < 256; ++second) {
      if (!putUnit(mapping.node(entry)[second], table.units[first + 256 * second])) return false;
    }
  }
  table.prepare();
  return true;
}

bool fillFromMapping(const CodeTable& mapping, DoubleByteEncoder& table) {
  const bool isFlat = forEachCode(mapping, [&](char32_t unit, std::uint32_t code) {
    const bool isPair = code > 0xFF;
    table.codes[unit] = static_cast<std::uint16_t>(isPair ? code >> 8 | (code & 0xFF) << 8 : code);
    return code <= 0xFFFF && (!isPair || (code & 0xFF) != 0);
  });
  table.prepare();
  return isFlat;
}

}  // namespace fast
