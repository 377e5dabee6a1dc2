// End to end: scene descriptions of examples/scenes are built into scene files with orytool,
// imported with `aehost import`, and the saved project is compared with values worked out by
// hand from the import's conventions: the scene's y axis points up and the host's down, so y
// is negated; rotations become degrees; scale 1 is 100 per cent; the parent chain is
// flattened into each layer; the composition's frames count from the document's own rate.
#include <gtest/gtest.h>
#include <json/json.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::ParseJson;
using qae_test::RunCommand;

class ImportScene : public ::testing::Test {
 protected:
  void SetUp() override { dir_ = qae_test::MakeTempDir("import_scene"); }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  // Builds examples/scenes/NAME.json and imports it into an empty project, or as `options` say.
  Json::Value Import(const std::string& name, const std::vector<std::string>& options = {}) {
    const std::string scene = dir_ + "/" + name + ".ory";
    const auto built =
        RunCommand(qae_test::OrytoolPath(), {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/" + name + ".json",
                                             "-o", scene});
    EXPECT_EQ(built.exitCode, 0) << built.err;
    const std::string output = dir_ + "/" + name + ".project.json";
    std::vector<std::string> args{"import", scene, "--output", output};
    args.insert(args.end(), options.begin(), options.end());
    const auto imported = RunCommand(qae_test::AehostPath(), args);
    EXPECT_EQ(imported.exitCode, 0) << imported.err;
    project_ = ParseJson(qae_test::ReadFile(output));
    return project_;
  }

  // Writes a scene description, builds it and imports it into an empty project.
  Json::Value ImportDescription(const std::string& name, const std::string& description) {
    const std::string path = dir_ + "/" + name + ".json";
    qae_test::WriteFile(path, description);
    const std::string scene = dir_ + "/" + name + ".ory";
    const auto built = RunCommand(qae_test::OrytoolPath(), {"build", path, "-o", scene});
    EXPECT_EQ(built.exitCode, 0) << built.err;
    const std::string output = dir_ + "/" + name + ".project.json";
    const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--output", output});
    EXPECT_EQ(imported.exitCode, 0) << imported.err;
    project_ = ParseJson(qae_test::ReadFile(output));
    return project_;
  }

  const Json::Value& Comp() const { return project_["comps"][0]; }

  // A layer by its name, or by the name of its solid for solids and nulls.
  const Json::Value& Layer(const std::string& name) const {
    static const Json::Value none;
    for (const Json::Value& layer : Comp()["layers"]) {
      if (layer["name"].asString() == name) return layer;
      if (!layer.isMember("source")) continue;
      for (const Json::Value& footage : project_["footage"])
        if (footage["id"] == layer["source"] && footage["name"].asString() == name) return layer;
    }
    ADD_FAILURE() << "no layer " << name;
    return none;
  }

  std::string dir_;
  Json::Value project_;
};

void ExpectVector(const Json::Value& value, double x, double y, double z) {
  ASSERT_EQ(value.size(), 3u) << value;
  EXPECT_NEAR(value[0].asDouble(), x, 1e-9);
  EXPECT_NEAR(value[1].asDouble(), y, 1e-9);
  EXPECT_NEAR(value[2].asDouble(), z, 1e-9);
}

// A path the host hands over in UTF-16 may hold characters beyond 16 bits as surrogate pairs;
// each pair is one character of the file's name.
TEST_F(ImportScene, APathWithACharacterBeyondSixteenBitsImports) {
  const std::string scene = dir_ + "/shot\xF0\x9F\x98\x80.ory";  // U+1F600
  const auto built = RunCommand(qae_test::OrytoolPath(),
                                {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_layers.json", "-o", scene});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  const std::string output = dir_ + "/out.json";
  const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--output", output, "--quiet"});
  ASSERT_EQ(imported.exitCode, 0) << imported.err;
  EXPECT_EQ(ParseJson(qae_test::ReadFile(output))["comps"][0]["name"].asString(), "Layers");
}

// The camera a view looks through, and the markers, are handed over whatever became of the
// walk: a document the engine refuses to evaluate fails the import, yet its viewed camera is
// made in the composition (the project is then not saved, so the trace shows it).
TEST_F(ImportScene, TheViewedCameraIsMadeEvenWhenTheWalkFails) {
  const std::string description = dir_ + "/refused.json";
  qae_test::WriteFile(description, R"({
    "document": {"name": "Refused", "params": [{"id": "DocParam_Fps", "int32": 25},
                 {"id": "DocParam_MinTime", "time": [0, 25]}, {"id": "DocParam_MaxTime", "time": [4, 25]}]},
    "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640},
                                    {"id": "RenderParam_Height", "float": 360},
                                    {"id": "RenderParam_PixelAspect", "float": 1.0},
                                    {"id": "RenderParam_FrameRate", "float": 25}]}],
    "objects": [{"type": "ObjectType_Camera", "name": "Cam", "ref": "cam"},
                {"type": "ObjectType_Duplicator", "name": "Copies",
                 "params": [{"id": "DuplicatorParam_Count", "int32": 2147483647}]}],
    "views": [{"scene_camera": "cam", "editor_camera": null}]})");
  const std::string scene = dir_ + "/refused.ory";
  const auto built = RunCommand(qae_test::OrytoolPath(), {"build", description, "-o", scene});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  const auto imported =
      RunCommand(qae_test::AehostPath(), {"import", scene, "--output", dir_ + "/out.json", "--verbose"});
  EXPECT_EQ(imported.exitCode, 2) << imported.err;
  EXPECT_NE(imported.err.find("trace: made camera \"Cam\" in composition \"Refused\"\n"), std::string::npos)
      << imported.err;
}

