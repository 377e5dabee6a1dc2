// Update documents and direct operations on a render's document, against the engine library
// of the build: what each changes, and when the picture counts as out of date (`dirty`).
#include <gtest/gtest.h>

#include <string>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/camera_values.h"
#include "plugin/session/direct_operations.h"
#include "plugin/session/document_update.h"
#include "plugin/session/owned_container.h"
#include "plugin/session/tests/test_engine.h"
#include "plugin/session/update_params.h"

namespace {

using quillon::RenderThread;

class DocumentUpdate : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    render.document = t_ORYOS_Bd->AllocDocument();
    camera = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
    const Vector origin{0, 0, 0};
    t_ORYOS_Bo->SetPosition(camera, &origin);
    t_ORYOS_Bd->InsertObject(render.document, camera, nullptr, nullptr, 0, 1);
    t_ORYOS_Br->SetSceneCamera(t_ORYOS_Bd->GetActiveView(render.document), camera, 0);
    render.dirty = false;
    update = t_ORYOS_Bd->AllocDocument();
  }
  // The render's document is the test's to free: a record never frees it on its own.
  void TearDown() override {
    if (render.document && render.document != update) t_ORYOS_Bl->FreeNode(render.document);
    if (update) t_ORYOS_Bl->FreeNode(update);
  }

  // Applies `update` under the channel `name`; the update stays the test's.
  bool Apply(const char* name) {
    const OwnedFilename file(name);
    return quillon::UpdateDocument(render, file.value, nullptr, 0, update);
  }

  BaseObject* UpdateCamera(const Vector& position) {
    BaseObject* sent = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
    t_ORYOS_Bo->SetPosition(sent, &position);
    t_ORYOS_Bd->InsertObject(update, sent, nullptr, nullptr, 0, 1);
    return sent;
  }

  Vector CameraPosition() const {
    Vector position;
    t_ORYOS_Bo->GetPosition(camera, &position);
    return position;
  }

  RenderThread render;
  BaseObject* camera = nullptr;
  BaseDocument* update = nullptr;
};

TEST_F(DocumentUpdate, ACameraWithTheSameValuesIsCopiedAndLeavesThePictureGood) {
  UpdateCamera({0, 0, 0});
  ASSERT_TRUE(Apply("__updc"));
  EXPECT_FALSE(render.dirty);
}

TEST_F(DocumentUpdate, ACameraElsewhereMovesTheViewedCamera) {
  UpdateCamera({100, 0, 0});
  ASSERT_TRUE(Apply("__updc"));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(CameraPosition(), (Vector{100, 0, 0}));
}

// The copy gives the viewed camera the tags of the one sent; a target among them that
// lies in the document is let go, so the camera keeps the direction it was sent with.
TEST_F(DocumentUpdate, ATargetTheCopiedCameraAimsAtIsLetGoAndThatCounts) {
  BaseObject* aim = t_ORYOS_Bo->AllocObject(ObjectType_Null);
  t_ORYOS_Bd->InsertObject(render.document, aim, nullptr, camera, 0, 1);
  BaseObject* sent = UpdateCamera({0, 0, 0});
  BaseTag* tag = MakeTag(sent, TagType_Target, nullptr);
  t_ORYOS_Bc->SetLink(t_ORYOS_Bl->GetDataInstance(tag), TargetTagParam_Target, aim);
  BaseTag* own = MakeTag(camera, TagType_Target, nullptr);
  t_ORYOS_Bc->SetLink(t_ORYOS_Bl->GetDataInstance(own), TargetTagParam_Target, aim);
  ASSERT_TRUE(Apply("__updc"));
  EXPECT_TRUE(render.dirty);
  BaseTag* kept = t_ORYOS_Bo->GetTag(camera, TagType_Target, 0);
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(t_ORYOS_Bc->GetLink(t_ORYOS_Bl->GetDataInstance(kept), TargetTagParam_Target, render.document, 0), nullptr);
}

