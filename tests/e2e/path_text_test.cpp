// End to end: the composition "Path Text" of examples/text.json goes through
// `aehost export --text live`, and the scene's JSON dump is compared with values worked out by
// hand from the project description:
//
// - a text that runs along a mask gets "L-Path", the mask as a spline, under its null (made
//   after the extrusion, so standing first) and "L-Deformer" under "L-Text";
// - the spline's points are the mask's vertices with y negated; the host counts one point more
//   than segments, so a closed mask of four vertices gives five points, the last the first
//   again, and an open one of two vertices two. Mask tangents stand as the host gives them,
//   relative to their vertex, y negated. Parameter 1002 and the segment's flag are the closed
//   flag;
// - the deformer links the spline (1001), has 1012 = 1 and 1009 = pi/2, and its offset 1004
//   is First Margin / path length: 100 on the closed 100 x 100 square (400 round) is 0.25;
//   a keyed margin of 0 at 0 s and 50 at 1 s on the quarter circle of radius 100 drawn with
//   the ellipse handles (157.08561799038796 long, by Simpson's rule apart from this code)
//   becomes the track "Deformer Offset" with 0 and 50 / 157.08561799038796;
// - a mask whose shape has keys at 0 s and 1 s (a square of 100 growing to 200 from the
//   corner (100, 100)) gets a "Shape Curve" track: a key at each frame from the first key to
//   the last (25 fps: frames 0 to 25), none after, each holding the square of that frame
//   (frame 12: side 100 + 100 x 12 / 25 = 148), tension 0.2 in single precision, mode 0;
// - source text with keys at 0 s, 0.5 s and 1 s gives the text object a track "Text" with one
//   key each, holding "One", "Two" and "Three".
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"
#include "tests/support/scene_export.h"

namespace {

using qae_test::SceneParam;
using qae_test::SceneTag;
using qae_test::SceneTrack;

const std::string kExample = std::string(QAE_EXAMPLES_DIR) + "/text.json";
constexpr double kQuarterCircle = 157.08561799038796;
constexpr double kHandle = 55.19150244935106;

class PathText : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = qae_test::MakeTempDir("path_text");
    scene_ = qae_test::ExportSceneJson(kExample, "Path Text", dir_ + "/p.ory", {"--text", "live"});
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(dir_); }

  // The first node of that name below the export root, depth first; a null value if none.
  static const Json::Value& Node(const std::string& name) {
    static const Json::Value none;
    const Json::Value* found = Find(scene_["objects"][0], name);
    if (!found) ADD_FAILURE() << "no node " << name;
    return found ? *found : none;
  }

  static std::string dir_;
  static Json::Value scene_;

 private:
  static const Json::Value* Find(const Json::Value& node, const std::string& name) {
    if (node["name"].asString() == name) return &node;
    for (const Json::Value& child : node["children"])
      if (const Json::Value* found = Find(child, name)) return found;
    return nullptr;
  }
};

std::string PathText::dir_;
Json::Value PathText::scene_;

std::vector<std::string> ChildNames(const Json::Value& node) {
  std::vector<std::string> names;
  for (const Json::Value& child : node["children"]) names.push_back(child["name"].asString());
  return names;
}

using Rows = std::vector<std::vector<double>>;

Rows RowsOf(const Json::Value& elements) {
  Rows rows;
  for (const Json::Value& element : elements) {
    std::vector<double> row;
    for (const Json::Value& number : element) row.push_back(number.asDouble());
    rows.push_back(row);
  }
  return rows;
}

// A closed square from (100, 100) with side `side`, y negated, the first corner again at the end.
Rows SquarePoints(double side) {
  const double far = 100 + side;
  return {{100, -100, 0}, {far, -100, 0}, {far, -far, 0}, {100, -far, 0}, {100, -100, 0}};
}

double Seconds(const Json::Value& key) { return key["time"][0].asDouble() / key["time"][1].asDouble(); }

void ExpectDeformerBinding(const Json::Value& deformer, const Json::Value& spline) {
  EXPECT_EQ(SceneParam(deformer, 1001)["link"].asString(), spline["ref"].asString());
  EXPECT_EQ(SceneParam(deformer, 1012)["int32"].asInt(), 1);
  EXPECT_EQ(SceneParam(deformer, 1009)["float"].asDouble(), 1.5707963267948966);
}

TEST_F(PathText, ClosedSquareMaskBecomesAClosedSplineOfFivePoints) {
  EXPECT_EQ(ChildNames(Node("Square Path")), (std::vector<std::string>{"Square Path-Path", "Square Path-Extrude"}));
  const Json::Value& spline = Node("Square Path-Path");
  EXPECT_EQ(spline["type"].asString(), "ObjectType_Spline");
  EXPECT_TRUE(SceneParam(spline, 1002)["bool"].asBool());
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Points")["elements"]), SquarePoints(100));
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Tangents")["elements"]), Rows(5, std::vector<double>(6, 0.0)));
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Segments")["elements"]), (Rows{{5, 1}}));
  EXPECT_TRUE(spline["tracks"].empty());
}

TEST_F(PathText, StillMarginIsItsFractionOfThePath) {
  EXPECT_EQ(ChildNames(Node("Square Path-Text")), std::vector<std::string>{"Square Path-Deformer"});
  const Json::Value& deformer = Node("Square Path-Deformer");
  EXPECT_EQ(deformer["type"].asString(), "ObjectType_Deformer");
  EXPECT_EQ(SceneParam(deformer, 1004)["float"].asDouble(), 0.25);
  ExpectDeformerBinding(deformer, Node("Square Path-Path"));
}

