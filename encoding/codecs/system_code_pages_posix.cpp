#include <cstdlib>

#include "encoding/codecs/locale_code_pages.h"

LocaleCodePages localeCodePages() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): only a change of the environment would clash.
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return localeCodePagesOf(value);
  }
  return localeCodePagesOf({});
}
