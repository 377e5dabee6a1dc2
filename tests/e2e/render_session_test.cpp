// End to end: aehost session drives the plug-in's render session from a script. The scene
// is worked out by hand: a red plane of 200 x 100 units, 1000 units in front of a camera
// whose horizontal field of view is 2 atan(0.2); 1000 units ahead the 400 pixels of the
// frame span 400 units, so the plane covers columns 100 to 299 and lines 50 to 149 of a
// 400 x 200 frame exactly, red and opaque, and the rest is black and clear. The PNG the
// driver writes is read back with libpng and compared pixel by pixel.
#include <gtest/gtest.h>
#include <png.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/support/loopback_listener.h"
#include "tests/support/plane_scene.h"
#include "tests/support/session_script.h"

namespace {

using qae_test::PlaneSceneJson;
using qae_test::Lines;

constexpr int kWidth = 400;
constexpr int kHeight = 200;

bool InsidePlane(int x, int y) { return x >= 100 && x < 300 && y >= 50 && y < 150; }

// RGBA pixels of 8 bits a channel, row after row.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> pixels;
};

Picture ReadPng(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  Picture picture;
  if (!png_image_begin_read_from_file(&image, path.c_str())) return picture;
  image.format = PNG_FORMAT_RGBA;
  picture.pixels.resize(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr)) return {};
  picture.width = static_cast<int>(image.width);
  picture.height = static_cast<int>(image.height);
  return picture;
}

std::vector<unsigned char> PixelOf(const Picture& picture, int x, int y) {
  const auto at = static_cast<std::size_t>((y * picture.width + x) * 4);
  return {picture.pixels.begin() + at, picture.pixels.begin() + at + 4};
}

std::vector<unsigned char> ExpectedPixel(int x, int y) {
  return InsidePlane(x, y) ? std::vector<unsigned char>{255, 0, 0, 255} : std::vector<unsigned char>{0, 0, 0, 0};
}

bool LineIsFinal(const Picture& picture, int y) {
  for (int x = 0; x < picture.width; ++x)
    if (PixelOf(picture, x, y) != ExpectedPixel(x, y)) return false;
  return true;
}

bool LineIsClear(const Picture& picture, int y) {
  for (int x = 0; x < picture.width; ++x)
    if (PixelOf(picture, x, y) != std::vector<unsigned char>{0, 0, 0, 0}) return false;
  return true;
}

class RenderSession : public qae_test::SessionScriptTest {
 protected:
  RenderSession() : SessionScriptTest("render_session") {}

  const std::string scene_ = BuildScene("plane", PlaneSceneJson());
};

TEST_F(RenderSession, RendersThePlaneToThePixelAndASecondPrepareRendersNothing) {
  const std::string frame = dir_ + "/frame.png";
  const auto run = Run("# the plane, read as changes, then whole\n"
                       "select 1\n"
                       "open " + scene_ + "\n"
                       "prepare 400 200 1\n"
                       "wait\n"
                       "\n"
                       "changes\n"
                       "read " + frame + "\n"
                       "changes\n"
                       "prepare 400 200 1\n"
                       "wait\n"
                       "changes\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  // A render would clear the stored frame, and the last changes would be the plane again.
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{
                                "select 1: render 1 is current",
                                "open " + scene_ + ": open",
                                "prepare 400 200 1: prepared",
                                "wait: idle, result 0, progress 1, stage 3",
                                "changes: 100 runs, 20000 pixels in 100 lines, render done",
                                "read " + frame + ": 400 x 200, render done",
                                "changes: 0 runs, 0 pixels in 0 lines, render done",
                                "prepare 400 200 1: prepared",
                                "wait: idle, result 0, progress 1, stage 3",
                                "changes: 0 runs, 0 pixels in 0 lines, render done",
                            }));
  const Picture picture = ReadPng(frame);
  ASSERT_EQ(picture.width, kWidth);
  ASSERT_EQ(picture.height, kHeight);
  for (int y = 0; y < kHeight; ++y) EXPECT_TRUE(LineIsFinal(picture, y)) << "line " << y;
}