TEST_F(PathText, OpenCurvedMaskKeepsItsTangents) {
  const Json::Value& spline = Node("Curve Path-Path");
  EXPECT_FALSE(SceneParam(spline, 1002)["bool"].asBool());
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Points")["elements"]), (Rows{{0, 0, 0}, {100, -100, 0}}));
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Tangents")["elements"]),
            (Rows{{0, 0, 0, kHandle, 0, 0}, {0, kHandle, 0, 0, 0, 0}}));
  EXPECT_EQ(RowsOf(SceneTag(spline, "TagType_Segments")["elements"]), (Rows{{2, 0}}));
}

TEST_F(PathText, KeyedMarginBecomesTheOffsetTrack) {
  const Json::Value& deformer = Node("Curve Path-Deformer");
  EXPECT_TRUE(SceneParam(deformer, 1004).isNull());
  const Json::Value& track = SceneTrack(deformer, "Deformer Offset");
  ASSERT_FALSE(track.isNull());
  EXPECT_EQ(track["path"][0][0].asInt(), 1004);
  const Json::Value& keys = track["curve"]["keys"];
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_EQ(Seconds(keys[0]), 0.0);
  EXPECT_EQ(keys[0]["value"].asDouble(), 0.0);
  EXPECT_EQ(Seconds(keys[1]), 1.0);
  EXPECT_NEAR(keys[1]["value"].asDouble(), 50.0 / kQuarterCircle, 1e-9);
  for (const Json::Value& key : keys) EXPECT_EQ(key["bits"], qae_test::ParseJson("[41, 46]"));
  ExpectDeformerBinding(deformer, Node("Curve Path-Path"));
}

TEST_F(PathText, KeyedMaskShapeGetsPointLevelAnimationWhereItsFormChanges) {
  const Json::Value& spline = Node("Moving Path-Path");
  EXPECT_TRUE(SceneParam(spline, 1002)["bool"].asBool());
  const Json::Value& track = SceneTrack(spline, "Shape Curve");
  ASSERT_FALSE(track.isNull());
  EXPECT_EQ(track["path"][0][0].asInt(), 100004812);
  EXPECT_EQ(track["path"][0][1].asInt(), 100004812);
  const Json::Value& keys = track["curve"]["keys"];
  ASSERT_EQ(keys.size(), 26u);
  for (Json::ArrayIndex frame = 0; frame < keys.size(); ++frame) {
    const Json::Value& key = keys[frame];
    SCOPED_TRACE(frame);
    EXPECT_DOUBLE_EQ(Seconds(key), frame / 25.0);
    EXPECT_EQ(SceneParam(key, 10001)["float"].asDouble(), 0.20000000298023224);
    EXPECT_EQ(SceneParam(key, 10002)["int32"].asInt(), 0);
    const Rows points = RowsOf(key["data"]["spline_key"]["points"]["elements"]);
    const Rows expected = SquarePoints(100 + 100 * frame / 25.0);
    ASSERT_EQ(points.size(), expected.size());
    for (std::size_t i = 0; i < points.size(); ++i)
      for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(points[i][c], expected[i][c], 1e-9);
  }
  EXPECT_EQ(RowsOf(keys[12]["data"]["spline_key"]["points"]["elements"])[2], (std::vector<double>{248, -248, 0}));
  // The offset is read where the composition starts, on the square of 400.
  EXPECT_EQ(SceneParam(Node("Moving Path-Deformer"), 1004)["float"].asDouble(), 0.25);
}

// The readable dump lists a spline's points, tangents and segments under their tags.
TEST_F(PathText, TheDumpListsTheSplinesElements) {
  const auto dumped = qae_test::RunCommand(qae_test::OrytoolPath(), {"dump", dir_ + "/p.ory"});
  ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
  EXPECT_NE(dumped.out.find("      Spline \"Curve Path-Path\""), std::string::npos) << dumped.out;
  EXPECT_NE(dumped.out.find("        tag Points, 2 elements\n"
                            "          0: (0, 0, 0)\n"
                            "          1: (100, -100, 0)\n"
                            "        tag Tangents, 2 elements\n"
                            "          0: left (0, 0, 0), right (55.19150244935106, 0, 0)\n"
                            "          1: left (0, 55.19150244935106, 0), right (0, 0, 0)\n"
                            "        tag Segments, 1 elements\n"
                            "          0: 2 points, open\n"),
            std::string::npos)
      << dumped.out;
  EXPECT_NE(dumped.out.find("1004 DeformerParam_Offset = float 0.25\n"), std::string::npos) << dumped.out;
}

TEST_F(PathText, SourceTextKeysBecomeOneTextKeyEach) {
  const Json::Value& text = Node("Changing-Text");
  const Json::Value& track = SceneTrack(text, "Text");
  ASSERT_FALSE(track.isNull());
  EXPECT_EQ(track["path"], qae_test::ParseJson("[[2111, 130, 5178]]"));
  const Json::Value& keys = track["curve"]["keys"];
  ASSERT_EQ(keys.size(), 3u);
  const std::vector<std::pair<double, std::string>> expected = {{0.0, "One"}, {0.5, "Two"}, {1.0, "Three"}};
  for (Json::ArrayIndex i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(Seconds(keys[i]), expected[i].first);
    EXPECT_EQ(keys[i]["data"]["string"].asString(), expected[i].second);
  }
  // No mask to follow: neither path nor deformer.
  EXPECT_EQ(ChildNames(Node("Changing")), std::vector<std::string>{"Changing-Extrude"});
  EXPECT_TRUE(text["children"].empty());
}

}  // namespace
