#include "apps/encconv/file_io.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "apps/encconv/console.h"
#include "apps/encconv/file_attributes.h"
#include "apps/encconv/temporary_files.h"

namespace tool {
namespace {

// "NAME: what went wrong", from errno.
std::string lineFor(const std::string& label) {
  return label + ": " + std::generic_category().message(errno);
}

std::string labelOfInput(const std::string& name) {
  return name == "-" ? "standard input" : printable(name);
}

// The name behind all symbolic links, of which the last may point to nothing yet. False, with
// errno, when they go round in a circle.
bool followLinks(std::string& path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) return true;  // no link
    path = (std::filesystem::path(path).parent_path() / target).string();
  }
  errno = ELOOP;
  return false;
}

// Gives a file another name, which nothing has yet; false with EEXIST when something has.
bool renameToNew(const char* from, const char* to) {
#ifdef RENAME_NOREPLACE
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
#endif
  struct stat status = {};
  if (lstat(to, &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return rename(from, to) == 0;
}

bool isSameTime(const struct timespec& a, const struct timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// The permissions that a new file gets; asked while the process has one thread, since it can be
// asked only by setting it.
const mode_t kDefaultMode = [] {
  const mode_t mask = umask(0);
  umask(mask);
  return static_cast<mode_t>(0666 & ~mask);
}();

}  // namespace

InputFile::~InputFile() {
  if (m_fd > STDIN_FILENO) close(m_fd);
}

bool inspectInput(const std::string& name, struct stat& status, std::string& error) {
  const bool isStandard = name == "-";
  const std::string label = labelOfInput(name);
  const bool isThere = isStandard
                           ? fstat(STDIN_FILENO, &status) == 0
                           : stat(name.c_str(), &status) == 0 && access(name.c_str(), R_OK) == 0;
  if (!isThere) {
    error = lineFor(label);
  } else if (S_ISDIR(status.st_mode)) {
    error = label + ": is a directory";
  }
  return error.empty();
}

bool InputFile::open(const std::string& name) {
  m_name = name;
  m_label = labelOfInput(name);
  m_fd = name == "-" ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (m_fd < 0 || fstat(m_fd, &m_status) != 0) {
    m_error = lineFor(m_label);
    return false;
  }
  if (S_ISDIR(m_status.st_mode)) {
    m_error = m_label + ": is a directory";
    return false;
  }
  return true;
}

bool InputFile::read(std::span<unsigned char> buffer, std::size_t& count) {
  ssize_t got = 0;
  do {
    got = ::read(m_fd, buffer.data(), buffer.size());
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    m_error = lineFor(m_label);
    return false;
  }
  count = static_cast<std::size_t>(got);
  return true;
}

bool InputFile::readFully(std::span<unsigned char> buffer, std::size_t& count) {
  count = 0;
  while (count < buffer.size()) {
    std::size_t got = 0;
    if (!read(buffer.subspan(count), got)) return false;
    if (got == 0) break;
    count += got;
  }
  return true;
}

OutputFile::~OutputFile() {
  if (m_ownsFd && m_fd >= 0) close(m_fd);
  if (!m_temporary.empty()) {
    unlink(m_temporary.c_str());
    forgetTemporary(m_cleanupSlot);
  }
}

bool OutputFile::fail() {
  m_error = lineFor(m_label);
  return false;
}

bool OutputFile::fail(const std::string& reason) {
  m_error = m_label + ": " + reason;
  return false;
}

bool OutputFile::open(const std::string& name) {
  if (name.empty() || name == "-") {
    m_label = "standard output";
    m_fd = STDOUT_FILENO;
    m_exists = fstat(m_fd, &m_status) == 0;
    return m_exists || fail();
  }
  m_label = printable(name);
  m_path = name;
  m_exists = stat(name.c_str(), &m_status) == 0;
  if (!m_exists && errno != ENOENT) return fail();
  if (m_exists && S_ISDIR(m_status.st_mode)) return fail("is a directory");
  if (m_exists && !S_ISREG(m_status.st_mode)) {
    m_fd = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    m_ownsFd = true;
    return m_fd >= 0 || fail();
  }
  if (m_exists) {
    // A rename would also replace a file that must not be written.
    if (access(name.c_str(), W_OK) != 0) return fail();
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(name.c_str(), nullptr), free);
    if (resolved == nullptr) return fail();
    m_path = resolved.get();
  } else if (!followLinks(m_path)) {
    return fail();
  }
  return openTemporary();
}

bool OutputFile::openInPlace(const std::string& name, const std::string& backupSuffix) {
  m_isInPlace = true;
  m_backupSuffix = backupSuffix;
  if (!open(name)) return false;
  if (!m_exists || m_temporary.empty()) return fail("is not a regular file");
  if (m_status.st_nlink > 1) {
    return fail("is one of " + std::to_string(m_status.st_nlink) +
                " hard links to a file, which would be parted; write to another file with -o");
  }
  struct stat status = {};
  if (!backupSuffix.empty() && lstat((m_path + backupSuffix).c_str(), &status) == 0) {
    return fail(printable(m_path + backupSuffix) + " exists already and is not overwritten");
  }
  return true;
}

bool OutputFile::openTemporary() {
  std::string path = m_path + ".XXXXXX";
  m_fd = mkostemp(path.data(), O_CLOEXEC);
  if (m_fd < 0) return fail();
  m_ownsFd = true;
  m_temporary = path;
  m_cleanupSlot = watchTemporary(m_temporary.c_str());
  if (!m_exists) return fchmod(m_fd, kDefaultMode) == 0 || fail();
  const std::string lost = copyAttributes(m_path, m_status, m_fd);
  return lost.empty() || !m_isInPlace || fail("cannot keep its " + lost);
}

bool OutputFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(m_fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return fail();
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OutputFile::keepTimes(const struct stat& status) {
  const struct timespec times[2] = {status.st_atim, status.st_mtim};
  return futimens(m_fd, times) == 0 || fail();
}

bool OutputFile::backUp() {
  const std::string backup = m_path + m_backupSuffix;
  if (link(m_path.c_str(), backup.c_str()) == 0) return true;
  // A file system without hard links: for a moment there is no file under the name.
  if (errno != EEXIST) {
    m_isMoved = renameToNew(m_path.c_str(), backup.c_str());
    if (m_isMoved) return true;
  }
  if (errno != EEXIST) return fail();
  return fail(printable(backup) + " exists already and is not overwritten");
}

// Whether the temporary file holds the same bytes as the original.
bool OutputFile::hasOriginalText() {
  struct stat status = {};
  if (fstat(m_fd, &status) != 0 || status.st_size != m_status.st_size) return false;
  const int original = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
  if (original < 0) return false;
  constexpr std::size_t kStep = 64u << 10;
  std::vector<char> buffers(2 * kStep);
  char* const one = buffers.data();
  char* const other = one + kStep;
  bool isSame = true;
  for (off_t at = 0; isSame && at < status.st_size;) {
    const ssize_t got = pread(m_fd, one, kStep, at);
    isSame = got > 0 && pread(original, other, static_cast<std::size_t>(got), at) == got &&
             std::memcmp(one, other, static_cast<std::size_t>(got)) == 0;
    at += got;
  }
  close(original);
  return isSame;
}

bool OutputFile::isOriginalUntouched() {
  struct stat now = {};
  return stat(m_path.c_str(), &now) == 0 && now.st_dev == m_status.st_dev &&
         now.st_ino == m_status.st_ino && now.st_size == m_status.st_size &&
         isSameTime(now.st_mtim, m_status.st_mtim);
}

bool OutputFile::commit() {
  if (!m_ownsFd) return true;
  if (m_isInPlace) {
    m_isUnchanged = hasOriginalText();
    if (m_isUnchanged) return true;
    if (!isOriginalUntouched()) return fail("was changed meanwhile, and is not replaced");
  }
  // What is replaced must not be lost when the machine stops right after the rename.
  if (m_exists && !m_temporary.empty() && fsync(m_fd) != 0) return fail();
  const int fd = m_fd;
  m_fd = -1;
  if (close(fd) != 0) return fail();
  if (m_temporary.empty()) return true;
  if (m_exists && !m_backupSuffix.empty() && !backUp()) return false;
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) {
    fail();
    // Where the backup has taken the file itself, that gets its name back.
    if (m_isMoved) renameToNew((m_path + m_backupSuffix).c_str(), m_path.c_str());
    return false;
  }
  forgetTemporary(m_cleanupSlot);
  m_temporary.clear();
  return true;
}

bool OutputFile::isAt(const std::string& name) const {
  struct stat status = {};
  if (name.empty() || name == "-") return fstat(STDOUT_FILENO, &status) == 0 && isFile(status);
  if (m_exists || m_path.empty()) return stat(name.c_str(), &status) == 0 && isFile(status);
  std::string path = name;
  std::error_code error;
  const auto absolute = [&](const std::string& file) {
    return std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
  };
  return followLinks(path) && absolute(path) == absolute(m_path);
}

bool OutputFile::isFile(const struct stat& status) const {
  return m_exists && S_ISREG(m_status.st_mode) && m_status.st_dev == status.st_dev &&
         m_status.st_ino == status.st_ino;
}

}  // namespace tool
