#include "apps/encconv/convert_command.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <new>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "apps/encconv/file_conversion.h"
#include "apps/encconv/file_io.h"
#include "apps/encconv/inputs.h"
#include "apps/encconv/place_report.h"
#include "apps/encconv/record_conversion.h"
#include "apps/encconv/system/process.h"
#include "apps/encconv/threads.h"

namespace tool {
namespace {

struct Work {
  std::string input;
  FileStatus status;   // of the input
  std::string output;  // at first the name below --output-dir
};

int convertIntoOne(const Options& options, Console& console, PlaceReport* report,
                   const std::vector<Work>& works) {
  OutputFile output;
  if (!output.open(options.output)) {
    console.report(output.error());
    return kUsage;
  }
  const bool isStandard = options.output.empty() || options.output == "-";
  for (const Work& work : works) {
    if (output.isFile(work.status)) {
      console.report(work.input + ": is both input and output" +
                     (isStandard ? "" : "; see --in-place"));
      return kUsage;
    }
  }
  const ConsoleCodePage shown(isStandard ? files::kStandardOutput : -1, options.toCodePage);
  FileConversion conversion(options, console, report, options.jobs);
  int status = kDone;
  for (std::size_t i = 0; i < works.size(); ++i) {
    InputFile input;
    if (!input.open(works[i].input)) {
      console.report(input.error());
      return kUsage;
    }
    const ConversionResult result = conversion.convert(input, output, i == 0);
    if (!result.isComplete) return result.status;
    status = std::max(status, result.status);
  }
  if (!output.commit()) {
    console.report(output.error());
    return kUsage;
  }
  return status;
}

bool openOutput(const Options& options, const Work& work, OutputFile& output) {
  if (options.inPlace) return output.openInPlace(work.output, options.backupSuffix);
  files::makeDirectories(files::parentOf(work.output));  // what is missing then, the open tells
  return output.open(work.output);
}

int convertOne(const Options& options, Console& console, FileConversion& conversion,
               const Work& work) try {
  InputFile input;
  if (!input.open(work.input)) {
    console.report(input.error());
    return kUsage;
  }
  OutputFile output;
  if (!openOutput(options, work, output)) {
    console.report(output.error());
    return kUsage;
  }
  const ConversionResult result = conversion.convert(input, output, true);
  if (!result.isComplete) return result.status;
  if ((options.preserveTime && !output.keepTimes(input.status())) || !output.commit()) {
    console.report(output.error());
    return kUsage;
  }
  if (options.verbose && output.isUnchanged()) console.report(work.input + ": left as it is");
  return result.status;
} catch (const std::bad_alloc&) {
  console.report(work.input + ": not enough memory");
  return kUsage;
}

int convertEach(const Options& options, Console& console, PlaceReport* report,
                const std::vector<Work>& works) {
  std::atomic<std::size_t> next = 0;
  std::atomic<int> worst = kDone;
  const std::size_t count = files::usableJobs(std::min<std::size_t>(options.jobs, works.size()));
  // What no file has an own thread for, the threads of a file use for its parts.
  const auto each = static_cast<unsigned int>(std::max<std::size_t>(1, options.jobs / count));
  const auto run = [&] {
    FileConversion conversion(options, console, report, each);
    for (std::size_t i = next++; i < works.size(); i = next++) {
      const int status = convertOne(options, console, conversion, works[i]);
      int known = worst;
      while (status > known && !worst.compare_exchange_weak(known, status)) {
      }
    }
  };
  runOnThreads(count, run);
  return worst;
}

// Fills in where each input goes. False, after a report, when two would get in each other's way.
bool chooseOutputs(const Options& options, Console& console, std::vector<Work>& works) {
  std::set<FileId> inputs;
  std::set<std::string> outputs;
  for (const Work& work : works) {
    const bool isNew = inputs.insert(work.status.id).second ||
                       work.status.links > 1;  // which is refused file by file
    if (options.inPlace && (!isNew || !work.status.isRegular())) {
      console.report(work.input + (isNew ? ": is not a regular file" : ": is given twice"));
      return false;
    }
  }
  for (Work& work : works) {
    if (options.inPlace) {
      work.output = work.input;
      continue;
    }
    work.output = files::join(options.outputDirectory, work.output);
    FileStatus status;
    if (!outputs.insert(work.output).second) {
      console.report(work.output + ": would be written twice");
      return false;
    }
    if (files::getStatus(work.output, status) && inputs.count(status.id) != 0) {
      console.report(work.output + ": is both input and output; see --in-place");
      return false;
    }
  }
  return true;
}

bool makeDirectory(const std::string& name, Console& console) {
  if (files::makeDirectory(name)) return true;
  console.report(name + ": " + std::generic_category().message(errno));
  return false;
}

// Opens the report. False, after a line that says why, when it cannot be, or would take the place
// of an input or an output.
bool openReport(const Options& options, Console& console, const std::vector<Work>& works,
                std::optional<PlaceReport>& report) {
  report.emplace(options.json);
  if (!report->open(options.report)) {
    console.report(report->error());
    return false;
  }
  for (const Work& work : works) {
    const bool isInput = report->file().isFile(work.status);
    if (!isInput && !report->file().isAt(work.output)) continue;
    console.report(isInput ? work.input + ": is both input and --report"
                           : options.report + ": is both output and --report");
    return false;
  }
  return true;
}

// --recursive found no file.
int reportNothing(const Options& options, Console& console) {
  console.report(options.inputs.front() + ": there is no file to convert in it");
  return kUsage;
}

}  // namespace

int runConversion(const Options& asked, Console& console) {
  Options options = asked;
  std::string why;
  if (!options.fields.empty() && !readLayout(options, why)) {
    console.report(why);
    return kUsage;
  }
  if (!FileConversion(options, console, nullptr).checkSettings()) return kUsage;
  const Inputs inputs = findInputs(options, console);
  const bool isWhole = !inputs.hasMissing && !inputs.hasDirectory;
  const bool isIntoOne = !options.inPlace && options.outputDirectory.empty();
  // A directory has no text that could be missing in the one output, but a file has.
  if (inputs.files.empty()) return isWhole ? reportNothing(options, console) : kUsage;
  if (isIntoOne && inputs.hasMissing) return kUsage;

  std::vector<Work> works;
  for (const Input& input : inputs.files) {
    works.push_back({input.name, input.status, isIntoOne ? options.output : input.below});
  }
  if (!isIntoOne && !chooseOutputs(options, console, works)) return kUsage;
  std::optional<PlaceReport> report;
  if (!options.report.empty() && !openReport(options, console, works, report)) return kUsage;
  PlaceReport* const places = report ? &*report : nullptr;
  if (!options.outputDirectory.empty() && !makeDirectory(options.outputDirectory, console)) {
    return kUsage;
  }
  const int status = isIntoOne ? convertIntoOne(options, console, places, works)
                               : convertEach(options, console, places, works);
  if (report && !report->commit()) {
    console.report(report->error());
    return kUsage;
  }
  return isWhole ? status : kUsage;
}

}  // namespace tool
