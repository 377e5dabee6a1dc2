#include "plugin/exporter/solid_plane.h"

#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/plane_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/transform_channels.h"

namespace {

// A solid's plane is finely divided so that deformers bend it smoothly; it faces along Z.
constexpr int32_t kSolidSegments = 20;
constexpr int32_t kFootageSegments = 1;
constexpr int32_t kPlaneFacingZ = 5;
constexpr char kOutOfMemory[] = "Export failed. Out of memory during null/solid creation.";

// A movie counts as one file; its frames are those of the composition it plays in.
bool IsMovie(const Filename& file) {
  for (const char* suffix : {"avi", "mov", "mpg"}) {
    if (t_ORYOS_Fn->CheckSuffix(&file, suffix)) return true;
  }
  return false;
}

// The node that a material's channel value links to, if any.
SceneNode* LinkedNode(Material* material, DataValue* value) {
  if (!value) return nullptr;
  const LinkHolder* holder = t_ORYOS_Gd->GetLinkHolder(value);
  if (!holder) return nullptr;
  if (BaseDocument* document = t_ORYOS_At->GetDocument(material)) {
    return t_ORYOS_Ln->GetLinkTargetIn(holder, document, 0);
  }
  return t_ORYOS_Ln->GetLinkTarget(holder);
}

void SetShaderFile(SceneNode* shader, const Filename& file) {
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetFilename(&value, &file);
  t_ORYOS_Bc->SetDataAt(t_ORYOS_Bl->GetDataInstance(shader), BitmapShaderParam_File, &value);
  t_ORYOS_Gd->Free(&value);
}

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
    AddError(4, kOutOfMemory);
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

BaseShader* SetChannelBitmap(Material* material, int32_t channel, const Filename& file) {
  if (!material) return nullptr;
  ParamContainer* container = t_ORYOS_Bl->GetDataInstance(material);
  if (SceneNode* linked = LinkedNode(material, t_ORYOS_Bc->GetData(container, channel))) {
    SetShaderFile(linked, file);
    return static_cast<BaseShader*>(linked);
  }
  BaseShader* shader = t_ORYOS_Ba->AllocShader(ShaderType_Bitmap);
  if (!shader) return nullptr;
  SetShaderFile(shader, file);
  LinkHolder* holder = t_ORYOS_Ln->AllocLinkHolder();
  if (!holder) {
    t_ORYOS_Bl->FreeNode(shader);
    return nullptr;
  }
  t_ORYOS_At->InsertShader(material, shader, nullptr);
  t_ORYOS_Ln->SetLinkTarget(holder, shader);
  DataValue link{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetLinkHolder(&link, holder);
  t_ORYOS_Bc->SetDataAt(container, channel, &link);
  t_ORYOS_Gd->Free(&link);
  t_ORYOS_Ln->FreeLinkHolder(holder);
  return shader;
}

A_Err CreateImagePlane(AEToOry& exporter, AEGP_LayerH layer, AEGP_ItemH source, AEGP_FootageH footage) {
  if (!source) {
    AddError(A_Err_STRUCT, "Export failed. Cannot create image from null item.");
    return A_Err_STRUCT;
  }
  if (!footage) {
    AddError(A_Err_STRUCT, "Export failed. Cannot create image from null footage item.");
    return A_Err_STRUCT;
  }
  BaseObject* object = CreateLayerObject(exporter, layer, ObjectType_Plane, true);
  if (!object) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  A_long width = 0, height = 0;
  ItemSuite13()->AEGP_GetItemDimensions(source, &width, &height);
  const int32_t w = width, h = height;
  if (const A_Err err = ApplyObjectBasics(exporter, object, layer, &w, &h)) return err;
  Material* material = MakePlaneMaterial(object);
  if (!material) return 4;

  AEGP_MemHandle pathHandle = nullptr;
  A_long mainFiles = 0;
  A_Err err = FootageSuite11()->AEGP_GetFootagePath(PluginId(), footage, 0, 0, &pathHandle);
  if (!err) err = FootageSuite11()->AEGP_GetFootageNumFiles(footage, &mainFiles, nullptr);
  const OwnedFilename file(TakeHandleText(pathHandle));
  if (BaseShader* shader = SetChannelBitmap(material, MaterialChannel_Color, file.value)) {
    const int32_t frames = IsMovie(file.value) ? exporter.frameCount : mainFiles;
    SetInt32Param(shader, BitmapShaderParam_LastFrame, frames - 1);
  }
  SetPlaneSize(object, w, h, kFootageSegments);
  return err;
}
