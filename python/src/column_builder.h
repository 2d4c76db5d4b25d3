// Columns of Arrow that are made value by value, and handed over as the buffers that they consist
// of.
#ifndef PYTHON_SRC_COLUMN_BUILDER_H_
#define PYTHON_SRC_COLUMN_BUILDER_H_

#include <nanobind/nanobind.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "encconv/records.h"

// How the values of a column are written.
enum class ColumnKind : unsigned char {
  kText,     // "u": UTF-8 with offsets of 32 bits
  kInt32,    // "i"
  kInt64,    // "l"
  kDecimal,  // "d:PRECISION,SCALE": two's complement of 128 bits
};

class ColumnBuilder {
 public:
  explicit ColumnBuilder(ColumnKind kind, int precision = 0, int scale = 0);
  // The column that holds every value of a field: text where a number may have more than 38 digits.
  static ColumnBuilder of(const encconv::Field& field);

  // The name of the type in the C data interface.
  std::string format() const;

  void addNull();
  void addInteger(std::int64_t value);    // of kInt32 and kInt64
  void addText(std::string_view text);    // of kText
  void add(const encconv::Value& value);  // what the field gave
  std::size_t textBytes() const { return m_kind == ColumnKind::kText ? m_data.size() : 0; }

  // (length, nulls, validity or None, offsets or None, data), and the column is empty again.
  nanobind::tuple take();

 private:
  void mark(bool isValid);
  void append(const void* bytes, std::size_t size) {
    m_data.append(static_cast<const char*>(bytes), size);
  }
  void addDecimal(const encconv::Decimal& number);

  ColumnKind m_kind;
  int m_precision;
  int m_scale;
  std::int64_t m_length = 0;
  std::int64_t m_nulls = 0;
  std::string m_validity;
  std::vector<std::int32_t> m_offsets;
  std::string m_data;
};

#endif  // PYTHON_SRC_COLUMN_BUILDER_H_
