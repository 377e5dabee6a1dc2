#include "quillon/gltf/lights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/scene_params.h"
#include "quillon/render/node_values.h"

namespace quillon::gltf {
namespace {

constexpr const char* kLightsExtension = "KHR_lights_punctual";
// The full cone of a spot light that does not give one.
constexpr double kDefaultOuterAngle = std::numbers::pi / 2.0;

LightKind KindOfPlainLight(int32_t type) {
  switch (type) {
    case 1: case 2: case 9: return LightKind::Spot;
    case 3: return LightKind::Ambient;
    case 4: case 5: case 6: case 8: return LightKind::Directional;
    default: return LightKind::Point;
  }
}

LightKind KindOfKvLight(int32_t type) {
  switch (type) {
    case 1: return LightKind::Point;
    case 2: case 5: return LightKind::Spot;
    case 3: case 6: return LightKind::Directional;
    default: return LightKind::Ambient;
  }
}

const char* GltfType(LightKind kind) {
  switch (kind) {
    case LightKind::Spot: return "spot";
    case LightKind::Directional: return "directional";
    default: return "point";
  }
}

// glTF's cone angles are measured from the axis to the edge, the scene's across the cone; the
// inner one must lie below the outer one and the outer one at most a quarter turn.
void SetCone(const Object& light, tinygltf::Light& gltfLight) {
  const bool kv = light.type == ObjectType_KvLight;
  double outer = render::FloatOf(light, kv ? KvLightParam_OuterAngle : LightParam_OuterAngle, kDefaultOuterAngle);
  double inner = kv ? outer - render::FloatOf(light, KvLightParam_ConeFalloff, 0.0) : render::FloatOf(light, LightParam_InnerAngle, outer);
  if (!std::isfinite(outer) || outer <= 0.0) outer = kDefaultOuterAngle;
  if (!std::isfinite(inner)) inner = outer;
  const double outerHalf = std::min(outer / 2.0, std::numbers::pi / 2.0);
  gltfLight.spot.outerConeAngle = outerHalf;
  gltfLight.spot.innerConeAngle = std::clamp(inner / 2.0, 0.0, std::nextafter(outerHalf, 0.0));
}

void NoteAnimatedValues(Conversion& conversion, Object& light) {
  const int32_t animated[] = {LightParam_Color, LightParam_Intensity, LightParam_InnerAngle, LightParam_OuterAngle,
                              LightParam_OuterRadius, KvLightParam_Color, KvLightParam_Intensity,
                              KvLightParam_OuterAngle, KvLightParam_ConeFalloff};
  if (std::any_of(std::begin(animated), std::end(animated), [&](int32_t id) { return HasKeyedTrack(light, id); }))
    conversion.summary.leftOut.push_back("the colour, intensity, cone and range keys of light " + Quoted(light) +
                                         " (glTF does not animate a light; the parameters' values stay)");
}

}  // namespace

LightKind KindOfLight(const Object& light) {
  if (light.type == ObjectType_KvLight) return KindOfKvLight(render::Int32Of(light, KvLightParam_Type, 0));
  return KindOfPlainLight(render::Int32Of(light, LightParam_Type, 0));
}

void AddLight(Conversion& conversion, Object& light, tinygltf::Node& node) {
  const LightKind kind = KindOfLight(light);
  if (kind == LightKind::Ambient) {
    conversion.summary.leftOut.push_back("ambient light " + Quoted(light) + " (glTF has no ambient light)");
    return;
  }
  const bool kv = light.type == ObjectType_KvLight;
  tinygltf::Light gltfLight;
  gltfLight.name = ToUtf8(light.name);
  gltfLight.type = GltfType(kind);
  const Vector colour = render::VectorOf(light, kv ? KvLightParam_Color : LightParam_Color, Vector{1.0, 1.0, 1.0});
  gltfLight.color = {std::clamp(colour.x, 0.0, 1.0), std::clamp(colour.y, 0.0, 1.0), std::clamp(colour.z, 0.0, 1.0)};
  // The scene's intensity, 1 for full, is written as it stands: glTF's candela and lux have no
  // counterpart in a composition.
  gltfLight.intensity = std::max(0.0, render::FloatOf(light, kv ? KvLightParam_Intensity : LightParam_Intensity, 1.0));
  if (kind == LightKind::Spot) SetCone(light, gltfLight);
  // A light with a falloff reaches as far as its outer radius.
  const double radius = render::FloatOf(light, LightParam_OuterRadius, 0.0);
  if (kind != LightKind::Directional && !kv && render::Int32Of(light, LightParam_Falloff, 0) != 0 && radius > 0.0)
    gltfLight.range = radius;
  NoteAnimatedValues(conversion, light);
  conversion.model.lights.push_back(gltfLight);
  tinygltf::Value::Object reference;
  reference["light"] = tinygltf::Value(static_cast<int>(conversion.model.lights.size() - 1));
  node.extensions[kLightsExtension] = tinygltf::Value(reference);
  ++conversion.summary.lights;
}

}  // namespace quillon::gltf
