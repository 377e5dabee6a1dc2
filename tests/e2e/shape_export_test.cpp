// Shape layers end to end on examples/shapes.json, against values worked out by hand:
// - every drawn item of a layer is an extrude "L-i" holding a spline "L-i-Spline" at depth
//   0.5 x i, with extrude parameters 2000 and 2001 at 1 and the spline closed; the points are
//   the host's contours with y negated, a tangent is (handle - point) / K with K the single-
//   precision 4/3 (1.3333333730697632); the parametric shapes are built as
//   aehost/model/shape_contours.h writes down (ellipse handles 0.5519150244935106 x radius);
// - a form that changes between frames 30 and 31 only gets two point level keys, which say
//   nothing two equal key values would not, so the track goes and the spline keeps the form
//   of frame 30; one that changes at 30/31 and back at 40/41 keeps its four keys;
// - every item has a material "L-i-Materiali" of its colour (2100) and alpha (2900 as three
//   equal values); a keyed colour adds tracks "Color.R", "Color.G", "Color.B", "Color.A" that
//   keep what changes, from frame 15 to frame 30 here;
// - stacking: a shape layer at depth 0 without position keys moves what follows it 100.5
//   away from the viewer before its own object is made; the seven shape layers of "Shapes" put
//   the precomposition's null at 7 x 100.5 + 0.5 = 704 and the solid below at 704.5;
// - the query scripts the exporter sends (built by the plug-in's own template builders) give,
//   through aehost eval, the replies read off the example's property tree by hand.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <string>
#include <vector>

#include "plugin/exporter/text_shape/shape_queries.h"
#include "tests/support/json_text.h"
#include "tests/support/run_command.h"
#include "tests/support/scene_export.h"

namespace {

using qae_test::RunCommand;

const std::string kExample = std::string(QAE_EXAMPLES_DIR) + "/shapes.json";

// The host's handle factor of a quarter circle, and the scene's factor between handles and tangents.
constexpr double kArc = 0.5519150244935106;
constexpr double kK = 1.3333333730697632;

class ShapeExport : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = qae_test::MakeTempDir("shape_export");
    scene_ = qae_test::ExportSceneJson(kExample, "Shapes", dir_ + "/shapes.ory", {});
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(dir_); }

  static const Json::Value& Root() { return scene_["objects"][0]; }

  static std::string dir_;
  static Json::Value scene_;
};

std::string ShapeExport::dir_;
Json::Value ShapeExport::scene_;

const Json::Value& Child(const Json::Value& node, const std::string& name) {
  static const Json::Value none;
  for (const Json::Value& child : node["children"])
    if (child["name"].asString() == name) return child;
  ADD_FAILURE() << "no child " << name << " of " << node["name"].asString();
  return none;
}

std::vector<std::string> ChildNames(const Json::Value& node) {
  std::vector<std::string> names;
  for (const Json::Value& child : node["children"]) names.push_back(child["type"].asString() + " " + child["name"].asString());
  return names;
}

const Json::Value& Param(const Json::Value& node, int id) {
  static const Json::Value none;
  for (const Json::Value& param : node["params"])
    if (param["id"].asInt() == id) return param;
  return none;
}

double Z(const Json::Value& node) { return Param(node, 903)["vector"][2].asDouble(); }

const Json::Value& Tag(const Json::Value& node, const std::string& type) {
  static const Json::Value none;
  for (const Json::Value& tag : node["tags"])
    if (tag["type"].asString() == type) return tag;
  return none;
}

const Json::Value& Material(const Json::Value& scene, const std::string& name) {
  static const Json::Value none;
  for (const Json::Value& material : scene["materials"])
    if (material["name"].asString() == name) return material;
  ADD_FAILURE() << "no material " << name;
  return none;
}

std::vector<double> Numbers(const Json::Value& array) {
  std::vector<double> numbers;
  for (const Json::Value& n : array) numbers.push_back(n.asDouble());
  return numbers;
}

