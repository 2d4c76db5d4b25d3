// A row of CSV.
#include "interface/records/table_rows.h"

namespace encconv {
namespace {

// Takes a cell in quotes and what is up to the next comma, which must be nothing.
bool takeQuoted(std::string_view text, std::size_t& at, std::string& cell, RowFault& fault) {
  const std::size_t begin = at++;
  for (;; ++at) {
    const std::size_t quote = text.find('"', at);
    if (quote == std::string_view::npos) {
      fault = {begin, "a quoted cell has no end"};
      return false;
    }
    cell += text.substr(at, quote - at);
    at = quote + 1;
    if (at >= text.size() || text[at] != '"') break;
    cell += '"';
  }
  if (at >= text.size() || text[at] == ',') return true;
  fault = {at, "something follows the end of a quoted cell"};
  return false;
}

}  // namespace

bool parseCsvRow(std::string_view text, std::vector<Value>& cells, RowFault& fault) {
  cells.clear();
  for (std::size_t at = 0;; ++at) {
    Value cell;
    if (at < text.size() && text[at] == '"') {
      if (!takeQuoted(text, at, cell.emplace<std::string>(), fault)) return false;
    } else {
      const std::size_t end = std::min(text.find(',', at), text.size());
      const std::string_view plain = text.substr(at, end - at);
      const std::size_t quote = plain.find('"');
      if (quote != std::string_view::npos) {
        fault = {at + quote, "a quote within a cell that does not begin with one"};
        return false;
      }
      if (!plain.empty()) cell = std::string(plain);
      at = end;
    }
    cells.push_back(std::move(cell));
    if (at >= text.size()) return true;
  }
}

}  // namespace encconv
