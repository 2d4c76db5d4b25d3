#include "python/src/record_file.h"

#include <nanobind/stl/string.h>

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/records.h"
#include "python/src/arrow_arrays.h"
#include "python/src/records.h"

namespace nb = nanobind;

namespace {

std::string codePointText(std::int32_t codePoint) {
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(codePoint));
  return text;
}

// A column of strings in one piece.
struct StringColumn {
  ArrowInput input;
  std::optional<ArrowReader> reader;
};

// Makes a record of each row: of its text, or of the values of its fields, numbers given as texts.
class RecordFile {
 public:
  RecordFile(const std::string& format, const std::string& layout, const std::string& encoding,
             const std::string& onError)
      : RecordFile(recordFormatOf(format), layout,
                   fieldOptionsOf(encoding, onError, false, format)) {}

  // The bytes of the rows of columns, one for each field; what is not whole yet comes later.
  nb::bytes write(const nb::list& columns);
  nb::bytes finish() {
    std::string output;
    m_writer->finish(output);
    return nb::bytes(output.data(), output.size());
  }
  // The names of the fields, or none.
  nb::list names() const {
    nb::list all;
    for (const std::string& name : m_names) all.append(nb::str(name.c_str()));
    return all;
  }
  // What ended the writing, or nothing.
  nb::object stopped() const {
    return m_stopped ? nb::object(nb::str(m_stopped->c_str())) : nb::object(nb::none());
  }

 private:
  RecordFile(const encconv::RecordFormat& format, const std::string& layout,
             const encconv::FieldOptions& options);

  bool makeRecord(const std::vector<StringColumn>& columns, std::int64_t row);
  bool makeText(std::string_view text);
  void stop(const std::string& why) {
    if (!m_stopped) m_stopped = "row " + std::to_string(m_row) + " of the task: " + why;
  }

  encconv::RecordFormat m_format;
  bool m_stops;
  encconv::RecordText m_text;
  std::optional<encconv::FieldEncoder> m_encoder;
  std::optional<encconv::RecordWriter> m_writer;
  std::vector<std::string> m_names;
  std::vector<encconv::Value> m_values;
  std::string m_record;
  std::uint64_t m_row = 0;
  std::optional<std::string> m_stopped;
};

RecordFile::RecordFile(const encconv::RecordFormat& format, const std::string& layout,
                       const encconv::FieldOptions& options)
    : m_format(format),
      m_stops(options.text.on_error == encconv::OnError::stop),
      m_text(65001, options.encoding, options.text) {
  if (m_text.status() != encconv::Status::ok) {
    throw nb::value_error(std::string(encconv::describe(m_text.status())).c_str());
  }
  if (layout.empty()) {
    m_text.on_problem([this](const encconv::Problem& problem) {
      if (m_stops) stop("the encoding lacks " + codePointText(problem.code_point));
    });
    m_writer.emplace(m_format, m_text.blank());
    return;
  }
  const encconv::FieldLayout fields = fieldLayoutOf(layout);
  m_encoder.emplace(fields, options);
  if (!m_encoder->error().empty()) throw nb::value_error(m_encoder->error().c_str());
  m_encoder->on_problem([this](const encconv::RecordProblem& problem) {
    if (m_stops) stop("field '" + problem.field + "': " + reasonOf(problem));
  });
  for (const encconv::Field& field : fields.fields) m_names.push_back(field.name);
  m_values.resize(m_names.size());
  m_writer.emplace(m_format, m_encoder->blank());
}

bool RecordFile::makeText(std::string_view text) {
  const std::size_t most = m_format.max_length();
  if (!m_stops) {
    return m_text.fit(text, most, m_record) != encconv::RecordText::Fit::stopped;
  }
  if (!m_text.convert(text, m_record)) return false;
  if (m_record.size() <= most) return true;
  stop("the record is too long: " + std::to_string(m_record.size()) + " bytes, at most " +
       std::to_string(most));
  return false;
}

bool RecordFile::makeRecord(const std::vector<StringColumn>& columns, std::int64_t row) {
  const auto textOf = [row](const StringColumn& column) -> std::string_view {
    const ArrowValue value = column.reader->value(row);
    return {reinterpret_cast<const char*>(value.data), value.size};
  };
  m_record.clear();
  if (!m_encoder) return makeText(columns[0].reader->isValid(row) ? textOf(columns[0]) : "");
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].reader->isValid(row)) {
      m_values[i] = std::string(textOf(columns[i]));
    } else {
      m_values[i] = std::monostate();
    }
  }
  return m_encoder->encode(m_values, m_record);
}

nb::bytes RecordFile::write(const nb::list& given) {
  std::vector<StringColumn> columns(nb::len(given));
  if (columns.size() != (m_encoder ? m_names.size() : 1)) {
    throw nb::value_error("a column for each field is required");
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    takeArrow(given[i], columns[i].input);
    ArrowType type;
    const ArrowInput& input = columns[i].input;
    if (input.isChunked || !parseArrowFormat(input.schema->format, type) || !type.isText) {
      throw nb::type_error("columns of strings in one piece are required");
    }
    columns[i].reader.emplace(*input.chunks[0], type);
  }
  std::string output;
  const std::int64_t rows = columns[0].reader->length();
  for (std::int64_t row = 0; row < rows && !m_stopped; ++row) {
    ++m_row;
    if (!makeRecord(columns, row)) {
      stop("it cannot be converted");
    } else if (!m_writer->write(m_record, output)) {
      stop("the record is too long, or cannot be filled: " + std::to_string(m_record.size()) +
           " bytes");
    }
  }
  return nb::bytes(output.data(), output.size());
}

}  // namespace

void addRecordFile(nb::module_& module) {
  nb::class_<RecordFile>(module, "RecordFile", "Makes records of columns of Arrow.")
      .def(nb::init<const std::string&, const std::string&, const std::string&,
                    const std::string&>(),
           nb::arg("format"), nb::arg("layout"), nb::arg("encoding"), nb::arg("on_error"))
      .def("write", &RecordFile::write, nb::arg("columns"))
      .def("finish", &RecordFile::finish)
      .def_prop_ro("names", &RecordFile::names)
      .def_prop_ro("stopped", &RecordFile::stopped);
}
