// End to end: the example projects go through `aehost export`, the scene file is read back
// into the engine's document model and evaluated frame by frame, and every exported object is
// compared with what `aehost xform` says of its layer.
//
// The conversion from After Effects to scene terms is written out here on its own, from the
// conventions both sides document: After Effects gives row-vector matrices in composition
// pixels with y down and the origin at the top left; the scene has y up, the composition's
// centre at the origin (the export root is offset by (-width/2, height/2, 0)), and pictures
// placed by their centre. An object's rotation is compared through its axes: the scene's x
// and z axes must point where After Effects' x axis and z axis point, with y negated.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/animation.h"
#include "quillon/model/document.h"
#include "quillon/model/evaluate.h"
#include "quillon/model/object.h"
#include "tests/support/json_text.h"
#include "tests/support/run_command.h"

namespace {

using qae_test::ParseJson;

using qae_test::RunCommand;

// A layer of an example project, as its description gives it.
struct ExampleLayer {
  std::string comp;
  std::string name;
  int32_t id = 0;
  bool planeOrNull = false;  // a solid, a null or a precomposition: placed with scale
  double width = 0.0;        // of the picture that the object is centred on, 0 for none
  double height = 0.0;
  double inPoint = 0.0;      // seconds of its composition
  std::optional<std::string> precompLayer;  // the layer through which its composition is used
};

struct Example {
  std::string path;
  std::string comp;  // the exported composition
  Json::Value project;
  double width = 0.0, height = 0.0, frameRate = 0.0, duration = 0.0;
  std::map<int32_t, ExampleLayer> layers;  // by id
};

const Json::Value* FindById(const Json::Value& list, int id) {
  for (const Json::Value& entry : list) {
    if (entry["id"].asInt() == id) return &entry;
  }
  return nullptr;
}

const Json::Value* CompByName(const Json::Value& project, const std::string& name) {
  for (const Json::Value& comp : project["comps"]) {
    if (comp["name"].asString() == name) return &comp;
  }
  return nullptr;
}

// The layers of `comp` and of the compositions its precomposition layers use.
void CollectLayers(Example& example, const Json::Value& comp, const std::optional<std::string>& through) {
  for (const Json::Value& layer : comp["layers"]) {
    ExampleLayer entry;
    entry.comp = comp["name"].asString();
    entry.name = layer["name"].asString();
    entry.id = layer["id"].asInt();
    entry.inPoint = layer.get("inPoint", 0.0).asDouble();
    entry.precompLayer = through;
    if (layer.isMember("source")) {
      entry.planeOrNull = true;
      if (const Json::Value* footage = FindById(example.project["footage"], layer["source"].asInt())) {
        if (!layer.get("null", false).asBool()) {
          entry.width = (*footage)["width"].asDouble();
          entry.height = (*footage)["height"].asDouble();
        }
      } else if (const Json::Value* inner = FindById(example.project["comps"], layer["source"].asInt())) {
        CollectLayers(example, *inner, entry.name);
      }
    }
    example.layers[entry.id] = entry;
  }
}

Example LoadExample(const std::string& file, const std::string& comp) {
  Example example;
  example.path = std::string(QAE_EXAMPLES_DIR) + "/" + file;
  example.comp = comp;
  example.project = ParseJson(qae_test::ReadFile(example.path));
  const Json::Value* top = CompByName(example.project, comp);
  EXPECT_NE(top, nullptr) << comp;
  if (!top) return example;
  example.width = (*top)["width"].asDouble();
  example.height = (*top)["height"].asDouble();
  example.frameRate = (*top)["frameRate"].asDouble();
  example.duration = (*top)["duration"].asDouble();
  CollectLayers(example, *top, std::nullopt);
  return example;
}

// ---------------------------------------------------------------- the scene side

struct Scene {
  std::unique_ptr<quillon::Document> document;
  std::string error;
};

Scene ExportAndRead(const Example& example, const std::string& workDir) {
  const std::string out = workDir + "/scene.ory";
  const auto run = RunCommand(qae_test::AehostPath(),
                              {"export", example.path, "--comp", example.comp, "--output", out});
  Scene scene;
  if (run.exitCode != 0) {
    scene.error = "aehost export failed (" + std::to_string(run.exitCode) + "): " + run.err;
    return scene;
  }
  scene.document = quillon::NewDocument();
  if (!quillon::format::ReadDocument(out, *scene.document, &scene.error)) scene.document.reset();
  return scene;
}

std::string Utf8(const std::u16string& text) {
  std::string out;
  for (char16_t c : text) out += c < 0x80 ? static_cast<char>(c) : '?';
  return out;
}

void CollectObjects(quillon::Node* first, std::vector<quillon::Object*>* out) {
  for (quillon::Node* node = first; node; node = node->next) {
    if (quillon::Object* object = quillon::AsObject(node)) out->push_back(object);
    CollectObjects(node->firstChild, out);
  }
}

std::vector<quillon::Object*> AllObjects(quillon::Document& document) {
  std::vector<quillon::Object*> objects;
  CollectObjects(document.objects->firstChild, &objects);
  return objects;
}

int32_t LayerIdOf(const quillon::Object& object) {
  const auto it = object.params.find(ParamKey_LayerId);
  return it == object.params.end() ? -1 : quillon::AsInt32(it->second.raw);
}

quillon::Object* ObjectOfLayer(quillon::Document& document, int32_t layerId) {
  for (quillon::Object* object : AllObjects(document)) {
    if (LayerIdOf(*object) == layerId) return object;
  }
  return nullptr;
}

bool HasTracks(quillon::Object& object) { return !quillon::TracksOf(object).empty(); }

bool HasAnimatedAncestor(quillon::Object& object) {
  for (quillon::Node* up = quillon::VisibleParent(&object); up; up = quillon::VisibleParent(up)) {
    if (quillon::Object* parent = quillon::AsObject(up); parent && HasTracks(*parent)) return true;
  }
  return false;
}

// First and last frame at which the object's tracks hold keys.
std::pair<int32_t, int32_t> KeySpan(quillon::Object& object, int32_t fps) {
  int32_t first = INT32_MAX, last = INT32_MIN;
  for (quillon::Track* track : quillon::TracksOf(object)) {
    const quillon::KeyStore& keys = track->curve->keys;
    if (keys.size() == 0) continue;
    first = std::min(first, FrameOf(keys.at(0)->time, fps));
    last = std::max(last, FrameOf(keys.at(keys.size() - 1)->time, fps));
  }
  return {first, last};
}

int32_t DocumentFps(quillon::Document& document) {
  const auto it = document.params.find(DocParam_Fps);
  return it == document.params.end() ? 0 : quillon::AsInt32(it->second.raw);
}

// ---------------------------------------------------------------- the host side

struct HostMatrix {
  double m[4][4] = {};
};

HostMatrix Product(const HostMatrix& a, const HostMatrix& b) {  // a then b, row vectors
  HostMatrix r;
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 4; ++j) {
      for (int k = 0; k < 4; ++k) r.m[i][j] += a.m[i][k] * b.m[k][j];
    }
  }
  return r;
}

