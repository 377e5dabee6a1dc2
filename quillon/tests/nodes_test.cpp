// Scene nodes through tables At, Bl and Bd: trees, names, flags, parameters.
#include <gtest/gtest.h>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

class NodesTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  ~NodesTest() override { Bl()->FreeNode(document); }

  BaseObject* Make(int32_t type = ObjectType_Null) { return Bo()->AllocObject(type); }
};

TEST_F(NodesTest, InsertObjectPlacesByParentAndPredecessor) {
  BaseObject* a = Make();
  BaseObject* b = Make();
  BaseObject* child = Make();
  BaseObject* second = Make();
  Bd()->InsertObject(document, a, nullptr, nullptr, 0, 1);
  Bd()->InsertObject(document, b, nullptr, nullptr, 0, 1);
  Bd()->InsertObject(document, child, a, nullptr, 0, 1);
  Bd()->InsertObject(document, second, a, child, 0, 1);

  EXPECT_EQ(Bd()->GetFirstObject(document), b);
  EXPECT_EQ(At()->GetNext(b), a);
  EXPECT_EQ(At()->GetNext(a), nullptr);
  EXPECT_EQ(At()->GetDown(a), child);
  EXPECT_EQ(At()->GetNext(child), second);
  EXPECT_EQ(At()->GetUp(second), a);
  EXPECT_EQ(At()->GetUp(a), nullptr);
  EXPECT_EQ(At()->GetDocument(second), document);
}

TEST_F(NodesTest, RemoveKeepsChildrenAndDetachesFromDocument) {
  BaseObject* parent = Make();
  BaseObject* child = Make();
  EXPECT_EQ(At()->GetDocument(parent), nullptr);
  Bd()->InsertObject(document, parent, nullptr, nullptr, 0, 1);
  At()->InsertUnderLast(child, parent);
  At()->Remove(parent);
  EXPECT_EQ(Bd()->GetFirstObject(document), nullptr);
  EXPECT_EQ(At()->GetDocument(parent), nullptr);
  EXPECT_EQ(At()->GetDown(parent), child);
  Bl()->FreeNode(parent);
}

TEST_F(NodesTest, InsertUnderPutsFirstAndInsertAfterFollows) {
  BaseObject* parent = Make();
  BaseObject* first = Make();
  BaseObject* last = Make();
  BaseObject* middle = Make();
  Bd()->InsertObject(document, parent, nullptr, nullptr, 0, 1);
  At()->InsertUnderLast(last, parent);
  At()->InsertUnder(first, parent);
  At()->InsertAfter(middle, first);
  EXPECT_EQ(At()->GetDown(parent), first);
  EXPECT_EQ(At()->GetNext(first), middle);
  EXPECT_EQ(At()->GetNext(middle), last);
  EXPECT_EQ(At()->GetPrev(last), middle);
}

TEST_F(NodesTest, NoNodeGoesBelowItself) {
  BaseObject* parent = Make();
  BaseObject* child = Make();
  Bd()->InsertObject(document, parent, nullptr, nullptr, 0, 1);
  Bd()->InsertObject(document, child, parent, nullptr, 0, 1);
  At()->InsertUnder(parent, child);
  Bd()->InsertObject(document, parent, child, nullptr, 0, 1);
  At()->InsertUnderLast(parent, parent);
  EXPECT_EQ(At()->GetUp(child), parent);
  EXPECT_EQ(At()->GetUp(parent), nullptr);
  EXPECT_EQ(Bd()->GetFirstObject(document), parent);

  // A list root stays with its document.
  SceneNode* layers = Bd()->GetLayerRoot(document);
  At()->InsertUnder(layers, parent);
  Bl()->FreeNode(layers);
  EXPECT_EQ(Bd()->GetLayerRoot(document), layers);
  EXPECT_EQ(At()->GetDown(parent), child);
}

TEST_F(NodesTest, NamesTypesAndFlags) {
  BaseObject* camera = Make(ObjectType_KvCamera);
  Text name("Kamera \xC3\xA9");
  At()->SetName(camera, &name.value, true);
  Text read;
  At()->GetName(camera, &read.value);
  EXPECT_EQ(read.Utf8(), "Kamera \xC3\xA9");
  EXPECT_EQ(At()->GetType(camera), ObjectType_KvCamera);
  EXPECT_EQ(Bl()->GetNodeType(camera), ObjectType_KvCamera);
  EXPECT_EQ(Bo()->AllocObject(424242), nullptr);

  At()->SetBitFlag(document, kNodeBitDocumentLayers, true);
  EXPECT_TRUE(At()->GetBitFlag(document, kNodeBitDocumentLayers));
  At()->SetBitFlag(document, kNodeBitDocumentLayers, false);
  EXPECT_FALSE(At()->GetBitFlag(document, kNodeBitDocumentLayers));
  EXPECT_EQ(Bl()->GetInfoBits(camera), 0u);
  Bl()->FreeNode(camera);
}

