// The job queue of table St and the engine's main thread that serves it.
#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "quillon/api/job_queue.h"
#include "quillon/tests/engine_tables.h"

namespace quillon {
namespace {

using testing::Bd;
using testing::Ge;
using testing::St;

// A job that is held until the test opens its gate, and tells whether it ran.
struct GatedJob {
  std::promise<void> gate;
  std::shared_future<void> opened = gate.get_future().share();
  std::atomic<bool> ran{false};

  static void Run(void* data) {
    auto* job = static_cast<GatedJob*>(data);
    job->opened.wait();
    job->ran = true;
  }
};

void Nothing(void*) {}

TEST(JobQueue, RunsTheJobOnTheMainThreadAndWaitsForIt) {
  bool onMainThread = false;
  ASSERT_TRUE(St()->ExecuteOnMainThread([](void* data) { *static_cast<bool*>(data) = St()->IsMainThread(); },
                                        &onMainThread, kJobWaitNoLimit));
  EXPECT_TRUE(onMainThread);
  EXPECT_FALSE(St()->IsMainThread());
}

TEST(JobQueue, WithoutWaitingReturnsBeforeTheJobRuns) {
  GatedJob job;
  ASSERT_TRUE(St()->ExecuteOnMainThread(&GatedJob::Run, &job, kJobNoWait));
  EXPECT_FALSE(job.ran);
  job.gate.set_value();
  // The queue runs in order: a job waited for behind it finds it done.
  ASSERT_TRUE(St()->ExecuteOnMainThread(&Nothing, nullptr, kJobWaitNoLimit));
  EXPECT_TRUE(job.ran);
}

TEST(JobQueue, AWaitWithALimitGivesUpButTheJobStillRuns) {
  GatedJob job;
  EXPECT_FALSE(St()->ExecuteOnMainThread(&GatedJob::Run, &job, 1));
  EXPECT_FALSE(job.ran);
  job.gate.set_value();
  ASSERT_TRUE(St()->ExecuteOnMainThread(&Nothing, nullptr, kJobWaitNoLimit));
  EXPECT_TRUE(job.ran);
}

TEST(JobQueue, AJobWaitedForOnTheMainThreadRunsDirectly) {
  bool innerRan = false;
  ASSERT_TRUE(St()->ExecuteOnMainThread(
      [](void* data) {
        St()->ExecuteOnMainThread([](void* flag) { *static_cast<bool*>(flag) = true; }, data, kJobWaitNoLimit);
      },
      &innerRan, kJobWaitNoLimit));
  EXPECT_TRUE(innerRan);
}

TEST(JobQueue, TheStopRunsWhatIsQueuedAndTheNextJobStartsTheMainThreadAgain) {
  // Documents handed over without waiting are freed by the stop; LeakSanitizer checks it.
  std::atomic<int> freed{0};
  struct Handover {
    BaseDocument* document;
    std::atomic<int>* freed;
  };
  Handover handovers[3];
  for (Handover& handover : handovers) {
    handover = {Bd()->AllocDocument(), &freed};
    ASSERT_TRUE(St()->ExecuteOnMainThread(
        [](void* data) {
          auto* item = static_cast<Handover*>(data);
          Ge()->FreeDocument(item->document);
          ++*item->freed;
        },
        &handover, kJobNoWait));
  }
  StopMainThread();
  EXPECT_EQ(freed, 3);

  bool onMainThread = false;
  ASSERT_TRUE(St()->ExecuteOnMainThread([](void* data) { *static_cast<bool*>(data) = St()->IsMainThread(); },
                                        &onMainThread, kJobWaitNoLimit));
  EXPECT_TRUE(onMainThread);
}

TEST(JobQueue, ANullJobIsRefused) {
  EXPECT_FALSE(St()->ExecuteOnMainThread(nullptr, nullptr, kJobWaitNoLimit));
  EXPECT_FALSE(St()->ExecuteOnMainThread(nullptr, nullptr, kJobNoWait));
}

}  // namespace
}  // namespace quillon
