#include "apps/encconv/system/files.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace tool::files {
namespace {

namespace fs = std::filesystem;

FileKind kindOf(mode_t mode) {
  return S_ISREG(mode)   ? FileKind::kRegular
         : S_ISDIR(mode) ? FileKind::kDirectory
         : S_ISLNK(mode) ? FileKind::kLink
                         : FileKind::kOther;
}

FileStatus statusOf(const struct stat& found) {
  FileStatus status;
  status.kind = kindOf(found.st_mode);
  status.size = found.st_size;
  status.id = {found.st_dev, found.st_ino};
  status.links = found.st_nlink;
  status.accessed = {found.st_atim.tv_sec, found.st_atim.tv_nsec};
  status.modified = {found.st_mtim.tv_sec, found.st_mtim.tv_nsec};
  status.owner = found.st_uid;
  status.group = found.st_gid;
  status.mode = found.st_mode;
  return status;
}

// Makes a system call again that a signal interrupted.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// The permissions that a new file gets; asked while the process has one thread, since it can be
// asked only by setting it.
const mode_t kDefaultMode = [] {
  const mode_t mask = umask(0);
  umask(mask);
  return static_cast<mode_t>(0666 & ~mask);
}();

}  // namespace

bool getStatus(int fd, FileStatus& status) {
  struct stat found = {};
  if (fstat(fd, &found) != 0) return false;
  status = statusOf(found);
  return true;
}

bool getStatus(const std::string& name, FileStatus& status) {
  struct stat found = {};
  if (stat(name.c_str(), &found) != 0) return false;
  status = statusOf(found);
  return true;
}

bool getStatusOfLink(const std::string& name, FileStatus& status) {
  struct stat found = {};
  if (lstat(name.c_str(), &found) != 0) return false;
  status = statusOf(found);
  return true;
}

bool isReadable(const std::string& name) { return access(name.c_str(), R_OK) == 0; }

bool isWritable(const std::string& name) { return access(name.c_str(), W_OK) == 0; }

// Opening a pipe waits for its other end.
int openToRead(const std::string& name) {
  return uninterrupted([&] { return ::open(name.c_str(), O_RDONLY | O_CLOEXEC); });
}

int openToWrite(const std::string& name) {
  return uninterrupted([&] { return ::open(name.c_str(), O_WRONLY | O_CLOEXEC); });
}

int openTemporary(const std::string& path, std::string& temporary) {
  temporary = path + ".XXXXXX";
  const int fd = mkostemp(temporary.data(), O_CLOEXEC);
  if (fd < 0) temporary.clear();
  return fd;
}

// Signals are what would end the process; temporary_files_posix.cpp sees to them.
bool release(int) { return true; }

void close(int fd) { ::close(fd); }

bool closeWritten(int fd) { return ::close(fd) == 0; }

std::ptrdiff_t read(int fd, std::span<unsigned char> buffer) {
  return uninterrupted([&] { return ::read(fd, buffer.data(), buffer.size()); });
}

std::ptrdiff_t readAt(int fd, std::span<unsigned char> buffer, std::int64_t offset) {
  return uninterrupted([&] { return pread(fd, buffer.data(), buffer.size(), offset); });
}

std::ptrdiff_t write(int fd, std::string_view bytes) {
  return uninterrupted([&] { return ::write(fd, bytes.data(), bytes.size()); });
}

bool writeText(int fd, std::string_view text) {
  while (!text.empty()) {
    const std::ptrdiff_t written = write(fd, text);
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool isTerminal(int fd) { return isatty(fd) == 1; }

bool flush(int fd) { return fsync(fd) == 0; }

bool setTimes(int fd, const FileStatus& status) {
  const auto asSystem = [](const FileTime& time) {
    struct timespec converted = {};
    converted.tv_sec = static_cast<time_t>(time.seconds);
    converted.tv_nsec = static_cast<long>(time.nanoseconds);
    return converted;
  };
  const struct timespec times[2] = {asSystem(status.accessed), asSystem(status.modified)};
  return futimens(fd, times) == 0;
}

bool setDefaultRights(int fd) { return fchmod(fd, kDefaultMode) == 0; }

bool resolve(const std::string& name, std::string& resolved) {
  const std::unique_ptr<char, void (*)(void*)> found(realpath(name.c_str(), nullptr), free);
  if (found == nullptr) return false;
  resolved = found.get();
  return true;
}

bool followLinks(std::string& name) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    const fs::path target = fs::read_symlink(name, error);
    if (error) return true;  // no link
    name = (fs::path(name).parent_path() / target).string();
  }
  errno = ELOOP;
  return false;
}

bool isSamePlace(const std::string& one, const std::string& other) {
  std::error_code error;
  const auto absolute = [&](const std::string& name) {
    return fs::weakly_canonical(fs::absolute(name, error), error);
  };
  return absolute(one) == absolute(other);
}

bool addName(const std::string& from, const std::string& to) {
  return link(from.c_str(), to.c_str()) == 0;
}

bool rename(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
#endif
  struct stat status = {};
  if (lstat(to.c_str(), &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool replace(const std::string& temporary, const std::string& path, bool) {
  return std::rename(temporary.c_str(), path.c_str()) == 0;
}

bool remove(const std::string& name) { return unlink(name.c_str()) == 0; }

bool makeDirectory(const std::string& name) {
  FileStatus status;
  if (getStatus(name, status) && status.isDirectory()) return true;
  return mkdir(name.c_str(), 0777) == 0;
}

bool makeDirectories(const std::string& name) {
  std::error_code error;
  fs::create_directories(name, error);
  errno = error.value();
  return !error;
}

bool listDirectory(const std::string& name, std::vector<std::string>& names) {
  std::error_code error;
  fs::directory_iterator entry(name, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  errno = error.value();
  return !error;
}

std::string lastPart(const std::string& name) { return fs::path(name).filename().string(); }

std::string parentOf(const std::string& name) { return fs::path(name).parent_path().string(); }

std::string join(const std::string& directory, const std::string& name) {
  return (fs::path(directory) / name).string();
}

bool matches(const std::string& pattern, const std::string& name) {
  return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

std::vector<std::string> expandPattern(const std::string& name) { return {name}; }

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
  if (limit.rlim_cur < kOthers + kOfOneJob) return 1;
  return static_cast<std::size_t>((limit.rlim_cur - kOthers) / kOfOneJob);
}

}  // namespace tool::files
