#include <algorithm>
#include <string>

#include "apps/encconv/chart_command.h"
#include "apps/encconv/error_report.h"

namespace tool {
namespace {

// So that the widest line, of a lead byte, has 80 columns at most.
constexpr std::size_t kCellWidth = 4;
constexpr char kDigits[] = "0123456789ABCDEF";

// Columns on a terminal.
std::size_t widthOf(char32_t c) {
  static constexpr char32_t kWide[][2] = {{0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF},
                                          {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFE30, 0xFE6F},
                                          {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x20000, 0x3FFFD}};
  return std::any_of(std::begin(kWide), std::end(kWide),
                     [c](const auto& range) { return c >= range[0] && c <= range[1]; })
             ? 2
             : 1;
}

bool isRightToLeft(char32_t c) {
  return (c >= 0x0590 && c <= 0x08FF) || (c >= 0xFB1D && c <= 0xFDFF) ||
         (c >= 0xFE70 && c <= 0xFEFE);
}

std::string cellText(const ChartCell& cell) {
  if (cell.text.empty()) return std::string(kCellWidth, ' ');
  const char32_t first = cell.text[0];
  std::string text;
  std::size_t width = 0;
  const char* const name = cell.text.size() == 1 ? invisibleName(first) : nullptr;
  if (name != nullptr) {
    // One column stays free, for what stands beside or for the sign of one way.
    text = std::string_view(name).substr(0, kCellWidth - 1);
    width = text.size();
  } else {
    // A combining mark is shown on a dotted circle; a mark of direction keeps the cells in order.
    if (isCombining(first)) text += "\u25CC";
    text += toUtf8(cell.text);
    if (isRightToLeft(first)) text += "\u200E";
    width = widthOf(first);
    for (const char32_t c : cell.text.substr(1)) width += isCombining(c) ? 0 : widthOf(c);
  }
  if (cell.isReadOnly) {
    text += '<';
    ++width;
  }
  return text + std::string(kCellWidth > width ? kCellWidth - width : 0, ' ');
}

void trimEnd(std::string& line) { line.erase(line.find_last_not_of(' ') + 1); }

std::string gridText(const ChartGrid& grid) {
  const std::string lead = grid.lead.empty() ? "" : hexBytes(grid.lead) + " ";
  std::string text = std::string(lead.size() + 4, ' ');
  for (int column = 0; column < 16; ++column) {
    text += std::string("_") + kDigits[column] + std::string(kCellWidth - 2, ' ');
  }
  trimEnd(text);
  text += '\n';
  for (std::size_t row = 0; row < 16; ++row) {
    std::string line = lead + kDigits[row] + "_  ";
    bool hasAny = false;
    for (std::size_t column = 0; column < 16; ++column) {
      const ChartCell& cell = grid.cells[16 * row + column];
      line += cellText(cell);
      hasAny = hasAny || !cell.text.empty();
    }
    trimEnd(line);
    if (hasAny || grid.lead.empty()) text += line + "\n";
  }
  return text;
}

}  // namespace

std::string chartAsText(const Chart& chart) {
  std::string text = describeCodePage(chart.codePage) + "\n";
  if (chart.hasShifts) text += "Codes of two bytes stand between SO and SI.\n";
  if (chart.leavesOutLongest) text += "The codes of four bytes are not shown.\n";
  for (const ChartGrid& grid : chart.grids) {
    text += '\n';
    text += gridText(grid);
  }
  if (!chart.writeOnly.empty()) text += "\nWritten, but read as something else:\n";
  for (const WriteOnlyEntry& entry : chart.writeOnly) {
    text += "  " + describeCharacter(entry.character) + " ";
    if (invisibleName(entry.character) == nullptr) text += toUtf8({entry.character});
    text += " as " + hexBytes(entry.bytes) + "\n";
  }
  return text;
}

}  // namespace tool
