#include "plugin/exporter/camera_optics.h"

#include <cmath>

double FieldOfView(double zoom, int32_t compWidth, double pixelAspect) {
  return 2.0 * std::atan(compWidth * 0.5 / (zoom / pixelAspect));
}

double FilmWidth(double sizeInPoints, AEGP_FilmSizeUnits units, int32_t compWidth, int32_t compHeight) {
  const double base = PointsToMillimetres(sizeInPoints);
  switch (units) {
    case AEGP_FilmSizeUnits_HORIZONTAL:
      return base;
    case AEGP_FilmSizeUnits_VERTICAL:
      return compWidth * base / compHeight;
    case AEGP_FilmSizeUnits_DIAGONAL: {
      const double tall = static_cast<double>(compHeight) / compWidth;
      return std::sqrt(base * base / (tall * tall + 1.0));
    }
    default:
      return kDefaultFilmWidth;
  }
}

double SceneFocusDistance(double distance) { return PointsToMillimetres(distance) * kFocusScale; }
