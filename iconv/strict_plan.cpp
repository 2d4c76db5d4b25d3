#include "iconv/strict_plan.h"

#include <atomic>
#include <memory>
#include <new>

namespace iconv_layer {
namespace {

// One plan, and the tables that it has for itself.
struct StrictPlan {
  const fast::Plan* base;
  bool isSourceStrict;
  bool isTargetStrict;
  const StrictPlan* next = nullptr;
  fast::Plan plan;
  fast::SingleByteDecoder decoder;
  fast::SingleByteEncoder encoder;

  StrictPlan(const fast::Plan& of, bool strictSource, bool strictTarget)
      : base(&of), isSourceStrict(strictSource), isTargetStrict(strictTarget), plan(of) {}
};

constinit std::atomic<const StrictPlan*> g_plans{nullptr};

constexpr bool isFree(unsigned int unit) {
  return (unit >= 0x80 && unit < 0xA0) || (unit >= 0xF800 && unit < 0xF900);
}

void leaveOutFree(StrictPlan& strict) {
  fast::Plan& plan = strict.plan;
  if (strict.isSourceStrict && plan.decoding.table.singleByte != nullptr) {
    strict.decoder = *plan.decoding.table.singleByte;
    for (std::uint16_t& unit : strict.decoder.units) {
      if (isFree(unit)) unit = 0;
    }
    strict.decoder.prepare();
    plan.decoding.table.singleByte = &strict.decoder;
  }
  if (strict.isTargetStrict && plan.encoding.table.singleByte != nullptr) {
    strict.encoder = *plan.encoding.table.singleByte;
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
      if (isFree(unit)) strict.encoder.bytes[unit] = 0;
    }
    strict.encoder.prepare();
    plan.encoding.table.singleByte = &strict.encoder;
  }
  if (plan.decoding.table.singleByte == nullptr || plan.encoding.table.singleByte == nullptr)
    return;
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const std::uint16_t unit = plan.decoding.table.singleByte->units[byte];
    plan.byteMap.bytes[byte] =
        unit != 0 ? plan.encoding.table.singleByte->bytes[unit] : std::uint8_t{0};
  }
}

const fast::Plan* find(const StrictPlan* strict, const StrictPlan& wanted) {
  for (; strict != nullptr; strict = strict->next) {
    if (strict->base == wanted.base && strict->isSourceStrict == wanted.isSourceStrict &&
        strict->isTargetStrict == wanted.isTargetStrict) {
      return &strict->plan;
    }
  }
  return nullptr;
}

}  // namespace

const fast::Plan* strictPlan(const fast::Plan& plan, bool isSourceStrict, bool isTargetStrict) {
  std::unique_ptr<StrictPlan> made(new (std::nothrow)
                                       StrictPlan(plan, isSourceStrict, isTargetStrict));
  if (made == nullptr) return nullptr;
  const StrictPlan* first = g_plans.load(std::memory_order_acquire);
  if (const fast::Plan* const known = find(first, *made)) return known;
  leaveOutFree(*made);
  made->next = first;
  while (!g_plans.compare_exchange_weak(made->next, made.get(), std::memory_order_acq_rel)) {
    // Another thread was faster.
    if (const fast::Plan* const known = find(made->next, *made)) return known;
  }
  return &made.release()->plan;
}

}  // namespace iconv_layer
