// The table-backed code pages: one row for each, from which registry, dispatch, teardown and
// listing are derived, and the process-wide slots of their tables.
#ifndef ENCODING_TABLES_CODE_PAGES_H_
#define ENCODING_TABLES_CODE_PAGES_H_

#include <atomic>
#include <cstdint>
#include <span>

#include "encoding/tables/unicode_lookup.h"
#include "support/hash_convert.h"
#include "support/string_buffer.h"

struct CodePageRow {
  int codePage;
  // The table text: appendText for the multi-byte tables, which are kept in pieces; text for all
  // others. 10001 has both: its own text is a table of differences over Shift_JIS.
  const char* text;
  void (*appendText)(StringBuffer& out);
  std::uint16_t toUnicodeSize;    // buckets of the to-Unicode map
  std::uint16_t fromUnicodeSize;  // buckets of the from-Unicode map
  bool isDoubleByte;              // HashConvert for decoding, else UnicodeLookup
  bool isDispatched;              // may be decoded and encoded
  bool isReleased;                // teardown empties its slots
  std::uint8_t slot;              // index of its TableSlots; 936 and 52936 share one
};

// The tables of one code page. Null until first use; published once, complete (release), and read
// with acquire; destroyed only by teardown.
struct TableSlots {
  std::atomic<UnicodeLookup*> singleToUnicode;  // _Lcp_<cp>_tU
  std::atomic<HashConvert*> multiToUnicode;     // _Hcp_<cp>_tU
  std::atomic<HashConvert*> fromUnicode;        // _Hcp_<cp>_fU
};

// All rows, in teardown order.
std::span<const CodePageRow> codePageRows();
// The row of a code page, or null when it has no table. Constant time.
const CodePageRow* findCodePageRow(int codePage);
// The slots of a row.
TableSlots& tableSlots(const CodePageRow& row);

#endif  // ENCODING_TABLES_CODE_PAGES_H_
