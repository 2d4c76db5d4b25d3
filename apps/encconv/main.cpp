// encconv: converts text from one character encoding to another.
#include <signal.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "apps/encconv/chart_command.h"
#include "apps/encconv/console.h"
#include "apps/encconv/convert_command.h"
#include "apps/encconv/detect.h"
#include "apps/encconv/list_command.h"
#include "apps/encconv/options.h"
#include "apps/encconv/temporary_files.h"

namespace {

int run(const tool::Options& options) {
  tool::Console console(!options.quiet);
  switch (options.command) {
    case tool::Command::kDetect:
      return tool::runDetection(options, console);
    case tool::Command::kChart:
      return tool::runChart(options, console);
    case tool::Command::kList: {
      const int status = printCodePageList(std::cout, options.json, options.filter);
      if (!std::cout.flush()) return console.reportStandardOutput();
      if (status != tool::kDone) console.report("no encoding matches '" + options.filter + "'");
      return status;
    }
    case tool::Command::kConvert:
      break;
  }
  return tool::runConversion(options, console);
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is reported like any other output that cannot be written.
  signal(SIGPIPE, SIG_IGN);
  tool::removeTemporariesOnSignals();

  const tool::ParsedArguments parsed =
      tool::parseArguments(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  std::fputs(parsed.err.c_str(), stderr);
  if (std::fputs(parsed.out.c_str(), stdout) == EOF || std::fflush(stdout) != 0) {
    std::perror("encconv: standard output");
    return tool::kUsage;
  }
  return parsed.run ? run(parsed.options) : parsed.status;
}
