#include "apps/encconv/chart_model.h"

#include <algorithm>
#include <cstdio>
#include <set>

#include "encoding/code_page_list.h"
#include "encoding/stream/stream_converter.h"
#include "support/zv_utf.h"

namespace tool {
namespace {

constexpr int kUtf16Le = 1200;

// Asks for single codes and characters, always with the same objects.
class Asker {
 public:
  explicit Asker(int codePage) : m_codePage(codePage) {}

  // The one character that the bytes mean; false when they mean none or several.
  bool read(const unsigned char* bytes, unsigned int count, char32_t& character) {
    if (!convert(m_codePage, kUtf16Le, bytes, count) || m_out.getSize() != 2) return false;
    character = m_out.getData2()[0] + 256u * m_out.getData2()[1];
    return character != 0xFFFD;  // what some readers write for bytes that mean nothing
  }

  // The bytes of a character; empty when it has no place.
  std::string write(char32_t character) {
    const unsigned char unit[2] = {static_cast<unsigned char>(character),
                                   static_cast<unsigned char>(character >> 8)};
    if (!convert(kUtf16Le, m_codePage, unit, 2)) return {};
    return {reinterpret_cast<const char*>(m_out.getData2()), m_out.getSize()};
  }

 private:
  bool convert(int from, int to, const unsigned char* data, unsigned int length) {
    m_out.clear();
    StreamSettings settings;
    settings.from = from;
    settings.to = to;
    return m_stream.begin(settings) == StreamStatus::kGood &&
           m_stream.push(data, length, m_out) == StreamStatus::kGood &&
           m_stream.finish(m_out) == StreamStatus::kGood;
  }

  int m_codePage;
  StreamConverter m_stream;
  DataBuffer m_out;
};

void fillSingleBytes(Asker& asker, ChartGrid& grid) {
  for (unsigned int code = 0; code < 256; ++code) {
    const auto byte = static_cast<unsigned char>(code);
    ChartCell& cell = grid.cells[code];
    cell.isMapped = asker.read(&byte, 1, cell.character);
    // Byte 00 is NUL in every code page but GSM's, whatever the converters do about it.
    if (code == 0 && (!cell.isMapped || cell.character == 0)) {
      cell = {0, true, false};
      continue;
    }
    if (!cell.isMapped) continue;
    cell.isReadOnly = asker.write(cell.character) != std::string(1, static_cast<char>(byte));
  }
}

// Fills the grid of a lead byte and tells whether it has anything. Two bytes that are characters
// of their own never reach here: only bytes without a meaning can lead.
bool fillPairs(Asker& asker, ChartGrid& grid) {
  bool hasAny = false;
  for (unsigned int trail = 1; trail < 256; ++trail) {
    const unsigned char pair[2] = {static_cast<unsigned char>(grid.leadByte),
                                   static_cast<unsigned char>(trail)};
    ChartCell& cell = grid.cells[trail];
    cell.isMapped = asker.read(pair, 2, cell.character);
    if (!cell.isMapped) continue;
    hasAny = true;
    cell.isReadOnly = asker.write(cell.character) != std::string(pair, pair + 2);
  }
  return hasAny;
}

bool isRead(const Chart& chart, const std::string& bytes, char32_t character) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  for (const ChartGrid& grid : chart.grids) {
    const bool isPair = grid.leadByte >= 0;
    if (bytes.size() != (isPair ? 2u : 1u) || (isPair && grid.leadByte != first)) continue;
    const ChartCell& cell = grid.cells[static_cast<unsigned char>(bytes.back())];
    return cell.isMapped && cell.character == character;
  }
  return false;
}

// The escape of GSM text leads to its extension table, where a code without an entry is read as if
// there were no escape. Such readings are no entries.
void dropEscapedDefaults(Chart& chart) {
  for (ChartGrid& grid : chart.grids) {
    if (grid.leadByte < 0) continue;
    for (ChartCell& cell : grid.cells) {
      if (cell.isReadOnly) cell = {};
    }
  }
}

struct InvisibleName {
  char32_t character;
  const char* name;
};

}  // namespace

