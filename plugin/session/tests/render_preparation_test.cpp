// The preparation steps, the framing of the view and the output settings, against the
// engine library of the build. The engine has no objects of the preparing kind and no
// scene hooks, and a document made in memory has no render view, so the tests give chosen
// nodes that kind, a hook and a render view through copies of the engine's tables, and
// record the messages and copies that the session asks for.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/session/frame_view.h"
#include "plugin/session/output_settings.h"
#include "plugin/session/render_preparation.h"
#include "plugin/session/render_settings.h"
#include "plugin/session/session_commands.h"
#include "plugin/session/tests/red_plane_document.h"
#include "plugin/session/tests/test_engine.h"

namespace {

using quillon::RenderThread;

struct Message {
  SceneNode* node;
  int32_t id;
  int32_t first;
  int32_t second;
};

// What the session asked of the engine through the recording tables.
struct EngineRecord {
  std::set<const SceneNode*> preparingKind;
  SceneNode* hook = nullptr;
  std::vector<Message> messages;
  std::vector<SceneNode*> copies;
  std::vector<BaseDocument*> freedDocuments;
  RenderThread* closeDuringCopy = nullptr;  // the render a close reaches while the copy is made
  bool hasRenderView = true;                 // the active view serves as the render view
};

EngineRecord* g_record = nullptr;
const ORYOS_At* g_engineAt = nullptr;
const ORYOS_Ge* g_engineGe = nullptr;
const ORYOS_Bd* g_engineBd = nullptr;

bool RecordedIsKindOf(const SceneNode* node, int32_t kind) {
  if (kind == quillon::kPreparingObjectKind) return g_record->preparingKind.count(node) > 0;
  return g_engineAt->IsKindOf(node, kind);
}

void RecordMessage(SceneNode* node, int32_t id, void* data) {
  const auto* words = static_cast<const int32_t*>(data);
  g_record->messages.push_back({node, id, words[0], words[1]});
}

SceneNode* RecordedClone(const SceneNode* node, int32_t flags, LinkHolder* reserved) {
  if (g_record->closeDuringCopy) g_record->closeDuringCopy->destroyPending = true;
  SceneNode* copy = g_engineAt->CloneNode(node, flags, reserved);
  g_record->copies.push_back(copy);
  return copy;
}

void RecordFree(BaseDocument* document) {
  g_record->freedDocuments.push_back(document);
  g_engineGe->FreeDocument(document);
}

SceneNode* RecordedHook(const BaseDocument*, int32_t type) {
  return type == quillon::kPreparingSceneHook ? g_record->hook : nullptr;
}

BaseView* ActiveViewAsRenderView(const BaseDocument* document) {
  return g_record->hasRenderView ? g_engineBd->GetActiveView(document) : nullptr;
}

class RenderPreparation : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    ASSERT_TRUE(caller.SelectRender(1));
    render = caller.CurrentRender();
    render->document = RedPlaneDocument();
    render->sessionOpen = true;
    RecordThroughTables();
  }
  void TearDown() override {
    t_ORYOS_At = g_engineAt;
    t_ORYOS_Ge = g_engineGe;
    t_ORYOS_Bd = g_engineBd;
    g_record = nullptr;
  }

  void RecordThroughTables() {
    g_record = &record;
    g_engineAt = t_ORYOS_At;
    g_engineGe = t_ORYOS_Ge;
    g_engineBd = t_ORYOS_Bd;
    at = *t_ORYOS_At;
    at.IsKindOf = &RecordedIsKindOf;
    at.SendNodeMessage = &RecordMessage;
    at.CloneNode = &RecordedClone;
    ge = *t_ORYOS_Ge;
    ge.FreeDocument = &RecordFree;
    bd = *t_ORYOS_Bd;
    bd.FindSceneHook = &RecordedHook;
    bd.GetRenderView = &ActiveViewAsRenderView;
    t_ORYOS_At = &at;
    t_ORYOS_Ge = &ge;
    t_ORYOS_Bd = &bd;
  }

  // A null object below `parent` (or at the top), of the preparing kind or not, with
  // display mode 2 set to `mode`.
  BaseObject* AddObject(BaseObject* parent, bool preparingKind, int32_t mode) {
    BaseObject* object = t_ORYOS_Bo->AllocObject(ObjectType_Null);
    t_ORYOS_Bd->InsertObject(render->document, object, parent, nullptr, 0, 1);
    t_ORYOS_Bo->SetMode(object, 2, mode);
    if (preparingKind) record.preparingKind.insert(object);
    return object;
  }

  int32_t ObjectCount() {
    int32_t count = 0;
    for (SceneNode* node = t_ORYOS_Bd->GetFirstObject(render->document); node; node = t_ORYOS_At->GetNext(node))
      ++count;
    return count;
  }

  EngineRecord record;
  ORYOS_At at{};
  ORYOS_Ge ge{};
  ORYOS_Bd bd{};
  quillon::SessionThread caller;
  RenderThread* render = nullptr;
};