// When the composition could not be made, the viewed camera has nowhere to go: it is not
// handed to the host, which would refuse a composition that is not there.
TEST_F(ImportScene, WithoutACompositionTheViewedCameraIsNotMade) {
  Json::Value description = ParseJson(qae_test::ReadFile(std::string(QAE_EXAMPLES_DIR) + "/scenes/import_layers.json"));
  for (Json::Value& param : description["render_settings"][0]["params"])
    if (param["id"].asString() == "RenderParam_Width") param["float"] = 1e12;
  const std::string path = dir_ + "/wide.json";
  qae_test::WriteFile(path, Json::writeString(Json::StreamWriterBuilder(), description));
  const std::string scene = dir_ + "/wide.ory";
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(), {"build", path, "-o", scene}).exitCode, 0);
  const auto imported = RunCommand(qae_test::AehostPath(), {"import", scene, "--output", dir_ + "/out.json"});
  EXPECT_EQ(imported.exitCode, 1) << imported.err;
  EXPECT_EQ(imported.err.find("not a composition handle"), std::string::npos) << imported.err;
}

// An import whose engine cannot start fails with the import's code alone: nothing on the
// import's path shows a message.
TEST_F(ImportScene, AnImportWithoutTheEngineFailsWithoutAMessage) {
  const std::string scene = dir_ + "/layers.ory";
  ASSERT_EQ(RunCommand(qae_test::OrytoolPath(),
                       {"build", std::string(QAE_EXAMPLES_DIR) + "/scenes/import_layers.json", "-o", scene})
                .exitCode,
            0);
  const std::string empty = dir_ + "/no-engine";
  std::filesystem::create_directory(empty);
  const std::string transcript = dir_ + "/transcript.txt";
  const auto imported =
      RunCommand(qae_test::AehostPath(), {"import", scene, "--output", dir_ + "/out.json", "--transcript", transcript},
                 {"QUILLON_ENGINE_DIR=" + empty});
  EXPECT_EQ(imported.exitCode, 1) << imported.err;
  EXPECT_NE(imported.err.find("failed to import"), std::string::npos) << imported.err;
  EXPECT_EQ(imported.err.find("must be installed"), std::string::npos) << imported.err;
  EXPECT_EQ(qae_test::ReadFile(transcript), "");
}

// A host call that fails in the key pass ends it, and the batches of keys still open are
// not committed: the layer whose place overflows at frame 1 under its parent's scale gets
// no keys at all, although frame 0 was fine.
TEST_F(ImportScene, AFailedKeyLeavesTheOpenBatchesUncommitted) {
  const std::string description = dir_ + "/runaway.json";
  qae_test::WriteFile(description, R"({
    "document": {"name": "Runaway", "params": [{"id": "DocParam_Fps", "int32": 25},
                 {"id": "DocParam_MinTime", "time": [0, 25]}, {"id": "DocParam_MaxTime", "time": [4, 25]}]},
    "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640},
                                    {"id": "RenderParam_Height", "float": 360},
                                    {"id": "RenderParam_PixelAspect", "float": 1.0},
                                    {"id": "RenderParam_FrameRate", "float": 25}]}],
    "objects": [{"type": "ObjectType_Null", "name": "Big",
                 "params": [{"id": "ObjectParam_Scale", "vector": [10, 10, 10]}],
                 "children": [{"type": "ObjectType_Null", "name": "Runner",
                   "tags": [{"type": "TagType_Compositing", "params": [{"id": "CompositingTagParam_Solid", "int32": 0}]}],
                   "tracks": [{"path": [[903, 23], [1000, 19]],
                               "curve": {"keys": [{"time": [0, 25], "value": 0, "bits": [41]},
                                                  {"time": [1, 25], "value": 1e308, "bits": [41]}]}}]}]}]})");
  const std::string scene = dir_ + "/runaway.ory";
  const auto built = RunCommand(qae_test::OrytoolPath(), {"build", description, "-o", scene});
  ASSERT_EQ(built.exitCode, 0) << built.err;
  const auto imported =
      RunCommand(qae_test::AehostPath(), {"import", scene, "--output", dir_ + "/out.json", "--verbose"});
  EXPECT_EQ(imported.exitCode, 1) << imported.err;
  EXPECT_NE(imported.err.find("the value of Position of layer \"Runner\" is not finite (inf)"), std::string::npos)
      << imported.err;
  EXPECT_EQ(imported.err.find("keys added to"), std::string::npos) << imported.err;
}

