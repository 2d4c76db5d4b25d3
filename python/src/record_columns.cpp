#include "python/src/record_columns.h"

#include <nanobind/stl/string.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/records.h"
#include "python/src/column_builder.h"
#include "python/src/interpreter.h"
#include "python/src/records.h"

namespace nb = nanobind;

namespace {

std::string inHex(std::string_view bytes) {
  std::string hex;
  char digits[4];
  for (const char byte : bytes) {
    std::snprintf(digits, sizeof digits, hex.empty() ? "%02X" : " %02X",
                  static_cast<unsigned>(static_cast<unsigned char>(byte)));
    hex += digits;
  }
  return hex;
}

// What stands in the column of the first problem, and in the message of an input that is given up.
std::string messageOf(const encconv::RecordProblem& problem, std::uint64_t position) {
  std::string message = "byte offset " + std::to_string(position + problem.offset) + ": ";
  if (!problem.field.empty()) message += "field '" + problem.field + "': ";
  message += reasonOf(problem);
  if (!problem.bytes.empty()) message += " (" + inHex(problem.bytes) + ")";
  return message;
}

// Reads the records of a part of a file, which begins with a record, as columns: the value of each
// record, or its fields, then where it begins, how many problems it has, and the first of them.
class RecordColumns {
 public:
  RecordColumns(const std::string& format, const std::string& layout, const std::string& encoding,
                const std::string& onError, bool trim, std::uint64_t position);

  // The bytes that follow; isLast: nothing follows them.
  void push(const nb::bytes& piece, bool isLast);
  nb::list formats() const;  // (name, type) of each column
  nb::list take();           // the columns of what was pushed
  // What ended the reading, or nothing.
  nb::object stopped() const {
    return m_stopped ? nb::object(nb::str(m_stopped->c_str())) : nb::object(nb::none());
  }

 private:
  void read();
  bool readRecord();
  bool readText();
  void tell(const encconv::RecordProblem& problem, std::uint64_t position);
  void endRow(std::uint64_t offset);

  std::uint64_t m_position;
  bool m_trims;
  bool m_stops;
  encconv::RecordReader m_reader;
  encconv::RecordText m_text;
  std::optional<encconv::FieldDecoder> m_decoder;
  std::vector<std::string> m_names;
  std::vector<ColumnBuilder> m_values;
  ColumnBuilder m_offsets{ColumnKind::kInt64};
  ColumnBuilder m_counts{ColumnKind::kInt32};
  ColumnBuilder m_firsts{ColumnKind::kText};
  std::vector<encconv::Value> m_row;
  std::string m_made;
  // Of the row that is read.
  std::int64_t m_count = 0;
  std::string m_first;
  std::uint64_t m_firstOffset = 0;
  std::optional<std::string> m_stopped;
};

RecordColumns::RecordColumns(const std::string& format, const std::string& layout,
                             const std::string& encoding, const std::string& onError, bool trim,
                             std::uint64_t position)
    : m_position(position),
      m_trims(trim),
      m_reader(recordFormatOf(format)),
      m_text(encconv::Encoding(encoding), 65001,
             fieldOptionsOf(encoding, onError, trim, format).text) {
  const encconv::FieldOptions options = fieldOptionsOf(encoding, onError, trim, format);
  m_stops = options.text.on_error == encconv::OnError::stop;
  if (layout.empty()) {
    if (m_text.status() != encconv::Status::ok) {
      throw nb::value_error(std::string(encconv::describe(m_text.status())).c_str());
    }
    m_text.on_problem([this](const encconv::Problem& problem) {
      encconv::RecordProblem told;
      told.kind = encconv::RecordProblemKind::text;
      told.bytes = problem.bytes;
      told.text = problem;
      tell(told, m_position + m_reader.offset_of(static_cast<std::size_t>(problem.offset)));
    });
    m_names.emplace_back("value");
    m_values.emplace_back(ColumnKind::kText);
    return;
  }
  const encconv::FieldLayout fields = fieldLayoutOf(layout);
  m_decoder.emplace(fields, options);
  if (!m_decoder->error().empty()) throw nb::value_error(m_decoder->error().c_str());
  m_decoder->on_problem(
      [this](const encconv::RecordProblem& problem) { tell(problem, m_position); });
  for (const encconv::Field& field : fields.fields) {
    m_names.push_back(field.name);
    m_values.push_back(ColumnBuilder::of(field));
  }
}

void RecordColumns::tell(const encconv::RecordProblem& problem, std::uint64_t position) {
  if (m_count++ == 0) {
    m_first = messageOf(problem, position);
    m_firstOffset = position + problem.offset;
  }
  if (m_stops && !m_stopped) m_stopped = m_first;
}

void RecordColumns::endRow(std::uint64_t offset) {
  m_offsets.addInteger(static_cast<std::int64_t>(offset));
  m_counts.addInteger(m_count);
  if (m_count == 0) {
    m_firsts.addNull();
  } else {
    m_firsts.addText(m_first);
  }
  m_count = 0;
}

bool RecordColumns::readText() {
  m_made.clear();
  if (!m_text.convert(m_reader.record(), m_made)) return false;
  if (m_trims) m_made.erase(m_made.find_last_not_of(' ') + 1);
  m_values[0].addText(m_made);
  return true;
}

bool RecordColumns::readRecord() {
  if (!m_decoder) return readText();
  if (!m_decoder->decode(m_reader, m_row)) return false;
  for (std::size_t i = 0; i < m_values.size(); ++i) m_values[i].add(m_row[i]);
  return true;
}

void RecordColumns::read() {
  while (!m_stopped) {
    switch (m_reader.next()) {
      case encconv::RecordStep::record:
        if (!readRecord()) return;
        endRow(m_position + m_reader.offset_of(0));
        break;
      case encconv::RecordStep::damaged:
        tell(m_reader.problem(), m_position);
        break;
      case encconv::RecordStep::more:
        return;
      case encconv::RecordStep::end:
        // What is damaged behind the last record is a row without values.
        if (m_count == 0 || m_stopped) return;
        for (ColumnBuilder& column : m_values) column.addNull();
        endRow(m_firstOffset);
        return;
    }
  }
}

void RecordColumns::push(const nb::bytes& piece, bool isLast) {
  const ReleasedLock released(true);
  m_reader.push({piece.c_str(), piece.size()});
  read();
  if (!isLast || m_stopped) return;
  m_reader.finish();
  read();
}

nb::list RecordColumns::formats() const {
  nb::list all;
  for (std::size_t i = 0; i < m_values.size(); ++i) {
    all.append(nb::make_tuple(m_names[i], m_values[i].format()));
  }
  all.append(nb::make_tuple("offset", m_offsets.format()));
  all.append(nb::make_tuple("problems", m_counts.format()));
  all.append(nb::make_tuple("first_problem", m_firsts.format()));
  return all;
}

nb::list RecordColumns::take() {
  nb::list all;
  for (ColumnBuilder& column : m_values) all.append(column.take());
  all.append(m_offsets.take());
  all.append(m_counts.take());
  all.append(m_firsts.take());
  return all;
}

// Walks along the descriptor words of a file for places, some distance apart, where a part of it
// can begin: with a record, or the block of one. None is found behind damage.
class RecordStarts {
 public:
  RecordStarts(const std::string& format, std::uint64_t distance)
      : m_reader(recordFormatOf(format)),
        m_gap(recordFormatOf(format).form == encconv::RecordForm::bdw ? 8 : 4),
        m_distance(distance) {}

