// encconv: converts text from one character encoding to another.
#include <sstream>
#include <string>

#include "apps/encconv/chart_command.h"
#include "apps/encconv/console.h"
#include "apps/encconv/convert_command.h"
#include "apps/encconv/detect.h"
#include "apps/encconv/encoding_arguments.h"
#include "apps/encconv/inputs.h"
#include "apps/encconv/list_command.h"
#include "apps/encconv/options.h"
#include "apps/encconv/system/process.h"
#include "apps/encconv/system/temporary_files.h"
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
      std::ostringstream list;
      const int status = printCodePageList(list, options.json, options.filter);
      const int printed = console.print(list.str());
      if (printed != tool::kDone) return printed;
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

  const tool::ParsedArguments parsed = tool::parseArguments(tool::programArguments(argc, argv));
  tool::Console console(false);
  console.write(parsed.err);
  const int printed = console.print(parsed.out);
  if (printed != tool::kDone) return printed;
  if (!parsed.run) return parsed.status;
  try {
    return run(parsed.options);
  } catch (const std::bad_alloc&) {
    console.report("not enough memory");
    return tool::kUsage;
  }
}
