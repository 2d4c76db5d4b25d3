// table_text: turns a table text into pairs of codes and units, and back.
//
//   table_text print SOURCE.cpp             the pairs of a table text's source file
//   table_text pack PAIRS.txt [SOURCE.cpp]  the source file of the table text of those pairs
//
// Writes to standard output, or to the file named last. docs/code-pages.md describes the forms.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "tools/table_text_format.h"

namespace {

constexpr char kUsage[] =
    "usage: table_text print SOURCE.cpp [PAIRS.txt]\n"
    "       table_text pack PAIRS.txt [SOURCE.cpp]\n";

std::string convert(const std::string& command, const std::string& input, std::string& output) {
  PairTable table;
  if (command == "print") {
    std::string problem = parseSource(input, table);
    if (problem.empty()) output = printPairs(table);
    return problem;
  }
  std::string image, text;
  std::string problem = parsePairs(input, table);
  if (problem.empty()) problem = packImage(table, image);
  if (problem.empty()) problem = packText(image, table.isStored, text);
  if (problem.empty()) output = printSource(table, text);
  return problem;
}

bool write(const std::string& output, const char* path) {
  if (path == nullptr) return std::fwrite(output.data(), 1, output.size(), stdout) == output.size();
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << output;
  file.close();
  return !file.fail();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (argc < 3 || argc > 4 || (command != "print" && command != "pack")) {
    std::cerr << kUsage;
    return 2;
  }
  std::ifstream file(argv[2], std::ios::binary);
  const std::string input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) {
    std::cerr << "table_text: cannot read " << argv[2] << "\n";
    return 1;
  }
  std::string output;
  const std::string problem = convert(command, input, output);
  if (!problem.empty()) {
    std::cerr << "table_text: " << argv[2] << ": " << problem << "\n";
    return 1;
  }
  if (!write(output, argc == 4 ? argv[3] : nullptr)) {
    std::cerr << "table_text: cannot write the output\n";
    return 1;
  }
  return 0;
}
