#include "python/src/arrow_conversion.h"

#include <nanobind/stl/string.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "encoding/plan.h"
#include "encoding/special_code_pages.h"
#include "interface/outputs.h"
#include "python/src/arrow_arrays.h"
#include "python/src/codec_call.h"
#include "python/src/encoding_entry.h"
#include "python/src/error_handling.h"

namespace nb = nanobind;

namespace {

// Whether a short text is ASCII.
bool isAscii(const unsigned char* data, std::size_t size) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  std::uint64_t bits = 0;
  std::size_t i = 0;
  for (; size - i >= 8; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, data + i, 8);
    bits |= word;
  }
  unsigned char rest = 0;
  for (; i < size; ++i) rest |= data[i];
  return (bits & kHighBits) == 0 && rest < 0x80;
}

// Converts the values of columns, each a text of its own. Values that are clean go without the
// interpreter lock; one that is not is decoded or encoded as a str, by which handlers are asked.
class ColumnConversion final : private StreamErrorHandler {
 public:
  ColumnConversion(EncodingEntry& entry, bool isDecoding, const char* label, const char* errors);

  std::shared_ptr<const ArrowMemory> convert(const ArrowReader& values, ArrowLayout layout);

 private:
  void put(const ArrowValue& value, BlockOutput& out);
  bool putClean(const ArrowValue& value, BlockOutput& out);
  void putByString(const ArrowValue& value, BlockOutput& out);
  void onStreamError(const StreamError& error) override;

  EncodingEntry& m_entry;
  const bool m_isDecoding;
  const bool m_keepsAscii;
  const char* m_label;
  const char* m_errors;
  const fast::Plan* m_plan = nullptr;
  StreamSettings m_settings;
  StreamConverter m_stream;
  ReleasedLock m_lock;
  std::int64_t m_row = 0;
  bool m_isApproximated = false;
};

ColumnConversion::ColumnConversion(EncodingEntry& entry, bool isDecoding, const char* label,
                                   const char* errors)
    : m_entry(entry),
      m_isDecoding(isDecoding),
      m_keepsAscii(isDecoding ? entry.readsAscii : entry.writesAscii),
      m_label(label),
      m_errors(errors),
      m_lock(false) {
  m_settings.from = isDecoding ? entry.codePage : kUtf8;
  m_settings.to = isDecoding ? kUtf8 : entry.codePage;
  m_settings.dropMark = isDecoding;
  m_settings.errorHandler = this;
  m_plan = fast::openPlan(m_settings.from, m_settings.to, fast::Reader::kStream);
  if (m_plan == nullptr) throw std::bad_alloc();
  const BuiltinErrors builtin = builtinErrors(errors);
  if (builtin == BuiltinErrors::kIgnore) m_settings.treatment = StreamTreatment::kDrop;
  if (isDecoding && builtin == BuiltinErrors::kReplace) {
    m_settings.treatment = StreamTreatment::kSubstitute;
  }
}

void ColumnConversion::onStreamError(const StreamError& error) {
  m_isApproximated = m_isApproximated || error.kind == StreamErrorKind::kApproximated;
}

// False, with what was written to be taken back, for a value that needs a handler.
bool ColumnConversion::putClean(const ArrowValue& value, BlockOutput& out) {
  const std::size_t needed = value.size * fast::kWorstFactor + fast::kKernelSlack;
  if (value.size <= fast::kShortBytes && out.require(std::min(needed, Output::kMaxRequest))) {
    if (m_keepsAscii && isAscii(value.data, value.size)) {
      if (value.size != 0) std::memcpy(out.next, value.data, value.size);
      out.next += value.size;
      return true;
    }
    const bool isWhole = m_plan->whole != nullptr && value.size != 0 && out.room() >= needed &&
                         !m_plan->mayBeginWithMark(value.data, value.size);
    if (isWhole) {
      unsigned char* const end = m_plan->whole(*m_plan, value.data, value.size, out.next, out.end);
      if (end != nullptr) {
        out.next = end;
        return true;
      }
    }
  }
  // U+FEFF in front of a str is a character of it.
  const bool isMark =
      !m_isDecoding && value.size >= 3 && std::memcmp(value.data, "\xEF\xBB\xBF", 3) == 0;
  if (isMark) return false;
  m_isApproximated = false;
  const StreamStatus status = m_stream.begin(m_settings) == StreamStatus::kGood
                                  ? m_stream.finish(value.data, value.size, out)
                                  : StreamStatus::kNoMemory;
  return status == StreamStatus::kGood && !m_isApproximated;
}

