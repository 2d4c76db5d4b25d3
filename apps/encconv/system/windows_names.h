// Names of files as Windows takes them.
#ifndef APPS_ENCCONV_SYSTEM_WINDOWS_NAMES_H_
#define APPS_ENCCONV_SYSTEM_WINDOWS_NAMES_H_

#include <string>

namespace tool::files {

// A name in the form that names of any length have, where it needs that; else as it is.
std::wstring longName(const std::string& name);
// Takes the marks of that form off again.
std::string shownName(const std::wstring& name);
// From the root on, without "." and "..".
std::wstring fullName(const std::wstring& name);
// A pipe, a console, NUL and their like: opening it does something.
bool isDevice(const std::wstring& name);
// Leads to another file or directory.
bool isLink(const std::wstring& name);

}  // namespace tool::files

#endif  // APPS_ENCCONV_SYSTEM_WINDOWS_NAMES_H_
