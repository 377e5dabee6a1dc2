// Table Hf and the file side of tables Ge and Bl. The bytes of a scene file
// are the file format's; this is the engine's handle on an open file.
#include "quillon/api/scene_file.h"

#include <filesystem>
#include <fstream>

#include "quillon/api/handles.h"
#include "quillon/api/tables.h"
#include "quillon/format/ory_format.h"

namespace quillon {
namespace {

bool Readable(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return in.good();
}

bool WritableFolder(const std::string& path) {
  std::error_code ignored;
  std::filesystem::path folder = std::filesystem::path(path).parent_path();
  return folder.empty() || std::filesystem::is_directory(folder, ignored);
}

bool Open(SceneFile* file, int32_t ident, const Filename* path, int32_t mode, int32_t) {
  if (!file || !path || file->open || ident != kSceneFileIdent) return false;
  std::string target = PathOf(*path);
  if (target.empty()) return false;
  bool usable = mode == kSceneFileModeRead ? Readable(target) : mode == kSceneFileModeWrite && WritableFolder(target);
  if (!usable) return false;
  file->path = target;
  file->mode = mode;
  file->open = true;
  file->failed = false;
  file->error.clear();
  return true;
}

bool Close(SceneFile* file) {
  if (!file || !file->open) return false;
  file->open = false;
  return !file->failed;
}

SceneFile* AllocSceneFile() { return new SceneFile(); }
void FreeSceneFile(SceneFile* file) { delete file; }

}  // namespace

bool WriteSceneFile(SceneFile& file, const Document& document) {
  if (!file.open || file.mode != kSceneFileModeWrite) return false;
  bool written = format::WriteDocument(document, file.path, &file.error);
  file.failed = file.failed || !written;
  return written;
}

bool ReadSceneFile(const std::string& path, Document& document, std::string* error) {
  return format::ReadDocument(path, document, error);
}

const ORYOS_Hf& HfTable() {
  static const ORYOS_Hf table{Open, Close, AllocSceneFile, FreeSceneFile};
  return table;
}

}  // namespace quillon
