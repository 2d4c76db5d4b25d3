#include <windows.h>

#include "encoding/codecs/locale_code_pages.h"

LocaleCodePages localeCodePages() {
  return {static_cast<int>(GetACP()), static_cast<int>(GetOEMCP())};
}
