// Records and fields of mainframe files.
#ifndef PYTHON_SRC_RECORDS_H_
#define PYTHON_SRC_RECORDS_H_

#include <nanobind/nanobind.h>

#include <string>

#include "encconv/records.h"

// What Python gives as texts; ValueError for what is none of its kind.
encconv::RecordFormat recordFormatOf(const std::string& text);
encconv::FieldLayout fieldLayoutOf(const std::string& text);
encconv::FieldOptions fieldOptionsOf(const std::string& encoding, const std::string& onError,
                                     bool trim, const std::string& format);
// A few words for people.
std::string reasonOf(const encconv::RecordProblem& problem);

void addRecords(nanobind::module_& module);

#endif  // PYTHON_SRC_RECORDS_H_