std::optional<HostMatrix> Xform(const Example& example, const std::string& comp, const std::string& layer,
                                int frame) {
  const auto run = RunCommand(qae_test::AehostPath(), {"xform", example.path, "--comp", comp, "--layer", layer,
                                                       "--frame", std::to_string(frame)});
  if (run.exitCode != 0) {
    ADD_FAILURE() << "aehost xform " << layer << " " << frame << ": " << run.err;
    return std::nullopt;
  }
  const Json::Value reply = ParseJson(run.out);
  const Json::Value& rows = reply.isObject() ? reply["matrix"] : reply;
  HostMatrix m;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m.m[r][c] = rows[r][c].asDouble();
  }
  return m;
}

// The layer's matrix in the exported composition: through every precomposition layer above it.
std::optional<HostMatrix> WorldXform(const Example& example, const ExampleLayer& layer, int frame) {
  std::optional<HostMatrix> m = Xform(example, layer.comp, layer.name, frame);
  for (std::optional<std::string> up = layer.precompLayer; m && up;) {
    const ExampleLayer* outer = nullptr;
    for (const auto& [id, candidate] : example.layers) {
      if (candidate.name == *up) outer = &candidate;
    }
    if (!outer) return std::nullopt;
    const std::optional<HostMatrix> p = Xform(example, outer->comp, outer->name, frame);
    if (!p) return std::nullopt;
    m = Product(*m, *p);
    up = outer->precompLayer;
  }
  return m;
}

// What the scene must show for a host matrix: the picture's centre, y negated, moved by the
// export root and by the depth that keeps flat layers apart.
struct Expected {
  Vector position, axisX, axisZ, scale;
};

Vector Unit(const Vector& v) { return Normalized(v); }

