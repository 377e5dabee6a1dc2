#include "quillon/render/surface.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/memory_file.h"
#include "quillon/model/tag.h"
#include "quillon/render/node_values.h"
#include "quillon/render/texture_cache.h"

namespace quillon::render {
namespace {

const Node* MaterialOf(const Object& object, const Document& document) {
  const Node* material = nullptr;
  for (const Tag* tag : TagsOf(object)) {
    if (tag->type != TagType_Texture) continue;
    if (const Node* linked = LinkedNodeOf(*tag, TextureTagParam_Material, &document)) material = linked;
  }
  return material;
}

const Node* NearestMaterial(const Object& object, const Document& document) {
  for (const Node* node = &object; node; node = node->parent) {
    const Object* holder = AsObject(node);
    if (!holder) continue;
    if (const Node* material = MaterialOf(*holder, document)) return material;
  }
  return nullptr;
}

// The file of the bitmap shader in the material's colour channel; null without one.
const Filename* PictureFile(const Node& material, const Document& document) {
  const Node* shader = LinkedNodeOf(material, MaterialChannel_Color, &document);
  return shader && shader->type == ShaderType_Bitmap ? FilenameOf(*shader, BitmapShaderParam_File) : nullptr;
}

std::string ResolvedPath(const std::string& path, const std::string& assetFolder) {
  if (path.empty() || assetFolder.empty() || !std::filesystem::path(path).is_relative()) return path;
  return (std::filesystem::path(assetFolder) / path).string();
}

void NoteMissing(std::vector<std::string>& missing, const std::string& line) {
  if (std::find(missing.begin(), missing.end(), line) == missing.end()) missing.push_back(line);
}

}  // namespace

Surface SurfaceOf(const Object& object, const Document& document, const std::string& assetFolder,
                  std::vector<std::string>& missing) {
  Surface surface;
  const Node* material = NearestMaterial(object, document);
  if (!material) return surface;
  surface.colour = VectorOf(*material, MaterialParam_Color, kDefaultColour);
  const Filename* file = PictureFile(*material, document);
  if (!file) return surface;
  // A file a caller sent lives in memory under its name; any other is read from the disk.
  const std::shared_ptr<MemoryBuffer> memory = MemoryOf(*file);
  const std::string path = memory ? PathOf(*file) : ResolvedPath(PathOf(*file), assetFolder);
  if (path.empty()) return surface;
  std::string error;
  surface.picture = TextureAt(path, memory ? &memory->bytes : nullptr, &error);
  if (!surface.picture) NoteMissing(missing, error);
  return surface;
}

void SamplePicture(const Bitmap& picture, double u, double v, float rgb[3], float* alpha) {
  const auto texel = [](double at, int32_t size) {
    return std::clamp(static_cast<int32_t>(std::floor(at * size)), 0, size - 1);
  };
  const int32_t x = texel(u, picture.width);
  const int32_t y = texel(v, picture.height);
  const float* pixel = PixelAt(picture, x, y);
  for (int32_t c = 0; c < 3; ++c) rgb[c] = pixel[picture.channels == 3 ? c : 0];
  *alpha = picture.alpha ? PixelAt(*picture.alpha, x, y)[0] : 1.0f;
}

}  // namespace quillon::render
