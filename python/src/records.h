// Records and fields of mainframe files.
#ifndef PYTHON_SRC_RECORDS_H_
#define PYTHON_SRC_RECORDS_H_

#include <nanobind/nanobind.h>

void addRecords(nanobind::module_& module);

#endif  // PYTHON_SRC_RECORDS_H_
