#include "plugin/exporter/node_factory.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/text/load_string_table.h"
#include "plugin/exporter/origin_key.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {

// The origin key's layer part: source item, layer id and object type, as the host gives them.
std::optional<OriginKeyLayer> KeyLayerOf(AEGP_LayerH layer) {
  if (!layer) return std::nullopt;
  OriginKeyLayer keyLayer;
  AEGP_ItemH source = nullptr;
  LayerSuite13()->AEGP_GetLayerSourceItem(layer, &source);
  if (source) {
    OriginKeySource keySource;
    AEGP_ItemType type = 0;
    ItemSuite13()->AEGP_GetItemID(source, &keySource.itemId);
    ItemSuite13()->AEGP_GetItemType(source, &type);
    keySource.itemType = type;
    keyLayer.source = keySource;
  }
  LayerSuite13()->AEGP_GetLayerID(layer, &keyLayer.layerId);
  LayerSuite13()->AEGP_GetLayerObjectType(layer, &keyLayer.objectType);
  return keyLayer;
}

std::string LayerNameTextOf(AEGP_LayerH layer) {
  if (!layer) return BuildLayerNameText("", "");
  std::string layerName, sourceName;
  LayerNames(layer, &layerName, &sourceName);
  return BuildLayerNameText(layerName, sourceName);
}

// The text under the node's origin key, empty when it has none.
std::string OriginKeyOf(SceneNode* node) { return GetContainerString(node, ParamKey_OriginKey); }

}  // namespace

bool BuildNameAndKey(AEToOry& exporter, AEGP_LayerH layer, std::string* name, std::string* key) {
  name->clear();
  key->clear();
  if (exporter.projectName.empty()) return false;
  *key = BuildOriginKeyText(exporter.projectName, exporter.targetLeaf, KeyLayerOf(layer));
  *name = LayerNameTextOf(layer);
  return true;
}

void NameAndKeyOrThrow(AEToOry& exporter, AEGP_LayerH layer, std::string* name, std::string* key) {
  if (!BuildNameAndKey(exporter, layer, name, key)) {
    ReportError(41, exporter.cti);
    throw A_Err{1};
  }
  *name = DisplayNameOf(*name);
}

BaseObject* FindOrAllocObject(AEToOry& exporter, const std::string& key, int32_t type, bool* made) {
  const auto found = exporter.objectsByKey.find(key);
  *made = found == exporter.objectsByKey.end();
  if (!*made) return found->second;
  BaseObject* object = t_ORYOS_Bo->AllocObject(type);
  if (!object) {
    AddError(4, "Export/Merge failed. Out of memory.");
    throw A_Err{4};
  }
  SetContainerString(object, ParamKey_OriginKey, key);
  exporter.objectsByKey.emplace(key, object);
  return object;
}

BaseObject* FindLayerObject(AEToOry& exporter, int32_t layerId) {
  const auto found = exporter.objectsByLayerId.find(layerId);
  if (found != exporter.objectsByLayerId.end()) return found->second;
  return FindByLayerId(t_ORYOS_Bd->GetFirstObject(exporter.document), layerId);
}

BaseObject* CreateLayerObject(AEToOry& exporter, AEGP_LayerH layer, int32_t type, bool insert) {
  std::string name, key;
  NameAndKeyOrThrow(exporter, layer, &name, &key);
  bool made = false;
  BaseObject* object = FindOrAllocObject(exporter, key, type, &made);
  if (made) {
    // New objects wait at the top of the document until the link walk places them: their
    // values are world values, and only there does the engine see them as such. Under the
    // object of a precomposition that is not yet placed itself, the inner link walk would
    // take that object's place twice.
    if (insert) t_ORYOS_Bd->InsertObject(exporter.document, object, nullptr, nullptr, 0, 1);
    AEGP_LayerIDVal id = -1;
    if (layer) LayerSuite13()->AEGP_GetLayerID(layer, &id);
    SetContainerInt32(object, ParamKey_LayerId, id);
    exporter.objectsByLayerId.emplace(id, object);
  }
  SetNodeName(object, name);
  return object;
}

