#include "python/src/lines.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "python/src/interpreter.h"

namespace nb = nanobind;

namespace {

// Where the lines begin in the data that they make without their ends, and where the last one ends.
using LineOffsets = std::vector<std::int32_t>;

// Copies the lines of a text, which end with LF or CR LF; none begins behind the last of them.
LineOffsets copyLines(const char* text, std::size_t size, char* data) {
  constexpr std::size_t kUsualLine = 64;
  LineOffsets offsets;
  offsets.reserve(size / kUsualLine + 2);
  std::size_t written = 0;
  for (std::size_t begin = 0; begin < size;) {
    offsets.push_back(static_cast<std::int32_t>(written));
    const void* const found = std::memchr(text + begin, '\n', size - begin);
    const std::size_t end =
        found == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(found) - text);
    std::size_t length = end - begin;
    if (found != nullptr && length != 0 && text[end - 1] == '\r') --length;
    std::memcpy(data + written, text + begin, length);
    written += length;
    begin = end + 1;
  }
  offsets.push_back(static_cast<std::int32_t>(written));
  return offsets;
}

// (number of lines, their offsets, their bytes): what a column of Arrow consists of.
nb::tuple splitLines(const nb::bytes& text) {
  const std::size_t size = text.size();
  if (size > std::size_t{std::numeric_limits<std::int32_t>::max()}) {
    throw nb::value_error("lines of 2 GiB and more are no column");
  }
  Reference data(PyBytes_FromStringAndSize(nullptr, pySize(size)));
  if (data == nullptr) throw nb::python_error();
  LineOffsets offsets;
  {
    const ReleasedLock released(size >= kUnlockedBytes);
    offsets = copyLines(text.c_str(), size, PyBytes_AS_STRING(data.get()));
  }
  PyObject* shortened = data.release();
  if (_PyBytes_Resize(&shortened, offsets.back()) != 0) throw nb::python_error();
  return nb::make_tuple(offsets.size() - 1,
                        nb::bytes(offsets.data(), offsets.size() * sizeof offsets[0]),
                        nb::steal<nb::bytes>(shortened));
}

}  // namespace

void addLines(nb::module_& module) {
  module.def("split_lines", &splitLines, nb::arg("text"),
             "The lines of a text in UTF-8 as the buffers of a column, without their ends.");
}
