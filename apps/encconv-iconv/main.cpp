// encconv-iconv: what iconv(1) does, by libencconv_iconv.
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "apps/encconv-iconv/command_line.h"
#include "apps/encconv-iconv/conversion.h"
#include "apps/encconv-iconv/spellings.h"
#include "encconv/iconv.h"

namespace {

// Names in the order in which their numbers count as numbers.
struct ByVersion {
  bool operator()(const std::string& one, const std::string& other) const {
    return strverscmp(one.c_str(), other.c_str()) < 0;
  }
};
using Names = std::set<std::string, ByVersion>;

int addNames(unsigned int count, const char* const* names, void* data) {
  for (unsigned int i = 0; i < count; ++i) {
    std::string name = names[i];
    std::ranges::transform(name, name.begin(), [](char c) {
      return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    static_cast<Names*>(data)->insert(name);
  }
  return 0;
}

// For people, with commas between the names.
void printInLines(const Names& names) {
  constexpr std::size_t kWidth = 77;
  std::puts(
      "The following list contains all the coded character sets known.  This does\n"
      "not necessarily mean that all combinations of these names can be used for\n"
      "the FROM and TO command line parameters.  One coded character set can be\n"
      "listed with several different names (aliases).\n");
  std::string line(1, ' ');
  for (const std::string& name : names) {
    if (line.size() + 1 + name.size() > kWidth) {
      std::puts(line.c_str());
      line.assign(1, ' ');
    }
    line += " " + name + (name == *names.rbegin() ? "" : ",");
  }
  std::puts(line.c_str());
}

void listNames() {
  Names names;
  iconvlist(addNames, &names);
  std::istringstream others{std::string(iconv_command::kOtherSpellings)};
  names.insert(std::istream_iterator<std::string>(others), {});
  if (isatty(STDOUT_FILENO) != 0) {
    printInLines(names);
    return;
  }
  // Two slashes are in each line.
  for (const std::string& name : names) {
    std::printf("%s%s\n", name.c_str(), name.find('/') == std::string::npos ? "//" : "/");
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");  // NOLINT(concurrency-mt-unsafe): nothing runs beside it
  iconv_command::Options options;
  int status = 0;
  if (!iconv_command::readCommandLine(argc, argv, options, status)) return status;
  if (options.lists) {
    listNames();
    return 0;
  }
  iconv_command::Conversion conversion(options);
  return conversion.run();
}
