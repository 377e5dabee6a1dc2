#include "plugin/exporter/plane_material.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {
constexpr int32_t kTextureProjectionUv = 6;
constexpr char kOutOfMemory[] = "Export failed. Out of memory during material creation for plane node.";
}  // namespace

Material* MakePlaneMaterial(BaseObject* object) {
  Material* material = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
  if (!material) {
    AddError(4, kOutOfMemory);
    return nullptr;
  }
  SetNodeName(material, NodeName(object));
  t_ORYOS_Bd->InsertMaterial(t_ORYOS_At->GetDocument(object), material, nullptr, 0);
  BaseTag* tag = MakeTag(object, TagType_Texture, nullptr);
  if (!tag) {
    AddError(4, kOutOfMemory);
    return nullptr;
  }
  SetInt32Param(tag, TextureTagParam_Projection, kTextureProjectionUv);
  t_ORYOS_Bc->SetLink(t_ORYOS_Bl->GetDataInstance(tag), TextureTagParam_Material, material);
  return material;
}
