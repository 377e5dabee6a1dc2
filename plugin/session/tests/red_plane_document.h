#pragma once
// The scene of the session's render tests, worked out by hand: a camera at the origin whose
// horizontal field of view is 2 atan(0.2), and a red plane of 200 x 100 units 1000 units in
// front of it, facing it.
#include <cmath>

#include "plugin/engine/engine_tables.h"
#include "plugin/engine/owned_filename.h"
#include "plugin/exporter/object_material.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/solid_plane.h"

// The scene; with `picture`, the material's colour channel names that picture file.
inline BaseDocument* RedPlaneDocument(const char* picture = nullptr) {
  BaseDocument* document = t_ORYOS_Bd->AllocDocument();
  BaseObject* camera = t_ORYOS_Bo->AllocObject(ObjectType_Camera);
  SetFloatParam(camera, CameraParam_FieldOfView, 2.0 * std::atan(0.2));
  t_ORYOS_Bd->InsertObject(document, camera, nullptr, nullptr, 0, 1);
  BaseObject* plane = t_ORYOS_Bo->AllocObject(ObjectType_Plane);
  SetVectorParam(plane, ObjectParam_Position, {0, 0, 1000});
  SetFloatParam(plane, PlaneParam_Width, 200);
  SetFloatParam(plane, PlaneParam_Height, 100);
  SetInt32Param(plane, PlaneParam_Orientation, 4);  // facing along z, towards the camera
  t_ORYOS_Bd->InsertObject(document, plane, nullptr, camera, 0, 1);
  Material* red = t_ORYOS_Mt->AllocMaterial(MaterialType_Standard);
  SetVectorParam(red, MaterialParam_Color, {1, 0, 0});
  t_ORYOS_Bd->InsertMaterial(document, red, nullptr, 0);
  if (picture) {
    const OwnedFilename file(picture);
    SetChannelBitmap(red, MaterialChannel_Color, file.value);
  }
  LinkMaterialTag(plane, red);
  t_ORYOS_Br->SetSceneCamera(t_ORYOS_Bd->GetActiveView(document), camera, 0);
  return document;
}
