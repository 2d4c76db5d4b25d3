// BytesOutput: makes a bytes object of what a conversion writes.
#ifndef PYTHON_SRC_BYTES_OUTPUT_H_
#define PYTHON_SRC_BYTES_OUTPUT_H_

#include <cstddef>
#include <cstdint>

#include "encoding/output.h"
#include "python/src/interpreter.h"

// What fits a block is put together there first; the object has its size then at once.
class BytesOutput final : public Output {
 public:
  // A guess at the size; lock is the interpreter lock, which is taken back for a moment when the
  // object grows; null: it is held.
  explicit BytesOutput(std::size_t expected, ReleasedLock* lock = nullptr)
      : m_expected(expected), m_lock(lock) {
    next = m_begin = m_block;
    end = m_block + sizeof m_block;
  }
  ~BytesOutput();

  std::size_t size() const { return static_cast<std::size_t>(next - m_begin); }
  void truncate(std::size_t size) { next = m_begin + size; }
  // Lets no more be written: grow() fails from now on.
  void close() {
    isFull = true;
    end = next;
  }
  void reopen();
  // The object; null with an exception. Nothing may be done with this one afterwards.
  PyObject* finish();

 private:
  bool grow(std::size_t count, std::uint64_t expected) override;

  PyObject* m_bytes = nullptr;  // null while the block is enough
  unsigned char* m_begin;
  std::size_t m_expected;
  ReleasedLock* m_lock;
  unsigned char m_block[2048];
};

#endif  // PYTHON_SRC_BYTES_OUTPUT_H_
