#include "iconv/strict_plan.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>

#include "encoding/codecs/mac_arabic.h"

namespace iconv_layer {
namespace {

// One plan, and the tables that it has for itself.
struct StrictPlan {
  const fast::Plan* base;
  Strictness strictness;
  const StrictPlan* next = nullptr;
  fast::Plan plan;
  std::unique_ptr<fast::SingleByteDecoder> singleDecoder;
  std::unique_ptr<fast::DoubleByteDecoder> doubleDecoder;
  std::unique_ptr<fast::SingleByteEncoder> singleEncoder;
  std::unique_ptr<fast::DoubleByteEncoder> doubleEncoder;

  StrictPlan(const fast::Plan& of, Strictness how) : base(&of), strictness(how), plan(of) {}
};

constinit std::atomic<const StrictPlan*> g_plans{nullptr};

// What Windows reads a free code as.
constexpr bool isFree(unsigned int unit) {
  return (unit >= 0x80 && unit < 0xA0) || (unit >= 0xE000 && unit < 0xF900);
}

template <class Values>
void clearFree(Values& values) {
  for (auto& unit : values) {
    if (isFree(unit)) unit = 0;
  }
}

template <class Codes>
void clearFreePlaces(Codes& codes) {
  for (unsigned int unit = 0; unit < 0x10000; ++unit) {
    if (isFree(unit)) codes[unit] = 0;
  }
}

void foldDirections(fast::SingleByteDecoder& table) {
  std::uint16_t units[256];
  std::copy_n(table.units, 256, units);
  StringBuffer scratch;
  for (unsigned int byte = 0; byte < 256; ++byte) {
    auto folded = static_cast<unsigned char>(byte);
    rewriteMacArabic(&folded, 1, scratch);
    table.units[byte] = units[folded];
  }
}

// A copy of a table, which change() makes the plan's own.
template <class Table, class Change>
bool replace(const Table*& table, std::unique_ptr<Table>& own, Change change) {
  if (table == nullptr) return true;
  own.reset(new (std::nothrow) Table(*table));
  if (own == nullptr) return false;
  change(*own);
  own->prepare();
  table = own.get();
  return true;
}

// False when memory is short.
bool change(StrictPlan& strict) {
  fast::Plan& plan = strict.plan;
  const fast::Encoder& approximating = plan.encoding.approximating;
  const bool hasOneWays =
      approximating.singleByte != nullptr || approximating.doubleByte != nullptr;
  if (strict.strictness.writesOneWay && hasOneWays) plan.encoding.table = approximating;
  fast::Decoder& decoder = plan.decoding.table;
  fast::Encoder& encoder = plan.encoding.table;
  if (strict.strictness.foldsDirections &&
      !replace(decoder.singleByte, strict.singleDecoder, foldDirections)) {
    return false;
  }
  if (strict.strictness.source &&
      (!replace(decoder.singleByte, strict.singleDecoder,
                [](fast::SingleByteDecoder& table) { clearFree(table.units); }) ||
       !replace(decoder.doubleByte, strict.doubleDecoder, [](fast::DoubleByteDecoder& table) {
         clearFree(table.units);
         clearFree(table.singles);
       }))) {
    return false;
  }
  if (strict.strictness.target &&
      (!replace(encoder.singleByte, strict.singleEncoder,
                [](fast::SingleByteEncoder& table) { clearFreePlaces(table.bytes); }) ||
       !replace(encoder.doubleByte, strict.doubleEncoder,
                [](fast::DoubleByteEncoder& table) { clearFreePlaces(table.codes); }))) {
    return false;
  }
  if (decoder.singleByte == nullptr || encoder.singleByte == nullptr) return true;
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const std::uint16_t unit = decoder.singleByte->units[byte];
    plan.byteMap.bytes[byte] = unit != 0 ? encoder.singleByte->bytes[unit] : std::uint8_t{0};
  }
  return true;
}

const fast::Plan* find(const StrictPlan* strict, const StrictPlan& wanted) {
  for (; strict != nullptr; strict = strict->next) {
    if (strict->base == wanted.base && strict->strictness == wanted.strictness) {
      return &strict->plan;
    }
  }
  return nullptr;
}

}  // namespace

const fast::Plan* strictPlan(const fast::Plan& plan, Strictness strictness) {
  std::unique_ptr<StrictPlan> made(new (std::nothrow) StrictPlan(plan, strictness));
  if (made == nullptr) return nullptr;
  const StrictPlan* first = g_plans.load(std::memory_order_acquire);
  if (const fast::Plan* const known = find(first, *made)) return known;
  if (!change(*made)) return nullptr;
  made->next = first;
  while (!g_plans.compare_exchange_weak(made->next, made.get(), std::memory_order_acq_rel)) {
    // Another thread was faster.
    if (const fast::Plan* const known = find(made->next, *made)) return known;
  }
  return &made.release()->plan;
}

}  // namespace iconv_layer