// Points and tangents of a spline's own arrays, as rows of numbers.
std::vector<std::vector<double>> Elements(const Json::Value& spline, const std::string& tag) {
  std::vector<std::vector<double>> rows;
  for (const Json::Value& row : Tag(spline, tag)["elements"]) rows.push_back(Numbers(row));
  return rows;
}

TEST_F(ShapeExport, EachItemIsAnExtrudeWithItsSplineUnderTheLayersNull) {
  const Json::Value& box = Child(Root(), "Box");
  EXPECT_EQ(ChildNames(box), (std::vector<std::string>{"ObjectType_Extrude Box-1", "ObjectType_Extrude Box-0"}));
  for (const char* item : {"Box-0", "Box-1"}) {
    const Json::Value& extrude = Child(box, item);
    EXPECT_EQ(Param(extrude, 2000)["int32"].asInt(), 1);
    EXPECT_EQ(Param(extrude, 2001)["int32"].asInt(), 1);
    EXPECT_EQ(ChildNames(extrude), (std::vector<std::string>{"ObjectType_Spline " + std::string(item) + "-Spline"}));
    EXPECT_TRUE(Param(Child(extrude, std::string(item) + "-Spline"), 1002)["bool"].asBool());
  }
  EXPECT_EQ(Z(Child(Child(box, "Box-0"), "Box-0-Spline")), 0.0);
  EXPECT_EQ(Z(Child(Child(box, "Box-1"), "Box-1-Spline")), 0.5);
  // The shape layer inside the precomposition stands under the precomposition's null.
  EXPECT_EQ(ChildNames(Child(Child(Root(), "Inset"), "Dot")), (std::vector<std::string>{"ObjectType_Extrude Dot-0"}));
}

TEST_F(ShapeExport, TheFillHasTheRectangleAndTheStrokeBothContours) {
  const Json::Value& box = Child(Root(), "Box");
  // The rectangle of 200 x 100 about the group's position (10, 20), from the top right, y negated.
  const Json::Value& fill = Child(Child(box, "Box-0"), "Box-0-Spline");
  EXPECT_EQ(Elements(fill, "TagType_Points"),
            (std::vector<std::vector<double>>{{110, 30, 0}, {110, -70, 0}, {-90, -70, 0}, {-90, 30, 0}}));
  EXPECT_EQ(Elements(fill, "TagType_Segments"), (std::vector<std::vector<double>>{{4, 1}}));
  // The stroke: the rectangle, then the ellipse of 80 x 40 about (10, 20) from its top.
  const Json::Value& stroke = Child(Child(box, "Box-1"), "Box-1-Spline");
  const auto points = Elements(stroke, "TagType_Points");
  ASSERT_EQ(points.size(), 8u);
  EXPECT_EQ(points[4], (std::vector<double>{10, 0, 0}));
  EXPECT_EQ(points[5], (std::vector<double>{50, -20, 0}));
  EXPECT_EQ(points[6], (std::vector<double>{10, -40, 0}));
  EXPECT_EQ(points[7], (std::vector<double>{-30, -20, 0}));
  const auto tangents = Elements(stroke, "TagType_Tangents");
  const double h = 40 * kArc / kK, v = 20 * kArc / kK;
  EXPECT_NEAR(tangents[4][0], -h, 1e-12);
  EXPECT_NEAR(tangents[4][3], h, 1e-12);
  // At the right side the out handle points down the screen: up in the scene.
  EXPECT_NEAR(tangents[5][4], -v, 1e-12);
  EXPECT_EQ(Elements(stroke, "TagType_Segments"), (std::vector<std::vector<double>>{{4, 1}, {4, 1}}));
}

