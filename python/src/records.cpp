#include "python/src/records.h"

#include <nanobind/stl/string.h>

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "encconv/records.h"

namespace nb = nanobind;

namespace {

std::string_view viewOf(const nb::bytes& bytes) { return {bytes.c_str(), bytes.size()}; }
nb::bytes bytesOf(std::string_view view) { return nb::bytes(view.data(), view.size()); }

// (kind, record, offset, length, bytes, field, reason)
nb::tuple tupleOf(const encconv::RecordProblem& problem) {
  constexpr const char* kKinds[] = {"descriptor", "cut",     "text", "number",
                                    "too long",   "missing", "row"};
  return nb::make_tuple(kKinds[static_cast<int>(problem.kind)], problem.record, problem.offset,
                        problem.length, bytesOf(problem.bytes), problem.field, reasonOf(problem));
}

// Divides bytes into records; those that were pushed are held until they are used up.
class Reader {
 public:
  explicit Reader(const std::string& format) : m_reader(recordFormatOf(format)) {}

  void push(const nb::bytes& piece) {
    m_piece = piece;
    m_reader.push(viewOf(m_piece));
  }
  void finish() { m_reader.finish(); }

  // ("record", number, offset, data), ("damaged", problem), ("more",) or ("end",)
  nb::tuple next() {
    switch (m_reader.next()) {
      case encconv::RecordStep::record:
        return nb::make_tuple("record", m_reader.number(), m_reader.offset_of(0),
                              bytesOf(m_reader.record()));
      case encconv::RecordStep::damaged:
        return nb::make_tuple("damaged", tupleOf(m_reader.problem()));
      case encconv::RecordStep::more:
        return nb::make_tuple("more");
      case encconv::RecordStep::end:
        break;
    }
    return nb::make_tuple("end");
  }

 private:
  nb::bytes m_piece{"", 0};
  encconv::RecordReader m_reader;
};

class Writer {
 public:
  Writer(const std::string& format, const nb::bytes& blank)
      : m_format(recordFormatOf(format)), m_writer(m_format, viewOf(blank)) {}

  nb::bytes write(const nb::bytes& record) {
    std::string output;
    if (!m_writer.write(viewOf(record), output)) {
      throw nb::value_error(
          ("the record is too long, or cannot be filled: " + std::to_string(record.size()) +
           " bytes, at most " + std::to_string(m_format.max_length()))
              .c_str());
    }
    return bytesOf(output);
  }
  nb::bytes finish() {
    std::string output;
    m_writer.finish(output);
    return bytesOf(output);
  }

 private:
  encconv::RecordFormat m_format;
  encconv::RecordWriter m_writer;
};

nb::object objectOf(const encconv::Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return nb::none();
  if (const auto* const text = std::get_if<std::string>(&value)) {
    return nb::str(text->data(), text->size());
  }
  const auto& number = std::get<encconv::Decimal>(value);
  const std::string digits = number.text();
  if (number.scale > 0) return nb::module_::import_("decimal").attr("Decimal")(digits);
  return nb::steal(PyLong_FromString(digits.c_str(), nullptr, 10));
}

encconv::Value valueOf(nb::handle object) {
  if (object.is_none()) return {};
  // Numbers may be given as texts.
  return nb::cast<std::string>(nb::str(object));
}

// Both directions: the problems of the last record.
class Problems {
 public:
  nb::tuple take() {
    nb::list all;
    for (const encconv::RecordProblem& problem : m_problems) all.append(tupleOf(problem));
    m_problems.clear();
    return nb::tuple(all);
  }
  void add(const encconv::RecordProblem& problem) { m_problems.push_back(problem); }

 private:
  std::vector<encconv::RecordProblem> m_problems;
};

class Decoder {
 public:
  Decoder(const std::string& layout, const std::string& encoding, const std::string& onError,
          bool trim, const std::string& format)
      : m_layout(fieldLayoutOf(layout)),
        m_decoder(m_layout, fieldOptionsOf(encoding, onError, trim, format)) {
    if (!m_decoder.error().empty()) throw nb::value_error(m_decoder.error().c_str());
    m_decoder.on_problem(
        [this](const encconv::RecordProblem& problem) { m_problems.add(problem); });
  }

  // (values, problems); values are None where a problem ended the record.
  nb::tuple decode(const nb::bytes& record) {
    if (!m_decoder.decode(viewOf(record), m_values)) {
      return nb::make_tuple(nb::none(), m_problems.take());
    }
    nb::list values;
    for (const encconv::Value& value : m_values) values.append(objectOf(value));
    return nb::make_tuple(values, m_problems.take());
  }
  nb::list names() const {
    nb::list all;
    for (const encconv::Field& field : m_layout.fields) all.append(nb::str(field.name.c_str()));
    return all;
  }

