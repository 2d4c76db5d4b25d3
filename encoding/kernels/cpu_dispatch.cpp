#include "encoding/kernels/cpu_dispatch.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>

#if defined(__x86_64__)
#include "encoding/kernels/x86/forms.h"
#elif defined(__aarch64__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#include "encoding/kernels/arm/forms.h"
#elif defined(__wasm_simd128__)
#include "encoding/kernels/wasm/forms.h"
#else
namespace fast {
constexpr std::array<KernelForm, 0> kProcessorForms{};
}
#endif

namespace fast {
namespace {

// The first form that runs here and has the name, or any; null when there is none.
const Kernels* find(const char* name) {
  const auto isMeant = [&](const Kernels& form) {
    return name == nullptr || std::strcmp(name, form.name) == 0;
  };
  for (const KernelForm& form : kProcessorForms) {
    if (form.runsHere() && isMeant(form.kernels())) return &form.kernels();
  }
  return isMeant(scalarKernels()) ? &scalarKernels() : nullptr;
}

const Kernels* choose() {
  // Read once, before any conversion; nothing in the library sets variables.
  const char* wanted = std::getenv("ENCCONV_KERNELS");  // NOLINT(concurrency-mt-unsafe)
  const Kernels* const form = wanted != nullptr ? find(wanted) : nullptr;
  return form != nullptr ? form : find(nullptr);
}

std::atomic<const Kernels*>& current() {
  static std::atomic<const Kernels*> form = choose();
  return form;
}

std::atomic<void (*)()> g_whenChanged{nullptr};

}  // namespace

const Kernels& kernels() { return *current().load(std::memory_order_relaxed); }

std::vector<const Kernels*> runnableKernels() {
  std::vector<const Kernels*> forms;
  for (const KernelForm& form : kProcessorForms) {
    if (form.runsHere()) forms.push_back(&form.kernels());
  }
  forms.push_back(&scalarKernels());
  return forms;
}

bool setKernelsForTesting(const char* name) {
  const Kernels* const form = name != nullptr ? find(name) : choose();
  if (form == nullptr) return false;
  current().store(form, std::memory_order_relaxed);
  if (void (*const call)() = g_whenChanged.load()) call();
  return true;
}

void onKernelsChanged(void (*call)()) { g_whenChanged.store(call); }

}  // namespace fast
