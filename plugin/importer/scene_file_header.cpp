#include "plugin/importer/scene_file_header.h"

#include <array>
#include <cstring>
#include <fstream>

namespace {

constexpr std::array<const char*, 6> kVariantTags = {"XORY", "6ORY", "AORY", "8ORY", "QORY", "YORY"};

}  // namespace

bool IsSceneFileHeader(const char* bytes, size_t size) {
  if (bytes == nullptr || size < kSceneHeaderSize) return false;
  if (std::memcmp(bytes + 4, "ORY6", 4) != 0) return false;
  for (const char* tag : kVariantTags)
    if (std::memcmp(bytes, tag, 4) == 0) return true;
  return false;
}

bool IsSceneFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  char header[kSceneHeaderSize] = {};
  file.read(header, sizeof header);
  return IsSceneFileHeader(header, static_cast<size_t>(file.gcount()));
}
