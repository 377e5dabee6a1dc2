// Projects at the edges of what the host holds: chains of thousands of parents, folders and
// precompositions read in a time linear in their length, loops deep inside them are found,
// numbers that the host's 32-bit times and ratios cannot carry are refused with their path,
// and whatever ids the host gives out, the saved project reads back.
#include <cmath>

#include <json/json.h>

#include <gtest/gtest.h>

#include "aehost/model/edit.h"
#include "aehost/model/model_lookups.h"
#include "aehost/model/project_json.h"
#include "aehost/model/transform.h"
#include "model_fixture.h"

namespace aehost {
namespace {

Json::Value Description() {
  Json::Value top;
  top["format"] = "aehost-project";
  top["version"] = 1;
  Json::Value solid;
  solid["id"] = 1;
  solid["width"] = 10;
  solid["height"] = 10;
  solid["solid"]["color"] = Json::Value(Json::arrayValue);
  for (int i = 0; i < 3; ++i) solid["solid"]["color"].append(1);
  top["footage"].append(solid);
  return top;
}

Json::Value Comp(int id) {
  Json::Value comp;
  comp["id"] = id;
  comp["name"] = "C" + std::to_string(id);
  comp["width"] = 100;
  comp["height"] = 100;
  comp["frameRate"] = 25;
  comp["duration"] = 1;
  comp["layers"] = Json::Value(Json::arrayValue);
  return comp;
}

// Layer i (ids from 10) hangs under layer i - 1, with the default transform: long chains stay
// small in memory.
Json::Value ParentChain(int length) {
  Json::Value top = Description();
  Json::Value comp = Comp(2);
  for (int i = 0; i < length; ++i) {
    Json::Value layer;
    layer["id"] = 10 + i;
    layer["name"] = "L" + std::to_string(i);
    layer["source"] = 1;
    if (i > 0) layer["parent"] = 10 + i - 1;
    comp["layers"].append(layer);
  }
  top["comps"].append(comp);
  return top;
}

// Composition 100 + i uses 100 + i + 1; the last one uses the solid.
Json::Value PrecompChain(int length) {
  Json::Value top = Description();
  for (int i = 0; i < length; ++i) {
    Json::Value comp = Comp(100 + i);
    Json::Value layer;
    layer["id"] = 100000 + i;
    layer["source"] = i + 1 < length ? 100 + i + 1 : 1;
    comp["layers"].append(layer);
    top["comps"].append(comp);
  }
  return top;
}

std::string Text(const Json::Value& value) { return Json::writeString(Json::StreamWriterBuilder(), value); }

TEST(ProjectLimits, AParentChainOfAHundredThousandLayersReads) {
  const Project project = ReadProject(Text(ParentChain(100000)), "chain.json");
  EXPECT_EQ(project.items.back()->comp.layers.size(), 100000u);
}

TEST(ProjectLimits, ALoopAtTheEndOfALongParentChainIsFound) {
  Json::Value top = ParentChain(20000);
  top["comps"][0]["layers"][0]["parent"] = 10 + 19999;
  EXPECT_EQ(Refusal(Text(top)),
            "test.json: comps[0].layers[0].parent: a layer must not be its own parent, directly or through "
            "others");
}

TEST(ProjectLimits, AParentInAnotherCompositionIsRefused) {
  Json::Value top = ParentChain(2);
  Json::Value other = Comp(3);
  Json::Value layer;
  layer["id"] = 50;
  layer["parent"] = 10;
  other["layers"].append(layer);
  top["comps"].append(other);
  EXPECT_EQ(Refusal(Text(top)), "test.json: comps[1].layers[0].parent: no layer of this composition has the id 10");
}

TEST(ProjectLimits, AChainOfTenThousandPrecompositionsReads) {
  const Project project = ReadProject(Text(PrecompChain(10000)), "nest.json");
  EXPECT_EQ(project.items.size(), 10002u);  // the root, the solid and the compositions
}

TEST(ProjectLimits, ALoopAtTheEndOfALongPrecompositionChainIsNamedAtTheLayerThatCloses) {
  Json::Value top = PrecompChain(10000);
  top["comps"][9999]["layers"][0]["source"] = 100;
  EXPECT_EQ(Refusal(Text(top)), "test.json: comps[9999].layers[0].source: a composition must not contain itself");
}

TEST(ProjectLimits, AChainOfTenThousandFoldersReadsAndALoopInItIsFound) {
  Json::Value top = Description();
  for (int i = 0; i < 10000; ++i) {
    Json::Value folder;
    folder["id"] = 10 + i;
    if (i > 0) folder["folder"] = 10 + i - 1;
    top["folders"].append(folder);
  }
  EXPECT_EQ(ReadProject(Text(top), "folders.json").items.size(), 10002u);
  top["folders"][0]["folder"] = 10 + 9999;
  EXPECT_EQ(Refusal(Text(top)), "test.json: folders[0].folder: folders must not hold themselves");
}

// Each case sets one member of the first composition, of its first layer or of that layer's
// first key to a value the host cannot carry.
struct OutOfRange {
  const char* name;
  const char* member;  // "comp.", "layer." or "key." and the key
  double value;
  const char* message;
};

void PrintTo(const OutOfRange& c, std::ostream* out) { *out << c.name; }

class ProjectRanges : public testing::TestWithParam<OutOfRange> {};

TEST_P(ProjectRanges, AValueTheHostCannotCarryIsRefusedWithItsPath) {
  const OutOfRange& c = GetParam();
  Json::Value top = ParentChain(1);
  Json::Value& comp = top["comps"][0];
  Json::Value& layer = comp["layers"][0];
  layer["transform"]["rotationZ"]["keys"][0]["time"] = 0;
  layer["transform"]["rotationZ"]["keys"][0]["value"] = 0;
  const std::string member = c.member;
  const std::string key = member.substr(member.find('.') + 1);
  if (member.rfind("comp.", 0) == 0) comp[key] = c.value;
  if (member.rfind("layer.", 0) == 0) layer[key] = c.value;
  if (member.rfind("key.", 0) == 0) layer["transform"]["rotationZ"]["keys"][0][key] = c.value;
  if (member.rfind("marker.", 0) == 0) comp["markers"][0][key] = c.value;
  EXPECT_EQ(Refusal(Text(top)), std::string("test.json: ") + c.message);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ProjectRanges,
    testing::Values(
        OutOfRange{"PixelAspectHuge", "comp.pixelAspect", 1e13,
                   "comps[0].pixelAspect: must lie between 0.01 and 100"},
        OutOfRange{"PixelAspectTiny", "comp.pixelAspect", 1e-9,
                   "comps[0].pixelAspect: must lie between 0.01 and 100"},
        OutOfRange{"DisplayStartFarAway", "comp.displayStart", 1e8,
                   "comps[0].displayStart: must lie between -21474 and 21474"},
        OutOfRange{"StartTimeFarAway", "layer.startTime", -1e12,
                   "comps[0].layers[0].startTime: must lie between -21474 and 21474"},
        OutOfRange{"LayerDurationLong", "layer.duration", 1e9,
                   "comps[0].layers[0].duration: must lie between 0 and 21474"},
        OutOfRange{"StretchNearZero", "layer.stretch", 1e-9,
                   "comps[0].layers[0].stretch: must lie between 0.01 and 100 or between -100 and -0.01"},
        OutOfRange{"StretchZero", "layer.stretch", 0,
                   "comps[0].layers[0].stretch: must lie between 0.01 and 100 or between -100 and -0.01"},
        OutOfRange{"KeyTimeFarAway", "key.time", 3e4,
                   "comps[0].layers[0].transform.rotationZ.keys[0].time: must lie between -21474 and 21474"},
        OutOfRange{"MarkerTimeFarAway", "marker.time", 1e300,
                   "comps[0].markers[0].time: must lie between -21474 and 21474"}));

// Whatever id the host gives out, the reader takes it back.
TEST(ProjectIds, ItemsAndLayersMadeAfterTheHighestIdReadBack) {
  Json::Value top = ParentChain(1);
  top["comps"][0]["id"] = kMaxId;
  top["comps"][0]["layers"][0]["id"] = kMaxId;
  Project project = ReadProject(Text(top), "high.json");
  Item& comp = AddComp(project, "Next", 100, 100, 1.0, 1.0, 25.0);
  Layer& layer = AddNullLayer(project, comp, "Null");
  EXPECT_LE(comp.id, kMaxId);
  EXPECT_LE(layer.id, kMaxId);
  EXPECT_NE(comp.id, 1);  // the solid has it
  const Project back = ReadProject(WriteProject(project), "saved.json");
  EXPECT_EQ(WriteProject(back), WriteProject(project));
}

// A value that is not finite (a script can set one) has no JSON form; the refusal says where.
TEST(ProjectSaving, ANumberThatIsNotFiniteIsRefusedWithItsPlace) {
  SmallProject p;
  p.Set(p.Solid(), LayerStream::Position, 1.0, std::nan(""), 3.0);
  try {
    WriteProject(p.project);
    ADD_FAILURE() << "written";
  } catch (const ProjectFormatError& error) {
    EXPECT_STREQ(error.what(), "the project cannot be written: comps[0].layers[0].transform.position[1]: JSON has "
                               "no form for nan");
  }
}

// The remembered matrices are the matrices: down a moving chain, at several times, in an order
// that reaches a layer before and after its parents.
TEST(ModelLookups, RememberedWorldMatricesEqualTheChainWalkedAfresh) {
  SmallProject p;
  std::vector<Layer*> chain;
  for (int i = 0; i < 6; ++i) {
    Layer& layer = p.Solid();
    layer.switches.threeD = true;
    if (!chain.empty()) layer.parentId = chain.back()->id;
    Stream& rotation = EnsureStream(p.project, *p.comp, layer, LayerStream::RotationY);
    AddKeyframe(rotation, 0.0, V(0));
    AddKeyframe(rotation, 1.0, V(10.0 * (i + 1)));
    p.Set(layer, LayerStream::Position, i, 2 * i, 3);
    chain.push_back(&layer);
  }
  ModelLookups lookups;
  for (const double time : {0.5, 0.0, 0.5, 0.75}) {
    for (const std::size_t i : {5u, 0u, 3u, 5u}) {
      const Matrix4 remembered = LookUpLayerToWorld(lookups, p.project, *p.comp, *chain[i], time);
      const Matrix4 fresh = LayerToWorld(p.project, *p.comp, *chain[i], time);
      for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_DOUBLE_EQ(remembered.m[r][c], fresh.m[r][c]) << i << " at " << time;
    }
  }
}

// Only the matrices that another layer's matrix is made from are remembered: an export reads
// each layer once a frame, so remembering every layer would only fill memory.
TEST(ModelLookups, OnlyTheMatricesOfParentsAreRemembered) {
  SmallProject p;
  Layer& parent = p.Solid();
  Layer& child = p.Solid();
  Layer& alone = p.Solid();
  child.parentId = parent.id;
  ModelLookups lookups;
  for (const double time : {0.0, 0.5}) {
    LookUpLayerToWorld(lookups, p.project, *p.comp, alone, time);
    LookUpLayerToWorld(lookups, p.project, *p.comp, child, time);
  }
  ASSERT_EQ(lookups.worlds.size(), 2u);
  for (const auto& [key, matrix] : lookups.worlds) EXPECT_EQ(key.layer, &parent);
}

// A host call that changes values forgets the matrices but keeps the index of layers, which an
// import would otherwise rebuild at every key it adds; a layer made afterwards is found.
TEST(ModelLookups, TheIndexOfLayersOutlivesChangesUntilALayerIsMade) {
  SmallProject p;
  Layer& parent = p.Solid();
  Layer& child = p.Solid();
  child.parentId = parent.id;
  ModelLookups lookups;
  LookUpLayerToWorld(lookups, p.project, *p.comp, child, 0.0);
  ForgetLookups(lookups);
  EXPECT_TRUE(lookups.worlds.empty());
  EXPECT_EQ(lookups.layers.size(), 2u);
  Layer& made = p.Solid();
  EXPECT_EQ(LookUpLayer(lookups, p.project, made.id).layer, &made);
  EXPECT_EQ(LookUpLayer(lookups, p.project, child.id).layer, &child);
}

}  // namespace
}  // namespace aehost
