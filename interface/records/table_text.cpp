// TableWriter, and the names of the formats.
#include <algorithm>

#include "encconv/records.h"
#include "support/json.h"

namespace encconv {
namespace {

constexpr std::string_view kLineEnd = "\r\n";  // of CSV

// A text that is not null: one that is empty has quotes.
void appendCell(std::string_view text, std::string& output) {
  constexpr std::string_view kSpecial = "\",\r\n";
  const bool isQuoted = text.empty() || text.find_first_of(kSpecial) != std::string_view::npos;
  if (!isQuoted) {
    output += text;
    return;
  }
  output += '"';
  for (const char c : text) {
    if (c == '"') output += '"';
    output += c;
  }
  output += '"';
}

void appendJson(const Value& value, bool quotesNumbers, std::string& output) {
  if (const std::string* const text = std::get_if<std::string>(&value)) {
    appendJsonString(*text, output);
  } else if (const Decimal* const number = std::get_if<Decimal>(&value)) {
    if (quotesNumbers) output += '"';
    output += number->text();
    if (quotesNumbers) output += '"';
  } else {
    output += "null";
  }
}

}  // namespace

std::optional<TableFormat> parse_table_format(std::string_view text) {
  if (text == "csv") return TableFormat::csv;
  if (text == "json") return TableFormat::json;
  if (text == "json-strings") return TableFormat::json_strings;
  return std::nullopt;
}

TableWriter::TableWriter(const FieldLayout& layout, TableFormat format) : m_format(format) {
  for (const Field& field : layout.fields) {
    std::string name;
    if (format == TableFormat::csv) {
      appendCell(field.name, name);
    } else {
      name += m_names.empty() ? "{" : ", ";
      appendJsonString(field.name, name);
      name += ": ";
    }
    m_names.push_back(std::move(name));
  }
}

void TableWriter::header(std::string& output) const {
  if (m_format != TableFormat::csv) return;
  for (std::size_t i = 0; i < m_names.size(); ++i) {
    if (i != 0) output += ',';
    output += m_names[i];
  }
  output += kLineEnd;
}

void TableWriter::row(const std::vector<Value>& values, std::string& output) const {
  const std::size_t count = std::min(values.size(), m_names.size());
  if (m_format != TableFormat::csv) {
    for (std::size_t i = 0; i < count; ++i) {
      output += m_names[i];
      appendJson(values[i], m_format == TableFormat::json_strings, output);
    }
    output += "}\n";
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) output += ',';
    if (const std::string* const text = std::get_if<std::string>(&values[i])) {
      appendCell(*text, output);
    } else if (const Decimal* const number = std::get_if<Decimal>(&values[i])) {
      output += number->text();
    }
  }
  output += kLineEnd;
}

}  // namespace encconv
