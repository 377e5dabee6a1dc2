// The render session's operations through the tables: unique ids and markers,
// clones, copies and link moves, branches, layer records, scene states,
// nested containers and memory files.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "quillon/tests/engine_tables.h"

namespace quillon::testing {
namespace {

constexpr int32_t kApplication = 77;
constexpr int32_t kOtherApplication = 78;

std::string UniqueIdOf(const SceneNode* node, int32_t application) {
  const void* data = nullptr;
  int32_t size = -1;
  if (!At()->FindUniqueId(node, application, &data, &size)) return data == nullptr && size == 0 ? "<none>" : "<bad>";
  return std::string(static_cast<const char*>(data), static_cast<size_t>(size));
}

void GiveUniqueId(SceneNode* node, const std::string& id, int32_t application = kApplication) {
  At()->SetUniqueId(node, application, id.data(), static_cast<int32_t>(id.size()));
}

SceneNode* LinkOfTag(BaseTag* tag, const BaseDocument* document) {
  return Bc()->GetLink(Bl()->GetDataInstance(tag), TargetTagParam_Target, document, 0);
}

class SessionOperationsTest : public ::testing::Test {
 protected:
  BaseDocument* document = Bd()->AllocDocument();
  ~SessionOperationsTest() override { Bl()->FreeNode(document); }

  BaseObject* Insert(int32_t type = ObjectType_Null, BaseObject* parent = nullptr) {
    BaseObject* object = Bo()->AllocObject(type);
    Bd()->InsertObject(document, object, parent, nullptr, 0, 1);
    return object;
  }

