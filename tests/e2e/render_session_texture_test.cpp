// End to end: pictures that a caller sends into a render, found by the materials of the open
// document, and the lists of the document's pictures, through aehost session.
//
// The scene is the plane scene of tests/support/plane_scene.h, but the red material's colour
// channel holds a bitmap shader that names "wood.png" by its leaf alone, a file that does not
// exist beside the scene. A caller sends a green picture under that name; the material then
// shows it, so in a 400 x 200 frame the plane's block, columns 100 to 299 and lines 50 to
// 149, is pure green (a picture of one colour looks the same however it is mapped), and the
// rest of the frame is black. A second material, on no object, names "/maps/bump.png" in its
// bump channel (5).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quillon/render/png_file.h"
#include "tests/support/plane_scene.h"
#include "tests/support/session_script.h"

namespace {

// The red material shows "wood.png"; the second is on no object.
constexpr char kTexturedMaterialsJson[] = R"([
    {"type": "MaterialType_Standard", "ref": "red",
     "params": [{"id": "MaterialParam_Color", "vector": [1, 0, 0]}, {"id": 8000, "link": "wood"}],
     "shaders": [{"type": "ShaderType_Bitmap", "ref": "wood", "params": [{"id": 1000, "filename": "wood.png"}]}]},
    {"type": "MaterialType_Standard", "ref": "unused", "params": [{"id": 8005, "link": "bump"}],
     "shaders": [{"type": "ShaderType_Bitmap", "ref": "bump",
                  "params": [{"id": 1000, "filename": "/maps/bump.png"}]}]}])";

// A 2 x 2 picture of pure green.
std::string GreenPng() {
  Bitmap green;
  green.width = 2;
  green.height = 2;
  for (int i = 0; i < 4; ++i) green.samples.insert(green.samples.end(), {0.0f, 1.0f, 0.0f});
  std::string bytes;
  std::string error;
  EXPECT_TRUE(quillon::render::EncodePng(green, nullptr, 8, &bytes, &error)) << error;
  return bytes;
}

class RenderSessionTexture : public qae_test::SessionScriptTest {
 protected:
  RenderSessionTexture() : SessionScriptTest("render_session_texture") {}
  void SetUp() override { qae_test::WriteFile(dir_ + "/green.png", GreenPng()); }

  // Renders after `steps` and checks the frame: the plane's block green, the rest black.
  void ExpectGreenPlane(const std::string& steps) {
    const std::string frame = dir_ + "/frame.png";
    const auto run = Run("select 1\n" + steps + "prepare 400 200 1\nwait\nread " + frame + "\n");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Bitmap picture = ReadFrame(frame);
    ASSERT_EQ(picture.width, 400);
    ASSERT_EQ(picture.height, 200);
    int wrong = 0;
    for (int y = 0; y < 200; ++y)
      for (int x = 0; x < 400; ++x) {
        const bool inside = x >= 100 && x <= 299 && y >= 50 && y <= 149;
        if (!qae_test::PixelIs(picture, x, y, 0.0f, inside ? 1.0f : 0.0f, 0.0f)) ++wrong;
      }
    EXPECT_EQ(wrong, 0);
  }

  const std::string scene_ = BuildScene("plane", qae_test::PlaneSceneJson(kTexturedMaterialsJson));
};

TEST_F(RenderSessionTexture, APictureSentBeforeTheOpenIsShownByTheMaterialThatNamesIt) {
  ExpectGreenPlane("send-file wood.png " + dir_ + "/green.png\nopen " + scene_ + "\n");
}

TEST_F(RenderSessionTexture, APictureSentIntoTheOpenDocumentIsShownAtOnce) {
  ExpectGreenPlane("open " + scene_ + "\nsend-file wood.png " + dir_ + "/green.png\n");
}

TEST_F(RenderSessionTexture, TheListsNameExactlyThePicturesOfTheScene) {
  const auto run = Run("select 1\nopen " + scene_ + "\ntextures\nassets\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "select 1: render 1 is current\nopen " + scene_ +
                         ": open\ntextures: 2 files\n  wood.png\n  /maps/bump.png\nassets: 2 files\n  " + dir_ +
                         "/wood.png\n  /maps/bump.png\n");
}

struct BadLine {
  const char* script;  // after "select 1"
  int exitCode;
  const char* message;
};

void PrintTo(const BadLine& c, std::ostream* out) { *out << c.script; }

class RenderSessionTextureBadLine : public RenderSessionTexture, public testing::WithParamInterface<BadLine> {};

TEST_P(RenderSessionTextureBadLine, IsRefusedWithTheLineAndWhy) {
  const auto run = Run(std::string("select 1\n") + GetParam().script + "\n");
  EXPECT_EQ(run.exitCode, GetParam().exitCode);
  EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RenderSessionTextureBadLine,
    testing::Values(BadLine{"textures", 1, ":2: textures: no document is open (open a scene first)"},
                    BadLine{"assets now", 2, ":2: usage: assets (no arguments)"},
                    BadLine{"send-file wood.png", 2, ":2: usage: send-file NAME FILE"},
                    BadLine{"send-file wood.png /nonexistent/green.png", 2, "/nonexistent/green.png"}));

}  // namespace
