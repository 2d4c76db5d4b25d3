// The names of the encodings: looking them up, and listing them.
//
// A name may mean one encoding to the engine, whose names stay what they are, and another to
// streams, where a row that only they have goes by it.
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

// All encodings that the engine, or that streams convert, with the names that they have there, in
// ascending order of code page.
std::span<const CharsetNames> engineNames();
std::span<const CharsetNames> streamNames();
// The row of a name to the engine, or to streams; null when the name is not known.
const EncodingRow* findEngineEncoding(std::string_view name);
const EncodingRow* findStreamEncoding(std::string_view name);
// Whether part occurs in text when both are compared as names are. A part without letters and
// digits occurs nowhere.
bool containsName(std::string_view text, std::string_view part);

#endif  // ENCODING_CODECS_ENCODING_NAMES_H_
