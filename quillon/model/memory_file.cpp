#include "quillon/model/memory_file.h"

namespace quillon {

std::shared_ptr<MemoryBuffer> MemoryOf(const Filename& file) {
  auto* data = static_cast<const FilenameData*>(file.impl);
  return data ? data->memory : nullptr;
}

void MakeMemoryFile(Filename& file, std::shared_ptr<MemoryBuffer> buffer) {
  std::string path = PathOf(file);
  if (path.rfind(kMemoryFileScheme, 0) != 0) path = std::string(kMemoryFileScheme) + "/memory";
  ReleasePath(file);
  file.impl = new FilenameData{std::move(path), std::move(buffer)};
}

}  // namespace quillon