// With a pause after each line the render is read half done: the lines drawn so far are
// final and the rest black and clear. A stop of the caller's render ends it with the
// user's break; the stop command of the same id does not reach it, as it selects the id in
// a map of its own.
TEST_F(RenderSession, AReadWhileRenderingGivesTheLinesDoneAndAStopBreaksTheRender) {
  const std::string frame = dir_ + "/half.png";
  const auto run = Run("select 1\n"
                       "open " + scene_ + "\n"
                       "prepare 400 200 1\n"
                       "wait-progress 0.4\n"
                       "read " + frame + "\n"
                       "stop-render 1\n"
                       "state\n"
                       "stop\n"
                       "state\n",
                       {"QUILLON_RENDER_ROW_DELAY_MS=30"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 9u) << run.out;
  EXPECT_EQ(lines[3].rfind("wait-progress 0.4: running, result 0, progress ", 0), 0u) << lines[3];
  EXPECT_EQ(lines[4], "read " + frame + ": 400 x 200, render running");
  EXPECT_EQ(lines[5], "stop-render 1: -1");
  EXPECT_EQ(lines[6].rfind("state: running, ", 0), 0u) << lines[6];
  EXPECT_EQ(lines[7], "stop: stopped");
  EXPECT_EQ(lines[8].rfind("state: idle, result 6, ", 0), 0u) << lines[8];
  EXPECT_NE(run.err.find("Render process was interrupted - Error: User Break"), std::string::npos) << run.err;

  const Picture picture = ReadPng(frame);
  ASSERT_EQ(picture.height, kHeight);
  int done = 0;
  while (done < kHeight && LineIsFinal(picture, done)) ++done;
  EXPECT_GE(done, 80);  // 0.4 of 200 lines
  EXPECT_LT(done, kHeight);
  for (int y = done; y < kHeight; ++y) EXPECT_TRUE(LineIsClear(picture, y)) << "line " << y;
}

// A picture the material names that cannot be read: the render still draws and ends with
// result 2, and the console lists the missing picture before the line of the result.
TEST_F(RenderSession, AMissingPictureIsListedBeforeTheResultLine) {
  std::string json = PlaneSceneJson();
  const std::string colour = R"("params": [{"id": "MaterialParam_Color", "vector": [1, 0, 0]}]})";
  const auto at = json.find(colour);
  ASSERT_NE(at, std::string::npos);
  json.replace(at, colour.size(),
               R"("params": [{"id": "MaterialParam_Color", "vector": [1, 0, 0]},
                             {"id": "MaterialChannel_Color", "link": "wood"}],
                  "shaders": [{"type": "ShaderType_Bitmap", "ref": "wood",
                               "params": [{"id": "BitmapShaderParam_File", "filename": "/nonexistent/wood.png"}]}]})");
  qae_test::WriteFile(dir_ + "/missing.json", json);
  const std::string scene = dir_ + "/missing.ory";
  ASSERT_EQ(qae_test::RunCommand(qae_test::OrytoolPath(), {"build", dir_ + "/missing.json", "--output", scene}).exitCode, 0);
  const auto run = Run("select 1\nopen " + scene + "\nprepare 400 200 1\nwait\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Lines(run.out).back(), "wait: idle, result 2, progress 1, stage 3");
  const auto list = run.err.find("Missing Assets:\n/nonexistent/wood.png: ");
  const auto result = run.err.find("Render process was interrupted - Error: Missing Asset");
  ASSERT_NE(list, std::string::npos) << run.err;
  ASSERT_NE(result, std::string::npos) << run.err;
  EXPECT_LT(list, result);
}

