#pragma once
// Project descriptions built in code, for tests and benchmarks that need more layers than a
// hand-written file would hold.
#include <json/json.h>

#include <string>

namespace qae_test {

Json::Value Triple(double x, double y, double z);

// The top of a description: format, version and the project's path, nothing in it yet.
Json::Value ProjectTop(const std::string& path);

// A solid of `width` x `height` pixels in `color` (red, green, blue).
Json::Value SolidFootage(int id, const std::string& name, int width, int height, const Json::Value& color);

// A composition with an empty list of layers.
Json::Value Composition(int id, const std::string& name, int width, int height, double frameRate,
                        double duration);

enum class AnimatedLayerKind { solid, camera };

// The composition "Many" at 25 fps, `frames` frames long, of `layers` 3D solids (or cameras
// that do not turn towards a point of interest) that each move from (i, 100, -i) to
// (1900 - i, 1000, i) and turn from 0 to 360 + i degrees about y over the whole composition,
// so that each is baked at every frame.
Json::Value ManyAnimatedLayersProject(int layers, int frames, AnimatedLayerKind kind = AnimatedLayerKind::solid);

}  // namespace qae_test
