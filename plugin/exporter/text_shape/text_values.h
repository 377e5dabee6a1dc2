#pragma once
// The numbers by which a text layer's settings become the parameters of live text. Factors
// the scene format fixed in single precision are applied in single precision, so that the
// values match those of scenes made elsewhere to the last bit.
#include <cstdint>
#include <optional>

// Two thirds as a single-precision number, held in a double: 0.66666668653...
constexpr double kTwoThirdsSingle = static_cast<double>(2.0f / 3.0f);

// A stroke drawn over the fill lies this much nearer to the viewer than the fill.
constexpr double kStrokeOverFillDepth = -0.5;

// The outline's width for a stroke of width `strokeWidth`.
double OutlineWidth(double strokeWidth);
// How far fill and stroke move apart in depth when the stroke lies under the fill.
double StrokeDepthOffset(double strokeWidth);
// Tracking in thousandths of an em as the text object holds it: the whole number × 0.075,
// formed in single precision.
double SceneTracking(int32_t tracking);
// 0 left, 1 centre, 2 right for the host's ParagraphJustification (7213 to 7219); nothing
// for another value, which leaves the engine's default.
std::optional<int32_t> SceneAlignment(int32_t justification);
