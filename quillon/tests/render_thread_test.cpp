// A render on an engine thread: the start hands the caller's thread back at
// once, and a stop ends the render between two rows with the break result.
// Rows are slowed by the documented row delay so that a stop lands mid-way.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "quillon/tests/scene_under_camera.h"

namespace quillon::testing {
namespace {

// What a session keeps for one render: its thread, document, bitmap and result.
struct RenderJob {
  SceneUnderCamera scene{2.0 * std::atan(0.2)};
  Bitmap* bitmap = Bm()->AllocBitmapSized(400, 200, 5);
  EngineThread* handle = nullptr;
  std::atomic<int32_t> result{-1};
  std::atomic<double> progress{0.0};
  std::atomic<bool> objectWantsBreak{false};

  RenderJob() {
    Bm()->AddAlphaChannel(bitmap, 1, false);
    scene.Paint(scene.AddPlane(400, 200, {0, 0, 1000}), {1, 0, 0});
  }
  ~RenderJob() {
    Bt()->FreeThread(handle);
    Bm()->FreeBitmap(bitmap);
  }
};

void Progress(double value, int32_t, void* object) { static_cast<RenderJob*>(object)->progress.store(value); }

void RenderMain(void* object) {
  auto* job = static_cast<RenderJob*>(object);
  job->result.store(Ge()->RenderDocument(job->scene.document, 0, Progress, job, job->bitmap, job->scene.Settings(),
                                         1, job->handle, 0));
}

bool ObjectBreak(void* object) { return static_cast<RenderJob*>(object)->objectWantsBreak.load(); }
const char* Name(void*) { return "Render Session Thread"; }

// Slows every row by 20 ms while it lives: 200 rows take four seconds.
struct SlowRows {
  SlowRows() { setenv("QUILLON_RENDER_ROW_DELAY_MS", "20", 1); }
  ~SlowRows() { unsetenv("QUILLON_RENDER_ROW_DELAY_MS"); }
};

void WaitForRows(const RenderJob& job, double share) {
  while (job.progress.load() < share) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// The rows above the stop hold the plane; the last row is still clear.
void ExpectStoppedMidWay(const RenderJob& job) {
  EXPECT_EQ(job.result.load(), kRenderResultUserBreak);
  EXPECT_LT(job.progress.load(), 1.0);
  EXPECT_EQ(ReadRow(job.bitmap, 0, 1)[0], (Pixel{1, 0, 0, 1}));
  EXPECT_EQ(ReadRow(job.bitmap, 199, 1)[0], (Pixel{0, 0, 0, 0}));
}

TEST(RenderThreadTest, EndThreadWithWaitStopsARunningRender) {
  const SlowRows slow;
  RenderJob job;
  job.handle = Bt()->AllocThread(RenderMain, ObjectBreak, &job, Name);
  ASSERT_TRUE(Bt()->StartThread(job.handle, kThreadStartRender, kThreadPriorityLow, 0));
  WaitForRows(job, 0.05);
  // Read while it runs, as the session does: the rows drawn so far, and clear ones below.
  EXPECT_TRUE(Bt()->IsThreadRunning(job.handle));
  EXPECT_EQ(ReadRow(job.bitmap, 0, 1)[0], (Pixel{1, 0, 0, 1}));
  EXPECT_EQ(ReadRow(job.bitmap, 199, 1)[0], (Pixel{0, 0, 0, 0}));
  Bt()->EndThread(job.handle, 1);
  EXPECT_FALSE(Bt()->IsThreadRunning(job.handle));
  ExpectStoppedMidWay(job);
}

TEST(RenderThreadTest, TheObjectsOwnBreakTestStopsTheRender) {
  const SlowRows slow;
  RenderJob job;
  job.handle = Bt()->AllocThread(RenderMain, ObjectBreak, &job, Name);
  ASSERT_TRUE(Bt()->StartThread(job.handle, kThreadStartRender, 0, 0));
  WaitForRows(job, 0.05);
  job.objectWantsBreak.store(true);
  Bt()->WaitThread(job.handle, 0);
  EXPECT_FALSE(Bt()->ThreadBreak(job.handle));
  ExpectStoppedMidWay(job);
}

// A thread that runs until the caller lets it go: a start that waited for its
// end would never see the caller let go, and the thread would give up alone.
struct Gate {
  std::mutex mutex;
  std::condition_variable opened;
  bool open = false;
  bool letGo = false;
};

void WaitAtGate(void* object) {
  auto* gate = static_cast<Gate*>(object);
  std::unique_lock lock(gate->mutex);
  gate->letGo = gate->opened.wait_for(lock, std::chrono::seconds(20), [gate] { return gate->open; });
}

bool NeverBreak(void*) { return false; }

TEST(RenderThreadTest, BothStartModesReturnWhileTheThreadStillRuns) {
  for (const int32_t mode : {kThreadStartAsync, kThreadStartRender}) {
    Gate gate;
    EngineThread* handle = Bt()->AllocThread(WaitAtGate, NeverBreak, &gate, Name);
    ASSERT_TRUE(Bt()->StartThread(handle, mode, 0, 0));
    EXPECT_TRUE(Bt()->IsThreadRunning(handle));
    {
      const std::lock_guard lock(gate.mutex);
      gate.open = true;
    }
    gate.opened.notify_all();
    Bt()->WaitThread(handle, 0);
    EXPECT_TRUE(gate.letGo) << "mode " << mode;
    EXPECT_FALSE(Bt()->IsThreadRunning(handle));
    Bt()->FreeThread(handle);
  }
}

TEST(RenderThreadTest, AnUnknownModeStartsNothing) {
  Gate gate;
  EngineThread* handle = Bt()->AllocThread(WaitAtGate, NeverBreak, &gate, Name);
  EXPECT_FALSE(Bt()->StartThread(handle, 2, 0, 0));
  EXPECT_FALSE(Bt()->IsThreadRunning(handle));
  Bt()->FreeThread(handle);
}

}  // namespace
}  // namespace quillon::testing