Expected ExpectedFromHost(const Example& example, const ExampleLayer& layer, const HostMatrix& m, double zOffset) {
  const double cx = layer.width / 2.0, cy = layer.height / 2.0;
  Expected e;
  const double px = cx * m.m[0][0] + cy * m.m[1][0] + m.m[3][0];
  const double py = cx * m.m[0][1] + cy * m.m[1][1] + m.m[3][1];
  const double pz = cx * m.m[0][2] + cy * m.m[1][2] + m.m[3][2];
  e.position = Vector{px - example.width / 2.0, -py + example.height / 2.0, pz + zOffset};
  e.axisX = Unit(Vector{m.m[0][0], -m.m[0][1], m.m[0][2]});
  e.axisZ = Unit(Vector{m.m[2][0], -m.m[2][1], m.m[2][2]});
  e.scale = Vector{Length(Vector{m.m[0][0], m.m[0][1], m.m[0][2]}), Length(Vector{m.m[1][0], m.m[1][1], m.m[1][2]}),
                   Length(Vector{m.m[2][0], m.m[2][1], m.m[2][2]})};
  return e;
}

void ExpectMatches(const Example& example, const ExampleLayer& layer, const Matrix& scene, const Expected& e,
                   int frame) {
  const double positionTolerance = 1e-6 * example.width;
  const double angleTolerance = 1e-6;
  SCOPED_TRACE(layer.name + " at frame " + std::to_string(frame));
  EXPECT_NEAR(scene.off.x, e.position.x, positionTolerance);
  EXPECT_NEAR(scene.off.y, e.position.y, positionTolerance);
  EXPECT_NEAR(scene.off.z, e.position.z, positionTolerance);
  EXPECT_LT(Length(Unit(scene.axisX) - e.axisX), angleTolerance);
  EXPECT_LT(Length(Unit(scene.axisZ) - e.axisZ), angleTolerance);
  if (layer.planeOrNull) {
    EXPECT_NEAR(Length(scene.axisX), e.scale.x, 1e-9);
    EXPECT_NEAR(Length(scene.axisY), e.scale.y, 1e-9);
    EXPECT_NEAR(Length(scene.axisZ), e.scale.z, 1e-9);
  }
}

// ---------------------------------------------------------------- the comparison

class ExportedScene : public ::testing::Test {
 protected:
  void SetUp() override { workDir_ = qae_test::MakeTempDir("export_scene"); }
  void TearDown() override { std::filesystem::remove_all(workDir_); }

  // Every object of a layer against its layer, at every frame of the layer's life. Objects
  // with an animated ancestor hold keys that express their world path against the parent's
  // static matrix, so there the parent is taken as it stands unanimated, and only frames that
  // the object's own keys cover can match.
  // `leftOut` names, counted by hand, the layers that have no object: 2D layers outside any 3D
  // precomposition. Every other layer must have one.
  void CompareAllFrames(const Example& example, const std::map<std::string, double>& zOffsets,
                        const std::set<std::string>& leftOut, const std::map<std::string, int32_t>& firstFrames = {}) {
    Scene scene = ExportAndRead(example, workDir_);
    ASSERT_TRUE(scene.document) << scene.error;
    quillon::Document& document = *scene.document;
    const int32_t fps = DocumentFps(document);
    ASSERT_GT(fps, 0);

    std::map<quillon::Object*, Matrix> staticWorld;
    for (quillon::Object* object : AllObjects(document)) staticWorld[object] = quillon::GlobalMatrixOf(*object);

    const int32_t frames = static_cast<int32_t>(std::lround(example.duration * example.frameRate));
    int compared = 0;
    for (const auto& [id, layer] : example.layers) {
      quillon::Object* object = ObjectOfLayer(document, id);
      EXPECT_EQ(object == nullptr, leftOut.count(layer.name) == 1) << layer.name;
      if (!object) continue;
      const bool relative = HasAnimatedAncestor(*object);
      if (relative && !HasTracks(*object)) continue;
      int32_t from = static_cast<int32_t>(std::lround(layer.inPoint * example.frameRate)), to = frames - 1;
      if (relative) std::tie(from, to) = KeySpan(*object, fps);
      if (const auto first = firstFrames.find(layer.name); first != firstFrames.end()) from = first->second;
      const auto z = zOffsets.find(layer.name);
      const double zOffset = z == zOffsets.end() ? 0.0 : z->second;
      for (int32_t frame = from; frame <= to; ++frame) {
        document.currentTime = BaseTime(frame, fps);
        quillon::EvaluateDocumentCaches(document);
        Matrix scene;
        if (relative) {
          quillon::Object* parent = quillon::AsObject(quillon::VisibleParent(object));
          scene = Multiply(staticWorld[parent], quillon::LocalMatrixOf(*object));
        } else {
          scene = quillon::GlobalMatrixOf(*object);
        }
        const std::optional<HostMatrix> host = WorldXform(example, layer, frame);
        ASSERT_TRUE(host);
        ExpectMatches(example, layer, scene, ExpectedFromHost(example, layer, *host, zOffset), frame);
        ++compared;
      }
    }
    EXPECT_GT(compared, 0);
  }

