#include "apps/encconv/inputs.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "apps/encconv/file_io.h"

namespace tool {
namespace {

class Finder {
 public:
  Finder(const Options& options, Console& console) : m_options(options), m_console(console) {
    FileStatus status;
    m_hasOutputDirectory =
        !options.outputDirectory.empty() && files::getStatus(options.outputDirectory, status);
    if (m_hasOutputDirectory) m_outputDirectory = status.id;
  }

  void add(const std::string& name) {
    FileStatus status;
    std::string error;
    if (name != "-" && files::getStatus(name, status) && status.isDirectory()) {
      if (m_options.recursive) {
        walk(name, "");
      } else {
        m_console.report(printable(name) + ": is a directory; --recursive converts what is in it");
        m_found.hasDirectory = true;
      }
    } else if (inspectInput(name, status, error)) {
      keep({name, files::lastPart(name), status});
    } else {
      m_console.report(error);
      m_found.hasMissing = true;
    }
  }

  Inputs take() { return std::move(m_found); }

 private:
  void keep(Input input) {
    m_seen.insert(input.status.id);
    m_console.expectInput(input.status.isRegular() ? input.status.size : -1);
    m_found.files.push_back(std::move(input));
  }

  // Only one directory is open at a time, however deep they lie.
  void walk(const std::string& directory, const std::string& below) {
    std::vector<std::string> names;
    if (!files::listDirectory(directory, names)) {
      m_console.report(directory + ": " + std::generic_category().message(errno));
      m_found.hasMissing = true;
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
      visit(files::join(directory, name), files::join(below, name), name);
    }
  }

  void visit(const std::string& path, const std::string& below, const std::string& name) {
    FileStatus status;
    if (!files::getStatusOfLink(path, status)) return;  // it has gone meanwhile
    if (status.isDirectory()) {
      if (!m_hasOutputDirectory || status.id != m_outputDirectory) walk(path, below);
      return;
    }
    // A file is met again where the directories of the command line overlap.
    const bool isMetAgain = status.links == 1 && m_seen.count(status.id) != 0;
    if (!status.isRegular() || isMetAgain || !isWanted(name)) return;
    std::string error;
    if (inspectInput(path, status, error)) {
      keep({path, below, status});
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
                       [&](const std::string& pattern) { return files::matches(pattern, name); });
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
  for (const std::string& pattern : options.inputs) {
    for (const std::string& name : files::expandPattern(pattern)) finder.add(name);
  }
  return finder.take();
}

}  // namespace tool
