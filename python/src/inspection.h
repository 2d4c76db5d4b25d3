// What tells of encodings and of bytes, and converts with a report: the rest of the module's
// functions.
#ifndef PYTHON_SRC_INSPECTION_H_
#define PYTHON_SRC_INSPECTION_H_

#include <nanobind/nanobind.h>

void addInspection(nanobind::module_& module);

#endif  // PYTHON_SRC_INSPECTION_H_
