// The from-Unicode registry: the maps that the encoder looks units up in.
#include "encoding/encoding_convert.h"
#include "encoding/tables/table_registry.h"

namespace {

// Whether ensureHashFromUnicode holds the row itself: the most used code pages. The rest belong to
// ensureHashFromUnicode2. Nothing else depends on the division.
bool isHeldByFirst(const CodePageRow& row) {
  const int codePage = row.codePage;
  return row.isDoubleByte || codePage == 37 || codePage == 437 ||
         (codePage >= 1250 && codePage <= 1258) || (codePage >= 28591 && codePage <= 28605);
}

bool ensureMap(const CodePageRow& row, LogBase& log) {
  std::atomic<HashConvert*>& slot = tableSlots(row).fromUnicode;
  if (isPublished(slot)) return true;
  HashConvert* map = buildMap(row, row.codePage, true, log);
  if (map == nullptr) return false;
  publishTable(slot, map);
  return true;
}

}  // namespace

bool EncodingConvert::ensureHashFromUnicode(int codePage, LogBase& log) {
  const CodePageRow* row = findCodePageRow(codePage);
  if (row == nullptr || !isHeldByFirst(*row)) return ensureHashFromUnicode2(codePage, log);
  return ensureMap(*row, log);
}

bool EncodingConvert::ensureHashFromUnicode2(int codePage, LogBase& log) {
  const CodePageRow* row = findCodePageRow(codePage);
  return row == nullptr || isHeldByFirst(*row) || ensureMap(*row, log);
}
