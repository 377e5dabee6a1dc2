// End to end: the composition "Outlines" of examples/text.json goes through `aehost export
// --text planes`, and the scene's JSON dump is compared with values worked out by hand from
// DejaVu Sans itself (2048 units per em; at size 64 a font unit is 1/32 pixel exactly):
//
// - "H" is the 12-point outline listed in kH, advancing 1540 units; "i" is two rectangles
//   x 193..377, y 0..1120 and 1323..1556; "I" the rectangle x 201..403, y 0..1493, advancing
//   604; the space advances 651 and has no contours. All of them are straight, so every
//   tangent is 0;
// - the spline points are the host's outline (layer position + glyph point, y down) less the
//   null's position, y negated: the glyph point in font units over 32, y up;
// - each character's objects go in first under the null: the later character stands first,
//   and within a character the sweep before the extrusion. With stroke width 2 the offset is
//   2 x 0.6666666865348816 + 0.5 (extrusion back, sweep forward), the outline 2 x 2/3;
// - a still text (Hi) is written into the splines themselves; a text whose source text has
//   keys at 0 and 0.5 s gets point level keys at those times, for each name only at the times
//   it stands in the text; an animated text gets them at the frames beside each move.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"
#include "tests/support/scene_export.h"

namespace {

using qae_test::RunCommand;
using qae_test::SceneTag;
using qae_test::SceneTrack;

const std::string kExample = std::string(QAE_EXAMPLES_DIR) + "/text.json";
constexpr double kTwoThirds = 0.6666666865348816;
constexpr double kUnit = 1.0 / 32.0;

// The outline of "H" in DejaVu Sans, font units, in the font's own order.
const std::vector<std::vector<double>> kH = {{201, 1493}, {403, 1493},  {403, 881},  {1137, 881},
                                             {1137, 1493}, {1339, 1493}, {1339, 0},   {1137, 0},
                                             {1137, 711},  {403, 711},   {403, 0},    {201, 0}};

class TextPlanes : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = qae_test::MakeTempDir("text_planes");
    scene_ = qae_test::ExportSceneJson(kExample, "Outlines", dir_ + "/o.ory", {"--text", "planes"});
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(dir_); }

  // A node of that name below `node`, depth first; a null value when there is none.
  static const Json::Value& Find(const Json::Value& node, const std::string& name) {
    static const Json::Value none;
    for (const Json::Value& child : node["children"]) {
      if (child["name"].asString() == name) return child;
      if (const Json::Value& found = Find(child, name); !found.isNull()) return found;
    }
    return none;
  }
  static const Json::Value& Layer(const std::string& name) { return Find(scene_["objects"][0], name); }

  static std::string dir_;
  static Json::Value scene_;
};

std::string TextPlanes::dir_;
Json::Value TextPlanes::scene_;

std::vector<std::string> ChildrenOf(const Json::Value& node) {
  std::vector<std::string> children;
  for (const Json::Value& child : node["children"])
    children.push_back(child["type"].asString() + " " + child["name"].asString());
  return children;
}

// Points in font units (y up) moved right by `advance` units, as a spline holds them.
Json::Value Points(const std::vector<std::vector<double>>& units, double advance) {
  Json::Value points(Json::arrayValue);
  for (const auto& p : units) {
    Json::Value point(Json::arrayValue);
    point.append((p[0] + advance) * kUnit);
    point.append(p[1] * kUnit);
    point.append(0.0);
    points.append(point);
  }
  return points;
}

std::vector<std::string> KeyTimes(const Json::Value& track) {
  std::vector<std::string> times;
  for (const Json::Value& key : track["curve"]["keys"])
    times.push_back(std::to_string(key["time"][0].asInt()) + "/" + std::to_string(key["time"][1].asInt()));
  return times;
}

TEST_F(TextPlanes, EachCharacterHasItsExtrudeSweepOutlineAndInstanceByName) {
  const Json::Value& hi = Layer("Hi");
  EXPECT_EQ(ChildrenOf(hi), (std::vector<std::string>{"ObjectType_Sweep i(1)-Stroke", "ObjectType_Extrude i(1)",
                                                      "ObjectType_Sweep H(0)-Stroke", "ObjectType_Extrude H(0)"}));
  EXPECT_EQ(ChildrenOf(Find(hi, "H(0)")), (std::vector<std::string>{"ObjectType_Spline H(0) Spline"}));
  EXPECT_EQ(ChildrenOf(Find(hi, "H(0)-Stroke")),
            (std::vector<std::string>{"ObjectType_TextOutline Hi-H(0)-StrokeTextOutline",
                                      "ObjectType_Instance H(0) Spline"}));
  EXPECT_EQ(qae_test::SceneParam(Find(hi, "H(0)-Stroke"), 903)["vector"][2].asDouble(), 2 * kTwoThirds + 0.5);
  EXPECT_EQ(qae_test::SceneParam(Find(hi, "H(0)"), 903)["vector"][2].asDouble(), -(2 * kTwoThirds + 0.5));
  EXPECT_EQ(qae_test::SceneParam(Find(hi, "Hi-H(0)-StrokeTextOutline"), 2012)["float"].asDouble(), 2 * kTwoThirds);
  EXPECT_EQ(qae_test::SceneParam(hi, 905)["vector"], qae_test::ParseJson("[1.0, 1.0, 1.0]")) << "the null keeps scale 1";
}

