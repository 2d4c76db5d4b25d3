// The operations of EncodingConvert on the process-wide tables.
#include "encoding/codecs/code_table.h"
#include "encoding/encoding_convert.h"
#include "encoding/plan.h"
#include "encoding/tables/flat_tables.h"
#include "encoding/tables/table_builder.h"
#include "encoding/tables/table_registry.h"
#include "support/japanese.h"

namespace {

bool isWithin(int codePage, int first, int last) { return codePage >= first && codePage <= last; }

bool isWindows125x(int codePage) { return isWithin(codePage, 1250, 1259); }
bool isIso8859(int codePage) { return isWithin(codePage, 28591, 28605); }

bool ensureToUnicodeOf(int codePage, LogBase& log) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row == nullptr || ensureToUnicode(*row, log);
}

// Whether ensureHashFromUnicode holds a code page itself: the most used ones. The rest belong to
// ensureHashFromUnicode2.
bool isHeldByFirst(const EncodingRow& row) {
  return row.form == EncodingForm::kDoubleByte || row.number == 37 || row.number == 437 ||
         isWindows125x(row.number) || isIso8859(row.number);
}

}  // namespace

bool EncodingConvert::ensureHashToUnicode(int codePage, LogBase& log) {
  return ensureToUnicodeOf(codePage, log);
}

bool EncodingConvert::ensureHashToUnicode1250(int codePage, LogBase& log) {
  return !isWindows125x(codePage) || ensureToUnicodeOf(codePage, log);
}

bool EncodingConvert::ensureHashToUnicode8859(int codePage, LogBase& log) {
  return !isIso8859(codePage) || ensureToUnicodeOf(codePage, log);
}

bool EncodingConvert::ensureHashFromUnicode(int codePage, LogBase& log) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row == nullptr || ensureFromUnicode(*row, log);
}

bool EncodingConvert::ensureHashFromUnicode2(int codePage, LogBase& log) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row == nullptr || isHeldByFirst(*row) || ensureFromUnicode(*row, log);
}

bool EncodingConvert::buildSingleByteLookup(HashConvert& map, UnicodeLookup& lookup,
                                            LogBase& /*log*/) {
  return ::buildSingleByteLookup(map, lookup);
}

void EncodingConvert::buildHash(const char* tableText, HashConvert& map, bool fromUnicode,
                                LogBase& log) {
  ::buildHash(tableText, map, fromUnicode, log);
}

void EncodingConvert::buildFromComplete(const unsigned char* records, HashConvert& map,
                                        bool fromUnicode, LogBase& log) {
  ::buildFromComplete(records, map, fromUnicode, log);
}

void EncodingConvert::buildFromDiffs(const unsigned char* records, HashConvert& map, LogBase& log) {
  ::buildFromDiffs(records, map, log);
}

void EncodingConvert::cleanupMemory() {
  Japanese::releaseLastBlock();
  releaseCodeTables();
  fast::forgetPlans();
  fast::releaseFlatTables();
  releaseTables();
}