  std::string workDir_;
};

TEST_F(ExportedScene, ParentedRigFollowsAfterEffectsFrameByFrame) {
  // Hand and Arm start at depth 0 without position keys (Hand turns by an expression, Arm by
  // keys on rotation): each pushes itself and all below it back by half a pixel.
  // Title is the one 2D layer.
  CompareAllFrames(LoadExample("rig.json", "Rig"), {{"Hand", 0.5}, {"Arm", 1.0}, {"Shoulder", 1.0}, {"Floor", 1.0}},
                   {"Title"});
}

TEST_F(ExportedScene, KeyCasesFollowAfterEffectsFrameByFrame) {
  // Two nulls lie at depth 0 without position keys: they are pushed back by half a pixel each,
  // and every layer below them takes the sum of what came before.
  CompareAllFrames(LoadExample("keys.json", "Keys"), {{"Still A", 0.5}, {"Still B", 1.0}, {"Still Far", 1.0}}, {});
}

TEST_F(ExportedScene, NestedPrecompositionsFollowAfterEffectsFrameByFrame) {
  // Each precomposition layer stands at depth 0 in its composition and pushes what follows.
  CompareAllFrames(LoadExample("nested.json", "Outer"), {{"Middle Layer", 0.5}, {"Beside", 0.5}, {"Inner Layer", 0.5}},
                   {});
}

TEST_F(ExportedScene, FractionalFrameRateFollowsAfterEffectsFrameByFrame) {
  // The span of keys is bounded by keyframe times in After Effects' seconds and compared with
  // document frames of 1/30 s: the first key at frame 10 (0.3337 s) leaves out document frame
  // 10 (0.3333 s), so the scene holds frame 11's place before it.
  CompareAllFrames(LoadExample("ntsc.json", "Broadcast"), {}, {}, {{"Card", 11}});
}

TEST_F(ExportedScene, FractionalFrameRateKeysStandOnWholeDocumentFrames) {
  const Example example = LoadExample("ntsc.json", "Broadcast");
  Scene scene = ExportAndRead(example, workDir_);
  ASSERT_TRUE(scene.document) << scene.error;
  quillon::Object* card = ObjectOfLayer(*scene.document, 11);
  ASSERT_NE(card, nullptr);
  // Keys at After Effects' frames 10 and 40; the span starts one frame late (see above), the
  // display start of frame 300 does not shift the keys, and x moves on every frame.
  for (quillon::Track* track : quillon::TracksOf(*card)) {
    if (Utf8(track->name) != "Position X") continue;
    const quillon::KeyStore& keys = track->curve->keys;
    ASSERT_EQ(keys.size(), 30);
    EXPECT_EQ(keys.at(0)->time, BaseTime(11, 30));
    EXPECT_EQ(keys.at(keys.size() - 1)->time, BaseTime(40, 30));
    return;
  }
  ADD_FAILURE() << "no Position X track";
}

// ---------------------------------------------------------------- pruned keys

// The tracks of an object by name, with their keys' frame numbers.
std::map<std::string, std::vector<int32_t>> TrackFrames(quillon::Object& object, int32_t fps) {
  std::map<std::string, std::vector<int32_t>> tracks;
  for (quillon::Track* track : quillon::TracksOf(object)) {
    std::vector<int32_t>& frames = tracks[Utf8(track->name)];
    for (int32_t i = 0; i < track->curve->keys.size(); ++i) frames.push_back(FrameOf(track->curve->keys.at(i)->time, fps));
  }
  return tracks;
}

std::vector<int32_t> Frames(int32_t from, int32_t to) {
  std::vector<int32_t> frames;
  for (int32_t i = from; i <= to; ++i) frames.push_back(i);
  return frames;
}