bool buildChart(int codePage, Chart& chart) {
  const CharsetNames* names = findCodePage(codePage);
  if (names == nullptr ||
      (names->kind != CharsetKind::kSingleByte && names->kind != CharsetKind::kDoubleByte)) {
    return false;
  }
  constexpr int kGsm = 55000;
  Asker asker(codePage);
  chart = {};
  chart.codePage = codePage;
  ChartGrid singles;
  fillSingleBytes(asker, singles);
  chart.grids.push_back(singles);
  const bool hasAny = std::any_of(singles.cells.begin() + 1, singles.cells.end(),
                                  [](const ChartCell& cell) { return cell.isMapped; });
  if (!hasAny) return false;
  for (int lead = 1; lead < 256; ++lead) {
    const bool canLead = !singles.cells[static_cast<std::size_t>(lead)].isMapped;
    ChartGrid grid;
    grid.leadByte = lead;
    const bool hasPairs = names->kind == CharsetKind::kDoubleByte || codePage == kGsm;
    if (canLead && hasPairs && fillPairs(asker, grid)) chart.grids.push_back(grid);
  }
  if (codePage == kGsm) dropEscapedDefaults(chart);
  for (char32_t c = 1; c < 0x10000; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::string bytes = asker.write(c);
    // GSM text has a question mark for every character that it lacks.
    if (codePage == kGsm && bytes == "?") continue;
    if (!bytes.empty() && !isRead(chart, bytes, c)) {
      chart.writeOnly.push_back({c, std::move(bytes)});
    }
  }
  return true;
}

const char* invisibleName(char32_t c) {
  static constexpr const char* kControls[] = {
      "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "HT",  "LF",
      "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
      "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US",  "SP"};
  static constexpr const char* kHighControls[] = {
      "PAD", "HOP", "BPH", "NBH", "IND", "NEL", "SSA", "ESA", "HTS", "HTJ", "VTS",
      "PLD", "PLU", "RI",  "SS2", "SS3", "DCS", "PU1", "PU2", "STS", "CCH", "MW",
      "SPA", "EPA", "SOS", "SGC", "SCI", "CSI", "ST",  "OSC", "PM",  "APC"};
  static constexpr InvisibleName kOthers[] = {
      {0x7F, "DEL"},    {0xA0, "NBSP"},   {0xAD, "SHY"},   {0x200B, "ZWSP"}, {0x200C, "ZWNJ"},
      {0x200D, "ZWJ"},  {0x200E, "LRM"},  {0x200F, "RLM"}, {0x3000, "IDSP"}, {0x202A, "LRE"},
      {0x202B, "RLE"},  {0x202C, "PDF"},  {0x202D, "LRO"}, {0x202E, "RLO"},  {0x2003, "EMSP"},
      {0x2002, "ENSP"}, {0x2009, "THSP"}, {0xFEFF, "BOM"}};
  if (c < std::size(kControls)) return kControls[c];
  if (c >= 0x80 && c < 0x80 + std::size(kHighControls)) return kHighControls[c - 0x80];
  const auto* found = std::find_if(std::begin(kOthers), std::end(kOthers),
                                   [c](const InvisibleName& row) { return row.character == c; });
  if (found != std::end(kOthers)) return found->name;
  return isPrivateUse(c) ? "PU" : nullptr;
}

bool isCombining(char32_t c) {
  static constexpr char32_t kRanges[][2] = {{0x0300, 0x036F}, {0x0591, 0x05BD}, {0x05BF, 0x05BF},
                                            {0x05C1, 0x05C2}, {0x064B, 0x0655}, {0x0670, 0x0670},
                                            {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
                                            {0x20D0, 0x20F0}, {0x3099, 0x309A}, {0xFE20, 0xFE2F}};
  return std::any_of(std::begin(kRanges), std::end(kRanges),
                     [c](const auto& range) { return c >= range[0] && c <= range[1]; });
}

std::string toUtf8(char32_t c) {
  char bytes[4] = {};
  unsigned int count = 0;
  _zvUtf::oneUtf32ToUtf8(static_cast<unsigned int>(c), bytes, count);
  return {bytes, count};
}

std::string hexBytes(const std::string& bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace tool
