#include "apps/encconv/convert_command.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "apps/encconv/file_conversion.h"
#include "apps/encconv/file_io.h"

namespace tool {
namespace {

using FileId = std::pair<dev_t, ino_t>;

struct Work {
  std::string input;
  struct stat status;  // of the input
  std::string output;
};

// Looks at all inputs before anything is written. False, after a report, when one is missing.
bool inspectInputs(const Options& options, Console& console, std::vector<Work>& works) {
  for (const std::string& name : options.inputs) {
    Work work{name, {}, options.output};
    std::string error;
    if (!inspectInput(name, work.status, error)) {
      console.report(error);
      return false;
    }
    console.expectInput(S_ISREG(work.status.st_mode) ? work.status.st_size : -1);
    works.push_back(std::move(work));
  }
  return true;
}

int convertIntoOne(const Options& options, Console& console, const std::vector<Work>& works) {
  OutputFile output;
  if (!output.open(options.output)) {
    console.report(output.error());
    return kUsage;
  }
  for (const Work& work : works) {
    if (output.isFile(work.status)) {
      console.report(work.input + ": is both input and output" +
                     (options.output.empty() ? "" : "; see --in-place"));
      return kUsage;
    }
  }
  FileConversion conversion(options, console);
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

int convertOne(const Options& options, Console& console, FileConversion& conversion,
               const Work& work) {
  InputFile input;
  if (!input.open(work.input)) {
    console.report(input.error());
    return kUsage;
  }
  OutputFile output;
  if (!output.open(work.output)) {
    console.report(output.error());
    return kUsage;
  }
  const ConversionResult result = conversion.convert(input, output, true);
  if (!result.isComplete) return result.status;
  if (options.inPlace) output.keepOriginal(options.backupSuffix);
  if ((options.inPlace && !output.keepTimes(input.status())) || !output.commit()) {
    console.report(output.error());
    return kUsage;
  }
  return result.status;
}

int convertEach(const Options& options, Console& console, const std::vector<Work>& works) {
  std::atomic<std::size_t> next = 0;
  std::atomic<int> worst = kDone;
  const auto run = [&] {
    FileConversion conversion(options, console);
    for (std::size_t i = next++; i < works.size(); i = next++) {
      const int status = convertOne(options, console, conversion, works[i]);
      int known = worst;
      while (status > known && !worst.compare_exchange_weak(known, status)) {
      }
    }
  };
  std::vector<std::thread> threads;
  const std::size_t count = std::min<std::size_t>(options.jobs, works.size());
  for (std::size_t i = 1; i < count; ++i) threads.emplace_back(run);
  run();
  for (std::thread& thread : threads) thread.join();
  return worst;
}

// Fills in where each input goes. False, after a report, when two would get in each other's way.
bool chooseOutputs(const Options& options, Console& console, std::vector<Work>& works) {
  std::set<FileId> inputs;
  std::set<std::string> outputs;
  for (const Work& work : works) {
    const bool isNew = inputs.emplace(work.status.st_dev, work.status.st_ino).second;
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
    const std::filesystem::path directory(options.outputDirectory);
    work.output = (directory / std::filesystem::path(work.input).filename()).string();
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

}  // namespace

int runConversion(const Options& options, Console& console) {
  std::vector<Work> works;
  if (!FileConversion(options, console).checkSettings() ||
      !inspectInputs(options, console, works)) {
    return kUsage;
  }
  if (!options.inPlace && options.outputDirectory.empty()) {
    return convertIntoOne(options, console, works);
  }
  if (!chooseOutputs(options, console, works)) return kUsage;
  if (!options.inPlace && !makeDirectory(options.outputDirectory, console)) return kUsage;
  return convertEach(options, console, works);
}

}  // namespace tool
