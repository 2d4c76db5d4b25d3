#include "apps/encconv/convert_command.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "apps/encconv/file_conversion.h"
#include "apps/encconv/file_io.h"
#include "apps/encconv/inputs.h"
#include "apps/encconv/place_report.h"
#include "apps/encconv/record_conversion.h"

namespace tool {
namespace {

using FileId = std::pair<dev_t, ino_t>;

struct Work {
  std::string input;
  struct stat status;  // of the input
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
  std::error_code error;  // what is missing afterwards, the open tells
  std::filesystem::create_directories(std::filesystem::path(work.output).parent_path(), error);
  return output.open(work.output);
}

int convertOne(const Options& options, Console& console, FileConversion& conversion,
               const Work& work) {
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
}

// How many files can be converted at once with the descriptors that the process may have.
std::size_t usableJobs(std::size_t wanted) {
  constexpr rlim_t kOfOneJob = 4;  // input, output, the original beside it, and one to spare
  constexpr rlim_t kOthers = 16;
  struct rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return wanted;
  const rlim_t needed = wanted * kOfOneJob + kOthers;
  if (limit.rlim_cur < needed) {
    struct rlimit raised = limit;
    raised.rlim_cur = std::min(needed, limit.rlim_max);
    if (setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
  }
  if (limit.rlim_cur >= needed) return wanted;
  return limit.rlim_cur < kOthers + kOfOneJob ? 1 : (limit.rlim_cur - kOthers) / kOfOneJob;
}

int convertEach(const Options& options, Console& console, PlaceReport* report,
                const std::vector<Work>& works) {
  std::atomic<std::size_t> next = 0;
  std::atomic<int> worst = kDone;
  const std::size_t count = usableJobs(std::min<std::size_t>(options.jobs, works.size()));
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
  std::vector<std::thread> threads;
  try {
    while (threads.size() + 1 < count) threads.emplace_back(run);
  } catch (const std::system_error&) {
    // No more threads are to be had: those that there are do the work.
  }
  run();
  for (std::thread& thread : threads) thread.join();
  return worst;
}

// Fills in where each input goes. False, after a report, when two would get in each other's way.
bool chooseOutputs(const Options& options, Console& console, std::vector<Work>& works) {
  std::set<FileId> inputs;
  std::set<std::string> outputs;
  for (const Work& work : works) {
    const bool isNew = inputs.emplace(work.status.st_dev, work.status.st_ino).second ||
                       work.status.st_nlink > 1;  // which is refused file by file
    if (options.inPlace && (!isNew || !S_ISREG(work.status.st_mode))) {
      console.report(work.input + (isNew ? ": is not a regular file" : ": is given twice"));
      return false;
    }
  }
  for (Work& work : works) {
    if (options.inPlace) {
      work.output = work.input;
      continue;
    }
    work.output = (std::filesystem::path(options.outputDirectory) / work.output).string();
    struct stat status = {};
    if (!outputs.insert(work.output).second) {
      console.report(work.output + ": would be written twice");
      return false;
    }
    if (stat(work.output.c_str(), &status) == 0 &&
        inputs.count({status.st_dev, status.st_ino}) != 0) {
      console.report(work.output + ": is both input and output; see --in-place");
      return false;
    }
  }
  return true;
}

bool makeDirectory(const std::string& name, Console& console) {
  struct stat status = {};
  if (stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) return true;
  if (mkdir(name.c_str(), 0777) == 0) return true;
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
