// End to end: examples/text.json goes through `aehost export --text live`, and the scene's
// JSON dump is compared with values worked out by hand from the project description:
//
// - each 3D text layer is a null named like the layer; below it a fill is "L-Extrude" with
//   "L-Text", a stroke "L-Sweep" with "L-TextOutline" and the text, and with both the sweep
//   holds an instance named "L-Text" of the extrusion's text. Each child goes in first among
//   its siblings, so the later one stands first;
// - depths: with stroke width w the offset is o = w x 0.6666666865348816 + 0.5 (two thirds in
//   single precision); under the fill the extrusion moves by -o and the sweep by +o, over it
//   the sweep by -0.5. The outline's width is w x 0.6666666865348816;
// - the text object: the source text at 0 s, the font size as a whole number (36.5 is 36),
//   tracking x 0.075 in single precision (25 gives 1.8750001192092896, -50 gives
//   -3.750000238418579), alignment 0 left, 1 centre and full, 2 right, the character scales
//   on its own scale;
// - the font description from the DejaVu fonts' own tables: family (name id 1), weight
//   (OS/2 usWeightClass), italic (fsSelection bit 0, clear in all of them), character set 0
//   (ulCodePageRange1 bit 0, Latin 1), then the PostScript name twice; a font that is not
//   installed has only the PostScript name twice;
// - stacking: every layer at depth 0 without position keys adds half a pixel before its
//   object is made, so the text layers stand at 0.5, 1.0, ... in timeline order; "Unknown"
//   at z 100 adds nothing but is moved by the 2.0 before it; the solid below all the text
//   stands at 3.5. Inside the precomposition the count starts again.
#include <gtest/gtest.h>
#include <json/json.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"
#include "tests/support/scene_export.h"

namespace {

using qae_test::RunCommand;

const std::string kExample = std::string(QAE_EXAMPLES_DIR) + "/text.json";

// Two thirds in single precision, as the scene format fixes it.
constexpr double kTwoThirds = 0.6666666865348816;

// The scene of the example, exported once for all tests.
class TextExport : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = qae_test::MakeTempDir("text_export");
    scene_ = qae_test::ExportSceneJson(kExample, "Titles", dir_ + "/text.ory", {"--text", "live"});
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(dir_); }

  // The export root: the null of the composition.
  static const Json::Value& Root() { return scene_["objects"][0]; }

  static std::string dir_;
  static Json::Value scene_;
};

std::string TextExport::dir_;
Json::Value TextExport::scene_;

std::string TypeAndName(const Json::Value& node) { return node["type"].asString() + " " + node["name"].asString(); }

std::vector<std::string> ChildrenOf(const Json::Value& node) {
  std::vector<std::string> children;
  for (const Json::Value& child : node["children"]) children.push_back(TypeAndName(child));
  return children;
}

// The child of that type and name; a null value when there is none.
const Json::Value& Child(const Json::Value& node, const std::string& typeAndName) {
  static const Json::Value none;
  for (const Json::Value& child : node["children"])
    if (TypeAndName(child) == typeAndName) return child;
  ADD_FAILURE() << "no child " << typeAndName << " of " << TypeAndName(node);
  return none;
}

const Json::Value& Param(const Json::Value& node, int id) { return qae_test::SceneParam(node, id); }

double Z(const Json::Value& node) { return Param(node, 903)["vector"][2].asDouble(); }

const Json::Value& Material(const Json::Value& scene, const std::string& name) {
  static const Json::Value none;
  for (const Json::Value& material : scene["materials"])
    if (material["name"].asString() == name) return material;
  ADD_FAILURE() << "no material " << name;
  return none;
}

// The name of the material a node's texture tag links.
std::string TaggedMaterial(const Json::Value& scene, const Json::Value& node) {
  for (const Json::Value& tag : node["tags"]) {
    if (tag["type"].asString() != "TagType_Texture") continue;
    const std::string ref = Param(tag, 1010)["link"].asString();
    for (const Json::Value& material : scene["materials"])
      if (material["ref"].asString() == ref) return material["name"].asString();
  }
  return "";
}

