#include "encoding/kernels/cpu_dispatch.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace fast {
namespace {

// What each form asks of the processor beyond the base of its architecture.
bool runsHere(const Kernels& form) {
#if defined(__x86_64__)
  if (&form == sse4Kernels()) {
    return __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
  }
  if (&form == avx2Kernels()) {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
           __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  }
#endif
  return &form == &scalarKernels();
}

const Kernels* choose() {
  // Read once, before any conversion; nothing in the library sets variables.
  const char* wanted = std::getenv("ENCCONV_KERNELS");  // NOLINT(concurrency-mt-unsafe)
  const Kernels* form = wanted != nullptr ? findKernels(wanted) : nullptr;
  if (form == nullptr) form = findKernels("avx2");
  if (form == nullptr) form = findKernels("sse4");
  return form != nullptr ? form : &scalarKernels();
}

std::atomic<const Kernels*>& current() {
  static std::atomic<const Kernels*> form = choose();
  return form;
}

std::atomic<void (*)()> g_whenChanged{nullptr};

}  // namespace

const Kernels& kernels() { return *current().load(std::memory_order_relaxed); }

const Kernels* findKernels(const char* name) {
  for (const Kernels* form : {&scalarKernels(), sse4Kernels(), avx2Kernels()}) {
    if (form != nullptr && std::strcmp(name, form->name) == 0 && runsHere(*form)) return form;
  }
  return nullptr;
}

bool setKernelsForTesting(const char* name) {
  const Kernels* form = name != nullptr ? findKernels(name) : choose();
  if (form == nullptr) return false;
  current().store(form, std::memory_order_relaxed);
  if (void (*const call)() = g_whenChanged.load()) call();
  return true;
}

void onKernelsChanged(void (*call)()) { g_whenChanged.store(call); }

}  // namespace fast