  // A target tag on object that links to target.
  BaseTag* Aim(BaseObject* object, SceneNode* target) {
    BaseTag* tag = Tg()->AllocTag(TagType_Target, 0);
    Bo()->InsertTag(object, tag, nullptr);
    Bc()->SetLink(Bl()->GetDataInstance(tag), TargetTagParam_Target, target);
    return tag;
  }
};

TEST_F(SessionOperationsTest, UniqueIdsAreKeptForEachApplication) {
  BaseObject* object = Insert();
  EXPECT_EQ(UniqueIdOf(object, kApplication), "<none>");
  GiveUniqueId(object, "plane-1");
  GiveUniqueId(object, std::string("\0\x01", 2), kOtherApplication);
  EXPECT_EQ(UniqueIdOf(object, kApplication), "plane-1");
  EXPECT_EQ(UniqueIdOf(object, kOtherApplication), std::string("\0\x01", 2));
  GiveUniqueId(object, "plane-2");
  EXPECT_EQ(UniqueIdOf(object, kApplication), "plane-2");
  GiveUniqueId(object, "");
  EXPECT_EQ(UniqueIdOf(object, kApplication), "<none>");
  EXPECT_EQ(UniqueIdOf(object, kOtherApplication), std::string("\0\x01", 2));
}

TEST_F(SessionOperationsTest, EveryNodeHasAStableMarkerOfItsOwn) {
  BaseObject* a = Insert();
  BaseObject* b = Insert();
  const NodeMarker* first = At()->GetMarker(a);
  ASSERT_NE(first, nullptr);
  NodeMarker copy;
  std::memcpy(&copy, first, sizeof copy);
  EXPECT_TRUE(At()->MarkersEqual(At()->GetMarker(a), &copy));
  EXPECT_FALSE(At()->MarkersEqual(At()->GetMarker(b), &copy));
  EXPECT_FALSE(At()->MarkersEqual(At()->GetMarker(document), &copy));
  EXPECT_EQ(At()->GetMarker(nullptr), nullptr);
}

TEST_F(SessionOperationsTest, CloneKeepsIdentityAndPointsInnerLinksAtTheCopies) {
  BaseObject* outside = Insert();
  BaseObject* rig = Insert();
  BaseObject* child = Insert(ObjectType_Null, rig);
  Aim(rig, child);
  Aim(child, outside);
  GiveUniqueId(rig, "rig");
  const NodeMarker* marker = At()->GetMarker(child);

  auto* clone = static_cast<BaseObject*>(At()->CloneNode(rig, 0, nullptr));
  ASSERT_NE(clone, nullptr);
  Bd()->InsertObject(document, clone, nullptr, nullptr, 0, 1);
  auto* cloneChild = static_cast<BaseObject*>(At()->GetDown(clone));
  ASSERT_NE(cloneChild, nullptr);
  EXPECT_EQ(LinkOfTag(Bo()->GetTag(clone, TagType_Target, 0), document), cloneChild);
  EXPECT_EQ(LinkOfTag(Bo()->GetTag(cloneChild, TagType_Target, 0), document), outside);
  EXPECT_EQ(LinkOfTag(Bo()->GetTag(rig, TagType_Target, 0), document), child);
  EXPECT_EQ(UniqueIdOf(clone, kApplication), "rig");
  EXPECT_TRUE(At()->MarkersEqual(At()->GetMarker(cloneChild), marker));
}

TEST_F(SessionOperationsTest, CloneOfWhatHasNoCopyOfItsOwnIsNull) {
  EXPECT_EQ(At()->CloneNode(nullptr, 0, nullptr), nullptr);
  EXPECT_EQ(At()->CloneNode(Bd()->GetLayerRoot(document), 0, nullptr), nullptr);
}

TEST_F(SessionOperationsTest, CopyNodeToTakesValuesAndKeepsPlaceAndIdentity) {
  BaseObject* source = Bo()->AllocObject(ObjectType_Camera);
  const Vector place{100, 2, 3};
  Bo()->SetPosition(source, &place);
  Bo()->SetRotationOrder(source, 6);
  BaseObject* target = Insert(ObjectType_Camera);
  BaseObject* child = Insert(ObjectType_Null, target);
  GiveUniqueId(target, "camera");
  NodeMarker before;
  std::memcpy(&before, At()->GetMarker(target), sizeof before);

  ASSERT_TRUE(At()->CopyNodeTo(source, target, 924, 0));
  Vector position{};
  Bo()->GetPosition(target, &position);
  EXPECT_EQ(position.x, 100);
  EXPECT_EQ(Bo()->GetRotationOrder(target), 6);
  EXPECT_EQ(At()->GetDown(target), child);
  EXPECT_EQ(Bd()->GetFirstObject(document), target);
  EXPECT_EQ(UniqueIdOf(target, kApplication), "camera");
  EXPECT_TRUE(At()->MarkersEqual(At()->GetMarker(target), &before));
  EXPECT_FALSE(At()->CopyNodeTo(source, document, 0, 0));
  Bl()->FreeNode(source);
}

TEST_F(SessionOperationsTest, MoveLinksHandsOverTagLinksAndViewCameras) {
  BaseObject* old = Insert(ObjectType_Camera);
  BaseObject* replacement = Insert(ObjectType_Camera);
  BaseObject* watcher = Insert();
  Aim(watcher, old);
  BaseView* view = Bd()->GetActiveView(document);
  Br()->SetSceneCamera(view, old, 0);

  ASSERT_TRUE(At()->MoveLinks(old, replacement, 0));
  EXPECT_EQ(LinkOfTag(Bo()->GetTag(watcher, TagType_Target, 0), document), replacement);
  EXPECT_EQ(Br()->GetSceneCamera(view, document), replacement);
}

TEST_F(SessionOperationsTest, PlaceholderMessageMovesLinksToTheExistingMaterial) {
  Material* existing = Mt()->AllocMaterial(MaterialType_Standard);
  Material* placeholder = Mt()->AllocMaterial(MaterialType_Standard);
  Bd()->InsertMaterial(document, existing, nullptr, 0);
  Bd()->InsertMaterial(document, placeholder, nullptr, 0);
  BaseObject* plane = Insert(ObjectType_Plane);
  BaseTag* texture = Tg()->AllocTag(TagType_Texture, 0);
  Bo()->InsertTag(plane, texture, nullptr);
  Bc()->SetLink(Bl()->GetDataInstance(texture), TextureTagParam_Material, placeholder);

  NodePair pair{placeholder, existing};
  EXPECT_FALSE(At()->SendTreeMessage(document, 4, kMessageMergePlaceholder + 1, &pair));
  ASSERT_TRUE(At()->SendTreeMessage(document, 4, kMessageMergePlaceholder, &pair));
  EXPECT_EQ(Bc()->GetLink(Bl()->GetDataInstance(texture), TextureTagParam_Material, document, 0), existing);
}

TEST_F(SessionOperationsTest, BranchesOfADocumentAreItsListsWithTheirKinds) {
  BaseObject* object = Insert();
  Material* material = Mt()->AllocMaterial(MaterialType_Standard);
  Bd()->InsertMaterial(document, material, nullptr, 0);
  NodeArray* branches = At()->AllocNodeArray();
  ASSERT_TRUE(At()->GetBranches(document, branches, 0));
  std::vector<int32_t> kinds;
  for (int32_t i = 0; i < At()->GetNodeArrayCount(branches); ++i)
    kinds.push_back(At()->GetBranchKind(At()->GetNodeArrayItem(branches, i)));
  EXPECT_EQ(kinds, (std::vector<int32_t>{NodeKind_Object, NodeKind_Material, 400008002, NodeKind_RenderSettings,
                                         400008004, 400008008}));
  EXPECT_EQ(At()->GetDown(At()->GetNodeArrayItem(branches, 0)), object);
  EXPECT_EQ(At()->GetDown(At()->GetNodeArrayItem(branches, 1)), material);
  EXPECT_EQ(At()->GetNodeArrayItem(branches, 6), nullptr);

  ASSERT_TRUE(At()->GetBranches(material, branches, 0));
  ASSERT_EQ(At()->GetNodeArrayCount(branches), 1);
  EXPECT_EQ(At()->GetBranchKind(At()->GetNodeArrayItem(branches, 0)), NodeKind_Shader);
  At()->FreeNodeArray(branches);
}

struct KindCase {
  int32_t kind;
  bool object, tag, material, document, settings;
};

TEST_F(SessionOperationsTest, IsKindOfTellsTheClassesAndTheTypes) {
  BaseObject* camera = Insert(ObjectType_Camera);
  BaseTag* tag = Aim(camera, nullptr);
  Material* material = Mt()->AllocMaterial(MaterialType_Standard);
  Bd()->InsertMaterial(document, material, nullptr, 0);
  RenderData* settings = Bd()->GetActiveSettings(document);
  const KindCase cases[] = {
      {NodeKind_Object, true, false, false, false, false},   {NodeKind_Tag, false, true, false, false, false},
      {NodeKind_Material, false, false, true, false, false}, {NodeKind_Document, false, false, false, true, false},
      {NodeKind_RenderSettings, false, false, false, false, true},
      {ObjectType_Camera, true, false, false, false, false}, {TagType_Target, false, true, false, false, false},
  };
  for (const KindCase& c : cases) {
    SCOPED_TRACE(c.kind);
    EXPECT_EQ(At()->IsKindOf(camera, c.kind), c.object);
    EXPECT_EQ(At()->IsKindOf(tag, c.kind), c.tag);
    EXPECT_EQ(At()->IsKindOf(material, c.kind), c.material);
    EXPECT_EQ(At()->IsKindOf(document, c.kind), c.document);
    EXPECT_EQ(At()->IsKindOf(settings, c.kind), c.settings);
  }
}

TEST_F(SessionOperationsTest, LayerRecordsReadAndWriteTheLayersSwitches) {
  SceneLayer* layer = Bd()->AllocLayer();
  At()->InsertUnderRoot(Bd()->GetLayerRoot(document), layer);
  const LayerRecord* record = Bl()->GetLayerData(layer, document, 0);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->solo, 0);
  EXPECT_EQ(record->view, 1);
  EXPECT_EQ(record->render, 1);
  EXPECT_EQ(record->locked, 0);
  EXPECT_EQ(record->animation, 1);

