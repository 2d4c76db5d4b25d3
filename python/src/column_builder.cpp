#include "python/src/column_builder.h"

#include <algorithm>
#include <variant>

#include "interface/records/numbers.h"
#include "support/compiler.h"

namespace nb = nanobind;

namespace {

constexpr int kMostInt64Digits = 18;
constexpr int kMostDecimalDigits = 38;

// The most digits of a number field.
int digitsOf(const encconv::Field& field) {
  if (field.type != encconv::FieldType::binary) {
    return static_cast<int>(field.digits != 0 ? field.digits : digitRoom(field));
  }
  constexpr int kOfBytes[] = {0, 3, 5, 8, 10, 13, 15, 17, 20};
  return kOfBytes[field.length];
}

}  // namespace

ColumnBuilder::ColumnBuilder(ColumnKind kind, int precision, int scale)
    : m_kind(kind), m_precision(precision), m_scale(scale) {}

ColumnBuilder ColumnBuilder::of(const encconv::Field& field) {
  if (field.type == encconv::FieldType::text) return ColumnBuilder(ColumnKind::kText);
  const int digits = digitsOf(field);
  const bool isInt64 =
      digits <= kMostInt64Digits || (field.type == encconv::FieldType::binary && field.is_signed);
  if (field.scale == 0 && isInt64) return ColumnBuilder(ColumnKind::kInt64);
  const int precision = std::max(digits, field.scale);
  if (precision > kMostDecimalDigits) return ColumnBuilder(ColumnKind::kText);
  return ColumnBuilder(ColumnKind::kDecimal, precision, field.scale);
}

std::string ColumnBuilder::format() const {
  switch (m_kind) {
    case ColumnKind::kText:
      return "u";
    case ColumnKind::kInt32:
      return "i";
    case ColumnKind::kInt64:
      return "l";
    case ColumnKind::kDecimal:
      break;
  }
  return "d:" + std::to_string(m_precision) + "," + std::to_string(m_scale);
}

void ColumnBuilder::mark(bool isValid) {
  if (m_length % 8 == 0) m_validity.push_back('\0');
  if (isValid) {
    m_validity.back() = static_cast<char>(m_validity.back() | 1 << m_length % 8);
  } else {
    ++m_nulls;
  }
  if (m_kind == ColumnKind::kText) m_offsets.push_back(static_cast<std::int32_t>(m_data.size()));
  ++m_length;
}

void ColumnBuilder::addNull() {
  constexpr char kNothing[16] = {};
  mark(false);
  if (m_kind == ColumnKind::kInt32) append(kNothing, 4);
  if (m_kind == ColumnKind::kInt64) append(kNothing, 8);
  if (m_kind == ColumnKind::kDecimal) append(kNothing, 16);
}

void ColumnBuilder::addInteger(std::int64_t value) {
  mark(true);
  if (m_kind == ColumnKind::kInt64) return append(&value, sizeof value);
  const auto narrow = static_cast<std::int32_t>(value);
  append(&narrow, sizeof narrow);
}

void ColumnBuilder::addText(std::string_view text) {
  mark(true);
  append(text.data(), text.size());
}

void ColumnBuilder::addDecimal(const encconv::Decimal& number) {
  CompilerUint128 value = 0;
  for (const char digit : number.digits) value = value * 10 + static_cast<unsigned>(digit - '0');
  if (number.negative) value = ~value + 1;
  mark(true);
  append(&value, sizeof value);
}

void ColumnBuilder::add(const encconv::Value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return addText(*text);
  const auto* const number = std::get_if<encconv::Decimal>(&value);
  if (number == nullptr) return addNull();
  if (m_kind == ColumnKind::kText) return addText(number->text());
  if (m_kind == ColumnKind::kDecimal) return addDecimal(*number);
  const auto integer = number->integer();
  if (!integer) return addNull();
  addInteger(*integer);
}

nb::tuple ColumnBuilder::take() {
  const auto bytesOf = [](const void* data, std::size_t size) {
    return nb::bytes(static_cast<const char*>(data), size);
  };
  nb::object validity = nb::none(), offsets = nb::none();
  if (m_nulls != 0) validity = bytesOf(m_validity.data(), m_validity.size());
  if (m_kind == ColumnKind::kText) {
    m_offsets.push_back(static_cast<std::int32_t>(m_data.size()));
    offsets = bytesOf(m_offsets.data(), m_offsets.size() * sizeof m_offsets[0]);
  }
  nb::tuple made =
      nb::make_tuple(m_length, m_nulls, validity, offsets, bytesOf(m_data.data(), m_data.size()));
  m_length = m_nulls = 0;
  m_validity.clear();
  m_offsets.clear();
  m_data.clear();
  return made;
}
