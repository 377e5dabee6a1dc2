// Engine threads through table Bt.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

const ORYOS_Bt* Bt() { return TableAt<ORYOS_Bt>(Table_Bt); }

struct Worker {
  EngineThread* handle = nullptr;
  std::atomic<int> runs{0};
  std::atomic<bool> stopped{false};
};

// Runs until the engine asks it to stop.
void UntilBreak(void* object) {
  auto* worker = static_cast<Worker*>(object);
  worker->runs.fetch_add(1);
  while (!Bt()->ThreadBreak(worker->handle)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  worker->stopped.store(true);
}

void Once(void* object) { static_cast<Worker*>(object)->runs.fetch_add(1); }
bool NeverBreak(void*) { return false; }
const char* Name(void*) { return "Render Session Thread"; }

TEST(ThreadsTest, EndWithWaitStopsARunningThread) {
  Worker worker;
  worker.handle = Bt()->AllocThread(UntilBreak, NeverBreak, &worker, Name);
  ASSERT_NE(worker.handle, nullptr);
  ASSERT_TRUE(Bt()->StartThread(worker.handle, kThreadStartAsync, 1001, 0));
  while (worker.runs.load() == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_TRUE(Bt()->IsThreadRunning(worker.handle));
  EXPECT_FALSE(Bt()->StartThread(worker.handle, kThreadStartAsync, 0, 0));
  Bt()->EndThread(worker.handle, 1);
  EXPECT_TRUE(worker.stopped.load());
  EXPECT_FALSE(Bt()->IsThreadRunning(worker.handle));
  Bt()->FreeThread(worker.handle);
}

TEST(ThreadsTest, AThreadRunsAgainAfterItEnded) {
  Worker worker;
  worker.handle = Bt()->AllocThread(Once, NeverBreak, &worker, Name);
  ASSERT_TRUE(Bt()->StartThread(worker.handle, kThreadStartRender, 0, 0));
  Bt()->WaitThread(worker.handle, 0);
  EXPECT_EQ(worker.runs.load(), 1);
  ASSERT_TRUE(Bt()->StartThread(worker.handle, kThreadStartAsync, 0, 0));
  Bt()->WaitThread(worker.handle, 0);
  EXPECT_EQ(worker.runs.load(), 2);
  EXPECT_FALSE(Bt()->ThreadBreak(worker.handle));
  Bt()->FreeThread(worker.handle);
  EXPECT_EQ(Bt()->AllocThread(nullptr, NeverBreak, &worker, Name), nullptr);
}

// The nice value the thread ran with, as the system reports it for that thread.
struct NiceProbe {
  std::atomic<int> nice{-100};
};

void RecordNice(void* object) {
  static_cast<NiceProbe*>(object)->nice.store(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())));
}

TEST(ThreadsTest, PriorityLowRunsTheThreadBehindTheOthers) {
  const int callers = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
  for (const int32_t priority : {0, kThreadPriorityLow}) {
    NiceProbe probe;
    EngineThread* handle = Bt()->AllocThread(RecordNice, NeverBreak, &probe, Name);
    ASSERT_TRUE(Bt()->StartThread(handle, kThreadStartRender, priority, 0));
    Bt()->WaitThread(handle, 0);
    EXPECT_EQ(probe.nice.load(), priority == kThreadPriorityLow ? std::min(callers + 10, 19) : callers);
    Bt()->FreeThread(handle);
  }
}

}  // namespace
}  // namespace quillon::testing
