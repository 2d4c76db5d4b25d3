#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <random>

#include "apps/encconv/system/files.h"
#include "apps/encconv/system/windows_errors.h"
#include "apps/encconv/system/windows_names.h"
#include "apps/encconv/system/windows_text.h"

namespace tool::files {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A handle that is closed in the end.
class Handle {
 public:
  explicit Handle(HANDLE handle) : m_handle(handle) {}
  ~Handle() {
    if (isOpen()) CloseHandle(m_handle);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return m_handle; }
  HANDLE give() { return std::exchange(m_handle, INVALID_HANDLE_VALUE); }

 private:
  HANDLE m_handle;
};

// A directory can be opened only with the flag for backups.
HANDLE openHandle(const std::wstring& name, DWORD access, DWORD flags = 0) {
  return CreateFileW(name.c_str(), access, kShareAll, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
}

HANDLE handleOf(int fd) {
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(fd));
  // What the runtime has for a standard stream that the process was started without.
  const auto none = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-2));
  return handle == none ? INVALID_HANDLE_VALUE : handle;
}

int descriptorOf(HANDLE opened, int flags) {
  Handle handle(opened);
  if (!handle.isOpen()) {
    failWithLastError();
    return -1;
  }
  const int fd = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle.get()),
                                 flags | _O_BINARY | _O_NOINHERIT);
  if (fd >= 0) handle.give();
  return fd;
}

FileTime timeOf(const FILETIME& time) {
  // Steps of 100 ns from the year 1601 on.
  constexpr std::int64_t kSteps = 10'000'000;
  constexpr std::int64_t kFrom1601 = 11'644'473'600;
  const auto steps =
      static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  return {steps / kSteps - kFrom1601, steps % kSteps * 100};
}

