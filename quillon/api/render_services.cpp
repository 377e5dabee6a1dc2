// The render session's general services.
#include "quillon/api/render_services.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/tables.h"
#include "quillon/model/value.h"
#include "quillon/render/frame_camera.h"
#include "quillon/render/node_values.h"
#include "quillon/render/render_scene.h"
#include "quillon/render/texture_cache.h"

namespace quillon {
namespace {

// The folder that holds this library (or the program it is linked into).
std::string InstallFolder() {
  Dl_info info{};
  if (!dladdr(reinterpret_cast<void*>(&InstallFolder), &info) || !info.dli_fname) return {};
  std::error_code ignored;
  return std::filesystem::absolute(info.dli_fname, ignored).parent_path().string();
}

// QUILLON_USER_DIR when set, else the engine's folder in the user's data
// folder; made, with its "tex" folder for the textures callers send, on use.
std::string UserFolder() {
  std::filesystem::path folder;
  if (const char* chosen = std::getenv("QUILLON_USER_DIR"); chosen && *chosen) {
    folder = chosen;
  } else if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data) {
    folder = std::filesystem::path(data) / "quillon";
  } else if (const char* home = std::getenv("HOME"); home && *home) {
    folder = std::filesystem::path(home) / ".local/share/quillon";
  } else {
    folder = std::filesystem::temp_directory_path() / "quillon";
  }
  std::error_code ignored;
  std::filesystem::create_directories(folder / "tex", ignored);
  return folder.string();
}

}  // namespace

void ConsolePrint(const char* text) {
  if (text) std::fprintf(stderr, "%s\n", text);
}

// Only a file (or a link) is deleted, never a folder.
bool DeleteFile(const Filename* file, int32_t) {
  if (!file) return false;
  const std::string path = PathOf(*file);
  std::error_code error;
  if (path.empty() || std::filesystem::is_directory(std::filesystem::symlink_status(path, error))) return false;
  return std::filesystem::remove(path, error);
}

void FlushCaches() { render::ForgetAllTextures(); }

// Textures are kept by path: the name alone (its last part) finds them, in
// whichever document they were used.
void InvalidateTexture(const Filename*, const EngineString* textureName, const Filename*) {
  if (textureName) render::ForgetTexture(ToUtf8(TextOf(*textureName)));
}

void GetEngineFolder(Filename* out, int32_t kind) {
  if (!out) return;
  AssignPath(*out, kind == kEngineFolderUser ? UserFolder() : InstallFolder());
}

// The flags (1, or 3 for the settings' option 8500) ask for nothing that this
// renderer does differently.
int32_t RenderDocument(BaseDocument* document, int32_t, RenderProgress progress, void* object, Bitmap* bitmap,
                       const ParamContainer* settings, int32_t, EngineThread* thread, int32_t) {
  Document* model = DocumentOfHandle(document);
  if (!model) return kRenderResultNoProject;
  if (!bitmap) return kRenderResultNoOutput;
  render::RenderOptions options;
  if (thread) options.shouldStop = [thread] { return ThreadBreakTest(thread); };
  if (progress) options.progress = [progress, object](double done, int32_t stage) { progress(done, stage, object); };
  if (const ParamSet* values = SetOf(settings))
    options.documentWidth = render::FloatIn(*values, RenderParam_Width, 0.0);
  return render::RenderScene(*model, *bitmap, options).code;
}

void FrameCamera(BaseDocument* document, int32_t) {
  if (Document* model = DocumentOfHandle(document)) render::FrameRenderCamera(*model);
}

}  // namespace quillon
