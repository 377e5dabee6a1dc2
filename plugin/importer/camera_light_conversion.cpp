#include "plugin/importer/camera_light_conversion.h"

#include <algorithm>
#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "plugin/importer/import_file.h"
#include "plugin/importer/import_session.h"
#include "plugin/importer/object_conversion.h"
#include "plugin/importer/scene_read.h"

namespace {

constexpr double kPointsPerMillimetre = 72.0 / 25.4;
// The host's own factor, kept in single precision: the focus distance that reaches the host
// is therefore a little off the scene's.
constexpr double kFocusDivisor = static_cast<double>(2.8346f);
constexpr int32_t kHostSpotLight = 1;
constexpr int32_t kHostPointLight = 2;

const AEGP_LayerSuite13* Layers() {
  return CurrentCTI()->Suite<AEGP_LayerSuite13>(kAEGPLayerSuite, kAEGPLayerSuiteVersion13);
}

double FocusDistance(double focus) { return focus * kPointsPerMillimetre / kFocusDivisor; }

// The camera is the active one when the document has no view or one looks through it.
bool IsActiveCamera(BaseDocument* document, BaseObject* camera) {
  if (t_ORYOS_Bd->GetViewCount(document) == 0) return true;
  const BaseView* active = t_ORYOS_Bd->GetActiveView(document);
  if (active && t_ORYOS_Br->GetSceneCamera(active, document) == camera) return true;
  const BaseView* view = t_ORYOS_Bd->GetRenderView(document);
  if (!view) view = active;
  return view && t_ORYOS_Br->GetViewCamera(view) == camera;
}

bool SetStreamTo(AEGP_LayerH layer, AEGP_LayerStream which, const AEGP_StreamVal2& value, OpenStream* out,
                 bool* failed) {
  const StreamResult result = SetLayerStream(layer, which, value, out);
  *failed = result == StreamResult::kFailed;
  return result == StreamResult::kSet;
}

bool AddCameraKeys(BaseObject* object, int32_t fovId, const ObjectConversion& c, double aperture, double fov,
                   double focus, OpenStream* zoomStream, OpenStream* focusStream) {
  AnimTrack* fovTrack = FindComponentTrack(object, fovId, 0);
  AnimTrack* focusTrack = FindComponentTrack(object, CameraParam_FocusDistance, 0);
  AnimTrack* focalTrack = fovTrack ? nullptr : FindComponentTrack(object, CameraParam_FocalLength, 0);
  if (!fovTrack && !focusTrack && !focalTrack) return true;
  if ((fovTrack || focalTrack) && !zoomStream->StartKeys()) return false;
  if (focusTrack && !focusStream->StartKeys()) return false;
  const uint32_t scale = ImportTimeScale(c.frameRate);
  BaseDocument* document = g_importSession.document;
  double lastZoom = 0.0;
  double lastFocus = 0.0;
  for (int32_t i = 0; i < c.frames; ++i) {
    const A_Time time{i * 100, scale};
    const BaseTime sceneTime(i, c.frameRate);
    if (fovTrack) fov = t_ORYOS_CA->GetCurveValue(fovTrack, document, &sceneTime, 0);
    else if (focalTrack)
      fov = FieldOfViewFromFocalLength(aperture, t_ORYOS_CA->GetCurveValue(focalTrack, document, &sceneTime, 0));
    if (focusTrack) focus = t_ORYOS_CA->GetCurveValue(focusTrack, document, &sceneTime, 0);
    const double zoom = ZoomFromFieldOfView(c.width, fov);
    if ((i == 0 || zoom != lastZoom) && !zoomStream->AddKey(time, OneD(zoom))) return false;
    if ((i == 0 || focus != lastFocus) && !focusStream->AddKey(time, OneD(FocusDistance(focus)))) return false;
    lastZoom = zoom;
    lastFocus = focus;
  }
  return zoomStream->EndKeys() && focusStream->EndKeys();
}

// A light's values in scene terms, after the KV light's own formulas.
struct LightValues {
  Vector colour;
  double brightness = 0.0, density = 0.0, outer = 0.0, inner = 0.0;
};

struct LightIds {
  int32_t colour, brightness, density, outer, inner;
};

constexpr LightIds kStandardLightIds{LightParam_Color, LightParam_Intensity, LightParam_ShadowDensity,
                                     LightParam_OuterAngle, LightParam_InnerAngle};
constexpr LightIds kKvLightIds{KvLightParam_Color, KvLightParam_Intensity, KvLightParam_ShadowTransparency,
                               KvLightParam_OuterAngle, KvLightParam_ConeFalloff};

// Raw scene values: for a KV light `density` holds the transparency and `inner` the falloff.
LightValues ReadLight(BaseObject* object, const LightIds& ids) {
  LightValues v;
  v.colour = ParamVector(object, ids.colour, {});
  v.brightness = ContainerFloat(object, ids.brightness, 0.0);
  v.density = ContainerFloat(object, ids.density, 0.0);
  v.outer = ContainerFloat(object, ids.outer, 0.0);
  v.inner = ContainerFloat(object, ids.inner, 0.0);
  return v;
}

struct HostLight {
  Vector colour;
  double intensity, darkness, coneAngle, coneFeather;
};

HostLight ToHostLight(LightValues v, bool kv) {
  if (kv) {
    v.density = 1.0 - v.density;
    v.inner = v.outer - v.inner;
  }
  return HostLight{v.colour, v.brightness * 100.0 * 2.0, v.density * 100.0, v.outer * kDegreesPerRadian,
                   (1.0 - v.inner / v.outer) * 100.0};
}

AEGP_StreamVal2 ColourValue(const Vector& colour) {
  AEGP_StreamVal2 value{};
  value.color = AEGP_ColorVal{0.0, colour.x, colour.y, colour.z};
  return value;
}

struct LightStreams {
  OpenStream colour, intensity, darkness, coneAngle, coneFeather;
};

bool AddLightKeys(BaseObject* object, const LightIds& ids, bool kv, const ObjectConversion& c, LightValues scene,
                  LightStreams* s) {
  AnimTrack* tracks[4] = {FindComponentTrack(object, ids.brightness, 0), FindComponentTrack(object, ids.density, 0),
                          FindComponentTrack(object, ids.outer, 0), FindComponentTrack(object, ids.inner, 0)};
  AnimTrack* colourTracks[3] = {FindComponentTrack(object, ids.colour, VectorComponent_X),
                                FindComponentTrack(object, ids.colour, VectorComponent_Y),
                                FindComponentTrack(object, ids.colour, VectorComponent_Z)};
  if (std::none_of(std::begin(tracks), std::end(tracks), [](AnimTrack* t) { return t != nullptr; }) &&
      std::none_of(std::begin(colourTracks), std::end(colourTracks), [](AnimTrack* t) { return t != nullptr; }))
    return true;
  OpenStream* keyed[5] = {&s->intensity, &s->darkness, &s->coneAngle, &s->coneFeather, &s->colour};
  for (OpenStream* stream : keyed)
    if (stream->stream && !stream->StartKeys()) return false;
  const uint32_t scale = ImportTimeScale(c.frameRate);
  BaseDocument* document = g_importSession.document;
  HostLight last{};
  for (int32_t i = 0; i < c.frames; ++i) {
    const A_Time time{i * 100, scale};
    const BaseTime sceneTime(i, c.frameRate);
    double* values[4] = {&scene.brightness, &scene.density, &scene.outer, &scene.inner};
    for (int k = 0; k < 4; ++k)
      if (tracks[k]) *values[k] = t_ORYOS_CA->GetCurveValue(tracks[k], document, &sceneTime, 0);
    double* colour[3] = {&scene.colour.x, &scene.colour.y, &scene.colour.z};
    for (int k = 0; k < 3; ++k)
      if (colourTracks[k]) *colour[k] = t_ORYOS_CA->GetCurveValue(colourTracks[k], document, &sceneTime, 0);
    const HostLight host = ToHostLight(scene, kv);
    const bool first = i == 0;
    bool ok = true;
    if (first || host.intensity != last.intensity) ok = s->intensity.AddKey(time, OneD(host.intensity));
    if (ok && (first || host.darkness != last.darkness)) ok = s->darkness.AddKey(time, OneD(host.darkness));
    if (ok && (first || host.coneAngle != last.coneAngle)) ok = s->coneAngle.AddKey(time, OneD(host.coneAngle));
    if (ok && (first || host.coneFeather != last.coneFeather))
      ok = s->coneFeather.AddKey(time, OneD(host.coneFeather));
    if (ok && (first || !(host.colour == last.colour))) ok = s->colour.AddKey(time, ColourValue(host.colour));
    if (!ok) return false;
    last = host;
  }
  for (OpenStream* stream : keyed)
    if (!stream->EndKeys()) return false;
  return true;
}

}  // namespace

