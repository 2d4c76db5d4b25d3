#include "iconv/charset.h"

#include <langinfo.h>

#include <algorithm>
#include <cstddef>

#include "encoding/codecs/encoding_names.h"
#include "iconv/charset_list.h"

namespace iconv_layer {
namespace {

constexpr char toUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr bool isSame(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, toUpper, toUpper);
}

// As names are compared everywhere: by letters and digits only.
constexpr bool isNamePart(char c) {
  return (c >= '0' && c <= '9') || (toUpper(c) >= 'A' && toUpper(c) <= 'Z');
}
constexpr bool isSameName(std::string_view a, std::string_view b) {
  std::size_t i = 0, j = 0;
  while (true) {
    while (i < a.size() && !isNamePart(a[i])) ++i;
    while (j < b.size() && !isNamePart(b[j])) ++j;
    if (i == a.size() || j == b.size()) return i == a.size() && j == b.size();
    if (toUpper(a[i++]) != toUpper(b[j++])) return false;
  }
}

Charset charsetOf(const CharsetMeaning& meaning) {
  Charset charset;
  charset.row = findEncodingRow(meaning.number);
  charset.hasMark = meaning.form == Form::kMarked || meaning.form == Form::kMarkedUcs2;
  charset.isUcs2 = meaning.form == Form::kUcs2 || meaning.form == Form::kMarkedUcs2;
  charset.isWide = meaning.form == Form::kWide;
  charset.isStrict = meaning.form == Form::kStrict;
  return charset;
}

const CharsetMeaning* findMeaning(std::string_view name) {
  for (const CharsetMeaning& meaning : kCharsetMeanings) {
    if (isSameName(name, meaning.name)) return &meaning;
    std::string_view names = meaning.aliases;
    while (!names.empty()) {
      const std::size_t end = std::min(names.find(' '), names.size());
      if (isSameName(name, names.substr(0, end))) return &meaning;
      names.remove_prefix(std::min(end + 1, names.size()));
    }
  }
  return nullptr;
}

Charset findCharset(std::string_view name) {
  if (const CharsetMeaning* const meaning = findMeaning(name)) return charsetOf(*meaning);
  Charset charset;
  charset.row = findEncoding(name);
  if (charset.row == nullptr) return charset;
  charset.hasMark = charset.row->writesMark;
  charset.writesOneWay = std::find(std::begin(kWritesOneWay), std::end(kWritesOneWay),
                                   charset.row->number) != std::end(kWritesOneWay);
  return charset;
}

void readSuffix(std::string_view suffix, Suffixes& suffixes) {
  if (isSame(suffix, "TRANSLIT")) suffixes.transliterates = true;
  if (isSame(suffix, "IGNORE")) suffixes.ignores = true;
  if (isSame(suffix, "NON_IDENTICAL_DISCARD")) suffixes.discards = true;
}

}  // namespace

CharsetCode parseCode(std::string_view code) {
  CharsetCode parsed;
  // Suffixes stand behind two slashes, and commas or slashes between them.
  const std::size_t nameEnd = std::min(code.find("//"), code.size());
  std::string_view rest = code.substr(std::min(nameEnd + 2, code.size()));
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of("/,"), rest.size());
    std::string_view suffix = rest.substr(0, end);
    while (!suffix.empty() && isSpace(suffix.back())) suffix.remove_suffix(1);
    readSuffix(suffix, parsed.suffixes);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  std::string_view name = code.substr(0, nameEnd);
  while (!name.empty() && (isSpace(name.back()) || name.back() == ',' || name.back() == '/'))
    name.remove_suffix(1);
  if (name.empty() || isSame(name, "char")) {
    parsed.isOfLocale = true;
    name = nl_langinfo(CODESET);
    // The "C" locale of some systems says nothing.
    if (name.empty()) name = "ASCII";
  }
  parsed.charset = findCharset(name);
  return parsed;
}

const char* canonicalName(const char* name) {
  if (const CharsetMeaning* const meaning = findMeaning(name)) return meaning->name;
  const EncodingRow* const row = findEncoding(name);
  return row == nullptr ? name : row->name;
}

}  // namespace iconv_layer
