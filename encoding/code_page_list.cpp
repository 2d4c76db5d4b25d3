#include "encoding/code_page_list.h"

#include <algorithm>

std::string_view kindName(CharsetKind kind) {
  switch (kind) {
    case CharsetKind::kUnicode:
      return "unicode";
    case CharsetKind::kSingleByte:
      return "single-byte";
    case CharsetKind::kDoubleByte:
      return "double-byte";
    case CharsetKind::kMultiByte:
      return "multi-byte";
    case CharsetKind::kStateful:
      return "stateful";
  }
  return "";
}

bool codePageMatches(const CharsetNames& page, std::string_view filter) {
  if (filter.empty()) return true;
  const bool isNumber = filter.find_first_not_of("0123456789") == std::string_view::npos;
  const EncodingRow* const numbered = isNumber ? findStreamEncoding(filter) : nullptr;
  if (numbered != nullptr) return page.codePage == numbered->number;
  const auto contains = [&](std::string_view text) { return containsName(text, filter); };
  return contains(page.preferredName) || contains(kindName(page.kind)) ||
         contains(page.description) || std::ranges::any_of(page.aliases, contains);
}