TEST_F(ImportScene, DocumentBecomesOneFolderWithOneCompositionOfItsSize) {
  Import("import_layers");
  ASSERT_EQ(project_["comps"].size(), 1u);
  const Json::Value& comp = Comp();
  EXPECT_EQ(comp["name"].asString(), "Layers");
  EXPECT_EQ(comp["width"].asInt(), 1920);  // 1920.5 is truncated
  EXPECT_EQ(comp["height"].asInt(), 1080);
  EXPECT_DOUBLE_EQ(comp["frameRate"].asDouble(), 25.0);
  // Frames 10 to 19 of the document at 25 per second: 10 frames from 0.4 s on.
  EXPECT_DOUBLE_EQ(comp["duration"].asDouble(), 0.4);
  EXPECT_DOUBLE_EQ(comp["displayStart"].asDouble(), 0.4);
  bool folderFound = false;
  for (const Json::Value& folder : project_["folders"])
    folderFound = folderFound || (folder["name"].asString() == "Layers" && folder["id"] == comp["folder"]);
  EXPECT_TRUE(folderFound);
}

TEST_F(ImportScene, OnlyCamerasLightsAndTaggedObjectsBecomeLayers) {
  Import("import_layers");
  // Cam, KV Camera, Card, Rig, Child, Inside, Untagged parent, Key, Bulb; not Aim, Mesh or
  // Not carried.
  EXPECT_EQ(Comp()["layers"].size(), 9u);
  for (const char* name : {"Cam", "KV Camera", "Card", "Rig", "Child", "Inside", "Untagged parent", "Key", "Bulb"})
    Layer(name);
}

TEST_F(ImportScene, SolidAndNullTakeSizeColourAnchorAndFlattenedTransform) {
  Import("import_layers");
  const Json::Value& card = Layer("Card");
  EXPECT_FALSE(card["null"].asBool());
  EXPECT_TRUE(card["threeD"].asBool());
  ExpectVector(card["transform"]["position"], 100, -50, 0);
  ExpectVector(card["transform"]["anchorPoint"], 320, 180, 0);  // anchor 3: the middle of 640 x 360
  ExpectVector(card["transform"]["scale"], 100, 100, 100);
  // A null ignores the tag's width of 500: anchor 5 is the corner of 100 x 100.
  const Json::Value& rig = Layer("Rig");
  EXPECT_TRUE(rig["null"].asBool());
  ExpectVector(rig["transform"]["anchorPoint"], 100, 100, 0);
  ExpectVector(rig["transform"]["position"], 0, -200, 0);
  ExpectVector(rig["transform"]["scale"], 300, 300, 300);
  // The child at x 10 with scale 2 under the rig at y 200 with scale 3: (30, 200) in the
  // scene, 600 per cent; it has no parent of its own.
  const Json::Value& child = Layer("Child");
  ExpectVector(child["transform"]["position"], 30, -200, 0);
  ExpectVector(child["transform"]["scale"], 600, 600, 600);
  EXPECT_FALSE(child.isMember("parent"));
}

TEST_F(ImportScene, SceneLayersSwitchVideoOffAndLock) {
  Import("import_layers");
  EXPECT_FALSE(Layer("Inside").get("video", true).asBool());
  EXPECT_FALSE(Layer("Inside").get("locked", false).asBool());
  EXPECT_TRUE(Layer("Untagged parent").get("locked", false).asBool());
  EXPECT_TRUE(Layer("Untagged parent").get("video", true).asBool());
}

TEST_F(ImportScene, CameraLooksAtItsTargetAndOnlyTheViewedCameraStaysOn) {
  Import("import_layers");
  const Json::Value& cam = Layer("Cam");
  ExpectVector(cam["transform"]["position"], 0, -100, -1000);
  ExpectVector(cam["transform"]["pointOfInterest"], 10, -20, 30);
  EXPECT_FALSE(cam["transform"].isMember("rotationX"));
  EXPECT_TRUE(cam.get("video", true).asBool());
  // zoom = (1920.5 / 2) / tan(0.7854 / 2); film 36 mm = 36 * 72 / 25.4 points;
  // focus 500 * (72 / 25.4) / 2.8346 (single precision).
  EXPECT_NEAR(cam["camera"]["zoom"].asDouble(), 960.25 / std::tan(0.3927), 1e-9);
  EXPECT_NEAR(cam["camera"]["filmSize"].asDouble(), 36.0 * 72.0 / 25.4, 1e-9);
  EXPECT_NEAR(cam["camera"]["focusDistance"].asDouble(), 500.0 * 72.0 / 25.4 / static_cast<double>(2.8346f), 1e-9);
  const Json::Value& kv = Layer("KV Camera");
  EXPECT_FALSE(kv.get("video", true).asBool());
  // Of a vector field of view the first component counts: 1 radian over the 1920.5 width.
  EXPECT_NEAR(kv["camera"]["zoom"].asDouble(), 960.25 / std::tan(0.5), 1e-9);
}

