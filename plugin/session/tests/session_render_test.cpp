// Renders of the session against the engine library of the build, on a picture worked out
// by hand: a red plane of 200 x 100 units, 1000 units in front of a camera whose horizontal
// field of view is 2 atan(0.2), so that 1000 units ahead 400 pixels span 400 units. The
// plane covers columns 100 to 299 and lines 50 to 149 of a 400 x 200 frame exactly; the
// rest is black and clear.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <utility>
#include <thread>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/solid_plane.h"
#include "plugin/session/frame_read.h"
#include "plugin/session/render_prepare.h"
#include "plugin/session/render_state.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/tests/red_plane_document.h"
#include "plugin/session/tests/test_engine.h"

namespace {

using quillon::RenderThread;

constexpr int32_t kWidth = 400;
constexpr int32_t kHeight = 200;

bool InsidePlane(int32_t x, int32_t y) { return x >= 100 && x < 300 && y >= 50 && y < 150; }

// What the reads hand out: whole lines by line number, and the runs of the change reads.
struct Capture {
  std::vector<std::vector<uint8_t>> lines = std::vector<std::vector<uint8_t>>(kHeight);
  struct Run {
    int32_t x, y, count;
    bool operator==(const Run&) const = default;
  };
  std::vector<Run> runs;
  // Called from inside the read, while it holds the buffers.
  std::function<void()> duringRead;
};

void CaptureLine(void* refcon, int32_t x, int32_t y, int32_t count, int32_t bytesPerChannel, const uint8_t* pixels) {
  auto* capture = static_cast<Capture*>(refcon);
  capture->runs.push_back({x, y, count});
  capture->lines[y].assign(pixels, pixels + static_cast<size_t>(count) * 4 * bytesPerChannel);
  if (capture->duringRead) std::exchange(capture->duringRead, nullptr)();
}

// The expected pixel, one byte a channel.
std::vector<uint8_t> ExpectedPixel(int32_t x, int32_t y) {
  return InsidePlane(x, y) ? std::vector<uint8_t>{255, 0, 0, 255} : std::vector<uint8_t>{0, 0, 0, 0};
}

bool LineIsFinal(const std::vector<uint8_t>& line, int32_t y) {
  for (int32_t x = 0; x < kWidth; ++x)
    if (std::vector<uint8_t>(line.begin() + x * 4, line.begin() + x * 4 + 4) != ExpectedPixel(x, y)) return false;
  return true;
}

std::vector<Capture::Run> PlaneRuns() {
  std::vector<Capture::Run> runs;
  for (int32_t y = 50; y < 150; ++y) runs.push_back({100, y, 200});
  return runs;
}

class SessionRender : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    unsetenv("QUILLON_RENDER_ROW_DELAY_MS");
    ASSERT_TRUE(caller.SelectRender(1));
    render = caller.CurrentRender();
    render->document = RedPlaneDocument();
    render->sessionOpen = true;
  }
  // Prepares the frame and waits for its render.
  void RenderFrame(int32_t bytesPerChannel = 1) {
    ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, bytesPerChannel, false, true));
    render->Wait();
  }
  Capture Read(bool (*read)(RenderThread&, FrameLineCallback, void*, bool*), bool* running = nullptr) {
    Capture capture;
    bool ignored = false;
    EXPECT_TRUE(read(*render, &CaptureLine, &capture, running ? running : &ignored));
    return capture;
  }

  quillon::SessionThread caller;
  RenderThread* render = nullptr;
};

TEST_F(SessionRender, TheFrameIsTheRedBlockToThePixel) {
  RenderFrame();
  bool running = true;
  const Capture frame = Read(&quillon::ReadFrame, &running);
  EXPECT_FALSE(running);
  EXPECT_EQ(render->renderResult, kRenderResultOk);
  for (int32_t y = 0; y < kHeight; ++y) EXPECT_TRUE(LineIsFinal(frame.lines[y], y)) << "line " << y;
}

