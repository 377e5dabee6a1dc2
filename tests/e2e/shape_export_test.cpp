// Shape layers end to end on examples/shapes.json, against values worked out by hand:
// - stacking: a shape layer at depth 0 without position keys moves what follows it 100.5
//   away from the viewer before its own object is made; the six shape layers of "Shapes" put
//   the precomposition's null at 6 x 100.5 + 0.5 = 603.5 and the solid below at 604;
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

namespace {

using qae_test::RunCommand;

const std::string kExample = std::string(QAE_EXAMPLES_DIR) + "/shapes.json";

// The depth of the object of that name right under the export root.
double DepthOf(const Json::Value& scene, const std::string& name) {
  for (const Json::Value& node : scene["objects"][0]["children"]) {
    if (node["name"].asString() != name) continue;
    for (const Json::Value& param : node["params"])
      if (param["id"].asInt() == 903) return param["vector"][2].asDouble();
  }
  ADD_FAILURE() << "no object " << name;
  return 0.0;
}

TEST(ShapeExport, EveryShapeLayerTakesItsStackingStep) {
  const std::string dir = qae_test::MakeTempDir("shape_export");
  const auto exported = RunCommand(qae_test::AehostPath(),
                                   {"export", kExample, "--comp", "Shapes", "--output", dir + "/shapes.ory"});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;
  const auto dumped = RunCommand(qae_test::OrytoolPath(), {"dump", "--json", dir + "/shapes.ory"});
  ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
  const Json::Value scene = qae_test::ParseJson(dumped.out);
  EXPECT_EQ(DepthOf(scene, "Inset"), 603.5);
  EXPECT_EQ(DepthOf(scene, "Ground"), 604.0);
  std::filesystem::remove_all(dir);
}

// ---------------------------------------------------------------- the query scripts

const std::vector<CompStackEntry> kShapes(1);

// Layers of "Shapes" by their zero-based index, as the exporter fills them in.
enum LayerIndex { Box = 0, Morph = 1, Pulse = 2, Star = 3, Gradient = 4, Outline = 5, Ground = 7 };

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