// By way of a str, for the handlers of Python.
void ColumnConversion::putByString(const ArrowValue& value, BlockOutput& out) {
  const HeldLock held(&m_lock);
  const auto* const data = reinterpret_cast<const char*>(value.data);
  CodecCall call;
  call.entry = &m_entry;
  call.label = m_label;
  call.errors = m_errors;
  Reference result;
  const char* bytes = nullptr;
  Py_ssize_t size = 0;
  if (m_isDecoding) {
    const Reference given(PyBytes_FromStringAndSize(data, pySize(value.size)));
    HeldBuffer buffer;
    if (given != nullptr && buffer.hold(given.get())) result.reset(decodeBytes(call, buffer));
    if (result != nullptr) bytes = PyUnicode_AsUTF8AndSize(result.get(), &size);
  } else {
    const Reference given(PyUnicode_DecodeUTF8(data, pySize(value.size), nullptr));
    if (given != nullptr) result.reset(encodeText(call, given.get()));
    if (result != nullptr) PyBytes_AsStringAndSize(result.get(), const_cast<char**>(&bytes), &size);
  }
  if (bytes == nullptr) {
    // Which value it was is told by a note; the exception is that of the codec.
    PyObject *type = nullptr, *exception = nullptr, *trace = nullptr;
    PyErr_Fetch(&type, &exception, &trace);
    PyErr_NormalizeException(&type, &exception, &trace);
    const Reference noted(PyObject_CallMethod(
        exception, "add_note", "N",
        PyUnicode_FromFormat("value %lld of the array", static_cast<long long>(m_row))));
    if (noted == nullptr) PyErr_Clear();
    PyErr_Restore(type, exception, trace);
    throw nb::python_error();
  }
  if (!out.append(bytes, static_cast<std::size_t>(size))) throw std::bad_alloc();
}

void ColumnConversion::put(const ArrowValue& value, BlockOutput& out) {
  const std::size_t before = out.written();
  if (putClean(value, out)) return;
  out.truncate(before);
  putByString(value, out);
}

std::shared_ptr<const ArrowMemory> ColumnConversion::convert(const ArrowReader& values,
                                                             ArrowLayout layout) {
  constexpr std::int64_t kMostBlock = 1 << 30;
  constexpr std::size_t kInline = 12;
  auto made = std::make_shared<ArrowMemory>();
  const auto count = static_cast<std::size_t>(values.length());
  made->length = values.length();
  if (layout == ArrowLayout::kOffsets) made->offsets.reserve(count + 1);
  if (layout == ArrowLayout::kLargeOffsets) made->largeOffsets.reserve(count + 1);
  if (layout == ArrowLayout::kViews) made->views.resize(count * 16);
  std::vector<std::uint8_t> validity((count + 7) / 8);
  auto out = std::make_unique<BlockOutput>();
  const auto endBlock = [&] {
    std::size_t size = 0;
    made->blocks.emplace_back(out->release(size));
    made->blockSizes.push_back(static_cast<std::int64_t>(size));
    out = std::make_unique<BlockOutput>();
  };
  const std::size_t bytes = values.bytes();
  m_lock.release();
  try {
    out->expect(bytes + bytes / 4 + 2 * fast::kKernelSlack);
    for (std::size_t i = 0; i < count; ++i) {
      m_row = static_cast<std::int64_t>(i);
      const std::size_t begin = out->written();
      if (layout == ArrowLayout::kOffsets) {
        made->offsets.push_back(static_cast<std::int32_t>(begin));
      } else if (layout == ArrowLayout::kLargeOffsets) {
        made->largeOffsets.push_back(static_cast<std::int64_t>(begin));
      }
      if (!values.isValid(m_row)) {
        ++made->nullCount;
        continue;
      }
      validity[i / 8] = static_cast<std::uint8_t>(validity[i / 8] | 1u << i % 8);
      put(values.value(m_row), *out);
      const std::size_t size = out->written() - begin;
      if (layout == ArrowLayout::kOffsets && out->written() > INT32_MAX) {
        throw std::overflow_error("the texts of a chunk take 2 GiB or more: use a large type");
      }
      if (layout != ArrowLayout::kViews) continue;
      unsigned char* const view = made->views.data() + i * 16;
      const unsigned char* const text = out->next - size;
      const auto size32 = static_cast<std::int32_t>(size);
      std::memcpy(view, &size32, 4);
      std::memcpy(view + 4, text, std::min(size, kInline));
      if (size <= kInline) {
        out->truncate(begin);
        continue;
      }
      const auto block = static_cast<std::int32_t>(made->blocks.size());
      const auto offset = static_cast<std::int32_t>(begin);
      std::memcpy(view + 8, &block, 4);
      std::memcpy(view + 12, &offset, 4);
      if (static_cast<std::int64_t>(out->written()) >= kMostBlock) endBlock();
    }
  } catch (...) {
    m_lock.takeBack();
    throw;
  }
  m_lock.takeBack();
  const std::size_t end = out->written();
  if (layout == ArrowLayout::kOffsets) made->offsets.push_back(static_cast<std::int32_t>(end));
  if (layout == ArrowLayout::kLargeOffsets) {
    made->largeOffsets.push_back(static_cast<std::int64_t>(end));
  }
  if (layout != ArrowLayout::kViews || end != 0) endBlock();
  if (made->nullCount != 0) made->validity = std::move(validity);
  return made;
}

