// The JSON scene description: a dump builds an equal document, hand-written scenes come
// out as written, and every mistake is named by its JSON path.
#include <gtest/gtest.h>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/ory_format.h"
#include "quillon/format/tests/sample_scene.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/tag.h"
#include "quillon/orytool/scene_json.h"

namespace quillon::orytool {
namespace {

std::vector<std::uint8_t> Encode(const Document& doc) {
  std::vector<std::uint8_t> bytes;
  std::string error;
  EXPECT_TRUE(format::EncodeDocument(doc, bytes, &error)) << error;
  return bytes;
}

Json::Value Parse(const std::string& text) {
  Json::Value root;
  std::string errors;
  Json::CharReaderBuilder builder;
  std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
  EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &root, &errors)) << errors;
  return root;
}

// The built document, or null with the error in `error`.
std::unique_ptr<Document> Build(const std::string& text, std::string* error = nullptr) {
  std::unique_ptr<Document> doc = NewDocument();
  std::string problem;
  if (!JsonToDocument(Parse(text), *doc, &problem)) {
    if (error) *error = problem;
    return nullptr;
  }
  return doc;
}

TEST(SceneJson, DumpOfEveryKindOfContentBuildsAnEqualDocument) {
  std::unique_ptr<Document> original = format::testing::MakeSampleScene();
  const Json::Value dumped = DocumentToJson(*original);
  std::unique_ptr<Document> built = NewDocument();
  std::string error;
  ASSERT_TRUE(JsonToDocument(dumped, *built, &error)) << error;
  // The file form is canonical: equal bytes mean equal documents, links included.
  EXPECT_EQ(Encode(*built), Encode(*original));
  EXPECT_EQ(DocumentToJson(*built), dumped);
}

TEST(SceneJson, SummaryCountsWhatTheDocumentHolds) {
  const Json::Value summary = DocumentToJson(*format::testing::MakeSampleScene())["summary"];
  // Root, camera, target, solid, extrude and the spline under it.
  EXPECT_EQ(summary["objects"].asInt(), 6);
  EXPECT_EQ(summary["cameras"].asInt(), 1);
  EXPECT_EQ(summary["lights"].asInt(), 0);
  // Position Y and Enabled on the camera, the shape and text tracks on the spline.
  EXPECT_EQ(summary["tracks"].asInt(), 4);
  EXPECT_EQ(summary["keys"].asInt(), 4 + 1 + 1 + 2);
  EXPECT_EQ(summary["markers"].asInt(), 2);
  // 25 fps; the range of a new document, 0 to 3 seconds.
  EXPECT_EQ(summary["fps"].asInt(), 25);
  EXPECT_EQ(summary["first_frame"].asInt(), 0);
  EXPECT_EQ(summary["last_frame"].asInt(), 75);
}

constexpr const char* kCameraRig = R"({
  "objects": [
    {"type": "ObjectType_Camera", "name": "Cam", "rotation_order": 6,
     "params": [{"id": "ObjectParam_Position", "vector": [0, 0, -1000]},
                {"id": "CameraParam_Projection", "int32": 0}],
     "tags": [{"type": "TagType_Target",
               "params": [{"id": "TargetTagParam_Target", "link": "aim"}]}]},
    {"type": "ObjectType_Null", "name": "Aim", "ref": "aim"},
    {"type": 5116, "name": "Generator", "children": [
      {"type": "ObjectType_Null", "name": "Card",
       "tags": [{"type": "TagType_Compositing",
                 "params": [{"id": "CompositingTagParam_Solid", "int32": 1},
                            {"id": 1006, "vector": [1, 0, 0]}]}],
       "tracks": [{"path": [[903, 23], [1000, 19]], "name": "Position X",
                   "curve": {"keys": [{"time": [0, 25], "value": 0},
                                      {"time": [2, 50], "value": 10, "bits": [41]}]}}]}]}
  ],
  "markers": [{"params": [{"id": "MarkerParam_Time", "time": [5, 25]},
                          {"id": "MarkerParam_Note", "string": "hit"}]}]
})";