// ---------------------------------------------------------------- the tree

struct TreeCase {
  const char* layer;
  std::vector<std::string> children;       // of the layer's null
  std::vector<std::string> extrude;        // children of L-Extrude, if there is one
  std::vector<std::string> sweep;          // children of L-Sweep, if there is one
};

class TextTrees : public TextExport, public ::testing::WithParamInterface<TreeCase> {};

TEST_P(TextTrees, FollowFillAndStroke) {
  const TreeCase& c = GetParam();
  const std::string l = c.layer;
  const Json::Value& holder = Child(Root(), "ObjectType_Null " + l);
  ASSERT_EQ(ChildrenOf(holder), c.children);
  if (!c.extrude.empty()) {
    EXPECT_EQ(ChildrenOf(Child(holder, "ObjectType_Extrude " + l + "-Extrude")), c.extrude);
  }
  if (!c.sweep.empty()) {
    EXPECT_EQ(ChildrenOf(Child(holder, "ObjectType_Sweep " + l + "-Sweep")), c.sweep);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Layers, TextTrees,
    ::testing::Values(
        TreeCase{"Filled", {"ObjectType_Extrude Filled-Extrude"}, {"ObjectType_Text Filled-Text"}, {}},
        TreeCase{"Stroked",
                 {"ObjectType_Sweep Stroked-Sweep"},
                 {},
                 {"ObjectType_Text Stroked-Text", "ObjectType_TextOutline Stroked-TextOutline"}},
        TreeCase{"Over",
                 {"ObjectType_Sweep Over-Sweep", "ObjectType_Extrude Over-Extrude"},
                 {"ObjectType_Text Over-Text"},
                 {"ObjectType_TextOutline Over-TextOutline", "ObjectType_Instance Over-Text"}},
        TreeCase{"Under",
                 {"ObjectType_Sweep Under-Sweep", "ObjectType_Extrude Under-Extrude"},
                 {"ObjectType_Text Under-Text"},
                 {"ObjectType_TextOutline Under-TextOutline", "ObjectType_Instance Under-Text"}},
        TreeCase{"Unknown", {"ObjectType_Extrude Unknown-Extrude"}, {"ObjectType_Text Unknown-Text"}, {}},
        TreeCase{"Bare", {}, {}, {}}),
    [](const ::testing::TestParamInfo<TreeCase>& info) { return std::string(info.param.layer); });

TEST_F(TextExport, TheInstanceShowsTheTextOfTheExtrusion) {
  for (const std::string l : {"Over", "Under"}) {
    const Json::Value& holder = Child(Root(), "ObjectType_Null " + l);
    const Json::Value& text = Child(Child(holder, "ObjectType_Extrude " + l + "-Extrude"), "ObjectType_Text " + l + "-Text");
    const Json::Value& instance =
        Child(Child(holder, "ObjectType_Sweep " + l + "-Sweep"), "ObjectType_Instance " + l + "-Text");
    EXPECT_EQ(Param(instance, 1001)["link"].asString(), text["ref"].asString()) << l;
  }
}

TEST_F(TextExport, The2dTextLayerIsLeftOutAndTheCaptionOfThePrecompositionIsNot) {
  for (const std::string& child : ChildrenOf(Root())) EXPECT_EQ(child.find("Flat"), std::string::npos) << child;
  // The caption is the second layer of the composition used by the eighth layer: its scripts
  // address it as comp.layer(8).source.layer(2), and only then does it read as filled text.
  const Json::Value& caption = Child(Child(Root(), "ObjectType_Null Inner"), "ObjectType_Null Caption");
  const Json::Value& text = Child(Child(caption, "ObjectType_Extrude Caption-Extrude"), "ObjectType_Text Caption-Text");
  EXPECT_EQ(Param(text, 2111)["string"].asString(), "Lower third");
  EXPECT_EQ(Param(text, 2115)["float"].asDouble(), 24.0);
}

// ---------------------------------------------------------------- the text objects

struct TextCase {
  const char* layer;
  bool underExtrude;  // else under the sweep
  const char* text;
  double size;
  double tracking;
  int alignment;
  double scaleX, scaleY;
};

class TextObjects : public TextExport, public ::testing::WithParamInterface<TextCase> {};

TEST_P(TextObjects, CarryTheTextDocument) {
  const TextCase& c = GetParam();
  const std::string l = c.layer;
  const Json::Value& holder = Child(Root(), "ObjectType_Null " + l);
  const Json::Value& parent = c.underExtrude ? Child(holder, "ObjectType_Extrude " + l + "-Extrude")
                                             : Child(holder, "ObjectType_Sweep " + l + "-Sweep");
  const Json::Value& text = Child(parent, "ObjectType_Text " + l + "-Text");
  EXPECT_EQ(Param(text, 2111)["string"].asString(), c.text);
  EXPECT_EQ(Param(text, 2115)["float"].asDouble(), c.size);
  EXPECT_EQ(Param(text, 2113)["float"].asDouble(), c.tracking);
  EXPECT_EQ(Param(text, 2112)["int32"].asInt(), c.alignment);
  EXPECT_EQ(Param(text, 905)["vector"][0].asDouble(), c.scaleX);
  EXPECT_EQ(Param(text, 905)["vector"][1].asDouble(), c.scaleY);
  EXPECT_EQ(Param(text, 1001)["int32"].asInt(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Layers, TextObjects,
    ::testing::Values(
        // The source text holds "Hello" from 0 s and "World" from 1 s: the export reads 0 s.
        TextCase{"Filled", true, "Hello", 48, 1.8750001192092896, 1, 1.5, 0.75},
        TextCase{"Stroked", false, "Outline", 30, -3.750000238418579, 2, 1, 1},
        TextCase{"Over", true, "Over", 24, 0, 0, 1, 1},
        TextCase{"Under", true, "Under", 36, 0, 1, 1, 1},  // 36.5 loses its fraction; full justification centres
        TextCase{"Unknown", true, "Missing font", 20, 0, 2, 1, 1}),
    [](const ::testing::TestParamInfo<TextCase>& info) { return std::string(info.param.layer); });

// ---------------------------------------------------------------- depths and outlines

TEST_F(TextExport, StrokeAndFillLieApartInDepth) {
  const Json::Value& under = Child(Root(), "ObjectType_Null Under");
  const double o3 = 3 * kTwoThirds + 0.5;  // 2.5000000596046448
  EXPECT_EQ(Z(Child(under, "ObjectType_Extrude Under-Extrude")), -o3);
  const Json::Value& underSweep = Child(under, "ObjectType_Sweep Under-Sweep");
  EXPECT_EQ(Z(underSweep), o3);
  EXPECT_EQ(Param(Child(underSweep, "ObjectType_TextOutline Under-TextOutline"), 2012)["float"].asDouble(),
            2.0000000596046448);
  EXPECT_EQ(Param(underSweep, 1008)["int32"].asInt(), 0);

  const Json::Value& over = Child(Root(), "ObjectType_Null Over");
  EXPECT_TRUE(Param(Child(over, "ObjectType_Extrude Over-Extrude"), 903).isNull());  // the fill does not move
  const Json::Value& overSweep = Child(over, "ObjectType_Sweep Over-Sweep");
  EXPECT_EQ(Z(overSweep), -0.5);
  EXPECT_EQ(Param(Child(overSweep, "ObjectType_TextOutline Over-TextOutline"), 2012)["float"].asDouble(),
            2 * kTwoThirds);

  const Json::Value& strokedSweep = Child(Child(Root(), "ObjectType_Null Stroked"), "ObjectType_Sweep Stroked-Sweep");
  EXPECT_EQ(Z(strokedSweep), 1.5 * kTwoThirds + 0.5);  // 1.5000000298023224
  EXPECT_EQ(Param(Child(strokedSweep, "ObjectType_TextOutline Stroked-TextOutline"), 2012)["float"].asDouble(),
            1.0000000298023224);
}

// The instance's global matrix is set to (the text's global matrix) x inverse(the sweep's)
// while the layer's null still stands at its world place (1280 x 720: x 640, y -360). With
// only translations the instance then lies at text - sweep, which under the sweep is
// text - 2 x sweep.
TEST_F(TextExport, TheInstanceIsPlacedFromTheGlobalMatricesAtItsMaking) {
  const double o3 = 3 * kTwoThirds + 0.5;
  // Under: null at z 2, text at 2 - o, sweep at 2 + o.
  const Json::Value& under = Child(Child(Root(), "ObjectType_Null Under"), "ObjectType_Sweep Under-Sweep");
  const Json::Value& position = Param(Child(under, "ObjectType_Instance Under-Text"), 903)["vector"];
  EXPECT_EQ(position[0].asDouble(), -640.0);
  EXPECT_EQ(position[1].asDouble(), 360.0);
  EXPECT_DOUBLE_EQ(position[2].asDouble(), (2.0 - o3) - 2 * (2.0 + o3));
  // Over: null at z 1.5, text there, sweep at 1.0.
  const Json::Value& over = Child(Child(Root(), "ObjectType_Null Over"), "ObjectType_Sweep Over-Sweep");
  EXPECT_EQ(Param(Child(over, "ObjectType_Instance Over-Text"), 903)["vector"][2].asDouble(), 1.5 - 2 * 1.0);
}

TEST_F(TextExport, TextLayersStackLikeSolids) {
  const std::vector<std::pair<std::string, double>> depths = {
      {"ObjectType_Null Filled", 0.5}, {"ObjectType_Null Stroked", 1.0}, {"ObjectType_Null Over", 1.5},
      {"ObjectType_Null Under", 2.0},  {"ObjectType_Null Unknown", 102.0}, {"ObjectType_Null Bare", 2.5},
      {"ObjectType_Null Inner", 3.0},  {"ObjectType_Plane Ground", 3.5}};
  for (const auto& [node, z] : depths) EXPECT_EQ(Z(Child(Root(), node)), z) << node;
  // Inside the precomposition: the backing at 0.5 and the caption at 1.0, relative to its null.
  const Json::Value& inner = Child(Root(), "ObjectType_Null Inner");
  EXPECT_EQ(Z(Child(inner, "ObjectType_Plane Backing")), 0.5 - 3.0);
  EXPECT_EQ(Z(Child(inner, "ObjectType_Null Caption")), 1.0 - 3.0);
}

// ---------------------------------------------------------------- materials and fonts

TEST_F(TextExport, EachColourHasAMaterialOfItsOwn) {
  const std::vector<std::pair<std::string, std::vector<double>>> colours = {
      {"Filled-Extrude", {1, 0.5, 0.25}}, {"Stroked-Sweep", {0, 0.25, 1}}, {"Over-Extrude", {1, 1, 1}},
      {"Over-Sweep", {1, 0, 0}},          {"Under-Extrude", {0, 1, 0}},    {"Under-Sweep", {0, 0, 0}},
      {"Unknown-Extrude", {1, 1, 1}}};
  for (const auto& [object, rgb] : colours) {
    const Json::Value& colour = Param(Material(scene_, object + "-Material0"), 2100)["vector"];
    for (Json::ArrayIndex i = 0; i < 3; ++i) EXPECT_EQ(colour[i].asDouble(), rgb[i]) << object;
    const std::string layer = object.substr(0, object.find('-'));
    const std::string type = object.find("Sweep") != std::string::npos ? "ObjectType_Sweep " : "ObjectType_Extrude ";
    EXPECT_EQ(TaggedMaterial(scene_, Child(Child(Root(), "ObjectType_Null " + layer), type + object)),
              object + "-Material0");
  }
}

struct FontCase {
  const char* layer;
  bool underExtrude;
  std::vector<std::pair<int, std::string>> entries;  // id and value as text
};

class FontDescriptions : public TextExport, public ::testing::WithParamInterface<FontCase> {};

std::string EntryText(const Json::Value& entry) {
  return entry.isMember("string") ? entry["string"].asString() : std::to_string(entry["int32"].asInt());
}

TEST_P(FontDescriptions, ComeFromTheFontsOwnTables) {
  const FontCase& c = GetParam();
  const std::string l = c.layer;
  const Json::Value& holder = Child(Root(), "ObjectType_Null " + l);
  const Json::Value& parent = c.underExtrude ? Child(holder, "ObjectType_Extrude " + l + "-Extrude")
                                             : Child(holder, "ObjectType_Sweep " + l + "-Sweep");
  const Json::Value& font = Param(Child(parent, "ObjectType_Text " + l + "-Text"), 2117)["font"];
  std::vector<std::pair<int, std::string>> entries;
  for (const Json::Value& entry : font) entries.emplace_back(entry["id"].asInt(), EntryText(entry));
  EXPECT_EQ(entries, c.entries);
}

INSTANTIATE_TEST_SUITE_P(
    Layers, FontDescriptions,
    ::testing::Values(
        FontCase{"Filled", true,
                 {{500, "DejaVu Sans"}, {502, "400"}, {503, "0"}, {504, "0"}, {508, "DejaVuSans"}, {509, "DejaVuSans"}}},
        FontCase{"Stroked", false,
                 {{500, "DejaVu Serif"}, {502, "700"}, {503, "0"}, {504, "0"}, {508, "DejaVuSerif-Bold"},
                  {509, "DejaVuSerif-Bold"}}},
        FontCase{"Over", true,
                 {{500, "DejaVu Sans Mono"}, {502, "400"}, {503, "0"}, {504, "0"}, {508, "DejaVuSansMono"},
                  {509, "DejaVuSansMono"}}},
        FontCase{"Under", true,
                 {{500, "DejaVu Sans"}, {502, "700"}, {503, "0"}, {504, "0"}, {508, "DejaVuSans-Bold"},
                  {509, "DejaVuSans-Bold"}}},
        FontCase{"Unknown", true, {{508, "QuillonMissing-Regular"}, {509, "QuillonMissing-Regular"}}}),
    [](const ::testing::TestParamInfo<FontCase>& info) { return std::string(info.param.layer); });

// A precomposition used by two layers: the second visit finds the text objects of the first
// and sets their values again, but does not move them in depth a second time nor add a
// second instance. The stroke is 1 pixel wide: o = 0.6666666865348816 + 0.5.
TEST(TextInAPrecompositionUsedTwice, ExistsOnce) {
  const std::string dir = qae_test::MakeTempDir("text_twice");
  qae_test::WriteFile(dir + "/twice.json", R"({"format": "aehost-project", "version": 1, "path": "/projects/twice.aep",
    "comps": [
      {"id": 1, "name": "Inner", "width": 640, "height": 360, "frameRate": 25, "duration": 1, "layers": [
        {"id": 11, "name": "T", "type": "text", "threeD": true,
         "text": {"document": {"text": "x", "applyStroke": true}}}]},
      {"id": 2, "name": "Outer", "width": 640, "height": 360, "frameRate": 25, "duration": 1, "layers": [
        {"id": 21, "name": "A", "source": 1, "threeD": true},
        {"id": 22, "name": "B", "source": 1, "threeD": true}]}]})");
  const auto exported = RunCommand(qae_test::AehostPath(), {"export", dir + "/twice.json", "--comp", "Outer",
                                                            "--output", dir + "/twice.ory", "--text", "live"});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;
  const Json::Value scene =
      qae_test::ParseJson(RunCommand(qae_test::OrytoolPath(), {"dump", "--json", dir + "/twice.ory"}).out);
  // The inner objects hang under the null of the layer that linked them last.
  const Json::Value& text = Child(Child(scene["objects"][0], "ObjectType_Null B"), "ObjectType_Null T");
  ASSERT_EQ(ChildrenOf(text), (std::vector<std::string>{"ObjectType_Sweep T-Sweep", "ObjectType_Extrude T-Extrude"}));
  const Json::Value& sweep = Child(text, "ObjectType_Sweep T-Sweep");
  EXPECT_EQ(ChildrenOf(sweep),
            (std::vector<std::string>{"ObjectType_TextOutline T-TextOutline", "ObjectType_Instance T-Text"}));
  EXPECT_EQ(Z(sweep), kTwoThirds + 0.5);
  EXPECT_EQ(Z(Child(text, "ObjectType_Extrude T-Extrude")), -(kTwoThirds + 0.5));
  std::filesystem::remove_all(dir);
}

// ---------------------------------------------------------------- eval

// The template the exporter sends for the font size, as a user would save it to a file.
constexpr const char* kFontSizeQuery =
    "function getLayerData(layerId) {\n"
    "  var comp = app.project.activeItem;\n"
    "  var layerItem = comp.layer(layerId+1);\n"
    "  if (layerItem instanceof TextLayer)\n"
    "  {\n"
    "    return layerItem.property(\"ADBE Text Properties\").property(\"ADBE Text Document\").value.fontSize;\n"
    "  }\n"
    "}\n"
    "getLayerData(%d);";

struct EvalCase {
  const char* name;
  const char* script;
  std::vector<std::string> options;
  int exitCode;
  std::string out;  // standard output, or a piece of standard error when the run fails
};

class Eval : public ::testing::TestWithParam<EvalCase> {};

TEST_P(Eval, PrintsTheReplyTheBridgeGets) {
  const EvalCase& c = GetParam();
  const std::string dir = qae_test::MakeTempDir("text_eval");
  const std::string script = dir + "/query.jsx";
  qae_test::WriteFile(script, c.script);
  std::vector<std::string> args = {"eval", kExample, "--script", script};
  args.insert(args.end(), c.options.begin(), c.options.end());
  const auto run = RunCommand(qae_test::AehostPath(), args);
  EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
  if (c.exitCode == 0) {
    EXPECT_EQ(run.out, c.out);
  } else {
    EXPECT_NE(run.err.find(c.out), std::string::npos) << run.err;
  }
  std::filesystem::remove_all(dir);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Eval,
    ::testing::Values(
        EvalCase{"FractionalSize", kFontSizeQuery, {"--comp", "Titles", "--layer-index", "3"}, 0, "36.5\n"},
        EvalCase{"FirstLayer", kFontSizeQuery, {"--comp", "Titles"}, 0, "48\n"},
        // The eighth layer is the precomposition, no text layer: the function returns nothing.
        EvalCase{"NoTextLayer", kFontSizeQuery, {"--comp", "Titles", "--layer-index", "7"}, 0, "undefined\n"},
        EvalCase{"Colour", "app.project.activeItem.layer(%d + 1).text.sourceText.value.fillColor;",
                 {"--comp", "Titles"}, 0, "1,0.5,0.25\n"},
        EvalCase{"Key", "app.project.activeItem.layer(1).text.sourceText.valueAtTime(1, false).text;",
                 {"--comp", "Titles"}, 0, "World\n"},
        EvalCase{"UnknownComposition", kFontSizeQuery, {"--comp", "Nowhere"}, 2,
                 "the project has no composition named \"Nowhere\""},
        EvalCase{"NegativeIndex", kFontSizeQuery, {"--comp", "Titles", "--layer-index", "-1"}, 2, "--layer-index"},
        EvalCase{"FailingScript", "throw new Error(\"no reply\");", {"--comp", "Titles"}, 1,
                 "failed: Error: no reply"}),
    [](const ::testing::TestParamInfo<EvalCase>& info) { return std::string(info.param.name); });

TEST(EvalInput, AMissingScriptFileIsBadInput) {
  const auto run = RunCommand(qae_test::AehostPath(),
                              {"eval", kExample, "--comp", "Titles", "--script", "/nonexistent/query.jsx"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("/nonexistent/query.jsx"), std::string::npos) << run.err;
}

}  // namespace
