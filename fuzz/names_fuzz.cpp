// Charset names: the look-up, the list and the conversions by name. The text is a name, a filter
// and input at once.
#include "encoding/code_page_list.h"
#include "encoding/encoding_convert.h"
#include "fuzz/fuzz_support.h"
#include "support/charset_naming.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  StringBuffer buffer;
  buffer.append(name.c_str());
  const std::string_view upToNul = buffer.getString();
  const int codePage = CharsetNaming::codePageOf(upToNul);
  check(CharsetNaming::GetCodePage(buffer, nullptr) == codePage, "one meaning for all callers");
  check(codePage == 0 || streamCodePage(upToNul) != 0, "streams know all names");
  if (codePage != 0) check(CharsetNaming::find(codePage) != nullptr, "what is named is listed");
  CharsetNaming::codePageOf(name);
  for (std::size_t i = size % 8; i < streamCodePages().size(); i += 8) {
    codePageMatches(streamCodePages()[i], name);
  }
  const std::size_t half = name.size() / 2;
  containsName(std::string_view(name).substr(half), std::string_view(name).substr(0, half));

  LogBase log;
  EncodingConvert converter;
  DataBuffer out, byNumber;
  StringBuffer utf8;
  utf8.append("utf-8");
  const bool ok =
      converter.ChConvert(buffer, utf8, data, static_cast<unsigned int>(size), out, log, false);
  check(codePage != 0 || (!ok && out.getSize() == 0), "an unknown name is refused");
  if (codePage == 0) return 0;
  converter.EncConvert(codePage, 65001, data, static_cast<unsigned int>(size), byNumber, log);
  check(viewOf(out) == viewOf(byNumber), "the name means the number");
  return 0;
}