// A camera takes the field of view and film width it holds, or those the engine's camera has
// from its making (a 36 mm lens on 36 mm film): a static focal length says nothing on import.
TEST_F(ImportScene, ACameraWithoutAFieldOfViewTakesTheEnginesLens) {
  ImportDescription("lens", R"({"document": {"name": "Lens", "params": [{"id": "DocParam_Fps", "int32": 25},
      {"id": "DocParam_MinTime", "time": [0, 25]}, {"id": "DocParam_MaxTime", "time": [1, 25]}]},
    "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640}, {"id": "RenderParam_Height", "float": 360},
      {"id": "RenderParam_PixelAspect", "float": 1.0}, {"id": "RenderParam_FrameRate", "float": 25}]}],
    "objects": [{"type": "ObjectType_Camera", "name": "Long",
                 "params": [{"id": "CameraParam_Aperture", "float": 24}, {"id": "CameraParam_FocalLength", "float": 50}]},
                {"type": "ObjectType_Camera", "name": "Bare"}]})");
  // tan(fov / 2) = 18 / 36, so the zoom is (640 / 2) / 0.5.
  const Json::Value& longLens = Layer("Long")["camera"];
  EXPECT_NEAR(longLens["zoom"].asDouble(), 640.0, 1e-9);
  EXPECT_NEAR(longLens["filmSize"].asDouble(), 24.0 * 72.0 / 25.4, 1e-9);
  const Json::Value& bare = Layer("Bare")["camera"];
  EXPECT_NEAR(bare["zoom"].asDouble(), 640.0, 1e-9);
  EXPECT_NEAR(bare["filmSize"].asDouble(), 36.0 * 72.0 / 25.4, 1e-9);
}

TEST_F(ImportScene, LightParametersAreTheHostsOwn) {
  Import("import_layers");
  // KV light kind 2 is a spot; brightness 0.5 is 100; transparency 0.25 is darkness 75;
  // cone 1 radian; inner = 1 - 0.25, feather (1 - 0.75 / 1) * 100.
  const Json::Value& key = Layer("Key")["light"];
  // A spot is also what the host makes a new light: that the kind is set at all shows on the
  // point light below; here only that no other kind replaced the spot.
  EXPECT_EQ(key.get("type", "spot").asString(), "spot");
  EXPECT_DOUBLE_EQ(key["intensity"].asDouble(), 100.0);
  EXPECT_DOUBLE_EQ(key["shadowDarkness"].asDouble(), 75.0);
  EXPECT_DOUBLE_EQ(key["coneAngle"].asDouble(), 57.29577951308232);
  EXPECT_DOUBLE_EQ(key["coneFeather"].asDouble(), 25.0);
  EXPECT_EQ(key["castsShadows"].asInt(), 1);
  // Red, green, blue as the scene has them; the host writes alpha behind them.
  EXPECT_DOUBLE_EQ(key["color"][0].asDouble(), 1.0);
  EXPECT_DOUBLE_EQ(key["color"][1].asDouble(), 1.0);
  EXPECT_DOUBLE_EQ(key["color"][2].asDouble(), 0.5);
  // Standard light kind 0 is a point light; a light without target looks 1000 ahead.
  const Json::Value& bulb = Layer("Bulb");
  EXPECT_EQ(bulb["light"]["type"].asString(), "point");
  EXPECT_DOUBLE_EQ(bulb["light"]["intensity"].asDouble(), 200.0);
  EXPECT_FALSE(bulb["light"].isMember("coneAngle"));
  ExpectVector(bulb["transform"]["pointOfInterest"], 0, 0, 1000);
}

