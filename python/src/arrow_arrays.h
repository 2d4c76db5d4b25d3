// Columns of Arrow: taking them from other libraries and giving them to others, by the C data
// interface, which capsules carry.
#ifndef PYTHON_SRC_ARROW_ARRAYS_H_
#define PYTHON_SRC_ARROW_ARRAYS_H_

#include <nanobind/nanobind.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

// As the C data interface has them: the layout, the names and their order are fixed by it.
struct ArrowSchema {
  const char* format;
  const char* name;
  const char* metadata;
  std::int64_t flags;
  std::int64_t n_children;
  ArrowSchema** children;
  ArrowSchema* dictionary;
  void (*release)(ArrowSchema*);
  void* private_data;
};
struct ArrowArray {
  std::int64_t length;
  std::int64_t null_count;
  std::int64_t offset;
  std::int64_t n_buffers;
  std::int64_t n_children;
  const void** buffers;
  ArrowArray** children;
  ArrowArray* dictionary;
  void (*release)(ArrowArray*);
  void* private_data;
};
struct ArrowArrayStream {
  int (*get_schema)(ArrowArrayStream*, ArrowSchema*);
  int (*get_next)(ArrowArrayStream*, ArrowArray*);
  const char* (*get_last_error)(ArrowArrayStream*);
  void (*release)(ArrowArrayStream*);
  void* private_data;
};

// One of these structures that is owned.
template <typename Struct>
class OwnedArrow {
 public:
  OwnedArrow() = default;
  ~OwnedArrow() {
    if (m_value.release != nullptr) m_value.release(&m_value);
  }
  OwnedArrow(OwnedArrow&& other) noexcept : m_value(other.m_value) {
    other.m_value.release = nullptr;
  }
  OwnedArrow& operator=(OwnedArrow&&) = delete;

  // Takes one over that somebody else held.
  void take(Struct& other) {
    m_value = other;
    other.release = nullptr;
  }
  Struct* get() { return &m_value; }
  const Struct* operator->() const { return &m_value; }
  const Struct& operator*() const { return m_value; }

 private:
  Struct m_value = {};
};

// How the values of a column lie in memory.
enum class ArrowLayout : unsigned char {
  kOffsets,       // one after another, with offsets of 32 bits
  kLargeOffsets,  // the same with 64 bits
  kViews,         // anywhere, with a view of each
  kFixed,         // one after another, each of as many bytes
};

struct ArrowType {
  ArrowLayout layout = ArrowLayout::kOffsets;
  bool isText = false;     // UTF-8, and not any bytes
  std::int64_t width = 0;  // of kFixed
};
// False for a type that is neither bytes nor text.
bool parseArrowFormat(const char* format, ArrowType& type);
const char* formatOf(const ArrowType& type);

// Columns as they came, each chunk an array of one type.
struct ArrowInput {
  OwnedArrow<ArrowSchema> schema;
  std::vector<OwnedArrow<ArrowArray>> chunks;
  bool isChunked = false;
};
// Takes what an object exports; throws what its methods raise, or TypeError.
void takeArrow(nanobind::handle object, ArrowInput& input);

// The bytes of a value.
struct ArrowValue {
  const unsigned char* data;
  std::size_t size;
};
// Reads the values of one array.
class ArrowReader {
 public:
  ArrowReader(const ArrowArray& array, const ArrowType& type);

  std::int64_t length() const { return m_array.length; }
  bool isValid(std::int64_t index) const {
    const std::int64_t bit = m_array.offset + index;
    return m_validity == nullptr || (m_validity[bit >> 3] >> (bit & 7) & 1) != 0;
  }
  ArrowValue value(std::int64_t index) const;
  // About how many bytes all values have.
  std::size_t bytes() const;

 private:
  const ArrowArray& m_array;
  ArrowType m_type;
  const std::uint8_t* m_validity = nullptr;
};

// The memory of an array that was made here; all that are given to others share it.
struct ArrowMemory {
  struct Free {
    void operator()(void* block) const { std::free(block); }
  };
  using Block = std::unique_ptr<void, Free>;

  std::int64_t length = 0;
  std::int64_t nullCount = 0;
  std::vector<std::uint8_t> validity;      // empty where nothing is null
  std::vector<std::int32_t> offsets;       // of kOffsets
  std::vector<std::int64_t> largeOffsets;  // of kLargeOffsets
  std::vector<std::uint8_t> views;         // of kViews, 16 bytes each
  std::vector<Block> blocks;               // the bytes
  std::vector<std::int64_t> blockSizes;
};

// A column that was made here, to be given to other libraries any number of times.
class ArrowColumn {
 public:
  ArrowColumn(ArrowType type, std::string name) : m_type(type), m_name(std::move(name)) {}

  void add(std::shared_ptr<const ArrowMemory> chunk) { m_chunks.push_back(std::move(chunk)); }
  std::int64_t length() const;
  std::int64_t nullCount() const;
  std::size_t chunkCount() const { return m_chunks.size(); }
  std::string format() const { return formatOf(m_type); }

  nanobind::object schemaCapsule() const;
  nanobind::tuple arrayCapsules() const;  // of a column of one chunk
  nanobind::object streamCapsule() const;

 private:
  ArrowType m_type;
  std::string m_name;
  std::vector<std::shared_ptr<const ArrowMemory>> m_chunks;
};

#endif  // PYTHON_SRC_ARROW_ARRAYS_H_
