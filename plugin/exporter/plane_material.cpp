#include "plugin/exporter/plane_material.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"

namespace {
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
  if (!LinkMaterialTag(object, material)) {
    AddError(4, kOutOfMemory);
    return nullptr;
  }
  return material;
}
