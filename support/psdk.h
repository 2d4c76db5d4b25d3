// Psdk: the platform's current ANSI and OEM code pages.
#ifndef SUPPORT_PSDK_H_
#define SUPPORT_PSDK_H_

#include "encoding/codecs/locale_code_pages.h"

class Psdk {
 public:
  static int getAnsiCodePage() { return localeCodePages().ansi; }
  static int getOemCodePage() { return localeCodePages().oem; }
};

#endif  // SUPPORT_PSDK_H_
