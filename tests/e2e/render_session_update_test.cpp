// End to end: update documents and direct operations sent through aehost session change the
// open document, and the frames read back match pictures worked out by hand.
//
// The plane scene: a camera at the origin looking along +z with a horizontal field of view
// of 2 atan(0.2), and a red plane of 200 x 100 units 1000 units ahead. At that distance the
// 400 pixels of a 400 x 200 frame span 400 units, one unit a pixel, so the plane covers
// columns 100 to 299 and lines 50 to 149. A camera 100 units to the right sees the plane
// 100 units to its left: columns 0 to 199. A plane of 100 x 50 units at x = 150 covers
// world x 100 to 200, columns 300 to 399, and world y -25 to 25, lines 75 to 124.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/support/session_script.h"

namespace {

using qae_test::Lines;

constexpr int kWidth = 400;
constexpr int kHeight = 200;
constexpr char kPlaneMarker[] = "00112233445566778899aabbccddeeff";

struct Colour {
  float red;
  float green;
  float blue;
};

constexpr Colour kRed{1, 0, 0};
constexpr Colour kBlue{0, 0, 1};
// A plane without a material is drawn grey.
constexpr Colour kGrey{0.8f, 0.8f, 0.8f};

// A rectangle of columns [left, right) and lines [top, bottom) in one colour.
struct Block {
  int left;
  int right;
  int top;
  int bottom;
  Colour colour;
};

const Block kPlaneBlock{100, 300, 50, 150, kRed};

std::string FieldOfView() {
  std::ostringstream text;
  text.precision(17);
  text << 2.0 * std::atan(0.2);
  return text.str();
}

std::string CameraJson(double x) {
  return R"({"type": "ObjectType_Camera", "name": "Camera", "ref": "cam",
     "unique_ids": [{"application": 7, "text": "cam"}],
     "params": [{"id": "ObjectParam_Position", "vector": [)" +
         std::to_string(x) + R"(, 0, 0]}, {"id": "CameraParam_FieldOfView", "float": )" + FieldOfView() + "}]}";
}

std::string PlaneJson(const std::string& name, const std::string& id, double x, double width, double height,
                      const std::string& extra) {
  return R"({"type": "ObjectType_Plane", "name": ")" + name + R"(", "unique_ids": [{"application": 7, "text": ")" +
         id + R"("}], "params": [{"id": "ObjectParam_Position", "vector": [)" + std::to_string(x) +
         R"(, 0, 1000]}, {"id": "PlaneParam_Width", "float": )" + std::to_string(width) +
         R"(}, {"id": "PlaneParam_Height", "float": )" + std::to_string(height) +
         R"(}, {"id": "PlaneParam_Orientation", "int32": 4}])" + extra + "}";
}

std::string MaterialJson(const std::string& ref, const std::string& id, const char* colour) {
  return R"({"type": "MaterialType_Standard", "name": "Paint", "ref": ")" + ref +
         R"(", "unique_ids": [{"application": 7, "text": ")" + id +
         R"("}], "params": [{"id": "MaterialParam_Color", "vector": )" + colour + "}]}";
}

const char kRedTexture[] =
    R"(, "tags": [{"type": "TagType_Texture", "params": [{"id": "TextureTagParam_Material", "link": "red"}]}])";

std::string PlaneSceneJson() {
  return R"({"objects": [)" + CameraJson(0) + ", " +
         PlaneJson("Plane", "plane", 0, 200, 100, std::string(R"(, "marker": ")") + kPlaneMarker + "\"" + kRedTexture) +
         R"(], "materials": [)" + MaterialJson("red", "red", "[1, 0, 0]") +
         R"(], "views": [{"scene_camera": "cam", "editor_camera": null}], "render_view": 0})";
}

// Red in front of a blue plane twice as far and twice as large, which fills the same block;
// the red plane's x is keyed from 0 at time 0 to 10000 at one second, out of the picture.
std::string KeyedSceneJson() {
  const std::string track =
      R"(, "tracks": [{"path": [[903, 23], [1000, 19]], "curve": {"keys": [{"time": [0, 1], "value": 0},
                                                                        {"time": [1, 1], "value": 10000}]}}])";
  return R"({"objects": [)" + CameraJson(0) + ", " + PlaneJson("Plane", "plane", 0, 200, 100, track + kRedTexture) +
         R"(, {"type": "ObjectType_Plane", "name": "Back",
         "params": [{"id": "ObjectParam_Position", "vector": [0, 0, 2000]},
                    {"id": "PlaneParam_Width", "float": 400}, {"id": "PlaneParam_Height", "float": 200},
                    {"id": "PlaneParam_Orientation", "int32": 4}],
         "tags": [{"type": "TagType_Texture", "params": [{"id": "TextureTagParam_Material", "link": "blue"}]}]}],
      "materials": [)" + MaterialJson("red", "red", "[1, 0, 0]") + ", " + MaterialJson("blue", "blue", "[0, 0, 1]") +
         R"(], "views": [{"scene_camera": "cam", "editor_camera": null}], "render_view": 0})";
}

