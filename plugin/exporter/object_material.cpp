#include "plugin/exporter/object_material.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {

// The document's materials form a flat list.
Material* FindMaterialByKey(BaseDocument* document, const std::string& key) {
  for (SceneNode* node = t_ORYOS_Bd->GetFirstMaterial(document); node; node = t_ORYOS_At->GetNext(node)) {
    if (GetContainerString(node, ParamKey_OriginKey) == key) return static_cast<Material*>(node);
  }
  return nullptr;
}

void Attach(BaseDocument* document, BaseObject* object, Material* material) {
  t_ORYOS_Bd->InsertMaterial(document, material, nullptr, 0);
  if (!LinkMaterialTag(object, material)) {
    AddError(4, "Export/Merge failed. Out of memory in material association.");
    throw A_Err{4};
  }
}

}  // namespace

BaseTag* LinkMaterialTag(BaseObject* object, Material* material) {
  constexpr int32_t kTextureProjectionUv = 6;
  BaseTag* tag = MakeTag(object, TagType_Texture, nullptr);
  if (!tag) return nullptr;
  SetInt32Param(tag, TextureTagParam_Projection, kTextureProjectionUv);
  t_ORYOS_Bc->SetLink(t_ORYOS_Bl->GetDataInstance(tag), TextureTagParam_Material, material);
  return tag;
}

Material* FindOrAllocMaterial(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, const std::string& suffix,
                              bool* made) {
  std::string name, key;
  if (object) {
    name = NodeName(object);
    key = GetContainerString(object, ParamKey_OriginKey);
  }
  if (!object || key.empty()) NameAndKeyOrThrow(exporter, layer, &name, &key);
  name += suffix;
  key += suffix;
  Material* material = FindMaterialByKey(exporter.document, key);
  *made = !material;
  if (!material) {
    material = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
    if (!material) {
      AddError(4, "Export/Merge failed. Out of memory in material creation.");
      throw A_Err{4};
    }
    SetContainerString(material, ParamKey_OriginKey, key);
  }
  SetNodeName(material, name);
  return material;
}

Material* GetObjectMaterial(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, int32_t materialIndex,
                            bool assign) {
  bool made = false;
  Material* material = FindOrAllocMaterial(exporter, layer, object, "-Material" + std::to_string(materialIndex), &made);
  if (made && assign && object) Attach(exporter.document, object, material);
  return material;
}
