#include "encoding/tables/table_registry.h"

#include <memory>
#include <utility>

#include "encoding/codecs/code_table.h"
#include "encoding/tables/table_builder.h"
#include "support/string_buffer.h"

namespace {

constinit TableSlots g_slots[kMaxTableSlots] = {};

// Puts a finished table into its slot, from where any thread may read it, unless another thread was
// first: then the table is destroyed and false returned. Takes the table either way.
template <class Table>
bool publishTable(std::atomic<Table*>& slot, Table* table) {
  Table* expected = nullptr;
  if (slot.compare_exchange_strong(expected, table, std::memory_order_release,
                                   std::memory_order_relaxed)) {
    return true;
  }
  delete table;
  return false;
}

template <class Table>
bool isPublished(const std::atomic<Table*>& slot) {
  return slot.load(std::memory_order_acquire) != nullptr;
}

template <class Table>
void releaseTable(std::atomic<Table*>& slot) {
  delete slot.exchange(nullptr, std::memory_order_acq_rel);
}

// A new map of the row's table text or texts in one direction; the caller owns it. Null when memory
// is short, also when it ran out half way: an incomplete table would be taken for the whole one
// until teardown. A text that does not decode gives a map without entries.
HashConvert* buildMap(const EncodingRow& row, bool fromUnicode, LogBase& log,
                      DifferenceKeys keys = DifferenceKeys::kLowByteFirst) {
  HashConvert* map = HashConvert::createNewObject(row.number);
  if (map == nullptr) return nullptr;
  map->hcInitialize(fromUnicode ? row.fromUnicodeSize : row.toUnicodeSize);
  if (row.appendText != nullptr) {
    StringBuffer text;
    row.appendText(text);
    if (text.hasFailed()) map->latchFailure();
    buildHash(text.getString(), *map, fromUnicode, log);
  }
  if (row.text != nullptr) buildHash(row.text, *map, fromUnicode, log, keys);
  if (map->hasFailed()) delete std::exchange(map, nullptr);
  return map;
}

bool ensureMap(std::atomic<HashConvert*>& slot, const EncodingRow& row, bool fromUnicode,
               LogBase& log) {
  if (isPublished(slot)) return true;
  HashConvert* map = buildMap(row, fromUnicode, log);
  if (map != nullptr) publishTable(slot, map);
  return map != nullptr;
}

bool ensureLookup(const EncodingRow& row, LogBase& log) {
  std::atomic<UnicodeLookup*>& slot = tableSlots(row).singleToUnicode;
  if (isPublished(slot)) return true;
  UnicodeLookup* lookup = UnicodeLookup::createNewObject();
  if (lookup == nullptr) return false;
  const std::unique_ptr<HashConvert> map(buildMap(row, false, log));
  // Known and kept: the lookup is not freed here. It costs half a kilobyte for each request that
  // ran out of memory in just this place.
  if (map == nullptr) return false;
  buildSingleByteLookup(*map, *lookup);
  publishTable(slot, lookup);
  return true;
}

// Code page 10001, a table of differences, exists in the from-Unicode direction only; the other
// direction is its reverse. Known and kept: when the from-Unicode map cannot be had, or when
// another thread publishes one first, the result is true although there is no to-Unicode map yet,
// so that readers must test the slot; the next request builds it.
bool ensureReversedMap(const EncodingRow& row, LogBase& log) {
  TableSlots& slots = tableSlots(row);
  if (isPublished(slots.multiToUnicode)) return true;
  if (!isPublished(slots.fromUnicode)) {
    HashConvert* fromUnicode = buildMap(row, true, log);
    if (fromUnicode == nullptr || !publishTable(slots.fromUnicode, fromUnicode)) return true;
  }
  HashConvert* map = HashConvert::createNewObject(row.number);
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

}  // namespace

TableSlots& tableSlots(const EncodingRow& row) { return g_slots[row.slot]; }

bool ensureToUnicode(const EncodingRow& row, LogBase& log) {
  if (!hasTable(row)) return true;
  if (row.mapping != nullptr) return CodeTable::open(*row.mapping) != nullptr;
  if (row.form == EncodingForm::kSingleByte) return ensureLookup(row, log);
  if (row.text != nullptr) return ensureReversedMap(row, log);
  return ensureMap(tableSlots(row).multiToUnicode, row, false, log);
}

bool ensureFromUnicode(const EncodingRow& row, LogBase& log) {
  if (!hasTable(row)) return true;
  if (row.mapping != nullptr) return CodeTable::open(*row.mapping) != nullptr;
  return ensureMap(tableSlots(row).fromUnicode, row, true, log);
}

bool ensureBestFit(const EncodingRow& row, LogBase& log) {
  if (row.bestFit == nullptr) return true;
  std::atomic<HashConvert*>& slot = tableSlots(row).bestFit;
  if (isPublished(slot)) return true;
  HashConvert* map = HashConvert::createNewObject(row.number);
  if (map == nullptr) return false;
  constexpr int kBestFitSize = 499;
  map->hcInitialize(kBestFitSize);
  buildBestFit(row.bestFit, *map, log);
  if (map->hasFailed()) {
    delete map;
    return false;
  }
  publishTable(slot, map);
  return true;
}

std::unique_ptr<HashConvert> buildMeantMap(const EncodingRow& row, bool fromUnicode) {
  LogBase silent;
  std::unique_ptr<HashConvert> map(buildMap(row, true, silent, DifferenceKeys::kHostOrder));
  if (fromUnicode || map == nullptr) return map;
  std::unique_ptr<HashConvert> reverse(HashConvert::createNewObject(row.number));
  if (reverse == nullptr) return nullptr;
  reverse->hcInitialize(row.toUnicodeSize);
  map->hcBuildReverse(*reverse, silent);
  if (reverse->hasFailed()) reverse.reset();
  return reverse;
}

void releaseTables() {
  for (const EncodingRow& row : encodingRows()) {
    if (!hasTableSlots(row) || !row.isReleased) continue;
    TableSlots& slots = tableSlots(row);
    releaseTable(slots.fromUnicode);
    releaseTable(slots.singleToUnicode);
    releaseTable(slots.multiToUnicode);
    releaseTable(slots.bestFit);
  }
}
