// End to end: orytool render on scenes built from descriptions. A camera at the origin
// looks along +z with a field of view of 2 atan(0.2); in a frame 400 pixels wide its focal
// length is 200 / 0.2 = 1000 pixels, so a plane 1000 units away shows one unit a pixel,
// centred on pixel (200, 100) of a 400 x 200 frame. Pixels are read back from the PNG.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "quillon/render/png_file.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

constexpr int kFailed = 1;
constexpr int kBadInput = 2;

// A red plane of 200 x 100 units whose x moves from 0 at frame 0 to 100 at frame 30 (30 fps).
const char* const kRedPlaneScene = R"({
  "objects": [
    {"type": "ObjectType_Camera", "ref": "cam", "params": [{"id": 1008, "float": 0.39479111969976155}]},
    {"type": "ObjectType_Plane",
     "params": [{"id": 903, "vector": [0, 0, 1000]}, {"id": 1230, "float": 200}, {"id": 1231, "float": 100},
                {"id": 1300, "int32": 5}],
     "tracks": [{"path": [[903, 23], [1000, 19]], "kind": 1,
                 "curve": {"keys": [{"time": [0, 1], "value": 0, "bits": [41]}, {"time": [1, 1], "value": 100}]}}],
     "tags": [{"type": "TagType_Texture", "params": [{"id": 1010, "link": "red"}]}]}
  ],
  "materials": [{"type": "MaterialType_Standard", "ref": "red", "params": [{"id": 2100, "vector": [1, 0, 0]}]}],
  "views": [{"scene_camera": "cam", "editor_camera": null}]
})";

class OrytoolRenderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = qae_test::MakeTempDir("orytool_render");
    qae_test::WriteFile(dir_ + "/plane.json", kRedPlaneScene);
    const auto built = RunCommand(qae_test::OrytoolPath(), {"build", dir_ + "/plane.json", "-o", Scene()});
    ASSERT_EQ(built.exitCode, 0) << built.err;
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Scene() const { return dir_ + "/plane.ory"; }
  std::string Out() const { return dir_ + "/frame.png"; }

  qae_test::CommandResult Render(std::vector<std::string> extra) const {
    std::vector<std::string> args{"render", Scene()};
    args.insert(args.end(), extra.begin(), extra.end());
    return RunCommand(qae_test::OrytoolPath(), args);
  }

  std::string dir_;
};

// Red with full alpha inside [left, right) x [50, 150), clear elsewhere.
void ExpectRedBlock(const std::string& png, int left, int right) {
  Bitmap picture;
  std::string error;
  ASSERT_TRUE(quillon::render::DecodePngFile(png, &picture, &error)) << error;
  ASSERT_EQ(picture.width, 400);
  ASSERT_EQ(picture.height, 200);
  int wrong = 0;
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 400; ++x) {
      const bool inside = x >= left && x < right && y >= 50 && y < 150;
      const float* colour = quillon::render::PixelAt(picture, x, y);
      const float alpha = quillon::render::PixelAt(*picture.alpha, x, y)[0];
      const bool ok = inside ? colour[0] == 1 && colour[1] == 0 && colour[2] == 0 && alpha == 1
                                : colour[0] == 0 && colour[1] == 0 && colour[2] == 0 && alpha == 0;
      if (!ok && ++wrong <= 3) ADD_FAILURE() << "pixel (" << x << ", " << y << ") is wrong";
    }
  }
  EXPECT_EQ(wrong, 0);
}

// The bit depth of a PNG, from its header chunk.
int PngBitDepth(const std::string& png) { return static_cast<unsigned char>(qae_test::ReadFile(png).at(24)); }

class OrytoolRenderDepthTest : public OrytoolRenderTest, public ::testing::WithParamInterface<int> {};

TEST_P(OrytoolRenderDepthTest, ThePlaneCoversItsBlockAtEveryDepth) {
  const auto run =
      Render({"--frame", "0", "--size", "400x200", "--depth", std::to_string(GetParam()), "--output", Out()});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");  // no progress bar off a terminal
  ExpectRedBlock(Out(), 100, 300);
  EXPECT_EQ(PngBitDepth(Out()), GetParam() == 8 ? 8 : 16);
}

INSTANTIATE_TEST_SUITE_P(Depths, OrytoolRenderDepthTest, ::testing::Values(8, 16, 32));

TEST_F(OrytoolRenderTest, TheFrameChoosesTheTimeOfTheAnimation) {
  // Frame 15 is half a second: x = 50 units, 50 pixels to the right.
  const auto run = Render({"--frame", "15", "--size", "400x200", "-o", Out()});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  ExpectRedBlock(Out(), 150, 350);
}