// Scene markers go to the marker stream of the active layer, on the time base that only a
// call through an effect brings. The import flavor's hook has none, so the marker pass ends
// before it makes a marker: neither the selected layer nor the new composition gets one, and
// the import still succeeds with no stream left open.
TEST_F(ImportScene, SceneMarkersReachNoLayerThroughTheImportHook) {
  const std::string project = dir_ + "/edit.json";
  qae_test::WriteFile(project, R"({"format": "aehost-project", "version": 1, "path": "/projects/edit.aep",
    "footage": [{"id": 2, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
    "comps": [{"id": 1, "name": "Edit", "width": 1000, "height": 500, "frameRate": 25, "duration": 2,
               "layers": [{"id": 11, "name": "Dot", "source": 2, "null": true}]}]})");
  for (const bool selected : {true, false}) {
    std::vector<std::string> options{"--project", project, "--comp", "Edit"};
    if (selected) options.insert(options.end(), {"--layer", "Dot"});
    Import("import_layers", options);
    for (const Json::Value& comp : project_["comps"]) {
      EXPECT_FALSE(comp.isMember("markers") && comp["markers"].size() > 0) << comp["name"];
      for (const Json::Value& layer : comp["layers"])
        EXPECT_FALSE(layer.isMember("markers") && layer["markers"].size() > 0) << layer["name"];
    }
  }
}

// Keys of examples/scenes/import_keys.json: 20 frames at 25 per second, one key a frame
// (0.04 s) wherever a sampled value moves.
TEST_F(ImportScene, ALinearMoveThenAHoldGivesAKeyOnEachMovingFrameOnly) {
  Import("import_keys");
  // x goes from 0 at frame 0 to 100 at frame 10 in a straight line, then holds.
  const Json::Value& keys = Layer("Mover")["transform"]["position"]["keys"];
  ASSERT_EQ(keys.size(), 11u);
  for (Json::ArrayIndex i = 0; i < keys.size(); ++i) {
    EXPECT_NEAR(keys[i]["time"].asDouble(), i * 0.04, 1e-9);
    ExpectVector(keys[i]["value"], 10.0 * i, 0, 0);
  }
  // A plain object with animation has a scale key on every frame, and one rotation key.
  EXPECT_EQ(Layer("Mover")["transform"]["scale"]["keys"].size(), 20u);
  EXPECT_EQ(Layer("Mover")["transform"]["rotationZ"]["keys"].size(), 1u);
  EXPECT_EQ(Layer("Mover")["transform"]["rotationX"]["keys"].size(), 1u);
}

TEST_F(ImportScene, AChildOfAnAnimatedParentMovesWithIt) {
  Import("import_keys");
  // The untagged driver rises 10 a frame for 5 frames; the follower has no track of its own.
  const Json::Value& keys = Layer("Follower")["transform"]["position"]["keys"];
  ASSERT_EQ(keys.size(), 6u);
  for (Json::ArrayIndex i = 0; i < keys.size(); ++i) ExpectVector(keys[i]["value"], 0, -10.0 * i, 0);
}

TEST_F(ImportScene, SwitchedOffTracksAndStillSceneLayersGiveNoKeys) {
  Import("import_keys");
  for (const char* name : {"Switched off", "Frozen"}) {
    const Json::Value& transform = Layer(name)["transform"];
    EXPECT_TRUE(transform["position"].isArray()) << name << ": " << transform["position"];
    EXPECT_TRUE(transform["scale"].isArray()) << name;
  }
}

TEST_F(ImportScene, ALightWithOnlyItsColourAnimatedKeysTheRestOnceAtTheStart) {
  Import("import_keys");
  const Json::Value& light = Layer("Flash")["light"];
  // Red falls from 1 to 0 over two frames; the others keep their one key at time 0.
  const Json::Value& colour = light["color"]["keys"];
  ASSERT_EQ(colour.size(), 3u);
  EXPECT_DOUBLE_EQ(colour[1]["value"][0].asDouble(), 0.5);
  EXPECT_DOUBLE_EQ(colour[2]["value"][0].asDouble(), 0.0);
  for (const char* stream : {"intensity", "shadowDarkness", "coneAngle", "coneFeather"})
    EXPECT_EQ(light[stream]["keys"].size(), 1u) << stream;
  EXPECT_DOUBLE_EQ(light["intensity"]["keys"][0]["value"].asDouble(), 200.0);
  EXPECT_DOUBLE_EQ(light["coneFeather"]["keys"][0]["value"].asDouble(), 50.0);  // inner 0.5 of outer 1
}

TEST_F(ImportScene, TheViewsCameraComesAlongWhenTheWalkFoundNone) {
  Import("import_keys");
  // The document's view looks through its editor camera, which is no scene object.
  const Json::Value& camera = Layer("Camera");
  EXPECT_EQ(camera["type"].asString(), "camera");
  EXPECT_TRUE(camera.get("video", true).asBool());
}

TEST_F(ImportScene, PreviewRangeAndHundredthsOfTheRenderSettings) {
  Import("import_generators");
  const Json::Value& comp = Comp();
  // Sequence mode 3 takes the preview range, frames 2 and 3 of 25 per second; the time
  // scale is trunc(29.97 * 100) with 100 units a frame; 1.0667 reaches the host as 106/100.
  EXPECT_DOUBLE_EQ(comp["frameRate"].asDouble(), 29.97);
  EXPECT_NEAR(comp["duration"].asDouble(), 200.0 / 2997.0, 1e-12);
  EXPECT_NEAR(comp["displayStart"].asDouble(), 200.0 / 2997.0, 1e-12);
  EXPECT_DOUBLE_EQ(comp["pixelAspect"].asDouble(), 1.06);
  EXPECT_EQ(comp["width"].asInt(), 800);
}

TEST_F(ImportScene, AGeneratorsCacheIsWalkedBesideItsChildren) {
  Import("import_generators");
  // The duplicator at y 10 gives no layer; its child is walked as a child and, twice, in the
  // cache, the copies 100 apart.
  std::vector<std::pair<double, double>> positions;
  for (const Json::Value& layer : Comp()["layers"]) {
    if (&layer == &Layer("Bent")) continue;
    const Json::Value& position = layer["transform"]["position"];
    positions.emplace_back(position[0].asDouble(), position[1].asDouble());
  }
  std::sort(positions.begin(), positions.end());
  EXPECT_EQ(positions, (std::vector<std::pair<double, double>>{{0, -10}, {0, -10}, {100, -10}}));
}

TEST_F(ImportScene, AnObjectWithADeformerGivesOneLayerThroughItsDeformedCopy) {
  Import("import_generators");
  int bent = 0;
  for (const Json::Value& footage : project_["footage"]) bent += footage["name"].asString() == "Bent" ? 1 : 0;
  EXPECT_EQ(bent, 1);
  ExpectVector(Layer("Bent")["transform"]["position"], 0, 0, 50);
}

// Markers the other way: the composition's and the layers' markers join the document's
// marker list on export, with the time as the host's value over its scale.
TEST_F(ImportScene, CompositionAndLayerMarkersReachTheDocument) {
  const std::string project = dir_ + "/marks.json";
  qae_test::WriteFile(project, R"({"format": "aehost-project", "version": 1, "path": "/projects/marks.aep",
    "footage": [{"id": 2, "name": "Null 1", "width": 100, "height": 100, "solid": {"color": [1, 1, 1]}}],
    "comps": [{"id": 1, "name": "Marks", "width": 1000, "height": 500, "frameRate": 25, "duration": 2,
               "markers": [{"time": 0.4, "comment": "shot\nwide", "duration": 2}],
               "layers": [{"id": 11, "name": "Dot", "source": 2, "threeD": true, "null": true,
                           "markers": [{"time": 0.2, "comment": "hit"}]}]}]})");
  const std::string scene = dir_ + "/marks.ory";
  const auto exported =
      RunCommand(qae_test::AehostPath(), {"export", project, "--comp", "Marks", "--output", scene, "--quiet"});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;
  const auto dumped = RunCommand(qae_test::OrytoolPath(), {"dump", "--json", scene});
  ASSERT_EQ(dumped.exitCode, 0) << dumped.err;
  const Json::Value markers = ParseJson(dumped.out)["markers"];
  ASSERT_EQ(markers.size(), 2u);  // in time order
  auto param = [](const Json::Value& marker, const std::string& name) {
    for (const Json::Value& p : marker["params"])
      if (p["name"].asString() == name) return p;
    return Json::Value();
  };
  // The layer's marker at 0.2 s (5000 / 25000 reduced to 1/5); a comment of one line is all name.
  EXPECT_EQ(markers[0]["name"].asString(), "hit");
  EXPECT_DOUBLE_EQ(param(markers[0], "MarkerParam_Time")["time"][0].asDouble(), 1.0);
  EXPECT_DOUBLE_EQ(param(markers[0], "MarkerParam_Time")["time"][1].asDouble(), 5.0);
  EXPECT_TRUE(param(markers[0], "MarkerParam_Note").isNull());
  // The composition's: the first line is the name, the note keeps the line feed.
  EXPECT_EQ(markers[1]["name"].asString(), "shot");
  EXPECT_EQ(param(markers[1], "MarkerParam_Note")["string"].asString(), "\nwide");
  EXPECT_DOUBLE_EQ(param(markers[1], "MarkerParam_Length")["time"][0].asDouble(), 2.0);

}