// An update document with these objects and materials and nothing else.
std::string UpdateJson(const std::string& objects, const std::string& materials = "",
                       const std::string& document = "") {
  std::string json = R"({"objects": [)" + objects + R"(], "materials": [)" + materials + "]";
  if (!document.empty()) json += R"(, "document": )" + document;
  return json + "}";
}

// The pixels as the driver wrote them, channel values from 0 to 1.
struct Picture {
  Bitmap colour;

  Colour At(int x, int y) const {
    const auto at = static_cast<std::size_t>((y * colour.width + x) * 3);
    return {colour.samples[at], colour.samples[at + 1], colour.samples[at + 2]};
  }
  float AlphaAt(int x, int y) const { return colour.alpha->samples[static_cast<std::size_t>(y * colour.width + x)]; }
};

bool Near(float a, float b) { return std::fabs(a - b) < 0.5f / 255.0f; }

// The number of pixels that differ from clear black with the blocks drawn on it (a later
// block over an earlier one).
int PixelsOff(const Picture& picture, const std::vector<Block>& blocks) {
  int off = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      Colour want{0, 0, 0};
      float alpha = 0;
      for (const Block& block : blocks) {
        if (x >= block.left && x < block.right && y >= block.top && y < block.bottom) {
          want = block.colour;
          alpha = 1;
        }
      }
      const Colour got = picture.At(x, y);
      if (!Near(got.red, want.red) || !Near(got.green, want.green) || !Near(got.blue, want.blue) ||
          !Near(picture.AlphaAt(x, y), alpha))
        ++off;
    }
  }
  return off;
}

class RenderSessionUpdate : public qae_test::SessionScriptTest {
 protected:
  RenderSessionUpdate() : SessionScriptTest("render_session_update") {}

  // Opens `scene`, renders it once, runs `steps`, renders again and reads the frame.
  Picture RenderAfter(const std::string& scene, const std::string& steps) {
    const std::string frame = dir_ + "/frame.png";
    const auto run = Run("select 1\nopen " + scene + "\nprepare 400 200 1\nwait\n" + steps +
                         "prepare 400 200 1\nwait\nread " + frame + "\n");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return Picture{ReadFrame(frame)};
  }

  const std::string scene_ = BuildScene("plane", PlaneSceneJson());
};

TEST_F(RenderSessionUpdate, ACameraUpdate100UnitsRightMovesTheBlock100ColumnsLeft) {
  const std::string camera = BuildScene("camera", UpdateJson(CameraJson(100)));
  const Picture picture = RenderAfter(scene_, "update __updc " + camera + "\n");
  EXPECT_EQ(PixelsOff(picture, {{0, 200, 50, 150, kRed}}), 0);
}

TEST_F(RenderSessionUpdate, ATimeUpdateToOneSecondShowsTheBluePlaneWhereTheRedOneWas) {
  const std::string keyed = BuildScene("keyed", KeyedSceneJson());
  EXPECT_EQ(PixelsOff(RenderAfter(keyed, ""), {kPlaneBlock}), 0);
  const std::string time = BuildScene("time", UpdateJson("", "", R"({"current_time": [1, 1]})"));
  EXPECT_EQ(PixelsOff(RenderAfter(keyed, "update __updt " + time + "\n"), {{100, 300, 50, 150, kBlue}}), 0);
}

TEST_F(RenderSessionUpdate, ALayerUpdateWithNoLayersAndObjectsOnNoLayerHiddenGivesAnEmptyFrame) {
  const std::string layers =
      BuildScene("layers", UpdateJson("", "", R"({"params": [{"id": 1029194, "container": [
                                               {"id": 1000, "int32": 0}, {"id": 1001, "bool": false}]}]})"));
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __updl " + layers + "\n"), {}), 0);
}

TEST_F(RenderSessionUpdate, ADifferenceReplacesTheMaterialByUniqueIdAndThePlaneTurnsBlue) {
  const std::string difference = BuildScene("blue", UpdateJson("", MaterialJson("new", "red", "[0, 0, 1]")));
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __upds7 " + difference + "\n"), {{100, 300, 50, 150, kBlue}}), 0);
}

TEST_F(RenderSessionUpdate, ADifferenceWithDeleteRemovesThePlane) {
  const std::string difference = BuildScene("delete", UpdateJson(PlaneJson("---delete", "plane", 0, 1, 1, "")));
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __upds7 " + difference + "\n"), {}), 0);
}

