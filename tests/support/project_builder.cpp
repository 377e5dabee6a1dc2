#include "tests/support/project_builder.h"

namespace qae_test {
namespace {

// A stream with a linear key at the first and one at the last frame.
Json::Value TwoKeys(const Json::Value& from, const Json::Value& to, double lastTime) {
  Json::Value first, last;
  first["time"] = 0.0;
  first["value"] = from;
  last["time"] = lastTime;
  last["value"] = to;
  Json::Value stream;
  stream["keys"].append(std::move(first));
  stream["keys"].append(std::move(last));
  return stream;
}

}  // namespace

Json::Value Triple(double x, double y, double z) {
  Json::Value v(Json::arrayValue);
  v.append(x);
  v.append(y);
  v.append(z);
  return v;
}

Json::Value ProjectTop(const std::string& path) {
  Json::Value top;
  top["format"] = "aehost-project";
  top["version"] = 1;
  top["path"] = path;
  return top;
}

Json::Value SolidFootage(int id, const std::string& name, int width, int height, const Json::Value& color) {
  Json::Value solid;
  solid["id"] = id;
  solid["name"] = name;
  solid["width"] = width;
  solid["height"] = height;
  solid["solid"]["color"] = color;
  return solid;
}

Json::Value Composition(int id, const std::string& name, int width, int height, double frameRate,
                        double duration) {
  Json::Value comp;
  comp["id"] = id;
  comp["name"] = name;
  comp["width"] = width;
  comp["height"] = height;
  comp["frameRate"] = frameRate;
  comp["duration"] = duration;
  comp["layers"] = Json::Value(Json::arrayValue);
  return comp;
}

Json::Value ManyAnimatedLayersProject(int layers, int frames, AnimatedLayerKind kind) {
  constexpr double kFrameRate = 25.0;
  Json::Value project = ProjectTop("/bench/many.aep");
  project["footage"].append(SolidFootage(2, "Solid", 100, 100, Triple(0.2, 0.4, 0.6)));
  Json::Value comp = Composition(1, "Many", 1920, 1080, kFrameRate, frames / kFrameRate);
  const double lastTime = (frames - 1) / kFrameRate;
  for (int i = 0; i < layers; ++i) {
    Json::Value layer;
    layer["id"] = 100 + i;
    layer["name"] = "Layer " + std::to_string(i);
    if (kind == AnimatedLayerKind::camera) {
      layer["type"] = "camera";
      layer["autoOrient"] = "off";
    } else {
      layer["source"] = 2;
      layer["threeD"] = true;
      layer["transform"]["anchorPoint"]["value"] = Triple(50, 50, 0);
    }
    layer["transform"]["position"] = TwoKeys(Triple(i, 100, -i), Triple(1900 - i, 1000, i), lastTime);
    layer["transform"]["rotationY"] = TwoKeys(0.0, 360.0 + i, lastTime);
    comp["layers"].append(std::move(layer));
  }
  project["comps"].append(std::move(comp));
  return project;
}

}  // namespace qae_test
