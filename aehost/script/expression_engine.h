// Expressions of layer streams, run in the host's script engine. An expression
// sees what the host's expressions see most: `time` (composition seconds),
// `value` (the stream before the expression), `thisComp`, `thisLayer`,
// `thisProperty`, `transform` and the layer's own transform properties by name
// (`position`, `rotation`, ...), `index`, `comp(name)`, and the helper functions
// linear, ease, easeIn, easeOut, clamp, add, sub, mul, div, length, normalize,
// degreesToRadians, radiansToDegrees, timeToFrames and framesToTime. Its value is
// its last statement, a number or an array of numbers.
//
// Expressions are a calculator over the project: they run with the project
// read-only, in environments of their own whose global object has plain
// JavaScript and the project's object model, but no File, Folder, `$`, alert or
// `app`, so that no expression reaches the file system, the user or other code.
// Each nesting level (an expression that reads a property that has an
// expression) has an environment of its own; more than eight levels, as in a
// cycle of expressions, is an error.
//
// A failing expression leaves the stream's value before it, and is told once a
// run for each stream. One that runs longer than two seconds is stopped, told,
// and switched off for the rest of the run.
#pragma once

#include "aehost/model/evaluate.h"

#include <functional>
#include <string>

namespace aehost {

bool EvaluateExpression(const ExpressionCall& call, Value* out, std::string* error);

// Where a run tells about failing expressions: one line each, such as
// expression of "Position" on layer "Cam" in "Rig" failed: ReferenceError: ...
using ExpressionReport = std::function<void(const std::string& line)>;

// The line on standard error, after "aehost: ".
void ReportOnStandardError(const std::string& line);

// Makes EvaluateExpression the project model's expression evaluator and starts a
// run: no expression has been told or switched off yet.
void InstallExpressionEngine(ExpressionReport report = ReportOnStandardError);

}  // namespace aehost
