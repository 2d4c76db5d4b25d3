// The records of a file as columns of Arrow, for tables that are too long for an object a row.
#ifndef PYTHON_SRC_RECORD_COLUMNS_H_
#define PYTHON_SRC_RECORD_COLUMNS_H_

#include <nanobind/nanobind.h>

void addRecordColumns(nanobind::module_& module);

#endif  // PYTHON_SRC_RECORD_COLUMNS_H_
