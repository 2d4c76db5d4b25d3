// What the compiler and the standard headers call for, and would otherwise come with the C++
// runtime: the library needs the C library and nothing else. All of it is hidden, so that a
// program's own runtime is never met.
#include <cstddef>
#include <cstdlib>
#include <new>

#include "encoding/kernels/cpu_dispatch.h"
#include "support/compiler.h"

namespace std {
const nothrow_t nothrow{};
// Texts are cut at places that were found in them.
void __throw_out_of_range_fmt(const char* /*format*/, ...) { std::abort(); }  // NOLINT
void __throw_length_error(const char* /*text*/) { std::abort(); }             // NOLINT
}  // namespace std

// What converts uses only the forms that do not throw; where memory is short they give null.
void* operator new(std::size_t size) {
  void* const memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) std::abort();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return std::malloc(size != 0 ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return std::malloc(size != 0 ? size : 1);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

// Plans and tables hold members that kernels read as vectors.
void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept {
  const auto bytes = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(bytes, (size + bytes - 1) / bytes * bytes);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}

extern "C" void __cxa_pure_virtual() { std::abort(); }

// The library is compiled without guards for what functions keep; the one thing that is kept so is
// made before there are threads.
namespace {
COMPILER_AT_LOAD void chooseKernels() { fast::kernels(); }
}  // namespace
