#include "quillon/gltf/gltf_file.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace quillon::gltf {
namespace {

bool EndsWithIgnoringCase(const std::string& text, const std::string& suffix) {
  if (text.size() < suffix.size()) return false;
  return std::equal(suffix.begin(), suffix.end(), text.end() - static_cast<std::ptrdiff_t>(suffix.size()),
                    [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

}  // namespace

bool FormOfOutput(const std::string& path, GltfForm* form) {
  if (EndsWithIgnoringCase(path, ".gltf")) {
    *form = GltfForm::Json;
    return true;
  }
  if (EndsWithIgnoringCase(path, ".glb")) {
    *form = GltfForm::Binary;
    return true;
  }
  return false;
}

std::string GltfFileBytes(const tinygltf::Model& model, GltfForm form) {
  std::ostringstream stream;
  tinygltf::TinyGLTF writer;
  writer.WriteGltfSceneToStream(&model, stream, /*prettyPrint=*/true, /*writeBinary=*/form == GltfForm::Binary);
  return stream.str();
}

}  // namespace quillon::gltf