TEST_F(ImportScene, AnObjectsOwnTimeRangeIsCutAtTheDocumentsEnd) {
  Import("import_keys");
  // In at frame 5, out at frame 30 of a 20-frame document: 15 frames from 0.2 s.
  const Json::Value& late = Layer("Late");
  EXPECT_DOUBLE_EQ(late["inPoint"].asDouble(), 0.2);
  EXPECT_DOUBLE_EQ(late["duration"].asDouble(), 0.6);
  // Key i stands at the in point plus i frames and holds the scene's frame i: z rises 10 a
  // frame over the scene's frames 0 to 2.
  const Json::Value& keys = late["transform"]["position"]["keys"];
  ASSERT_EQ(keys.size(), 3u);
  for (Json::ArrayIndex i = 0; i < keys.size(); ++i) {
    EXPECT_NEAR(keys[i]["time"].asDouble(), 0.2 + i * 0.04, 1e-9);
    ExpectVector(keys[i]["value"], 0, 0, 10.0 * i);
  }
  // One that would start at the document's end gives no layer at all.
  for (const Json::Value& footage : project_["footage"]) EXPECT_NE(footage["name"].asString(), "Too late");
}

TEST_F(ImportScene, ACameraAnimatedByFocalLengthGetsZoomKeys) {
  Import("import_keys");
  // fov = 2 atan(36 / 2 / f), so zoom = (1280 / 2) / tan(fov / 2) = 640 f / 18: the focal
  // length goes 18, 27, 36 over frames 0 to 2 and then holds.
  const Json::Value& camera = Layer("Zoomer");
  const Json::Value& zoom = camera["camera"]["zoom"]["keys"];
  ASSERT_EQ(zoom.size(), 3u);
  for (Json::ArrayIndex i = 0; i < zoom.size(); ++i) {
    EXPECT_NEAR(zoom[i]["time"].asDouble(), 0.04 * i, 1e-9);
    EXPECT_NEAR(zoom[i]["value"].asDouble(), 640.0 * (18.0 + 9.0 * i) / 18.0, 1e-9);
  }
  EXPECT_FALSE(camera["camera"]["focusDistance"].isObject());  // no focus track: one value
  // The document's view does not look through it: its video is off.
  EXPECT_FALSE(camera.get("video", true).asBool());
}