TEST(SceneJson, HandWrittenRigComesOutAsWritten) {
  std::string error;
  std::unique_ptr<Document> doc = Build(kCameraRig, &error);
  ASSERT_TRUE(doc) << error;
  std::vector<Node*> top = ChildrenOf(doc->objects.get());
  ASSERT_EQ(top.size(), 3u);
  Object* camera = AsObject(top[0]);
  EXPECT_EQ(camera->type, ObjectType_Camera);
  EXPECT_EQ(camera->rotationOrder, 6);
  EXPECT_EQ(*AsVector(camera->params.at(ObjectParam_Position).raw), (Vector{0, 0, -1000}));
  // The name resolves by the node: 1001 is the projection on a camera.
  EXPECT_EQ(AsInt32(camera->params.at(1001).raw), 0);
  Tag* target = FindTag(*camera, TagType_Target, 0);
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(ResolveLinkIn(AsLink(target->params.at(TargetTagParam_Target).raw)->targetId, doc.get()), top[1]);

  EXPECT_EQ(top[2]->type, ObjectType_Extrude);
  Object* card = AsObject(top[2]->firstChild);
  ASSERT_NE(card, nullptr);
  Tag* compositing = FindTag(*card, TagType_Compositing, 0);
  EXPECT_EQ(*AsVector(compositing->params.at(CompositingTagParam_Color).raw), (Vector{1, 0, 0}));
  const Track* x = TracksOf(*card).at(0);
  EXPECT_EQ(x->path[1].id, VectorComponent_X);
  EXPECT_EQ(x->kind, kTrackKindFloat);
  ASSERT_EQ(x->curve->keys.size(), 2);
  EXPECT_EQ(x->curve->keys.at(1)->value, 10.0);
  // Times are reduced as the engine keeps them, so that a search by time finds the key.
  EXPECT_EQ(x->curve->keys.at(1)->time.numerator, 1.0);
  EXPECT_EQ(x->curve->keys.at(1)->time.denominator, 25.0);
  bool exact = false;
  EXPECT_EQ(LowerBound(*x->curve, BaseTime(2, 50), &exact), 1);
  EXPECT_TRUE(exact);
  EXPECT_TRUE(x->curve->keys.at(1)->bits.test(kNodeBitKeyLinear));

  std::vector<Node*> markers = ChildrenOf(doc->markers.get());
  ASSERT_EQ(markers.size(), 1u);
  EXPECT_EQ(AsText(markers[0]->params.at(MarkerParam_Note).raw), u"hit");
}

TEST(SceneJson, SilentPartsKeepTheDefaultsOfANewDocument) {
  std::unique_ptr<Document> doc = Build(R"({"objects": []})");
  ASSERT_TRUE(doc);
  EXPECT_NE(doc->activeSettings, nullptr);
  EXPECT_EQ(AsInt32(doc->params.at(DocParam_Fps).raw), 30);
  EXPECT_EQ(doc->views.size(), 1u);
  EXPECT_EQ(doc->activeView, 0);

  doc = Build(R"({"render_settings": [], "views": []})");
  ASSERT_TRUE(doc);
  EXPECT_EQ(doc->activeSettings, nullptr);
  EXPECT_TRUE(doc->views.empty());
  EXPECT_EQ(doc->activeView, -1);
}

struct BadScene {
  const char* json;
  const char* error;
};