TEST_F(RenderSession, TheCommandsAnswerByNumbers) {
  const auto run = Run("stop-render 4294967295\n"
                       "close-render 4294967295\n"
                       "stop-render 12\n"
                       "close-render 12\n"
                       "end-session 12\n");
  // The end of the session may still run when the script ends: the host waits for it before
  // the command objects go.
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{"stop-render 4294967295: 21", "close-render 4294967295: 23",
                                                      "stop-render 12: -1", "close-render 12: -1",
                                                      "end-session 12: -1"}));
}

TEST_F(RenderSession, ThePortTestTellsAListenedPortFromAFreeOne) {
  qae_test::LoopbackListener listener;
  ASSERT_TRUE(listener.bound);
  int freePort = 0;
  {
    qae_test::LoopbackListener closed;
    freePort = closed.port;
  }
  const auto run = Run("port " + std::to_string(listener.port) + "\nport " + std::to_string(freePort) + "\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Lines(run.out), (std::vector<std::string>{"port " + std::to_string(listener.port) + ": taken",
                                                      "port " + std::to_string(freePort) + ": free"}));
}

struct ScriptCase {
  const char* name;
  std::string script;  // "@" stands for the scene file
  int exitCode;
  std::string message;      // after "aehost: <script>:"
  std::size_t linesPrinted;  // result lines before the failure
};

void PrintTo(const ScriptCase& c, std::ostream* out) { *out << c.name; }

class RenderSessionScript : public RenderSession, public testing::WithParamInterface<ScriptCase> {};

TEST_P(RenderSessionScript, NamesTheLineAndWhatIsWrong) {
  const ScriptCase& c = GetParam();
  std::string script = c.script;
  if (const auto at = script.find('@'); at != std::string::npos) script.replace(at, 1, scene_);
  const auto run = Run(script);
  EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
  EXPECT_NE(run.err.find("aehost: " + dir_ + "/run.session:" + c.message), std::string::npos) << run.err;
  EXPECT_EQ(Lines(run.out).size(), c.linesPrinted) << run.out;
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, RenderSessionScript,
    testing::Values(
        ScriptCase{"UnknownCommand", "select 1\nrender now\n", 2,
                   "2: unknown command \"render\"; the commands are select, open, prepare", 0},
        ScriptCase{"DepthOfThree", "# frame\nselect 1\nprepare 400 200 3\n", 2,
                   "3: DEPTH is the bytes of a channel: 1, 2 or 4, not \"3\"", 0},
        ScriptCase{"NoSize", "prepare 400\n", 2,
                   "1: usage: prepare WIDTH HEIGHT DEPTH [option6014] [low-priority]", 0},
        ScriptCase{"FrameTooLarge", "select 1\nprepare 16384 1025 1\n", 2,
                   "2: a frame may have at most 16777216 pixels (4096 x 4096), not 16384 x 1025", 0},
        ScriptCase{"IdTooLarge", "select 4294967296\n", 2,
                   "1: ID must be a whole number from 0 to 4294967295, not \"4294967296\"", 0},
        ScriptCase{"MissingScene", "select 1\nopen /nonexistent/plane.ory\n", 2,
                   "2: open /nonexistent/plane.ory: /nonexistent/plane.ory: ", 1},
        ScriptCase{"NotAScene", "select 1\nopen /etc/hostname\n", 2,
                   "2: open /etc/hostname: the session could not open it", 1},
        ScriptCase{"PrepareWithoutDocument", "select 1\nprepare 400 200 1\n", 1,
                   "2: prepare 400 200 1: the session could not prepare the frame", 1},
        ScriptCase{"NothingSelected", "open @\n", 2, "1: open ", 0},
        ScriptCase{"NoRenderOfNoneId", "select 4294967295\n", 1,
                   "1: select 4294967295: the session refused the render id", 0},
        ScriptCase{"ReadBeforePrepare", "select 1\nopen @\nread /tmp/never.png\n", 1,
                   "3: read /tmp/never.png: the session has no frame to read", 2}),
    [](const testing::TestParamInfo<ScriptCase>& info) { return info.param.name; });

}  // namespace
