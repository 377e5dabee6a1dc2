#pragma once
// The root of the session's thread classes. An ORYThread owns one engine thread (table Bt)
// that runs the object's Main; the engine asks the thread's own break flag first and the
// object's TestBreak second. Start, End, Wait and IsRunning forward to the engine and do
// nothing (or give false) when no engine thread could be made.
#include <cstdint>

#include "plugin/engine/engine_ops.h"

namespace quillon {

// The priority of Start beside the engine's kThreadPriorityLow.
constexpr int32_t kThreadPriorityNormal = 0;

class ORYThread {
 public:
  ORYThread();
  virtual ~ORYThread();
  ORYThread(const ORYThread&) = delete;
  ORYThread& operator=(const ORYThread&) = delete;

  virtual bool TestBreak() { return false; }
  virtual void Main() = 0;
  virtual const char* GetThreadName() = 0;

  bool Start(int32_t mode, int32_t priority);
  // Asks the thread to stop; with `wait`, returns once it has.
  void End(bool wait);
  // Returns once the thread has ended.
  void Wait();
  bool IsRunning() const;

  bool borrowed = false;  // true: the destructor leaves `handle` alone
  EngineThread* handle = nullptr;
};

}  // namespace quillon
