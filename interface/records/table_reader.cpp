// TableReader: rows of a table that comes in pieces.
#include <algorithm>
#include <utility>

#include "encconv/records.h"
#include "interface/records/problem_bytes.h"
#include "interface/records/table_rows.h"

namespace encconv {
namespace {

constexpr std::size_t kMostRow = 16u << 20;

}  // namespace

struct TableReader::State {
  State(const FieldLayout& layout, TableFormat known) : format(known) {
    for (const Field& field : layout.fields) names.push_back(field.name);
  }

  bool isCsv() const { return format == TableFormat::csv; }
  std::size_t columnOf(std::string_view name) const {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
  }

  void passMark();
  bool takeRow();
  RecordStep next();
  RecordStep readRow(std::string_view text);
  RecordStep readHeader(std::string_view text);
  RecordStep refuse(const RowFault& fault, std::string_view text);

  TableFormat format;
  std::vector<std::string> names;
  std::string_view piece;
  bool isFinished = false;
  bool mayHaveMark = true;  // at the beginning

  std::string gathered;              // of the row, up to the piece
  bool isQuoted = false;             // within a cell in quotes
  std::uint64_t mayOpen = 0;         // where a quote may begin such a cell, or go on with it
  bool isTooLong = false;            // the rest of the row is passed over
  std::uint64_t rowEnd = 0;          // behind the last row, with its line end
  std::uint64_t rowBegin = 0;        // of the one that is gathered
  std::uint64_t begin = 0;           // of the row
  std::string row;                   // its text
  std::uint64_t number = 0;          // of the row
  bool hasHeader = false;            // of CSV: it was read
  bool isLost = false;               // the header cannot be understood
  std::vector<std::size_t> columns;  // of CSV: which field each cell is of

