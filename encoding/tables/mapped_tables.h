// Flat tables of encodings with a mapping file.
#ifndef ENCODING_TABLES_MAPPED_TABLES_H_
#define ENCODING_TABLES_MAPPED_TABLES_H_

#include "encoding/codecs/code_table.h"
#include "encoding/tables/kernel_tables.h"

namespace fast {

// Fill a new table from a mapping. What is only written is in the encoders too, as units that are
// read back as others. False when the mapping has what such a table cannot say: codes of more
// bytes, values beyond U+FFFF or several of them, no ASCII in a table of double bytes.
bool fillFromMapping(const CodeTable& mapping, SingleByteDecoder& table);
bool fillFromMapping(const CodeTable& mapping, SingleByteEncoder& table);
bool fillFromMapping(const CodeTable& mapping, DoubleByteDecoder& table);
bool fillFromMapping(const CodeTable& mapping, DoubleByteEncoder& table);

}  // namespace fast

#endif  // ENCODING_TABLES_MAPPED_TABLES_H_
