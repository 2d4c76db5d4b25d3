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
// how names match. A few names mean something else to streams and everything above them
// (encoding/code_page_list.h). Any thread may call; nothing allocates.
class CharsetNaming {
 public:
  // The code page number of a charset name, or 0 when the name is not known. log may be null.
  static int GetCodePage(const StringBuffer& name, LogBase* /*log*/) {
    return codePageOf({name.getString(), name.getSize()});
  }
  // The same for callers without a StringBuffer.
  static int codePageOf(std::string_view name) {
    const EncodingRow* const row = findEngineEncoding(name);
    return row == nullptr ? 0 : row->number;
  }

  // All encodings that the engine converts, in ascending order of code page, by the names that they
  // have for streams too.
  static std::span<const CharsetNames> all() { return engineEncodingNames(); }
  // The names of one of them, or null for any other number.
  static const CharsetNames* find(int codePage) {
    const auto names = all();
    const auto found = std::ranges::lower_bound(names, codePage, {}, &CharsetNames::codePage);
    return found != names.end() && found->codePage == codePage ? &*found : nullptr;
  }
};

#endif  // SUPPORT_CHARSET_NAMING_H_
