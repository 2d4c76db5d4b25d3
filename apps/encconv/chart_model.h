// A code page as a chart: what each code means, for the printers of text and of pages.
#ifndef APPS_ENCCONV_CHART_MODEL_H_
#define APPS_ENCCONV_CHART_MODEL_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct ChartCell {
  std::u32string text;      // mostly one character; empty: the code means nothing
  bool isReadOnly = false;  // the text is written as another code, or not at all
};

// 256 codes: the single bytes, or those behind the same first bytes.
struct ChartGrid {
  std::string lead;  // these bytes; empty: single bytes
  std::array<ChartCell, 256> cells = {};
};

// A character that is written as a code which reads as something else.
struct WriteOnlyEntry {
  char32_t character = 0;
  std::string bytes;
};

struct Chart {
  int codePage = 0;
  bool hasShifts = false;         // codes of two bytes stand between SO and SI
  bool leavesOutLongest = false;  // there are too many codes of four bytes to show them
  std::vector<ChartGrid> grids;   // the single bytes first, then the longer codes in order
  std::vector<WriteOnlyEntry> writeOnly;
};

// Asks the engine about every code, and every character of the Basic Multilingual Plane and the
// second plane. None when the encoding has no chart: it is a form of Unicode, cannot be read, or
// what its codes mean depends on escape sequences before them.
std::optional<Chart> buildChart(int codePage);

constexpr bool isPrivateUse(char32_t c) { return c >= 0xE000 && c <= 0xF8FF; }

// A short name for characters that show nothing or disturb the line ("NUL", "NBSP"); else null.
const char* invisibleName(char32_t c);
// Marks that stand over or under the character before them.
bool isCombining(char32_t c);
std::string toUtf8(const std::u32string& text);
// "81 40".
std::string hexBytes(const std::string& bytes);

}  // namespace tool

#endif  // APPS_ENCCONV_CHART_MODEL_H_