TEST(SceneJson, MistakesAreNamedByTheirPath) {
  const BadScene cases[] = {
      {R"({"object": []})", "$: unknown key \"object\""},
      {R"({"objects": {}})", "$.objects: expected an array"},
      {R"({"objects": [{"name": "x"}]})", "$.objects[0].type: a type is required"},
      {R"({"objects": [{"type": "ObjectType_Kamera"}]})", "$.objects[0].type: unknown type name \"ObjectType_Kamera\""},
      {R"({"objects": [{"type": 5140, "rotation_order": 7}]})", "$.objects[0].rotation_order: 7 is outside 0..6"},
      {R"({"objects": [{"type": 5140, "params": [{"id": "CameraParam_Projection", "int32": 1}]}]})",
       "$.objects[0].params[0].id: \"CameraParam_Projection\" names no parameter of this node"},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5, "int32": 1, "float": 2}]}]})",
       "$.objects[0].params[0]: holds both \"int32\" and \"float\""},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5}]}]})",
       "$.objects[0].params[0]: holds no value: one of \"int32\", \"float\", \"vector\", \"string\", ... is needed"},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5, "vector": [1, 2]}]}]})",
       "$.objects[0].params[0].vector: expected an array of 3 numbers"},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5, "int32": 1}, {"id": 5, "int32": 2}]}]})",
       "$.objects[0].params[1].id: parameter 5 is given twice"},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5, "int32": 3000000000}]}]})",
       "$.objects[0].params[0].int32: 3000000000 is outside -2147483648..2147483647"},
      {R"({"objects": [{"type": 5140, "params": [{"id": 5, "link": "nobody"}]}]})",
       "$.objects[0].params[0].link: no node has the ref \"nobody\""},
      {R"({"objects": [{"type": 5140, "ref": "a"}, {"type": 5140, "ref": "a"}]})",
       "$.objects[1].ref: the ref \"a\" is given to a second node"},
      {R"({"objects": [{"type": 5140, "tracks": [{"path": [[906]], "curve": {"keys": [
          {"time": [2, 25]}, {"time": [1, 25]}]}}]}]})",
       "$.objects[0].tracks[0].curve.keys[1].time: keys must stand in rising time order"},
      {R"({"markers": [{"params": [{"id": 1000, "time": [1, 0]}]}]})",
       "$.markers[0].params[0].time: a time is [numerator, denominator] with a denominator of at least 1"},
      {R"({"objects": [{"type": 5140, "tags": [{"type": "TagType_Target", "elements": [[1, 2, 3]]}]}]})",
       "$.objects[0].tags[0].elements: a tag of this type holds no elements"},
      {R"({"objects": [{"type": 5101, "tags": [{"type": "TagType_Segments", "elements": [[3, 1, 0]]}]}]})",
       "$.objects[0].tags[0].elements[0]: a segment is [point count, closed]"},
      {R"({"active_render_settings": 1})", "$.active_render_settings: 1 is outside -1..0"},
      {R"({"views": [{"scene_camera": 3}]})", "$.views[0].scene_camera: expected a string"},
  };
  for (const BadScene& bad : cases) {
    std::string error;
    EXPECT_EQ(Build(bad.json, &error), nullptr) << bad.json;
    EXPECT_EQ(error, bad.error) << bad.json;
  }
}

// Identities written by hand, as an update document carries them, come out in the document
// and back in the dump; a marker and readable ids keep the form they were given.
TEST(SceneJson, MarkersAndUniqueIdsAreWrittenAndDumped) {
  std::string error;
  std::unique_ptr<Document> doc = Build(R"({"objects": [{"type": "ObjectType_Plane",
      "marker": "000102030405060708090a0b0c0d0e0F",
      "unique_ids": [{"application": 5, "text": "plane-1"}, {"application": 6, "hex": "00ff"}]}],
      "materials": [{"type": "MaterialType_Standard", "unique_ids": [{"application": 5, "text": "red"}]}],
      "document": {"params": [{"id": 1029194, "container": [{"id": 1000, "int32": 0}]}]}})", &error);
  ASSERT_NE(doc, nullptr) << error;
  const Node& plane = *doc->objects->firstChild;
  ASSERT_TRUE(plane.identity.hasMarker);
  EXPECT_EQ(plane.identity.marker[1], 1);
  EXPECT_EQ(plane.identity.marker[15], 15);
  EXPECT_EQ(FindUniqueIdOf(plane.identity, 5)->bytes, (std::vector<std::uint8_t>{'p', 'l', 'a', 'n', 'e', '-', '1'}));
  EXPECT_EQ(FindUniqueIdOf(plane.identity, 6)->bytes, (std::vector<std::uint8_t>{0, 255}));
  EXPECT_FALSE(doc->materials->firstChild->identity.hasMarker);
  const ContainerData* list = AsContainer(doc->params.at(1029194).raw);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(AsInt32(list->entries.at(1000).raw), 0);

  const Json::Value dumped = DocumentToJson(*doc);
  EXPECT_EQ(dumped["objects"][0]["marker"].asString(), "000102030405060708090a0b0c0d0e0f");
  EXPECT_EQ(dumped["objects"][0]["unique_ids"][0]["text"].asString(), "plane-1");
  EXPECT_EQ(dumped["objects"][0]["unique_ids"][1]["hex"].asString(), "00ff");
  EXPECT_FALSE(dumped["materials"][0].isMember("marker"));
  std::unique_ptr<Document> again = NewDocument();
  ASSERT_TRUE(JsonToDocument(dumped, *again, &error)) << error;
  EXPECT_EQ(Encode(*again), Encode(*doc));
}