  LayerRecord off = *record;
  off.view = 0;
  off.render = 0;
  ASSERT_TRUE(Bl()->SetLayerData(layer, document, &off));
  EXPECT_EQ(Bc()->GetInt32(Bl()->GetDataInstance(layer), LayerParam_Visible, -1), 0);
  EXPECT_EQ(Bl()->GetLayerData(layer, document, 0)->render, 0);

  BaseDocument* other = Bd()->AllocDocument();
  EXPECT_EQ(Bl()->GetLayerData(layer, other, 0), nullptr);
  EXPECT_FALSE(Bl()->SetLayerData(layer, other, &off));
  EXPECT_EQ(Bl()->GetLayerData(reinterpret_cast<SceneLayer*>(Insert()), document, 0), nullptr);
  Bl()->FreeNode(other);
}

TEST_F(SessionOperationsTest, SceneStatesHaveATreeAndACurrentOne) {
  const auto* states = Extension<SceneStateLibrary>(kExtensionSceneStates);
  ASSERT_NE(states, nullptr);
  SceneStateTree* tree = Bd()->GetStateData(document, 0, 0);
  SceneNode* root = states->GetStateRoot(tree);
  SceneNode* day = states->AllocState();
  SceneNode* night = states->AllocState();
  At()->InsertUnderRoot(root, day);
  At()->InsertUnder(night, day);
  EXPECT_EQ(At()->GetDown(root), day);
  EXPECT_EQ(states->GetCurrentState(tree), nullptr);

  EXPECT_TRUE(states->SetCurrentState(tree, night));
  EXPECT_EQ(states->GetCurrentState(tree), night);
  EXPECT_FALSE(states->SetCurrentState(tree, Insert()));
  SceneNode* loose = states->AllocState();
  EXPECT_FALSE(states->SetCurrentState(tree, loose));
  EXPECT_EQ(states->GetCurrentState(tree), night);
  Bl()->FreeNode(loose);
  At()->Remove(night);
  EXPECT_EQ(states->GetCurrentState(tree), nullptr);
  At()->InsertUnder(night, day);
  EXPECT_EQ(states->GetCurrentState(tree), night);
  Bl()->FreeNode(night);
  EXPECT_EQ(states->GetCurrentState(tree), nullptr);
}

TEST_F(SessionOperationsTest, TheDocumentTimeIsItsParameterDocParamTime) {
  Path time(DocParam_Time);
  Data half;
  const BaseTime value(1, 2);
  Gd()->SetTime(&half.value, &value);
  ASSERT_TRUE(At()->SetParameter(document, &time.id, &half.value, 0));
  EXPECT_EQ(*Bd()->GetDocumentTime(document), value);
  Data back;
  ASSERT_TRUE(At()->GetParameter(document, &time.id, &back.value, 0));
  EXPECT_EQ(*Gd()->GetTime(&back.value), value);
  Data number;
  Gd()->SetInt32(&number.value, 3);
  EXPECT_FALSE(At()->SetParameter(document, &time.id, &number.value, 0));
  EXPECT_EQ(*Bd()->GetDocumentTime(document), value);
}

TEST_F(SessionOperationsTest, ModesAndTheFirstTagReadBack) {
  BaseObject* object = Insert();
  EXPECT_EQ(Bo()->GetFirstTag(object), nullptr);
  Aim(object, nullptr);
  BaseTag* second = Aim(object, nullptr);
  EXPECT_EQ(Bo()->GetFirstTag(object), second);  // InsertTag without a predecessor puts a tag first
  Bo()->SetMode(object, 1, 2);
  EXPECT_EQ(Bo()->GetMode(object, 1), 2);
  EXPECT_EQ(Bo()->GetMode(object, 0), 0);
  EXPECT_EQ(Bo()->GetMode(object, 3), 0);
}

TEST_F(SessionOperationsTest, ActiveObjectsFollowTheModes) {
  BaseObject* a = Insert();
  BaseObject* b = Insert();
  BaseObject* loose = Bo()->AllocObject(ObjectType_Null);
  NodeArray* active = At()->AllocNodeArray();
  auto list = [&] {
    Bd()->GetActiveObjects(document, active);
    std::vector<SceneNode*> items;
    for (int32_t i = 0; i < At()->GetNodeArrayCount(active); ++i) items.push_back(At()->GetNodeArrayItem(active, i));
    return items;
  };
  Bd()->SetActiveObject(document, a, kActiveObjectNew);
  Bd()->SetActiveObject(document, b, kActiveObjectAdd);
  Bd()->SetActiveObject(document, loose, kActiveObjectAdd);
  EXPECT_EQ(list(), (std::vector<SceneNode*>{a, b}));
  Bd()->SetActiveObject(document, a, kActiveObjectRemove);
  EXPECT_EQ(list(), (std::vector<SceneNode*>{b}));
  At()->Remove(b);
  EXPECT_EQ(list(), (std::vector<SceneNode*>{}));
  Bd()->InsertObject(document, b, nullptr, nullptr, 0, 1);
  Bd()->SetActiveObject(document, nullptr, kActiveObjectNew);
  EXPECT_EQ(list(), (std::vector<SceneNode*>{}));
  At()->FreeNodeArray(active);
  Bl()->FreeNode(loose);
}

TEST_F(SessionOperationsTest, ContainersNestAndCompare) {
  ParamContainer list;
  Bc()->InitContainer(&list, -1, 0);
  Bc()->SetInt32(&list, 1000, 2);
  Bc()->SetInt32(&list, 2000, 5);
  ParamContainer* data = Bl()->GetDataInstance(document);
  Bc()->SetContainer(data, 1029194, &list);

  ParamContainer back;
  Bc()->InitContainer(&back, -1, 0);
  ASSERT_TRUE(Bc()->GetContainer(data, 1029194, &back));
  EXPECT_EQ(Bc()->GetInt32(&back, 2000, -1), 5);
  EXPECT_TRUE(Bc()->ContainersEqual(&list, &back));
  Bc()->SetInt32(&back, 2001, 6);
  EXPECT_FALSE(Bc()->ContainersEqual(&list, &back));
  EXPECT_FALSE(Bc()->GetContainer(data, 1029195, &back));
  Bc()->FreeContainer(&back);
  Bc()->FreeContainer(&list);
}

// Writes document through table Hf into a new memory file, at a file version.
std::vector<uint8_t> WriteToMemory(BaseDocument* document, int32_t version) {
  MemoryFile* memory = Fn()->AllocMemoryFile();
  Filename name{nullptr};
  Fn()->FilenameInit(&name);
  Fn()->SetMemoryWrite(&name, memory);
  SceneFile* file = Hf()->AllocSceneFile();
  Hf()->SetWriterVersion(file, version);
  std::vector<uint8_t> bytes;
  if (Hf()->Open(file, kSceneFileIdent, &name, kSceneFileModeWrite, 0) && Bl()->WriteNode(document, file) &&
      Hf()->Close(file) && Hf()->GetFileError(file) == 0) {
    const void* data = nullptr;
    int64_t size = 0;
    Fn()->GetMemoryFileData(memory, &data, &size);
    bytes.assign(static_cast<const uint8_t*>(data), static_cast<const uint8_t*>(data) + size);
  }
  Hf()->FreeSceneFile(file);
  Fn()->FilenameFree(&name);
  Fn()->FreeMemoryFile(memory);
  return bytes;
}

// Loads bytes as a memory file under a name, as an update arrives.
BaseDocument* LoadFromMemory(const std::vector<uint8_t>& bytes, const char* name, std::string* error) {
  Filename file{nullptr};
  Fn()->FilenameInit(&file);
  Fn()->SetMemoryRead(&file, bytes.data(), static_cast<int64_t>(bytes.size()), false);
  Filename leaf{nullptr};
  Fn()->SetFromCString(&leaf, name);
  Fn()->SetFile(&file, &leaf);
  BaseDocument* document = Bd()->AllocDocument();
  Text message;
  if (!Ge()->LoadFileIntoDocument(document, &file, 0, nullptr, nullptr, &message.value)) {
    *error = message.Utf8();
    Bl()->FreeNode(document);
    document = nullptr;
  }
  Text path;
  Fn()->GetString(&path.value, &file);
  if (document) *error = path.Utf8();
  Fn()->FilenameFree(&leaf);
  Fn()->FilenameFree(&file);
  return document;
}

uint32_t VersionOf(const std::vector<uint8_t>& file) {
  uint32_t version = 0;
  std::memcpy(&version, file.data() + 8, sizeof version);
  return version;
}

TEST_F(SessionOperationsTest, MemoryFilesCarryADocumentUnderAName) {
  BaseObject* plane = Insert(ObjectType_Plane);
  GiveUniqueId(plane, "plane");
  At()->GetMarker(plane);
  const std::vector<uint8_t> bytes = WriteToMemory(document, 0);
  ASSERT_GT(bytes.size(), 24u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "QORYORY6");

  std::string said;
  BaseDocument* update = LoadFromMemory(bytes, "__upds77", &said);
  ASSERT_NE(update, nullptr) << said;
  EXPECT_EQ(said, "mfs:/__upds77");
  BaseObject* loaded = Bd()->GetFirstObject(update);
  EXPECT_EQ(UniqueIdOf(loaded, kApplication), "plane");
  EXPECT_TRUE(At()->MarkersEqual(At()->GetMarker(loaded), At()->GetMarker(plane)));
  Bl()->FreeNode(update);
}

TEST_F(SessionOperationsTest, AMemoryFileIsNamedByTheLeafOfItsPath) {
  for (const auto& [path, text] : {std::pair{"/tmp/sent.png", "mfs:/sent.png"}, std::pair{"", "mfs:/memory"},
                                   std::pair{"mfs:/__updt", "mfs:/__updt"}}) {
    Filename file{nullptr};
    Fn()->FilenameInit(&file);
    Fn()->SetFromCString(&file, path);
    Fn()->SetMemoryRead(&file, "x", 1, false);
    Text said;
    Fn()->GetString(&said.value, &file);
    EXPECT_EQ(said.Utf8(), text);
    Fn()->FilenameFree(&file);
  }
}

TEST_F(SessionOperationsTest, DamagedMemoryFileIsRefusedByItsName) {
  std::vector<uint8_t> bytes = WriteToMemory(document, 0);
  bytes.resize(bytes.size() - 1);
  std::string said;
  EXPECT_EQ(LoadFromMemory(bytes, "__updc", &said), nullptr);
  EXPECT_EQ(said.rfind("mfs:/__updc: byte 16: body length", 0), 0u) << said;
}

struct VersionCase {
  int32_t applicationVersion;
  uint32_t formatVersion;
  bool keepsIdentity;
};

TEST_F(SessionOperationsTest, OlderFileVersionsAreWrittenWithoutIdentity) {
  BaseObject* plane = Insert(ObjectType_Plane);
  GiveUniqueId(plane, "plane");
  for (const VersionCase& c : {VersionCase{14034, 1, false}, VersionCase{24111, 1, false},
                               VersionCase{25117, 2, true}, VersionCase{0, 2, true}}) {
    SCOPED_TRACE(c.applicationVersion);
    const std::vector<uint8_t> bytes = WriteToMemory(document, c.applicationVersion);
    ASSERT_GT(bytes.size(), 24u);
    EXPECT_EQ(VersionOf(bytes), c.formatVersion);
    std::string said;
    BaseDocument* copy = LoadFromMemory(bytes, "copy", &said);
    ASSERT_NE(copy, nullptr) << said;
    EXPECT_EQ(UniqueIdOf(Bd()->GetFirstObject(copy), kApplication), c.keepsIdentity ? "plane" : "<none>");
    Bl()->FreeNode(copy);
  }
}

TEST_F(SessionOperationsTest, CloneOfADocumentKeepsItsElementsIdentities) {
  BaseObject* plane = Insert(ObjectType_Plane);
  GiveUniqueId(plane, "plane");
  At()->GetMarker(plane);
  SceneNode* copy = At()->CloneNode(document, 0, nullptr);
  ASSERT_NE(copy, nullptr);
  ASSERT_TRUE(At()->IsKindOf(copy, NodeKind_Document));
  BaseObject* twin = Bd()->GetFirstObject(static_cast<BaseDocument*>(copy));
  EXPECT_NE(twin, plane);
  EXPECT_EQ(UniqueIdOf(twin, kApplication), "plane");
  EXPECT_TRUE(At()->MarkersEqual(At()->GetMarker(twin), At()->GetMarker(plane)));
  Bl()->FreeNode(copy);
}

}  // namespace
}  // namespace quillon::testing
