// Charset: what a name of iconv_open means, and the suffixes behind it.
#ifndef ICONV_CHARSET_H_
#define ICONV_CHARSET_H_

#include <string_view>

#include "encoding/codecs/encoding_row.h"

namespace iconv_layer {

// One side of a conversion. The names mean what they mean to programs that call iconv, which for
// some is another encoding than the one that the rest of the library has by that name
// (charset_list.h).
struct Charset {
  const EncodingRow* row = nullptr;  // null: the name is not known
  bool hasMark = false;   // a byte order mark is read, and written in front; without one, the order
                          // of the row
  bool isUcs2 = false;    // characters beyond U+FFFF have no place
  bool isWide = false;    // wide characters of the host, between which and others is one step: for
                          // want of room it stops in front of text that is malformed
  bool isStrict = false;  // without the characters that Windows gives to free bytes
  bool writesOneWay = false;  // other shapes of its characters are written as these
};

// What the suffixes ask for, in any case and order: //TRANSLIT, //IGNORE, //NON_IDENTICAL_DISCARD.
// Others are passed over.
struct Suffixes {
  bool transliterates = false;  // similar characters are written for those without a place
  bool ignores = false;         // malformed text and characters without a place are left out
  bool discards = false;        // characters without a place are left out
};

struct CharsetCode {
  Charset charset;
  Suffixes suffixes;
  bool isOfLocale = false;  // so another locale gives another charset
};

// Reads a code as iconv_open takes it: a name, or none for the encoding of the locale, as "char",
// and suffixes. Any thread may call; nothing is allocated.
CharsetCode parseCode(std::string_view code);

// The name that iconv_canonicalize gives for a name: that itself where it is not known.
const char* canonicalName(const char* name);

// Names that iconv_open reads otherwise than the rest of the library.
struct CharsetMeaning {
  enum class Form : unsigned char { kPlain, kMarked, kUcs2, kMarkedUcs2, kWide, kStrict };
  int number;  // of the row
  Form form;
  const char* name;     // as iconv_canonicalize gives it
  const char* aliases;  // separated by single spaces
};
}  // namespace iconv_layer

#endif  // ICONV_CHARSET_H_
