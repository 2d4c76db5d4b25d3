#include "apps/encconv/inputs.h"

#include <fnmatch.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "apps/encconv/file_io.h"

namespace tool {
namespace {

namespace fs = std::filesystem;
using FileId = std::pair<dev_t, ino_t>;

FileId idOf(const struct stat& status) { return {status.st_dev, status.st_ino}; }

class Finder {
 public:
  Finder(const Options& options, Console& console) : m_options(options), m_console(console) {
    struct stat status = {};
    m_hasOutputDirectory =
        !options.outputDirectory.empty() && stat(options.outputDirectory.c_str(), &status) == 0;
    if (m_hasOutputDirectory) m_outputDirectory = idOf(status);
  }

  void add(const std::string& name) {
    struct stat status = {};
    std::string error;
    if (name != "-" && stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
      if (m_options.recursive) {
        walk(name, "");
      } else {
        m_console.report(printable(name) + ": is a directory; --recursive converts what is in it");
        m_found.hasDirectory = true;
      }
    } else if (inspectInput(name, status, error)) {
      keep({name, fs::path(name).filename().string(), status});
    } else {
      m_console.report(error);
      m_found.hasMissing = true;
    }
  }

  Inputs take() { return std::move(m_found); }

 private:
  void keep(Input input) {
    m_seen.insert(idOf(input.status));
    m_console.expectInput(S_ISREG(input.status.st_mode) ? input.status.st_size : -1);
    m_found.files.push_back(std::move(input));
  }

  // Only one directory is open at a time, however deep they lie.
  void walk(const fs::path& directory, const fs::path& below) {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
      names.push_back(entry->path().filename().string());
    }
    if (error) {
      m_console.report(directory.string() + ": " + error.message());
      m_found.hasMissing = true;
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) visit(directory / name, below / name);
  }

  void visit(const fs::path& path, const fs::path& below) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) return;  // it has gone meanwhile
    if (S_ISDIR(status.st_mode)) {
      if (!m_hasOutputDirectory || idOf(status) != m_outputDirectory) walk(path, below);
      return;
    }
    // A file is met again where the directories of the command line overlap.
    const bool isMetAgain = status.st_nlink == 1 && m_seen.count(idOf(status)) != 0;
    if (!S_ISREG(status.st_mode) || isMetAgain || !isWanted(path.filename().string())) return;
    std::string error;
    if (inspectInput(path.string(), status, error)) {
      keep({path.string(), below.string(), status});
    } else {
      m_console.report(error);
      m_found.hasMissing = true;
    }
  }

  bool isWanted(const std::string& name) const {
    const std::string& backup = m_options.backupSuffix;
    if (!backup.empty() && std::string_view(name).ends_with(backup)) return false;
    return m_options.includes.empty() ||
           std::any_of(m_options.includes.begin(), m_options.includes.end(),
                       [&](const std::string& pattern) {
                         return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
                       });
  }

  const Options& m_options;
  Console& m_console;
  bool m_hasOutputDirectory = false;
  FileId m_outputDirectory;
  std::set<FileId> m_seen;
  Inputs m_found;
};

}  // namespace

Inputs findInputs(const Options& options, Console& console) {
  Finder finder(options, console);
  for (const std::string& name : options.inputs) finder.add(name);
  return finder.take();
}

}  // namespace tool
