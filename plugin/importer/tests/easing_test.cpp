// The easing fit against the headless host in this process: the plug-in's own code adds the
// keys and sends its scripts through the host's suites and script engine, and the host's
// curve is read back through the same suites the fit reads. The scene comes from the real
// engine library.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "aehost/core/model_handles.h"
#include "aehost/core/suites.h"
#include "aehost/model/edit.h"
#include "aehost/model/evaluate.h"
#include "aehost/script/script_engine.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/host/cti.h"
#include "plugin/importer/easing_fit.h"
#include "plugin/importer/easing_script.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/tests/in_process_host.h"

namespace {

constexpr AEGP_PluginID kPlugin = qae_test::kInProcessPlugin;
constexpr int kFps = 25;

TEST(KeyEaseScript, IsTheTextTheHostExpects) {
  const KeyEaseTarget plain{0, "Position", false, 65535, 3};
  EXPECT_EQ(KeyEaseScript(plain, {10, 50}, {12.5, 50}),
            "var comp = app.project.activeItem;\n"
            "var posProperty = comp.layer(1).property(\"Position\");\n"
            "myProperty = posProperty;\n"
            "var easeIn = new KeyframeEase(10,50);\n"
            "var easeOut = new KeyframeEase(12.5,50);\n"
            "myProperty.setTemporalEaseAtKey(3, [easeIn], [easeOut]);\n\n");
  // Six significant digits, as %g writes them.
  EXPECT_NE(KeyEaseScript(plain, {10, 50}, {0.123456789, 33.3333333}).find("KeyframeEase(0.123457,33.3333);"),
            std::string::npos);
  for (int dimension = 0; dimension < 3; ++dimension) {
    const KeyEaseTarget separated{4, "Position", true, dimension, 1};
    const std::string script = KeyEaseScript(separated, {10, 50}, {10, 50});
    EXPECT_NE(script.find("comp.layer(5).property(\"Position\");\n"
                          "myProperty = posProperty.getSeparationFollower(" + std::to_string(dimension) + ");\n"),
              std::string::npos);
  }
  // A name with a quote cannot end the literal.
  EXPECT_NE(KeyEaseScript({0, "A \"B\"", false, 0, 1}, {10, 50}, {10, 50}).find("property(\"A \\\"B\\\"\")"),
            std::string::npos);
}

class EasingFit : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qae_test::StartTestEngine(); }

  void SetUp() override {
    qae_test::ResetHostWithPlugin(project);
    comp = &aehost::AddComp(project, "Main", 1920, 1080, 1.0, 10.0, kFps);
    layer = &aehost::AddNullLayer(project, *comp, "Mover");
    layer->switches.threeD = true;
    aehost::g_host.activeItemId = comp->id;
    script.project = &project;
    script.activeItem = [] { return aehost::g_host.activeItemId; };
    aehost::g_host.runScript = [this](const std::string& source, std::string* result, std::string* error) {
      scripts.push_back(source);
      return aehost::RunScript(script, source, result, error);
    };
    document = t_ORYOS_Bd->AllocDocument();
    SetInt32Param(document, DocParam_Fps, kFps);
    SetTimeParam(document, DocParam_MinTime, BaseTime(0, kFps));
    object = t_ORYOS_Bo->AllocObject(ObjectType_Null);
    t_ORYOS_Bd->InsertObject(document, object, nullptr, nullptr, 0, 1);
    g_importSession.pluginId = kPlugin;
    g_importSession.pica = aehost::BasicSuite();
    g_importSession.document = document;
    OpenFrame(aehost::BasicSuite(), 0, kPlugin);
  }

  void TearDown() override {
    CloseFrame();
    g_importSession = {};
    t_ORYOS_Bl->FreeNode(document);
    aehost::g_host.runScript = nullptr;
    aehost::ResetHost();
  }

  // A float track on the object with Hermite keys (value at frame), as the 3D application
  // writes a smooth curve.
  AnimTrack* Track(int32_t component, const std::vector<std::pair<int, double>>& keys) {
    const ComponentParamId id(ObjectParam_Position, component);
    AnimTrack* track = t_ORYOS_CA->AllocTrack(object, &id.id);
    t_ORYOS_Bl->InsertTrack(object, track);
    AnimCurve* curve = t_ORYOS_CA->GetCurve(track, 1, true);
    for (const auto& [frame, value] : keys) {
      const BaseTime time(frame, kFps);
      t_ORYOS_CA->SetKeyValue(t_ORYOS_CA->AddKey(curve, &time, nullptr, 0, 0), curve, value);
    }
    return track;
  }

  double Scene(AnimTrack* track, int frame) {
    const BaseTime time(frame, kFps);
    return t_ORYOS_CA->GetCurveValue(track, document, &time, 0);
  }

  AEGP_StreamRefH LayerStream(AEGP_LayerStream which) {
    AEGP_StreamRefH stream = nullptr;
    EXPECT_EQ(aehost::StreamSuite()->AEGP_GetNewLayerStream(kPlugin, aehost::LayerHandle(*layer), which, &stream),
              A_Err_NONE);
    return stream;
  }

  double Host(aehost::LayerStream id, int frame, int dimension = 0) {
    return aehost::EvaluateStream(project, *comp, *layer, id, static_cast<double>(frame) / kFps)[dimension];
  }

  aehost::Project project;
  aehost::Item* comp = nullptr;
  aehost::Layer* layer = nullptr;
  aehost::ScriptContext script;
  std::vector<std::string> scripts;
  BaseDocument* document = nullptr;
  BaseObject* object = nullptr;
};

