#pragma once
// The render session's lock: one 32-bit word, 0 free and 1 taken. It guards flags and
// counters for a moment, or one command of a kind for as long as that command's thread
// takes to start; a waiter that loses the race sleeps on the word instead of spinning.
#include <atomic>
#include <cstdint>

class SpinLock {
 public:
  void Lock();
  void Unlock();

 private:
  std::atomic<uint32_t> word_{0};
};

// Holds a SpinLock for the life of the scope.
class SpinLockScope {
 public:
  explicit SpinLockScope(SpinLock& lock) : lock_(lock) { lock_.Lock(); }
  ~SpinLockScope() { lock_.Unlock(); }
  SpinLockScope(const SpinLockScope&) = delete;
  SpinLockScope& operator=(const SpinLockScope&) = delete;

 private:
  SpinLock& lock_;
};
