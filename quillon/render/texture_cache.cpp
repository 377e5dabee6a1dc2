#include "quillon/render/texture_cache.h"

#include <map>
#include <mutex>

#include "quillon/render/png_file.h"

namespace quillon::render {
namespace {

std::mutex g_texturesLock;
std::map<std::string, std::shared_ptr<const Bitmap>> g_textures;

bool NamesPath(const std::string& path, const std::string& name) {
  if (path == name) return true;
  return path.size() > name.size() && path.compare(path.size() - name.size(), name.size(), name) == 0 &&
         path[path.size() - name.size() - 1] == '/';
}

}  // namespace

std::shared_ptr<const Bitmap> TextureAt(const std::string& path, const std::vector<uint8_t>* memory,
                                        std::string* error) {
  {
    const std::lock_guard lock(g_texturesLock);
    if (const auto found = g_textures.find(path); found != g_textures.end()) return found->second;
  }
  auto picture = std::make_shared<Bitmap>();
  const bool read = memory ? DecodePngBytes(*memory, path, picture.get(), error)
                           : DecodePngFile(path, picture.get(), error);
  if (!read) return nullptr;
  const std::lock_guard lock(g_texturesLock);
  return g_textures.emplace(path, std::move(picture)).first->second;
}

void ForgetTexture(const std::string& name) {
  const std::lock_guard lock(g_texturesLock);
  std::erase_if(g_textures, [&](const auto& entry) { return NamesPath(entry.first, name); });
}

void ForgetAllTextures() {
  const std::lock_guard lock(g_texturesLock);
  g_textures.clear();
}

}  // namespace quillon::render
