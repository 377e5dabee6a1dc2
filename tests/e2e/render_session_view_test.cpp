// End to end: the preparation steps, the framing of the view and the output size, through
// aehost session on the plane scene of tests/support/plane_scene.h.
//
// Framing the 400 x 200 frame: the plane's corners lie sqrt(100^2 + 50^2) = sqrt(12500)
// from its centre (0, 0, 1000). The narrower half angle of the camera is the vertical one,
// atan(0.2 * 200 / 400) = atan(0.1), so the camera backs off along its axis to
// sqrt(12500) / sin(atan(0.1)) = sqrt(12500 * 101) from the centre: to z = 1000 -
// sqrt(1262500), about -123.61, with no rotation. From there a unit at the plane is
// 1000 / sqrt(1262500) pixels, so the plane's 100 units either side of the centre column 200
// reach 88.9996 columns and its 50 units either side of line 100 reach 44.4998 lines.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/support/plane_scene.h"
#include "tests/support/session_script.h"

namespace {

using qae_test::Lines;

bool IsRed(const Bitmap& picture, int x, int y) { return qae_test::PixelIs(picture, x, y, 1.0f, 0.0f, 0.0f); }
bool IsBlack(const Bitmap& picture, int x, int y) { return qae_test::PixelIs(picture, x, y, 0.0f, 0.0f, 0.0f); }

class RenderSessionView : public qae_test::SessionScriptTest {
 protected:
  RenderSessionView() : SessionScriptTest("render_session_view") {}

  const std::string scene_ = BuildScene("plane", qae_test::PlaneSceneJson());
};

TEST_F(RenderSessionView, FrameViewBacksTheCameraOffUntilThePlaneFillsTheFrameHeight) {
  const std::string frame = dir_ + "/framed.png";
  const auto run = Run("select 1\nopen " + scene_ +
                       "\noutput-size 400 200 1 1\nframe-view\ndirty\nprepare 400 200 1\nwait\nread " + frame + "\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 8u) << run.out;
  EXPECT_EQ(lines[2], "output-size 400 200 1 1: width 400, height 200, pixel aspect 1, film aspect 1");
  double x = 1;
  double y = 1;
  double z = 0;
  double h = 1;
  double p = 1;
  double b = 1;
  char comma = 0;
  std::istringstream values(lines[3].substr(lines[3].find("camera at ") + 10));
  std::string rotationWord;
  values >> x >> y >> z >> comma >> rotationWord >> h >> p >> b;
  EXPECT_EQ(lines[3].rfind("frame-view: camera at ", 0), 0u) << lines[3];
  EXPECT_EQ(rotationWord, "rotation") << lines[3];
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(y, 0.0);
  EXPECT_NEAR(z, 1000.0 - std::sqrt(1262500.0), 1e-6);
  EXPECT_EQ(h, 0.0);
  EXPECT_EQ(p, 0.0);
  EXPECT_EQ(b, 0.0);
  EXPECT_EQ(lines[4], "dirty: dirty");

  // The plane now spans columns 111 to 288 and lines 56 to 143; check a pixel either side
  // of each edge, one pixel clear of it.
  const Bitmap picture = ReadFrame(frame);
  EXPECT_TRUE(IsRed(picture, 112, 100));
  EXPECT_TRUE(IsBlack(picture, 110, 100));  // red before the framing
  EXPECT_TRUE(IsRed(picture, 287, 100));
  EXPECT_TRUE(IsBlack(picture, 290, 100));
  EXPECT_TRUE(IsRed(picture, 200, 57));
  EXPECT_TRUE(IsBlack(picture, 200, 54));  // red before the framing
  EXPECT_TRUE(IsRed(picture, 200, 142));
  EXPECT_TRUE(IsBlack(picture, 200, 145));
}

TEST_F(RenderSessionView, FrameViewWithoutADocumentFramesNothing) {
  const auto run = Run("select 1\nframe-view 1\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(Lines(run.out).back(), "frame-view 1: nothing framed (no document open, or no render camera)");
}

TEST_F(RenderSessionView, OutputSizeReadsBackAsSetWithASideNotAbove0AsOne) {
  const auto run = Run("select 1\nopen " + scene_ + "\noutput-size 0 -5 2 1.5\noutput-size 1920 1080 1.25 0.5\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 4u) << run.out;
  EXPECT_EQ(lines[2], "output-size 0 -5 2 1.5: width 1, height 1, pixel aspect 2, film aspect 1.5");
  EXPECT_EQ(lines[3], "output-size 1920 1080 1.25 0.5: width 1920, height 1080, pixel aspect 1.25, film aspect 0.5");
}

// Both steps leave the document as it was: the picture stays good, and rendered again it is
// the plane of columns 100 to 299 and lines 50 to 149 as before.
TEST_F(RenderSessionView, ThePreparationStepsLeaveTheDocumentAsItWas) {
  const std::string frame = dir_ + "/after.png";
  const auto run = Run("select 1\nopen " + scene_ +
                       "\nprepare 400 200 1\nwait\ncopy-document\nhook-messages\ndirty\nstop\nprepare 400 200 1\n"
                       "wait\nread " + frame + "\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 11u) << run.out;
  EXPECT_EQ(lines[4], "copy-document: ran");
  EXPECT_EQ(lines[5], "hook-messages: ran");
  EXPECT_EQ(lines[6], "dirty: clean");
  const Bitmap picture = ReadFrame(frame);
  for (int y = 0; y < 200; ++y)
    for (int x = 0; x < 400; ++x) {
      const bool inside = x >= 100 && x < 300 && y >= 50 && y < 150;
      ASSERT_TRUE(inside ? IsRed(picture, x, y) : IsBlack(picture, x, y)) << x << ", " << y;
    }
}

struct BadLine {
  const char* script;
  int exitCode;
  const char* message;
};

// Names the case by its script in the test's name.
void PrintTo(const BadLine& line, std::ostream* out) { *out << line.script; }

class RenderSessionViewBadLine : public RenderSessionView, public testing::WithParamInterface<BadLine> {};

TEST_P(RenderSessionViewBadLine, IsRefusedWithTheLineAndWhy) {
  const auto run = Run(GetParam().script);
  EXPECT_EQ(run.exitCode, GetParam().exitCode);
  EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RenderSessionViewBadLine,
    testing::Values(BadLine{"hook-messages\n", 1, ":1: hook-messages: no render is selected"},
                    BadLine{"copy-document\n", 1, ":1: copy-document: no render is selected"},
                    BadLine{"frame-view\n", 1, ":1: frame-view: no render is selected"},
                    BadLine{"select 1\noutput-size 400 200 1 1\n", 1, ":2: output-size 400 200 1 1: no document is open"},
                    BadLine{"select 1\nframe-range 2 25 0 49 25 3\n", 1, "no document is open"},
                    BadLine{"hook-messages now\n", 2, "usage: hook-messages (no arguments)"},
                    BadLine{"frame-view -1\n", 2, "MODE must be a whole number from 0 to 2147483647, not \"-1\""},
                    BadLine{"output-size 400 200 1\n", 2, "usage: output-size WIDTH HEIGHT PIXEL-ASPECT FILM-ASPECT"},
                    BadLine{"output-size 400 nan 1 1\n", 2, "a size or aspect must be a finite number, not \"nan\""},
                    BadLine{"frame-range 2 25 0 49 0 3\n", 2, "DENOMINATOR must be at least 1, not \"0\""}));

}  // namespace
