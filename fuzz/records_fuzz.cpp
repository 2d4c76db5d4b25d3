// Records, fields and tables: what a file holds does not depend on how it is cut, places lie within
// it, and what was read is written again.
#include "encconv/records.h"

#include <vector>

#include "fuzz/fuzz_support.h"

namespace {

using namespace encconv;

constexpr const char* kFormats[] = {"rdw", "bdw", "fixed:1", "fixed:20", "bdw:64"};
constexpr const char* kLayouts[] = {
    "a 1 4 text, b + 3 packed:scale=2, c + 3 zoned, d + 2 binary, e + 5 text:encoding=932",
    "a 1 6 zoned:leading:separate, b 2 4 binary:unsigned, c 9 3 zoned:ascii",
    "a 1 12 text:encoding=iso-2022-jp, b + 2 packed:unsigned, c + 6 text:encoding=utf-16"};

// What next() of a reader comes to, with a text for each step.
template <typename Reader, typename Describe>
std::string steps(Reader& reader, std::string_view text, std::size_t step, Describe describe) {
  std::string all;
  for (std::size_t at = 0;;) {
    const RecordStep result = reader.next();
    if (result == RecordStep::end) return all;
    if (result != RecordStep::more) {
      all += describe(result) + "\n";
    } else if (at == text.size()) {
      reader.finish();
    } else {
      const std::string_view piece = text.substr(at, step);
      reader.push(piece);
      at += piece.size();
    }
  }
}

std::string describe(const RecordProblem& problem, std::size_t size) {
  check(problem.offset <= size, "a problem lies in the file");
  check(!problem.reason.empty() || problem.text, "a problem has a reason");
  return std::to_string(problem.record) + " " + std::to_string(problem.offset) + " " +
         problem.reason + problem.bytes;
}

std::string recordsOf(const RecordFormat& format, std::string_view file, std::size_t step,
                      std::vector<std::string>* records) {
  RecordReader reader(format);
  return steps(reader, file, step, [&](RecordStep result) {
    if (result == RecordStep::damaged) return describe(reader.problem(), file.size());
    const std::size_t end = reader.offset_of(reader.record().size());
    check(end <= file.size(), "a record lies in the file");
    if (records != nullptr) records->emplace_back(reader.record());
    return std::to_string(reader.offset_of(0)) + " " + std::string(reader.record());
  });
}

std::string rowsOf(const FieldLayout& layout, TableFormat format, std::string_view table,
                   std::size_t step, std::vector<std::vector<Value>>* rows) {
  TableReader reader(layout, format);
  return steps(reader, table, step, [&](RecordStep result) {
    if (result == RecordStep::damaged) return describe(reader.problem(), table.size());
    std::string text = std::to_string(reader.offset());
    for (const Value& value : reader.row()) {
      const std::string* const cell = std::get_if<std::string>(&value);
      text += cell == nullptr ? " -" : " " + *cell;
    }
    if (rows != nullptr) rows->push_back(reader.row());
    return text;
  });
}

// Values that were read once are read again from what they are written as.
void goThroughTable(const FieldLayout& layout, const FieldOptions& options, TableFormat format,
                    const std::vector<std::string>& records) {
  FieldDecoder decoder(layout, options);
  FieldEncoder encoder(layout, options);
  check(decoder.error().empty(), "the layouts can be read");
  const TableWriter writer(layout, format);
  std::string table;
  writer.header(table);
  std::vector<std::vector<Value>> values;
  for (const std::string& record : records) {
    std::vector<Value> row;
    check(decoder.decode(record, row), "a treatment lets every record be read");
    writer.row(row, table);
    values.push_back(std::move(row));
  }
  std::vector<std::vector<Value>> rows;
  rowsOf(layout, format, table, table.size() + 1, &rows);
  check(rows.size() == values.size(), "every row comes back");
  if (!encoder.error().empty()) return;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::string fromValues, fromTable;
    check(encoder.encode(values[i], fromValues) && encoder.encode(rows[i], fromTable),
          "a treatment lets every record be written");
    check(fromValues == fromTable, "a table holds what the values hold");
    std::vector<Value> again;
    check(decoder.decode(fromValues, again), "what is written is read");
    for (std::size_t j = 0; j < again.size(); ++j) {
      const bool isNumber = std::holds_alternative<Decimal>(values[i][j]);
      check(!isNumber || again[j] == values[i][j], "a number comes back");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const RecordFormat format = *parse_record_format(input.choice(kFormats));
  const std::string layoutText = input.choice(kLayouts);
  const auto table = static_cast<TableFormat>(input.byte() % 3);
  const std::size_t step = input.byte() % 7 + 1;
  const std::string file = textOf(input.rest());

  std::vector<std::string> records;
  check(recordsOf(format, file, step, nullptr) == recordsOf(format, file, size + 1, &records),
        "records do not depend on the cuts");
  FieldLayout layout;
  std::string why;
  parse_field_layout(file, layout, why);
  check(parse_field_layout(layoutText, layout, why), "the layouts are good");
  check(
      rowsOf(layout, table, file, step, nullptr) == rowsOf(layout, table, file, size + 1, nullptr),
      "rows do not depend on the cuts");

  FieldOptions options;
  options.encoding = "ibm1047";
  options.text.on_error = OnError::substitute;
  options.trim = step % 2 == 0;
  goThroughTable(layout, options, table, records);

  std::string written;
  RecordWriter writer(format);
  std::vector<std::string> fitting;
  for (const std::string& record : records) {
    if (writer.write(record, written)) fitting.push_back(record);
  }
  writer.finish(written);
  std::vector<std::string> again;
  recordsOf(format, written, step, &again);
  check(format.form == RecordForm::fixed || again == fitting, "records come back");
  return 0;
}
