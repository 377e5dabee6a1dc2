// Everything a document holds comes back from its scene file: the same bytes when written
// again, and the links pointing at the same nodes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/format_versions.h"
#include "quillon/format/ory_format.h"
#include "quillon/format/tests/sample_scene.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/tag.h"

namespace quillon::format {
namespace {

using testing::FindObjectNamed;
using testing::MakeSampleScene;

std::vector<std::uint8_t> Encode(const Document& doc) {
  std::vector<std::uint8_t> bytes;
  std::string error;
  EXPECT_TRUE(EncodeDocument(doc, bytes, &error)) << error;
  return bytes;
}

std::unique_ptr<Document> Decode(const std::vector<std::uint8_t>& bytes) {
  auto doc = std::make_unique<Document>();
  std::string error;
  EXPECT_TRUE(DecodeDocument(bytes.data(), bytes.size(), *doc, &error)) << error;
  return doc;
}

Node* LinkTarget(const DataValue& value) { return ResolveLink(AsLink(value)->targetId); }

class RoundTrip : public ::testing::Test {
 protected:
  void SetUp() override {
    original = MakeSampleScene();
    bytes = Encode(*original);
    copy = Decode(bytes);
  }
  std::unique_ptr<Document> original;
  std::vector<std::uint8_t> bytes;
  std::unique_ptr<Document> copy;
};

TEST_F(RoundTrip, WritingTheCopyGivesTheSameBytes) {
  // Every field that the writer writes is read back; link numbers are file-relative.
  EXPECT_EQ(Encode(*copy), bytes);
  EXPECT_EQ(Encode(*Decode(Encode(*copy))), bytes);
}

TEST_F(RoundTrip, FileStartsWithTheEightBytesOfTheHeaderTest) {
  ASSERT_GE(bytes.size(), 8u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "QORYORY6");
}

TEST_F(RoundTrip, ObjectsKeepOrderNamesTransformAndTags) {
  std::vector<Node*> top = ChildrenOf(copy->objects.get());
  ASSERT_EQ(top.size(), 1u);
  EXPECT_EQ(top[0]->name, u"project-Comp 1");
  std::vector<Node*> children = ChildrenOf(top[0]);
  ASSERT_EQ(children.size(), 4u);
  EXPECT_EQ(children[0]->name, u"Camera 1");
  EXPECT_EQ(children[3]->name, u"Extrude");
  EXPECT_EQ(ChildrenOf(children[3]).front()->name, u"Shape");
  const Object* root = AsObject(top[0]);
  EXPECT_EQ(root->offsetPosition, (Vector{-960, 540, 0}));
  EXPECT_EQ(AsText(root->params.at(ParamKey_OriginKey).raw), u"QUILLON_EXPORT_ROOT_NODE");
  const Object* camera = AsObject(children[0]);
  EXPECT_EQ(camera->rotationOrder, 6);
  EXPECT_EQ(camera->modes, (std::array<int32_t, 3>{1, 2, 1}));
  EXPECT_EQ(camera->params.at(465002000).raw.payload.int64, -1234567890123LL);
  const Object* solid = AsObject(children[2]);
  EXPECT_TRUE(solid->bits.test(3));
  EXPECT_EQ(solid->infoBits, kInfoBitFromCache);
  std::vector<Tag*> tags = TagsOf(*solid);
  ASSERT_EQ(tags.size(), 2u);
  EXPECT_EQ(tags[0]->type, TagType_Compositing);
  EXPECT_EQ(*AsVector(tags[0]->params.at(CompositingTagParam_Color).raw), (Vector{0.25, 0.5, 1}));
  EXPECT_EQ(solid->params.at(4242).kind(), DataKind_Empty);
  EXPECT_EQ(AsText(AsFont(solid->params.at(1009371).raw)->description.at(500).raw), u"Sans");
}

TEST_F(RoundTrip, LinksPointAtTheCopiesOfTheirTargets) {
  Object* camera = FindObjectNamed(*copy, u"Camera 1");
  Object* target = FindObjectNamed(*copy, u"Camera 1 target");
  Object* solid = FindObjectNamed(*copy, u"Solid \u00FC");
  Tag* targetTag = FindTag(*camera, TagType_Target, 0);
  EXPECT_EQ(LinkTarget(targetTag->params.at(TargetTagParam_Target).raw), target);
  Node* material = copy->materials->firstChild;
  EXPECT_EQ(LinkTarget(FindTag(*solid, TagType_Texture, 0)->params.at(TextureTagParam_Material).raw), material);
  EXPECT_EQ(LinkTarget(material->params.at(MaterialChannel_Color).raw), ShaderList(*material)->firstChild);
  EXPECT_EQ(ResolveLink(solid->layerId), copy->layers->firstChild);
  EXPECT_EQ(SceneCameraOf(*copy->views[0], *copy), camera);
  // The copy's links are its own, not those of the original.
  EXPECT_NE(camera, FindObjectNamed(*original, u"Camera 1"));
}

TEST_F(RoundTrip, KeysKeepTimesValuesFlagsAndData) {
  Object* camera = FindObjectNamed(*copy, u"Camera 1");
  std::vector<Track*> tracks = TracksOf(*camera);
  ASSERT_EQ(tracks.size(), 2u);
  const Track& y = *tracks[0];
  EXPECT_EQ(y.name, u"Position Y");
  ASSERT_EQ(y.path.size(), 2u);
  EXPECT_EQ(y.path[1].id, VectorComponent_Y);
  EXPECT_EQ(y.path[1].kind, DataKind_Float);
  ASSERT_EQ(y.curve->keys.size(), 4);
  const Key& third = *y.curve->keys.at(2);
  EXPECT_EQ(third.time, BaseTime(5, 25));
  EXPECT_EQ(third.value, -0.1 * 5 * 5);
  EXPECT_TRUE(third.bits.test(kNodeBitKeyLinear));
  EXPECT_FALSE(y.curve->keys.at(1)->bits.test(kNodeBitKeyLinear));
  EXPECT_TRUE(y.curve->keys.at(1)->bits.test(kNodeBitKeyTangentsLocked));
  EXPECT_EQ(third.curve, y.curve.get());
  EXPECT_EQ(tracks[1]->infoBits, kInfoBitTrackOff);

  Object* spline = FindObjectNamed(*copy, u"Shape");
  std::vector<Track*> splineTracks = TracksOf(*spline);
  ASSERT_EQ(splineTracks.size(), 2u);
  const Key& shapeKey = *splineTracks[0]->curve->keys.at(0);
  EXPECT_EQ(static_cast<const Vector*>(AsSplineKey(shapeKey.data.raw)->points->Address())[1], (Vector{4, 5, 6}));
  EXPECT_EQ(AsInt32(shapeKey.params.at(SplineKeyParam_Mode).raw), 2);
  EXPECT_EQ(AsText(splineTracks[1]->curve->keys.at(1)->data.raw), u"zweite \u00E4");
}

TEST_F(RoundTrip, SplineArraysComeBackElementForElement) {
  Object* spline = FindObjectNamed(*copy, u"Shape");
  Tag* points = FindTag(*spline, TagType_Points, 0);
  ASSERT_EQ(points->count, 3);
  EXPECT_EQ(static_cast<Vector*>(points->Address())[2], (Vector{20, 7.25, 1e-9}));
  auto* tangents = static_cast<SplineTangent*>(FindTag(*spline, TagType_Tangents, 0)->Address());
  EXPECT_EQ(tangents[1].right, (Vector{1, 0.5, 0}));
  auto* segments = static_cast<SplineSegment*>(FindTag(*spline, TagType_Segments, 0)->Address());
  EXPECT_EQ(segments[0].count, 3);
  EXPECT_EQ(segments[0].closed, 1);
}

TEST_F(RoundTrip, DocumentListsSettingsAndViews) {
  EXPECT_EQ(copy->name, u"sample");
  EXPECT_TRUE(copy->bits.test(kNodeBitDocumentLayers));
  EXPECT_EQ(copy->currentTime, BaseTime(7, 25));
  EXPECT_EQ(AsInt32(copy->params.at(DocParam_Fps).raw), 25);
  std::vector<Node*> settings = ChildrenOf(copy->settings.get());
  ASSERT_EQ(settings.size(), 2u);
  EXPECT_EQ(copy->activeSettings, settings[1]);
  EXPECT_EQ(*AsTime(settings[1]->params.at(RenderParam_FrameTo).raw), BaseTime(49, 25));
  std::vector<Node*> markers = ChildrenOf(copy->markers.get());
  ASSERT_EQ(markers.size(), 2u);
  EXPECT_EQ(AsText(markers[0]->params.at(MarkerParam_Note).raw), u"start");
  EXPECT_EQ(*AsTime(markers[1]->params.at(MarkerParam_Time).raw), BaseTime(10, 25));
  Node* shader = ShaderList(*copy->materials->firstChild)->firstChild;
  EXPECT_EQ(PathOf(*AsFilename(shader->params.at(BitmapShaderParam_File).raw)), "/footage/plate \u00E9.png");
  EXPECT_EQ(ChildrenOf(shader).size(), 1u);
  ASSERT_EQ(copy->views.size(), 2u);
  EXPECT_EQ(copy->views[0]->editorCamera->name, u"editor");
  EXPECT_EQ(copy->views[1]->editorCamera, nullptr);
  EXPECT_EQ(copy->activeView, 1);
  EXPECT_EQ(copy->renderView, 0);
}

TEST(RoundTripLinks, LinkToANodeOutsideTheDocumentReadsAsNoLink) {
  std::unique_ptr<Document> doc = NewDocument();
  Object outside(ObjectType_Null);
  auto* object = new Object(ObjectType_Camera);
  InsertLastUnder(object, doc->objects.get());
  SetLinkId(object->params[1].raw, LinkIdOf(&outside));
  std::unique_ptr<Document> copy = Decode(Encode(*doc));
  EXPECT_EQ(AsLink(copy->objects->firstChild->params.at(1).raw)->targetId, 0u);
}

TEST(RoundTripLinks, EmptyDocumentHasNoSettingsAndNoViews) {
  Document empty;
  std::unique_ptr<Document> copy = Decode(Encode(empty));
  EXPECT_EQ(copy->activeSettings, nullptr);
  EXPECT_TRUE(copy->views.empty());
  EXPECT_EQ(copy->activeView, -1);
}

class SceneFileOnDisk : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = std::filesystem::temp_directory_path() /
          ("ory_format_test_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
           ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::create_directories(dir);
  }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string PathOf(const char* leaf) const { return (dir / leaf).string(); }
  std::filesystem::path dir;
};

TEST_F(SceneFileOnDisk, WriteThenReadReplacesTheDocumentContent) {
  std::unique_ptr<Document> doc = MakeSampleScene();
  const std::string path = PathOf("scene.ory");
  std::string error;
  ASSERT_TRUE(WriteDocument(*doc, path, &error)) << error;
  std::unique_ptr<Document> target = NewDocument();
  target->name = u"to be replaced";
  ASSERT_TRUE(ReadDocument(path, *target, &error)) << error;
  EXPECT_EQ(target->name, u"sample");
  EXPECT_EQ(Encode(*target), Encode(*doc));
  // No temporary file stays behind.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), {}), 1);
}

TEST_F(SceneFileOnDisk, FailedWriteKeepsTheFileThatWasThere) {
  const std::string path = PathOf("scene.ory");
  std::ofstream(path) << "previous";
  std::unique_ptr<Document> doc = NewDocument();
  doc->params[77].raw.kind = 424242;  // a kind with no file form
  std::string error;
  EXPECT_FALSE(WriteDocument(*doc, path, &error));
  EXPECT_EQ(error, path + ": a value of kind 424242 has no file form");
  doc->params[77].raw.kind = DataKind_Empty;
  std::ifstream in(path);
  std::string content((std::istreambuf_iterator<char>(in)), {});
  EXPECT_EQ(content, "previous");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir), {}), 1);
}

