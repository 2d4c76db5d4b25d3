// What the two table registries share: building a map from its row and publishing a table.
#ifndef ENCODING_TABLES_TABLE_REGISTRY_H_
#define ENCODING_TABLES_TABLE_REGISTRY_H_

#include <atomic>

#include "encoding/tables/code_pages.h"
#include "support/hash_convert.h"
#include "support/log_base.h"

// A new map of the row's table text or texts in one direction, labelled codePage; the caller owns
// it. Null when memory is short, also when it ran out half way: an incomplete table would be taken
// for the whole one until teardown. A text that does not decode gives a map without entries.
HashConvert* buildMap(const CodePageRow& row, int codePage, bool fromUnicode, LogBase& log);

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

// Whether a slot's table is there to be used.
template <class Table>
bool isPublished(const std::atomic<Table*>& slot) {
  return slot.load(std::memory_order_acquire) != nullptr;
}

#endif  // ENCODING_TABLES_TABLE_REGISTRY_H_