TEST(SceneJson, MistakesInIdentitiesAreNamedByTheirPath) {
  const BadScene cases[] = {
      {R"({"objects": [{"type": 5140, "marker": "0011"}]})", "$.objects[0].marker: a marker is 32 hex digits"},
      {R"({"objects": [{"type": 5140, "marker": "zz0102030405060708090a0b0c0d0e0f"}]})",
       "$.objects[0].marker: a marker is 32 hex digits"},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5}]}]})",
       "$.objects[0].unique_ids[0]: a unique id has either \"text\" or \"hex\""},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5, "text": "a", "hex": "61"}]}]})",
       "$.objects[0].unique_ids[0]: a unique id has either \"text\" or \"hex\""},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5, "hex": "abc"}]}]})",
       "$.objects[0].unique_ids[0].hex: not an even number of hex digits"},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5, "text": ""}]}]})",
       "$.objects[0].unique_ids[0]: a unique id has at least one byte"},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"text": "a"}]}]})",
       "$.objects[0].unique_ids[0].application: expected a whole number"},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5, "text": "a"},
          {"application": 5, "text": "b"}]}]})",
       "$.objects[0].unique_ids[1].application: application 5 gives a second unique id"},
      {R"({"objects": [{"type": 5140, "unique_ids": [{"application": 5, "text": "a", "size": 1}]}]})",
       "$.objects[0].unique_ids[0]: unknown key \"size\""},
  };
  for (const BadScene& bad : cases) {
    std::string error;
    EXPECT_EQ(Build(bad.json, &error), nullptr) << bad.json;
    EXPECT_EQ(error, bad.error) << bad.json;
  }
}

TEST(SceneJson, SceneStatesAreWrittenAndDumped) {
  std::string error;
  std::unique_ptr<Document> doc = Build(R"({"states": [{"name": "day", "children": [{"name": "night"}]},
      {"name": "dusk"}], "current_state": 1})", &error);
  ASSERT_NE(doc, nullptr) << error;
  const std::vector<Node*> states = StatesInOrder(*doc);
  ASSERT_EQ(states.size(), 3u);
  EXPECT_EQ(states[1]->name, u"night");
  EXPECT_EQ(CurrentState(*doc), states[1]);
  const Json::Value dumped = DocumentToJson(*doc);
  EXPECT_EQ(dumped["current_state"].asInt(), 1);
  EXPECT_EQ(dumped["states"][0]["children"][0]["name"].asString(), "night");
  EXPECT_FALSE(DocumentToJson(*NewDocument()).isMember("states"));

  EXPECT_EQ(Build(R"({"states": [{"name": "day"}], "current_state": 1})", &error), nullptr);
  EXPECT_EQ(error, "$.current_state: 1 is outside -1..0");
}

}  // namespace
}  // namespace quillon::orytool
