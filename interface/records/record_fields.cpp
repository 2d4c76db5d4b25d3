#include "interface/records/record_fields.h"

#include <utility>

#include "interface/records/problem_bytes.h"

namespace encconv {
namespace {

// Whether digits are F0 to F9 in an encoding.
bool isEbcdic(Encoding encoding) { return from_utf8("0", encoding).text == "\xF0"; }

}  // namespace

RecordFields::RecordFields(FieldLayout layout, const FieldOptions& known, bool isReading)
    : options(known), stops(known.text.on_error == OnError::stop) {
  const int codePage = options.encoding.code_page();
  RecordText* const own = textFor(codePage, isReading, {});
  if (own == nullptr) return;
  blank = own->blank();
  const bool isAscii = !isEbcdic(options.encoding);
  for (Field& field : layout.fields) {
    const std::size_t begin = field.position - 1;
    Served served{std::move(field), begin, nullptr, isAscii};
    const Field& its = served.field;
    if (options.format.form == RecordForm::fixed && begin + its.length > options.format.length) {
      error = "field '" + its.name + "' ends behind the " + std::to_string(options.format.length) +
              " bytes of a record";
      return;
    }
    served.isAscii = its.ascii.value_or(isAscii);
    if (its.type == FieldType::text) {
      served.text = textFor(its.code_page.value_or(codePage), isReading, its.name);
      if (served.text == nullptr) return;
    }
    fields.push_back(std::move(served));
  }
}

// The conversion of an encoding; null, after saying why in error, when there is none.
RecordText* RecordFields::textFor(int codePage, bool isReading, const std::string& name) {
  for (const auto& known : m_texts) {
    if (known->codePage == codePage) return &known->text;
  }
  m_texts.push_back(std::make_unique<KnownText>(
      KnownText{codePage, isReading ? RecordText(codePage, kFieldText, options.text)
                                    : RecordText(kFieldText, codePage, options.text)}));
  RecordText& text = m_texts.back()->text;
  text.on_problem([this](const Problem& problem) { tellText(problem); });
  if (text.status() == Status::ok) return &text;
  error = (name.empty() ? std::string() : "field '" + name + "': ") +
          std::string(describe(text.status()));
  return nullptr;
}

void RecordFields::tell(RecordProblemKind kind, std::uint64_t offset, std::string_view bytes,
                        std::string reason) {
  if (!handler) return;
  RecordProblem problem;
  problem.kind = kind;
  problem.offset = offset;
  problem.length = bytes.size();
  problem.bytes = shownBytes(bytes);
  problem.field = present->field.name;
  problem.reason = std::move(reason);
  handler(problem);
}

void RecordFields::tellText(const Problem& text) {
  if (!handler || present == nullptr) return;
  RecordProblem problem;
  problem.kind = RecordProblemKind::text;
  problem.offset = text.offset + textOffset;
  problem.length = text.length;
  problem.bytes = text.bytes;
  problem.field = present->field.name;
  problem.text = text;
  problem.text->offset = problem.offset;
  handler(problem);
}

}  // namespace encconv
