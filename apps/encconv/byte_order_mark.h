// The byte order marks of the Unicode encodings.
#ifndef APPS_ENCCONV_BYTE_ORDER_MARK_H_
#define APPS_ENCCONV_BYTE_ORDER_MARK_H_

#include <string_view>

#include "encoding/codecs/encoding_row.h"

namespace tool {

// The mark of a code page; empty for a code page without one.
inline std::string_view byteOrderMark(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row == nullptr ? std::string_view() : markOf(*row);
}

}  // namespace tool

#endif  // APPS_ENCCONV_BYTE_ORDER_MARK_H_
