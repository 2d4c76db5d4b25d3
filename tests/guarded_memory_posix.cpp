#include <sys/mman.h>
#include <unistd.h>

#include "tests/guarded_memory.h"

GuardedMemory::GuardedMemory(std::size_t size)
    : m_page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
      m_size((size + m_page - 1) / m_page * m_page),
      m_all(static_cast<unsigned char*>(
          mmap(nullptr, m_size + 2 * m_page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
  mprotect(begin(), m_size, PROT_READ | PROT_WRITE);
}

GuardedMemory::~GuardedMemory() { munmap(m_all, m_size + 2 * m_page); }
