// list_names [NAME]...: all encodings with their names, or what the given names mean.
#include <iostream>

#include "encconv/encconv.h"

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::optional<int> number = encconv::find_code_page(argv[i]);
    std::cout << argv[i] << ": ";
    if (number) {
      std::cout << *number << "\n";
    } else {
      std::cout << "not known\n";
    }
  }
  if (argc > 1) return 0;
  for (const encconv::CodePage& page : encconv::code_pages()) {
    std::cout << page.number << " " << page.name << " (" << page.description << ")";
    for (const std::string_view alias : page.aliases) std::cout << " " << alias;
    std::cout << "\n";
  }
  return 0;
}
