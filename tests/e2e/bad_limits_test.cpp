// End to end: projects, frames and scenes at the limits of what the host, the export and the
// engine can carry. Long parent and precomposition chains read and evaluate in a time linear
// in their length (a hang would show as the test's timeout), an export past the walk's bounds
// ends at once with a message naming the bound and the layer or composition, numbers the
// host's 32-bit times cannot carry are refused with their place, a project saved after ids
// ran to the top reads back, and every failed import says why: a writer holding the file
// (tests/e2e/import_lock_test.cpp), a damaged file (bad_input_test.cpp), caches past the
// engine's limits, a rate or length no composition has, a number that is not finite.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "quillon/format/ory_format.h"
#include "quillon/model/object.h"
#include "tests/support/json_text.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::RunCommand;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kBadInput = 2;

class BadLimits : public testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("bad_limits"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  std::string Write(const std::string& name, const Json::Value& value) {
    const std::string path = dir_ + "/" + name;
    qae_test::WriteFile(path, Json::writeString(Json::StreamWriterBuilder(), value));
    return path;
  }

  std::string dir_;
};

using qae_test::Triple;

Json::Value Project() {
  Json::Value top = qae_test::ProjectTop("/projects/limits.aep");
  top["footage"].append(qae_test::SolidFootage(1, "Solid", 10, 10, Triple(1, 1, 1)));
  return top;
}

Json::Value Comp(int id, const std::string& name) { return qae_test::Composition(id, name, 64, 48, 25, 1); }

// "Chain": layer L<i> hangs under L<i-1>; 2D layers with the default transform, small in
// memory at any length.
Json::Value BareParentChain(int length) {
  Json::Value top = Project();
  Json::Value comp = Comp(2, "Chain");
  for (int i = 0; i < length; ++i) {
    Json::Value layer;
    layer["id"] = 10 + i;
    layer["name"] = "L" + std::to_string(i);
    layer["source"] = 1;
    if (i > 0) layer["parent"] = 10 + i - 1;
    comp["layers"].append(layer);
  }
  top["comps"].append(comp);
  return top;
}

// The same chain in 3D, each layer anchored at its origin and 1, 2, 3 from its parent.
Json::Value ParentChain(int length) {
  Json::Value top = BareParentChain(length);
  for (Json::Value& layer : top["comps"][0]["layers"]) {
    layer["threeD"] = true;
    layer["transform"]["anchorPoint"] = Triple(0, 0, 0);
    layer["transform"]["position"] = Triple(1, 2, 3);
  }
  return top;
}

// Composition C<i> uses C<i+1> through `uses` 3D layers; the last uses the solid.
Json::Value PrecompChain(int length, int uses) {
  Json::Value top = Project();
  for (int i = 0; i < length; ++i) {
    Json::Value comp = Comp(100 + i, "C" + std::to_string(i));
    for (int u = 0; u < uses; ++u) {
      Json::Value layer;
      layer["id"] = 100000 + i * uses + u;
      layer["source"] = i + 1 < length ? 100 + i + 1 : 1;
      layer["threeD"] = true;
      comp["layers"].append(layer);
    }
    top["comps"].append(comp);
  }
  return top;
}

TEST_F(BadLimits, TheLayerAtTheFootOfAHundredThousandParentsIsPlacedByAllOfThem) {
  const std::string project = Write("chain.json", BareParentChain(100000));
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"xform", project, "--comp", "Chain", "--layer", "L99999", "--frame", "0"});
  ASSERT_EQ(result.exitCode, kDone) << result.err;
  const Json::Value out = qae_test::ParseJson(result.out);
  // A new layer stands at the middle of the 64 x 48 composition, anchored at the middle of its
  // 10 x 10 solid: every layer of the chain moves by (32 - 5, 24 - 5) and turns nothing.
  EXPECT_DOUBLE_EQ(out["matrix"][3][0].asDouble(), 2700000.0);
  EXPECT_DOUBLE_EQ(out["matrix"][3][1].asDouble(), 1900000.0);
  EXPECT_DOUBLE_EQ(out["matrix"][3][2].asDouble(), 0.0);
  EXPECT_DOUBLE_EQ(out["matrix"][0][0].asDouble(), 1.0);
}

