// The list of code pages: every encoding that can be converted, with its names, for listings and
// for programs that let their users choose.
#ifndef ENCODING_CODE_PAGE_LIST_H_
#define ENCODING_CODE_PAGE_LIST_H_

#include <span>
#include <string_view>

#include "encoding/codecs/encoding_names.h"

// HZ (RFC 1843, "hz-gb-2312") and EUC-JP with JIS X 0212 are converted by streams only.
inline constexpr int kCodePageHz = 1052936;
inline constexpr int kCodePageEucJp = 200954;

// Any thread may call these; nothing is allocated and no table is built.

// What streams convert: the code pages of the engine, and some more. In ascending order of number.
inline std::span<const CharsetNames> streamCodePages() { return encodingNames(); }
// The code page of a charset name or number, 0 when unknown. Some names mean another one than they
// mean to CharsetNaming; docs/differences.md has them.
inline int streamCodePage(std::string_view name) {
  const EncodingRow* const row = findEncoding(name);
  return row == nullptr ? 0 : row->number;
}
// Whether streams convert it. StreamConverter copies text from any other code page to itself.
inline bool isStreamCodePage(int codePage) { return findEncodingRow(codePage) != nullptr; }
// Whether streams write it; some they only read.
inline bool isStreamTarget(int codePage) {
  const EncodingRow* const row = findEncodingRow(codePage);
  return row != nullptr && row->isWritten;
}
// The names of one of them, or null for any other number.
const CharsetNames* findCodePage(int codePage);

// "unicode", "single-byte", "double-byte", "multi-byte" or "stateful"; NUL-terminated.
std::string_view kindName(CharsetKind kind);
// Whether a filter selects a code page: it is part of one of its names, of its kind or of its
// description, compared as names are. The number of a code page selects that one only; an empty
// filter selects all.
bool codePageMatches(const CharsetNames& page, std::string_view filter);

#endif  // ENCODING_CODE_PAGE_LIST_H_
