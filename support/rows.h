// Rows: a growable array of plain values that fails by latch instead of throwing.
#ifndef SUPPORT_ROWS_H_
#define SUPPORT_ROWS_H_

#include <cstdint>
#include <type_traits>

#include "support/data_buffer.h"
#include "support/replacement_sink.h"

// Rows that could not be added for lack of memory are missing; hasFailed() tells.
template <typename T>
class Rows {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  void add(const T& row) { m_bytes.append(&row, sizeof(T)); }
  void add(const T* rows, std::uint32_t count) {
    if (count <= 0xFFFFFFFFu / sizeof(T)) {
      m_bytes.append(rows, static_cast<unsigned int>(count * sizeof(T)));
    } else {
      m_bytes.latchFailure();
    }
  }
  // Cuts to the first count rows.
  void truncate(std::uint32_t count) {
    m_bytes.truncate(static_cast<unsigned int>(count * sizeof(T)));
  }
  // Keeps the storage for reuse.
  void clear() { m_bytes.clear(); }

  std::uint32_t size() const { return static_cast<std::uint32_t>(m_bytes.getSize() / sizeof(T)); }
  bool isEmpty() const { return m_bytes.getSize() == 0; }
  bool hasFailed() const { return m_bytes.hasFailed(); }
  void latchFailure() { m_bytes.latchFailure(); }
  const T* data() const { return reinterpret_cast<const T*>(m_bytes.getData2()); }
  const T& operator[](std::uint32_t index) const { return data()[index]; }
  // A row to be changed. The rows are this object's own, so the cast writes no one else's bytes.
  T& at(std::uint32_t index) { return const_cast<T*>(data())[index]; }

  // The storage, for code that appends the bytes of rows itself.
  DataBuffer& bytes() { return m_bytes; }

 private:
  DataBuffer m_bytes;
};

// Keeps what a codec reports.
class ReplacementRows final : public ReplacementSink {
 public:
  explicit ReplacementRows(Rows<ReplacedInput>& rows) : m_rows(rows) {}
  void onReplaced(const ReplacedInput& piece) override { m_rows.add(piece); }

 private:
  Rows<ReplacedInput>& m_rows;
};

#endif  // SUPPORT_ROWS_H_
