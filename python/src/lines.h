// Text as a column of its lines.
#ifndef PYTHON_SRC_LINES_H_
#define PYTHON_SRC_LINES_H_

#include <nanobind/nanobind.h>

void addLines(nanobind::module_& module);

#endif  // PYTHON_SRC_LINES_H_