struct ExportCase {
  const char* name;
  Json::Value (*project)();
  const char* comp;
  const char* message;
};

void PrintTo(const ExportCase& c, std::ostream* out) { *out << c.name; }

class ExportBounds : public BadLimits, public testing::WithParamInterface<ExportCase> {};

TEST_P(ExportBounds, AnExportPastABoundEndsAtOnceAndNamesIt) {
  const ExportCase& c = GetParam();
  const std::string project = Write("project.json", c.project());
  const std::string target = dir_ + "/out.ory";
  const auto result = RunCommand(qae_test::AehostPath(), {"export", project, "--comp", c.comp, "--output", target});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
  EXPECT_FALSE(qae_test::FileExists(target));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExportBounds,
    testing::Values(
        ExportCase{"ParentChain", [] { return ParentChain(10000); }, "Chain",
                   "Export failed, layer \"L257\" has more than 256 parents above it; the export follows at most 256."},
        ExportCase{"PrecompChain", [] { return PrecompChain(10000, 1); }, "C0",
                   "Export failed, composition \"C257\" lies 257 precompositions deep; the export follows at most "
                   "256."},
        // 2^40 uses of the innermost solid in an 8 KB description.
        ExportCase{"EachCompositionUsesTheNextTwice", [] { return PrecompChain(40, 2); }, "C0",
                   "Export failed, the composition uses more than 100000 layers, counting the layers of a "
                   "precomposition again at each use."}));

TEST_F(BadLimits, AChainWithinTheWalksBoundsButDeeperThanASceneFileHoldsSaysNoFileWasWritten) {
  const std::string project = Write("project.json", ParentChain(230));
  const std::string target = dir_ + "/out.ory";
  const auto result = RunCommand(qae_test::AehostPath(), {"export", project, "--comp", "Chain", "--output", target});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find("the export wrote no scene file to " + target), std::string::npos) << result.err;
  EXPECT_FALSE(qae_test::FileExists(target));
}

struct FrameCase {
  const char* frame;
  int exitCode;
};

void PrintTo(const FrameCase& c, std::ostream* out) { *out << c.frame; }

class XformFrames : public BadLimits, public testing::WithParamInterface<FrameCase> {};

