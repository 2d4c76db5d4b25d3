// What the tool writes as JSON.
#ifndef APPS_ENCCONV_JSON_H_
#define APPS_ENCCONV_JSON_H_

#include <string>
#include <string_view>

namespace tool {

// A JSON string. Text is UTF-8; a byte that is none, as names of files may hold, becomes the escape
// of the lone surrogate DC00 + byte, from which the byte can be told again.
std::string jsonString(std::string_view text);

}  // namespace tool

#endif  // APPS_ENCCONV_JSON_H_
