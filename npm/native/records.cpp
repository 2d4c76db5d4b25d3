// Records, and their fields as lines of JSON.
#include <new>
#include <optional>
#include <string>

#include "encconv/records.h"
#include "npm/native/exports.h"
#include "support/json.h"

namespace {

// Problems as a JSON array, without brackets.
class ProblemList {
 public:
  void add(const encconv::RecordProblem& problem, std::uint64_t record, std::uint64_t offset) {
    constexpr const char* kKinds[] = {"descriptor", "cut",     "text", "number",
                                      "too long",   "missing", "row"};
    std::string reason = problem.reason;
    if (problem.text) {
      reason = problem.text->malformed      ? "no text of its encoding"
               : problem.text->approximated ? "another character was written"
                                            : "the encoding lacks a character";
    }
    if (!text.empty()) text += ',';
    text += std::string("{\"kind\":\"") + kKinds[static_cast<int>(problem.kind)] +
            "\",\"record\":" + std::to_string(record) + ",\"offset\":" + std::to_string(offset) +
            ",\"length\":" + std::to_string(problem.length) + ",\"bytes\":\"";
    for (const char c : problem.bytes) {
      constexpr char kDigits[] = "0123456789abcdef";
      const auto byte = static_cast<unsigned char>(c);
      text += kDigits[byte >> 4];
      text += kDigits[byte & 15];
    }
    text += "\",\"field\":" + encconv::jsonString(problem.field) +
            ",\"reason\":" + encconv::jsonString(reason) + "}";
  }

  std::string text;
};

// What all of them are made of; a reply says why one cannot be made.
struct Layout {
  encconv::FieldLayout fields;
  encconv::FieldOptions options;
};
bool parseFormat(std::string_view text, encconv::RecordFormat& format) {
  const auto parsed = encconv::parse_record_format(text);
  if (!parsed) {
    reply("the record format is not known: " + std::string(text));
    return false;
  }
  format = *parsed;
  return true;
}
bool parseLayout(std::string_view format, std::string_view fields, int codePage,
                 std::string_view errors, bool trim, Layout& layout) {
  std::string why;
  if (!parseFormat(format, layout.options.format)) return false;
  if (!encconv::parse_field_layout(fields, layout.fields, why)) {
    reply(why);
    return false;
  }
  layout.options.encoding = codePage;
  layout.options.trim = trim;
  if (!encconv::parse_on_error(errors, layout.options.text)) {
    reply("errors is not known: " + std::string(errors));
    return false;
  }
  return true;
}

// ---- Records as they are. ----

class RawReader {
 public:
  explicit RawReader(const encconv::RecordFormat& format) : m_reader(format) {}

  // {"records":[[number, offset, length], ...], "problems":[...]}, NUL, and the data of all.
  void push(std::string_view piece, bool isLast) {
    std::string records, data;
    ProblemList problems;
    const auto take = [&] {
      for (;;) {
        switch (m_reader.next()) {
          case encconv::RecordStep::record:
            if (!records.empty()) records += ',';
            records += '[' + std::to_string(m_reader.number()) + ',' +
                       std::to_string(m_reader.offset_of(0)) + ',' +
                       std::to_string(m_reader.record().size()) + ']';
            data += m_reader.record();
            break;
          case encconv::RecordStep::damaged: {
            const encconv::RecordProblem& problem = m_reader.problem();
            problems.add(problem, problem.record, problem.offset);
            break;
          }
          default:
            return;
        }
      }
    };
    m_reader.push(piece);
    take();
    if (isLast) {
      m_reader.finish();
      take();
    }
    reply("{\"records\":[" + records + "],\"problems\":[" + problems.text + "]}" + '\0' + data);
  }

 private:
  encconv::RecordReader m_reader;
};

// ---- Rows of fields. ----

class RowReader {
 public:
  explicit RowReader(const Layout& layout)
      : m_reader(layout.options.format),
        m_decoder(layout.fields, layout.options),
        m_writer(layout.fields, encconv::TableFormat::json_strings) {
    m_decoder.on_problem([this](const encconv::RecordProblem& problem) {
      m_problems.add(problem, m_reader.number(), problem.offset);
    });
  }
  const std::string& error() const { return m_decoder.error(); }

  // {"rows":[{...}, ...], "problems":[...]}; numbers are texts.
  void push(std::string_view piece, bool isLast) {
    m_rows.clear();
    m_problems.text.clear();
    m_reader.push(piece);
    take();
    if (isLast) {
      m_reader.finish();
      take();
    }
    reply("{\"rows\":[" + m_rows + "],\"problems\":[" + m_problems.text + "]}");
  }

