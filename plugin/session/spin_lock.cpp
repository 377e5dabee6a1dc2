#include "plugin/session/spin_lock.h"

void SpinLock::Lock() {
  for (;;) {
    uint32_t expected = 0;
    if (word_.compare_exchange_strong(expected, 1, std::memory_order_acquire)) return;
    word_.wait(1, std::memory_order_relaxed);
  }
}

void SpinLock::Unlock() {
  word_.store(0, std::memory_order_release);
  word_.notify_one();
}