  void push(const nb::bytes& piece) {
    const ReleasedLock released(true);
    if (m_isDamaged) return;
    m_reader.push({piece.c_str(), piece.size()});
    for (;;) {
      const encconv::RecordStep step = m_reader.next();
      m_isDamaged = step == encconv::RecordStep::damaged;
      if (step != encconv::RecordStep::record) return;
      // In front of the first record of a block there are two words.
      if (m_reader.offset_of(0) == m_end + m_gap && m_end >= m_last + m_distance) {
        m_starts.push_back(m_end);
        m_last = m_end;
      }
      m_end = m_reader.offset_of(m_reader.record().size());
    }
  }
  nb::list starts() const {
    nb::list all;
    for (const std::uint64_t start : m_starts) all.append(start);
    return all;
  }

 private:
  encconv::RecordReader m_reader;
  std::uint64_t m_gap;
  std::uint64_t m_distance;
  std::uint64_t m_end = 0;   // of the record before
  std::uint64_t m_last = 0;  // that was found
  bool m_isDamaged = false;
  std::vector<std::uint64_t> m_starts;
};

}  // namespace

void addRecordColumns(nb::module_& module) {
  nb::class_<RecordColumns>(module, "RecordColumns", "Reads records as columns of Arrow.")
      .def(nb::init<const std::string&, const std::string&, const std::string&, const std::string&,
                    bool, std::uint64_t>(),
           nb::arg("format"), nb::arg("layout"), nb::arg("encoding"), nb::arg("on_error"),
           nb::arg("trim"), nb::arg("position"))
      .def("push", &RecordColumns::push, nb::arg("piece"), nb::arg("is_last"))
      .def("formats", &RecordColumns::formats)
      .def("take", &RecordColumns::take)
      .def_prop_ro("stopped", &RecordColumns::stopped);
  nb::class_<RecordStarts>(module, "RecordStarts", "Finds where parts of a file can begin.")
      .def(nb::init<const std::string&, std::uint64_t>(), nb::arg("format"), nb::arg("distance"))
      .def("push", &RecordStarts::push, nb::arg("piece"))
      .def_prop_ro("starts", &RecordStarts::starts);
}
