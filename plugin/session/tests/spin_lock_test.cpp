// The session's lock keeps two threads out of one another's way.
#include <gtest/gtest.h>

#include <thread>

#include "plugin/session/spin_lock.h"

namespace {

TEST(SpinLock, CountsOfTwoThreadsAddUp) {
  SpinLock lock;
  int64_t counter = 0;  // plain on purpose: only the lock keeps the increments whole
  auto add = [&] {
    for (int i = 0; i < 200000; ++i) {
      SpinLockScope scope(lock);
      counter = counter + 1;
    }
  };
  std::thread other(add);
  add();
  other.join();
  EXPECT_EQ(counter, 400000);
}

}  // namespace