TEST_F(SceneFileOnDisk, UnwritableFolderAndMissingFileAreNamed) {
  std::unique_ptr<Document> doc = NewDocument();
  std::string error;
  const std::string inMissing = PathOf("no/such/folder/scene.ory");
  EXPECT_FALSE(WriteDocument(*doc, inMissing, &error));
  EXPECT_EQ(error, inMissing + ": cannot write: No such file or directory");
  const std::string missing = PathOf("missing.ory");
  EXPECT_FALSE(ReadDocument(missing, *doc, &error));
  EXPECT_EQ(error, missing + ": cannot open: No such file or directory");
  EXPECT_FALSE(ReadDocument(dir.string(), *doc, &error));
  EXPECT_EQ(error, dir.string() + ": not a regular file (a folder)");
}

TEST_F(SceneFileOnDisk, ReadErrorNamesPathAndOffset) {
  const std::string path = PathOf("short.ory");
  std::ofstream(path) << "QORYORY6";
  std::unique_ptr<Document> doc = MakeSampleScene();
  std::string error;
  EXPECT_FALSE(ReadDocument(path, *doc, &error));
  EXPECT_EQ(error, path + ": byte 8: the file ends after 8 bytes, inside the 24-byte header");
  EXPECT_EQ(doc->objects->firstChild, nullptr);
}

