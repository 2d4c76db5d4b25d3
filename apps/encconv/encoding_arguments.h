// Encodings as the command line names them: with what users of iconv put behind the name, as the
// locale's where none is given, and with a hint where the name is not known.
#ifndef APPS_ENCCONV_ENCODING_ARGUMENTS_H_
#define APPS_ENCCONV_ENCODING_ARGUMENTS_H_

#include <string>
#include <string_view>

#include "encoding/stream/stream_converter.h"

namespace tool {

// "NAME", "NAME//", or "NAME" with the suffixes "//IGNORE" and "//TRANSLIT" in any order; they may
// also be separated by commas, and be in small letters.
struct EncodingArgument {
  std::string name;
  bool ignores = false;         // leave out what cannot be converted
  bool transliterates = false;  // write what the output lacks in other characters
};

// Takes an argument apart. False when there is another suffix, which becomes wrongSuffix.
bool parseEncodingArgument(std::string_view text, EncodingArgument& argument,
                           std::string& wrongSuffix);

// Makes settings do what the suffixes mean: //TRANSLIT transliterates a character, or writes "?",
// and stops at malformed input; //IGNORE leaves out what is left.
void applySuffixes(bool ignores, bool transliterates, StreamSettings& settings);

// Of an unknown name, the known ones that come near: "; did you mean A, B or C?". Empty when none
// does.
std::string suggestionsFor(std::string_view name);

}  // namespace tool

#endif  // APPS_ENCCONV_ENCODING_ARGUMENTS_H_
