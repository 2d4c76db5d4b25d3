// FieldEncoder: values to the bytes of a record.
#include <algorithm>
#include <utility>

#include "encconv/records.h"
#include "interface/records/numbers.h"
#include "interface/records/record_fields.h"

namespace encconv {

struct FieldEncoder::State {
  State(FieldLayout layout, const FieldOptions& options)
      : fields(std::move(layout), options, false) {
    if (fields.error.empty()) checkFields();
  }

  void checkFields();
  bool encodeField(const RecordFields::Served& served, const Value& value, std::string& record);
  bool encodeText(const RecordFields::Served& served, const std::string& value, char* bytes);
  bool encodeNumber(const RecordFields::Served& served, const Value& value, char* bytes);
  std::size_t lengthFor(const std::vector<Value>& values) const;

  RecordFields fields;
  std::string text;  // of a field
};

namespace {

void fill(std::string_view blank, std::size_t begin, std::string& record) {
  for (std::size_t i = begin; i < record.size(); ++i) record[i] = blank[(i - begin) % blank.size()];
}

bool isNull(const Value& value) { return std::holds_alternative<std::monostate>(value); }

}  // namespace

void FieldEncoder::State::checkFields() {
  std::vector<const RecordFields::Served*> inOrder;
  for (const RecordFields::Served& served : fields.fields) {
    inOrder.push_back(&served);
    const std::size_t end = served.begin + served.field.length;
    const std::string_view blank = served.text == nullptr ? fields.blank : served.text->blank();
    const std::string field = "field '" + served.field.name + "'";
    if (blank.empty()) {
      fields.error = field + ": its encoding has no blank to fill it with";
    } else if (served.text != nullptr && served.field.length % blank.size() != 0) {
      fields.error = field + ": its length cuts a character in two";
    } else if (end > fields.options.format.max_length()) {
      fields.error = field + " ends behind the " +
                     std::to_string(fields.options.format.max_length()) +
                     " bytes that a record may have";
    }
  }
  std::sort(inOrder.begin(), inOrder.end(),
            [](const auto* a, const auto* b) { return a->begin < b->begin; });
  for (std::size_t i = 1; i < inOrder.size(); ++i) {
    if (inOrder[i - 1]->begin + inOrder[i - 1]->field.length <= inOrder[i]->begin) continue;
    fields.error = "fields '" + inOrder[i - 1]->field.name + "' and '" + inOrder[i]->field.name +
                   "' overlap, so that they can be read but not written";
  }
}

// The bytes of a record: where the last field that is not null ends, if it may end there.
std::size_t FieldEncoder::State::lengthFor(const std::vector<Value>& values) const {
  if (fields.options.format.form == RecordForm::fixed) return fields.options.format.length;
  std::size_t length = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (isNull(values[i])) continue;
    const RecordFields::Served& served = fields.fields[i];
    length = std::max(length, served.begin + served.field.length);
  }
  return length;
}

bool FieldEncoder::State::encodeText(const RecordFields::Served& served, const std::string& value,
                                     char* bytes) {
  text.clear();
  const RecordText::Fit fit = served.text->fit(value, served.field.length, text);
  if (fit == RecordText::Fit::stopped) return false;
  if (fit == RecordText::Fit::too_long) {
    fields.tell(RecordProblemKind::too_long, served.begin, value,
                "the text is longer than the " + std::to_string(served.field.length) +
                    " bytes of the field");
    if (fields.stops) return false;
  }
  const std::size_t end = text.size();
  text.resize(served.field.length);
  fill(served.text->blank(), end, text);
  text.copy(bytes, text.size());
  return true;
}

bool FieldEncoder::State::encodeNumber(const RecordFields::Served& served, const Value& value,
                                       char* bytes) {
  std::string why;
  const std::string* const written = std::get_if<std::string>(&value);
  std::optional<Decimal> number;
  if (const Decimal* const given = std::get_if<Decimal>(&value)) number = *given;
  if (written != nullptr) number = parse_decimal(*written);
  if (number && writeNumber(served.field, served.isAscii, *std::move(number), bytes, why)) {
    return true;
  }
  if (isNull(value)) {
    fields.tell(RecordProblemKind::missing, served.begin, {}, "a number is missing");
  } else {
    if (!number) why = "this is no number";
    fields.tell(RecordProblemKind::number, served.begin,
                written != nullptr ? std::string_view(*written) : std::string_view(), why);
  }
  return !fields.stops;
}

// False when a problem ends the record.
bool FieldEncoder::State::encodeField(const RecordFields::Served& served, const Value& value,
                                      std::string& record) {
  if (served.begin >= record.size()) return true;  // left out
  fields.present = &served;
  fields.textOffset = 0;
  char* const bytes = &record[served.begin];
  if (served.text == nullptr) return encodeNumber(served, value, bytes);
  if (const Decimal* const number = std::get_if<Decimal>(&value)) {
    return encodeText(served, number->text(), bytes);
  }
  const std::string* const given = std::get_if<std::string>(&value);
  return encodeText(served, given == nullptr ? std::string() : *given, bytes);
}

FieldEncoder::FieldEncoder(FieldLayout layout, const FieldOptions& options)
    : m_state(std::make_unique<State>(std::move(layout), options)) {}
FieldEncoder::~FieldEncoder() = default;
FieldEncoder::FieldEncoder(FieldEncoder&&) noexcept = default;
FieldEncoder& FieldEncoder::operator=(FieldEncoder&&) noexcept = default;

const std::string& FieldEncoder::error() const { return m_state->fields.error; }

void FieldEncoder::on_problem(std::function<void(const RecordProblem&)> handler) {
  m_state->fields.handler = std::move(handler);
}

bool FieldEncoder::encode(const std::vector<Value>& values, std::string& record) {
  const RecordFields& fields = m_state->fields;
  record.clear();
  if (!fields.error.empty() || values.size() != fields.fields.size()) return false;
  record.resize(m_state->lengthFor(values));
  fill(fields.blank, 0, record);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!m_state->encodeField(fields.fields[i], values[i], record)) return false;
  }
  return true;
}

std::string_view FieldEncoder::blank() const { return m_state->fields.blank; }

}  // namespace encconv
