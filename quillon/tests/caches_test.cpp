// EvaluateDocument: animation at the document's time and the caches of the
// instance object, the duplicator, the chain generators and deformed objects.
#include <gtest/gtest.h>

#include "quillon/model/evaluate.h"
#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

class CachesTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  ~CachesTest() override { Bl()->FreeNode(document); }

  BaseObject* Insert(int32_t type, BaseObject* parent = nullptr, Vector position = {}) {
    BaseObject* object = Bo()->AllocObject(type);
    Bo()->SetPosition(object, &position);
    Bd()->InsertObject(document, object, parent, nullptr, 0, 1);
    return object;
  }

  void Evaluate() { ASSERT_TRUE(Bd()->EvaluateDocument(document, 0, 1, 1, 1, 4)); }
};

TEST_F(CachesTest, InstanceCacheIsAMarkedCopyOfTheReference) {
  BaseObject* reference = Insert(ObjectType_Plane, nullptr, {50, 0, 0});
  Insert(ObjectType_Null, reference);
  BaseObject* instance = Insert(ObjectType_Instance);
  bool done = false;
  Extension<InstanceLibrary>(kExtensionInstance)->SetInstanceReference(instance, &done, reference);
  ASSERT_TRUE(done);
  EXPECT_EQ(Bo()->GetGeneratorCache(instance), nullptr);
  Evaluate();

  BaseObject* cache = Bo()->GetGeneratorCache(instance);
  ASSERT_NE(cache, nullptr);
  EXPECT_EQ(Bl()->GetNodeType(cache), ObjectType_Plane);
  EXPECT_EQ(At()->GetUp(cache), instance);
  EXPECT_NE(Bl()->GetInfoBits(cache) & kInfoBitFromCache, 0u);
  SceneNode* copiedChild = At()->GetDown(cache);
  ASSERT_NE(copiedChild, nullptr);
  EXPECT_NE(Bl()->GetInfoBits(copiedChild) & kInfoBitFromCache, 0u);
  // The copy stands at the instance's place; the original is untouched.
  Vector position;
  Bo()->GetPosition(cache, &position);
  EXPECT_EQ(position.x, 0.0);
  EXPECT_EQ(Bl()->GetInfoBits(reference) & kInfoBitFromCache, 0u);
  EXPECT_EQ(At()->GetDown(instance), nullptr);
}

TEST_F(CachesTest, DuplicatorHoldsOffsetCopiesOfItsChildren) {
  BaseObject* generator = Insert(ObjectType_Duplicator);
  BaseObject* plane = Insert(ObjectType_Plane, generator, {5, 0, 0});
  BaseObject* tagged = Bo()->AllocObject(ObjectType_Null);
  At()->InsertAfter(tagged, plane);
  Bo()->InsertTag(tagged, Tg()->AllocTag(TagType_Compositing, 0), nullptr);
  Bc()->SetInt32(Bl()->GetDataInstance(generator), DuplicatorParam_Count, 3);
  Evaluate();

  BaseObject* cache = Bo()->GetGeneratorCache(generator);
  ASSERT_NE(cache, nullptr);
  std::vector<SceneNode*> copies;
  for (SceneNode* node = At()->GetDown(cache); node; node = At()->GetNext(node)) copies.push_back(node);
  ASSERT_EQ(copies.size(), 6u);
  Vector third;
  Bo()->GetPosition(static_cast<BaseObject*>(copies[4]), &third);
  EXPECT_EQ(third.x, 205.0);  // 5 + 2 * the default offset of 100
  EXPECT_NE(Bo()->GetTag(static_cast<BaseObject*>(copies[5]), TagType_Compositing, 0), nullptr);
  EXPECT_NE(Bl()->GetInfoBits(copies[5]) & kInfoBitFromCache, 0u);
}

