// Converts strings, and looks at what could not be converted.
#include <iostream>

#include "encconv/encconv.h"

int main() {
  // Shift_JIS to UTF-8. Without options the first piece that cannot be converted ends it.
  const encconv::Result text = encconv::to_utf8("\x93\xFA\x96\x7B", "shift_jis");
  if (!text) {
    std::cerr << encconv::describe(text.status) << "\n";
    return 1;
  }
  std::cout << text.text << "\n";

  // UTF-8 to a code page that lacks a character: a reference stands in for it, and the result says
  // where that was.
  encconv::Options options;
  options.on_error = encconv::OnError::hex;
  const encconv::Result latin = encconv::from_utf8("1 z\xC5\x82oty", "windows-1252", options);
  std::cout << latin.text << "\n";
  if (latin.first_problem) {
    std::cout << latin.problem_count << " characters had no place, the first at byte "
              << latin.first_problem->offset << "\n";
  }

  // UTF-16 for programs that work in it.
  const encconv::Utf16Result units = encconv::to_utf16("na\xEFve", "windows-1252");
  std::cout << units.text.size() << " units\n";
  return 0;
}