 private:
  encconv::FieldLayout m_layout;
  Problems m_problems;
  encconv::FieldDecoder m_decoder;
  std::vector<encconv::Value> m_values;
};

class Encoder {
 public:
  Encoder(const std::string& layout, const std::string& encoding, const std::string& onError,
          const std::string& format)
      : m_encoder(fieldLayoutOf(layout), fieldOptionsOf(encoding, onError, false, format)) {
    if (!m_encoder.error().empty()) throw nb::value_error(m_encoder.error().c_str());
    m_encoder.on_problem(
        [this](const encconv::RecordProblem& problem) { m_problems.add(problem); });
  }

  // (record, problems); the record is None where a problem ended it.
  nb::tuple encode(const nb::list& given) {
    std::vector<encconv::Value> values;
    for (const nb::handle value : given) values.push_back(valueOf(value));
    std::string record;
    if (!m_encoder.encode(values, record)) return nb::make_tuple(nb::none(), m_problems.take());
    return nb::make_tuple(bytesOf(record), m_problems.take());
  }
  nb::bytes blank() const { return bytesOf(m_encoder.blank()); }

 private:
  Problems m_problems;
  encconv::FieldEncoder m_encoder;
};

nb::object findRecordCut(const nb::bytes& data, const std::string& format, std::uint64_t offset,
                         std::uint64_t position, bool isAtCut) {
  const auto parsed = encconv::parse_record_format(format);
  if (!parsed) throw nb::value_error(("no format of records: " + format).c_str());
  const auto cut =
      encconv::find_record_cut({data.c_str(), data.size()}, *parsed, offset, {position, isAtCut});
  return cut ? nb::object(nb::int_(*cut)) : nb::object(nb::none());
}

}  // namespace

encconv::RecordFormat recordFormatOf(const std::string& text) {
  const auto format = encconv::parse_record_format(text);
  if (!format) throw nb::value_error(("the record format is not known: " + text).c_str());
  return *format;
}

encconv::FieldLayout fieldLayoutOf(const std::string& text) {
  encconv::FieldLayout layout;
  std::string why;
  if (!encconv::parse_field_layout(text, layout, why)) throw nb::value_error(why.c_str());
  return layout;
}

encconv::FieldOptions fieldOptionsOf(const std::string& encoding, const std::string& onError,
                                     bool trim, const std::string& format) {
  encconv::FieldOptions options;
  options.encoding = encconv::Encoding(encoding);
  options.trim = trim;
  options.format = recordFormatOf(format);
  if (!encconv::parse_on_error(onError, options.text)) {
    throw nb::value_error(("on_error is not known: " + onError).c_str());
  }
  return options;
}

std::string reasonOf(const encconv::RecordProblem& problem) {
  if (!problem.text) return problem.reason;
  return problem.text->malformed      ? "no text of its encoding"
         : problem.text->approximated ? "another character was written"
                                      : "the encoding lacks a character";
}

void addRecords(nb::module_& module) {
  module.def("find_record_cut", &findRecordCut, nb::arg("data"), nb::arg("format"),
             nb::arg("offset"), nb::arg("position"), nb::arg("at_cut"),
             "Where a part of a file of records can begin, or None.");
  nb::class_<Reader>(module, "RecordReader", "Divides a file into records.")
      .def(nb::init<const std::string&>(), nb::arg("format"))
      .def("push", &Reader::push, nb::arg("piece"))
      .def("finish", &Reader::finish)
      .def("next", &Reader::next);
  nb::class_<Writer>(module, "RecordWriter", "Puts records into a file.")
      .def(nb::init<const std::string&, const nb::bytes&>(), nb::arg("format"), nb::arg("blank"))
      .def("write", &Writer::write, nb::arg("record"))
      .def("finish", &Writer::finish);
  nb::class_<Decoder>(module, "FieldDecoder", "Reads the fields of records.")
      .def(nb::init<const std::string&, const std::string&, const std::string&, bool,
                    const std::string&>(),
           nb::arg("layout"), nb::arg("encoding"), nb::arg("on_error"), nb::arg("trim"),
           nb::arg("format"))
      .def("decode", &Decoder::decode, nb::arg("record"))
      .def_prop_ro("names", &Decoder::names);
  nb::class_<Encoder>(module, "FieldEncoder", "Writes the fields of records.")
      .def(nb::init<const std::string&, const std::string&, const std::string&,
                    const std::string&>(),
           nb::arg("layout"), nb::arg("encoding"), nb::arg("on_error"), nb::arg("format"))
      .def("encode", &Encoder::encode, nb::arg("values"))
      .def_prop_ro("blank", &Encoder::blank);
}