TEST_F(TextPlanes, FillAndStrokeMaterialsCarryTheTextColours) {
  std::vector<std::string> names;
  for (const Json::Value& material : scene_["materials"]) {
    const std::string name = material["name"].asString();
    names.push_back(name);
    if (name == "Hi-Fill-Material") {
      EXPECT_EQ(qae_test::SceneParam(material, 2100)["vector"], qae_test::ParseJson("[1.0, 0.5, 0.25]"));
    }
    if (name == "Hi-Stroke-Material") {
      EXPECT_EQ(qae_test::SceneParam(material, 2100)["vector"], qae_test::ParseJson("[0.0, 0.0, 1.0]"));
    }
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Mover-Fill-Material", "Swap-Fill-Material", "Spaced-Fill-Material", "Hi-Stroke-Material",
                                             "Hi-Fill-Material"}));
}

TEST_F(TextPlanes, AStillTextIsTheFontsOwnOutlineInTheSplineItself) {
  // The spline under the extrusion; the sweep's instance bears its name too.
  const Json::Value& h = Find(Find(Layer("Hi"), "H(0)"), "H(0) Spline");
  EXPECT_EQ(SceneTag(h, "TagType_Points")["elements"], Points(kH, 0));
  EXPECT_TRUE(SceneTrack(h, "Shape Curve").isNull()) << "one time: no point level animation";
  const Json::Value& i = Find(Find(Layer("Hi"), "i(1)"), "i(1) Spline");
  EXPECT_EQ(SceneTag(i, "TagType_Points")["elements"],
            Points({{193, 1120}, {377, 1120}, {377, 0}, {193, 0}, {193, 1556}, {377, 1556}, {377, 1323}, {193, 1323}},
                   1540));
  EXPECT_EQ(SceneTag(i, "TagType_Segments")["elements"], qae_test::ParseJson("[[4.0, 1.0], [4.0, 1.0]]"));
  for (const Json::Value& tangent : SceneTag(i, "TagType_Tangents")["elements"])
    EXPECT_EQ(tangent, qae_test::ParseJson("[0.0, 0.0, 0.0, 0.0, 0.0, 0.0]"));
}

TEST_F(TextPlanes, AChangedLetterIsAnotherObjectKeyedOnlyWhileItStands) {
  const Json::Value& swap = Layer("Swap");
  EXPECT_EQ(ChildrenOf(swap), (std::vector<std::string>{"ObjectType_Extrude o(1)", "ObjectType_Extrude i(1)",
                                                         "ObjectType_Extrude H(0)"}));
  EXPECT_EQ(KeyTimes(SceneTrack(Find(swap, "H(0) Spline"), "Shape Curve")), (std::vector<std::string>{"0/1", "1/2"}));
  EXPECT_EQ(KeyTimes(SceneTrack(Find(swap, "i(1) Spline"), "Shape Curve")), (std::vector<std::string>{"0/1"}));
  EXPECT_EQ(KeyTimes(SceneTrack(Find(swap, "o(1) Spline"), "Shape Curve")), (std::vector<std::string>{"1/2"}));
  for (const Json::Value& key : SceneTrack(Find(swap, "H(0) Spline"), "Shape Curve")["curve"]["keys"])
    EXPECT_EQ(key["data"]["spline_key"]["points"]["elements"], Points(kH, 0));
}

TEST_F(TextPlanes, ASpaceHasNoPointsAndIsSwitchedOff) {
  const Json::Value& space = Find(Layer("Spaced"), " (1) Spline");
  ASSERT_FALSE(space.isNull());
  EXPECT_EQ(SceneTag(space, "TagType_Segments")["elements"].size(), 0u);
  const Json::Value& enabled = SceneTrack(space, "Enabled");
  EXPECT_EQ(enabled["path"], qae_test::ParseJson("[[906, 0]]"));
  ASSERT_EQ(enabled["curve"]["keys"].size(), 1u);
  EXPECT_EQ(enabled["curve"]["keys"][0]["value"].asDouble(), 0.0);
  EXPECT_EQ(SceneTrack(Find(Layer("Spaced"), "I(2) Spline"), "Enabled")["curve"]["keys"][0]["value"].asDouble(), 1.0);
  EXPECT_FALSE(Find(Layer("Spaced"), "I(1) Spline").isNull()) << "the I that takes the space's place at 0.5 s";
}

