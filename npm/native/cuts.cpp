// Where texts and files of records can be cut into parts that are read on their own.
#include <optional>

#include "encconv/encconv.h"
#include "encconv/records.h"
#include "npm/native/exports.h"

namespace {

// Numbers that may be large are doubles.
encconv::CutOptions optionsOf(double position, bool isAtCut, bool isBehindLine) {
  return {static_cast<std::uint64_t>(position), isAtCut, isBehindLine};
}

}  // namespace

// The place, or -1 when none is in sight.
ENCCONV_EXPORT(findCut)
double findCut(const char* bytes, unsigned int size, int codePage, unsigned int offset,
               double position, bool isAtCut, bool isBehindLine) {
  const auto cut = encconv::find_cut(textAt(bytes, size), codePage, offset,
                                     optionsOf(position, isAtCut, isBehindLine));
  return cut ? static_cast<double>(*cut) : -1;
}

// The same for records; -2 for a format that is not known.
ENCCONV_EXPORT(findRecordCut)
double findRecordCut(const char* bytes, unsigned int size, const char* format,
                     unsigned int formatLength, double offset, double position, bool isAtCut) {
  const auto parsed = encconv::parse_record_format(textAt(format, formatLength));
  if (!parsed) return -2;
  const auto cut =
      encconv::find_record_cut(textAt(bytes, size), *parsed, static_cast<std::uint64_t>(offset),
                               optionsOf(position, isAtCut, false));
  return cut ? static_cast<double>(*cut) : -1;
}
