// The rows of tables, apart from where they come from.
#ifndef INTERFACE_RECORDS_TABLE_ROWS_H_
#define INTERFACE_RECORDS_TABLE_ROWS_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "encconv/records.h"

namespace encconv {

// What is wrong with a row: where in its text, and why.
struct RowFault {
  std::size_t offset = 0;
  std::string reason;
};

// Each takes the whole text of a row, without its line end. False, with the fault, when it is none.
bool parseCsvRow(std::string_view text, std::vector<Value>& cells, RowFault& fault);
// Members in their order; numbers are given as they are written.
bool parseJsonRow(std::string_view text, std::vector<std::pair<std::string, Value>>& members,
                  RowFault& fault);

}  // namespace encconv

#endif  // INTERFACE_RECORDS_TABLE_ROWS_H_