TEST_F(ShapeExport, AStarAndARoundedRectangleAsTheHostBuildsThem) {
  const auto star = Elements(Child(Child(Child(Root(), "Star"), "Star-0"), "Star-0-Spline"), "TagType_Points");
  ASSERT_EQ(star.size(), 10u);
  // The top outer point, by cosine and sine of -90 degrees.
  EXPECT_NEAR(star[0][0], 0, 1e-12);
  EXPECT_EQ(star[0][1], 100);
  // Inner point 5: straight below the centre at radius 50.
  EXPECT_NEAR(star[5][0], 0, 1e-12);
  EXPECT_NEAR(star[5][1], -50, 1e-12);
  // The fill under the stroke of a 40 x 20 rectangle with corners of radius 5: eight points
  // from the right side 5 below the top.
  const auto rounded = Elements(Child(Child(Child(Root(), "Outline"), "Outline-0"), "Outline-0-Spline"),
                                "TagType_Points");
  ASSERT_EQ(rounded.size(), 8u);
  EXPECT_EQ(rounded[0], (std::vector<double>{20, 5, 0}));
  EXPECT_EQ(rounded[7], (std::vector<double>{15, 10, 0}));
}

TEST_F(ShapeExport, AFormThatChangesOnceKeepsTheFormOfTheFirstFrame) {
  const Json::Value& spline = Child(Child(Child(Root(), "Morph"), "Morph-0"), "Morph-0-Spline");
  EXPECT_FALSE(spline.isMember("tracks"));
  EXPECT_EQ(Elements(spline, "TagType_Points"), (std::vector<std::vector<double>>{{0, 0, 0}, {100, 0, 0}, {100, -100, 0}}));
  const auto tangents = Elements(spline, "TagType_Tangents");
  EXPECT_EQ(tangents[0][3], 40 / kK);
}

TEST_F(ShapeExport, AFormThatChangesAndReturnsHasPointLevelKeysBesideEachChange) {
  const Json::Value& spline = Child(Child(Child(Root(), "Wave"), "Wave-0"), "Wave-0-Spline");
  ASSERT_EQ(spline["tracks"].size(), 1u);
  const Json::Value& track = spline["tracks"][0];
  EXPECT_EQ(track["name"].asString(), "Shape Curve");
  EXPECT_EQ(track["kind"].asInt(), 100004812);
  std::vector<std::vector<double>> times, thirdPoints;
  for (const Json::Value& key : track["curve"]["keys"]) {
    times.push_back(Numbers(key["time"]));
    thirdPoints.push_back(Numbers(key["data"]["spline_key"]["points"]["elements"][2]));
    EXPECT_EQ(Param(key, 10001)["float"].asDouble(), 0.2);
    EXPECT_EQ(Param(key, 10002)["int32"].asInt(), 0);
  }
  // Frames 30, 31, 40, 41 at 30 fps, as reduced fractions of seconds.
  EXPECT_EQ(times, (std::vector<std::vector<double>>{{1, 1}, {31, 30}, {4, 3}, {41, 30}}));
  EXPECT_EQ(thirdPoints,
            (std::vector<std::vector<double>>{{100, -100, 0}, {50, -100, 0}, {50, -100, 0}, {100, -100, 0}}));
}

TEST_F(ShapeExport, EveryItemHasAMaterialOfItsColour) {
  struct Expected {
    const char* material;
    std::vector<double> colour;
    double alpha;
  };
  for (const Expected& e : {Expected{"Box-0-Material0", {1, 0, 0}, 1}, Expected{"Box-1-Material1", {0, 0, 1}, 1},
                            Expected{"Gradient-0-Material0", {0, 1, 1}, 0.5},
                            Expected{"Outline-0-Material0", {1, 1, 1}, 1}, Expected{"Outline-1-Material1", {0, 0, 0}, 1},
                            Expected{"Star-0-Material0", {1, 0.5, 0}, 1}, Expected{"Dot-0-Material0", {1, 1, 0}, 1}}) {
    SCOPED_TRACE(e.material);
    const Json::Value& material = Material(scene_, e.material);
    EXPECT_EQ(Numbers(Param(material, 2100)["vector"]), e.colour);
    EXPECT_EQ(Numbers(Param(material, 2900)["vector"]), (std::vector<double>{e.alpha, e.alpha, e.alpha}));
    EXPECT_FALSE(material.isMember("tracks"));
  }
}

