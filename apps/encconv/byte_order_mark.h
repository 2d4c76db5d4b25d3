// The byte order marks of the Unicode encodings.
#ifndef APPS_ENCCONV_BYTE_ORDER_MARK_H_
#define APPS_ENCCONV_BYTE_ORDER_MARK_H_

#include <string_view>

namespace tool {

// The mark of a code page; empty for a code page without one.
constexpr std::string_view byteOrderMark(int codePage) {
  using namespace std::string_view_literals;
  struct Row {
    int codePage;
    std::string_view mark;
  };
  constexpr Row kRows[] = {
      {1200, "\xFF\xFE"sv},          {1201, "\xFE\xFF"sv},      {12000, "\xFF\xFE\x00\x00"sv},
      {12001, "\x00\x00\xFE\xFF"sv}, {65001, "\xEF\xBB\xBF"sv}, {65005, "\xFF\xFE\x00\x00"sv},
      {65006, "\x00\x00\xFE\xFF"sv},
  };
  for (const Row& row : kRows) {
    if (row.codePage == codePage) return row.mark;
  }
  return {};
}

}  // namespace tool

#endif  // APPS_ENCCONV_BYTE_ORDER_MARK_H_
