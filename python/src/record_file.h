// Columns of Arrow as the records of a file.
#ifndef PYTHON_SRC_RECORD_FILE_H_
#define PYTHON_SRC_RECORD_FILE_H_

#include <nanobind/nanobind.h>

void addRecordFile(nanobind::module_& module);

#endif  // PYTHON_SRC_RECORD_FILE_H_
