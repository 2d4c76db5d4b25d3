// The conversion of files.
#ifndef APPS_ENCCONV_CONVERT_COMMAND_H_
#define APPS_ENCCONV_CONVERT_COMMAND_H_

#include "apps/encconv/console.h"
#include "apps/encconv/options.h"

namespace tool {

// Converts as the options say, and returns the exit status. What goes wrong is said on the console,
// in one line for each file.
int runConversion(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_CONVERT_COMMAND_H_
