// Expressions of layer streams, run in the host's script engine. An expression
// sees what the host's expressions see most: `time` (composition seconds),
// `value` (the stream before the expression), `thisComp`, `thisLayer`,
// `thisProperty`, `transform` and the layer's own transform properties by name
// (`position`, `rotation`, ...), `index`, `comp(name)`, and the helper functions
// linear, ease, easeIn, easeOut, clamp, add, sub, mul, div, length, normalize,
// degreesToRadians, radiansToDegrees, timeToFrames and framesToTime. Its value is
// its last statement, a number or an array of numbers.
//
// Expressions run with the project read-only and each nesting level (an
// expression that reads a property that has an expression) in an environment of
// its own; more than eight levels, as in a cycle of expressions, is an error.
#pragma once

#include "aehost/model/evaluate.h"

#include <string>

namespace aehost {

bool EvaluateExpression(const ExpressionCall& call, Value* out, std::string* error);

// Makes EvaluateExpression the project model's expression evaluator.
void InstallExpressionEngine();

}  // namespace aehost