class PrunedKeys : public ExportedScene {
 protected:
  void SetUp() override {
    ExportedScene::SetUp();
    example_ = LoadExample("keys.json", "Keys");
    scene_ = ExportAndRead(example_, workDir_);
    ASSERT_TRUE(scene_.document) << scene_.error;
    fps_ = DocumentFps(*scene_.document);
  }

  std::map<std::string, std::vector<int32_t>> TracksOfLayer(const std::string& name) {
    for (const auto& [id, layer] : example_.layers) {
      if (layer.name != name) continue;
      quillon::Object* object = ObjectOfLayer(*scene_.document, id);
      EXPECT_NE(object, nullptr) << name;
      if (object) return TrackFrames(*object, fps_);
    }
    ADD_FAILURE() << "no layer " << name;
    return {};
  }

  Example example_;
  Scene scene_;
  int32_t fps_ = 0;
};

TEST_F(PrunedKeys, LinearMoveKeepsEveryFrameOnTheMovingAxisOnly) {
  // Keys at frames 10 and 20 that move x only: one key a frame on x; y, z and scale say nothing.
  const auto tracks = TracksOfLayer("Linear");
  ASSERT_EQ(tracks.size(), 1u);
  EXPECT_EQ(tracks.at("Position X"), Frames(10, 20));
}

TEST_F(PrunedKeys, HoldSurvivesAsAStepOfOneFrame) {
  const auto tracks = TracksOfLayer("Hold");
  ASSERT_EQ(tracks.size(), 1u);
  EXPECT_EQ(tracks.at("Position X"), (std::vector<int32_t>{10, 19, 20}));
}

TEST_F(PrunedKeys, SingleKeyLeavesNoTrack) { EXPECT_TRUE(TracksOfLayer("Single").empty()); }

TEST_F(PrunedKeys, TwoDifferentKeysAreKept) {
  const auto tracks = TracksOfLayer("Step");
  ASSERT_EQ(tracks.size(), 1u);
  EXPECT_EQ(tracks.at("Position X"), (std::vector<int32_t>{30, 31}));
}

TEST_F(PrunedKeys, RotationTracksAreNotPrunedAndPositionOfAStillLayerGoes) {
  // Turn has its anchor at its origin: turning moves nothing, so position keys say nothing.
  const auto tracks = TracksOfLayer("Turn");
  ASSERT_EQ(tracks.size(), 3u);
  for (const char* name : {"Rotation X", "Rotation Y", "Rotation Z"}) EXPECT_EQ(tracks.at(name), Frames(30, 60)) << name;
}

TEST_F(PrunedKeys, TurnRunsPastAFullCircle) {
  // A turn of 450 degrees about After Effects' y axis (which points down) is a heading of
  // -450 degrees about the scene's y axis (which points up), reached key by key without a jump.
  for (const auto& [id, layer] : example_.layers) {
    if (layer.name != "Turn") continue;
    quillon::Object* object = ObjectOfLayer(*scene_.document, id);
    ASSERT_NE(object, nullptr);
    for (quillon::Track* track : quillon::TracksOf(*object)) {
      if (Utf8(track->name) != "Rotation X") continue;
      const quillon::KeyStore& keys = track->curve->keys;
      EXPECT_NEAR(keys.at(keys.size() - 1)->value, -450.0 * 3.14159265358979323846 / 180.0, 1e-6);
      for (int32_t i = 1; i < keys.size(); ++i) EXPECT_LT(std::fabs(keys.at(i)->value - keys.at(i - 1)->value), 0.3);
    }
  }
}

TEST_F(PrunedKeys, LayerStartingLateIsKeyedFromItsInPoint) {
  // Keys at frames 10 and 60, layer from frame 50: frames 50 to 60 only.
  const auto tracks = TracksOfLayer("Late");
  ASSERT_EQ(tracks.size(), 1u);
  EXPECT_EQ(tracks.at("Position X"), Frames(50, 60));
}

// ---------------------------------------------------------------- document settings

