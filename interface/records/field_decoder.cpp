// FieldDecoder: the bytes of a record to values.
#include <utility>

#include "encconv/records.h"
#include "interface/records/numbers.h"
#include "interface/records/record_fields.h"

namespace encconv {
namespace {

constexpr std::string_view kIdeographicSpace = "\u3000";

// Most of a field is padding, hence a loop that calls nothing.
void trimSpaces(std::string& text) { text.erase(text.find_last_not_of(' ') + 1); }

void trimIdeographicSpaces(std::string& text) {
  std::string_view rest = text;
  while (rest.ends_with(kIdeographicSpace)) rest.remove_suffix(kIdeographicSpace.size());
  text.resize(rest.size());
}

}  // namespace

struct FieldDecoder::State {
  State(FieldLayout layout, const FieldOptions& options)
      : fields(std::move(layout), options, true) {}

  bool decodeField(const RecordFields::Served& served, std::string_view record, Value& value);
  bool decodeText(const RecordFields::Served& served, std::string_view bytes, Value& value);

  RecordFields fields;
  std::function<void(const RecordProblem&)> handler;
};

bool FieldDecoder::State::decodeText(const RecordFields::Served& served, std::string_view bytes,
                                     Value& value) {
  fields.textOffset = served.begin;
  std::string text;
  if (std::string* const before = std::get_if<std::string>(&value)) {
    text.swap(*before);  // with its room
    text.clear();
  }
  const bool isConverted = served.text->convert(bytes, text);
  if (fields.options.trim) {
    trimSpaces(text);
    if (served.text->blank() != " ") trimIdeographicSpaces(text);
  }
  value = std::move(text);
  return isConverted;
}

// False when a problem ends the record.
bool FieldDecoder::State::decodeField(const RecordFields::Served& served, std::string_view record,
                                      Value& value) {
  const Field& field = served.field;
  fields.present = &served;
  if (served.begin >= record.size()) {
    value = std::monostate();
    return true;
  }
  const std::string_view bytes = record.substr(served.begin, field.length);
  if (field.type == FieldType::text) return decodeText(served, bytes, value);

  Decimal number;
  std::string why;
  if (bytes.size() < field.length) {
    fields.tell(RecordProblemKind::cut, served.begin, bytes,
                "the record ends within the field: " + std::to_string(bytes.size()) + " of " +
                    std::to_string(field.length) + " bytes");
  } else if (readNumber(field, served.isAscii, bytes, number, why)) {
    value = std::move(number);
    return true;
  } else {
    fields.tell(RecordProblemKind::number, served.begin, bytes, std::move(why));
  }
  value = std::monostate();
  return !fields.stops;
}

FieldDecoder::FieldDecoder(FieldLayout layout, const FieldOptions& options)
    : m_state(std::make_unique<State>(std::move(layout), options)) {}
FieldDecoder::~FieldDecoder() = default;
FieldDecoder::FieldDecoder(FieldDecoder&&) noexcept = default;
FieldDecoder& FieldDecoder::operator=(FieldDecoder&&) noexcept = default;

const std::string& FieldDecoder::error() const { return m_state->fields.error; }

void FieldDecoder::on_problem(std::function<void(const RecordProblem&)> handler) {
  m_state->handler = handler;
  m_state->fields.handler = std::move(handler);
}

bool FieldDecoder::decode(std::string_view record, std::vector<Value>& values) {
  const RecordFields& fields = m_state->fields;
  values.resize(fields.fields.size());
  if (!fields.error.empty()) return false;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!m_state->decodeField(fields.fields[i], record, values[i])) return false;
  }
  return true;
}

bool FieldDecoder::decode(const RecordReader& reader, std::vector<Value>& values) {
  const auto& handler = m_state->handler;
  if (handler) {
    m_state->fields.handler = [&](const RecordProblem& inRecord) {
      RecordProblem problem = inRecord;
      problem.record = reader.number();
      problem.offset = reader.offset_of(static_cast<std::size_t>(inRecord.offset));
      if (problem.text) problem.text->offset = problem.offset;
      handler(problem);
    };
  }
  const bool isDecoded = decode(reader.record(), values);
  m_state->fields.handler = handler;
  return isDecoded;
}

}  // namespace encconv