TEST_F(ShapeExport, AKeyedColourKeepsTheTracksThatChange) {
  const Json::Value& material = Material(scene_, "Pulse-0-Material0");
  EXPECT_EQ(Numbers(Param(material, 2100)["vector"]), (std::vector<double>{1, 0, 0}));
  std::vector<std::string> names;
  for (const Json::Value& track : material["tracks"]) {
    names.push_back(track["name"].asString());
    const Json::Value& keys = track["curve"]["keys"];
    // From frame 15 (half a second) to frame 30, a key on every frame between.
    EXPECT_EQ(keys.size(), 16u);
    EXPECT_EQ(Numbers(keys[0]["time"]), (std::vector<double>{1, 2}));
    EXPECT_EQ(Numbers(keys[keys.size() - 1]["time"]), (std::vector<double>{1, 1}));
  }
  // Green stays 0 throughout: its track says nothing and goes.
  EXPECT_EQ(names, (std::vector<std::string>{"Color.R", "Color.B", "Color.A"}));
  EXPECT_EQ(material["tracks"][2]["curve"]["keys"][15]["value"].asDouble(), 0.5);
  EXPECT_EQ(material["tracks"][2]["path"], qae_test::ParseJson("[[2900, 19], [1000, 19]]"));
}

TEST_F(ShapeExport, EveryShapeLayerTakesItsStackingStep) {
  EXPECT_EQ(Z(Child(Root(), "Box")), 100.5);
  EXPECT_EQ(Z(Child(Root(), "Morph")), 201.0);
  EXPECT_EQ(Z(Child(Root(), "Inset")), 704.0);
  EXPECT_EQ(Z(Child(Root(), "Ground")), 704.5);
}

// ---------------------------------------------------------------- the query scripts

const std::vector<CompStackEntry> kShapes(1);

// Layers of "Shapes" by their zero-based index, as the exporter fills them in.
enum LayerIndex { Box = 0, Morph = 1, Pulse = 2, Star = 3, Gradient = 4, Outline = 5, Ground = 8 };

ShapeStyleEntry Colour(int32_t shapeNumber, bool gradient = false) {
  ShapeStyleEntry entry;
  entry.shapeNumber = shapeNumber;
  entry.isGradient = gradient;
  return entry;
}

struct QueryCase {
  const char* name;
  std::string script;
  int layerIndex;
  std::string reply;
};

class ShapeQuery : public ::testing::TestWithParam<QueryCase> {};

TEST_P(ShapeQuery, GivesTheReplyOfTheExamplesTree) {
  const QueryCase& c = GetParam();
  const std::string dir = qae_test::MakeTempDir("shape_query");
  const std::string script = dir + "/query.jsx";
  qae_test::WriteFile(script, c.script);
  const auto run = RunCommand(qae_test::AehostPath(), {"eval", kExample, "--comp", "Shapes", "--script", script,
                                                       "--layer-index", std::to_string(c.layerIndex)});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, c.reply + "\n");
  std::filesystem::remove_all(dir);
}