TEST_F(RenderPreparation, HookMessagesReachTheObjectsOfTheKindWithMode2AndTheHookInOrder) {
  BaseObject* parent = AddObject(nullptr, true, 1);
  BaseObject* child = AddObject(parent, true, 1);
  AddObject(parent, true, 0);   // mode 2 not set: left out
  AddObject(parent, false, 1);  // another kind: left out
  BaseObject* last = AddObject(nullptr, true, 3);
  BaseObject* hook = t_ORYOS_Bo->AllocObject(ObjectType_Null);  // stands for the scene hook
  record.hook = hook;

  EXPECT_FALSE(quillon::RunHookMessages(*render));

  const std::vector<SceneNode*> expected{last, parent, child, hook};  // InsertObject puts each first
  ASSERT_EQ(record.messages.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(record.messages[i].node, expected[i]) << "message " << i;
    EXPECT_EQ(record.messages[i].id, quillon::kPrepareMessage);
    EXPECT_EQ(record.messages[i].first, 0);
    EXPECT_EQ(record.messages[i].second, 1);
  }
  EXPECT_FALSE(render->busy);
  t_ORYOS_Bl->FreeNode(hook);
}

TEST_F(RenderPreparation, AStepSendsAndCopiesNothingWhileBusyOrWithoutAnOpenDocument) {
  AddObject(nullptr, true, 1);
  render->busy = true;
  EXPECT_FALSE(quillon::RunHookMessages(*render));
  EXPECT_FALSE(quillon::CopyDocumentOnce(*render));
  render->busy = false;
  render->sessionOpen = false;
  EXPECT_FALSE(quillon::RunHookMessages(*render));
  EXPECT_FALSE(quillon::CopyDocumentOnce(*render));
  EXPECT_TRUE(record.messages.empty());
  EXPECT_TRUE(record.copies.empty());
  EXPECT_NE(render->document, nullptr);
}

TEST_F(RenderPreparation, TheCopyIsFreedAndTheDocumentLeftAsItWas) {
  BaseDocument* document = render->document;
  const int32_t objects = ObjectCount();

  EXPECT_FALSE(quillon::CopyDocumentOnce(*render));

  ASSERT_EQ(record.copies.size(), 1u);
  ASSERT_NE(record.copies[0], nullptr);
  EXPECT_NE(record.copies[0], document);
  EXPECT_EQ(record.freedDocuments, std::vector<BaseDocument*>{static_cast<BaseDocument*>(record.copies[0])});
  EXPECT_EQ(render->document, document);
  EXPECT_EQ(ObjectCount(), objects);
  EXPECT_TRUE(render->sessionOpen);
  EXPECT_FALSE(render->busy);
  EXPECT_FALSE(render->cloning);
}

TEST_F(RenderPreparation, ACloseDuringTheCopyDestroysTheContentsAfterIt) {
  record.closeDuringCopy = render;
  EXPECT_FALSE(quillon::CopyDocumentOnce(*render));
  EXPECT_EQ(render->document, nullptr);
  EXPECT_FALSE(render->sessionOpen);
  EXPECT_FALSE(render->destroyPending);
}

