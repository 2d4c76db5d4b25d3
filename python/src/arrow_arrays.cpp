#include "python/src/arrow_arrays.h"

#include <cerrno>
#include <cstring>
#include <string_view>

namespace nb = nanobind;

namespace {

constexpr std::int64_t kNullable = 2;  // flag of a schema
constexpr const char* kSchemaName = "arrow_schema";
constexpr const char* kArrayName = "arrow_array";
constexpr const char* kStreamName = "arrow_array_stream";

template <typename T>
T load(const unsigned char* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <typename Struct>
Struct& pointed(nb::handle capsule, const char* name) {
  void* const pointer = PyCapsule_GetPointer(capsule.ptr(), name);
  if (pointer == nullptr) throw nb::python_error();
  return *static_cast<Struct*>(pointer);
}

// ---- Giving. ----

struct SchemaMemory {
  std::string format;
  std::string name;
};

void fillSchema(const ArrowType& type, const std::string& name, ArrowSchema& schema) {
  auto* const memory = new SchemaMemory{formatOf(type), name};
  schema = {};
  schema.format = memory->format.c_str();
  schema.name = memory->name.c_str();
  schema.flags = kNullable;
  schema.private_data = memory;
  schema.release = [](ArrowSchema* given) {
    delete static_cast<SchemaMemory*>(given->private_data);
    given->release = nullptr;
  };
}

struct ArrayMemory {
  std::shared_ptr<const ArrowMemory> chunk;
  std::vector<const void*> buffers;
};

void fillArray(const ArrowType& type, const std::shared_ptr<const ArrowMemory>& chunk,
               ArrowArray& array) {
  // Some readers want every buffer but validity to be somewhere, though it be empty.
  static constexpr std::int64_t kNothing[2] = {};
  const auto placeOf = [](const auto& values) -> const void* {
    return values.empty() ? static_cast<const void*>(kNothing) : values.data();
  };
  auto memory = std::make_unique<ArrayMemory>();
  memory->chunk = chunk;
  memory->buffers.push_back(chunk->validity.empty() ? nullptr : chunk->validity.data());
  if (type.layout == ArrowLayout::kViews) memory->buffers.push_back(placeOf(chunk->views));
  if (type.layout == ArrowLayout::kOffsets) memory->buffers.push_back(placeOf(chunk->offsets));
  if (type.layout == ArrowLayout::kLargeOffsets) {
    memory->buffers.push_back(placeOf(chunk->largeOffsets));
  }
  for (const ArrowMemory::Block& block : chunk->blocks) {
    memory->buffers.push_back(block != nullptr ? block.get() : kNothing);
  }
  if (type.layout == ArrowLayout::kViews) memory->buffers.push_back(placeOf(chunk->blockSizes));
  array = {};
  array.length = chunk->length;
  array.null_count = chunk->nullCount;
  array.n_buffers = static_cast<std::int64_t>(memory->buffers.size());
  array.buffers = memory->buffers.data();
  array.private_data = memory.release();
  array.release = [](ArrowArray* given) {
    delete static_cast<ArrayMemory*>(given->private_data);
    given->release = nullptr;
  };
}

// A capsule that owns a structure, unless somebody took it over.
template <typename Struct>
nb::object capsuleOf(std::unique_ptr<Struct> value, const char* name) {
  PyObject* const capsule = PyCapsule_New(value.get(), name, [](PyObject* self) {
    auto* const held = static_cast<Struct*>(PyCapsule_GetPointer(self, PyCapsule_GetName(self)));
    if (held->release != nullptr) held->release(held);
    delete held;
  });
  if (capsule == nullptr) throw nb::python_error();
  value.release();
  return nb::steal(capsule);
}

struct StreamMemory {
  ArrowType type;
  std::string name;
  std::vector<std::shared_ptr<const ArrowMemory>> chunks;
  std::size_t next = 0;
};

}  // namespace

bool parseArrowFormat(const char* format, ArrowType& type) {
  const std::string_view text(format);
  struct Known {
    std::string_view format;
    ArrowLayout layout;
    bool isText;
  };
  constexpr Known kKnown[] = {
      {"z", ArrowLayout::kOffsets, false},      {"u", ArrowLayout::kOffsets, true},
      {"Z", ArrowLayout::kLargeOffsets, false}, {"U", ArrowLayout::kLargeOffsets, true},
      {"vz", ArrowLayout::kViews, false},       {"vu", ArrowLayout::kViews, true},
  };
  for (const Known& known : kKnown) {
    if (text != known.format) continue;
    type = {known.layout, known.isText, 0};
    return true;
  }
  if (!text.starts_with("w:")) return false;
  type = {ArrowLayout::kFixed, false, std::atoll(format + 2)};
  return type.width >= 0;
}

const char* formatOf(const ArrowType& type) {
  switch (type.layout) {
    case ArrowLayout::kLargeOffsets:
      return type.isText ? "U" : "Z";
    case ArrowLayout::kViews:
      return type.isText ? "vu" : "vz";
    default:
      return type.isText ? "u" : "z";
  }
}

void takeArrow(nb::handle object, ArrowInput& input) {
  if (nb::hasattr(object, "__arrow_c_array__")) {
    const nb::tuple capsules = nb::cast<nb::tuple>(object.attr("__arrow_c_array__")());
    input.schema.take(pointed<ArrowSchema>(capsules[0], kSchemaName));
    input.chunks.emplace_back().take(pointed<ArrowArray>(capsules[1], kArrayName));
    return;
  }
  if (!nb::hasattr(object, "__arrow_c_stream__")) {
    throw nb::type_error(
        "an Arrow array is required: an object with __arrow_c_array__ or __arrow_c_stream__");
  }
  const nb::object capsule = object.attr("__arrow_c_stream__")();
  OwnedArrow<ArrowArrayStream> stream;
  stream.take(pointed<ArrowArrayStream>(capsule, kStreamName));
  input.isChunked = true;
  int failure = stream->get_schema(stream.get(), input.schema.get());
  while (failure == 0) {
    OwnedArrow<ArrowArray> chunk;
    failure = stream->get_next(stream.get(), chunk.get());
    if (failure != 0 || chunk->release == nullptr) break;
    input.chunks.push_back(std::move(chunk));
  }
  if (failure == 0) return;
  if (PyErr_Occurred() != nullptr) throw nb::python_error();
  const char* const why = stream->get_last_error(stream.get());
  throw std::runtime_error(why != nullptr ? why : "the Arrow stream failed");
}

ArrowReader::ArrowReader(const ArrowArray& array, const ArrowType& type)
    : m_array(array), m_type(type) {
  if (array.n_buffers != 0 && array.null_count != 0) {
    m_validity = static_cast<const std::uint8_t*>(array.buffers[0]);
  }
}

ArrowValue ArrowReader::value(std::int64_t index) const {
  const std::int64_t at = m_array.offset + index;
  const auto* const first = static_cast<const unsigned char*>(m_array.buffers[1]);
  const auto bytesFrom = [&](std::int64_t begin, std::int64_t end) -> ArrowValue {
    const auto* const data = static_cast<const unsigned char*>(m_array.buffers[2]);
    return {data + begin, static_cast<std::size_t>(end - begin)};
  };
  switch (m_type.layout) {
    case ArrowLayout::kOffsets:
      return bytesFrom(load<std::int32_t>(first + at * 4), load<std::int32_t>(first + at * 4 + 4));
    case ArrowLayout::kLargeOffsets:
      return bytesFrom(load<std::int64_t>(first + at * 8), load<std::int64_t>(first + at * 8 + 8));
    case ArrowLayout::kFixed:
      return {first + at * m_type.width, static_cast<std::size_t>(m_type.width)};
    case ArrowLayout::kViews:
      break;
  }
  constexpr std::int32_t kInline = 12;
  const unsigned char* const view = first + at * 16;
  const auto size = load<std::int32_t>(view);
  if (size <= kInline) return {view + 4, static_cast<std::size_t>(size)};
  const auto block = load<std::int32_t>(view + 8);
  const auto* const data = static_cast<const unsigned char*>(m_array.buffers[2 + block]);
  return {data + load<std::int32_t>(view + 12), static_cast<std::size_t>(size)};
}

std::size_t ArrowReader::bytes() const {
  if (m_array.length == 0) return 0;
  if (m_type.layout == ArrowLayout::kFixed) {
    return static_cast<std::size_t>(m_array.length * m_type.width);
  }
  if (m_type.layout == ArrowLayout::kViews) return static_cast<std::size_t>(m_array.length) * 16;
  const ArrowValue last = value(m_array.length - 1);
  return static_cast<std::size_t>(last.data + last.size - value(0).data);
}

std::int64_t ArrowColumn::length() const {
  std::int64_t total = 0;
  for (const auto& chunk : m_chunks) total += chunk->length;
  return total;
}

std::int64_t ArrowColumn::nullCount() const {
  std::int64_t total = 0;
  for (const auto& chunk : m_chunks) total += chunk->nullCount;
  return total;
}

nb::object ArrowColumn::schemaCapsule() const {
  auto schema = std::make_unique<ArrowSchema>();
  fillSchema(m_type, m_name, *schema);
  return capsuleOf(std::move(schema), kSchemaName);
}

nb::tuple ArrowColumn::arrayCapsules() const {
  auto array = std::make_unique<ArrowArray>();
  fillArray(m_type, m_chunks.at(0), *array);
  const nb::object schema = schemaCapsule();
  return nb::make_tuple(schema, capsuleOf(std::move(array), kArrayName));
}

nb::object ArrowColumn::streamCapsule() const {
  auto stream = std::make_unique<ArrowArrayStream>();
  *stream = {};
  stream->private_data = new StreamMemory{m_type, m_name, m_chunks};
  stream->get_schema = [](ArrowArrayStream* self, ArrowSchema* schema) {
    const auto& memory = *static_cast<StreamMemory*>(self->private_data);
    fillSchema(memory.type, memory.name, *schema);
    return 0;
  };
  stream->get_next = [](ArrowArrayStream* self, ArrowArray* array) {
    auto& memory = *static_cast<StreamMemory*>(self->private_data);
    *array = {};
    if (memory.next < memory.chunks.size()) {
      fillArray(memory.type, memory.chunks[memory.next++], *array);
    }
    return 0;
  };
  stream->get_last_error = [](ArrowArrayStream*) -> const char* { return nullptr; };
  stream->release = [](ArrowArrayStream* self) {
    delete static_cast<StreamMemory*>(self->private_data);
    self->release = nullptr;
  };
  return capsuleOf(std::move(stream), kStreamName);
}
