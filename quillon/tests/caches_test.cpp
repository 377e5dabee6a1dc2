// EvaluateDocument: animation at the document's time and the caches of the
// instance object, the duplicator, the chain generators and deformed objects.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "quillon/model/evaluate.h"
#include "quillon/model/links.h"
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

// Its copy would hold the instance again, and that copy another one: the document is refused and
// nothing is built.
TEST_F(CachesTest, AnInstanceOfItsOwnAncestorIsRefused) {
  BaseObject* parent = Insert(ObjectType_Null);
  BaseObject* instance = Insert(ObjectType_Instance, parent);
  bool done = false;
  Extension<InstanceLibrary>(kExtensionInstance)->SetInstanceReference(instance, &done, parent);
  ASSERT_TRUE(done);
  EXPECT_FALSE(Bd()->EvaluateDocument(document, 0, 1, 1, 1, 4));
  EXPECT_EQ(Bo()->GetGeneratorCache(instance), nullptr);
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

// The limits of the caches, on the model itself, with the message that names the object.
class CacheLimitsTest : public ::testing::Test {
 protected:
  std::unique_ptr<Document> document = NewDocument();

  Object* Add(int32_t type, const char16_t* name, Node* parent = nullptr) {
    auto object = std::make_unique<Object>(type);
    object->name = name;
    Object* added = object.get();
    InsertLastUnder(object.release(), parent ? parent : document->objects.get());
    return added;
  }

  Object* AddInstanceOf(Object& reference, const char16_t* name, Node* parent) {
    Object* instance = Add(ObjectType_Instance, name, parent);
    SetLinkId(instance->params[InstanceParam_Reference].raw, LinkIdOf(&reference));
    return instance;
  }
};

TEST_F(CacheLimitsTest, ThreeInstancesOfTheirOwnParentAreRefusedAtTheFirst) {
  Object* group = Add(ObjectType_Null, u"Group");
  for (const char16_t* name : {u"A", u"B", u"C"}) AddInstanceOf(*group, name, group);
  EXPECT_EQ(EvaluateDocumentCaches(*document),
            "object \"A\": an instance of object \"Group\", which holds the instance itself, directly or through "
            "other instances");
  EXPECT_EQ(group->firstChild->nodeClass, NodeClass::Object);
  EXPECT_EQ(AsObject(group->firstChild)->generatorCache, nullptr);
}

TEST_F(CacheLimitsTest, InstancesThatReachEachOtherThroughTheirCopiesAreRefused) {
  Object* left = Add(ObjectType_Null, u"Left");
  Object* right = Add(ObjectType_Null, u"Right");
  AddInstanceOf(*right, u"ToRight", left);
  AddInstanceOf(*left, u"ToLeft", right);
  const std::string problem = EvaluateDocumentCaches(*document);
  EXPECT_NE(problem.find("which holds the instance itself, directly or through other instances"), std::string::npos)
      << problem;
}

struct DuplicatorCount {
  int32_t count;
  bool evaluated;
};

class DuplicatorCounts : public CacheLimitsTest, public ::testing::WithParamInterface<DuplicatorCount> {};

TEST_P(DuplicatorCounts, ADuplicatorMakesAtMostItsLimitOfCopies) {
  Object* duplicator = Add(ObjectType_Duplicator, u"Copies");
  SetInt32(duplicator->params[DuplicatorParam_Count].raw, GetParam().count);
  Add(ObjectType_Null, u"Copy", duplicator);
  const std::string problem = EvaluateDocumentCaches(*document);
  if (GetParam().evaluated) {
    EXPECT_EQ(problem, "");
    ASSERT_NE(duplicator->generatorCache, nullptr);
    EXPECT_EQ(static_cast<int32_t>(ChildrenOf(duplicator->generatorCache.get()).size()), GetParam().count);
  } else {
    EXPECT_EQ(problem, "object \"Copies\": a duplicator makes 0 to 10000 copies, not " +
                           std::to_string(GetParam().count));
    EXPECT_EQ(duplicator->generatorCache, nullptr);
  }
}

INSTANTIATE_TEST_SUITE_P(Counts, DuplicatorCounts,
                         ::testing::Values(DuplicatorCount{0, true}, DuplicatorCount{kMaxDuplicates, true},
                                           DuplicatorCount{kMaxDuplicates + 1, false},
                                           DuplicatorCount{std::numeric_limits<int32_t>::max(), false},
                                           DuplicatorCount{-1, false}));

// No loop, but each level holds ten copies of the one below: six levels would make a million
// objects. The evaluation stops at its limit and builds nothing.
TEST_F(CacheLimitsTest, CopiesOfCopiesStopAtTheLimitOfGeneratedObjects) {
  Object* below = Add(ObjectType_Null, u"Level0");
  for (int i = 0; i < 9; ++i) Add(ObjectType_Null, u"Leaf", below);
  for (const char16_t* name : {u"Level1", u"Level2", u"Level3", u"Level4", u"Level5", u"Level6"}) {
    Object* level = Add(ObjectType_Null, name);
    for (int i = 0; i < 10; ++i) AddInstanceOf(*below, u"Use", level);
    below = level;
  }
  const std::string problem = EvaluateDocumentCaches(*document);
  EXPECT_NE(problem.find(": its caches would hold more than 100000 objects"), std::string::npos) << problem;
  for (Node* top = document->objects->firstChild; top; top = top->next) {
    for (Node* use = top->firstChild; use; use = use->next) EXPECT_EQ(AsObject(use)->generatorCache, nullptr);
  }
}

// Level k holds an instance of level k - 1: the copy of level k - 1 holds an instance whose
// cache lies one level deeper.
class NestedInstances : public CacheLimitsTest, public ::testing::WithParamInterface<int> {};

TEST_P(NestedInstances, CachesNestAtMostTheirLimitDeep) {
  Object* below = Add(ObjectType_Null, u"Level0");
  for (int level = 1; level <= GetParam(); ++level) {
    Object* holder = Add(ObjectType_Null, u"Level");
    AddInstanceOf(*below, u"Use", holder);
    below = holder;
  }
  const std::string problem = EvaluateDocumentCaches(*document);
  if (GetParam() <= kMaxCacheDepth + 1) {
    EXPECT_EQ(problem, "");
  } else {
    EXPECT_EQ(problem, "object \"Use\": its cache would lie inside 17 caches; they nest at most 16 deep");
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, NestedInstances, ::testing::Values(kMaxCacheDepth + 1, kMaxCacheDepth + 2, 40));

struct NonFiniteCase {
  const char* name;
  void (*spoil)(Object& cube);
  const char* message;
};

void PrintTo(const NonFiniteCase& c, std::ostream* out) { *out << c.name; }

class NonFiniteValues : public CacheLimitsTest, public ::testing::WithParamInterface<NonFiniteCase> {};

// The caches of an evaluation before the number was spoiled go as well.
TEST_P(NonFiniteValues, ANumberThatIsNotFiniteIsNamedWithItsObjectAndParameter) {
  Object* group = Add(ObjectType_Null, u"Group");
  Object* cube = Add(ObjectType_Null, u"Cube", group);
  Object* copies = Add(ObjectType_ChainGeneratorA, u"Chain", group);
  Add(ObjectType_Null, u"Link", copies);
  ASSERT_EQ(EvaluateDocumentCaches(*document), "");
  ASSERT_NE(copies->generatorCache, nullptr);
  GetParam().spoil(*cube);
  EXPECT_EQ(EvaluateDocumentCaches(*document), GetParam().message);
  EXPECT_EQ(copies->generatorCache, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NonFiniteValues,
    ::testing::Values(
        NonFiniteCase{"Position", [](Object& cube) { SetPositionOf(cube, {0.0, std::nan(""), 0.0}); },
                      "object \"Cube\": position holds nan"},
        NonFiniteCase{"Scale", [](Object& cube) { SetScaleOf(cube, {1.0, 1.0, -HUGE_VAL}); },
                      "object \"Cube\": scale holds -inf"},
        NonFiniteCase{"OtherParameter",
                      [](Object& cube) { SetFloat(cube.params[DuplicatorParam_Count].raw, HUGE_VAL); },
                      "object \"Cube\": parameter 1020 holds inf"}));

}  // namespace
}  // namespace quillon::testing
