#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <cerrno>
#include <string_view>
#include <system_error>
#include <vector>

#include "apps/encconv/system/files.h"

namespace tool {
namespace {

std::string because(const std::string& thing) {
  return thing + ": " + std::generic_category().message(errno);
}

std::string copyOwner(const FileStatus& status, int fd) {
  struct stat present = {};
  if (fstat(fd, &present) != 0) return because("owner");
  std::string trouble;
  // Only the superuser can give files away; the group is often possible even then.
  if (present.st_uid != status.owner && fchown(fd, status.owner, static_cast<gid_t>(-1)) != 0) {
    trouble = because("owner");
  }
  if (present.st_gid != status.group && fchown(fd, static_cast<uid_t>(-1), status.group) != 0 &&
      trouble.empty()) {
    trouble = because("group");
  }
  return trouble;
}

#ifdef __linux__

// Access control lists are attributes with this name. A new file may have one from its folder.
constexpr const char* kAccessList = "system.posix_acl_access";

// These follow the text, and the system itself keeps them.
bool isKeptBySystem(std::string_view name) {
  return name == "security.ima" || name == "security.evm";
}

bool readAttribute(const std::string& path, const char* name, std::vector<char>& value) {
  for (;;) {
    const ssize_t size = getxattr(path.c_str(), name, nullptr, 0);
    if (size < 0) return false;
    value.resize(static_cast<std::size_t>(size));
    const ssize_t got = getxattr(path.c_str(), name, value.data(), value.size());
    if (got < 0 && errno == ERANGE) continue;  // it grew meanwhile
    if (got >= 0) value.resize(static_cast<std::size_t>(got));
    return got >= 0;
  }
}

bool hasAttribute(int fd, const char* name, const std::vector<char>& value) {
  std::vector<char> present(value.size());
  const ssize_t got = fgetxattr(fd, name, present.data(), present.size());
  return got >= 0 && static_cast<std::size_t>(got) == value.size() && present == value;
}

std::string describeAttribute(std::string_view name) {
  return name == kAccessList ? "access control list" : "attribute " + std::string(name);
}

std::string copyExtendedAttributes(const std::string& path, int fd) {
  std::vector<char> names;
  const ssize_t size = listxattr(path.c_str(), nullptr, 0);
  if (size > 0) {
    names.resize(static_cast<std::size_t>(size));
    const ssize_t got = listxattr(path.c_str(), names.data(), names.size());
    if (got < 0) return because("extended attributes");
    names.resize(static_cast<std::size_t>(got));
  } else if (size < 0 && errno != ENOTSUP) {
    return because("extended attributes");
  }
  std::string trouble;
  bool hasAccessList = false;
  std::vector<char> value;
  for (std::string_view rest(names.data(), names.size()); !rest.empty();) {
    const char* const name = rest.data();  // each ends with a NUL
    rest.remove_prefix(std::string_view(name).size() + 1);
    hasAccessList = hasAccessList || std::string_view(name) == kAccessList;
    if (isKeptBySystem(name)) continue;
    const bool isCopied =
        readAttribute(path, name, value) &&
        (hasAttribute(fd, name, value) || fsetxattr(fd, name, value.data(), value.size(), 0) == 0);
    if (!isCopied && trouble.empty()) trouble = because(describeAttribute(name));
  }
  if (!hasAccessList && fremovexattr(fd, kAccessList) != 0 && errno != ENODATA &&
      errno != ENOTSUP && trouble.empty()) {
    trouble = because("access rights");
  }
  return trouble;
}

#else

std::string copyExtendedAttributes(const std::string&, int) { return {}; }

#endif

}  // namespace

std::string files::copyAttributes(const std::string& path, const FileStatus& status, int fd) {
  std::string trouble = copyOwner(status, fd);
  const std::string second = copyExtendedAttributes(path, fd);
  if (trouble.empty()) trouble = second;
  // Behind the owner, whose change takes special rights away, and the list, which this completes.
  if (fchmod(fd, status.mode & 07777) != 0 && trouble.empty()) trouble = because("access rights");
  return trouble;
}

}  // namespace tool