// Markers and unique ids of objects, tags, materials and the document travel in the file.
TEST(IdentityRoundTrip, MarkersAndUniqueIdsComeBack) {
  std::unique_ptr<Document> original = MakeSampleScene();
  Object* camera = FindObjectNamed(*original, u"Camera 1");
  Node* material = original->materials->firstChild;
  Node* tag = camera->tagRoot->firstChild;
  SetUniqueIdOf(camera->identity, 5, {'c', 'a', 'm'});
  SetUniqueIdOf(camera->identity, 6, {0, 255});
  SetUniqueIdOf(material->identity, 5, {'m'});
  for (Node* node : {static_cast<Node*>(camera), material, tag, static_cast<Node*>(original.get())})
    MarkerOf(node->identity);

  const std::vector<std::uint8_t> bytes = Encode(*original);
  std::unique_ptr<Document> copy = Decode(bytes);
  Object* cameraCopy = FindObjectNamed(*copy, u"Camera 1");
  ASSERT_NE(cameraCopy, nullptr);
  EXPECT_EQ(cameraCopy->identity.marker, camera->identity.marker);
  ASSERT_NE(FindUniqueIdOf(cameraCopy->identity, 6), nullptr);
  EXPECT_EQ(FindUniqueIdOf(cameraCopy->identity, 6)->bytes, (std::vector<std::uint8_t>{0, 255}));
  EXPECT_EQ(FindUniqueIdOf(cameraCopy->identity, 5)->bytes, (std::vector<std::uint8_t>{'c', 'a', 'm'}));
  EXPECT_EQ(copy->materials->firstChild->identity.marker, material->identity.marker);
  EXPECT_EQ(FindUniqueIdOf(copy->materials->firstChild->identity, 5)->bytes, (std::vector<std::uint8_t>{'m'}));
  EXPECT_EQ(cameraCopy->tagRoot->firstChild->identity.marker, tag->identity.marker);
  EXPECT_EQ(copy->identity.marker, original->identity.marker);
  EXPECT_FALSE(HasIdentity(FindObjectNamed(*copy, u"Shape")->identity));
  EXPECT_EQ(Encode(*copy), bytes);
}

