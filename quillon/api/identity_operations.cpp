// Table At's operations of the render session: clones and copies, kinds,
// messages, lists of nodes and branches, markers, unique ids and link moves;
// and table Bl's layer records.
#include <cstring>
#include <new>
#include <vector>

#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/clone.h"
#include "quillon/model/layer_record.h"
#include "quillon/model/link_moves.h"

namespace quillon {
namespace {

// A document is copied through its scene file form, which keeps everything
// that identifies its nodes and gives the copy links of its own.
std::unique_ptr<Node> CloneDocument(const Document& source) {
  std::vector<uint8_t> bytes;
  auto copy = std::make_unique<Document>();
  if (!format::EncodeDocument(source, bytes, nullptr) ||
      !format::DecodeDocument(bytes.data(), bytes.size(), *copy, nullptr))
    return nullptr;
  return copy;
}

NodeClass ClassOfKind(int32_t kind, bool* known) {
  *known = true;
  switch (kind) {
    case NodeKind_Object: return NodeClass::Object;
    case NodeKind_Tag: return NodeClass::Tag;
    case NodeKind_Material: return NodeClass::Material;
    case NodeKind_Shader: return NodeClass::Shader;
    case NodeKind_Document: return NodeClass::Document;
    case NodeKind_RenderSettings: return NodeClass::RenderSettings;
    default: *known = false; return NodeClass::ListRoot;
  }
}

// The lists that hang below a node, in the order GetBranches gives them.
std::vector<Node*> BranchesOf(Node& node) {
  std::vector<Node*> heads;
  if (Document* document = AsDocument(&node)) {
    heads = {document->objects.get(), document->materials.get(), document->layers.get(),
             document->settings.get(), document->markers.get(), document->states.get()};
  }
  if (Object* object = AsObject(&node)) heads.push_back(object->tagRoot.get());
  if (Node* shaders = ShaderList(node)) heads.push_back(shaders);
  if (node.trackRoot) heads.push_back(node.trackRoot.get());
  return heads;
}

}  // namespace

SceneNode* CloneNode(const SceneNode* node, int32_t, LinkHolder*) {
  if (!node) return nullptr;
  try {
    const Node& source = *NodeOf(node);
    std::unique_ptr<Node> copy = AsDocument(&source) ? CloneDocument(*AsDocument(&source)) : CloneNodeTree(source);
    return HandleOf<SceneNode>(copy.release());
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

bool CopyNodeTo(const SceneNode* source, SceneNode* destination, int32_t, int32_t) {
  if (!source || !destination) return false;
  const Node& from = *NodeOf(source);
  Node& to = *NodeOf(destination);
  if (from.nodeClass != to.nodeClass || from.nodeClass == NodeClass::Document ||
      from.nodeClass == NodeClass::ListRoot)
    return false;
  CopyNodeContent(from, to);
  return true;
}

bool IsKindOf(const SceneNode* node, int32_t kind) {
  if (!node) return false;
  bool known = false;
  const NodeClass nodeClass = ClassOfKind(kind, &known);
  return known ? NodeOf(node)->nodeClass == nodeClass : NodeOf(node)->type == kind;
}

void SendNodeMessage(SceneNode*, int32_t, void*) {}

bool SendTreeMessage(SceneNode* node, int32_t, int32_t id, void* data) {
  if (!node || !data || id != kMessageMergePlaceholder) return false;
  const auto* pair = static_cast<const NodePair*>(data);
  if (!pair->first || !pair->second) return false;
  MoveLinks(*NodeOf(pair->first), *NodeOf(pair->second));
  return true;
}

NodeArray* AllocNodeArray() { return new (std::nothrow) NodeArray(); }
void FreeNodeArray(NodeArray* array) { delete array; }
int32_t GetNodeArrayCount(const NodeArray* array) { return array ? static_cast<int32_t>(array->items.size()) : 0; }

SceneNode* GetNodeArrayItem(const NodeArray* array, int32_t index) {
  if (!array || index < 0 || index >= GetNodeArrayCount(array)) return nullptr;
  return array->items[static_cast<size_t>(index)];
}

bool GetBranches(const SceneNode* node, NodeArray* array, int32_t) {
  if (!node || !array) return false;
  array->items.clear();
  for (Node* head : BranchesOf(*NodeOf(node))) array->items.push_back(HandleOf<SceneNode>(head));
  return true;
}

int32_t GetBranchKind(const SceneNode* head) {
  const Node* root = head ? NodeOf(head) : nullptr;
  if (!root || root->nodeClass != NodeClass::ListRoot || !root->owner) return 0;
  Node& owner = *root->owner;
  if (owner.trackRoot.get() == root) return NodeType_Track;
  if (const Object* object = AsObject(&owner); object && object->tagRoot.get() == root) return NodeKind_Tag;
  if (ShaderList(owner) == root) return NodeKind_Shader;
  const Document* document = AsDocument(&owner);
  if (!document) return 0;
  if (document->objects.get() == root) return NodeKind_Object;
  if (document->materials.get() == root) return NodeKind_Material;
  if (document->layers.get() == root) return NodeType_Layer;
  if (document->settings.get() == root) return NodeKind_RenderSettings;
  if (document->markers.get() == root) return NodeType_Marker;
  return document->states.get() == root ? NodeType_State : 0;
}

const NodeMarker* GetMarker(const SceneNode* node) {
  if (!node) return nullptr;
  return reinterpret_cast<const NodeMarker*>(MarkerOf(NodeOf(node)->identity).data());
}

bool MarkersEqual(const NodeMarker* a, const NodeMarker* b) {
  return a && b && std::memcmp(a->bytes, b->bytes, sizeof a->bytes) == 0;
}

bool MoveLinks(SceneNode* from, SceneNode* to, int32_t) {
  if (!from || !to) return false;
  MoveLinks(*NodeOf(from), *NodeOf(to));
  return true;
}

bool FindUniqueId(const SceneNode* node, int32_t applicationId, const void** data, int32_t* size) {
  const UniqueId* id = node ? FindUniqueIdOf(NodeOf(node)->identity, applicationId) : nullptr;
  if (data) *data = id ? id->bytes.data() : nullptr;
  if (size) *size = id ? static_cast<int32_t>(id->bytes.size()) : 0;
  return id != nullptr;
}

void SetUniqueId(SceneNode* node, int32_t applicationId, const void* data, int32_t size) {
  if (!node || size < 0 || (size > 0 && !data)) return;
  const auto* bytes = static_cast<const uint8_t*>(data);
  SetUniqueIdOf(NodeOf(node)->identity, applicationId, std::vector<uint8_t>(bytes, bytes + size));
}

const LayerRecord* GetLayerData(const SceneLayer* layer, const BaseDocument* document, int32_t) {
  const Node* node = layer ? NodeOf(layer) : nullptr;
  if (!node || node->nodeClass != NodeClass::Layer || (document && DocumentOf(node) != DocumentOfHandle(document)))
    return nullptr;
  thread_local LayerRecord record;
  record = LayerRecordOf(*node);
  return &record;
}

bool SetLayerData(SceneLayer* layer, const BaseDocument* document, const LayerRecord* record) {
  Node* node = layer ? NodeOf(layer) : nullptr;
  if (!node || !record || node->nodeClass != NodeClass::Layer ||
      (document && DocumentOf(node) != DocumentOfHandle(document)))
    return false;
  ApplyLayerRecord(*node, *record);
  return true;
}

}  // namespace quillon
