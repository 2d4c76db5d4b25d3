// What calls of Windows say about failures, in the words of errno.
#ifndef APPS_ENCCONV_SYSTEM_WINDOWS_ERRORS_H_
#define APPS_ENCCONV_SYSTEM_WINDOWS_ERRORS_H_

namespace tool {

// Sets errno from GetLastError(). Returns false.
bool failWithLastError();

}  // namespace tool

#endif  // APPS_ENCCONV_SYSTEM_WINDOWS_ERRORS_H_
