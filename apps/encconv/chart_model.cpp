#include "apps/encconv/chart_model.h"

#include <algorithm>
#include <string_view>

#include "encoding/code_page_list.h"
#include "encoding/stream/stream_converter.h"
#include "support/zv_utf.h"

namespace tool {
namespace {

constexpr int kUtf32Le = 12000;
constexpr std::size_t kLongestCode = 4;
// More first three bytes than these, as GB18030 has, make no chart that anyone looks at.
constexpr std::size_t kMostLongLeads = 5000;
constexpr std::string_view kShiftOut = "\x0E", kShiftIn = "\x0F", kEscape = "\x1B";

// Asks for single codes and characters, always with the same objects.
class Asker {
 public:
  explicit Asker(int codePage) : m_codePage(codePage) {}

  // Codes of two bytes are asked for between SO and SI from now on.
  void shift() { m_isShifted = true; }

  // What a code means; nothing when it is none, or more than one.
  std::u32string read(const std::string& code) {
    const std::string bytes = m_isShifted && code.size() > 1 ? asShifted(code) : code;
    if (!begin(m_codePage, kUtf32Le) || !push(bytes) || !isGood(m_stream.finish(m_out))) return {};
    const std::u32string text = scalars();
    // Several accents and a letter are no code, nor is what is read byte by byte. Some readers
    // write U+FFFD for bytes that mean nothing.
    const bool isSeveral = text.size() > 1 && (code.size() > 2 || text[0] < 0x80);
    const bool isCombined = isSeveral && code.size() == 2 && isCombining(text[1]);
    return (isSeveral && !isCombined) || text == U"\uFFFD" ? std::u32string() : text;
  }
  // Whether more bytes make a code of these, which are none.
  bool isBeginning(const std::string& code) {
    const std::string bytes = m_isShifted ? std::string(kShiftOut) + code : code;
    return begin(m_codePage, kUtf32Le) && push(bytes) && m_out.getSize() == 0;
  }
  // The code of a text; empty when it has no place.
  std::string write(const std::u32string& text) {
    std::string units;
    for (const char32_t c : text) {
      for (int shift = 0; shift < 32; shift += 8) units += static_cast<char>(c >> shift);
    }
    if (!begin(kUtf32Le, m_codePage) || !push(units) || !isGood(m_stream.finish(m_out))) return {};
    std::string code(reinterpret_cast<const char*>(m_out.getData2()), m_out.getSize());
    const bool isShifted = code.starts_with(kShiftOut) && code.ends_with(kShiftIn);
    return isShifted ? code.substr(1, code.size() - 2) : code;
  }

 private:
  static bool isGood(StreamStatus status) { return status == StreamStatus::kGood; }
  static std::string asShifted(const std::string& code) {
    return std::string(kShiftOut).append(code).append(kShiftIn);
  }
  bool begin(int from, int to) {
    m_out.clear();
    m_settings.from = from;
    m_settings.to = to;
    return isGood(m_stream.begin(m_settings));
  }
  bool push(const std::string& bytes) {
    return isGood(
        m_stream.push(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), m_out));
  }
  std::u32string scalars() const {
    const unsigned char* const bytes = m_out.getData2();
    std::u32string text;
    for (std::size_t i = 0; i + 4 <= m_out.getSize(); i += 4) {
      text += static_cast<char32_t>(bytes[i] | bytes[i + 1] << 8 | bytes[i + 2] << 16);
    }
    return text;
  }