INSTANTIATE_TEST_SUITE_P(
    Example, ShapeQuery,
    ::testing::Values(
        QueryCase{"GroupCount", BuildRootVectorsQuery("numProperties", kShapes), Box, "1"},
        QueryCase{"TopLevelItemsCount", BuildRootVectorsQuery("numProperties", kShapes), Star, "2"},
        QueryCase{"NoShapeLayer", BuildRootVectorsQuery("numProperties", kShapes), Ground, "0"},
        QueryCase{"GroupName", BuildGroupQuery(0, "name", kShapes), Box, "Group 1"},
        QueryCase{"ItemList", BuildGroupItemList(0, kShapes), Box,
                  "X:Rectangle Path 1 - Fill 1 - Ellipse Path 1 - Stroke 1 - "},
        QueryCase{"FillColour", BuildGroupAttributeQuery("Fill", "Fill Color", "value", 0, kShapes), Box, "1,0,0,1"},
        QueryCase{"StrokeWithoutKeys", BuildGroupAttributeQuery("Stroke", "Stroke Color", "numKeys", 0, kShapes), Box,
                  "0"},
        QueryCase{"KeyedFill", BuildGroupAttributeQuery("Fill", "Fill Color", "numKeys", 0, kShapes), Pulse, "2"},
        QueryCase{"KeyedFillTime", BuildGroupAttributeQuery("Fill", "Fill Color", "keyTime(2).toString()", 0, kShapes),
                  Pulse, "1"},
        QueryCase{"KeyedFillVaries", BuildGroupAttributeQuery("Fill", "Fill Color", "isTimeVarying", 0, kShapes), Pulse,
                  "true"},
        QueryCase{"KeyedFillLater", BuildGroupAttributeQuery("Fill", "Fill Color", "valueAtTime(1,false)", 0, kShapes),
                  Pulse, "0,0,1,0.5"},
        QueryCase{"PathClosed", BuildGroupPathQuery("value.closed", 0, kShapes), Morph, "true"},
        QueryCase{"PathKeys", BuildGroupPathQuery("numKeys", 0, kShapes), Morph, "2"},
        QueryCase{"PathKeyTime", BuildGroupPathQuery("keyTime(2).toString()", 0, kShapes), Morph, "1.0333333333333334"},
        QueryCase{"PathVaries", BuildGroupPathQuery("isTimeVarying", 0, kShapes), Morph, "true"},
        QueryCase{"NoFreePath", BuildGroupPathQuery("numKeys", 0, kShapes), Box, ""},
        QueryCase{"InventoryFillAndStroke", BuildShapeStyleInventory(0, kShapes), Box,
                  "Col-Over-Fill-\tFill 1\tGroup 1\nCol-Over-Stroke-\tStroke 1\tGroup 1\n"},
        QueryCase{"InventoryOnAPath", BuildShapeStyleInventory(0, kShapes), Morph, "Bezier-Col-Over-Fill-\tFill 1\tGroup 1\n"},
        QueryCase{"InventoryAnimated", BuildShapeStyleInventory(0, kShapes), Pulse, "Col-Anim-Over-Fill-\tFill 1\tGroup 1\n"},
        QueryCase{"InventoryGradient", BuildShapeStyleInventory(0, kShapes), Gradient,
                  "Grad-Over-Fill-\tGradient Fill 1\tGroup 1\n"},
        QueryCase{"InventoryUnder", BuildShapeStyleInventory(0, kShapes), Outline,
                  "Col-Under-Fill-\tFill 1\tGroup 1\nCol-Over-Stroke-\tStroke 1\tGroup 1\n"},
        QueryCase{"InventoryNoGroup", BuildShapeStyleInventory(0, kShapes), Star, ""},
        QueryCase{"SecondColour", BuildShapeColourQuery(Colour(1), "value", kShapes), Outline, "0,0,0,1"},
        // A count of 0 compares equal to "" in the script language, so the walk takes it for
        // nothing found and the reply is empty: the reader's "no reply" gives 0 all the same.
        QueryCase{"FirstColourKeys", BuildShapeColourQuery(Colour(0), "numKeys", kShapes), Outline, ""},
        QueryCase{"KeyedColourKeys", BuildShapeColourQuery(Colour(0), "numKeys", kShapes), Pulse, "2"},
        QueryCase{"ColourKeyTime", BuildShapeColourQuery(Colour(0), "keyTime(1).toString()", kShapes), Pulse, "0.5"},
        QueryCase{"GradientKeys", BuildShapeColourQuery(Colour(0, true), "numKeys", kShapes), Gradient, ""},
        QueryCase{"MaskOfNoTextLayer", BuildMaskQuery(0, "numKeys", kShapes), Box, ""}),
    [](const ::testing::TestParamInfo<QueryCase>& info) { return std::string(info.param.name); });

}  // namespace