nb::object convertColumn(nb::handle array, nb::handle encoding, nb::handle errors,
                         bool isDecoding) {
  EncodingEntry* const entry = findEntry(encoding.ptr());
  if (entry == nullptr) throw nb::python_error();
  if (isDecoding ? !entry->openReading() : !entry->openWriting()) throw nb::python_error();
  const char* const handler = errors.is_none() ? nullptr : PyUnicode_AsUTF8(errors.ptr());
  if (!errors.is_none() && handler == nullptr) throw nb::python_error();
  ArrowInput input;
  takeArrow(array, input);
  ArrowType type;
  const bool isDictionary = input.schema->dictionary != nullptr;
  if (isDictionary || !parseArrowFormat(input.schema->format, type) || type.isText == isDecoding) {
    const std::string given = isDictionary
                                  ? "a dictionary: convert the values that it stands for"
                                  : std::string("one of format '") + input.schema->format + "'";
    const std::string wanted = isDecoding ? "binary" : "string";
    throw nb::type_error(("a column of " + wanted + " values is required, not " + given).c_str());
  }
  const char* const label =
      PyUnicode_Check(encoding.ptr()) ? PyUnicode_AsUTF8(encoding.ptr()) : entry->row->name;
  ColumnConversion conversion(*entry, isDecoding, label, handler);
  const ArrowLayout layout =
      type.layout == ArrowLayout::kFixed ? ArrowLayout::kOffsets : type.layout;
  const char* const name = input.schema->name;
  ArrowColumn column({layout, isDecoding, 0}, name != nullptr ? name : "");
  for (const OwnedArrow<ArrowArray>& chunk : input.chunks) {
    column.add(conversion.convert(ArrowReader(*chunk, type), layout));
  }
  return nb::make_tuple(nb::cast(std::move(column)), input.isChunked);
}

}  // namespace

void addArrowConversion(nb::module_& module) {
  nb::class_<ArrowColumn>(module, "ArrowColumn", "A column of Arrow that was made here.")
      .def("__len__", &ArrowColumn::length)
      .def_prop_ro("null_count", &ArrowColumn::nullCount)
      .def_prop_ro("chunk_count", &ArrowColumn::chunkCount)
      .def_prop_ro("format", &ArrowColumn::format)
      .def("schema_capsule", &ArrowColumn::schemaCapsule)
      .def("array_capsules", &ArrowColumn::arrayCapsules)
      .def("stream_capsule", &ArrowColumn::streamCapsule);
  module.def("arrow_convert", &convertColumn, nb::arg("array"), nb::arg("encoding"),
             nb::arg("errors").none(), nb::arg("decoding"),
             "The column with its values decoded or encoded, and whether it was chunked.");
}
