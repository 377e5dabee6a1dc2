// Table Bt: threads of the engine that run a caller's object.
#include <pthread.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "quillon/api/tables.h"

struct EngineThread {
  EngineThreadMain main = nullptr;
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

void Join(EngineThread& thread) {
  if (thread.thread.joinable() && thread.thread.get_id() != std::this_thread::get_id()) thread.thread.join();
}

// The engine's own operations never ask a thread's break test; the caller's does.
EngineThread* AllocThread(EngineThreadMain main, EngineThreadTestBreak, void* object, EngineThreadName name) {
  if (!main) return nullptr;
  auto* thread = new EngineThread();
  thread->main = main;
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

bool StartThread(EngineThread* thread, int32_t mode, int32_t, int32_t) {
  if (!thread) return false;
  std::lock_guard lock(thread->mutex);
  if (thread->running.load()) return false;
  Join(*thread);
  thread->stopRequested.store(false);
  thread->running.store(true);
  thread->thread = std::thread([thread] {
    NameThread(*thread);
    thread->main(thread->object);
    thread->running.store(false);
  });
  if (mode == kThreadStartWait) Join(*thread);
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