TEST_F(SessionRender, TwoBytesAChannelRenderAgainAtFullRange) {
  RenderFrame();
  Read(&quillon::ReadFrame);
  RenderFrame(2);
  const Capture frame = Read(&quillon::ReadFrame);
  ASSERT_EQ(frame.lines[60].size(), static_cast<size_t>(kWidth) * 8);
  uint16_t inside[4];
  uint16_t outside[4];
  std::memcpy(inside, &frame.lines[60][150 * 8], 8);
  std::memcpy(outside, &frame.lines[60][50 * 8], 8);
  EXPECT_EQ(std::vector<uint16_t>(inside, inside + 4), (std::vector<uint16_t>{65535, 0, 0, 65535}));
  EXPECT_EQ(std::vector<uint16_t>(outside, outside + 4), (std::vector<uint16_t>{0, 0, 0, 0}));
}

TEST_F(SessionRender, ChangesAfterARenderAreThePlaneAndStayUntilReadWhole) {
  RenderFrame();
  EXPECT_EQ(Read(&quillon::ReadFrameChanges).runs, PlaneRuns());
  // The stored copy is left alone by this read, so the second reports the same.
  EXPECT_EQ(Read(&quillon::ReadFrameChanges).runs, PlaneRuns());
  Read(&quillon::ReadFrame);
  EXPECT_TRUE(Read(&quillon::ReadFrameChanges).runs.empty());
}

TEST_F(SessionRender, LayerChangesAreCopiedInSoTheSecondReadReportsNothing) {
  RenderFrame();
  auto layerChanges = [](RenderThread& r, FrameLineCallback callback, void* refcon, bool* running) {
    return quillon::ReadLayerFrameChanges(r, 0, 0, callback, refcon, running);
  };
  EXPECT_EQ(Read(layerChanges).runs, PlaneRuns());
  EXPECT_TRUE(Read(layerChanges).runs.empty());
}

TEST_F(SessionRender, ASecondPrepareWithoutAChangeRendersNothing) {
  RenderFrame();
  Read(&quillon::ReadFrame);
  // A render would clear the stored copy, and the changes would be the plane again.
  setenv("QUILLON_RENDER_ROW_DELAY_MS", "50", 1);
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, false, true));
  EXPECT_FALSE(render->IsRunning());
  EXPECT_TRUE(Read(&quillon::ReadFrameChanges).runs.empty());
}

// A render that a stop of its thread ends counts as done; only StopCurrentRender, or a
// change, makes the next prepare render again.
TEST_F(SessionRender, ARenderEndedByItsThreadsStopCountsAsDone) {
  setenv("QUILLON_RENDER_ROW_DELAY_MS", "30", 1);
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, false, true));
  render->StopThread();
  EXPECT_EQ(render->renderResult, kRenderResultUserBreak);
  EXPECT_FALSE(render->dirty);
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, false, true));
  EXPECT_FALSE(render->IsRunning());
  EXPECT_EQ(render->renderResult, kRenderResultUserBreak);
}

TEST_F(SessionRender, AnOptionTheSettingsNeverTakeRendersAtEachCall) {
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, true, true));
  render->Wait();
  Read(&quillon::ReadFrame);
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, true, true));
  render->Wait();
  EXPECT_EQ(Read(&quillon::ReadFrameChanges).runs, PlaneRuns());
}