  std::vector<Value> cells;
  std::vector<std::pair<std::string, Value>> members;
  std::vector<bool> isGiven;  // of JSON: the field has its value
  std::vector<Value> values;
  RecordProblem problem;
};

// Passes over a byte order mark at the beginning, which pieces may cut.
void TableReader::State::passMark() {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  while (mayHaveMark && !piece.empty()) {
    mayHaveMark = piece.front() == kMark[gathered.size()];
    if (!mayHaveMark) return;
    gathered += piece.front();
    piece.remove_prefix(1);
    ++rowEnd;
    if (gathered != kMark) continue;
    gathered.clear();
    rowBegin = mayOpen = rowEnd;
    mayHaveMark = false;
  }
}

// Gathers the text of a row with its line end, if it has one. False when more is needed.
bool TableReader::State::takeRow() {
  passMark();
  std::size_t at = 0;
  for (;; ++at) {
    at = std::min(isCsv() ? piece.find_first_of("\",\n", at) : piece.find('\n', at), piece.size());
    if (at == piece.size()) break;
    const std::uint64_t place = rowEnd + at;
    if (piece[at] == '"') {
      // A quote within a cell that has none at its beginning is a fault and opens nothing.
      if (isQuoted) mayOpen = place + 1;
      isQuoted = !isQuoted && place == mayOpen;
    } else if (isQuoted) {
      continue;
    } else if (piece[at] == ',') {
      mayOpen = place + 1;
    } else {
      break;
    }
  }
  const bool isWhole = at < piece.size();
  const std::size_t count = at + (isWhole ? 1 : 0);
  if (gathered.size() + count > kMostRow) isTooLong = true;
  if (!isTooLong) gathered += piece.substr(0, count);
  piece.remove_prefix(count);
  rowEnd += count;
  return isWhole || (isFinished && rowEnd != rowBegin);
}

RecordStep TableReader::State::refuse(const RowFault& fault, std::string_view text) {
  problem = {};
  problem.kind = RecordProblemKind::row;
  problem.record = number;
  problem.offset = begin + fault.offset;
  const std::string_view shown = text.substr(std::min(fault.offset, text.size()));
  problem.length = shown.size();
  problem.bytes = shownBytes(shown);
  problem.reason = fault.reason;
  return RecordStep::damaged;
}

// RecordStep::more when all is well.
RecordStep TableReader::State::readHeader(std::string_view text) {
  hasHeader = true;
  isLost = true;
  RowFault fault;
  if (!parseCsvRow(text, cells, fault)) return refuse(fault, text);
  for (const Value& cell : cells) {
    const std::string* const given = std::get_if<std::string>(&cell);
    const std::string name = given == nullptr ? std::string() : *given;
    const std::size_t column = columnOf(name);
    if (column == names.size()) {
      return refuse({0, "the header names '" + name + "', which is no field; nothing is read"},
                    text);
    }
    if (std::find(columns.begin(), columns.end(), column) != columns.end()) {
      return refuse({0, "the header names '" + name + "' twice; nothing is read"}, text);
    }
    columns.push_back(column);
  }
  isLost = false;
  return RecordStep::more;
}

RecordStep TableReader::State::readRow(std::string_view text) {
  RowFault fault;
  values.assign(names.size(), Value());
  if (isCsv()) {
    if (!parseCsvRow(text, cells, fault)) return refuse(fault, text);
    if (cells.size() != columns.size()) {
      return refuse({0, "the row has " + std::to_string(cells.size()) +
                            (cells.size() == 1 ? " cell" : " cells") + ", and the header " +
                            std::to_string(columns.size())},
                    text);
    }
    for (std::size_t i = 0; i < cells.size(); ++i) values[columns[i]] = std::move(cells[i]);
    return RecordStep::record;
  }
  if (!parseJsonRow(text, members, fault)) return refuse(fault, text);
  isGiven.assign(names.size(), false);
  for (auto& [name, value] : members) {
    const std::size_t column = columnOf(name);
    if (column == names.size()) return refuse({0, "'" + name + "' is no field"}, text);
    if (isGiven[column]) return refuse({0, "'" + name + "' is there twice"}, text);
    isGiven[column] = true;
    values[column] = std::move(value);
  }
  return RecordStep::record;
}

RecordStep TableReader::State::next() {
  while (!isLost) {
    if (!takeRow()) return isFinished ? RecordStep::end : RecordStep::more;
    begin = rowBegin;
    rowBegin = mayOpen = rowEnd;
    row = std::exchange(gathered, {});
    const bool wasTooLong = std::exchange(isTooLong, false);
    isQuoted = false;
    std::string_view text = row;
    if (text.ends_with('\n')) text.remove_suffix(1);
    if (text.ends_with('\r')) text.remove_suffix(1);
    if (text.empty() && (!isCsv() || names.size() > 1)) continue;
    const bool isHeader = isCsv() && !hasHeader;
    if (!isHeader) ++number;
    const RecordStep result = wasTooLong ? refuse({0, "a row has more than 16 MiB"}, text)
                              : isHeader ? readHeader(text)
                                         : readRow(text);
    if (result != RecordStep::more) return result;
  }
  piece = {};
  return isFinished ? RecordStep::end : RecordStep::more;
}

TableReader::TableReader(const FieldLayout& layout, TableFormat format)
    : m_state(std::make_unique<State>(layout, format)) {}
TableReader::~TableReader() = default;
TableReader::TableReader(TableReader&&) noexcept = default;
TableReader& TableReader::operator=(TableReader&&) noexcept = default;

void TableReader::push(std::string_view piece) { m_state->piece = piece; }

void TableReader::finish() { m_state->isFinished = true; }

RecordStep TableReader::next() { return m_state->next(); }

const std::vector<Value>& TableReader::row() const { return m_state->values; }

std::uint64_t TableReader::number() const { return m_state->number; }

std::uint64_t TableReader::offset() const { return m_state->begin; }

const RecordProblem& TableReader::problem() const { return m_state->problem; }

}  // namespace encconv
