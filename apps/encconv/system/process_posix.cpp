#include <langinfo.h>
#include <locale.h>

#include <cstdlib>
#include <string_view>

#include "apps/encconv/system/process.h"

namespace tool {

std::vector<std::string> programArguments(int argc, char** argv) {
  return std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc);
}

std::string systemEncodingName() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", static_cast<locale_t>(nullptr));
  if (locale != static_cast<locale_t>(nullptr)) {
    std::string name = nl_langinfo_l(CODESET, locale);
    freelocale(locale);
    return name;
  }
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): one thread
    if (value == nullptr || *value == '\0') continue;
    std::string_view name = value;
    name = name.substr(0, name.find('@'));
    const std::size_t dot = name.find('.');
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
  }
  return {};
}

// A terminal has one encoding, that of the locale.
ConsoleCodePage::ConsoleCodePage(int, int) {}
ConsoleCodePage::~ConsoleCodePage() = default;

}  // namespace tool
