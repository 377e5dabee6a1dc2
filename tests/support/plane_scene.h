#pragma once
// The scene of the render session tests, worked out by hand: a camera at the origin looking
// along +z whose horizontal field of view is 2 atan(0.2), the render view's camera, and a red
// plane of 200 x 100 units 1000 units ahead, facing it. In a 400 x 200 frame the plane covers
// columns 100 to 299 and lines 50 to 149.
#include <cmath>
#include <sstream>
#include <string>

namespace qae_test {

// The materials of the scene: the red one, "red", that the plane shows.
inline const char* const kRedMaterialJson =
    R"([{"type": "MaterialType_Standard", "ref": "red",
        "params": [{"id": "MaterialParam_Color", "vector": [1, 0, 0]}]}])";

// The scene description for `orytool build`, with other `materials` (a JSON list) when
// given; the plane shows the one of them whose ref is "red".
inline std::string PlaneSceneJson(const std::string& materials = kRedMaterialJson) {
  std::ostringstream json;
  json.precision(17);
  json << R"({"objects": [
    {"type": "ObjectType_Camera", "name": "Camera", "ref": "cam",
     "params": [{"id": "CameraParam_FieldOfView", "float": )" << 2.0 * std::atan(0.2) << R"(}]},
    {"type": "ObjectType_Plane", "name": "Plane",
     "params": [{"id": "ObjectParam_Position", "vector": [0, 0, 1000]},
                {"id": "PlaneParam_Width", "float": 200},
                {"id": "PlaneParam_Height", "float": 100},
                {"id": "PlaneParam_Orientation", "int32": 4}],
     "tags": [{"type": "TagType_Texture", "params": [{"id": "TextureTagParam_Material", "link": "red"}]}]}],
  "materials": )" << materials << R"(,
  "views": [{"scene_camera": "cam", "editor_camera": null}],
  "render_view": 0})";
  return json.str();
}

}  // namespace qae_test
