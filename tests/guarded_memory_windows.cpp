#include <windows.h>

#include "tests/guarded_memory.h"

namespace {

std::size_t pageSize() {
  SYSTEM_INFO info = {};
  GetSystemInfo(&info);
  return info.dwPageSize;
}

}  // namespace

GuardedMemory::GuardedMemory(std::size_t size)
    : m_page(pageSize()),
      m_size((size + m_page - 1) / m_page * m_page),
      m_all(static_cast<unsigned char*>(
          VirtualAlloc(nullptr, m_size + 2 * m_page, MEM_RESERVE, PAGE_NOACCESS))) {
  VirtualAlloc(begin(), m_size, MEM_COMMIT, PAGE_READWRITE);
}

GuardedMemory::~GuardedMemory() { VirtualFree(m_all, 0, MEM_RELEASE); }
