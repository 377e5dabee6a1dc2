#include "quillon/gltf/materials.h"

#include <algorithm>

#include "files/read_file.h"
#include "plugin/exporter/scene_ids.h"
#include "quillon/gltf/gltf_buffer.h"
#include "quillon/gltf/scene_params.h"
#include "quillon/render/node_values.h"
#include "quillon/model/tag.h"

namespace quillon::gltf {
namespace {

// A texture is carried inside the glTF file; a picture this large is no texture.
constexpr qae::files::ReadLimit kImageLimit{std::size_t{256} << 20, "an image"};

std::string ResolvedPath(const Conversion& conversion, const std::string& path) {
  if (path.empty() || path.front() == '/' || conversion.options.sceneFolder.empty()) return path;
  return conversion.options.sceneFolder + "/" + path;
}

// The index of a new texture over the image bytes, or -1 with the reason in the summary.
int AddTexture(Conversion& conversion, const Node& material, const Node& shader) {
  const std::string path = TextParam(shader, BitmapShaderParam_File);
  const std::string subject = "the texture of material " + Quoted(material) + " (" + path + ": ";
  if (path.empty()) return -1;
  if (render::Int32Of(shader, BitmapShaderParam_LastFrame, 0) > 0) {
    conversion.summary.leftOut.push_back(subject + "a movie or an image sequence; glTF holds still images)");
    return -1;
  }
  std::string bytes, error;
  if (!qae::files::ReadWholeFile(ResolvedPath(conversion, path), kImageLimit, &bytes, &error)) {
    conversion.summary.leftOut.push_back("the texture of material " + Quoted(material) + " (" + error + ")");
    return -1;
  }
  const std::string mimeType = ImageMimeType(bytes);
  if (mimeType.empty()) {
    conversion.summary.leftOut.push_back(subject + "neither PNG nor JPEG, the images glTF holds)");
    return -1;
  }
  tinygltf::Image image;
  image.name = path.substr(path.find_last_of('/') + 1);
  image.mimeType = mimeType;
  image.bufferView = AddBufferView(conversion.model, bytes, 0);
  conversion.model.images.push_back(image);
  tinygltf::Texture texture;
  texture.source = static_cast<int>(conversion.model.images.size() - 1);
  conversion.model.textures.push_back(texture);
  ++conversion.summary.textures;
  return static_cast<int>(conversion.model.textures.size() - 1);
}

int AddMaterial(Conversion& conversion, Node& material) {
  tinygltf::Material gltfMaterial;
  gltfMaterial.name = ToUtf8(material.name);
  gltfMaterial.doubleSided = true;
  gltfMaterial.pbrMetallicRoughness.metallicFactor = 0.0;
  gltfMaterial.pbrMetallicRoughness.roughnessFactor = 1.0;
  const Node* shader = render::LinkedNodeOf(material, MaterialChannel_Color, &conversion.document);
  const int texture = shader ? AddTexture(conversion, material, *shader) : -1;
  // A picture shows its own colours; a colour of the material tints it only without one.
  const Vector colour = texture >= 0 ? Vector{1.0, 1.0, 1.0} : render::VectorOf(material, MaterialParam_Color, Vector{1.0, 1.0, 1.0});
  gltfMaterial.pbrMetallicRoughness.baseColorFactor = {std::clamp(colour.x, 0.0, 1.0), std::clamp(colour.y, 0.0, 1.0),
                                                       std::clamp(colour.z, 0.0, 1.0), 1.0};
  gltfMaterial.pbrMetallicRoughness.baseColorTexture.index = texture;
  conversion.model.materials.push_back(gltfMaterial);
  ++conversion.summary.materials;
  return static_cast<int>(conversion.model.materials.size() - 1);
}

}  // namespace

std::string ImageMimeType(const std::string& bytes) {
  if (bytes.rfind("\x89PNG\r\n\x1a\n", 0) == 0) return "image/png";
  if (bytes.rfind("\xFF\xD8\xFF", 0) == 0) return "image/jpeg";
  return "";
}

int MaterialOfObject(Conversion& conversion, const Object& object) {
  const Tag* tag = FindTag(object, TagType_Texture, 0);
  Node* material = tag ? render::LinkedNodeOf(*tag, TextureTagParam_Material, &conversion.document) : nullptr;
  if (!material) return -1;
  const auto known = conversion.materialOf.find(material);
  if (known != conversion.materialOf.end()) return known->second;
  const int index = AddMaterial(conversion, *material);
  conversion.materialOf.emplace(material, index);
  return index;
}

}  // namespace quillon::gltf
