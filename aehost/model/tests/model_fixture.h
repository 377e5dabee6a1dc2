// A small project for the model's tests: a 200 x 100 composition at 25
// frames per second, 10 seconds long, and a 40 x 20 solid; and the refusal of
// a description.
#pragma once

#include <string>

#include "aehost/model/edit.h"
#include "aehost/model/project_json.h"

namespace aehost {

struct SmallProject {
  Project project = NewProject();
  Item* comp = nullptr;

  SmallProject() { comp = &AddComp(project, "Comp", 200, 100, 1.0, 10.0, 25.0); }

  Layer& Solid() {
    return AddSolidLayer(project, *comp, "Solid", 40, 20, MakeValue(0.5, 0.5, 0.5, 1.0));
  }

  void Set(Layer& layer, LayerStream id, double x, double y = 0.0, double z = 0.0) {
    SetStreamValue(project, *comp, layer, id, MakeValue(x, y, z));
  }
};

// A description with one composition holding `layer`, the JSON of one layer.
inline std::string OneLayerProject(const std::string& layer) {
  return R"({"format": "aehost-project", "version": 1,
    "comps": [{"id": 2, "width": 100, "height": 100, "frameRate": 25, "duration": 1, "layers": [)" +
         layer + "]}]}";
}

// Why a description read as "test.json" is refused; empty when it is not.
inline std::string Refusal(const std::string& text) {
  try {
    ReadProject(text, "test.json");
  } catch (const ProjectFormatError& error) {
    return error.what();
  }
  return "";
}

inline Value V(double x, double y = 0.0, double z = 0.0, double w = 0.0) {
  return MakeValue(x, y, z, w);
}

}  // namespace aehost