// A read while the render runs gives the lines already done and says that it runs; a stop
// then ends the render with the user's break, and the next prepare renders again.
TEST_F(SessionRender, AReadWhileRenderingGivesTheLinesDoneAndAStopBreaksTheRender) {
  setenv("QUILLON_RENDER_ROW_DELAY_MS", "30", 1);
  ASSERT_TRUE(quillon::PrepareRender(*render, kWidth, kHeight, 1, false, true));
  double progress = 0.0;
  while (quillon::GetRenderState(*render, nullptr, nullptr, &progress, nullptr) && progress < 0.4)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  bool running = false;
  const Capture partial = Read(&quillon::ReadFrame, &running);
  EXPECT_TRUE(running);
  int32_t done = 0;
  while (done < kHeight && LineIsFinal(partial.lines[done], done)) ++done;
  EXPECT_GE(done, 80);  // progress 0.4 of 200 lines
  EXPECT_LT(done, kHeight);
  // Lines not yet drawn are black and clear.
  for (int32_t y = done; y < kHeight; ++y)
    EXPECT_EQ(partial.lines[y], std::vector<uint8_t>(kWidth * 4, 0)) << "line " << y;

  ASSERT_TRUE(caller.StopCurrentRender());
  EXPECT_FALSE(render->IsRunning());
  EXPECT_EQ(render->renderResult, kRenderResultUserBreak);
  EXPECT_TRUE(render->dirty);
  unsetenv("QUILLON_RENDER_ROW_DELAY_MS");
  RenderFrame();
  EXPECT_EQ(render->renderResult, kRenderResultOk);
}

TEST_F(SessionRender, AMissingPictureIsListedBeforeTheResultLineAndGivenToTheCaller) {
  OwnedString none;
  EXPECT_TRUE(quillon::GetMissingAssets(*render, none.get()));  // nothing rendered yet
  EXPECT_EQ(ToUtf8(*none.get()), "");
  render->FreeDocument();
  render->document = RedPlaneDocument("/nonexistent/wood.png");
  testing::internal::CaptureStderr();
  RenderFrame();
  const std::string console = testing::internal::GetCapturedStderr();
  EXPECT_EQ(render->renderResult, kRenderResultAssetMissing);
  const auto list = console.find("Missing Assets:\n/nonexistent/wood.png: ");
  const auto result = console.find("Render process was interrupted - Error: Missing Asset");
  ASSERT_NE(list, std::string::npos) << console;
  ASSERT_NE(result, std::string::npos) << console;
  EXPECT_LT(list, result);
  OwnedString assets;
  EXPECT_TRUE(quillon::GetMissingAssets(*render, assets.get()));
  EXPECT_EQ(ToUtf8(*assets.get()).rfind("/nonexistent/wood.png: ", 0), 0u) << ToUtf8(*assets.get());
}

// A size change waits for no reader: it is refused while one reads, and the caller asks again.
TEST_F(SessionRender, ANewSizeIsRefusedWhileAReadHoldsTheBuffers) {
  RenderFrame();
  Capture capture;
  bool refused = false;
  bool sameSizeAccepted = false;
  capture.duringRead = [&] {
    sameSizeAccepted = quillon::PrepareRender(*render, kWidth, kHeight, 1, false, true);
    refused = !quillon::PrepareRender(*render, 200, 100, 1, false, true);
  };
  bool running = false;
  ASSERT_TRUE(quillon::ReadFrame(*render, &CaptureLine, &capture, &running));
  EXPECT_TRUE(refused);
  EXPECT_TRUE(sameSizeAccepted);
  EXPECT_TRUE(quillon::PrepareRender(*render, 200, 100, 1, false, true));
}

TEST_F(SessionRender, ACloseDuringAReadLeavesTheContentsToTheReadsEnd) {
  RenderFrame();
  Capture capture;
  capture.duringRead = [&] {
    EXPECT_TRUE(caller.CloseDocument());
    EXPECT_TRUE(render->closePending);
    EXPECT_NE(render->document, nullptr);
    EXPECT_NE(render->lineBuffer, nullptr);
  };
  bool running = false;
  ASSERT_TRUE(quillon::ReadFrame(*render, &CaptureLine, &capture, &running));
  EXPECT_EQ(capture.lines.back().size(), static_cast<size_t>(kWidth) * 4);
  EXPECT_FALSE(render->closePending);
  EXPECT_EQ(render->document, nullptr);
  EXPECT_EQ(render->bitmap, nullptr);
  EXPECT_FALSE(render->sessionOpen);
  EXPECT_FALSE(quillon::ReadFrame(*render, &CaptureLine, &capture, &running));
}

}  // namespace
