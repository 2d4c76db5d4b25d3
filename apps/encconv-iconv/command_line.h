// What encconv-iconv is asked to do, and what it says: the options and messages of iconv(1).
#ifndef APPS_ENCCONV_ICONV_COMMAND_LINE_H_
#define APPS_ENCCONV_ICONV_COMMAND_LINE_H_

#include <string>
#include <vector>

namespace iconv_command {

struct Options {
  std::string from;  // as the library takes it; empty: the encoding of the locale
  std::string to;
  std::string output;  // empty: standard output
  std::vector<std::string> files;
  bool lists = false;
  bool omitsInvalid = false;
  bool isVerbose = false;
};

// Reads the arguments, and answers what ends the program at once: --help, --usage, --version, which
// are printed, and what is no option, with a message. True with options to go on; else status is
// what the program returns.
bool readCommandLine(int argc, char** argv, Options& options, int& status);

// Says a message behind the name that the program was called by.
void say(const std::string& message);
// The same with the reason, a value of errno.
void say(const std::string& message, int error);

}  // namespace iconv_command

#endif  // APPS_ENCCONV_ICONV_COMMAND_LINE_H_
