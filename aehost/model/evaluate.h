// Values of streams at a time: keyframe interpolation as the host does it,
// the defaults of streams that a layer does not hold, and the hook through
// which expressions are evaluated.
#pragma once

#include <functional>
#include <string>

#include "aehost/model/project.h"

namespace aehost {

// What an expression gets to see: `time` is composition time in seconds,
// `value` the stream's value before the expression at that time.
struct ExpressionCall {
  const Project* project = nullptr;
  const Item* comp = nullptr;
  const Layer* layer = nullptr;
  LayerStream streamId = LayerStream::Position;
  const Stream* stream = nullptr;
  double time = 0.0;
  Value value;
};

using ExpressionEvaluator =
    std::function<bool(const ExpressionCall& call, Value* out, std::string* error)>;

// Installed by the script engine; without one, expressions are not run and
// streams keep their value before expressions.
void SetExpressionEvaluator(ExpressionEvaluator evaluator);
bool HasExpressionEvaluator();

// The value of a stream's keys at `streamTime` (layer time for layer streams):
// before the first key the first value, after the last the last value,
// between keys by the out-interpolation of the earlier and the
// in-interpolation of the later key.
Value InterpolateKeys(const Stream& stream, double streamTime);

// Is the stream legal on this layer (the host's AEGP_IsStreamLegal)?
bool IsStreamLegal(const Layer& layer, LayerStream id);

// The stream a layer has when nothing set it: new layers in the host start
// with the anchor at the middle of the source and the position at the middle
// of the composition.
Stream DefaultStream(const Project& project, const Item& comp, const Layer& layer, LayerStream id);

// The layer's stream if it has one, else its default.
Stream StreamOrDefault(const Project& project, const Item& comp, const Layer& layer, LayerStream id);

// The value of a layer stream at composition time `compTime`. With
// `preExpression` false an enabled expression runs through the evaluator;
// a failing expression leaves the value before it and says why in `error`.
Value EvaluateStream(const Project& project, const Item& comp, const Layer& layer,
                     LayerStream id, double compTime, bool preExpression = false,
                     std::string* error = nullptr);

// The zoom of a camera that a composition of this width gets by default:
// a 50 mm lens on 36 mm film.
double DefaultCameraZoom(const Item& comp);

}  // namespace aehost
