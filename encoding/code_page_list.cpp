#include "encoding/code_page_list.h"

#include <algorithm>

#include "encoding/tables/code_pages.h"

namespace {

std::string_view kindName(CharsetKind kind) {
  switch (kind) {
    case CharsetKind::kUnicode:
      return "unicode";
    case CharsetKind::kSingleByte:
      return "single-byte";
    case CharsetKind::kDoubleByte:
      return "double-byte";
    case CharsetKind::kStateful:
      return "stateful";
  }
  return "";
}

CodePageInfo infoOf(const CharsetNames& names) {
  // The encodings without a table have codecs for both directions.
  const CodePageRow* const row = findCodePageRow(names.codePage);
  const bool converts = row == nullptr || row->isDispatched;
  return {names.codePage,    names.preferredName,
          names.aliases,     kindName(names.kind),
          names.description, converts,
          converts};
}

}  // namespace

std::size_t codePageCount() { return CharsetNaming::all().size(); }

CodePageInfo codePageAt(std::size_t index) { return infoOf(CharsetNaming::all()[index]); }

std::optional<CodePageInfo> findCodePage(std::string_view name) {
  const CharsetNames* const names = CharsetNaming::find(CharsetNaming::codePageOf(name));
  if (names == nullptr) return std::nullopt;
  return infoOf(*names);
}

bool codePageMatches(const CodePageInfo& page, std::string_view filter) {
  if (filter.empty()) return true;
  const bool isNumber = filter.find_first_not_of("0123456789") == std::string_view::npos;
  const int number = isNumber ? CharsetNaming::codePageOf(filter) : 0;
  if (number != 0) return page.codePage == number;
  const auto contains = [&](std::string_view text) {
    return CharsetNaming::containsName(text, filter);
  };
  return contains(page.preferredName) || contains(page.kind) || contains(page.description) ||
         std::ranges::any_of(page.aliases, contains);
}
