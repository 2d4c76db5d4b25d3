// The process-wide mapping tables: built on first use from the texts of their rows, kept until
// teardown.
#ifndef ENCODING_TABLES_TABLE_REGISTRY_H_
#define ENCODING_TABLES_TABLE_REGISTRY_H_

#include <atomic>
#include <memory>

#include "encoding/codecs/encoding_row.h"
#include "encoding/tables/unicode_lookup.h"
#include "support/hash_convert.h"
#include "support/log_base.h"

// The tables of one row. Null until first use; published once, complete (release), and read with
// acquire; destroyed only by teardown.
struct TableSlots {
  std::atomic<UnicodeLookup*> singleToUnicode;  // _Lcp_<cp>_tU, of single-byte code pages
  std::atomic<HashConvert*> multiToUnicode;     // _Hcp_<cp>_tU, of double-byte code pages
  std::atomic<HashConvert*> fromUnicode;        // _Hcp_<cp>_fU
  std::atomic<HashConvert*> bestFit;            // see buildBestFit()
};

// The slots of a row that has any; the best fits of an encoding with a codec are a table too.
TableSlots& tableSlots(const EncodingRow& row);

// Make sure that the table of a row is there: published complete, or not at all. False only when
// memory is short. log is handed to the builders. Any thread may call.
bool ensureToUnicode(const EncodingRow& row, LogBase& log);
bool ensureFromUnicode(const EncodingRow& row, LogBase& log);
// The best fits of a row, which may have none: that is true as well.
bool ensureBestFit(const EncodingRow& row, LogBase& log);

// A map of its own of a row with a table of differences, as its texts mean it: on a big-endian host
// the published one is not (DifferenceKeys). The reverse of it where fromUnicode is false. Null
// when memory is short.
std::unique_ptr<HashConvert> buildMeantMap(const EncodingRow& row, bool fromUnicode);

// Destroys all tables whose rows say so. Must not overlap anything that reads a table.
void releaseTables();

#endif  // ENCODING_TABLES_TABLE_REGISTRY_H_