 private:
  void take() {
    for (;;) {
      switch (m_reader.next()) {
        case encconv::RecordStep::record:
          if (!m_decoder.decode(m_reader, m_values)) break;
          if (!m_rows.empty()) m_rows += ',';
          m_writer.row(m_values, m_rows);
          break;
        case encconv::RecordStep::damaged: {
          const encconv::RecordProblem& problem = m_reader.problem();
          m_problems.add(problem, problem.record, problem.offset);
          break;
        }
        default:
          return;
      }
    }
  }

  encconv::RecordReader m_reader;
  encconv::FieldDecoder m_decoder;
  encconv::TableWriter m_writer;
  std::vector<encconv::Value> m_values;
  ProblemList m_problems;
  std::string m_rows;
};

// Writes a record for each line of JSON.
void writeRows(const Layout& layout, std::string_view lines) {
  encconv::TableReader table(layout.fields, encconv::TableFormat::json);
  encconv::FieldEncoder encoder(layout.fields, layout.options);
  encconv::RecordWriter writer(layout.options.format, encoder.blank());
  std::string record, file;
  ProblemList problems;
  encoder.on_problem([&](const encconv::RecordProblem& problem) {
    problems.add(problem, table.number(), problem.offset);
  });
  const auto take = [&] {
    for (;;) {
      switch (table.next()) {
        case encconv::RecordStep::record:
          record.clear();
          if (encoder.encode(table.row(), record) && !writer.write(record, file)) {
            problems.add({.kind = encconv::RecordProblemKind::too_long,
                          .length = record.size(),
                          .reason = "the record is too long, or cannot be filled"},
                         table.number(), 0);
          }
          break;
        case encconv::RecordStep::damaged:
          problems.add(table.problem(), table.number(), table.problem().offset);
          break;
        default:
          return;
      }
    }
  };
  table.push(lines);
  take();
  table.finish();
  take();
  writer.finish(file);
  reply("[" + problems.text + "]" + '\0' + file);
}

}  // namespace

// Null, with a reply that says why, for a format that is not known.
ENCCONV_EXPORT(makeRawReader)
RawReader* makeRawReader(const char* format, unsigned int length) {
  encconv::RecordFormat parsed;
  return parseFormat(textAt(format, length), parsed) ? new (std::nothrow) RawReader(parsed)
                                                     : nullptr;
}
ENCCONV_EXPORT(pushRecords)
void pushRecords(RawReader* reader, const char* piece, unsigned int size, bool isLast) {
  reader->push(textAt(piece, size), isLast);
}
ENCCONV_EXPORT(deleteRawReader) void deleteRawReader(RawReader* reader) { delete reader; }

// The same.
ENCCONV_EXPORT(makeRowReader)
RowReader* makeRowReader(const char* format, unsigned int formatLength, const char* fields,
                         unsigned int fieldsLength, int codePage, const char* errors,
                         unsigned int errorsLength, bool trim) {
  Layout layout;
  if (!parseLayout(textAt(format, formatLength), textAt(fields, fieldsLength), codePage,
                   textAt(errors, errorsLength), trim, layout)) {
    return nullptr;
  }
  auto* const reader = new (std::nothrow) RowReader(layout);
  if (reader == nullptr || reader->error().empty()) return reader;
  reply(reader->error());
  delete reader;
  return nullptr;
}
ENCCONV_EXPORT(pushRows)
void pushRows(RowReader* reader, const char* piece, unsigned int size, bool isLast) {
  reader->push(textAt(piece, size), isLast);
}
ENCCONV_EXPORT(deleteRowReader) void deleteRowReader(RowReader* reader) { delete reader; }

// A JSON array of the fields: [name, whether it is a number, its decimals].
ENCCONV_EXPORT(describeFields) bool describeFields(const char* fields, unsigned int length) {
  encconv::FieldLayout layout;
  std::string why;
  if (!encconv::parse_field_layout(textAt(fields, length), layout, why)) {
    reply(why);
    return false;
  }
  std::string text;
  for (const encconv::Field& field : layout.fields) {
    if (!text.empty()) text += ',';
    text += '[' + encconv::jsonString(field.name) +
            (field.type == encconv::FieldType::text ? ",false," : ",true,") +
            std::to_string(field.scale) + ']';
  }
  reply("[" + text + "]");
  return true;
}

// The problems as a JSON array, NUL, and the file. False, with a reply that says why, for what
// cannot be written at all.
ENCCONV_EXPORT(writeRows)
bool writeAllRows(const char* format, unsigned int formatLength, const char* fields,
                  unsigned int fieldsLength, int codePage, const char* errors,
                  unsigned int errorsLength, const char* lines, unsigned int linesLength) {
  Layout layout;
  if (!parseLayout(textAt(format, formatLength), textAt(fields, fieldsLength), codePage,
                   textAt(errors, errorsLength), false, layout)) {
    return false;
  }
  const encconv::FieldEncoder probe(layout.fields, layout.options);
  if (!probe.error().empty()) {
    reply(probe.error());
    return false;
  }
  writeRows(layout, textAt(lines, linesLength));
  return true;
}
