// The names of the encodings: looking them up, and listing them.
//
// The names are those of the rows; besides, each encoding is known by its number alone, and by its
// number behind "cp" or "windows". Names match as Unicode Technical Standard #22 describes:
// everything but ASCII letters and digits, case, and leading zeros of a number are ignored, so that
// "iso_8859-1" is "ISO-8859-1" and "ibm-1140" is "IBM01140".
#ifndef ENCODING_CODECS_ENCODING_NAMES_H_
#define ENCODING_CODECS_ENCODING_NAMES_H_

#include <span>
#include <string_view>

#include "encoding/codecs/encoding_row.h"

// The names of one encoding, and what a list says of it.
struct CharsetNames {
  int codePage;
  std::string_view preferredName;  // NUL-terminated, like the description
  std::span<const std::string_view> aliases;
  CharsetKind kind;
  std::string_view description;  // a few words for people
  bool canRead;                  // may be the source of a conversion
  bool canWrite;                 // may be its destination
};

// Any thread may call these; nothing is allocated.

// All encodings, in ascending order of code page; and those that EncConvert converts.
std::span<const CharsetNames> encodingNames();
std::span<const CharsetNames> engineEncodingNames();
// The row of a name, or null when the name is not known.
const EncodingRow* findEncoding(std::string_view name);
// The same for the engine, to which some names have always meant something else.
const EncodingRow* findEngineEncoding(std::string_view name);
// Whether part occurs in text when both are compared as names are. A part without letters and
// digits occurs nowhere.
bool containsName(std::string_view text, std::string_view part);

#endif  // ENCODING_CODECS_ENCODING_NAMES_H_