TEST_F(RenderSessionUpdate, ADifferenceWithANewIdInsertsASecondPlane) {
  const std::string difference = BuildScene("second", UpdateJson(PlaneJson("Second", "plane2", 150, 100, 50, "")));
  const Picture picture = RenderAfter(scene_, "update __upds7 " + difference + "\n");
  EXPECT_EQ(PixelsOff(picture, {kPlaneBlock, {300, 400, 75, 125, kGrey}}), 0);
}

TEST_F(RenderSessionUpdate, ADifferenceForAnotherApplicationKnowsNoIdAndInsertsTheMaterialBeside) {
  // Application 8 gave no ids: the blue material is new, and the plane stays red.
  const std::string difference = BuildScene("other", UpdateJson("", MaterialJson("new", "red", "[0, 0, 1]")));
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __upds8 " + difference + "\n"), {kPlaneBlock}), 0);
}

TEST_F(RenderSessionUpdate, UpdsWithoutANumberIsAWholeDocumentInPlaceOfTheOpenOne) {
  const std::string other =
      BuildScene("other", R"({"objects": [)" + CameraJson(0) + ", " + PlaneJson("Second", "plane2", 150, 100, 50, "") +
                         R"(], "views": [{"scene_camera": "cam", "editor_camera": null}], "render_view": 0})");
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __upds " + other + "\n"), {{300, 400, 75, 125, kGrey}}), 0);
  EXPECT_EQ(PixelsOff(RenderAfter(scene_, "update __upds0 " + other + "\n"), {{300, 400, 75, 125, kGrey}}), 0);
}

// Each direct operation once, with `dirty` read after it: the picture is out of date after
// a change of the time, the layers or the camera, and not after keeping caches, choosing
// the camera already looked through, setting the camera values it has, or the setters of
// single objects, which leave that to the caller.
TEST_F(RenderSessionUpdate, DirectOperationsAndWhetherTheyMakeThePictureOutOfDate) {
  const std::string frame = dir_ + "/frame.png";
  const std::string marker = kPlaneMarker;
  const auto run = Run("select 1\nopen " + scene_ + "\nprepare 400 200 1\nwait\ndirty\n"
                       "keep-caches on\ndirty\n"
                       "select-camera 7 63616d\ndirty\n"
                       "camera-values 0 0 0 0 0 0 0 0 0 0\ndirty\n"
                       "object-position " + marker + " 0 0 1000\ndirty\n"
                       "object-rotation " + marker + " 0 0 0 6\ndirty\n"
                       "object-scale " + marker + " 1 1 1\ndirty\n"
                       "layer-states objects-on\ndirty\n"
                       "time 0 1\ndirty\n"
                       "prepare 400 200 1\nwait\n"
                       "layers objects-on\ndirty\n"
                       "prepare 400 200 1\nwait\n"
                       "camera-values 100 0 0 0 0 0 0 0 0 0\ndirty\n"
                       "prepare 400 200 1\nwait\nread " + frame + "\n");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<std::string> lines = Lines(run.out);
  const std::vector<std::string> dirtyLines = [&lines] {
    std::vector<std::string> found;
    for (std::size_t i = 1; i < lines.size(); ++i)
      if (lines[i].rfind("dirty: ", 0) == 0) found.push_back(lines[i - 1].substr(0, lines[i - 1].find(':')) + " -> " +
                                                             lines[i].substr(7));
    return found;
  }();
  EXPECT_EQ(dirtyLines, (std::vector<std::string>{
                            "wait -> clean",
                            "keep-caches on -> clean",
                            "select-camera 7 63616d -> clean",
                            "camera-values 0 0 0 0 0 0 0 0 0 0 -> clean",
                            "object-position " + marker + " 0 0 1000 -> clean",
                            "object-rotation " + marker + " 0 0 0 6 -> clean",
                            "object-scale " + marker + " 1 1 1 -> clean",
                            "layer-states objects-on -> clean",
                            "time 0 1 -> dirty",
                            "layers objects-on -> dirty",
                            "camera-values 100 0 0 0 0 0 0 0 0 0 -> dirty",
                        }));
  const Picture picture{ReadFrame(frame)};
  ASSERT_EQ(picture.colour.samples.size(), static_cast<std::size_t>(kWidth * kHeight * 3));
  EXPECT_EQ(PixelsOff(picture, {{0, 200, 50, 150, kRed}}), 0);
}

