#include "aehost/model/stream.h"

namespace aehost {

StreamKind StreamKindOf(LayerStream id) {
  switch (id) {
    case LayerStream::AnchorPoint:
    case LayerStream::Position:
      return StreamKind::ThreeDSpatial;
    case LayerStream::Scale:
      return StreamKind::ThreeD;
    case LayerStream::Orientation:
      return StreamKind::Orientation;
    case LayerStream::Color:
      return StreamKind::Color;
    default:
      return StreamKind::OneD;
  }
}

int Dimensions(StreamKind kind) {
  switch (kind) {
    case StreamKind::OneD:
      return 1;
    case StreamKind::TwoD:
    case StreamKind::TwoDSpatial:
      return 2;
    case StreamKind::Color:
      return 4;
    default:
      return 3;
  }
}

int TemporalDimensions(StreamKind kind) {
  switch (kind) {
    case StreamKind::TwoD:
      return 2;
    case StreamKind::ThreeD:
      return 3;
    default:
      return 1;
  }
}

LayerStream PositionFollower(int dimension) {
  return static_cast<LayerStream>(static_cast<int>(LayerStream::XPosition) + dimension);
}

bool IsPositionFollower(LayerStream id) {
  return id == LayerStream::XPosition || id == LayerStream::YPosition || id == LayerStream::ZPosition;
}

bool HasExpression(const Stream& stream) {
  return stream.expressionEnabled && !stream.expression.empty();
}

bool IsTimeVarying(const Stream& stream) { return stream.keys.size() > 1 || HasExpression(stream); }

}  // namespace aehost
