// Psdk: the platform's current ANSI and OEM code pages.
#ifndef SUPPORT_PSDK_H_
#define SUPPORT_PSDK_H_

class Psdk {
 public:
  // Read from the environment (LC_ALL, then LC_CTYPE, then LANG) on each call; nothing set gives
  // 1252 and 437. Must not overlap a change of the environment.
  static int getAnsiCodePage();
  static int getOemCodePage();
};

#endif  // SUPPORT_PSDK_H_
