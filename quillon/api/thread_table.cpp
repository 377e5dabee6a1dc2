// Table Bt: threads of the engine that run a caller's object. Every start is
// asynchronous: a render started from a caller's thread must hand that thread
// back at once, so that it can read the picture while it grows and stop it.
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

#include "quillon/api/tables.h"

struct EngineThread {
  EngineThreadMain main = nullptr;
  EngineThreadTestBreak testBreak = nullptr;
  void* object = nullptr;
  EngineThreadName name = nullptr;
  std::mutex mutex;  // keeps start, end and wait of one thread apart
  std::thread thread;
  std::atomic<bool> stopRequested{false};
  std::atomic<bool> running{false};
};

namespace quillon {
namespace {

// The system knows the thread by the object's name, cut to what it keeps.
void NameThread(const EngineThread& thread) {
  const char* name = thread.name ? thread.name(thread.object) : nullptr;
  if (!name) return;
  char shortName[16] = {};
  for (size_t i = 0; i + 1 < sizeof(shortName) && name[i]; ++i) shortName[i] = name[i];
  pthread_setname_np(pthread_self(), shortName);
}

// A low priority thread runs ten nice steps behind the thread that started it
// (at most the system's 19); the system lets any process raise its own
// threads' nice value.
void LowerPriority() {
  const auto self = static_cast<id_t>(gettid());
  setpriority(PRIO_PROCESS, self, std::min(getpriority(PRIO_PROCESS, self) + 10, 19));
}

void Join(EngineThread& thread) {
  if (thread.thread.joinable() && thread.thread.get_id() != std::this_thread::get_id()) thread.thread.join();
}

EngineThread* AllocThread(EngineThreadMain main, EngineThreadTestBreak testBreak, void* object,
                          EngineThreadName name) {
  if (!main) return nullptr;
  auto* thread = new EngineThread();
  thread->main = main;
  thread->testBreak = testBreak;
  thread->object = object;
  thread->name = name;
  return thread;
}

void EndThread(EngineThread* thread, int32_t wait) {
  if (!thread) return;
  thread->stopRequested.store(true);
  if (wait == 1) {
    std::lock_guard lock(thread->mutex);
    Join(*thread);
  }
}

void FreeThread(EngineThread* thread) {
  EndThread(thread, 1);
  delete thread;
}

bool StartThread(EngineThread* thread, int32_t mode, int32_t priority, int32_t) {
  if (!thread || (mode != kThreadStartAsync && mode != kThreadStartRender)) return false;
  std::lock_guard lock(thread->mutex);
  if (thread->running.load()) return false;
  Join(*thread);
  thread->stopRequested.store(false);
  thread->running.store(true);
  thread->thread = std::thread([thread, low = priority == kThreadPriorityLow] {
    NameThread(*thread);
    if (low) LowerPriority();
    thread->main(thread->object);
    thread->running.store(false);
  });
  return true;
}

void WaitThread(EngineThread* thread, int32_t) {
  if (!thread) return;
  std::lock_guard lock(thread->mutex);
  Join(*thread);
}

bool ThreadBreak(EngineThread* thread) { return thread && thread->stopRequested.load(); }
bool IsThreadRunning(EngineThread* thread) { return thread && thread->running.load(); }

}  // namespace

bool ThreadBreakTest(EngineThread* thread) {
  if (!thread) return false;
  return ThreadBreak(thread) || (thread->testBreak && thread->testBreak(thread->object));
}

const ORYOS_Bt& BtTable() {
  static const ORYOS_Bt table{.AllocThread = AllocThread,
                              .FreeThread = FreeThread,
                              .StartThread = StartThread,
                              .EndThread = EndThread,
                              .WaitThread = WaitThread,
                              .ThreadBreak = ThreadBreak,
                              .IsThreadRunning = IsThreadRunning};
  return table;
}

}  // namespace quillon
