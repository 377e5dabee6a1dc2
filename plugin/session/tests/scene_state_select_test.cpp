// The current scene state chosen by marker, against the engine library of the build.
#include <gtest/gtest.h>

#include "plugin/engine/engine_extensions.h"
#include "plugin/engine/engine_tables.h"
#include "plugin/session/scene_state_select.h"
#include "plugin/session/tests/test_engine.h"

namespace {

class SceneStateSelect : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    states = static_cast<const SceneStateLibrary*>(
        FindExtensionLibrary(kExtensionSceneStates, sizeof(SceneStateLibrary)));
    ASSERT_NE(states, nullptr);
    render.document = t_ORYOS_Bd->AllocDocument();
    render.sessionOpen = true;
    render.dirty = false;
    tree = t_ORYOS_Bd->GetStateData(render.document, 0, 0);
    SceneNode* root = states->GetStateRoot(tree);
    first = states->AllocState();
    second = states->AllocState();
    t_ORYOS_At->InsertUnderLast(first, root);
    t_ORYOS_At->InsertUnderLast(second, root);
    states->SetCurrentState(tree, first);
  }
  // The render's document is the test's to free: a record never frees it on its own.
  void TearDown() override { t_ORYOS_Bl->FreeNode(render.document); }

  const SceneStateLibrary* states = nullptr;
  quillon::RenderThread render;
  SceneStateTree* tree = nullptr;
  SceneNode* first = nullptr;
  SceneNode* second = nullptr;
};

TEST_F(SceneStateSelect, TheCurrentStateAgainChangesNothingAnotherOneCounts) {
  EXPECT_TRUE(quillon::SelectSceneState(render, t_ORYOS_At->GetMarker(first), 16));
  EXPECT_FALSE(render.dirty);
  EXPECT_TRUE(quillon::SelectSceneState(render, t_ORYOS_At->GetMarker(second), 16));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(states->GetCurrentState(tree), second);
}

TEST_F(SceneStateSelect, AnUnknownMarkerOrAnotherLengthIsRefused) {
  const NodeMarker unknown{};
  EXPECT_FALSE(quillon::SelectSceneState(render, &unknown, 16));
  EXPECT_FALSE(quillon::SelectSceneState(render, t_ORYOS_At->GetMarker(second), 15));
  render.sessionOpen = false;
  EXPECT_FALSE(quillon::SelectSceneState(render, t_ORYOS_At->GetMarker(second), 16));
  EXPECT_EQ(states->GetCurrentState(tree), first);
  EXPECT_FALSE(render.dirty);
}

}  // namespace
