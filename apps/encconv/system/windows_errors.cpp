#include "apps/encconv/system/windows_errors.h"

#include <windows.h>

#include <cerrno>

namespace tool {
namespace {

struct Pair {
  DWORD windows;
  int posix;
};

constexpr Pair kPairs[] = {
    {ERROR_FILE_NOT_FOUND, ENOENT},
    {ERROR_PATH_NOT_FOUND, ENOENT},
    {ERROR_INVALID_NAME, ENOENT},
    {ERROR_BAD_PATHNAME, ENOENT},
    {ERROR_BAD_NETPATH, ENOENT},
    {ERROR_BAD_NET_NAME, ENOENT},
    {ERROR_INVALID_DRIVE, ENOENT},
    {ERROR_NOT_READY, ENXIO},
    {ERROR_ACCESS_DENIED, EACCES},
    {ERROR_SHARING_VIOLATION, EACCES},
    {ERROR_LOCK_VIOLATION, EACCES},
    {ERROR_PRIVILEGE_NOT_HELD, EACCES},
    {ERROR_WRITE_PROTECT, EROFS},
    {ERROR_DELETE_PENDING, EACCES},
    {ERROR_CANT_ACCESS_FILE, EACCES},
    {ERROR_FILE_EXISTS, EEXIST},
    {ERROR_ALREADY_EXISTS, EEXIST},
    {ERROR_DIRECTORY, ENOTDIR},
    {ERROR_DISK_FULL, ENOSPC},
    {ERROR_HANDLE_DISK_FULL, ENOSPC},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE},
    {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    {ERROR_OUTOFMEMORY, ENOMEM},
    {ERROR_INVALID_HANDLE, EBADF},
    {ERROR_BROKEN_PIPE, EPIPE},
    {ERROR_NO_DATA, EPIPE},
    {ERROR_PIPE_NOT_CONNECTED, EPIPE},
    {ERROR_PIPE_BUSY, EBUSY},
    {ERROR_BUSY, EBUSY},
    {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
    {ERROR_CANT_RESOLVE_FILENAME, ELOOP},
    {ERROR_NOT_SAME_DEVICE, EXDEV},
    {ERROR_TOO_MANY_LINKS, EMLINK},
    {ERROR_NOT_SUPPORTED, ENOSYS},
    {ERROR_INVALID_FUNCTION, ENOSYS},
};

}  // namespace

bool failWithLastError() {
  const DWORD error = GetLastError();
  errno = EIO;
  for (const Pair& pair : kPairs) {
    if (pair.windows == error) errno = pair.posix;
  }
  return false;
}

}  // namespace tool