TEST_F(CachesTest, ChainGeneratorsAndDeformersBuildTheirCaches) {
  BaseObject* chain = Insert(ObjectType_ChainGeneratorA);
  BaseObject* inner = Insert(ObjectType_ChainGeneratorB, chain);
  Insert(ObjectType_Null, inner);
  BaseObject* text = Insert(ObjectType_Text);
  Insert(ObjectType_Deformer, text);
  Evaluate();

  BaseObject* cache = Bo()->GetGeneratorCache(chain);
  ASSERT_NE(cache, nullptr);
  auto* innerCopy = static_cast<BaseObject*>(At()->GetDown(cache));
  ASSERT_NE(innerCopy, nullptr);
  EXPECT_EQ(Bl()->GetNodeType(innerCopy), ObjectType_ChainGeneratorB);
  EXPECT_NE(Bl()->GetInfoBits(innerCopy) & kInfoBitFromCache, 0u);
  // Generators inside a cache have caches of their own.
  EXPECT_NE(Bo()->GetGeneratorCache(innerCopy), nullptr);

  BaseObject* deformed = Bo()->GetDeformCache(text);
  ASSERT_NE(deformed, nullptr);
  EXPECT_EQ(Bl()->GetNodeType(deformed), ObjectType_Text);
  EXPECT_NE(Bl()->GetInfoBits(deformed) & kInfoBitFromCache, 0u);
  EXPECT_EQ(Bo()->GetGeneratorCache(text), nullptr);
}

TEST_F(CachesTest, CachesBelongToTheirGenerator) {
  BaseObject* generator = Insert(ObjectType_ChainGeneratorA);
  Insert(ObjectType_Null, generator);
  Evaluate();
  BaseObject* cache = Bo()->GetGeneratorCache(generator);
  ASSERT_NE(cache, nullptr);
  At()->Remove(cache);
  At()->InsertUnder(cache, generator);
  EXPECT_EQ(At()->GetUp(cache), generator);
  EXPECT_NE(At()->GetDown(generator), cache);
  Bl()->FreeNode(cache);
  EXPECT_EQ(Bo()->GetGeneratorCache(generator), nullptr);
}

TEST_F(CachesTest, AnInstanceOfItsOwnAncestorStops) {
  BaseObject* parent = Insert(ObjectType_Null);
  BaseObject* instance = Insert(ObjectType_Instance, parent);
  bool done = false;
  Extension<InstanceLibrary>(kExtensionInstance)->SetInstanceReference(instance, &done, parent);
  ASSERT_TRUE(done);
  Evaluate();
  EXPECT_NE(Bo()->GetGeneratorCache(instance), nullptr);
}

TEST_F(CachesTest, EvaluationAnimatesAtTheDocumentTime) {
  BaseObject* object = Insert(ObjectType_Null, nullptr, {99, 0, 0});
  Path positionX(ObjectParam_Position, DataKind_Vector, VectorComponent_X, DataKind_Float);
  AnimTrack* track = CA()->AllocTrack(object, &positionX.id);
  Bl()->InsertTrack(object, track);
  AnimCurve* curve = CA()->GetCurve(track, 1, true);
  BaseTime start(0, 30), later(10, 30);
  CA()->SetKeyValue(CA()->AddKey(curve, &start, nullptr, 0, 0), curve, 3.0);
  CA()->SetKeyValue(CA()->AddKey(curve, &later, nullptr, 0, 0), curve, 10.0);
  Evaluate();
  Vector position;
  Bo()->GetPosition(object, &position);
  EXPECT_EQ(position.x, 3.0);
}

TEST_F(CachesTest, ReleaseCacheCheckPreparesALoneGenerator) {
  BaseObject* generator = Bo()->AllocObject(ObjectType_Duplicator);
  BaseObject* child = Bo()->AllocObject(ObjectType_Null);
  At()->InsertUnder(child, generator);
  Bo()->ReleaseCacheCheck(generator);
  EXPECT_NE(Bo()->GetGeneratorCache(generator), nullptr);
  Bl()->FreeNode(generator);
}

}  // namespace
}  // namespace quillon::testing