double ZoomFromFieldOfView(double width, double fieldOfView) { return (width * 0.5) / std::tan(fieldOfView * 0.5); }

double FieldOfViewFromFocalLength(double aperture, double focal) {
  return 2.0 * std::atan(aperture * 0.5 / std::max(0.000001, focal));
}

int32_t HostLightType(bool kv, int32_t sceneType) {
  static constexpr int32_t kStandard[10] = {2, 1, 1, 3, 0, 0, 0, 2, 0, 1};
  static constexpr int32_t kKv[8] = {3, 2, 1, 0, 3, 1, 0, 3};
  if (kv) return sceneType >= 0 && sceneType < 8 ? kKv[sceneType] : kHostPointLight;
  return sceneType >= 0 && sceneType < 10 ? kStandard[sceneType] : kHostPointLight;
}

AEGP_LayerH ConvertCamera(BaseObject* object) {
  if (!IsImportRunning() || !object) return nullptr;
  ObjectConversion c;
  AEGP_LayerH layer = ConvertBaseObject(object, &c);
  if (!layer) return nullptr;
  BaseDocument* document = g_importSession.document;
  const int32_t fovId =
      t_ORYOS_At->GetType(object) == ObjectType_KvCamera ? KvCameraParam_FieldOfView : CameraParam_FieldOfView;
  // Read as parameters: what the camera does not store, the engine gives as its own camera has it.
  const double focus = ParamFloatOrFirst(object, CameraParam_FocusDistance, 0.0);
  const double aperture = ParamFloatOrFirst(object, CameraParam_Aperture, 0.0);
  const double fov = ParamFloatOrFirst(object, fovId, 0.0);
  double filmSize = aperture * kPointsPerMillimetre;
  const auto* cameras = CurrentCTI()->Suite<AEGP_CameraSuite2>(kAEGPCameraSuite, kAEGPCameraSuiteVersion2);
  if (cameras->AEGP_SetCameraFilmSize(layer, AEGP_FilmSizeUnits_HORIZONTAL, &filmSize)) return nullptr;
  if (IsActiveCamera(document, object)) {
    g_importSession.activeCameraFound = true;
  } else if (Layers()->AEGP_SetLayerFlag(layer, AEGP_LayerFlag_VIDEO_ACTIVE, false)) {
    return nullptr;
  }
  OpenStream zoom, focusStream;
  bool failed = false;
  if (!SetStreamTo(layer, AEGP_LayerStream_ZOOM, OneD(ZoomFromFieldOfView(c.width, fov)), &zoom, &failed) ||
      !SetStreamTo(layer, AEGP_LayerStream_FOCUS_DISTANCE, OneD(FocusDistance(focus)), &focusStream, &failed))
    return failed ? nullptr : layer;
  return AddCameraKeys(object, fovId, c, aperture, fov, focus, &zoom, &focusStream) ? layer : nullptr;
}

