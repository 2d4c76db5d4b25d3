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
  using Form = CharsetMeaning::Form;
  return {findEncodingRow(meaning.number),
          meaning.form == Form::kMarked || meaning.form == Form::kMarkedUcs2,
          meaning.form == Form::kUcs2 || meaning.form == Form::kMarkedUcs2};
}

Charset findCharset(std::string_view name) {
  for (const CharsetMeaning& meaning : kCharsetMeanings) {
    if (isSameName(name, meaning.name)) return charsetOf(meaning);
  }
  const EncodingRow* const row = findEncoding(name);
  return {row, row != nullptr && row->writesMark, false};
}

void readSuffix(std::string_view suffix, Suffixes& suffixes) {
  if (isSame(suffix, "TRANSLIT")) suffixes.transliterates = true;
  if (isSame(suffix, "IGNORE")) suffixes.ignores = true;
  if (isSame(suffix, "NON_IDENTICAL_DISCARD")) suffixes.discards = true;
}

}  // namespace

CharsetCode parseCode(std::string_view code) {
  CharsetCode parsed;
  // Suffixes stand behind the second slash, and commas or slashes between them.
  std::size_t nameEnd = std::min(code.find('/'), code.size());
  if (const std::size_t second = code.find('/', nameEnd + 1);
      nameEnd < code.size() && second != std::string_view::npos) {
    std::string_view rest = code.substr(second + 1);
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find_first_of("/,"), rest.size());
      std::string_view suffix = rest.substr(0, end);
      while (!suffix.empty() && isSpace(suffix.back())) suffix.remove_suffix(1);
      readSuffix(suffix, parsed.suffixes);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  std::string_view name = code.substr(0, nameEnd);
  while (!name.empty() && (isSpace(name.back()) || name.back() == ',')) name.remove_suffix(1);
  if (name.empty() || isSame(name, "char")) {
    parsed.isOfLocale = true;
    name = nl_langinfo(CODESET);
    // The "C" locale of some systems says nothing.
    if (name.empty()) name = "ASCII";
  }
  parsed.charset = findCharset(name);
  return parsed;
}

std::span<const CharsetMeaning> charsetMeanings() { return kCharsetMeanings; }

std::string_view canonicalName(const Charset& charset, std::string_view name) {
  for (const CharsetMeaning& meaning : kCharsetMeanings) {
    if (isSameName(name, meaning.name)) return meaning.name;
  }
  return charset.row->name;
}

}  // namespace iconv_layer
