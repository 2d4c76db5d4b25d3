// Psdk: the platform's current ANSI and OEM code pages.
#ifndef SUPPORT_PSDK_H_
#define SUPPORT_PSDK_H_

#include <string_view>

class Psdk {
 public:
  // Read from the environment (the first of LC_ALL, LC_CTYPE and LANG that is not empty) on each
  // call; nothing set gives 1252 and 437. Must not overlap a change of the environment.
  static int getAnsiCodePage();
  static int getOemCodePage();

  struct CodePages {
    int ansi;
    int oem;
  };
  // The code pages of a locale name, language[_territory][.codeset][@modifier]. The ANSI page is
  // the codeset, or where that is absent or not known the one that Windows gives the language. The
  // OEM page is the one that Windows gives the language. A UTF-8 codeset is both. A locale of no
  // known language counts as "C", which has 1252 and 437. Any thread may call; nothing allocates.
  static CodePages codePagesOf(std::string_view locale);
};

#endif  // SUPPORT_PSDK_H_