  int m_codePage;
  bool m_isShifted = false;
  StreamSettings m_settings;
  StreamConverter m_stream;
  DataBuffer m_out;
};

std::string codeBehind(const std::string& lead, std::size_t last) {
  return lead + static_cast<char>(last);
}

// Fills the grid behind some bytes, and tells which codes in it begin longer ones. False when
// nothing in it means anything.
bool fillGrid(Asker& asker, ChartGrid& grid, std::vector<std::string>& beginnings) {
  bool hasAny = false;
  for (std::size_t last = 0; last < grid.cells.size(); ++last) {
    const std::string code = codeBehind(grid.lead, last);
    ChartCell& cell = grid.cells[last];
    cell.text = asker.read(code);
    // Byte 00 is NUL in every code page but GSM's, whatever the converters do about it.
    if (code == std::string(1, '\0') && (cell.text.empty() || cell.text[0] == 0)) {
      cell.text = std::u32string(1, 0);
    } else if (!cell.text.empty()) {
      hasAny = true;
      cell.isReadOnly = asker.write(cell.text) != code;
    } else if (code.size() < kLongestCode && asker.isBeginning(code)) {
      beginnings.push_back(code);
    }
  }
  return hasAny;
}

// Behind an accent stands any letter; only what Unicode has whole is worth a cell then.
void dropAnyLetters(ChartGrid& grid) {
  constexpr int kMostSequences = 64;
  const auto isSequence = [](const ChartCell& cell) { return cell.text.size() > 1; };
  if (std::ranges::count_if(grid.cells, isSequence) <= kMostSequences) return;
  for (ChartCell& cell : grid.cells) {
    if (isSequence(cell)) cell = {};
  }
}

// The codes behind these beginnings, one byte after the other.
void fillLonger(Asker& asker, Chart& chart, std::vector<std::string> leads) {
  for (std::size_t length = 1; length < kLongestCode && !leads.empty(); ++length) {
    chart.leavesOutLongest = length == kLongestCode - 1 && leads.size() > kMostLongLeads;
    if (chart.leavesOutLongest) return;
    std::vector<std::string> beginnings;
    for (const std::string& lead : leads) {
      ChartGrid grid;
      grid.lead = lead;
      if (!fillGrid(asker, grid, beginnings)) continue;
      dropAnyLetters(grid);
      chart.grids.push_back(std::move(grid));
    }
    leads = std::move(beginnings);
  }
}

// SO is no character then, and SO, two bytes and SI are one.
bool hasShifts(Asker asker, const ChartGrid& singles) {
  if (!singles.cells[0x0E].text.empty()) return false;
  asker.shift();
  return asker.read("\x40\x40") == U"\u3000";
}

// The escape of GSM text leads to its extension table, where a code without an entry is read as if
// there were no escape. Such readings are no entries.
void dropEscapedDefaults(Chart& chart) {
  for (ChartGrid& grid : chart.grids) {
    if (grid.lead != kEscape) continue;
    for (ChartCell& cell : grid.cells) {
      if (cell.isReadOnly) cell = {};
    }
  }
}

// The characters whose codes read as something else.
void findWriteOnly(Asker& asker, Chart& chart) {
  for (char32_t c = 1; c < 0x30000; ++c) {
    if (c == 0x10000) c = 0x20000;
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    const std::u32string text(1, c);
    std::string code = asker.write(text);
    if (!code.empty() && c != 0xFFFD && asker.read(code) != text)
      chart.writeOnly.push_back({c, std::move(code)});
  }
}

struct InvisibleName {
  char32_t character;
  const char* name;
};

}  // namespace

std::optional<Chart> buildChart(int codePage) {
  const CharsetNames* names = findCodePage(codePage);
  if (names == nullptr || names->kind == CharsetKind::kUnicode) return std::nullopt;
  Asker asker(codePage);
  Chart chart;
  chart.codePage = codePage;
  ChartGrid singles;
  std::vector<std::string> leads;
  const bool hasSingles = fillGrid(asker, singles, leads);
  chart.hasShifts = names->kind == CharsetKind::kStateful && hasShifts(Asker(codePage), singles);
  if (names->kind == CharsetKind::kStateful && !chart.hasShifts) return std::nullopt;
  if (hasSingles) chart.grids.push_back(std::move(singles));
  if (chart.hasShifts) {
    asker.shift();
    leads.clear();
    for (std::size_t lead = 0x40; lead < 0xFF; ++lead) leads.push_back(codeBehind({}, lead));
  }
  fillLonger(asker, chart, std::move(leads));
  if (chart.grids.empty()) return std::nullopt;
  dropEscapedDefaults(chart);
  findWriteOnly(asker, chart);
  return chart;
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

std::string toUtf8(const std::u32string& text) {
  std::string utf8;
  for (const char32_t c : text) {
    char bytes[4] = {};
    unsigned int count = 0;
    _zvUtf::oneUtf32ToUtf8(static_cast<unsigned int>(c), bytes, count);
    utf8.append(bytes, count);
  }
  return utf8;
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
