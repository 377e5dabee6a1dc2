// Animatable properties ("streams") of the project model: a static value or
// keyframes, and an optional expression.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "aehost/model/value.h"

namespace aehost {

// Layer streams, numbered like the host's AEGP_LayerStream so that the
// suites pass the number through. Depth of field, blur level and shadow
// diffusion take the free numbers between their neighbours.
enum class LayerStream : int {
  AnchorPoint = 0,  // the point of interest on cameras and lights
  Position = 1,
  Scale = 2,
  RotationZ = 3,
  Opacity = 4,
  RotationX = 8,
  RotationY = 9,
  Orientation = 10,
  Zoom = 11,
  DepthOfField = 12,
  FocusDistance = 13,
  Aperture = 14,
  BlurLevel = 15,
  Intensity = 16,
  Color = 17,
  ConeAngle = 18,
  ConeFeather = 19,
  ShadowDarkness = 20,
  ShadowDiffusion = 21,
  CastsShadows = 28,
  FalloffKind = 40,
  FalloffStart = 41,
  FalloffDistance = 42,
  // The followers of a position whose dimensions are separated: one-dimensional streams that
  // the host hands out only through the dynamic stream suite, never by a layer stream number.
  XPosition = 1000,
  YPosition = 1001,
  ZPosition = 1002,
};

// The follower of Position for dimension 0, 1 or 2, and whether a stream is one.
LayerStream PositionFollower(int dimension);
bool IsPositionFollower(LayerStream id);

// What a stream holds. Spatial streams move along a path in space;
// orientation turns along the shortest arc; colour mixes linearly. The host
// reports orientation, like anchor point and position, as a three-dimensional
// spatial stream (AEGP_StreamType_ThreeD_SPATIAL): the exporter reads it so.
enum class StreamKind {
  OneD,
  TwoD,
  ThreeD,
  TwoDSpatial,
  ThreeDSpatial,
  Orientation,
  Color,
};

enum class Interpolation { Linear, Bezier, Hold };

// Temporal ease of one side of a keyframe, as the host's keyframe velocity
// dialog shows it: speed in value units per second (along the path for
// spatial streams), influence in percent of the time to the neighbour key.
struct Ease {
  double speed = 0.0;
  double influence = 100.0 / 6.0;
  bool operator==(const Ease&) const = default;
};

struct Keyframe {
  double time = 0.0;  // layer time in seconds (composition time on composition streams)
  Value value;
  Interpolation in = Interpolation::Linear;
  Interpolation out = Interpolation::Linear;
  // One ease per temporal dimension: three for scale-like vectors, one for
  // one-dimensional, spatial, orientation and colour streams.
  std::array<Ease, 3> easeIn{};
  std::array<Ease, 3> easeOut{};
  // Spatial tangents, relative to the key's value; zero means a straight path.
  Value inTangent;
  Value outTangent;
  bool operator==(const Keyframe&) const = default;
};

struct Stream {
  StreamKind kind = StreamKind::OneD;
  Value value;                  // the value when there are no keys
  std::vector<Keyframe> keys;   // ordered by time, no two at one time
  std::string expression;       // empty: none
  bool expressionEnabled = true;
  bool operator==(const Stream&) const = default;
};

StreamKind StreamKindOf(LayerStream id);
int Dimensions(StreamKind kind);            // values per sample: 1 to 4
int TemporalDimensions(StreamKind kind);    // eases per key side: 1 to 3
bool HasExpression(const Stream& stream);   // non-empty and enabled
bool IsTimeVarying(const Stream& stream);   // more than one key, or an expression

}  // namespace aehost