// 400 x 200 pixels: the narrower half angle is the vertical atan(0.1). The plane's bounds
// have a radius of |(200, 100, 0)| / 2 = sqrt(12500), so the camera backs off
// sqrt(12500) / sin(atan(0.1)) = sqrt(12500 * 101) from the plane's centre at z 1000.
TEST_F(RenderPreparation, FrameViewBacksTheCameraOffUntilThePlaneFitsAndMarksThePictureOld) {
  quillon::SetOutputSize(ActiveSettingsOf(render->document), 400, 200, 1, 2);
  render->dirty = false;
  Vector position{7, 7, 7};
  Vector rotation{7, 7, 7};

  EXPECT_TRUE(quillon::FrameView(*render, 0, &position, &rotation));

  EXPECT_NEAR(position.x, 0.0, 1e-9);
  EXPECT_NEAR(position.y, 0.0, 1e-9);
  EXPECT_NEAR(position.z, 1000.0 - std::sqrt(12500.0 * 101.0), 1e-6);
  EXPECT_NEAR(rotation.x, 0.0, 1e-12);
  EXPECT_NEAR(rotation.y, 0.0, 1e-12);
  EXPECT_NEAR(rotation.z, 0.0, 1e-12);
  EXPECT_TRUE(render->dirty);
}

TEST_F(RenderPreparation, FrameViewWithoutARenderViewFillsNothingButMarksThePictureOld) {
  record.hasRenderView = false;
  render->dirty = false;
  Vector position{7, 7, 7};
  EXPECT_TRUE(quillon::FrameView(*render, 0, &position, nullptr));
  EXPECT_EQ(position.z, 7.0);
  EXPECT_TRUE(render->dirty);
}

TEST_F(RenderPreparation, FrameViewWithoutAnOpenDocumentChangesNothing) {
  render->sessionOpen = false;
  render->dirty = false;
  Vector position{7, 7, 7};
  EXPECT_TRUE(quillon::FrameView(*render, 0, &position, nullptr));
  EXPECT_EQ(position.z, 7.0);
  EXPECT_FALSE(render->dirty);
}

struct OutputSizeCase {
  double width, height, pixelAspect, filmAspect;
  double storedWidth, storedHeight;
};

class OutputSize : public testing::TestWithParam<OutputSizeCase> {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
};

TEST_P(OutputSize, ReadsBackAsSetWithASideNotAbove0AsOne) {
  const OutputSizeCase& c = GetParam();
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  ParamContainer* settings = ActiveSettingsOf(document);
  ASSERT_NE(settings, nullptr);
  quillon::SetOutputSize(settings, c.width, c.height, c.pixelAspect, c.filmAspect);
  EXPECT_EQ(GetSettingsFloat(settings, RenderParam_Width), c.storedWidth);
  EXPECT_EQ(GetSettingsFloat(settings, RenderParam_Height), c.storedHeight);
  EXPECT_EQ(GetSettingsFloat(settings, RenderParam_PixelAspect), c.pixelAspect);
  EXPECT_EQ(GetSettingsFloat(settings, RenderParam_FilmAspect), c.filmAspect);
  t_ORYOS_Ge->FreeDocument(document);
}

INSTANTIATE_TEST_SUITE_P(Sizes, OutputSize,
                         testing::Values(OutputSizeCase{640, 360, 1.5, 1.7778, 640, 360},
                                         OutputSizeCase{0, 360, 1, 1, 1, 360},
                                         OutputSizeCase{640, -2, 1, 1, 640, 1},
                                         OutputSizeCase{0.5, 1e-9, 1, 1, 0.5, 1e-9}));

TEST_F(OutputSize, FrameRangeReadsBackAsSet) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  ParamContainer* settings = ActiveSettingsOf(document);
  ASSERT_NE(settings, nullptr);
  quillon::SetFrameRange(settings, 2, 25, BaseTime(10, 25), BaseTime(49, 25), 3);
  EXPECT_EQ(t_ORYOS_Bc->GetInt32(settings, RenderParam_FrameSequence, -1), 2);
  EXPECT_EQ(GetSettingsFloat(settings, RenderParam_FrameRate), 25.0);
  BaseTime from;
  BaseTime to;
  t_ORYOS_Bc->GetTime(settings, &from, RenderParam_FrameFrom, nullptr);
  t_ORYOS_Bc->GetTime(settings, &to, RenderParam_FrameTo, nullptr);
  EXPECT_EQ(from.numerator / from.denominator, 10.0 / 25.0);
  EXPECT_EQ(to.numerator / to.denominator, 49.0 / 25.0);
  EXPECT_EQ(t_ORYOS_Bc->GetInt32(settings, quillon::kRenderSettingFrameRangeValue, -1), 3);
  t_ORYOS_Ge->FreeDocument(document);
}

}  // namespace
