// CharsetNaming: which code page a charset name means.
#ifndef SUPPORT_CHARSET_NAMING_H_
#define SUPPORT_CHARSET_NAMING_H_

#include <span>
#include <string_view>

#include "support/log_base.h"
#include "support/string_buffer.h"

enum class CharsetKind : unsigned char {
  kUnicode,     // a UTF
  kSingleByte,  // one byte a character
  kDoubleByte,  // one or two bytes a character
  kStateful,    // seven bits, with escape sequences or shifts
};

// The names of one encoding.
struct CharsetNames {
  int codePage;
  std::string_view preferredName;  // NUL-terminated
  std::span<const std::string_view> aliases;
  CharsetKind kind;
  std::string_view description;  // a few words for people
};

// The names are those of support/charset_name_rows.h; besides, each encoding is known by its number
// alone, and by its number behind "cp" or "windows". Names match as Unicode Technical Standard #22
// describes: everything but ASCII letters and digits, case, and leading zeros of a number are
// ignored, so that "iso_8859-1" is "ISO-8859-1" and "ibm-1140" is "IBM01140".
//
// Every name is one of an encoding that the engine converts. Any thread may call; nothing
// allocates.
class CharsetNaming {
 public:
  // The code page number of a charset name, or 0 when the name is not known. log may be null.
  static int GetCodePage(const StringBuffer& name, LogBase* log);
  // The same for callers without a StringBuffer.
  static int codePageOf(std::string_view name);

  // All encodings that the engine converts, in ascending order of code page.
  static std::span<const CharsetNames> all();
  // The names of one of them, or null for any other number.
  static const CharsetNames* find(int codePage);
  // Whether part occurs in text when both are compared as names are. A part without letters and
  // digits occurs nowhere.
  static bool containsName(std::string_view text, std::string_view part);
};

#endif  // SUPPORT_CHARSET_NAMING_H_
