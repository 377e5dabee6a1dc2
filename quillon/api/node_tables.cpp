// Tables At and Bl: what every scene node offers.
#include "quillon/api/handles.h"
#include "quillon/api/parameters.h"
#include "quillon/api/scene_file.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"
#include "quillon/model/links.h"

namespace quillon {
namespace {

constexpr int32_t kBitCount = 64;

int32_t GetType(const SceneNode* node) { return node ? NodeOf(node)->type : 0; }

bool GetParameter(const SceneNode* node, const ParamId* id, DataValue* out, int32_t) {
  if (!node || !out) return false;
  return ReadParameter(*NodeOf(node), PathOf(id), *out);
}

bool SetParameter(SceneNode* node, const ParamId* id, const DataValue* value, int32_t) {
  if (!node || !value) return false;
  return WriteParameter(*NodeOf(node), PathOf(id), *value);
}

SceneNode* GetNext(const SceneNode* node) { return node ? HandleOf<SceneNode>(NodeOf(node)->next) : nullptr; }
SceneNode* GetPrev(const SceneNode* node) { return node ? HandleOf<SceneNode>(NodeOf(node)->prev) : nullptr; }
SceneNode* GetUp(const SceneNode* node) { return node ? HandleOf<SceneNode>(VisibleParent(NodeOf(node))) : nullptr; }

SceneNode* GetDown(const SceneNode* node) {
  return node ? HandleOf<SceneNode>(NodeOf(node)->firstChild) : nullptr;
}

// A cache hangs below its generator without being one of its children.
bool IsCache(const Node* node) { return node->parent && !node->prev && node->parent->firstChild != node; }

// What may move between lists. Keys stand in their curve's array (DeleteKey
// takes them out), caches belong to their generator, list roots to their
// owner, documents stand alone.
bool IsListed(const Node* node) {
  switch (node->nodeClass) {
    case NodeClass::Key:
    case NodeClass::Document:
    case NodeClass::ListRoot: return false;
    default: return !IsCache(node);
  }
}

// A node may go below place unless it is a fixed one or place lies within it.
bool CanMove(const SceneNode* node, const Node* place) {
  return node && place && IsListed(NodeOf(node)) && !IsWithin(place, NodeOf(node));
}

void InsertAfter(SceneNode* node, SceneNode* predecessor) {
  if (predecessor && CanMove(node, NodeOf(predecessor)->parent)) InsertBehind(NodeOf(node), NodeOf(predecessor));
}

void InsertUnder(SceneNode* node, SceneNode* parent) {
  if (CanMove(node, NodeOf(parent))) InsertFirstUnder(NodeOf(node), NodeOf(parent));
}

void InsertUnderLast(SceneNode* node, SceneNode* parent) {
  if (CanMove(node, NodeOf(parent))) InsertLastUnder(NodeOf(node), NodeOf(parent));
}

void Remove(SceneNode* node) {
  if (node && IsListed(NodeOf(node))) Unlink(NodeOf(node));
}

BaseDocument* GetDocument(const SceneNode* node) {
  return node ? HandleOf<BaseDocument>(DocumentOf(NodeOf(node))) : nullptr;
}

SceneNode* GetFirstUnderRoot(const SceneNode* root) { return GetDown(root); }
void InsertUnderRoot(SceneNode* root, SceneNode* node) { InsertUnderLast(node, root); }

void GetName(const SceneNode* node, EngineString* out) {
  if (node && out) AssignText(*out, NodeOf(node)->name);
}

void SetName(SceneNode* node, const EngineString* name, bool) {
  if (node) NodeOf(node)->name = name ? TextOf(*name) : std::u16string();
}

void InsertShader(SceneNode* material, BaseShader* shader, BaseShader* predecessor) {
  if (!material || !shader) return;
  Node* list = ShaderList(*NodeOf(material));
  if (!list) return;
  if (predecessor && NodeOf(predecessor)->parent == list) {
    InsertBehind(NodeOf(shader), NodeOf(predecessor));
  } else {
    InsertLastUnder(NodeOf(shader), list);
  }
}

void SetBitFlag(SceneNode* node, int32_t bit, bool on) {
  if (node && bit >= 0 && bit < kBitCount) NodeOf(node)->bits.set(static_cast<size_t>(bit), on);
}

bool GetBitFlag(const SceneNode* node, int32_t bit) {
  return node && bit >= 0 && bit < kBitCount && NodeOf(node)->bits.test(static_cast<size_t>(bit));
}

int32_t GetNodeType(const SceneNode* node) { return GetType(node); }
uint32_t GetInfoBits(const SceneNode* node) { return node ? NodeOf(node)->infoBits : 0; }

// A cache belongs to its generator, which holds it outside its children.
void FreeCache(Object& cache) {
  Object* generator = AsObject(cache.parent);
  if (!generator) return;
  if (generator->generatorCache.get() == &cache) generator->generatorCache.reset();
  if (generator->deformCache.get() == &cache) generator->deformCache.reset();
}

void FreeNode(SceneNode* handle) {
  if (!handle) return;
  Node* node = NodeOf(handle);
  if (node->nodeClass == NodeClass::ListRoot) return;
  if (Key* key = AsKey(node); key && key->curve) {
    bool exact = false;
    int32_t index = LowerBound(*key->curve, key->time, &exact);
    if (exact && key->curve->keys.at(index) == key) {
      DeleteKeyAt(*key->curve, index);
      return;
    }
  }
  if (Curve* curve = AsCurve(node); curve && curve->track) {
    curve->track->curve.reset();
    return;
  }
  if (Object* object = AsObject(node); object && IsCache(object)) {
    FreeCache(*object);
    return;
  }
  if (Document* document = DocumentOf(node); document && document->activeSettings == node) {
    document->activeSettings = nullptr;
  }
  Unlink(node);
  delete node;
}

bool WriteNode(const BaseDocument* document, SceneFile* file) {
  const Document* model = DocumentOfHandle(document);
  return model && file && WriteSceneFile(*file, *model);
}

ParamContainer* GetDataInstance(SceneNode* node) { return node ? &NodeOf(node)->container : nullptr; }

SceneLayer* GetSceneLayer(const SceneNode* node, const BaseDocument* document) {
  if (!node) return nullptr;
  Node* layer = ResolveLinkIn(NodeOf(node)->layerId, DocumentOfHandle(document));
  return layer && layer->nodeClass == NodeClass::Layer ? HandleOf<SceneLayer>(layer) : nullptr;
}

void SetLayer(SceneNode* node, SceneLayer* layer) {
  if (node) NodeOf(node)->layerId = layer ? LinkIdOf(NodeOf(layer)) : 0;
}

AnimTrack* FindTrack(const SceneNode* node, const ParamId* id) {
  if (!node || !id || !id->levels) return nullptr;
  return HandleOf<AnimTrack>(FindTrackByPath(*NodeOf(node), id->levels, id->count));
}

void InsertTrack(SceneNode* node, AnimTrack* track) {
  if (node && TrackOf(track)) InsertLastUnder(NodeOf(track), NodeOf(node)->trackList());
}

}  // namespace

const ORYOS_At& AtTable() {
  static const ORYOS_At table{.GetType = GetType,
                              .GetParameter = GetParameter,
                              .SetParameter = SetParameter,
                              .GetNext = GetNext,
                              .GetUp = GetUp,
                              .GetDown = GetDown,
                              .InsertAfter = InsertAfter,
                              .InsertUnder = InsertUnder,
                              .InsertUnderLast = InsertUnderLast,
                              .Remove = Remove,
                              .GetDocument = GetDocument,
                              .GetFirstUnderRoot = GetFirstUnderRoot,
                              .InsertUnderRoot = InsertUnderRoot,
                              .GetName = GetName,
                              .SetName = SetName,
                              .InsertShader = InsertShader,
                              .SetBitFlag = SetBitFlag,
                              .GetBitFlag = GetBitFlag,
                              .GetPrev = GetPrev,
                              .CloneNode = CloneNode,
                              .CopyNodeTo = CopyNodeTo,
                              .IsKindOf = IsKindOf,
                              .SendNodeMessage = SendNodeMessage,
                              .SendTreeMessage = SendTreeMessage,
                              .AllocNodeArray = AllocNodeArray,
                              .FreeNodeArray = FreeNodeArray,
                              .GetNodeArrayCount = GetNodeArrayCount,
                              .GetNodeArrayItem = GetNodeArrayItem,
                              .GetBranches = GetBranches,
                              .GetMarker = GetMarker,
                              .MarkersEqual = MarkersEqual,
                              .MoveLinks = MoveLinks,
                              .FindUniqueId = FindUniqueId,
                              .SetUniqueId = SetUniqueId,
                              .GetBranchKind = GetBranchKind};
  return table;
}

const ORYOS_Bl& BlTable() {
  static const ORYOS_Bl table{.GetNodeType = GetNodeType,
                              .GetInfoBits = GetInfoBits,
                              .FreeNode = FreeNode,
                              .WriteNode = WriteNode,
                              .GetDataInstance = GetDataInstance,
                              .GetSceneLayer = GetSceneLayer,
                              .SetLayer = SetLayer,
                              .FindTrack = FindTrack,
                              .InsertTrack = InsertTrack,
                              .GetLayerData = GetLayerData,
                              .SetLayerData = SetLayerData};
  return table;
}

}  // namespace quillon
