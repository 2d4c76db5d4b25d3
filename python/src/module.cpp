// The module behind the package.
#include <nanobind/nanobind.h>

#include "encconv/encconv.h"
#include "python/src/arrow_conversion.h"
#include "python/src/codec_functions.h"
#include "python/src/inspection.h"
#include "python/src/lines.h"
#include "python/src/record_columns.h"
#include "python/src/record_file.h"
#include "python/src/records.h"

NB_MODULE(_native, module) {
  module.attr("version") = nanobind::str(encconv::version().data(), encconv::version().size());
  if (!addCodecFunctions(module.ptr())) throw nanobind::python_error();
  addInspection(module);
  addArrowConversion(module);
  addLines(module);
  addRecords(module);
  addRecordColumns(module);
  addRecordFile(module);
}
