// Strings of JSON.
#ifndef SUPPORT_JSON_H_
#define SUPPORT_JSON_H_

#include <string>
#include <string_view>

namespace encconv {

// Appends a JSON string. Text is UTF-8; a byte that is none, as names of files may hold, becomes
// the escape of the lone surrogate DC00 + byte, from which the byte can be told again.
void appendJsonString(std::string_view text, std::string& output);

std::string jsonString(std::string_view text);

}  // namespace encconv

#endif  // SUPPORT_JSON_H_
