// Tracing garbled text back to what it was, for --trace.
#ifndef APPS_ENCCONV_TRACE_COMMAND_H_
#define APPS_ENCCONV_TRACE_COMMAND_H_

#include "apps/encconv/console.h"
#include "apps/encconv/options.h"

namespace tool {

// The likeliest origins of each input on standard output. Returns the exit status.
int runTrace(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_TRACE_COMMAND_H_