// "Mover" is "II" whose animator selects the first half of the characters and moves them from
// 0 to -40 pixels in y (up on screen) over 0.4 s, frames 0 to 10: the first I rises 4 pixels a
// frame, the second stays. Keys stand at those frames only, for both characters.
TEST_F(TextPlanes, ARangeSelectorThatMovesACharacterGivesKeysWhileItMoves) {
  const Json::Value& mover = Layer("Mover");
  const Json::Value& moving = SceneTrack(Find(Find(mover, "I(0)"), "I(0) Spline"), "Shape Curve");
  const Json::Value& still = SceneTrack(Find(Find(mover, "I(1)"), "I(1) Spline"), "Shape Curve");
  std::vector<std::string> frames;
  for (int f = 0; f <= 10; ++f) frames.push_back(f == 0 ? "0/1" : std::to_string(f / std::gcd(f, 25)) + "/" +
                                                                      std::to_string(25 / std::gcd(f, 25)));
  EXPECT_EQ(KeyTimes(moving), frames);
  EXPECT_EQ(KeyTimes(still), frames);
  const std::vector<std::vector<double>> rectangle = {{201, 1493}, {403, 1493}, {403, 0}, {201, 0}};
  for (Json::ArrayIndex f = 0; f < moving["curve"]["keys"].size(); ++f) {
    SCOPED_TRACE("frame " + std::to_string(f));
    const Json::Value& points = moving["curve"]["keys"][f]["data"]["spline_key"]["points"]["elements"];
    for (Json::ArrayIndex v = 0; v < 4; ++v) {
      EXPECT_EQ(points[v][0].asDouble(), rectangle[v][0] * kUnit);
      EXPECT_NEAR(points[v][1].asDouble(), rectangle[v][1] * kUnit + 4.0 * f, 1e-9);
    }
    EXPECT_EQ(still["curve"]["keys"][f]["data"]["spline_key"]["points"]["elements"], Points(rectangle, 604));
  }
}

TEST(TextPlanesWide, APixelAspectOfTwoStretchesTheNullInX) {
  const std::string dir = qae_test::MakeTempDir("text_planes_wide");
  const std::string project = dir + "/wide.json";
  std::ofstream(project) << R"({"format": "aehost-project", "version": 1, "path": "/projects/wide.aep",
    "comps": [{"id": 1, "name": "Wide", "width": 720, "height": 480, "pixelAspect": 2, "frameRate": 25,
      "duration": 0.2, "layers": [{"id": 2, "name": "T", "type": "text", "threeD": true,
        "text": {"document": {"text": "I", "font": "DejaVuSans", "fontSize": 64}}}]}]})";
  const Json::Value scene = qae_test::ExportSceneJson(project, "Wide", dir + "/wide.ory", {"--text", "planes"});
  Json::Value layer;
  for (const Json::Value& node : scene["objects"][0]["children"])
    if (node["name"].asString() == "T") layer = node;
  EXPECT_EQ(qae_test::SceneParam(layer, 905)["vector"], qae_test::ParseJson("[2.0, 1.0, 1.0]"));
  std::filesystem::remove_all(dir);
}

// ---------------------------------------------------------------- aehost outlines

TEST(TextOutlines, PrintsEachCharacterAsThePlugInReceivesIt) {
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"outlines", kExample, "--comp", "Outlines", "--layer", "Spaced", "--frame", "0"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  // "I I" at (100, 600): the first I's corners are 100 + 201/32 = 106.28125 and
  // 600 - 1493/32 = 553.34375; the second starts (604 + 651)/32 = 39.21875 further right.
  const std::string first = "    (106.28125, 553.34375) in (106.28125, 553.34375) out (106.28125, 553.34375)\n";
  const std::string expected = "character 0 \"I\": 1 contour\n  contour 0: closed, 4 vertices\n" + first +
                               "    (112.59375, 553.34375) in (112.59375, 553.34375) out (112.59375, 553.34375)\n"
                               "    (112.59375, 600) in (112.59375, 600) out (112.59375, 600)\n"
                               "    (106.28125, 600) in (106.28125, 600) out (106.28125, 600)\n"
                               "character 1 \" \": 0 contours\n"
                               "character 2 \"I\": 1 contour\n  contour 0: closed, 4 vertices\n"
                               "    (145.5, 553.34375) in (145.5, 553.34375) out (145.5, 553.34375)\n";
  EXPECT_EQ(result.out.substr(0, expected.size()), expected);
}

TEST(TextOutlines, ALayerWithoutTextIsBadInput) {
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"outlines", kExample, "--comp", "Titles", "--layer", "Ground", "--frame", "0"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "aehost: layer \"Ground\" of composition \"Titles\" is no text layer\n");
}

}  // namespace
