// Columns of Arrow from and to an encoding.
#ifndef PYTHON_SRC_ARROW_CONVERSION_H_
#define PYTHON_SRC_ARROW_CONVERSION_H_

#include <nanobind/nanobind.h>

void addArrowConversion(nanobind::module_& module);

#endif  // PYTHON_SRC_ARROW_CONVERSION_H_