TEST_F(OrytoolRenderTest, AMissingPictureIsNamedAndTheRenderGoesOn) {
  std::string scene = kRedPlaneScene;
  const std::string material = R"("params": [{"id": 2100, "vector": [1, 0, 0]}]})";
  scene.replace(scene.find(material), material.size(),
                R"("params": [{"id": 2100, "vector": [1, 0, 0]}, {"id": 8000, "link": "pic"}],
                    "shaders": [{"type": "ShaderType_Bitmap", "ref": "pic",
                                 "params": [{"id": 1000, "filename": "missing/sky.png"}]}]})");
  qae_test::WriteFile(dir_ + "/plane.json", scene);
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(), {"build", dir_ + "/plane.json", "-o", Scene()}).exitCode, 0);
  const auto run = Render({"--frame", "0", "--size", "400x200", "-o", Out()});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find("orytool: missing picture: " + dir_ + "/missing/sky.png"), std::string::npos) << run.err;
  ExpectRedBlock(Out(), 100, 300);
}

struct BadRenderCase {
  const char* name;
  std::vector<std::string> args;  // after "render"; "@" stands for the case's folder
  int exitCode;
  std::string mention;            // "@" expanded as in args
};

void PrintTo(const BadRenderCase& c, std::ostream* out) { *out << c.name; }

class OrytoolRenderBadInputTest : public OrytoolRenderTest, public ::testing::WithParamInterface<BadRenderCase> {};

std::string Expand(const std::string& text, const std::string& dir) {
  return !text.empty() && text[0] == '@' ? dir + text.substr(1) : text;
}

// Each refusal names what was wrong and leaves the output that was there as it was.
TEST_P(OrytoolRenderBadInputTest, IsRefusedWithAMessage) {
  const BadRenderCase& c = GetParam();
  qae_test::WriteFile(dir_ + "/damaged.ory", "ORY6 this is no scene");
  qae_test::WriteFile(Out(), "kept");
  std::filesystem::create_directory(dir_ + "/folder.png");
  std::vector<std::string> args{"render"};
  for (const std::string& arg : c.args) args.push_back(Expand(arg, dir_));
  const auto run = RunCommand(qae_test::OrytoolPath(), args);
  EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
  EXPECT_NE(run.err.find(Expand(c.mention, dir_)), std::string::npos) << run.err;
  EXPECT_EQ(qae_test::ReadFile(Out()), "kept");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OrytoolRenderBadInputTest,
    ::testing::Values(
        BadRenderCase{"DamagedScene", {"@/damaged.ory", "--frame", "0", "--size", "40x20", "-o", "@/frame.png"},
                      kBadInput, "@/damaged.ory"},
        BadRenderCase{"ZeroWidth", {"@/plane.ory", "--frame", "0", "--size", "0x20", "-o", "@/frame.png"}, kBadInput,
                      "--size must be WIDTHxHEIGHT, each a whole number from 1 to 16384, not \"0x20\""},
        BadRenderCase{"SizeWithoutHeight", {"@/plane.ory", "--frame", "0", "--size", "40", "-o", "@/frame.png"},
                      kBadInput, "not \"40\""},
        BadRenderCase{"TooWide", {"@/plane.ory", "--frame", "0", "--size", "16385x2", "-o", "@/frame.png"},
                      kBadInput, "not \"16385x2\""},
        BadRenderCase{"UnknownDepth",
                      {"@/plane.ory", "--frame", "0", "--size", "40x20", "--depth", "12", "-o", "@/frame.png"},
                      kBadInput, "--depth"},
        BadRenderCase{"UnknownOption",
                      {"@/plane.ory", "--frame", "0", "--size", "40x20", "--fast", "-o", "@/frame.png"},
                      kBadInput, "--fast"},
        BadRenderCase{"OutputIsTheScene", {"@/plane.ory", "--frame", "0", "--size", "40x20", "-o", "@/plane.ory"},
                      kBadInput, "@/plane.ory: the output is the scene file itself"},
        BadRenderCase{"OutputIsAFolder", {"@/plane.ory", "--frame", "0", "--size", "40x20", "-o", "@/folder.png"},
                      kFailed, "@/folder.png: cannot write: Is a directory"},
        BadRenderCase{"OutputInAMissingFolder",
                      {"@/plane.ory", "--frame", "0", "--size", "40x20", "-o", "@/none/frame.png"}, kFailed,
                      "@/none/frame.png"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
