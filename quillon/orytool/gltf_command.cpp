#include "quillon/orytool/gltf_command.h"

#include <cmath>
#include <sstream>

#include "files/replace_file.h"
#include "files/same_file.h"
#include "quillon/format/ory_format.h"
#include "quillon/gltf/gltf_file.h"
#include "quillon/gltf/scene_conversion.h"
#include "quillon/model/evaluate.h"
#include "quillon/orytool/scene_summary.h"

namespace quillon::orytool {
namespace {

constexpr int kExitFailed = 1;
constexpr int kExitBadInput = 2;

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string StemOf(const std::string& path) {
  std::string name = path.substr(path.find_last_of('/') + 1);
  const std::size_t dot = name.find_last_of('.');
  return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::string FrameRateText(double rate) {
  std::string text = std::to_string(rate);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

void PrintSummary(const GltfArguments& arguments, const gltf::ConversionSummary& s, std::ostream& out) {
  out << "converted " << arguments.scene << " to " << arguments.output << ": " << Count(s.nodes, "node", "nodes") << ", "
      << Count(s.cameras, "camera", "cameras") << ", " << Count(s.lights, "light", "lights") << ", "
      << Count(s.planes, "plane", "planes") << ", " << Count(s.splineMeshes, "spline face", "spline faces") << ", "
      << Count(s.materials, "material", "materials") << ", " << Count(s.textures, "texture", "textures") << ", "
      << Count(s.animatedNodes, "animated node", "animated nodes") << " (" << Count(s.channels, "channel", "channels")
      << ", " << Count(s.keys, "key", "keys") << "), " << Count(s.markers, "marker", "markers") << ", frames "
      << s.firstFrame << ".." << s.lastFrame << " at " << FrameRateText(s.frameRate) << " fps\n";
  for (const std::string& item : s.leftOut) out << "left out: " << item << '\n';
}

}  // namespace

int RunGltf(const GltfArguments& arguments, std::ostream& out, std::string* error) {
  gltf::GltfForm form;
  if (!gltf::FormOfOutput(arguments.output, &form)) {
    *error = arguments.output + ": the output must end in .gltf (JSON) or .glb (binary)";
    return kExitBadInput;
  }
  if (arguments.frameRate && !(std::isfinite(*arguments.frameRate) && *arguments.frameRate > 0.0)) {
    std::ostringstream text;
    text << "--frame-rate must be a positive number of frames a second, not " << *arguments.frameRate;
    *error = text.str();
    return kExitBadInput;
  }
  Document document;
  if (!format::ReadDocument(arguments.scene, document, error)) return kExitBadInput;
  if (qae::files::SameFile(arguments.scene, arguments.output)) {
    *error = arguments.output + ": is the scene itself; choose another output";
    return kExitBadInput;
  }
  // A scene the engine refuses to evaluate (a number that is not finite, say) would give a
  // glTF file that no reader accepts.
  const std::string problem = EvaluateDocumentCaches(document);
  if (!problem.empty()) {
    *error = arguments.scene + ": " + problem;
    return kExitBadInput;
  }
  gltf::ConversionOptions options;
  options.frameRate = arguments.frameRate.value_or(0.0);
  options.sceneFolder = FolderOf(arguments.scene);
  options.sceneName = StemOf(arguments.scene);
  gltf::ConvertedScene converted;
  std::string reason;
  if (!gltf::ConvertScene(document, options, converted, &reason)) {
    *error = arguments.scene + ": " + reason;
    return kExitBadInput;
  }
  if (!qae::files::ReplaceFileContent(arguments.output, gltf::GltfFileBytes(converted.model, form), error))
    return kExitFailed;
  PrintSummary(arguments, converted.summary, out);
  return 0;
}

}  // namespace quillon::orytool
