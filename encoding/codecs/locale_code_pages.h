// The code pages that Windows pairs with a locale.
#ifndef ENCODING_CODECS_LOCALE_CODE_PAGES_H_
#define ENCODING_CODECS_LOCALE_CODE_PAGES_H_

#include <string_view>

struct LocaleCodePages {
  int ansi;
  int oem;
};

// Of a locale name, language[_territory][.codeset][@modifier]. The ANSI page is the codeset, or
// where that is absent or not known the one that Windows gives the language. The OEM page is the
// one that Windows gives the language. A UTF-8 codeset is both. A locale of no known language
// counts as "C", which has 1252 and 437. Any thread may call; nothing allocates.
LocaleCodePages localeCodePagesOf(std::string_view locale);
// Of the system. On Windows what it says itself; elsewhere those of the locale that the environment
// names: the first of LC_ALL, LC_CTYPE and LANG that is not empty; without one, of "C". Asked on
// each call, which must not overlap a change of the environment.
LocaleCodePages localeCodePages();

#endif  // ENCODING_CODECS_LOCALE_CODE_PAGES_H_