TEST_F(ExportedScene, FractionalRateAndDisplayStartReachTheDocument) {
  const Example example = LoadExample("ntsc.json", "Broadcast");
  Scene scene = ExportAndRead(example, workDir_);
  ASSERT_TRUE(scene.document) << scene.error;
  quillon::Document& document = *scene.document;
  // 30000/1001 (29.97) rounds to 30 whole frames a second; the display start of 10.01 s is frame 300, and
  // the composition's 2.002 s are 60 frames, so the last one is 359.
  EXPECT_EQ(DocumentFps(document), 30);
  const auto time = [&](quillon::Node& node, int32_t id) { return *quillon::AsTime(node.params.at(id).raw); };
  EXPECT_EQ(time(document, DocParam_MinTime), BaseTime(300, 30));
  EXPECT_EQ(time(document, DocParam_LoopMinTime), BaseTime(300, 30));
  EXPECT_EQ(time(document, DocParam_MaxTime), BaseTime(359, 30));
  EXPECT_EQ(time(document, DocParam_LoopMaxTime), BaseTime(359, 30));
  quillon::Node* settings = document.activeSettings ? document.activeSettings : document.settings->firstChild;
  ASSERT_NE(settings, nullptr);
  const auto number = [&](int32_t id) { return quillon::AsFloat(settings->params.at(id).raw); };
  EXPECT_DOUBLE_EQ(number(RenderParam_FrameRate), 30000.0 / 1001.0);
  EXPECT_DOUBLE_EQ(number(RenderParam_Width), 720.0);
  EXPECT_DOUBLE_EQ(number(RenderParam_Height), 480.0);
  EXPECT_NEAR(number(RenderParam_PixelAspect), 0.9, 1e-6);
  EXPECT_NEAR(number(RenderParam_FilmAspect), 720.0 / 480.0 * 0.9, 1e-6);
  EXPECT_EQ(time(*settings, RenderParam_FrameFrom), BaseTime(300, 30));
  EXPECT_EQ(time(*settings, RenderParam_FrameTo), BaseTime(359, 30));
  EXPECT_EQ(quillon::AsInt32(settings->params.at(RenderParam_FrameSequence).raw), 2);
}

TEST_F(ExportedScene, TreeMirrorsParentingAndLeavesOut2dLayers) {
  const Example example = LoadExample("rig.json", "Rig");
  Scene scene = ExportAndRead(example, workDir_);
  ASSERT_TRUE(scene.document) << scene.error;
  std::map<std::string, std::string> parentOf;
  for (quillon::Object* object : AllObjects(*scene.document)) {
    quillon::Node* up = quillon::VisibleParent(object);
    parentOf[Utf8(object->name)] = up ? Utf8(up->name) : "";
  }
  EXPECT_EQ(parentOf.at("rig.aep-Rig"), "");
  EXPECT_EQ(parentOf.at("Shoulder"), "rig.aep-Rig");
  EXPECT_EQ(parentOf.at("Arm"), "Shoulder");
  EXPECT_EQ(parentOf.at("Hand"), "Arm");
  EXPECT_EQ(parentOf.at("Floor"), "rig.aep-Rig");
  EXPECT_EQ(parentOf.count("Title"), 0u);
  // The composition has no camera layer: the default camera and its target join the root.
  EXPECT_EQ(parentOf.at("AE "), "rig.aep-Rig");
  EXPECT_EQ(parentOf.at("AE .Target"), "rig.aep-Rig");
  EXPECT_EQ(parentOf.size(), 7u);
}

TEST_F(ExportedScene, HiddenLayerIsSwitchedOffAndLockedLayerGoesToTheLockLayer) {
  const Example example = LoadExample("rig.json", "Rig");
  Scene scene = ExportAndRead(example, workDir_);
  ASSERT_TRUE(scene.document) << scene.error;
  quillon::Object* floor = ObjectOfLayer(*scene.document, 14);
  ASSERT_NE(floor, nullptr);
  EXPECT_EQ(floor->modes[2], 1);  // the enabled mode switched off: exported all the same
  quillon::Node* lockLayer = nullptr;
  for (quillon::Node* layer = scene.document->layers->firstChild; layer; layer = layer->next) {
    if (Utf8(layer->name) == "Lock Layer") lockLayer = layer;
  }
  ASSERT_NE(lockLayer, nullptr);
  EXPECT_EQ(quillon::AsInt32(lockLayer->params.at(LayerParam_Locked).raw), 1);
  EXPECT_NE(floor->layerId, 0u);
  EXPECT_EQ(floor->layerId, lockLayer->linkId);
  quillon::Object* shoulder = ObjectOfLayer(*scene.document, 13);
  ASSERT_NE(shoulder, nullptr);
  EXPECT_EQ(shoulder->modes[2], 0);
  EXPECT_EQ(shoulder->layerId, 0u);
}

}  // namespace
