#include "apps/encconv/file_io.h"

#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>

#include "apps/encconv/temporary_files.h"

namespace tool {
namespace {

// "NAME: what went wrong", from errno.
std::string lineFor(const std::string& label) {
  return label + ": " + std::generic_category().message(errno);
}

// The permissions that a new file gets. The process has one thread when this is asked first.
mode_t defaultMode() {
  static const mode_t mode = [] {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666 & ~mask);
  }();
  return mode;
}

}  // namespace

InputFile::~InputFile() {
  if (m_fd > STDIN_FILENO) close(m_fd);
}

bool inspectInput(const std::string& name, struct stat& status, std::string& error) {
  const bool isStandard = name == "-";
  const std::string label = isStandard ? "standard input" : name;
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
  m_label = name == "-" ? "standard input" : name;
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

bool OutputFile::open(const std::string& name) {
  if (name.empty()) {
    m_label = "standard output";
    m_fd = STDOUT_FILENO;
    m_exists = fstat(m_fd, &m_status) == 0;
    return m_exists || fail();
  }
  m_label = name;
  m_path = name;
  m_exists = stat(name.c_str(), &m_status) == 0;
  if (!m_exists && errno != ENOENT) return fail();
  if (m_exists && S_ISDIR(m_status.st_mode)) {
    m_error = m_label + ": is a directory";
    return false;
  }
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
  }
  return openTemporary(m_exists ? m_status.st_mode & 07777 : defaultMode());
}

bool OutputFile::openTemporary(mode_t mode) {
  std::string path = m_path + ".XXXXXX";
  m_fd = mkostemp(path.data(), O_CLOEXEC);
  if (m_fd < 0) return fail();
  m_ownsFd = true;
  m_temporary = path;
  m_cleanupSlot = watchTemporary(m_temporary.c_str());
  if (m_exists && fchown(m_fd, m_status.st_uid, m_status.st_gid) != 0) {
    // Only the superuser can give files away; the mode below still fits the one who asked.
    errno = 0;
  }
  return fchmod(m_fd, mode) == 0 || fail();
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
  if (unlink(backup.c_str()) != 0 && errno != ENOENT) return fail();
  if (link(m_path.c_str(), backup.c_str()) == 0) return true;
  // A file system without hard links: for a moment there is no file under the name.
  return rename(m_path.c_str(), backup.c_str()) == 0 || fail();
}

bool OutputFile::commit() {
  if (!m_ownsFd) return true;
  // What is replaced must not be lost when the machine stops right after the rename.
  if (m_exists && !m_temporary.empty() && fsync(m_fd) != 0) return fail();
  const int fd = m_fd;
  m_fd = -1;
  if (close(fd) != 0) return fail();
  if (m_temporary.empty()) return true;
  if (m_exists && !m_backupSuffix.empty() && !backUp()) return false;
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) return fail();
  forgetTemporary(m_cleanupSlot);
  m_temporary.clear();
  return true;
}

bool OutputFile::isFile(const struct stat& status) const {
  return m_exists && S_ISREG(m_status.st_mode) && m_status.st_dev == status.st_dev &&
         m_status.st_ino == status.st_ino;
}

}  // namespace tool
