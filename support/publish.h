// What is made on first use and then shared by all threads.
#ifndef SUPPORT_PUBLISH_H_
#define SUPPORT_PUBLISH_H_

#include <atomic>
#include <memory>
#include <new>

// The published object of a slot, made by fill(object) when there is none yet: made outside, one
// compare-exchange, and the loser destroys its own. Null when memory is short, or when fill returns
// false. Any thread may call.
template <class T, class Fill>
const T* publish(std::atomic<const T*>& slot, Fill fill) {
  const T* published = slot.load(std::memory_order_acquire);
  if (published != nullptr) return published;
  std::unique_ptr<T> made(new (std::nothrow) T());
  if (made == nullptr || !fill(*made)) return nullptr;
  const bool isFirst = slot.compare_exchange_strong(
      published, made.get(), std::memory_order_acq_rel, std::memory_order_acquire);
  return isFirst ? made.release() : published;
}

// Destroys what a slot has. Must not overlap any use.
template <class T>
void release(std::atomic<const T*>& slot) {
  delete slot.exchange(nullptr, std::memory_order_acq_rel);
}

#endif  // SUPPORT_PUBLISH_H_
