#include "plugin/exporter/light_export.h"

#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/key_baking.h"
#include "plugin/exporter/light_mapping.h"
#include "plugin/exporter/node_factory.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/exporter/track_ops.h"
#include "plugin/exporter/transform_channels.h"

namespace {

constexpr char kOutOfMemory[] = "Export failed. Out of memory during light creation.";

const AEGP_LightSuite2* LightSuite2() {
  return CurrentCTI()->Suite<AEGP_LightSuite2>(kAEGPLightSuite, kAEGPLightSuiteVersion2);
}

// A float parameter's own track, named as the scene names it.
struct FloatTrack {
  explicit FloatTrack(int32_t parameter) : level{parameter, DataKind_Float, 0}, id{&level, 1, 0} {}
  FloatTrack(const FloatTrack&) = delete;
  FloatTrack& operator=(const FloatTrack&) = delete;
  ParamLevel level;
  ParamId id;
};

AnimTrack* TrackOf(BaseObject* light, int32_t parameter, const char* name) {
  const FloatTrack track(parameter);
  return GetOrCreateTrack(light, track.id, name);
}

// The stream's value as a percentage scaled to a fraction, sampled with `divisor` where it moves.
void ExportScaledStream(AEToOry& exporter, BaseObject* light, AEGP_LayerH layer, AEGP_LayerStream stream,
                        int32_t parameter, double scale, const char* trackName, double divisor, A_Err* err) {
  double v = 0.0;
  if (ReadStreamFloat(layer, stream, &v)) SetFloatParam(light, parameter, v * scale);
  if (CountLayerStreamKeys(layer, stream) <= 0) return;
  if (AnimTrack* track = TrackOf(light, parameter, trackName)) {
    *err = SampleStreamToTracks(exporter, layer, stream, track, nullptr, nullptr, SampleMode::divided, divisor,
                                AEGP_LayerStream_NONE);
  }
}

void ExportColour(AEToOry& exporter, BaseObject* light, AEGP_LayerH layer, A_Err* err) {
  Vector colour;
  if (ReadStreamColor(layer, AEGP_LayerStream_COLOR, &colour)) SetVectorParam(light, LightParam_Color, colour);
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_COLOR) <= 0) return;
  const ComponentParamId red(LightParam_Color, VectorComponent_X);
  const ComponentParamId green(LightParam_Color, VectorComponent_Y);
  const ComponentParamId blue(LightParam_Color, VectorComponent_Z);
  AnimTrack* r = GetOrCreateTrack(light, red.id, "Color.R");
  AnimTrack* g = GetOrCreateTrack(light, green.id, "Color.G");
  AnimTrack* b = GetOrCreateTrack(light, blue.id, "Color.B");
  if (!r || !g || !b) return;
  *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_COLOR, r, g, b,
                              SampleMode::colour, 1.0, AEGP_LayerStream_NONE);
}

// Only spot lights have a cone; a feather that moves alone moves the inner angle, and both
// angles are sampled together.
void ExportCone(AEToOry& exporter, BaseObject* light, AEGP_LayerH layer, A_Err* err) {
  double angle = 0.0, feather = 0.0;
  if (!ReadStreamFloat(layer, AEGP_LayerStream_CONE_ANGLE, &angle) ||
      !ReadStreamFloat(layer, AEGP_LayerStream_CONE_FEATHER, &feather)) {
    return;
  }
  SetFloatParam(light, LightParam_OuterAngle, OuterConeAngle(angle));
  SetFloatParam(light, LightParam_InnerAngle, InnerConeAngle(angle, feather));
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_CONE_ANGLE) <= 0 &&
      CountLayerStreamKeys(layer, AEGP_LayerStream_CONE_FEATHER) <= 0) {
    return;
  }
  AnimTrack* outer = TrackOf(light, LightParam_OuterAngle, "Outer Angle");
  AnimTrack* inner = TrackOf(light, LightParam_InnerAngle, "Inner Angle");
  if (!outer || !inner) return;
  *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_CONE_ANGLE, outer, inner, nullptr,
                              SampleMode::coneAngles, 1.0, AEGP_LayerStream_CONE_FEATHER);
}

// The falloff's start is the inner radius; the scene's outer radius is where the light ends,
// start plus distance. Keys on the start alone do not move the outer radius's track.
void ExportFalloff(AEToOry& exporter, BaseObject* light, AEGP_LayerH layer, A_Err* err) {
  int32_t kind = 0;
  const int32_t falloff = ReadStreamInt(layer, AEGP_LayerStream_LIGHT_FALLOFF_TYPE, &kind) ? SceneFalloff(kind) : 0;
  SetInt32Param(light, LightParam_Falloff, falloff);
  if (falloff == 0) return;
  double start = 0.0;
  if (ReadStreamFloat(layer, AEGP_LayerStream_LIGHT_FALLOFF_START, &start)) {
    SetFloatParam(light, LightParam_InnerRadius, start);
    if (CountLayerStreamKeys(layer, AEGP_LayerStream_LIGHT_FALLOFF_START) > 0) {
      if (AnimTrack* track = TrackOf(light, LightParam_InnerRadius, "Inner Radius")) {
        *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_LIGHT_FALLOFF_START, track, nullptr, nullptr,
                                    SampleMode::falloff, 1.0, AEGP_LayerStream_NONE);
      }
    }
  }
  double distance = 0.0;
  if (!ReadStreamFloat(layer, AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE, &distance)) return;
  SetFloatParam(light, LightParam_OuterRadius, distance + start);
  if (CountLayerStreamKeys(layer, AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE) < 1) return;
  if (AnimTrack* track = TrackOf(light, LightParam_OuterRadius, "Radius/Decay")) {
    *err = SampleStreamToTracks(exporter, layer, AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE, track, nullptr, nullptr,
                                SampleMode::falloff, 1.0, AEGP_LayerStream_LIGHT_FALLOFF_START);
  }
}

}  // namespace

A_Err ExportLight(AEToOry& exporter, AEGP_LayerH layer) {
  BaseObject* light = CreateLayerObject(exporter, layer, ObjectType_Light, true);
  if (!light) {
    AddError(4, kOutOfMemory);
    return 4;
  }
  // The type goes first: the transform reads it back to decide whether the light has a target.
  AEGP_LightType kind = AEGP_LightType_AMBIENT;
  LightSuite2()->AEGP_GetLightType(layer, &kind);
  SetInt32Param(light, LightParam_Type, SceneLightType(kind));
  const int32_t noSize = 0;
  if (const A_Err basics = ApplyObjectBasics(exporter, light, layer, &noSize, &noSize)) return basics;

  A_Err err = A_Err_NONE;
  ExportScaledStream(exporter, light, layer, AEGP_LayerStream_INTENSITY, LightParam_Intensity, kIntensityScale,
                     "Intensity", kIntensityKeyDivisor, &err);
  int32_t castsShadows = 0;
  if (ReadStreamInt(layer, AEGP_LayerStream_CASTS_SHADOWS, &castsShadows))
    SetInt32Param(light, LightParam_Shadow, castsShadows != 0 ? 1 : 0);
  ExportScaledStream(exporter, light, layer, AEGP_LayerStream_SHADOW_DARKNESS, LightParam_ShadowDensity, kPercentScale,
                     "Shadow Density", kShadowKeyDivisor, &err);
  ExportColour(exporter, light, layer, &err);
  if (kind == AEGP_LightType_SPOT) ExportCone(exporter, light, layer, &err);
  ExportFalloff(exporter, light, layer, &err);
  return err;
}
