#include "apps/encconv/threads.h"

#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace tool {

void runOnThreads(std::size_t count, const std::function<void()>& work) {
  std::mutex mutex;
  std::exception_ptr thrown;
  const auto run = [&] {
    try {
      work();
    } catch (...) {
      const std::scoped_lock lock(mutex);
      if (thrown == nullptr) thrown = std::current_exception();
    }
  };
  std::vector<std::thread> threads;
  threads.reserve(count);
  try {
    while (threads.size() + 1 < count) threads.emplace_back(run);
  } catch (const std::exception&) {
    // No more threads are to be had: those that there are do the work.
  }
  run();
  for (std::thread& thread : threads) thread.join();
  if (thrown != nullptr) std::rethrow_exception(thrown);
}

}  // namespace tool
