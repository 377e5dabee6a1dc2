// `orytool gltf SCENE.ory --output FILE.gltf|FILE.glb [--frame-rate R]`: a scene as glTF 2.0,
// with a summary of what was converted and what was left out.
#pragma once

#include <optional>
#include <ostream>
#include <string>

namespace quillon::orytool {

struct GltfArguments {
  std::string scene;
  std::string output;
  // Frames a second by which frames are counted; none: the document's own rate.
  std::optional<double> frameRate;
};

// Converts and writes the file, and prints the summary to `out`. Gives the exit code: 0 done,
// 1 the output could not be written, 2 bad input or usage, with the message in `error`.
int RunGltf(const GltfArguments& arguments, std::ostream& out, std::string* error);

}  // namespace quillon::orytool