FILETIME timeOf(const FileTime& time) {
  const auto steps = static_cast<std::uint64_t>((time.seconds + 11'644'473'600) * 10'000'000 +
                                                time.nanoseconds / 100);
  return {static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
}

bool getStatus(HANDLE handle, FileStatus& status) {
  status = {};
  SetLastError(NO_ERROR);
  const DWORD type = GetFileType(handle);
  if (type == FILE_TYPE_UNKNOWN && GetLastError() != NO_ERROR) return failWithLastError();
  if (type != FILE_TYPE_DISK) return true;
  BY_HANDLE_FILE_INFORMATION found = {};
  if (GetFileInformationByHandle(handle, &found) == 0) return failWithLastError();
  const bool isDirectory = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  status.kind = isDirectory ? FileKind::kDirectory : FileKind::kRegular;
  status.size =
      static_cast<std::int64_t>(std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow);
  status.id = {found.dwVolumeSerialNumber,
               std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow};
  status.links = found.nNumberOfLinks;
  status.accessed = timeOf(found.ftLastAccessTime);
  status.modified = timeOf(found.ftLastWriteTime);
  return true;
}

bool getStatus(const std::string& name, FileStatus& status, DWORD flags) {
  const std::wstring wide = longName(name);
  if (isDevice(wide)) {
    status = {};
    return true;
  }
  const Handle handle(openHandle(wide, FILE_READ_ATTRIBUTES, flags));
  if (!handle.isOpen()) return failWithLastError();
  return getStatus(handle.get(), status);
}

bool canOpen(const std::string& name, DWORD access) {
  const std::wstring wide = longName(name);
  return isDevice(wide) || Handle(openHandle(wide, access)).isOpen() || failWithLastError();
}

bool setDeletion(int fd, bool isDeleted) {
  FILE_DISPOSITION_INFO disposition = {};
  disposition.DeleteFile = isDeleted ? TRUE : FALSE;
  return SetFileInformationByHandle(handleOf(fd), FileDispositionInfo, &disposition,
                                    sizeof disposition) != 0 ||
         failWithLastError();
}

std::string randomLetters() {
  static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::string letters;
  for (int i = 0; i < 6; ++i) letters += kLetters[random() % (sizeof kLetters - 1)];
  return letters;
}

std::ptrdiff_t readHandle(HANDLE handle, std::span<unsigned char> buffer, OVERLAPPED* place) {
  DWORD got = 0;
  const auto size = static_cast<DWORD>(std::min<std::size_t>(buffer.size(), 1u << 30));
  if (ReadFile(handle, buffer.data(), size, &got, place) != 0) {
    return static_cast<std::ptrdiff_t>(got);
  }
  // The writer of a pipe has gone, or the file ends here.
  if (GetLastError() == ERROR_BROKEN_PIPE || GetLastError() == ERROR_HANDLE_EOF) return 0;
  failWithLastError();
  return -1;
}

}  // namespace

bool getStatus(int fd, FileStatus& status) { return getStatus(handleOf(fd), status); }

bool getStatus(const std::string& name, FileStatus& status) { return getStatus(name, status, 0); }

bool getStatusOfLink(const std::string& name, FileStatus& status) {
  if (!getStatus(name, status, FILE_FLAG_OPEN_REPARSE_POINT)) return false;
  // Of what is looked at in another way than files and directories, only links lead elsewhere.
  if (isLink(longName(name))) status.kind = FileKind::kLink;
  return true;
}

bool isReadable(const std::string& name) { return canOpen(name, GENERIC_READ); }

bool isWritable(const std::string& name) {
  const DWORD attributes = GetFileAttributesW(longName(name).c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    errno = EACCES;
    return false;
  }
  return canOpen(name, GENERIC_WRITE);
}

int openToRead(const std::string& name) {
  return descriptorOf(openHandle(longName(name), GENERIC_READ), _O_RDONLY);
}

int openToWrite(const std::string& name) {
  return descriptorOf(openHandle(longName(name), GENERIC_WRITE), _O_WRONLY);
}

int openTemporary(const std::string& path, std::string& temporary) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    temporary = path + "." + randomLetters();
    const HANDLE handle =
        CreateFileW(longName(temporary).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, kShareAll,
                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_EXISTS) continue;
    const int fd = descriptorOf(handle, _O_RDWR);
    // Gone with the handle, even when the process is ended; a file system that cannot do that
    // leaves the file behind then.
    if (fd >= 0) setDeletion(fd, true);
    if (fd < 0) temporary.clear();
    return fd;
  }
  temporary.clear();
  errno = EEXIST;
  return -1;
}

bool release(int fd) { return setDeletion(fd, false) || errno == ENOSYS; }

void close(int fd) { _close(fd); }

bool closeWritten(int fd) { return _close(fd) == 0; }

std::ptrdiff_t read(int fd, std::span<unsigned char> buffer) {
  return readHandle(handleOf(fd), buffer, nullptr);
}

std::ptrdiff_t readAt(int fd, std::span<unsigned char> buffer, std::int64_t offset) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return readHandle(handleOf(fd), buffer, &place);
}

std::ptrdiff_t write(int fd, std::string_view bytes) {
  DWORD written = 0;
  const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 30));
  if (WriteFile(handleOf(fd), bytes.data(), size, &written, nullptr) == 0) {
    failWithLastError();
    return -1;
  }
  // A pipe that does not wait takes nothing when it is full.
  if (written == 0 && size != 0) {
    errno = ENOSPC;
    return -1;
  }
  return static_cast<std::ptrdiff_t>(written);
}

