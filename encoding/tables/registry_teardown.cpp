#include "encoding/encoding_convert.h"
#include "encoding/fast/derived_tables.h"
#include "encoding/tables/code_pages.h"
#include "support/japanese.h"

namespace {

template <class Table>
void releaseTable(std::atomic<Table*>& slot) {
  delete slot.exchange(nullptr, std::memory_order_acq_rel);
}

}  // namespace

void EncodingConvert::cleanupMemory() {
  Japanese::releaseLastBlock();
  fast::releaseDerivedTables();
  for (const CodePageRow& row : codePageRows()) {
    if (!row.isReleased) continue;
    TableSlots& slots = tableSlots(row);
    releaseTable(slots.fromUnicode);
    releaseTable(slots.singleToUnicode);
    releaseTable(slots.multiToUnicode);
  }
}
