// The forms of a table text: pairs, table image, text and C++ source (docs/code-pages.md).
#ifndef TOOLS_TABLE_TEXT_FORMAT_H_
#define TOOLS_TABLE_TEXT_FORMAT_H_

#include <cstdint>
#include <string>
#include <vector>

struct CodePair {
  std::uint16_t code;  // one byte, or lead byte * 256 + trail byte
  std::uint16_t unit;  // UTF-16 code unit
};

struct UnitPair {
  std::uint16_t unit;         // one that a code page lacks
  std::uint16_t replacement;  // and the one that is written for it
};

// One table as a maintainer sees it.
struct PairTable {
  int codePage = 0;
  int baseCodePage = 0;     // of a table of differences: what they are applied over; else 0
  std::string name;         // of the text's constant, or of the function that appends its pieces
  bool isAscii = false;     // 00 to 7F are the identity and not listed
  bool isStored = false;    // the image stands in the text as it is, not compressed
  bool isOnlyRead = false;  // codes of units that are written as another code: these may repeat
  std::vector<std::uint16_t> removals;  // differences only: units without a code
  std::vector<CodePair> singles;
  std::vector<CodePair> doubles;
  bool isBestFit = false;  // the table has replacements and nothing else
  std::vector<UnitPair> replacements;
};

// Each returns an empty string for success, else what is wrong with the input, with the line
// number where there is one. The result is then not to be used.
std::string parsePairs(const std::string& pairs, PairTable& table);
std::string packImage(const PairTable& table, std::string& image);
std::string unpackImage(const std::string& image, PairTable& table);
std::string packText(const std::string& image, bool isStored, std::string& text);
std::string unpackText(const std::string& text, std::string& image);
std::string parseSource(const std::string& source, PairTable& table);

// parsePairs reads what printPairs writes.
std::string printPairs(const PairTable& table);
// The source file of a table whose text is given; parseSource reads it.
std::string printSource(const PairTable& table, const std::string& text);

#endif  // TOOLS_TABLE_TEXT_FORMAT_H_