bool writeText(int fd, std::string_view text) {
  if (isTerminal(fd)) {
    constexpr std::size_t kMost = 8192;  // larger ones may be refused
    const std::wstring units = toWide(text);
    for (std::wstring_view rest = units; !rest.empty();) {
      DWORD written = 0;
      const auto count = static_cast<DWORD>(std::min(rest.size(), kMost));
      if (WriteConsoleW(handleOf(fd), rest.data(), count, &written, nullptr) == 0 || written == 0) {
        return failWithLastError();
      }
      rest.remove_prefix(written);
    }
    return true;
  }
  while (!text.empty()) {
    const std::ptrdiff_t written = write(fd, text);
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool isTerminal(int fd) {
  DWORD mode = 0;
  return GetConsoleMode(handleOf(fd), &mode) != 0;
}

bool flush(int fd) { return FlushFileBuffers(handleOf(fd)) != 0 || failWithLastError(); }

bool setTimes(int fd, const FileStatus& status) {
  const FILETIME accessed = timeOf(status.accessed);
  const FILETIME modified = timeOf(status.modified);
  return SetFileTime(handleOf(fd), nullptr, &accessed, &modified) != 0 || failWithLastError();
}

// It has those that its folder gives to new files.
bool setDefaultRights(int) { return true; }

// replace() keeps them.
std::string copyAttributes(const std::string&, const FileStatus&, int) { return {}; }

bool resolve(const std::string& name, std::string& resolved) {
  const Handle handle(openHandle(longName(name), FILE_READ_ATTRIBUTES));
  if (!handle.isOpen()) return failWithLastError();
  std::wstring path(256, 0);
  DWORD length = 0;
  for (;;) {
    const auto room = static_cast<DWORD>(path.size());
    length = GetFinalPathNameByHandleW(handle.get(), path.data(), room, FILE_NAME_NORMALIZED);
    if (length < room) break;
    path.resize(length);
  }
  path.resize(length);
  // Some file systems do not tell.
  resolved = length == 0 ? name : shownName(path);
  return true;
}

// Where a link that leads nowhere was made to lead, is not followed.
bool followLinks(std::string&) { return true; }

bool isSamePlace(const std::string& one, const std::string& other) {
  const std::wstring a = fullName(toWide(one));
  const std::wstring b = fullName(toWide(other));
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                              static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

bool addName(const std::string& from, const std::string& to) {
  return CreateHardLinkW(longName(to).c_str(), longName(from).c_str(), nullptr) != 0 ||
         failWithLastError();
}

bool rename(const std::string& from, const std::string& to) {
  return MoveFileExW(longName(from).c_str(), longName(to).c_str(), MOVEFILE_WRITE_THROUGH) != 0 ||
         failWithLastError();
}

bool replace(const std::string& temporary, const std::string& path, bool mustKeep) {
  const std::wstring from = longName(temporary);
  const std::wstring to = longName(path);
  const DWORD flags =
      mustKeep ? 0 : REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS;
  if (ReplaceFileW(to.c_str(), from.c_str(), nullptr, flags, nullptr, nullptr) != 0) return true;
  DWORD moveFlags = MOVEFILE_WRITE_THROUGH;
  switch (GetLastError()) {
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT_2:
      break;  // the old file has gone already
    case ERROR_FILE_NOT_FOUND:
      moveFlags |= MOVEFILE_REPLACE_EXISTING;
      break;
    case ERROR_NOT_SUPPORTED:
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_PARAMETER:
      // A file system that cannot do it, and keeps nothing that could be lost.
      if (mustKeep) return failWithLastError();
      moveFlags |= MOVEFILE_REPLACE_EXISTING;
      break;
    default:
      return failWithLastError();
  }
  return MoveFileExW(from.c_str(), to.c_str(), moveFlags) != 0 || failWithLastError();
}

bool remove(const std::string& name) {
  return DeleteFileW(longName(name).c_str()) != 0 || failWithLastError();
}

bool makeDirectory(const std::string& name) {
  FileStatus status;
  if (getStatus(name, status) && status.isDirectory()) return true;
  return CreateDirectoryW(longName(name).c_str(), nullptr) != 0 || failWithLastError();
}

bool makeDirectories(const std::string& name) {
  FileStatus status;
  if (name.empty() || (getStatus(name, status) && status.isDirectory())) return true;
  const std::string parent = parentOf(name);
  return (parent == name || makeDirectories(parent)) &&
         (makeDirectory(name) || (errno == EEXIST && makeDirectory(name)));
}

std::size_t usableJobs(std::size_t wanted) { return wanted; }

}  // namespace tool::files