TEST_F(DocumentUpdate, AnInsertedCameraIsLookedThroughByTheViews) {
  BaseObject* sent = UpdateCamera({5, 0, 0});
  t_ORYOS_Bc->SetBool(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, true);
  ASSERT_TRUE(Apply("__updc"));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(t_ORYOS_Bd->GetFirstObject(render.document), sent);
  EXPECT_EQ(t_ORYOS_Br->GetSceneCamera(t_ORYOS_Bd->GetActiveView(render.document), render.document), sent);
}

TEST_F(DocumentUpdate, ACameraUpdateWhoseFirstObjectIsNoCameraIsDropped) {
  t_ORYOS_Bd->InsertObject(update, t_ORYOS_Bo->AllocObject(ObjectType_Null), nullptr, nullptr, 0, 1);
  EXPECT_TRUE(Apply("__updc"));
  EXPECT_FALSE(render.dirty);
}

TEST_F(DocumentUpdate, TheSameMomentInAnotherFractionChangesNothing) {
  SetTimeParam(render.document, DocParam_Time, BaseTime(1, 2));
  BaseTime* time = t_ORYOS_Bd->GetDocumentTime(update);
  time->numerator = 2;
  time->denominator = 4;
  ASSERT_TRUE(Apply("__updt"));
  EXPECT_FALSE(render.dirty);
  SetTimeParam(update, DocParam_Time, BaseTime(3, 4));
  ASSERT_TRUE(Apply("__updt"));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(*t_ORYOS_Bd->GetDocumentTime(render.document), BaseTime(3, 4));
}

TEST_F(DocumentUpdate, RenderSettingsEqualToTheCurrentOnesChangeNothing) {
  RenderData* current = t_ORYOS_Bd->GetActiveSettings(render.document);
  ASSERT_TRUE(Apply("__updr"));
  EXPECT_FALSE(render.dirty);
  EXPECT_EQ(t_ORYOS_Bd->GetActiveSettings(render.document), current);
}

TEST_F(DocumentUpdate, OtherRenderSettingsTakeThePlaceOfTheCurrentOnes) {
  RenderData* sent = t_ORYOS_Bd->GetActiveSettings(update);
  SetFloatParam(sent, 5008, 640);
  ASSERT_TRUE(Apply("__updr"));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(t_ORYOS_Bd->GetActiveSettings(render.document), sent);
}

TEST_F(DocumentUpdate, AnEmptyLayerListHidesObjectsOnNoLayerButKeepsWhatTheDocumentHid) {
  BaseObject* hidden = t_ORYOS_Bo->AllocObject(ObjectType_Null);
  t_ORYOS_Bo->SetMode(hidden, 1, 1);
  t_ORYOS_Bd->InsertObject(render.document, hidden, nullptr, nullptr, 0, 1);
  OwnedContainer list;
  t_ORYOS_Bc->SetInt32(&list.value, kLayerListCount, 0);
  t_ORYOS_Bc->SetBool(&list.value, kLayerListObjectsWithoutLayerVisible, false);
  t_ORYOS_Bc->SetContainer(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, &list.value);
  ASSERT_TRUE(Apply("__updl"));
  EXPECT_TRUE(render.dirty);
  EXPECT_EQ(t_ORYOS_Bo->GetMode(camera, 1), 1);
  // Shown again: the camera comes back, the object the document hid stays hidden.
  t_ORYOS_Bc->SetBool(&list.value, kLayerListObjectsWithoutLayerVisible, true);
  t_ORYOS_Bc->SetContainer(t_ORYOS_Bl->GetDataInstance(update), ParamKey_UpdateData, &list.value);
  ASSERT_TRUE(Apply("__updl"));
  EXPECT_EQ(t_ORYOS_Bo->GetMode(camera, 1), 0);
  EXPECT_EQ(t_ORYOS_Bo->GetMode(hidden, 1), 1);
}

