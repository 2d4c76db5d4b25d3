#include "apps/encconv/file_io.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

#include "apps/encconv/console.h"
#include "apps/encconv/system/temporary_files.h"

namespace tool {
namespace {

// "NAME: what went wrong", from errno.
std::string lineFor(const std::string& label) {
  return label + ": " + std::generic_category().message(errno);
}

std::string labelOfInput(const std::string& name) {
  return name == "-" ? "standard input" : printable(name);
}

}  // namespace

InputFile::~InputFile() {
  if (m_fd > files::kStandardInput) files::close(m_fd);
}

bool inspectInput(const std::string& name, FileStatus& status, std::string& error) {
  const bool isStandard = name == "-";
  const std::string label = labelOfInput(name);
  const bool isThere = isStandard ? files::getStatus(files::kStandardInput, status)
                                  : files::getStatus(name, status) && files::isReadable(name);
  if (!isThere) {
    error = lineFor(label);
  } else if (status.isDirectory()) {
    error = label + ": is a directory";
  }
  return error.empty();
}

bool InputFile::open(const std::string& name) {
  m_name = name;
  m_label = labelOfInput(name);
  m_fd = name == "-" ? files::kStandardInput : files::openToRead(name);
  if (m_fd < 0 || !files::getStatus(m_fd, m_status)) {
    m_error = lineFor(m_label);
    return false;
  }
  if (m_status.isDirectory()) {
    m_error = m_label + ": is a directory";
    return false;
  }
  return true;
}

bool InputFile::read(std::span<unsigned char> buffer, std::size_t& count) {
  const std::ptrdiff_t got = files::read(m_fd, buffer);
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
  if (m_ownsFd && m_fd >= 0) files::close(m_fd);
  if (!m_temporary.empty()) {
    files::remove(m_temporary);
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
    m_fd = files::kStandardOutput;
    m_exists = files::getStatus(m_fd, m_status);
    return m_exists || fail();
  }
  m_label = printable(name);
  m_path = name;
  m_exists = files::getStatus(name, m_status);
  if (!m_exists && errno != ENOENT) return fail();
  if (m_exists && m_status.isDirectory()) return fail("is a directory");
  if (m_exists && !m_status.isRegular()) {
    m_fd = files::openToWrite(name);
    m_ownsFd = true;
    return m_fd >= 0 || fail();
  }
  // As /dev/stdout, say, behind which others write as well, who would not see a new file.
  for (const int stream : {files::kStandardOutput, files::kStandardError}) {
    FileStatus status;
    if (m_isInPlace || !files::getStatus(stream, status) || !isFile(status)) continue;
    m_fd = stream;
    return true;
  }
  // A rename would also replace a file that must not be written.
  const bool isFound = m_exists ? files::isWritable(name) && files::resolve(name, m_path)
                                : files::followLinks(m_path);
  return isFound ? openTemporary() : fail();
}

bool OutputFile::openInPlace(const std::string& name, const std::string& backupSuffix) {
  m_isInPlace = true;
  m_backupSuffix = backupSuffix;
  if (!open(name)) return false;
  if (!m_exists || m_temporary.empty()) return fail("is not a regular file");
  if (m_status.links > 1) {
    return fail("is one of " + std::to_string(m_status.links) +
                " hard links to a file, which would be parted; write to another file with -o");
  }
  FileStatus status;
  if (!backupSuffix.empty() && files::getStatusOfLink(m_path + backupSuffix, status)) {
    return fail(printable(m_path + backupSuffix) + " exists already and is not overwritten");
  }
  return true;
}

bool OutputFile::openTemporary() {
  m_fd = files::openTemporary(m_path, m_temporary);
  if (m_fd < 0) return fail();
  m_ownsFd = true;
  m_cleanupSlot = watchTemporary(m_temporary.c_str());
  if (!m_exists) return files::setDefaultRights(m_fd) || fail();
  const std::string lost = files::copyAttributes(m_path, m_status, m_fd);
  return lost.empty() || !m_isInPlace || fail("cannot keep its " + lost);
}

bool OutputFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::ptrdiff_t written = files::write(m_fd, bytes);
    if (written < 0) return fail();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OutputFile::writeText(std::string_view text) { return files::writeText(m_fd, text) || fail(); }

bool OutputFile::keepTimes(const FileStatus& status) {
  return files::setTimes(m_fd, status) || fail();
}

bool OutputFile::backUp() {
  const std::string backup = m_path + m_backupSuffix;
  if (files::addName(m_path, backup)) return true;
  // A file system without hard links: for a moment there is no file under the name.
  if (errno != EEXIST) {
    m_isMoved = files::rename(m_path, backup);
    if (m_isMoved) return true;
  }
  if (errno != EEXIST) return fail();
  return fail(printable(backup) + " exists already and is not overwritten");
}

// Whether the temporary file holds the same bytes as the original.
bool OutputFile::hasOriginalText() {
  FileStatus status;
  if (!files::getStatus(m_fd, status) || status.size != m_status.size) return false;
  const int original = files::openToRead(m_path);
  if (original < 0) return false;
  constexpr std::size_t kStep = 64u << 10;
  std::vector<unsigned char> buffers(2 * kStep);
  const std::span<unsigned char> one = std::span(buffers).first(kStep);
  const std::span<unsigned char> other = std::span(buffers).last(kStep);
  bool isSame = true;
  for (std::int64_t at = 0; isSame && at < status.size;) {
    const std::ptrdiff_t got = files::readAt(m_fd, one, at);
    const auto count = static_cast<std::size_t>(std::max<std::ptrdiff_t>(got, 0));
    isSame = got > 0 && files::readAt(original, other.first(count), at) == got &&
             std::equal(one.begin(), one.begin() + got, other.begin());
    at += got;
  }
  files::close(original);
  return isSame;
}

bool OutputFile::isOriginalUntouched() {
  FileStatus now;
  return files::getStatus(m_path, now) && now.id == m_status.id && now.size == m_status.size &&
         now.modified == m_status.modified;
}

bool OutputFile::commit() {
  if (!m_ownsFd) return true;
  if (m_isInPlace) {
    m_isUnchanged = hasOriginalText();
    if (m_isUnchanged) return true;
    if (!isOriginalUntouched()) return fail("was changed meanwhile, and is not replaced");
  }
  const bool isReplacing = !m_temporary.empty();
  // What is replaced must not be lost when the machine stops right after the rename.
  if (m_exists && isReplacing && !files::flush(m_fd)) return fail();
  if (isReplacing && !files::release(m_fd)) return fail();
  const int fd = m_fd;
  m_fd = -1;
  if (!files::closeWritten(fd)) return fail();
  if (!isReplacing) return true;
  if (m_exists && !m_backupSuffix.empty() && !backUp()) return false;
  if (!files::replace(m_temporary, m_path, m_isInPlace)) {
    fail();
    // Where the backup has taken the file itself, that gets its name back.
    if (m_isMoved) files::rename(m_path + m_backupSuffix, m_path);
    return false;
  }
  forgetTemporary(m_cleanupSlot);
  m_temporary.clear();
  return true;
}

bool OutputFile::isAt(const std::string& name) const {
  FileStatus status;
  if (name.empty() || name == "-") {
    return files::getStatus(files::kStandardOutput, status) && isFile(status);
  }
  if (m_exists || m_path.empty()) return files::getStatus(name, status) && isFile(status);
  std::string path = name;
  return files::followLinks(path) && files::isSamePlace(path, m_path);
}

bool OutputFile::isFile(const FileStatus& status) const {
  return m_exists && m_status.isRegular() && m_status.id == status.id;
}

}  // namespace tool
