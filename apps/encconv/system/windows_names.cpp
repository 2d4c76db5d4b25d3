#include "apps/encconv/system/windows_names.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "apps/encconv/system/files.h"
#include "apps/encconv/system/windows_errors.h"
#include "apps/encconv/system/windows_text.h"

namespace tool::files {
namespace {

constexpr std::wstring_view kLong = LR"(\\?\)";
constexpr std::wstring_view kLongShare = LR"(\\?\UNC\)";
constexpr std::wstring_view kDevice = LR"(\\.\)";

bool isSeparator(char c) { return c == '/' || c == '\\'; }

// Where the last part of a name begins.
std::size_t lastPartOf(std::string_view name) {
  const std::size_t before = name.find_last_of("/\\:");
  return before == std::string_view::npos ? 0 : before + 1;
}

// The end of what findFirst() found.
class Search {
 public:
  explicit Search(const std::wstring& pattern)
      : m_handle(FindFirstFileW(pattern.c_str(), &m_found)) {}
  ~Search() {
    if (isOpen()) FindClose(m_handle);
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  bool goOn() { return FindNextFileW(m_handle, &m_found) != 0; }
  const WIN32_FIND_DATAW& found() const { return m_found; }

 private:
  WIN32_FIND_DATAW m_found = {};
  HANDLE m_handle;
};

// Letters of both cases are one, as in names.
std::wstring folded(const std::string& text) {
  std::wstring wide = toWide(text);
  CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return wide;
}

// Whether [...] at the front of pattern has c; goes behind it. Without an end it is no set.
bool takeSet(std::wstring_view& pattern, wchar_t c, bool& has) {
  std::size_t at = 1;
  const bool isInverse = at < pattern.size() && (pattern[at] == L'!' || pattern[at] == L'^');
  if (isInverse) ++at;
  const std::size_t end = pattern.find(L']', at + 1);
  if (end == std::wstring_view::npos) return false;
  has = false;
  for (; at < end; ++at) {
    const bool isRange = at + 2 < end && pattern[at + 1] == L'-';
    has = has || (c >= pattern[at] && c <= pattern[isRange ? at + 2 : at]);
    if (isRange) at += 2;
  }
  has = has != isInverse;
  pattern.remove_prefix(end + 1);
  return true;
}

bool fits(std::wstring_view pattern, std::wstring_view name) {
  while (!pattern.empty()) {
    if (pattern[0] == L'*') {
      pattern.remove_prefix(1);
      for (std::size_t i = 0; i <= name.size(); ++i) {
        if (fits(pattern, name.substr(i))) return true;
      }
      return false;
    }
    if (name.empty()) return false;
    bool has = pattern[0] == L'?' || pattern[0] == name[0];
    if (pattern[0] != L'[' || !takeSet(pattern, name[0], has)) pattern.remove_prefix(1);
    if (!has) return false;
    name.remove_prefix(1);
  }
  return name.empty();
}

}  // namespace

std::wstring fullName(const std::wstring& name) {
  const DWORD room = GetFullPathNameW(name.c_str(), 0, nullptr, nullptr);
  std::wstring full(room, 0);
  full.resize(room == 0 ? 0 : GetFullPathNameW(name.c_str(), room, full.data(), nullptr));
  return full.empty() ? name : full;
}

std::wstring longName(const std::string& name) {
  // What the oldest calls take is 260 units with the end, and for a directory 12 less.
  constexpr std::size_t kMostShort = 247;
  const std::wstring wide = toWide(name);
  if (wide.starts_with(kLong) || wide.starts_with(kDevice)) return wide;
  const std::wstring full = fullName(wide);
  if (full.size() <= kMostShort) return full.starts_with(kDevice) ? full : wide;
  return full.starts_with(LR"(\\)") ? std::wstring(kLongShare) + full.substr(2)
                                    : std::wstring(kLong) + full;
}

std::string shownName(const std::wstring& name) {
  if (name.starts_with(kLongShare)) return fromWide(LR"(\\)" + name.substr(kLongShare.size()));
  return fromWide(name.starts_with(kLong) ? name.substr(kLong.size()) : name);
}

bool isDevice(const std::wstring& name) { return name.starts_with(kDevice); }

bool isLink(const std::wstring& name) {
  const Search search(name);
  return search.isOpen() && (search.found().dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (search.found().dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
          search.found().dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

bool listDirectory(const std::string& name, std::vector<std::string>& names) {
  Search search(longName(join(name, "*")));
  if (!search.isOpen()) return GetLastError() == ERROR_FILE_NOT_FOUND || failWithLastError();
  do {
    const std::string found = fromWide(search.found().cFileName);
    if (found != "." && found != "..") names.push_back(found);
  } while (search.goOn());
  return GetLastError() == ERROR_NO_MORE_FILES || failWithLastError();
}

std::string lastPart(const std::string& name) { return name.substr(lastPartOf(name)); }

std::string parentOf(const std::string& name) {
  std::size_t end = lastPartOf(name);
  // The separator goes, but for that of a root.
  while (end > 1 && isSeparator(name[end - 1]) && name[end - 2] != ':' &&
         !isSeparator(name[end - 2])) {
    --end;
  }
  return name.substr(0, end);
}

std::string join(const std::string& directory, const std::string& name) {
  if (directory.empty() || isSeparator(directory.back()) || directory.back() == ':') {
    return directory + name;
  }
  return directory + '\\' + name;
}

bool matches(const std::string& pattern, const std::string& name) {
  return fits(folded(pattern), folded(name));
}

std::vector<std::string> expandPattern(const std::string& name) {
  const std::size_t last = lastPartOf(name);
  if (name.find_first_of("*?", last) == std::string::npos) return {name};
  const std::string directory = name.substr(0, last);
  std::vector<std::string> found;
  std::vector<std::string> names;
  listDirectory(directory.empty() ? "." : directory, names);
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return folded(a) < folded(b); });
  for (const std::string& one : names) {
    if (matches(name.substr(last), one)) found.push_back(directory + one);
  }
  if (found.empty()) found.push_back(name);
  return found;
}

}  // namespace tool::files