// The repair only ever changes the speed out of the first key, so a curve that eases in and
// out over several keys is met at its keys, and elsewhere the fit stops at its bound per frame.
TEST_F(EasingFit, AnEaseInOutCurveMeetsTheHostAtItsKeysAndTheRepairEnds) {
  AnimTrack* track = Track(VectorComponent_X, {{0, 0.0}, {10, 0.0}, {30, 100.0}, {40, 100.0}});
  AEGP_StreamRefH stream = LayerStream(AEGP_LayerStream_OPACITY);
  ASSERT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), stream, track), A_Err_NONE);
  EXPECT_EQ(layer->streams.at(aehost::LayerStream::Opacity).keys.size(), 4u);
  for (int frame : {0, 10, 30, 40}) EXPECT_NEAR(Host(aehost::LayerStream::Opacity, frame), Scene(track, frame), 1e-9);
  // Frames 0 to 39 are tested; each one at most kEaseRepairsPerFrame times.
  EXPECT_GT(scripts.size(), 0u);
  EXPECT_LE(scripts.size(), 40u * kEaseRepairsPerFrame);
  EXPECT_EQ(scripts.front().find("comp.layer(1).property(\"Opacity\");\nmyProperty = posProperty;\n"), 53u);
  EXPECT_NE(scripts.front().find("setTemporalEaseAtKey(1, [easeIn], [easeOut]);"), std::string::npos);
  const aehost::Keyframe& first = layer->streams.at(aehost::LayerStream::Opacity).keys[0];
  EXPECT_EQ(first.out, aehost::Interpolation::Bezier);
  EXPECT_EQ(first.easeIn[0], (aehost::Ease{10.0, 50.0}));
  aehost::StreamSuite()->AEGP_DisposeStream(stream);
}

// A straight scene curve is met by the host's linear keys at every frame: no script runs.
TEST_F(EasingFit, ALineNeedsNoRepair) {
  AnimTrack* track = Track(VectorComponent_X, {{0, 0.0}, {10, 40.0}, {20, 80.0}});
  AEGP_StreamRefH stream = LayerStream(AEGP_LayerStream_OPACITY);
  ASSERT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), stream, track), A_Err_NONE);
  for (int frame = 0; frame <= 20; ++frame)
    EXPECT_NEAR(Host(aehost::LayerStream::Opacity, frame), frame * 4.0, kEaseTolerance) << frame;
  EXPECT_TRUE(scripts.empty());
  aehost::StreamSuite()->AEGP_DisposeStream(stream);
}

// The y follower of a separated position holds the negated scene values, x keeps its sign, and
// the repair reaches the follower through its leader's name.
TEST_F(EasingFit, TheYFollowerOfASeparatedPositionIsNegated) {
  aehost::SeparatePosition(project, *comp, *layer);
  AEGP_StreamRefH position = LayerStream(AEGP_LayerStream_POSITION);
  for (A_u_short dimension : {0, 1}) {
    AEGP_StreamRefH follower = nullptr;
    ASSERT_EQ(aehost::DynamicStreamSuite()->AEGP_GetSeparationFollower(position, dimension, &follower), A_Err_NONE);
    AnimTrack* track = Track(dimension == 0 ? VectorComponent_X : VectorComponent_Y,
                             {{0, 10.0}, {10, 0.0}, {20, 30.0}});
    scripts.clear();
    ASSERT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), follower, track), A_Err_NONE);
    const double sign = dimension == 1 ? -1.0 : 1.0;
    const aehost::LayerStream id = aehost::PositionFollower(dimension);
    const auto& keys = layer->streams.at(id).keys;
    ASSERT_EQ(keys.size(), 3u);
    EXPECT_EQ(keys[0].value[0], sign * 10.0);
    EXPECT_EQ(keys[2].value[0], sign * 30.0);
    ASSERT_FALSE(scripts.empty());
    EXPECT_NE(scripts.front().find("property(\"Position\");\nmyProperty = posProperty.getSeparationFollower(" +
                                   std::to_string(dimension) + ");\n"),
              std::string::npos);
    EXPECT_EQ(keys[0].out, aehost::Interpolation::Bezier);  // the script reached the follower
    aehost::StreamSuite()->AEGP_DisposeStream(follower);
  }
  aehost::StreamSuite()->AEGP_DisposeStream(position);
  EXPECT_TRUE(aehost::g_host.streams.Entries().empty());  // the leader the fit asked for is handed back
}

// Scale takes three eases a key; the one the script gives makes the host throw, and the fit
// returns the host's error at the first repair instead of trying on.
TEST_F(EasingFit, AStreamTheHostCannotEaseEndsTheFitWithTheHostsError) {
  AnimTrack* track = Track(VectorComponent_X, {{0, 100.0}, {10, 100.0}, {20, 200.0}});
  AEGP_StreamRefH stream = LayerStream(AEGP_LayerStream_SCALE);
  EXPECT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), stream, track), A_Err_GENERIC);
  EXPECT_EQ(scripts.size(), 1u);
  EXPECT_EQ(layer->streams.at(aehost::LayerStream::Scale).keys[0].out, aehost::Interpolation::Linear);
  aehost::StreamSuite()->AEGP_DisposeStream(stream);
}

TEST_F(EasingFit, NothingToFitWithoutATrackOrAStream) {
  AEGP_StreamRefH stream = LayerStream(AEGP_LayerStream_OPACITY);
  EXPECT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), stream, nullptr), A_Err_NONE);
  EXPECT_EQ(FitEasedCurve(CurrentCTI(), aehost::LayerHandle(*layer), nullptr, Track(VectorComponent_X, {{0, 1.0}})),
            A_Err_NONE);
  EXPECT_TRUE(layer->streams.find(aehost::LayerStream::Opacity) == layer->streams.end() ||
              layer->streams.at(aehost::LayerStream::Opacity).keys.empty());
  aehost::StreamSuite()->AEGP_DisposeStream(stream);
}

}  // namespace