// The camera's x is keyed from 0 at time 0 to 200 at one second. Camera values that it
// already has at time 0 still count as a change, since its animation of them goes: at one
// second it stands where the values put it, and the block is where it was at time 0.
TEST_F(RenderSessionUpdate, CameraValuesTakeTheAnimationOfTheCameraAway) {
  std::string camera = CameraJson(0);
  camera.insert(camera.size() - 1, R"(, "tracks": [{"path": [[903, 23], [1000, 19]], "curve": {"keys": [
                    {"time": [0, 1], "value": 0}, {"time": [1, 1], "value": 200}]}}])");
  const std::string animated =
      BuildScene("animated", R"({"objects": [)" + camera + ", " + PlaneJson("Plane", "plane", 0, 200, 100, "") +
                            R"(], "views": [{"scene_camera": "cam", "editor_camera": null}], "render_view": 0})");
  const Block grey{100, 300, 50, 150, kGrey};
  EXPECT_EQ(PixelsOff(RenderAfter(animated, "time 1 1\n"), {{0, 100, 50, 150, kGrey}}), 0);
  EXPECT_EQ(PixelsOff(RenderAfter(animated, "camera-values 0 0 0 0 0 0 0 0 0 0\ntime 1 1\n"), {grey}), 0);
}

TEST_F(RenderSessionUpdate, AnObjectMovedByMarkerShowsAfterTheCallerAsksForARender) {
  const Picture picture = RenderAfter(scene_, std::string("object-position ") + kPlaneMarker + " -100 0 1000\nstop\n");
  EXPECT_EQ(PixelsOff(picture, {{0, 200, 50, 150, kRed}}), 0);
}

// "706c616e65" is the unique id "plane" in hex digits.
TEST_F(RenderSessionUpdate, AnObjectSelectedByUniqueIdMovesAsTheActiveOne) {
  const Picture picture = RenderAfter(scene_, "select-object 7 706c616e65\nactive-position -100 0 1000\nstop\n");
  EXPECT_EQ(PixelsOff(picture, {{0, 200, 50, 150, kRed}}), 0);
  const auto unknown = Run("select 1\nopen " + scene_ + "\nselect-object 7 6e6f6e65\n");
  EXPECT_EQ(unknown.exitCode, 1);
  EXPECT_NE(unknown.err.find("select-object 7 6e6f6e65: no object of the open document has that unique id"),
            std::string::npos)
      << unknown.err;
}

TEST_F(RenderSessionUpdate, OperationsWithoutADocumentAreRefused) {
  const std::string camera = BuildScene("camera", UpdateJson(CameraJson(100)));
  for (const std::string& line : {"update __updc " + camera, std::string("time 1 1"), std::string("layers objects-on"),
                                  std::string("object-scale ") + kPlaneMarker + " 1 1 1"}) {
    const auto run = Run("select 1\n" + line + "\n");
    EXPECT_EQ(run.exitCode, 1) << line;
    EXPECT_NE(run.err.find("run.session:2: " + line + ": "), std::string::npos) << run.err;
  }
}

struct ScriptMistake {
  const char* line;
  const char* message;
};

class RenderSessionUpdateMistake : public RenderSessionUpdate, public testing::WithParamInterface<ScriptMistake> {};

TEST_P(RenderSessionUpdateMistake, IsNamedWithItsLineAndExit2) {
  const auto run = Run(std::string("select 1\n") + GetParam().line + "\n");
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find(std::string("run.session:2: ") + GetParam().message), std::string::npos) << run.err;
  EXPECT_EQ(run.out, "");
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RenderSessionUpdateMistake,
    testing::Values(ScriptMistake{"update __updc", "usage: update NAME FILE"},
                    ScriptMistake{"time 1 0", "DENOMINATOR must be at least 1, not \"0\""},
                    ScriptMistake{"time 1 nan", "a part of the time must be a finite number, not \"nan\""},
                    ScriptMistake{"keep-caches maybe", "expected \"on\" or \"off\", not \"maybe\""},
                    ScriptMistake{"camera-values 1 2 3", "usage: camera-values X Y Z H P B FOCAL APERTURE THIRD"},
                    ScriptMistake{"select-camera 7 abc", "HEX-ID must be pairs of hex digits, not \"abc\""},
                    ScriptMistake{"layers all", "expected \"objects-on\" or \"objects-off\", not \"all\""},
                    ScriptMistake{"layers objects-on -1", "INDEX must be a whole number from 0 to 2147483647"},
                    ScriptMistake{"object-position 0011 1 2 3", "MARKER must be 32 hex digits, not \"0011\""},
                    ScriptMistake{"object-rotation 00112233445566778899aabbccddeeff 0 0 0 9",
                                  "ORDER must be a whole number from 0 to 6, not \"9\""},
                    ScriptMistake{"dirty now", "usage: dirty (no arguments)"}));

TEST_F(RenderSessionUpdate, AnUpdateFileThatIsMissingIsBadInput) {
  const auto run = Run("select 1\nopen " + scene_ + "\nupdate __updc " + dir_ + "/none.ory\n");
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("run.session:3: update __updc " + dir_ + "/none.ory: " + dir_ + "/none.ory: "),
            std::string::npos)
      << run.err;
}

}  // namespace
