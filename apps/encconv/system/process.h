// What the tool asks of the system about its process. process_posix.cpp and process_windows.cpp
// answer.
#ifndef APPS_ENCCONV_SYSTEM_PROCESS_H_
#define APPS_ENCCONV_SYSTEM_PROCESS_H_

#include <string>
#include <vector>

namespace tool {

// What stands behind the program's name, in the form of files.h. For main().
std::vector<std::string> programArguments(int argc, char** argv);

// The encoding of texts that say nothing about theirs, by name or number; empty when it is not
// known. That of the locale of the environment; where that locale is not installed, the one that
// its name says. On Windows the ANSI code page: what programs write that know no Unicode.
std::string systemEncodingName();

// As long as an object lives, a console that fd may be shows bytes in a code page, if it can. The
// console is as it was afterwards, also when the process is interrupted. One object at a time.
class ConsoleCodePage {
 public:
  ConsoleCodePage(int fd, int codePage);
  ~ConsoleCodePage();
  ConsoleCodePage(const ConsoleCodePage&) = delete;
  ConsoleCodePage& operator=(const ConsoleCodePage&) = delete;
};

}  // namespace tool

#endif  // APPS_ENCCONV_SYSTEM_PROCESS_H_