namespace {

// The kind of the splines the exporter makes: Bezier.
constexpr int32_t kSplineKindBezier = 4;

BaseObject* AllocChild(int32_t type) {
  BaseObject* object =
      type == ObjectType_Spline ? t_ORYOS_Bo->AllocSpline(0, kSplineKindBezier) : t_ORYOS_Bo->AllocObject(type);
  if (!object) {
    AddError(4, "Export/Merge failed. Out of memory in child creation.");
    throw A_Err{4};
  }
  return object;
}

// Splines, outlines and text objects are marked as the exporter's own children.
bool TakesChildFlag(int32_t type) {
  return type == ObjectType_Spline || type == ObjectType_TextOutline || type == ObjectType_Text;
}

}  // namespace

BaseObject* CreateChildObject(AEToOry& exporter, BaseObject* parent, AEGP_LayerH layer, const std::string& suffix,
                              int32_t type, bool insert, bool appendSuffix, bool* made) {
  std::string name, key;
  NameAndKeyOrThrow(exporter, layer, &name, &key);
  if (!suffix.empty()) {
    name = appendSuffix ? name + "-" + suffix : suffix;
    key = appendSuffix ? key + "-" + suffix : suffix;
  }
  SceneNode* found = parent ? FindByKey(t_ORYOS_At->GetDown(parent), key) : nullptr;
  BaseObject* object = static_cast<BaseObject*>(found);
  if (made) *made = !object;
  if (!object) {
    object = AllocChild(type);
    SetContainerString(object, ParamKey_OriginKey, key);
    if (insert) t_ORYOS_Bd->InsertObject(exporter.document, object, parent, nullptr, 0, 1);
    AEGP_LayerIDVal id = -1;
    if (layer && LayerSuite13()->AEGP_GetLayerID(layer, &id) != A_Err_NONE) id = -1;
    SetContainerInt32(object, ParamKey_LayerId, id);
    if (TakesChildFlag(type)) SetInt32Param(object, ChildObjectParam_Flag, 1);
  }
  SetNodeName(object, name);
  return object;
}

SceneLayer* CreateDocLayer(AEToOry& exporter, AEGP_LayerH layer, bool insert) {
  std::string name, key;
  NameAndKeyOrThrow(exporter, layer, &name, &key);
  SceneNode* root = t_ORYOS_Bd->GetLayerRoot(exporter.document);
  SceneLayer* docLayer = static_cast<SceneLayer*>(FindByKey(t_ORYOS_At->GetFirstUnderRoot(root), key));
  if (!docLayer) {
    docLayer = t_ORYOS_Bd->AllocLayer();
    if (!docLayer) {
      AddError(4, "Export/Merge failed. Out of memory during layer creation.");
      throw A_Err{4};
    }
    SetContainerString(docLayer, ParamKey_OriginKey, key);
    if (insert) InsertLayer(exporter.document, docLayer);
  }
  SetNodeName(docLayer, name);
  return docLayer;
}

void InsertLayer(BaseDocument* document, SceneLayer* layer) {
  t_ORYOS_At->InsertUnderRoot(t_ORYOS_Bd->GetLayerRoot(document), layer);
  if (GetInt32Param(layer, LayerParam_DocumentBit, 0) != 0) t_ORYOS_At->SetBitFlag(document, 32, true);
}

SceneNode* FindByKey(SceneNode* first, const std::string& key) {
  for (SceneNode* node = first; node; node = t_ORYOS_At->GetNext(node)) {
    if (OriginKeyOf(node) == key) return node;
    if (SceneNode* below = FindByKey(t_ORYOS_At->GetDown(node), key)) return below;
  }
  return nullptr;
}

BaseObject* FindByLayerId(BaseObject* first, int32_t layerId) {
  for (SceneNode* node = first; node; node = t_ORYOS_At->GetNext(node)) {
    if (GetContainerInt32(node, ParamKey_LayerId, -1) == layerId) return static_cast<BaseObject*>(node);
    if (BaseObject* below = FindByLayerId(static_cast<BaseObject*>(t_ORYOS_At->GetDown(node)), layerId)) return below;
  }
  return nullptr;
}
