#include "plugin/exporter/solid_plane.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/plane_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/transform_channels.h"

namespace {

// A solid's plane is finely divided so that deformers bend it smoothly; it faces along Z.
constexpr int32_t kSolidSegments = 20;
constexpr int32_t kPlaneFacingZ = 5;

void SetMaterialColour(Material* material, const AEGP_ColorVal& colour) {
  const Vector rgb{colour.red, colour.green, colour.blue};
  SetVectorParam(material, MaterialParam_Color, rgb);
}

void SetPlaneSize(BaseObject* plane, int32_t width, int32_t height, int32_t segments) {
  SetFloatParam(plane, PlaneParam_Width, width);
  SetFloatParam(plane, PlaneParam_Height, height);
  SetInt32Param(plane, PlaneParam_SegmentsW, segments);
  SetInt32Param(plane, PlaneParam_SegmentsH, segments);
  SetInt32Param(plane, PlaneParam_Orientation, kPlaneFacingZ);
}

}  // namespace

bool CreateSolidPlane(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, A_Err* err) {
  if (!source) {
    AddError(A_Err_STRUCT, "Export failed. Cannot create solid from null item.");
    return false;
  }
  AEGP_LayerFlags flags = 0;
  const A_Err flagsError = LayerSuite13()->AEGP_GetLayerFlags(layer, &flags);
  const bool isNull = (flags & AEGP_LayerFlag_NULL_LAYER) != 0;
  BaseObject* object = CreateLayerObject(exporter, layer, isNull ? ObjectType_Null : ObjectType_Plane, true);
  if (!object) {
    AddError(4, "Export failed. Out of memory during null/solid creation.");
    return false;
  }
  A_long width = 0, height = 0;
  if (!isNull && !flagsError) *err = ItemSuite13()->AEGP_GetItemDimensions(source, &width, &height);
  const int32_t w = width, h = height;
  if (ApplyObjectBasics(exporter, object, layer, &w, &h) != A_Err_NONE) return false;
  if (isNull) return true;
  Material* material = MakePlaneMaterial(object);
  if (!material) return false;
  AEGP_ColorVal colour{};
  if (!*err) *err = FootageSuite11()->AEGP_GetSolidFootageColor(source, false, &colour);
  SetMaterialColour(material, colour);
  SetPlaneSize(object, w, h, kSolidSegments);
  return true;
}
