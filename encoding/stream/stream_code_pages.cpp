// The code pages that streams convert.
#include "encoding/stream/stream_code_pages.h"

#include <algorithm>

#include "support/charset_naming.h"

namespace {

constexpr std::string_view kHzAliases[] = {"hz", "1052936"};
constexpr CodePageInfo kHz = {
    kCodePageHz, "hz-gb-2312", kHzAliases, "stateful", "Chinese simplified, HZ (RFC 1843)",
    true,        true};

// Whether two names are the same but for case and for what is neither letter nor digit.
bool isSameName(std::string_view a, std::string_view b) {
  const auto fold = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  const auto isPart = [&](char c) {
    const char folded = fold(c);
    return (folded >= 'a' && folded <= 'z') || (folded >= '0' && folded <= '9');
  };
  while (true) {
    while (!a.empty() && !isPart(a.front())) a.remove_prefix(1);
    while (!b.empty() && !isPart(b.front())) b.remove_prefix(1);
    if (a.empty() || b.empty()) return a.empty() && b.empty();
    if (fold(a.front()) != fold(b.front())) return false;
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
}

}  // namespace

int streamCodePage(std::string_view name) {
  const int codePage = CharsetNaming::codePageOf(name);
  if (codePage != 0) return codePage;
  const bool isHz = isSameName(name, kHz.preferredName) ||
                    std::ranges::any_of(kHz.aliases, [&](std::string_view alias) {
                      return isSameName(name, alias);
                    });
  return isHz ? kCodePageHz : 0;
}

bool isStreamCodePage(int codePage) {
  for (std::size_t i = 0; i < streamCodePageCount(); ++i) {
    if (streamCodePageAt(i).codePage == codePage) return true;
  }
  return false;
}

std::size_t streamCodePageCount() { return codePageCount() + 1; }

CodePageInfo streamCodePageAt(std::size_t index) {
  return index < codePageCount() ? codePageAt(index) : kHz;
}
