#include "support/huge_pages.h"

#include <cerrno>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

void preferHugePages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) {
#if defined(__linux__)
  constexpr std::size_t kLeast = 4u << 20;
  constexpr std::uintptr_t kPage = 2u << 20;
  if (size < kLeast) return;
  const auto begin = (reinterpret_cast<std::uintptr_t>(block) + kPage - 1) & ~(kPage - 1);
  const auto end = (reinterpret_cast<std::uintptr_t>(block) + size) & ~(kPage - 1);
  const int before = errno;
  madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
  errno = before;
#endif
}
