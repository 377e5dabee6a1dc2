#include "quillon/model/memory_file.h"

namespace quillon {

std::shared_ptr<MemoryBuffer> MemoryOf(const Filename& file) {
  auto* data = static_cast<const FilenameData*>(file.impl);
  return data ? data->memory : nullptr;
}

// A path on the disk gives its leaf as the name, so that the bytes keep the name they
// would be looked up by (a texture, an update channel).
void MakeMemoryFile(Filename& file, std::shared_ptr<MemoryBuffer> buffer) {
  std::string path = PathOf(file);
  if (path.rfind(kMemoryFileScheme, 0) != 0) {
    const std::string leaf = path.substr(path.find_last_of('/') + 1);
    path = std::string(kMemoryFileScheme) + "/" + (leaf.empty() ? "memory" : leaf);
  }
  ReleasePath(file);
  file.impl = new FilenameData{std::move(path), std::move(buffer)};
}

}  // namespace quillon