// The root node that the export writes has no part in the place of what lies below it, but
// an ancestor above it has: (1, 2, 3) under the root at (500, 0, 0) under (0, 0, 100).
TEST_F(ImportScene, TheExportRootIsSkippedAndItsAncestorsCount) {
  ImportDescription("root", R"({"document": {"name": "Root", "params": [{"id": "DocParam_Fps", "int32": 25},
      {"id": "DocParam_MinTime", "time": [0, 25]}, {"id": "DocParam_MaxTime", "time": [4, 25]}]},
    "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640}, {"id": "RenderParam_Height", "float": 360},
      {"id": "RenderParam_PixelAspect", "float": 1.0}, {"id": "RenderParam_FrameRate", "float": 25}]}],
    "objects": [{"type": "ObjectType_Null", "name": "Top", "params": [{"id": "ObjectParam_Position", "vector": [0, 0, 100]}],
      "children": [{"type": "ObjectType_Null", "name": "Root",
        "params": [{"id": "ObjectParam_Position", "vector": [500, 0, 0]},
                   {"id": "ParamKey_OriginKey", "string": "QUILLON_EXPORT_ROOT_NODE"}],
        "children": [{"type": "ObjectType_Null", "name": "Kid",
          "params": [{"id": "ObjectParam_Position", "vector": [1, 2, 3]}],
          "tags": [{"type": "TagType_Compositing", "params": [{"id": "CompositingTagParam_Solid", "int32": 0}]}]}]}]}]})");
  ExpectVector(Layer("Kid")["transform"]["position"], 1, -2, 103);
}

// Scenes at NTSC rates whose document starts at frame 10: the render rate gives the time
// scale S = trunc(rate x 100) and one frame is 100 units of it; the document's whole-number
// rate counts its frames. Composition frame i shows document frame 10 + i.
struct NtscRate {
  const char* render;  // RenderParam_FrameRate
  int document;        // DocParam_Fps
  int scale;           // S
};

