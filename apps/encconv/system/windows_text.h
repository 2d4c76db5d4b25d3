// Text between the tool, which has UTF-8, and Windows, which has UTF-16.
#ifndef APPS_ENCCONV_SYSTEM_WINDOWS_TEXT_H_
#define APPS_ENCCONV_SYSTEM_WINDOWS_TEXT_H_

#include <string>
#include <string_view>

namespace tool {

// Names of files may hold halves of pairs of surrogates: these have the form that UTF-8 would give
// them, so that every name comes back as it was. Other bytes that are no UTF-8 become U+FFFD.
std::string fromWide(std::wstring_view text);
std::wstring toWide(std::string_view text);

}  // namespace tool

#endif  // APPS_ENCCONV_SYSTEM_WINDOWS_TEXT_H_
