// Table texts into maps. docs/code-pages.md describes text and image.
#ifndef ENCODING_TABLES_TABLE_BUILDER_H_
#define ENCODING_TABLES_TABLE_BUILDER_H_

#include "encoding/tables/unicode_lookup.h"
#include "support/hash_convert.h"
#include "support/log_base.h"

// How the units of a table of differences are looked for in the table that it changes, whose own
// units are in host order: as they lie in the image, which on a big-endian host finds none of them,
// as is known of EncConvert there and kept; or in host order.
enum class DifferenceKeys : unsigned char { kLowByteFirst, kHostOrder };

// Fills a map, created and initialised by the caller, from a table text; fromUnicode makes units
// the keys, else codes. Lack of memory is latched in the map.
void buildHash(const char* tableText, HashConvert& map, bool fromUnicode, LogBase& log,
               DifferenceKeys keys = DifferenceKeys::kLowByteFirst);
// The records of a table image from behind its flag bytes up to their terminators: of a complete
// table, and of a table of differences.
void buildFromComplete(const unsigned char* records, HashConvert& map, bool fromUnicode,
                       LogBase& log);
void buildFromDiffs(const unsigned char* records, HashConvert& map, LogBase& log,
                    DifferenceKeys keys = DifferenceKeys::kLowByteFirst);
// Fills a map with the units that a code page lacks as keys, and with those that are written for
// them as values, both low byte first whatever the host's order. Lack of memory is latched in the
// map; a text that is no table of best fits adds nothing.
void buildBestFit(const char* tableText, HashConvert& map, LogBase& log);
// Copies a single-byte map into a lookup, entries 1 to 255. True when the ASCII flag is clear.
bool buildSingleByteLookup(const HashConvert& map, UnicodeLookup& lookup);

#endif  // ENCODING_TABLES_TABLE_BUILDER_H_