TEST_P(XformFrames, OnlyAFrameTheHostsTimeCarriesIsTakenAndTheOutputIsJson) {
  const std::string project = Write("chain.json", ParentChain(2));
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"xform", project, "--comp", "Chain", "--layer", "L1", "--frame", GetParam().frame});
  EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.err;
  if (GetParam().exitCode == kDone) {
    const Json::Value out = qae_test::ParseJson(result.out);
    EXPECT_DOUBLE_EQ(out["matrix"][3][2].asDouble(), 6.0);
  } else {
    EXPECT_NE(result.err.find("--frame " + std::string(GetParam().frame == std::string("1e8") ? "1e+08" : GetParam().frame) +
                              " is not a frame the host's time carries: give a finite frame between -21474836 "
                              "and 21474836"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(result.out, "");
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, XformFrames,
                         testing::Values(FrameCase{"nan", kBadInput}, FrameCase{"inf", kBadInput},
                                         FrameCase{"-inf", kBadInput}, FrameCase{"1e8", kBadInput},
                                         FrameCase{"21474836", kDone}, FrameCase{"-21474836", kDone}));

TEST_F(BadLimits, AMatrixThatOverflowsIsAnErrorNotJsonWithoutAForm) {
  Json::Value top = ParentChain(2);
  top["comps"][0]["layers"][0]["transform"]["position"] = Triple(1e308, 0, 0);
  top["comps"][0]["layers"][1]["transform"]["position"] = Triple(1e308, 0, 0);
  const std::string project = Write("huge.json", top);
  const auto result =
      RunCommand(qae_test::AehostPath(), {"xform", project, "--comp", "Chain", "--layer", "L1", "--frame", "0"});
  EXPECT_EQ(result.exitCode, kFailed) << result.err;
  EXPECT_NE(result.err.find("the matrix of layer \"L1\" at frame 0 is not finite"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");
}

TEST_F(BadLimits, APixelAspectTheHostCannotCarryIsRefusedWithItsPlace) {
  Json::Value top = ParentChain(1);
  top["comps"][0]["pixelAspect"] = 1e13;
  const std::string project = Write("aspect.json", top);
  const auto result = RunCommand(qae_test::AehostPath(),
                                 {"export", project, "--comp", "Chain", "--output", dir_ + "/out.ory"});
  EXPECT_EQ(result.exitCode, kBadInput) << result.err;
  EXPECT_NE(result.err.find("comps[0].pixelAspect: must lie between 0.01 and 100"), std::string::npos) << result.err;
}

TEST_F(BadLimits, AProjectWhoseIdsRanToTheTopReadsBackAfterAnImport) {
  Json::Value top = ParentChain(1);
  top["comps"][0]["id"] = 1 << 30;
  top["comps"][0]["layers"][0]["id"] = 1 << 30;
  const std::string project = Write("high.json", top);
  const std::string scene = dir_ + "/keys.ory";
  const auto built = RunCommand(qae_test::OrytoolPath(),
                                {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json", "--output", scene});
  ASSERT_EQ(built.exitCode, kDone) << built.err;
  const std::string saved = dir_ + "/saved.json";
  const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--project", project, "--output", saved});
  ASSERT_EQ(imported.exitCode, kDone) << imported.err;
  // The saved project is read again by a second import into it.
  const auto again =
      RunCommand(qae_test::AehostPath(), {"import", scene, "--project", saved, "--output", dir_ + "/again.json"});
  EXPECT_EQ(again.exitCode, kDone) << again.err;
  EXPECT_NE(imported.out.find("imported " + scene + ": folder"), std::string::npos) << imported.out;
}

// Scenes: the example of generators with its objects replaced.
Json::Value SceneWith(const Json::Value& objects) {
  Json::Value scene =
      qae_test::ParseJson(qae_test::ReadFile(std::string(QAE_EXAMPLES_DIR) + "/scenes/import_generators.json"));
  scene["objects"] = objects;
  return scene;
}

Json::Value SceneObject(const char* type, const char* name) {
  Json::Value object;
  object["type"] = type;
  object["name"] = name;
  return object;
}

Json::Value Param(const char* id, const char* kind, const Json::Value& value) {
  Json::Value param;
  param["id"] = id;
  param[kind] = value;
  return param;
}

Json::Value DuplicatorScene(int count) {
  Json::Value duplicator = SceneObject("ObjectType_Duplicator", "Copies");
  duplicator["params"].append(Param("DuplicatorParam_Count", "int32", count));
  duplicator["children"].append(SceneObject("ObjectType_Null", "Copy"));
  Json::Value objects(Json::arrayValue);
  objects.append(duplicator);
  return SceneWith(objects);
}

// A group with three instances of itself: each copy would hold three more.
Json::Value SelfInstanceScene() {
  Json::Value group = SceneObject("ObjectType_Null", "Group");
  group["ref"] = "group";
  for (const char* name : {"A", "B", "C"}) {
    Json::Value instance = SceneObject("ObjectType_Instance", name);
    instance["params"].append(Param("InstanceParam_Reference", "link", "group"));
    group["children"].append(instance);
  }
  Json::Value objects(Json::arrayValue);
  objects.append(group);
  return SceneWith(objects);
}

// Two nulls each 1e308 from its parent, the inner one made a layer: its place overflows.
Json::Value FarScene() {
  Json::Value far = SceneObject("ObjectType_Null", "Far");
  far["params"].append(Param("ObjectParam_Position", "vector", Triple(1e308, 0, 0)));
  Json::Value farther = SceneObject("ObjectType_Null", "Farther");
  farther["params"].append(Param("ObjectParam_Position", "vector", Triple(1e308, 0, 0)));
  Json::Value tag;
  tag["type"] = "TagType_Compositing";
  tag["params"].append(Param("CompositingTagParam_Solid", "int32", 0));
  farther["tags"].append(tag);
  far["children"].append(farther);
  Json::Value objects(Json::arrayValue);
  objects.append(far);
  return SceneWith(objects);
}

// The keys example at `fps`, to frame `lastFrame`.
Json::Value TimingScene(int fps, double lastFrame) {
  Json::Value scene =
      qae_test::ParseJson(qae_test::ReadFile(std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json"));
  for (Json::Value& param : scene["document"]["params"]) {
    if (param["id"] == "DocParam_Fps") param["int32"] = fps;
    if (param["id"] == "DocParam_MaxTime") param["time"] = Triple(lastFrame, fps, 0), param["time"].resize(2);
  }
  for (Json::Value& param : scene["render_settings"][0]["params"])
    if (param["id"] == "RenderParam_FrameRate") param["float"] = fps;
  return scene;
}

// The keys example with one of its render settings changed.
Json::Value RenderScene(const char* id, double value) {
  Json::Value scene =
      qae_test::ParseJson(qae_test::ReadFile(std::string(QAE_EXAMPLES_DIR) + "/scenes/import_keys.json"));
  for (Json::Value& param : scene["render_settings"][0]["params"])
    if (param["id"] == id) param["float"] = value;
  return scene;
}

class SceneLimits : public BadLimits {
 protected:
  std::string Build(const std::string& name, const Json::Value& scene) {
    const std::string path = dir_ + "/" + name + ".ory";
    const auto built = RunCommand(qae_test::OrytoolPath(), {"build", Write(name + ".json", scene), "--output", path});
    EXPECT_EQ(built.exitCode, kDone) << built.err;
    return path;
  }

  qae_test::CommandResult Import(const std::string& scene) {
    return RunCommand(qae_test::AehostPath(), {"import", scene, "--output", Output()});
  }

  std::string Output() const { return dir_ + "/imported.json"; }
};

struct RefusedScene {
  const char* name;
  Json::Value (*scene)();
  int importExit;
  const char* reason;  // after "FILE: "
  bool validates;      // orytool validate calls the file valid
};

void PrintTo(const RefusedScene& c, std::ostream* out) { *out << c.name; }

class RefusedScenes : public SceneLimits, public testing::WithParamInterface<RefusedScene> {};

TEST_P(RefusedScenes, TheImportFailsWithTheReasonAndSavesNothing) {
  const RefusedScene& c = GetParam();
  const std::string scene = Build(c.name, c.scene());
  const auto imported = Import(scene);
  EXPECT_EQ(imported.exitCode, c.importExit) << imported.err;
  EXPECT_NE(imported.err.find("failed to import " + scene + " (error 2): " + scene + ": " + c.reason),
            std::string::npos)
      << imported.err;
  EXPECT_FALSE(qae_test::FileExists(Output()));
  const auto validated = RunCommand(qae_test::OrytoolPath(), {"validate", scene});
  if (c.validates) {
    EXPECT_EQ(validated.exitCode, kDone) << validated.err;
  } else {
    EXPECT_EQ(validated.exitCode, kBadInput);
    EXPECT_NE(validated.err.find(scene + ": " + c.reason), std::string::npos) << validated.err;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RefusedScenes,
    testing::Values(
        RefusedScene{"DuplicatorOfAllCopies", [] { return DuplicatorScene(2147483647); }, kBadInput,
                     "object \"Copies\": a duplicator makes 0 to 10000 copies, not 2147483647", false},
        RefusedScene{"InstancesOfTheirOwnParent", SelfInstanceScene, kBadInput,
                     "object \"A\": an instance of object \"Group\", which holds the instance itself, directly or "
                     "through other instances",
                     false},
        // Ten million seconds at 25 frames a second; a million frames a second.
        RefusedScene{"TooLong", [] { return TimingScene(25, 250e6); }, kFailed,
                     "the scene is 1e+07 seconds long; a composition is at most 10800 seconds (three hours) long",
                     true},
        RefusedScene{"TooFast", [] { return TimingScene(1000000, 19e6); }, kFailed,
                     "the scene runs at 1e+06 frames a second; a composition runs at 0.01 to 1000 frames a second",
                     true},
        // Past 32 bits, which the importer stops short of, and within them, which the host refuses.
        RefusedScene{"AspectPast32Bits", [] { return RenderScene("RenderParam_PixelAspect", 1e13); }, kFailed,
                     "the scene's pixel aspect is 1e+13; a composition's is 0.01 to 100", true},
        RefusedScene{"AspectTheHostRefuses", [] { return RenderScene("RenderParam_PixelAspect", 500); }, kFailed,
                     "the scene's pixel aspect is 500; a composition's is 0.01 to 100", true},
        RefusedScene{"TooWide", [] { return RenderScene("RenderParam_Width", 1e12); }, kFailed,
                     "the scene renders 1e+12 x 720 pixels; a composition is 1 to 30000 pixels wide and high",
                     true}));

TEST_F(SceneLimits, ADuplicatorAtItsLimitImports) {
  const auto imported = Import(Build("copies", DuplicatorScene(10000)));
  EXPECT_EQ(imported.exitCode, kDone) << imported.err;
}

// A scene that holds a NaN cannot come from a description; it is written through the engine.
TEST_F(SceneLimits, ANumberThatIsNotFiniteIsNamedWithItsObjectAndParameter) {
  const std::string built = Build("nan", DuplicatorScene(1));
  quillon::Document document;
  std::string error;
  ASSERT_TRUE(quillon::format::ReadDocument(built, document, &error)) << error;
  quillon::Object* copies = quillon::AsObject(document.objects->firstChild);
  ASSERT_NE(copies, nullptr);
  quillon::SetPositionOf(*copies, {0.0, std::nan(""), 0.0});
  const std::string scene = dir_ + "/nan_written.ory";
  ASSERT_TRUE(quillon::format::WriteDocument(document, scene, &error)) << error;

  const auto imported = Import(scene);
  EXPECT_EQ(imported.exitCode, kBadInput) << imported.err;
  EXPECT_NE(imported.err.find(scene + ": object \"Copies\": position holds nan"), std::string::npos) << imported.err;
  EXPECT_FALSE(qae_test::FileExists(Output()));
  const auto validated = RunCommand(qae_test::OrytoolPath(), {"validate", scene});
  EXPECT_EQ(validated.exitCode, kBadInput);
  EXPECT_NE(validated.err.find("object \"Copies\": position holds nan"), std::string::npos) << validated.err;
}

// Finite numbers whose sum is not: the host refuses the value, names the layer and the stream,
// and the project is not saved without it.
TEST_F(SceneLimits, APlaceThatOverflowsIsRefusedByTheHostAndNothingIsSaved) {
  const auto imported = Import(Build("far", FarScene()));
  EXPECT_EQ(imported.exitCode, kFailed) << imported.err;
  EXPECT_NE(imported.err.find("the value of Position of layer \"Farther\" is not finite (inf)"), std::string::npos)
      << imported.err;
  EXPECT_NE(imported.err.find("with calls the host refused; the project is not saved"), std::string::npos)
      << imported.err;
  EXPECT_FALSE(qae_test::FileExists(Output()));
}

}  // namespace
