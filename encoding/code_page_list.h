// The list of code pages: every encoding that the engine converts, with its names and with what can
// be done with it, for listings and for programs that let their users choose.
#ifndef ENCODING_CODE_PAGE_LIST_H_
#define ENCODING_CODE_PAGE_LIST_H_

#include <optional>
#include <span>
#include <string_view>

#include "support/charset_naming.h"

struct CodePageInfo {
  int codePage;
  std::string_view preferredName;  // NUL-terminated, like the other texts static
  std::span<const std::string_view> aliases;
  std::string_view kind;         // "unicode", "single-byte", "double-byte" or "stateful"
  std::string_view description;  // a few words for people
  bool canRead;                  // may be the source of a conversion
  bool canWrite;                 // may be its destination
};

// Any thread may call these; nothing is allocated and no table is built.

// The number of code pages, and the one at an index below it, in ascending order of number.
std::size_t codePageCount();
CodePageInfo codePageAt(std::size_t index);
// The code page that a name or a number written out means, as CharsetNaming finds it.
std::optional<CodePageInfo> findCodePage(std::string_view name);
// Whether a filter selects a code page: it is part of one of its names, of its kind or of its
// description, compared as names are. The number of a code page selects that one only; an empty
// filter selects all.
bool codePageMatches(const CodePageInfo& page, std::string_view filter);

#endif  // ENCODING_CODE_PAGE_LIST_H_
