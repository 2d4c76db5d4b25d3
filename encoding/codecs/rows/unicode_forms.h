// The rows of Unicode's less usual forms. Numbers of our own: 200800 to 200849.
#ifndef ENCODING_CODECS_ROWS_UNICODE_FORMS_H_
#define ENCODING_CODECS_ROWS_UNICODE_FORMS_H_

#include "encoding/codecs/row_makers.h"

extern const Codec kCesu8Codec, kModifiedUtf8Codec, kWtf8Codec;

namespace encoding_rows {

constexpr EncodingRow unicodeForm(int number, const char* name, const char* aliases,
                                  const char* description, const Codec* form) {
  return streamOnly(codec(number, name, aliases, description, CharsetKind::kUnicode, form));
}

// Numbers below 100000 are IBM's, which gives each form one number for all of Unicode and one for
// Unicode with the private use characters as its own products have them; the first of the two.
inline constexpr EncodingRow kUnicodeFormRows[] = {
    unicodeForm(9400, "CESU-8", "csCESU8 IBM9400", "Unicode, CESU-8: UTF-16 in the dress of UTF-8",
                &kCesu8Codec),
    unicodeForm(200800, "x-modified-utf-8", "modified-utf-8 mutf-8 java-utf-8",
                "Unicode, modified UTF-8 of Java class files and JNI", &kModifiedUtf8Codec),
    unicodeForm(200801, "WTF-8", "", "Unicode, WTF-8: UTF-8 with unpaired surrogates", &kWtf8Codec),
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_ROWS_UNICODE_FORMS_H_
