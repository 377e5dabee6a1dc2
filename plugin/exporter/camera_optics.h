#pragma once
// The arithmetic that turns After Effects' camera settings into the scene camera's optics.
// After Effects describes a lens by its zoom, the distance in composition pixels at which the
// picture plane fills the composition's width; the scene by a horizontal field of view in
// radians and a film width in millimetres.
#include <cstdint>

#include "sdk/ae_enums.h"

// Points (1/72 inch) to millimetres: After Effects gives the film size in points. Multiplied
// by 25.4 and then divided by 72, in that order: a factor 25.4 / 72 folded first rounds
// differently for about a quarter of all sizes, by one unit in the last place.
constexpr double PointsToMillimetres(double points) { return points * 25.4 / 72.0; }
// 2.8346 rounded to single precision. Scene focus distances are After Effects' distances in
// millimetres times this, which is not quite 1 all in all.
constexpr double kFocusScale = 2.8345999717712402;
// The inverse of 25.4 / 72 * kFocusScale, so that keys agree with the static value.
constexpr double kFocusKeyDivisor = 1.0000161213294834;
// Film width when nothing better is known: 35 mm still film.
constexpr double kDefaultFilmWidth = 36.0;

// Horizontal field of view of a lens of `zoom` pixels on a composition `compWidth` wide; a
// non-square pixel counts `pixelAspect` times as wide as it is tall.
double FieldOfView(double zoom, int32_t compWidth, double pixelAspect);

// The film width in millimetres from the camera's film size and how it is measured; 36 mm
// for units that tell nothing.
double FilmWidth(double sizeInPoints, AEGP_FilmSizeUnits units, int32_t compWidth, int32_t compHeight);

// A distance of After Effects as a scene focus distance.
double SceneFocusDistance(double distance);
