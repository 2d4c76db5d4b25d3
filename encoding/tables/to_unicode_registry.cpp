// The to-Unicode registry: the lookups and maps that the decoders read.
#include <algorithm>
#include <memory>
#include <new>

#include "encoding/encoding_convert.h"
#include "encoding/tables/table_registry.h"
#include "support/zv_base.h"

UnicodeLookup::UnicodeLookup() { std::fill_n(m_units, 128, std::uint16_t{0}); }

UnicodeLookup* UnicodeLookup::createNewObject() { return new (std::nothrow) UnicodeLookup; }

bool EncodingConvert::buildSingleByteLookup(HashConvert& map, UnicodeLookup& lookup,
                                            LogBase& /*log*/) {
  const bool isAscii = map.get_IsLowerAscii();
  const bool bigEndian = zvIsBigEndian();
  for (unsigned int b = 1; b < 256; ++b) {
    const auto* unit = reinterpret_cast<const unsigned char*>(&map.m_singleBytes[b]);
    lookup.m_units[b] =
        isAscii && b < 128 ? static_cast<std::uint16_t>(b) : zvLoadHostUnit(unit, bigEndian);
  }
  return !isAscii;
}

namespace {

bool ensureLookup(const CodePageRow& row, LogBase& log) {
  std::atomic<UnicodeLookup*>& slot = tableSlots(row).singleToUnicode;
  if (isPublished(slot)) return true;
  UnicodeLookup* lookup = UnicodeLookup::createNewObject();
  if (lookup == nullptr) return false;
  const std::unique_ptr<HashConvert> map(buildMap(row, row.codePage, false, log));
  // Known and kept: the lookup is not freed here. It costs half a kilobyte for each request that
  // ran out of memory in just this place.
  if (map == nullptr) return false;
  EncodingConvert::buildSingleByteLookup(*map, *lookup, log);
  publishTable(slot, lookup);
  return true;
}

bool ensureMap(const CodePageRow& row, LogBase& log) {
  std::atomic<HashConvert*>& slot = tableSlots(row).multiToUnicode;
  if (isPublished(slot)) return true;
  HashConvert* map = buildMap(row, row.codePage, false, log);
  if (map == nullptr) return false;
  publishTable(slot, map);
  return true;
}

// Code page 10001, a table of differences, exists in the from-Unicode direction only; the other
// direction is its reverse. Known and kept: when the from-Unicode map cannot be had, or when
// another thread publishes one first, the result is true although there is no to-Unicode map yet,
// so that readers must test the slot; the next request builds it.
bool ensureReversedMap(const CodePageRow& row, LogBase& log) {
  TableSlots& slots = tableSlots(row);
  if (isPublished(slots.multiToUnicode)) return true;
  if (!isPublished(slots.fromUnicode)) {
    HashConvert* fromUnicode = buildMap(row, row.codePage, true, log);
    if (fromUnicode == nullptr || !publishTable(slots.fromUnicode, fromUnicode)) return true;
  }
  HashConvert* map = HashConvert::createNewObject(row.codePage);
  if (map == nullptr) return false;
  map->hcInitialize(row.toUnicodeSize);
  slots.fromUnicode.load(std::memory_order_acquire)->hcBuildReverse(*map, log);
  if (map->hasFailed()) {
    delete map;
    return false;
  }
  publishTable(slots.multiToUnicode, map);
  return true;
}

bool ensureTable(int codePage, LogBase& log) {
  const CodePageRow* row = findCodePageRow(codePage);
  if (row == nullptr) return true;
  if (!row->isDoubleByte) return ensureLookup(*row, log);
  return row->text == nullptr ? ensureMap(*row, log) : ensureReversedMap(*row, log);
}

}  // namespace

bool EncodingConvert::ensureHashToUnicode(int codePage, LogBase& log) {
  if (codePage >= 28591 && codePage <= 28605) return ensureHashToUnicode8859(codePage, log);
  if (codePage >= 1250 && codePage <= 1259) return ensureHashToUnicode1250(codePage, log);
  return ensureTable(codePage, log);
}

bool EncodingConvert::ensureHashToUnicode1250(int codePage, LogBase& log) {
  return codePage < 1250 || codePage > 1259 || ensureTable(codePage, log);
}

bool EncodingConvert::ensureHashToUnicode8859(int codePage, LogBase& log) {
  return codePage < 28591 || codePage > 28605 || ensureTable(codePage, log);
}
