// libFuzzer target for the importer's header test: any bytes are judged in memory and,
// written to a file, through the path the host offers; both judgements must agree.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "plugin/importer/scene_file_header.h"

namespace {

// One file for the whole run, rewritten for each input and removed when the run ends.
struct ScratchFile {
  std::string path = "/tmp/scene_header_fuzz." + std::to_string(getpid()) + ".ory";
  ~ScratchFile() { std::remove(path.c_str()); }
};

const std::string& ScratchPath() {
  static const ScratchFile file;
  return file.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* bytes = reinterpret_cast<const char*>(data);
  const bool inMemory = IsSceneFileHeader(bytes, size);
  FILE* file = std::fopen(ScratchPath().c_str(), "wb");
  if (file == nullptr) return 0;
  const bool written = std::fwrite(bytes, 1, size, file) == size;
  std::fclose(file);
  if (written && IsSceneFile(ScratchPath()) != inMemory) std::abort();
  return 0;
}
