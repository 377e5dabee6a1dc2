// Scene markers into the host's active layer, run against the headless host in this process
// and the real engine library. The document's markers are made by the export direction from
// a composition's markers, so both directions meet here.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "aehost/core/basic_suite.h"
#include "aehost/core/host.h"
#include "aehost/core/model_handles.h"
#include "aehost/model/edit.h"
#include "plugin/engine/engine_extensions.h"
#include "plugin/engine/engine_loader.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/host/cti.h"
#include "plugin/importer/tests/in_process_host.h"
#include "plugin/importer/timeline_markers.h"

namespace {

constexpr AEGP_PluginID kPlugin = qae_test::kInProcessPlugin;
constexpr int kFps = 25;
// The time base of an effect call at 25 frames a second: one frame is 100 units of 2500.
constexpr PF_InData kInData{100, 2500};

class MarkerImport : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qae_test::StartTestEngine(); }

  void SetUp() override {
    qae_test::ResetHostWithPlugin(project);
    source = &aehost::AddComp(project, "Source", 1920, 1080, 1.0, 10.0, kFps);
    edit = &aehost::AddComp(project, "Edit", 1920, 1080, 1.0, 10.0, kFps);
    layer = &aehost::AddNullLayer(project, *edit, "Dot");
    aehost::g_host.activeLayerId = layer->id;
    // A document of frames 10 to 19.
    document = t_ORYOS_Bd->AllocDocument();
    SetInt32Param(document, DocParam_Fps, kFps);
    SetTimeParam(document, DocParam_MinTime, BaseTime(10, kFps));
    SetTimeParam(document, DocParam_MaxTime, BaseTime(19, kFps));
    OpenFrame(aehost::BasicSuite(), 0, kPlugin);
  }

  void TearDown() override {
    CloseFrame();
    t_ORYOS_Bl->FreeNode(document);
    aehost::ResetHost();
  }

  // The document's markers, made from composition markers at these frames of the document.
  void SceneMarkers(const std::vector<aehost::Marker>& markers) {
    source->comp.markers = markers;
    ASSERT_EQ(ExportCompMarkers(CurrentCTI(), document, aehost::CompHandle(*source)), A_Err_NONE);
  }

  A_Err Extract(bool throughEffect) {
    EffectCall call{&kInData};
    CurrentCTI()->effectCall = throughEffect ? &call : nullptr;
    const A_Err err = ExtractORYTimelineMarkers(CurrentCTI(), document);
    CurrentCTI()->effectCall = nullptr;
    return err;
  }

  // The markers the document holds, counted through the engine's marker list.
  int DocumentMarkerCount() const {
    const auto* markers = ExtensionLibrary<MarkerLibrary>(kExtensionMarkers);
    int count = 0;
    for (SceneNode* marker = markers ? markers->GetFirstMarker(document) : nullptr; marker;
         marker = t_ORYOS_At->GetNext(marker))
      ++count;
    return count;
  }

  std::vector<std::string> ErrorTexts() const {
    std::vector<std::string> texts;
    for (const FrameError& error : CurrentCTI()->errors) texts.push_back(error.text);
    return texts;
  }

  aehost::Project project;
  aehost::Item* source = nullptr;
  aehost::Item* edit = nullptr;
  aehost::Layer* layer = nullptr;
  BaseDocument* document = nullptr;
};

// A frame of the document in seconds.
double At(int frame) { return static_cast<double>(frame) / kFps; }

// The document's frame 12 is frame 2 of a composition that shows frames 10 to 19, so the marker
// stands 2 frames into the layer. Of two markers equal in time, length and comment the second
// is left out.
TEST_F(MarkerImport, MarkersLandOnTheActiveLayerCountedFromTheDocumentsStart) {
  SceneMarkers({{At(12), At(2), "cut"}, {At(12), At(2), "cut"}, {At(13), At(2), "other"}, {At(15), 0.0, "end"}});
  ASSERT_EQ(DocumentMarkerCount(), 4) << "the scene holds both equal markers";
  // The host keeps one marker a time, so only its trace tells a duplicate left out from one
  // put over its equal.
  aehost::g_host.verbose = true;
  ::testing::internal::CaptureStderr();
  ASSERT_EQ(Extract(true), A_Err_NONE);
  const std::string trace = ::testing::internal::GetCapturedStderr();
  size_t inserted = 0;
  for (size_t at = trace.find("marker inserted at"); at != std::string::npos;
       at = trace.find("marker inserted at", at + 1))
    ++inserted;
  EXPECT_EQ(inserted, 3u) << trace;
  ASSERT_EQ(layer->markers.size(), 3u);
  EXPECT_DOUBLE_EQ(layer->markers[0].time, At(2));
  EXPECT_DOUBLE_EQ(layer->markers[0].duration, At(2));
  EXPECT_EQ(layer->markers[0].comment, "cut");
  EXPECT_DOUBLE_EQ(layer->markers[1].time, At(3));
  EXPECT_EQ(layer->markers[1].comment, "other");
  EXPECT_DOUBLE_EQ(layer->markers[2].time, At(5));
  EXPECT_EQ(layer->markers[2].comment, "end");
  EXPECT_TRUE(edit->comp.markers.empty());
  EXPECT_TRUE(aehost::g_host.streams.Entries().empty());  // the marker stream is handed back
}

// A hook's frame has no effect call: the pass ends before the marker stream is taken, with the
// message of the missing time base, and nothing is left open.
TEST_F(MarkerImport, WithoutAnEffectCallNoMarkerIsMade) {
  SceneMarkers({{At(12), 0.0, "cut"}});
  EXPECT_EQ(Extract(false), 512);
  EXPECT_TRUE(layer->markers.empty());
  EXPECT_EQ(ErrorTexts(), std::vector<std::string>{"ExtractORYTimelineMarkers failed. PF_InData was not found."});
  EXPECT_TRUE(aehost::g_host.streams.Entries().empty());
}

// With no layer selected, or a document without markers, nothing happens and nothing is told.
TEST_F(MarkerImport, NoActiveLayerOrNoMarkersDoesNothing) {
  EXPECT_EQ(Extract(true), A_Err_NONE);  // no markers
  SceneMarkers({{At(12), 0.0, "cut"}});
  aehost::g_host.activeLayerId = 0;
  EXPECT_EQ(Extract(true), A_Err_NONE);
  EXPECT_TRUE(layer->markers.empty());
  EXPECT_TRUE(edit->comp.markers.empty());
  EXPECT_TRUE(CurrentCTI()->errors.empty());
}

}  // namespace