TEST_F(DocumentUpdate, AnUpdateWithoutADocumentIsDropped) {
  t_ORYOS_Bl->FreeNode(render.document);
  render.document = nullptr;
  UpdateCamera({1, 0, 0});
  EXPECT_FALSE(Apply("__updc"));
}

TEST_F(DocumentUpdate, CameraValuesNeedARenderView) {
  // A document made in memory has an active view but no render view.
  EXPECT_FALSE(quillon::SetCameraValues(render, quillon::CameraValues{}, false));
  EXPECT_FALSE(render.dirty);
}

TEST_F(DocumentUpdate, KeepingCachesAndTurningThemOffDropsTheTextures) {
  Filename file{nullptr};
  t_ORYOS_Fn->FilenameInit(&file);
  render.textures.emplace(u"a.png", file);
  EXPECT_TRUE(quillon::SetKeepCaches(render, true));
  EXPECT_TRUE(quillon::SetKeepCaches(render, true));
  EXPECT_EQ(render.textures.size(), 1u);
  EXPECT_TRUE(quillon::SetKeepCaches(render, false));
  EXPECT_TRUE(render.textures.empty());
  EXPECT_FALSE(render.dirty);
}

TEST_F(DocumentUpdate, ATimeSetDirectlyAlwaysCounts) {
  EXPECT_TRUE(quillon::SetTime(render, BaseTime(0, 1)));
  EXPECT_TRUE(render.dirty);
}

TEST_F(DocumentUpdate, ACameraByUniqueIdIsLookedThroughWithoutMakingThePictureOld) {
  BaseObject* other = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
  t_ORYOS_At->SetUniqueId(other, 3, "cam", 3);
  t_ORYOS_Bd->InsertObject(render.document, other, nullptr, nullptr, 0, 1);
  EXPECT_FALSE(quillon::SelectCamera(render, 3, "nothing"));
  EXPECT_TRUE(quillon::SelectCamera(render, 3, "cam"));
  EXPECT_FALSE(render.dirty);
  EXPECT_EQ(quillon::GetCamera(render), other);
}

TEST_F(DocumentUpdate, AnObjectSelectedByUniqueIdBecomesActiveAndTakesTheActiveSetters) {
  render.sessionOpen = true;
  BaseObject* picked = t_ORYOS_Bo->AllocObject(ObjectType_Null);
  t_ORYOS_At->SetUniqueId(picked, 3, "pick", 4);
  t_ORYOS_Bd->InsertObject(render.document, picked, nullptr, nullptr, 0, 1);
  EXPECT_FALSE(quillon::SetActivePosition(render, {1, 2, 3}));
  EXPECT_FALSE(quillon::SelectObject(render, 3, "nothing", 0));
  ASSERT_TRUE(quillon::SelectObject(render, 3, "pick", 0));
  EXPECT_FALSE(render.dirty);
  EXPECT_TRUE(quillon::SetActivePosition(render, {1, 2, 3}));
  EXPECT_EQ(t_ORYOS_Bo->GetLocalMatrix(picked)->off, (Vector{1, 2, 3}));
  EXPECT_TRUE(quillon::SetActiveScale(render, {2, 2, 2}));
  Vector scale;
  t_ORYOS_Bo->GetScale(picked, &scale);
  EXPECT_EQ(scale, (Vector{2, 2, 2}));
  EXPECT_TRUE(quillon::SetActiveRotation(render, {0.5, 0, 0}, 6));
  EXPECT_EQ(t_ORYOS_Bo->GetRotationOrder(picked), 6);
  EXPECT_FALSE(render.dirty);
}

TEST_F(DocumentUpdate, SelectingAnObjectCountsWhenTheSettingsDrawActiveObjectsApart) {
  render.sessionOpen = true;
  SetInt32Param(t_ORYOS_Bd->GetActiveSettings(render.document), 5300, 300001061);
  t_ORYOS_At->SetUniqueId(camera, 3, "cam", 3);
  ASSERT_TRUE(quillon::SelectObject(render, 3, "cam", 0));
  EXPECT_TRUE(render.dirty);
}

}  // namespace
