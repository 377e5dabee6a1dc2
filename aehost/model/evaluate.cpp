#include "aehost/model/evaluate.h"

#include <utility>

#include "aehost/model/transform.h"

namespace aehost {
namespace {

ExpressionEvaluator g_expressionEvaluator;

bool IsTransformStream(LayerStream id) {
  switch (id) {
    case LayerStream::AnchorPoint:
    case LayerStream::Position:
    case LayerStream::Scale:
    case LayerStream::RotationX:
    case LayerStream::RotationY:
    case LayerStream::RotationZ:
    case LayerStream::Orientation:
    case LayerStream::Opacity:
      return true;
    default:
      return false;
  }
}

bool IsCameraStream(LayerStream id) {
  switch (id) {
    case LayerStream::Position:
    case LayerStream::RotationX:
    case LayerStream::RotationY:
    case LayerStream::RotationZ:
    case LayerStream::Orientation:
    case LayerStream::Zoom:
    case LayerStream::DepthOfField:
    case LayerStream::FocusDistance:
    case LayerStream::Aperture:
    case LayerStream::BlurLevel:
      return true;
    default:
      return false;
  }
}

// Which light kinds have which stream: ambient light has no place and casts
// no shadow, only spot lights have a cone, and only spot and parallel
// lights point at something.
bool IsLightStream(LightType type, LayerStream id) {
  const bool ambient = type == LightType::Ambient;
  switch (id) {
    case LayerStream::Intensity:
    case LayerStream::Color:
      return true;
    case LayerStream::Position:
    case LayerStream::RotationX:
    case LayerStream::RotationY:
    case LayerStream::RotationZ:
    case LayerStream::Orientation:
    case LayerStream::CastsShadows:
    case LayerStream::ShadowDarkness:
    case LayerStream::ShadowDiffusion:
      return !ambient;
    case LayerStream::ConeAngle:
    case LayerStream::ConeFeather:
      return type == LightType::Spot;
    case LayerStream::FalloffKind:
    case LayerStream::FalloffStart:
    case LayerStream::FalloffDistance:
      return type == LightType::Spot || type == LightType::Point;
    default:
      return false;
  }
}

Value Center(const Item& item) { return MakeValue(item.width * 0.5, item.height * 0.5, 0.0); }

Value DefaultValue(const Project& project, const Item& comp, const Layer& layer, LayerStream id) {
  const bool cameraOrLight = layer.objectType == LayerObjectType::Camera ||
                             layer.objectType == LayerObjectType::Light;
  switch (id) {
    case LayerStream::AnchorPoint: {
      if (cameraOrLight) return Center(comp);
      const Item* source = FindItem(project, layer.sourceId);
      return source != nullptr ? Center(*source) : Value{};
    }
    case LayerStream::Position: {
      Value v = Center(comp);
      if (cameraOrLight) v[2] = -DefaultCameraZoom(comp);
      return v;
    }
    case LayerStream::XPosition:
    case LayerStream::YPosition:
    case LayerStream::ZPosition: {
      const int dimension = static_cast<int>(id) - static_cast<int>(LayerStream::XPosition);
      return MakeValue(DefaultValue(project, comp, layer, LayerStream::Position)[dimension]);
    }
    case LayerStream::Scale:
      return MakeValue(100.0, 100.0, 100.0);
    case LayerStream::Opacity:
    case LayerStream::Intensity:
    case LayerStream::ShadowDarkness:
    case LayerStream::BlurLevel:
      return MakeValue(100.0);
    case LayerStream::Zoom:
    case LayerStream::FocusDistance:
      return MakeValue(DefaultCameraZoom(comp));
    case LayerStream::Aperture:
      return MakeValue(25.3);
    case LayerStream::Color:
      return MakeValue(1.0, 1.0, 1.0, 1.0);
    case LayerStream::ConeAngle:
      return MakeValue(90.0);
    case LayerStream::ConeFeather:
      return MakeValue(50.0);
    case LayerStream::FalloffKind:
      return MakeValue(1.0);  // the first entry of the falloff menu: none
    case LayerStream::FalloffDistance:
      return MakeValue(500.0);
    default:
      return Value{};
  }
}

}  // namespace

void SetExpressionEvaluator(ExpressionEvaluator evaluator) {
  g_expressionEvaluator = std::move(evaluator);
}

bool HasExpressionEvaluator() { return static_cast<bool>(g_expressionEvaluator); }

bool IsStreamLegal(const Layer& layer, LayerStream id) {
  if (IsPositionFollower(id)) return layer.positionSeparated && IsStreamLegal(layer, LayerStream::Position);
  switch (layer.objectType) {
    case LayerObjectType::Camera:
      if (id == LayerStream::AnchorPoint) {
        return layer.switches.autoOrient == AutoOrient::TowardsPointOfInterest;
      }
      return IsCameraStream(id);
    case LayerObjectType::Light:
      if (id == LayerStream::AnchorPoint) {
        return layer.switches.autoOrient == AutoOrient::TowardsPointOfInterest &&
               (layer.light.type == LightType::Spot || layer.light.type == LightType::Parallel);
      }
      return IsLightStream(layer.light.type, id);
    default:
      return IsTransformStream(id);
  }
}

Stream DefaultStream(const Project& project, const Item& comp, const Layer& layer,
                     LayerStream id) {
  Stream stream;
  stream.kind = StreamKindOf(id);
  stream.value = DefaultValue(project, comp, layer, id);
  return stream;
}

Stream StreamOrDefault(const Project& project, const Item& comp, const Layer& layer,
                       LayerStream id) {
  const auto found = layer.streams.find(id);
  return found != layer.streams.end() ? found->second : DefaultStream(project, comp, layer, id);
}

Value EvaluateStream(const Project& project, const Item& comp, const Layer& layer,
                     LayerStream id, double compTime, bool preExpression, std::string* error) {
  const auto found = layer.streams.find(id);
  if (found == layer.streams.end()) return DefaultValue(project, comp, layer, id);
  const Stream& stream = found->second;
  const Value before = InterpolateKeys(stream, CompTimeToLayerTime(layer, compTime));
  if (preExpression || !HasExpression(stream)) return before;
  if (!g_expressionEvaluator) {
    if (error != nullptr) *error = "no expression engine is installed";
    return before;
  }
  const ExpressionCall call{&project, &comp, &layer, id, &stream, compTime, before};
  Value after;
  std::string problem;
  if (!g_expressionEvaluator(call, &after, &problem)) {
    if (error != nullptr) *error = problem;
    return before;
  }
  return after;
}

double DefaultCameraZoom(const Item& comp) { return comp.width * 50.0 / 36.0; }

}  // namespace aehost
