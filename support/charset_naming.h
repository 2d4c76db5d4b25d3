// CharsetNaming: which code page a charset name means.
#ifndef SUPPORT_CHARSET_NAMING_H_
#define SUPPORT_CHARSET_NAMING_H_

#include <string_view>

#include "support/log_base.h"
#include "support/string_buffer.h"

class CharsetNaming {
 public:
  // The code page number of a charset name, or 0 when the name is not known. log may be null.
  // Any thread may call.
  static int GetCodePage(const StringBuffer& name, LogBase* log);
  // The same for callers without a StringBuffer.
  static int codePageOf(std::string_view name);
};

#endif  // SUPPORT_CHARSET_NAMING_H_