AEGP_LayerH ConvertLight(BaseObject* object) {
  if (!IsImportRunning() || !object) return nullptr;
  ObjectConversion c;
  AEGP_LayerH layer = ConvertBaseObject(object, &c);
  if (!layer) return nullptr;
  const bool kv = t_ORYOS_At->GetType(object) == ObjectType_KvLight;
  const int32_t hostType = HostLightType(kv, ContainerInt32(object, kv ? KvLightParam_Type : LightParam_Type, 0));
  const auto* lights = CurrentCTI()->Suite<AEGP_LightSuite2>(kAEGPLightSuite, kAEGPLightSuiteVersion2);
  if (lights->AEGP_SetLightType(layer, hostType)) return nullptr;
  const LightIds& ids = kv ? kKvLightIds : kStandardLightIds;
  const LightValues scene = ReadLight(object, ids);
  const HostLight host = ToHostLight(scene, kv);
  const int32_t casts = ContainerInt32(object, kv ? KvLightParam_Shadow : LightParam_Shadow, 0);

  LightStreams s;
  bool failed = false;
  bool complete = SetStreamTo(layer, AEGP_LayerStream_COLOR, ColourValue(host.colour), &s.colour, &failed) &&
                  SetStreamTo(layer, AEGP_LayerStream_INTENSITY, OneD(host.intensity), &s.intensity, &failed) &&
                  SetStreamTo(layer, AEGP_LayerStream_SHADOW_DARKNESS, OneD(host.darkness), &s.darkness, &failed);
  if (complete && hostType == kHostSpotLight)
    complete = SetStreamTo(layer, AEGP_LayerStream_CONE_ANGLE, OneD(host.coneAngle), &s.coneAngle, &failed) &&
               SetStreamTo(layer, AEGP_LayerStream_CONE_FEATHER, OneD(host.coneFeather), &s.coneFeather, &failed);
  if (failed) return nullptr;
  if (complete && !AddLightKeys(object, ids, kv, c, scene, &s)) return nullptr;
  OpenStream shadows;
  if (SetStreamTo(layer, AEGP_LayerStream_CASTS_SHADOWS, OneD(casts != 0 ? 1.0 : 0.0), &shadows, &failed) || !failed)
    return layer;
  return nullptr;
}
