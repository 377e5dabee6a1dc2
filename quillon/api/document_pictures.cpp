// The picture files a document needs: those that the bitmap shaders of its materials name,
// in any channel and at any depth below a channel's shader. The session lists them for its
// callers (Bd GetTextureList, Ge GetAssets).
#include <filesystem>
#include <string>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/model/document.h"
#include "quillon/model/links.h"

namespace quillon {

namespace {

// A material's channels are its link parameters from MaterialChannel_Color on.
constexpr int32_t kChannelCount = 30;

void AddOnce(std::vector<std::string>& paths, const std::string& path) {
  if (path.empty()) return;
  for (const std::string& known : paths)
    if (known == path) return;
  paths.push_back(path);
}

// The shader and everything below it.
void CollectShaderPictures(const Node& shader, std::vector<std::string>& paths) {
  if (shader.type == ShaderType_Bitmap) {
    auto file = shader.params.find(BitmapShaderParam_File);
    const Filename* name = file != shader.params.end() ? AsFilename(file->second.raw) : nullptr;
    if (name) AddOnce(paths, PathOf(*name));
  }
  for (const Node* child = shader.firstChild; child; child = child->next) CollectShaderPictures(*child, paths);
}

std::vector<std::string> PicturePaths(const Document& document) {
  std::vector<std::string> paths;
  for (const Node* material = document.materials->firstChild; material; material = material->next) {
    for (int32_t index = 0; index < kChannelCount; ++index) {
      auto channel = material->params.find(MaterialChannel_Color + index);
      const LinkData* link = channel != material->params.end() ? AsLink(channel->second.raw) : nullptr;
      const Node* shader = link ? ResolveLinkIn(link->targetId, &document) : nullptr;
      if (shader && shader->nodeClass == NodeClass::Shader) CollectShaderPictures(*shader, paths);
    }
  }
  return paths;
}

std::string PathFrom(const Filename* folder, const std::string& path) {
  const std::string base = folder ? PathOf(*folder) : std::string();
  if (base.empty() || !std::filesystem::path(path).is_relative()) return path;
  return (std::filesystem::path(base) / path).string();
}

}  // namespace

void GetTextureList(ParamContainer* list, const BaseDocument* document, int32_t, int32_t) {
  ParamSet* set = SetOf(list);
  const Document* model = DocumentOfHandle(document);
  if (!set || !model) return;
  int32_t index = 0;
  for (const std::string& path : PicturePaths(*model)) SetTextureFile((*set)[index++].raw, path);
}

bool GetAssets(const BaseDocument* document, int32_t, ParamContainer* assets, const Filename* folder, int32_t flags,
               int32_t) {
  ParamSet* set = SetOf(assets);
  const Document* model = DocumentOfHandle(document);
  if (!set || !model) return false;
  if (!(flags & kAssetsPictures)) return true;
  int32_t index = 0;
  for (const std::string& path : PicturePaths(*model)) SetPath((*set)[index++].raw, PathFrom(folder, path));
  return true;
}

}  // namespace quillon
