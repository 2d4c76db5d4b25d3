// CharsetNaming: which code page a charset name means.
#ifndef SUPPORT_CHARSET_NAMING_H_
#define SUPPORT_CHARSET_NAMING_H_

#include <algorithm>
#include <span>
#include <string_view>

#include "encoding/codecs/encoding_names.h"
#include "support/log_base.h"
#include "support/string_buffer.h"

// Every name is one of an encoding that the engine converts; encoding/codecs/encoding_names.h says
// how names match. Any thread may call; nothing allocates.
class CharsetNaming {
 public:
  // The code page number of a charset name, or 0 when the name is not known. log may be null.
  static int GetCodePage(const StringBuffer& name, LogBase* /*log*/) {
    return codePageOf({name.getString(), name.getSize()});
  }
  // The same for callers without a StringBuffer.
  static int codePageOf(std::string_view name) {
    const EncodingRow* const row = findEngineEncoding(name);
    return row != nullptr ? row->number : 0;
  }

  // All encodings that the engine converts, in ascending order of code page.
  static std::span<const CharsetNames> all() { return engineNames(); }
  // The names of one of them, or null for any other number.
  static const CharsetNames* find(int codePage) {
    const auto names = all();
    const auto found = std::ranges::lower_bound(names, codePage, {}, &CharsetNames::codePage);
    return found != names.end() && found->codePage == codePage ? &*found : nullptr;
  }
};

#endif  // SUPPORT_CHARSET_NAMING_H_
