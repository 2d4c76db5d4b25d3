// The flat tables of kernels, filled from a mapping.
#ifndef ENCODING_CODECS_MAPPED_TABLES_H_
#define ENCODING_CODECS_MAPPED_TABLES_H_

#include "encoding/codecs/code_table.h"
#include "encoding/tables/kernel_tables.h"

namespace fast {

// Fill a new table with what of a mapping such a table can say: codes of one byte, or of one and
// two, that are one unit other than 0. Of a mapping without ASCII a table of double bytes has the
// pairs alone, whatever their first byte, and is not prepared: no kernel takes it. False when that
// is not all of the mapping.
bool fillFromMapping(const CodeTable& mapping, SingleByteDecoder& table);
bool fillFromMapping(const CodeTable& mapping, DoubleByteDecoder& table);
// With what is only written, as units that are read back as others, and without.
bool fillFromMapping(const CodeTable& mapping, SingleByteEncoder& table);
bool fillFromMapping(const CodeTable& mapping, DoubleByteEncoder& table);
void fillExactly(const CodeTable& mapping, SingleByteEncoder& table);
void fillExactly(const CodeTable& mapping, DoubleByteEncoder& table);

}  // namespace fast

#endif  // ENCODING_CODECS_MAPPED_TABLES_H_