TEST_F(NodesTest, ParametersByPathWholeAndComponent) {
  BaseObject* object = Make();
  Vector position{1, 2, 3};
  Bo()->SetPosition(object, &position);

  Data y;
  Path positionY(ObjectParam_Position, DataKind_Vector, VectorComponent_Y, DataKind_Float);
  ASSERT_TRUE(At()->GetParameter(object, &positionY.id, &y.value, 0));
  EXPECT_EQ(Gd()->GetKind(&y.value), DataKind_Float);
  EXPECT_EQ(Gd()->GetFloat(&y.value), 2.0);

  Data five;
  Gd()->SetFloat(&five.value, 5.0);
  ASSERT_TRUE(At()->SetParameter(object, &positionY.id, &five.value, 0));
  Vector moved;
  Bo()->GetPosition(object, &moved);
  EXPECT_EQ(moved.y, 5.0);
  EXPECT_EQ(moved.x, 1.0);

  Data whole;
  Path positionPath(ObjectParam_Position);
  ASSERT_TRUE(At()->GetParameter(object, &positionPath.id, &whole.value, 0));
  EXPECT_EQ(Gd()->GetKind(&whole.value), DataKind_Vector);
  EXPECT_EQ(Gd()->GetVector(&whole.value)->z, 3.0);

  Data missing;
  Path absent(123456);
  EXPECT_FALSE(At()->GetParameter(object, &absent.id, &missing.value, 0));
  EXPECT_TRUE(Gd()->IsEmpty(&missing.value));
  Bl()->FreeNode(object);
}

TEST_F(NodesTest, SameNumberMeansDifferentThingsOnDifferentNodes) {
  BaseObject* camera = Make(ObjectType_Camera);
  Bd()->InsertObject(document, camera, nullptr, nullptr, 0, 1);
  Bc()->SetInt32(Bl()->GetDataInstance(document), DocParam_Fps, 25);
  Bc()->SetInt32(Bl()->GetDataInstance(camera), CameraParam_Projection, 4);
  EXPECT_EQ(Bc()->GetInt32(Bl()->GetDataInstance(document), DocParam_Fps, 0), 25);
  EXPECT_EQ(Bc()->GetInt32(Bl()->GetDataInstance(camera), CameraParam_Projection, 0), 4);
}

TEST_F(NodesTest, NewDocumentHasDefaultSettingsAndAView) {
  RenderData* settings = Bd()->GetActiveSettings(document);
  ASSERT_NE(settings, nullptr);
  EXPECT_EQ(Bd()->GetFirstSettings(document), settings);
  EXPECT_GT(Bc()->GetFloat(Bl()->GetDataInstance(settings), RenderParam_Width, 0.0), 0.0);
  EXPECT_EQ(Bd()->GetViewCount(document), 1);
  EXPECT_NE(Bd()->GetActiveView(document), nullptr);
  EXPECT_EQ(Bd()->GetRenderView(document), nullptr);

  RenderData* more = Bd()->AllocRenderData();
  Bd()->InsertSettings(document, more);
  EXPECT_EQ(Bd()->GetActiveSettings(document), settings);
  Bl()->FreeNode(settings);
  EXPECT_EQ(Bd()->GetActiveSettings(document), nullptr);
  EXPECT_EQ(Bd()->GetFirstSettings(document), more);
}

TEST_F(NodesTest, SceneLayersAndMaterials) {
  BaseObject* object = Make();
  Bd()->InsertObject(document, object, nullptr, nullptr, 0, 1);
  SceneLayer* layer = Bd()->AllocLayer();
  At()->InsertUnderRoot(Bd()->GetLayerRoot(document), layer);
  EXPECT_EQ(At()->GetFirstUnderRoot(Bd()->GetLayerRoot(document)), layer);
  EXPECT_EQ(Bl()->GetSceneLayer(object, document), nullptr);
  Bl()->SetLayer(object, layer);
  EXPECT_EQ(Bl()->GetSceneLayer(object, document), layer);
  EXPECT_EQ(Bc()->GetInt32(Bl()->GetDataInstance(layer), LayerParam_Visible, 0), 1);
  Bl()->FreeNode(layer);
  EXPECT_EQ(Bl()->GetSceneLayer(object, document), nullptr);

  Material* material = Mt()->AllocMaterial(MaterialType_Standard);
  BaseShader* shader = Ba()->AllocShader(ShaderType_Bitmap);
  At()->InsertShader(material, shader, nullptr);
  Bd()->InsertMaterial(document, material, nullptr, 0);
  EXPECT_EQ(Bd()->GetFirstMaterial(document), material);
  EXPECT_EQ(At()->GetDocument(shader), document);
  Bc()->SetLink(Bl()->GetDataInstance(material), MaterialChannel_Color, shader);
  EXPECT_EQ(Bc()->GetLink(Bl()->GetDataInstance(material), MaterialChannel_Color, document, 0), shader);
}

TEST_F(NodesTest, ViewsLookThroughTheirSceneCamera) {
  BaseView* view = Bd()->GetActiveView(document);
  BaseObject* editor = Br()->GetViewCamera(view);
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(Br()->GetSceneCamera(view, document), nullptr);

  BaseObject* camera = Make(ObjectType_Camera);
  Bd()->InsertObject(document, camera, nullptr, nullptr, 0, 1);
  Br()->SetSceneCamera(view, camera, 0);
  EXPECT_EQ(Br()->GetSceneCamera(view, document), camera);
  EXPECT_EQ(Br()->GetViewCamera(view), camera);
  At()->Remove(camera);
  Bl()->FreeNode(camera);
  EXPECT_EQ(Br()->GetViewCamera(view), editor);
}

}  // namespace
}  // namespace quillon::testing
