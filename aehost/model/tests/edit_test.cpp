// The creation calls the importer uses: items, layers and keys.
#include <gtest/gtest.h>

#include "aehost/model/evaluate.h"
#include "aehost/model/transform.h"
#include "model_fixture.h"

namespace aehost {
namespace {

TEST(EditItems, SolidsGoToOneSolidsFolder) {
  SmallProject p;
  Layer& first = p.Solid();
  Layer& second = p.Solid();
  const Item* a = FindItem(p.project, first.sourceId);
  const Item* b = FindItem(p.project, second.sourceId);
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  EXPECT_NE(a, b);
  EXPECT_EQ(a->folderId, b->folderId);
  const Item* folder = FindItem(p.project, a->folderId);
  ASSERT_NE(folder, nullptr);
  EXPECT_EQ(folder->name, "Solids");
  EXPECT_EQ(folder->folderId, kRootFolderId);
  EXPECT_EQ(a->footage.kind, FootageKind::Solid);
  EXPECT_EQ(a->width, 40);
}

TEST(EditLayers, NewLayersGoOnTopOverTheWholeComposition) {
  SmallProject p;
  Layer& first = p.Solid();
  Layer& second = AddNullLayer(p.project, *p.comp, "Null 1");
  ASSERT_EQ(p.comp->comp.layers.size(), 2u);
  EXPECT_EQ(p.comp->comp.layers[0].get(), &second);
  EXPECT_EQ(p.comp->comp.layers[1].get(), &first);
  EXPECT_NE(first.id, second.id);
  EXPECT_DOUBLE_EQ(second.duration, 10.0);
  EXPECT_TRUE(second.switches.nullLayer);
  EXPECT_EQ(FindItem(p.project, second.sourceId)->width, 100);
  EXPECT_EQ(FindLayerComp(p.project, second), p.comp);
  // A 40 x 20 solid at the middle of 200 x 100 has its corner at (80, 40).
  const Matrix4 m = LayerToWorld(p.project, *p.comp, first, 0.0);
  EXPECT_DOUBLE_EQ(m.m[3][0], 80.0);
  EXPECT_DOUBLE_EQ(m.m[3][1], 40.0);
}

TEST(EditLayers, CamerasAndLightsLookAtTheCenterTheyAreGiven) {
  SmallProject p;
  Layer& light = AddLightLayer(p.project, *p.comp, "Light", 30, 40);
  EXPECT_EQ(light.objectType, LayerObjectType::Light);
  EXPECT_EQ(light.switches.autoOrient, AutoOrient::TowardsPointOfInterest);
  EXPECT_EQ(EvaluateStream(p.project, *p.comp, light, LayerStream::AnchorPoint, 0.0),
            V(30, 40, 0));
  const Matrix4 m = LayerToWorld(p.project, *p.comp, light, 0.0);
  EXPECT_NEAR(m.m[2][2], 1.0, 1e-12);  // looking straight into the composition
  EXPECT_NEAR(m.m[3][2], -200.0 * 50.0 / 36.0, 1e-9);
}

TEST(EditKeys, KeysStaySortedAndOneTimeHoldsOneKey) {
  Stream stream;
  EXPECT_EQ(AddKeyframe(stream, 2.0, V(2)), 0);
  EXPECT_EQ(AddKeyframe(stream, 1.0, V(1)), 0);
  EXPECT_EQ(AddKeyframe(stream, 3.0, V(3)), 2);
  EXPECT_EQ(AddKeyframe(stream, 2.0, V(20)), 1);
  ASSERT_EQ(stream.keys.size(), 3u);
  EXPECT_EQ(stream.keys[1].value, V(20));
  EXPECT_EQ(stream.keys[1].in, Interpolation::Linear);
}

TEST(EditStreams, SettingAValueKeepsTheStreamsKind) {
  SmallProject p;
  Layer& solid = p.Solid();
  p.Set(solid, LayerStream::Scale, 50, 50, 50);
  const Stream& scale = solid.streams.at(LayerStream::Scale);
  EXPECT_EQ(scale.kind, StreamKind::ThreeD);
  EXPECT_EQ(scale.value, V(50, 50, 50));
  EXPECT_EQ(solid.streams.count(LayerStream::Position), 0u);
}

}  // namespace
}  // namespace aehost
