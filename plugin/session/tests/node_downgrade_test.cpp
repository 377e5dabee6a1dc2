// Copies of nodes through scene files of older versions, against the engine library of the
// build: the older versions hold no unique ids, the current one does.
#include <gtest/gtest.h>

#include <string>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/node_downgrade.h"
#include "plugin/session/tests/test_engine.h"

namespace {

using quillon::DowngradeNode;
using quillon::FileVersionOfIndex;

TEST(FileVersionOfIndex, NamesTheOlderVersionsAndTheCurrentOneForAnythingElse) {
  EXPECT_EQ(FileVersionOfIndex(1), 14034);
  EXPECT_EQ(FileVersionOfIndex(6), 19039);
  EXPECT_EQ(FileVersionOfIndex(11), 24111);
  EXPECT_EQ(FileVersionOfIndex(0), 25117);
  EXPECT_EQ(FileVersionOfIndex(12), 25117);
  EXPECT_EQ(FileVersionOfIndex(-1), 25117);
}

class NodeDowngrade : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }

  static bool HasId(const SceneNode* node) {
    const void* data = nullptr;
    int32_t size = 0;
    return t_ORYOS_At->FindUniqueId(node, 7, &data, &size) && data;
  }
  static BaseObject* IdentifiedNull(const char* name) {
    BaseObject* object = t_ORYOS_Bo->AllocObject(ObjectType_Null);
    SetNodeName(object, name);
    t_ORYOS_At->SetUniqueId(object, 7, "id", 2);
    return object;
  }
};

TEST_F(NodeDowngrade, AnOlderVersionDropsTheUniqueIdAndKeepsTheRest) {
  BaseObject* object = IdentifiedNull("Kept");
  SceneNode* old = DowngradeNode(object, 1);
  SceneNode* current = DowngradeNode(object, 0);
  ASSERT_NE(old, nullptr);
  ASSERT_NE(current, nullptr);
  EXPECT_EQ(NodeName(old), "Kept");
  EXPECT_FALSE(HasId(old));
  EXPECT_EQ(NodeName(current), "Kept");
  EXPECT_TRUE(HasId(current));
  EXPECT_EQ(t_ORYOS_At->GetUp(old), nullptr);
  for (SceneNode* node : {static_cast<SceneNode*>(object), old, current}) t_ORYOS_Bl->FreeNode(node);
}

TEST_F(NodeDowngrade, ATagComesBackAsATagOfItsType) {
  BaseTag* tag = t_ORYOS_Tg->AllocTag(TagType_Texture, 0);
  SceneNode* copy = DowngradeNode(tag, 3);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(t_ORYOS_At->GetType(copy), TagType_Texture);
  t_ORYOS_Bl->FreeNode(copy);
  t_ORYOS_Bl->FreeNode(tag);
}

TEST_F(NodeDowngrade, AMaterialEndsOutsideItsDocumentAndItsCopyComesBack) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  Material* material = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
  SetNodeName(material, "Paint");
  t_ORYOS_Bd->InsertMaterial(document, material, nullptr, 0);
  SceneNode* copy = DowngradeNode(material, 11);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(NodeName(copy), "Paint");
  EXPECT_EQ(t_ORYOS_Bd->GetFirstMaterial(document), nullptr);
  for (SceneNode* node : {static_cast<SceneNode*>(material), copy, static_cast<SceneNode*>(document)})
    t_ORYOS_Bl->FreeNode(node);
}

TEST_F(NodeDowngrade, ADocumentComesBackWhole) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  t_ORYOS_Bd->InsertObject(document, IdentifiedNull("A"), nullptr, nullptr, 0, 1);
  SceneNode* copy = DowngradeNode(document, 2);
  ASSERT_NE(copy, nullptr);
  BaseObject* first = t_ORYOS_Bd->GetFirstObject(static_cast<BaseDocument*>(copy));
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(NodeName(first), "A");
  EXPECT_FALSE(HasId(first));
  t_ORYOS_Bl->FreeNode(copy);
  t_ORYOS_Bl->FreeNode(document);
}

TEST_F(NodeDowngrade, NothingGivesNothing) { EXPECT_EQ(DowngradeNode(nullptr, 1), nullptr); }

}  // namespace