class ImportAtNtscRate : public ImportScene, public ::testing::WithParamInterface<NtscRate> {
 protected:
  // A tagged null with anchor choice 2 holding position x at 0 with keys on document frames
  // 10, 15 and 20; a light of kind 4 (parallel, its point of interest derived from its turn)
  // whose brightness has keys 0.25 at frame 0 and 0.5 at frame 10, turning about y from 0 at
  // frame 10 to 0.5 radians at frame 20; a camera whose field of view has keys at frames 0
  // and 10.
  void ImportRates() {
    const std::string fps = std::to_string(GetParam().document);
    auto at = [&](int frame) { return "[" + std::to_string(frame) + ", " + fps + "]"; };
    ImportDescription("rates", R"({"document": {"name": "Rates", "params": [{"id": "DocParam_Fps", "int32": )" + fps +
                                   R"(}, {"id": "DocParam_MinTime", "time": )" + at(10) +
                                   R"(}, {"id": "DocParam_MaxTime", "time": )" + at(29) + R"(}]},
 "render_settings": [{"params": [{"id": "RenderParam_Width", "float": 640}, {"id": "RenderParam_Height", "float": 360},
   {"id": "RenderParam_PixelAspect", "float": 1.0}, {"id": "RenderParam_FrameRate", "float": )" +
                                   GetParam().render + R"(}]}],
 "objects": [
  {"type": "ObjectType_Null", "name": "Holder",
   "tags": [{"type": "TagType_Compositing", "params": [{"id": "CompositingTagParam_Solid", "int32": 0},
                                                      {"id": "CompositingTagParam_Anchor", "int32": 2}]}],
   "tracks": [{"path": [[903, 23], [1000, 19]], "curve": {"keys": [{"time": )" + at(10) +
                                   R"(, "value": 0}, {"time": )" + at(15) + R"(, "value": 0}, {"time": )" + at(20) +
                                   R"(, "value": 0}]}}]},
  {"type": "ObjectType_Light", "name": "Lamp",
   "params": [{"id": "LightParam_Type", "int32": 4}, {"id": "LightParam_Intensity", "float": 1.0}],
   "tracks": [{"path": [[90001, 19]], "curve": {"keys": [{"time": )" + at(0) + R"(, "value": 0.25}, {"time": )" +
                                   at(10) + R"(, "value": 0.5}]}},
              {"path": [[904, 23], [1001, 19]], "curve": {"keys": [{"time": )" + at(10) +
                                   R"(, "value": 0}, {"time": )" + at(20) + R"(, "value": 0.5}]}}]},
  {"type": "ObjectType_Camera", "name": "Lens",
   "tracks": [{"path": [[1008, 19]], "curve": {"keys": [{"time": )" + at(0) + R"(, "value": )" + kHalfRightAngle +
                                   R"(}, {"time": )" + at(10) + R"(, "value": )" + kRightAngle + R"(}]}}]}]})");
  }

  // Fields of view whose zooms on the 640 wide picture are 640 and 320: 2 atan(1/2) and 2 atan(1).
  static constexpr const char* kHalfRightAngle = "0.9272952180016122";
  static constexpr const char* kRightAngle = "1.5707963267948966";

  // Composition frame `frame` in seconds.
  double Frame(int frame) const { return frame * 100.0 / GetParam().scale; }
};

// A key of the scene on a frame where the value holds still gives a key there too: the
// null's place holds at 0 throughout, and its keys stand on frames 0, 5 and 10.
TEST_P(ImportAtNtscRate, ASceneKeyOnAHoldGivesAKeyThere) {
  ImportRates();
  const Json::Value& keys = Layer("Holder")["transform"]["position"]["keys"];
  ASSERT_EQ(keys.size(), 3u) << keys;
  for (unsigned i = 0; i < 3; ++i) {
    EXPECT_DOUBLE_EQ(keys[i]["time"].asDouble(), Frame(static_cast<int>(5 * i)));
    ExpectVector(keys[i]["value"], 0, 0, 0);
  }
}

// Anchor choice 2 is the right end of the top edge: (width, 0) of a null's 100 x 100.
TEST_P(ImportAtNtscRate, AnchorChoiceTwoIsTheTopRightCorner) {
  ImportRates();
  ExpectVector(Layer("Holder")["transform"]["anchorPoint"], 100, 0, 0);
}

// A light's own values are sampled from scene frame 0, not from the document's start: key 0
// holds the brightness of frame 0 (0.25, doubled to 50), key 10 that of frame 10.
TEST_P(ImportAtNtscRate, LightValuesAreSampledFromSceneFrameZero) {
  ImportRates();
  const Json::Value& keys = Layer("Lamp")["light"]["intensity"]["keys"];
  ASSERT_GE(keys.size(), 11u) << keys;
  EXPECT_DOUBLE_EQ(keys[0]["time"].asDouble(), 0.0);
  EXPECT_DOUBLE_EQ(keys[0]["value"].asDouble(), 50.0);
  EXPECT_DOUBLE_EQ(keys[10]["time"].asDouble(), Frame(10));
  EXPECT_DOUBLE_EQ(keys[10]["value"].asDouble(), 100.0);
}

// A camera's lens too is sampled from scene frame 0: the zoom of key 0 is that of frame 0.
TEST_P(ImportAtNtscRate, CameraValuesAreSampledFromSceneFrameZero) {
  ImportRates();
  const Json::Value& keys = Layer("Lens")["camera"]["zoom"]["keys"];
  ASSERT_GE(keys.size(), 11u) << keys;
  EXPECT_DOUBLE_EQ(keys[0]["time"].asDouble(), 0.0);
  EXPECT_NEAR(keys[0]["value"].asDouble(), 640.0, 1e-9);
  EXPECT_DOUBLE_EQ(keys[10]["time"].asDouble(), Frame(10));
  EXPECT_NEAR(keys[10]["value"].asDouble(), 320.0, 1e-9);
}

// A light without a target looks 1000 ahead along its turn, and as it turns its point of
// interest follows: at composition frame 10 (document frame 20) the turn is 0.5 radians.
TEST_P(ImportAtNtscRate, ALightsDerivedPointOfInterestFollowsItsTurn) {
  ImportRates();
  const Json::Value& keys = Layer("Lamp")["transform"]["pointOfInterest"]["keys"];
  ASSERT_GE(keys.size(), 11u) << keys;
  ExpectVector(keys[0]["value"], 0, 0, 1000);
  EXPECT_DOUBLE_EQ(keys[10]["time"].asDouble(), Frame(10));
  ExpectVector(keys[10]["value"], 0, -std::sin(0.5) * 1000, std::cos(0.5) * 1000);
}

INSTANTIATE_TEST_SUITE_P(Rates, ImportAtNtscRate,
                         ::testing::Values(NtscRate{"23.976", 24, 2397}, NtscRate{"59.94", 60, 5994}),
                         [](const ::testing::TestParamInfo<NtscRate>& info) {
                           return "Fps" + std::to_string(info.param.document);
                         });

}  // namespace
