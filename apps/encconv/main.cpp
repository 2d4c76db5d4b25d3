// encconv: converts text from one character encoding to another.
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "apps/encconv/chart_command.h"
#include "apps/encconv/console.h"
#include "apps/encconv/convert_command.h"
#include "apps/encconv/detect.h"
#include "apps/encconv/encoding_arguments.h"
#include "apps/encconv/inputs.h"
#include "apps/encconv/list_command.h"
#include "apps/encconv/options.h"
#include "apps/encconv/temporary_files.h"
#include "apps/encconv/trace_command.h"

namespace {

// Runs a command for the files that the directories on the command line stand for.
int forFiles(tool::Options options, tool::Console& console,
             int (*run)(const tool::Options&, tool::Console&)) {
  if (!options.recursive) return run(options, console);
  const tool::Inputs inputs = tool::findInputs(options, console);
  options.inputs.clear();
  for (const tool::Input& input : inputs.files) options.inputs.push_back(input.name);
  const int status = run(options, console);
  return inputs.hasMissing ? tool::kUsage : status;
}

int run(const tool::Options& options) {
  tool::Console console(!options.quiet);
  switch (options.command) {
    case tool::Command::kDetect:
      return forFiles(options, console, tool::runDetection);
    case tool::Command::kTrace:
      return forFiles(options, console, tool::runTrace);
    case tool::Command::kChart:
      return tool::runChart(options, console);
    case tool::Command::kList: {
      const int status = printCodePageList(std::cout, options.json, options.filter);
      if (!std::cout.flush()) return console.reportStandardOutput();
      if (status != tool::kDone) {
        console.report("no encoding matches '" + options.filter + "'" +
                       tool::suggestionsFor(options.filter));
      }
      return status;
    }
    case tool::Command::kConvert:
      break;
  }
  return tool::runConversion(options, console);
}

}  // namespace

int main(int argc, char** argv) {
  // Among them that of a pipe whose reader goes away: the end comes quietly, as with other tools.
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
