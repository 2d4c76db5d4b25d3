#include "apps/encconv/system/temporary_files.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>

namespace tool {
namespace {

// More than files that are ever written at once.
std::array<std::atomic<const char*>, 320> watched;
static_assert(std::atomic<const char*>::is_always_lock_free, "used in a signal handler");

void onSignal(int signalNumber) {
  for (auto& slot : watched) {
    const char* path = slot.exchange(nullptr);
    if (path != nullptr) unlink(path);
  }
  // The handler was installed with SA_RESETHAND: this ends the process.
  raise(signalNumber);
}

}  // namespace

int watchTemporary(const char* path) {
  for (std::size_t i = 0; i < watched.size(); ++i) {
    const char* none = nullptr;
    if (watched[i].compare_exchange_strong(none, path)) return static_cast<int>(i);
  }
  return -1;
}

void forgetTemporary(int slot) {
  if (slot >= 0) watched[static_cast<std::size_t>(slot)].store(nullptr);
}

void removeTemporariesOnSignals() {
  for (const int signalNumber : {SIGHUP, SIGINT, SIGPIPE, SIGTERM}) {
    struct sigaction action = {};
    if (sigaction(signalNumber, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signalNumber, &action, nullptr);
  }
}

}  // namespace tool
