// The files that a command line means: those that it names, and with --recursive those below the
// directories that it names.
#ifndef APPS_ENCCONV_INPUTS_H_
#define APPS_ENCCONV_INPUTS_H_

#include <string>
#include <vector>

#include "apps/encconv/console.h"
#include "apps/encconv/options.h"
#include "apps/encconv/system/files.h"

namespace tool {

struct Input {
  std::string name;   // "-": standard input
  std::string below;  // the name that it gets below --output-dir
  FileStatus status;  // what it is
};

struct Inputs {
  std::vector<Input> files;
  bool hasMissing = false;    // one that is named is not there, or cannot be read
  bool hasDirectory = false;  // one is a directory, without --recursive
};

// Looks at all inputs before anything is read, and reports those that cannot be. Of what is found
// in directories, regular files that --include selects count: no symbolic links, no backups that
// --in-place keeps, and nothing below --output-dir.
Inputs findInputs(const Options& options, Console& console);

}  // namespace tool

#endif  // APPS_ENCCONV_INPUTS_H_
