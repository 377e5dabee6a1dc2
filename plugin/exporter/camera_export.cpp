#include "plugin/exporter/camera_export.h"

#include "plugin/exporter/camera_optics.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/exporter/transform_channels.h"

namespace {

constexpr int32_t kProjectionPerspective = 0;
constexpr int32_t kProjectionParallel = 4;
// The default camera's lens as the scene shows it; its optics come from the field of view.
constexpr double kDefaultFocalLength = 50.0;
constexpr char kOutOfMemory[] = "Export failed. Out of memory during camera creation.";

const AEGP_CameraSuite2* CameraSuite2() {
  return CurrentCTI()->Suite<AEGP_CameraSuite2>(kAEGPCameraSuite, kAEGPCameraSuiteVersion2);
}

void SetProjection(BaseObject* camera, AEGP_LayerH layer, A_Err* err) {
  AEGP_CameraType type = AEGP_CameraType_NONE;
  *err = CameraSuite2()->AEGP_GetCameraType(layer, &type);
  SetInt32Param(camera, CameraParam_Projection,
                type == AEGP_CameraType_ORTHOGRAPHIC ? kProjectionParallel : kProjectionPerspective);
}

// The film width; the aperture stream, where the layer has one, says it better than the film
// size does.
void SetAperture(BaseObject* camera, AEGP_LayerH layer, int32_t width, int32_t height, A_Err* err) {
  AEGP_FilmSizeUnits units = AEGP_FilmSizeUnits_NONE;
  A_FpLong size = 1.0;
  *err = CameraSuite2()->AEGP_GetCameraFilmSize(layer, &units, &size);
  double film = FilmWidth(size, units, width, height);
  double aperture = 0.0;
  if (ReadStreamFloat(layer, AEGP_LayerStream_APERTURE, &aperture)) film = aperture;
  if (film < 1.0) film = kDefaultFilmWidth;
  SetFloatParam(camera, CameraParam_Aperture, film);
}

void SetFieldOfView(AEToOry& exporter, BaseObject* camera, AEGP_LayerH layer, int32_t width, A_Err* err) {
  double zoom = 0.0;
  if (!ReadStreamFloat(layer, AEGP_LayerStream_ZOOM, &zoom)) return;
  SetFloatParam(camera, CameraParam_FieldOfView, FieldOfView(zoom, width, exporter.pixelAspect));
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_ZOOM) <= 0) return;
  const ParamLevel level{CameraParam_FieldOfView, DataKind_Float, 0};
  const ParamId id{&level, 1, 0};
  if (AnimTrack* track = GetOrCreateTrack(camera, id, "Field of View")) {
    *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_ZOOM, track, nullptr, nullptr,
                                SampleMode::fieldOfView, 1.0, AEGP_LayerStream_NONE);
  }
}

void SetFocusDistance(AEToOry& exporter, BaseObject* camera, AEGP_LayerH layer, A_Err* err) {
  double focus = 0.0;
  if (!ReadStreamFloat(layer, AEGP_LayerStream_FOCUS_DISTANCE, &focus)) return;
  SetFloatParam(camera, CameraParam_FocusDistance, SceneFocusDistance(focus));
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_FOCUS_DISTANCE) <= 0) return;
  const ParamLevel level{CameraParam_FocusDistance, DataKind_Float, 0};
  const ParamId id{&level, 1, 0};
  if (AnimTrack* track = GetOrCreateTrack(camera, id, "Focus Distance")) {
    *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_FOCUS_DISTANCE, track, nullptr, nullptr,
                                SampleMode::divided, kFocusKeyDivisor, AEGP_LayerStream_NONE);
  }
}

}  // namespace

bool MakeSceneCamera(BaseDocument* document, BaseObject* camera) {
  if (!document || !camera) return false;
  const int32_t type = t_ORYOS_At->GetType(camera);
  if (type != ObjectType_Camera && type != ObjectType_KvCamera) return false;
  BaseView* view = t_ORYOS_Bd->GetActiveView(document);
  if (!view) return false;
  t_ORYOS_Br->SetSceneCamera(view, camera, 0);
  return true;
}

A_Err ExportCamera(AEToOry& exporter, AEGP_LayerH layer) {
  int32_t width = 0, height = 0;
  if (!exporter.CompSize(&width, &height)) return A_Err_STRUCT;
  BaseObject* camera = CreateLayerObject(exporter, layer, ObjectType_Camera, true);
  if (!camera) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  // Every camera layer claims the view, so the lowest one in the timeline keeps it.
  MakeSceneCamera(exporter.document, camera);
  const int32_t noSize = 0;
  A_Err err = ApplyObjectBasics(exporter, camera, layer, &noSize, &noSize);
  if (err) return err;
  SetProjection(camera, layer, &err);
  SetAperture(camera, layer, width, height, &err);
  SetFieldOfView(exporter, camera, layer, width, &err);
  SetFocusDistance(exporter, camera, layer, &err);
  return err;
}

A_Err AddDefaultCamera(AEToOry& exporter) {
  int32_t width = 0, height = 0;
  if (!exporter.CompSize(&width, &height)) return A_Err_STRUCT;
  A_FpLong distance = 0.0;
  const A_Err err = CameraSuite2()->AEGP_GetDefaultCameraDistanceToImagePlane(exporter.TopComp(), &distance);
  BaseObject* camera = CreateLayerObject(exporter, nullptr, ObjectType_Camera, true);
  if (!camera) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  // No link walk places it: it goes under the composition's node at once, and its target,
  // made behind it, beside it.
  if (BaseObject* root = exporter.TopNode()) {
    t_ORYOS_At->Remove(camera);
    t_ORYOS_At->InsertUnder(camera, root);
  }
  MakeSceneCamera(exporter.document, camera);
  BaseObject* target = CreateTarget(exporter, camera, nullptr);
  const Vector eye{width * 0.5, -height * 0.5, -distance};
  const Vector middle{width * 0.5, -height * 0.5, 0.0};
  const Vector level{0.0, 0.0, 0.0};
  t_ORYOS_Bo->SetPosition(camera, &eye);
  t_ORYOS_Bo->SetPosition(target, &middle);
  t_ORYOS_Bo->SetRotationOrder(camera, kRotationOrderHpb);
  t_ORYOS_Bo->SetRotation(camera, &level);
  SetInt32Param(camera, CameraParam_Projection, kProjectionPerspective);
  // After Effects' view has its zoom at half the distance to the picture plane.
  SetFloatParam(camera, CameraParam_FocusDistance, SceneFocusDistance(distance * 0.5));
  SetFloatParam(camera, CameraParam_FieldOfView, FieldOfView(distance * 0.5, width, exporter.pixelAspect));
  SetFloatParam(camera, CameraParam_Aperture, kDefaultFilmWidth / exporter.pixelAspect);
  SetFloatParam(camera, CameraParam_FocalLength, kDefaultFocalLength);
  return err;
}