// A file of version 1, which knows no identities, is still read, and written as version 1
// again gives the same bytes.
TEST(IdentityRoundTrip, VersionOneFileStillLoads) {
  std::unique_ptr<Document> original = MakeSampleScene();
  SetUniqueIdOf(original->objects->firstChild->identity, 5, {'x'});
  // A nested container, which version 1 cannot hold either, is left out.
  InitCustom(original->params[1029194].raw, DataKind_Container);
  SetInt32(AsContainer(original->params[1029194].raw)->entries[1000].raw, 0);
  std::vector<std::uint8_t> old;
  std::string error;
  ASSERT_TRUE(EncodeDocumentAs(*original, kFormatVersionWithoutIdentity, old, &error)) << error;
  EXPECT_EQ(FormatVersionOf(old.data(), old.size()), 1u);
  std::unique_ptr<Document> copy = Decode(old);
  EXPECT_FALSE(HasIdentity(copy->objects->firstChild->identity));
  EXPECT_EQ(copy->params.count(1029194), 0u);
  EXPECT_EQ(copy->objects->firstChild->name, u"project-Comp 1");
  const std::vector<std::uint8_t> current = Encode(*copy);
  EXPECT_EQ(FormatVersionOf(current.data(), current.size()), 2u);
  std::vector<std::uint8_t> again;
  ASSERT_TRUE(EncodeDocumentAs(*copy, kFormatVersionWithoutIdentity, again, &error)) << error;
  EXPECT_EQ(again, old);
}

// The tree of scene states and the current one come back; a version 1 file has none.
TEST(IdentityRoundTrip, SceneStatesAndTheCurrentOneComeBack) {
  std::unique_ptr<Document> original = MakeSampleScene();
  Node* day = NewState().release();
  Node* night = NewState().release();
  day->name = u"day";
  night->name = u"night";
  InsertLastUnder(day, original->states.get());
  InsertLastUnder(night, day);
  ASSERT_TRUE(MakeStateCurrent(*original, night));

  const std::vector<std::uint8_t> bytes = Encode(*original);
  std::unique_ptr<Document> copy = Decode(bytes);
  const std::vector<Node*> states = StatesInOrder(*copy);
  ASSERT_EQ(states.size(), 2u);
  EXPECT_EQ(states[0]->name, u"day");
  EXPECT_EQ(states[1]->name, u"night");
  EXPECT_EQ(states[1]->parent, states[0]);
  EXPECT_EQ(CurrentState(*copy), states[1]);
  EXPECT_EQ(Encode(*copy), bytes);

  std::vector<std::uint8_t> old;
  std::string error;
  ASSERT_TRUE(EncodeDocumentAs(*original, kFormatVersionWithoutIdentity, old, &error)) << error;
  std::unique_ptr<Document> oldCopy = Decode(old);
  EXPECT_TRUE(StatesInOrder(*oldCopy).empty());
  EXPECT_EQ(CurrentState(*oldCopy), nullptr);
}

}  // namespace
}  // namespace quillon::format
