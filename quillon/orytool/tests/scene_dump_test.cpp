// The text dump of a small scene, written out by hand from the conventions of the dump.
#include <gtest/gtest.h>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"
#include "quillon/orytool/scene_dump.h"

namespace quillon::orytool {
namespace {

TEST(SceneDump, SmallSceneReadsAsExpected) {
  Document doc;
  SetInt32(doc.params[DocParam_Fps].raw, 24);
  SetTime(doc.params[DocParam_MinTime].raw, BaseTime(0, 1));
  SetTime(doc.params[DocParam_MaxTime].raw, BaseTime(5, 2));
  auto* light = new Object(ObjectType_Light);
  light->name = u"Key";
  InsertLastUnder(light, doc.objects.get());
  SetFloat(light->params[LightParam_Intensity].raw, 0.75);
  auto* track = new Track({{LightParam_Intensity, 0, 0}});
  track->curve = std::make_unique<Curve>();
  track->curve->track = track;
  AddKeyAt(*track->curve, BaseTime(0, 24))->value = 0.5;
  AddKeyAt(*track->curve, BaseTime(1, 2))->value = 1.25;
  InsertLastUnder(track, light->trackList());
  auto* aim = new Object(ObjectType_Null);
  aim->name = u"Aim";
  InsertLastUnder(aim, light);
  auto* tag = new Tag(TagType_Target);
  SetLinkId(tag->params[TargetTagParam_Target].raw, LinkIdOf(aim));
  InsertLastUnder(tag, light->tagRoot.get());
  Node* marker = NewMarker().release();
  SetTime(marker->params[MarkerParam_Time].raw, BaseTime(12, 24));
  InsertLastUnder(marker, doc.markers.get());

  // 2.5 seconds at 24 fps is frame 60; BaseTime(12, 24) reduces to 1/2.
  EXPECT_EQ(DumpText(doc),
            "2 objects, 0 cameras, 1 light, 1 track, 2 keys, 1 marker, frames 0..60 at 24 fps\n"
            "document, current time 0/1\n"
            "  1001 DocParam_Fps = int32 24\n"
            "  1002 DocParam_MinTime = time 0/1\n"
            "  1003 DocParam_MaxTime = time 5/2\n"
            "objects\n"
            "  Light \"Key\", rotation order 0\n"
            "    90001 LightParam_Intensity = float 0.75\n"
            "    track [90001,0] kind 1: 2 keys, first 0/1 = 0.5, last 1/2 = 1.25\n"
            "    tag Target\n"
            "      1001 TargetTagParam_Target = link -> Null \"Aim\"\n"
            "    Null \"Aim\", rotation order 0\n"
            "materials\n"
            "layers\n"
            "render settings\n"
            "markers\n"
            "  marker\n"
            "    1000 MarkerParam_Time = time 1/2\n"
            "views\n");
}

}  // namespace
}  // namespace quillon::orytool
