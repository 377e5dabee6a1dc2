// Differences merged into a document by unique ids, against the engine library of the build.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/element_merge.h"
#include "plugin/session/tests/test_engine.h"

namespace {

constexpr int32_t kApplication = 7;

class ElementMerge : public testing::Test {
 protected:
  static void SetUpTestSuite() { session_test::StartBuildEngine(); }
  void SetUp() override {
    target_ = t_ORYOS_Bd->AllocDocument();
    update_ = t_ORYOS_Bd->AllocDocument();
  }
  void TearDown() override {
    t_ORYOS_Bl->FreeNode(target_);
    t_ORYOS_Bl->FreeNode(update_);
  }

  // An object or material named `name` with the unique id `id` (none when empty), last in
  // its list of `document`.
  static BaseObject* AddObject(BaseDocument* document, const std::string& name, const std::string& id) {
    BaseObject* object = t_ORYOS_Bo->AllocObject(ObjectType_Null);
    Identify(object, name, id);
    t_ORYOS_Bd->InsertObject(document, object, nullptr,
                             static_cast<BaseObject*>(Last(t_ORYOS_Bd->GetFirstObject(document))), 0, 1);
    return object;
  }
  static Material* AddMaterial(BaseDocument* document, const std::string& name, const std::string& id) {
    Material* material = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
    Identify(material, name, id);
    t_ORYOS_Bd->InsertMaterial(document, material, static_cast<Material*>(Last(t_ORYOS_Bd->GetFirstMaterial(document))),
                               0);
    return material;
  }
  static void Identify(SceneNode* node, const std::string& name, const std::string& id) {
    SetNodeName(node, name);
    if (!id.empty()) t_ORYOS_At->SetUniqueId(node, kApplication, id.data(), static_cast<int32_t>(id.size()));
  }
  static SceneNode* Last(SceneNode* first) {
    while (first && t_ORYOS_At->GetNext(first)) first = t_ORYOS_At->GetNext(first);
    return first;
  }
  static std::vector<std::string> Names(SceneNode* first) {
    std::vector<std::string> names;
    for (SceneNode* node = first; node; node = t_ORYOS_At->GetNext(node)) names.push_back(NodeName(node));
    return names;
  }
  std::vector<std::string> ObjectNames() const { return Names(t_ORYOS_Bd->GetFirstObject(target_)); }
  std::vector<std::string> MaterialNames() const { return Names(t_ORYOS_Bd->GetFirstMaterial(target_)); }

  bool Merge() { return quillon::MergeDifference(kApplication, update_, target_); }

  BaseDocument* target_ = nullptr;
  BaseDocument* update_ = nullptr;
};

TEST_F(ElementMerge, AKnownIdReplacesItsTwinInPlaceAndLinksFollow) {
  AddObject(target_, "A", "a");
  AddObject(target_, "B", "b");
  AddObject(target_, "C", "c");
  AddMaterial(target_, "Red", "red");
  AddMaterial(target_, "Green", "green");
  AddObject(update_, "B2", "b");
  AddMaterial(update_, "Blue", "green");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"A", "B2", "C"}));
  EXPECT_EQ(MaterialNames(), (std::vector<std::string>{"Red", "Blue"}));
}

TEST_F(ElementMerge, WhatLinkedToAReplacedMaterialLinksToTheNewOne) {
  BaseObject* plane = AddObject(target_, "Plane", "");
  Material* red = AddMaterial(target_, "Red", "red");
  BaseTag* tag = LinkMaterialTag(plane, red);
  Material* blue = AddMaterial(update_, "Blue", "red");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(t_ORYOS_Bc->GetLink(t_ORYOS_Bl->GetDataInstance(tag), TextureTagParam_Material, target_, 0), blue);
}

TEST_F(ElementMerge, NewObjectsWithIdsKeepTheirOrderAndThoseWithoutComeReversedAtTheTop) {
  AddObject(target_, "Old", "old");
  AddObject(update_, "N1", "n1");
  AddObject(update_, "N2", "n2");
  AddObject(update_, "X1", "");
  AddObject(update_, "X2", "");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"X2", "X1", "N1", "N2", "Old"}));
  EXPECT_EQ(t_ORYOS_Bd->GetFirstObject(update_), nullptr);
}

TEST_F(ElementMerge, DeleteRemovesTheTwinAndStaysInTheUpdate) {
  AddObject(target_, "A", "a");
  AddObject(target_, "B", "b");
  AddObject(update_, "---delete", "a");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"B"}));
  EXPECT_EQ(Names(t_ORYOS_Bd->GetFirstObject(update_)), (std::vector<std::string>{"---delete"}));
}

TEST_F(ElementMerge, DeleteWithAnUnknownIdIsInsertedAsANewElementOfThatName) {
  AddObject(target_, "A", "a");
  AddObject(update_, "---delete", "z");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"---delete", "A"}));
}

TEST_F(ElementMerge, APlaceholderMaterialPointsItsLinksAtTheExistingOneAndGoes) {
  Material* red = AddMaterial(target_, "Red", "red");
  Material* placeholder = AddMaterial(update_, "---XMATLINK", "red");
  BaseObject* plane = AddObject(update_, "Plane", "plane");
  BaseTag* tag = LinkMaterialTag(plane, placeholder);
  ASSERT_TRUE(Merge());
  EXPECT_EQ(MaterialNames(), (std::vector<std::string>{"Red"}));
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"Plane"}));
  EXPECT_EQ(t_ORYOS_Bc->GetLink(t_ORYOS_Bl->GetDataInstance(tag), TextureTagParam_Material, target_, 0), red);
}

TEST_F(ElementMerge, IdsOfAnotherApplicationAreNotLookedAt) {
  AddObject(target_, "A", "a");
  AddObject(update_, "A2", "a");
  ASSERT_TRUE(quillon::MergeDifference(kApplication + 1, update_, target_));
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"A2", "A"}));
}

TEST_F(ElementMerge, AnIdOfAChildIsFoundAndReplacedBelowItsParent) {
  BaseObject* parent = AddObject(target_, "Parent", "");
  BaseObject* child = t_ORYOS_Bo->AllocObject(ObjectType_Null);
  Identify(child, "Child", "child");
  t_ORYOS_At->InsertUnder(child, parent);
  AddObject(update_, "Child2", "child");
  ASSERT_TRUE(Merge());
  EXPECT_EQ(ObjectNames(), (std::vector<std::string>{"Parent"}));
  EXPECT_EQ(Names(t_ORYOS_At->GetDown(parent)), (std::vector<std::string>{"Child2"}));
}

TEST_F(ElementMerge, NullDocumentsMergeNothing) {
  EXPECT_FALSE(quillon::MergeDifference(kApplication, nullptr, target_));
  EXPECT_FALSE(quillon::MergeDifference(kApplication, update_, nullptr));
}

}  // namespace
