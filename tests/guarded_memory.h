// Memory between two pages that nobody may touch: what leaves its range crashes.
#ifndef TESTS_GUARDED_MEMORY_H_
#define TESTS_GUARDED_MEMORY_H_

#include <cstddef>

class GuardedMemory {
 public:
  // Of at least size bytes.
  explicit GuardedMemory(std::size_t size);
  ~GuardedMemory();
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;
  unsigned char* begin() const { return m_all + m_page; }
  unsigned char* end() const { return begin() + m_size; }

 private:
  std::size_t m_page, m_size;
  unsigned char* m_all;
};

#endif  // TESTS_GUARDED_MEMORY_H_
